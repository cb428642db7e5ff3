// SPDX-License-Identifier: MIT
#include "design/model/Modelhands.h"

#include <QScreen>

namespace {

RegressionModel edited(const RegressionModel &before, const std::function<void(TModelDialog &)> &act,
                       bool *confirmed = nullptr)
{
    TModelDialog dialog;
    dialog.Editor().SetFields(fewFields());
    const Person person([&](QDialog &shown) {
        shown.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&shown));
        act(dialog);
    });
    RegressionModel result = before;
    const bool ok = dialog.OpenForm(u("mlrTable"), result);
    if (confirmed != nullptr)
        *confirmed = ok;
    return result;
}

bool canConfirm(const TModelDialog &dialog)
{
    return part<QPushButton>(dialog, "ModelOK")->isEnabled();
}

} // namespace

TEST(ModelDialogs, GiveTheModelBackOnOk)
{
    bool confirmed = false;
    const RegressionModel after = edited(
        model({"TOTEMP"}),
        [](TModelDialog &dialog) {
            EXPECT_EQ(dialog.windowTitle(), u("mlrTable Model"));
            EXPECT_TRUE(part(dialog, "FieldsView")->hasFocus());
            QTest::keyClick(part(dialog, "FieldsView"), Qt::Key_Return);
            EXPECT_TRUE(dialog.isVisible()) << "Enter adds a field and does not end the dialog";
            click(dialog, "ModelOK");
        },
        &confirmed);
    EXPECT_TRUE(confirmed);
    EXPECT_EQ(terms(after), (QStringList{u("TOTEMP"), u("YEAR")}));
}

TEST(ModelDialogs, AreConfirmedWithCtrlEnterWhereverTheFocusIs)
{
    for (const char *where : {"FieldsView", "FieldX1", "TransformationX1", "FieldFilter"}) {
        bool confirmed = false;
        edited(
            model({"TOTEMP", "GNP"}),
            [where](TModelDialog &dialog) {
                part(dialog, where)->setFocus();
                QTest::keyClick(part(dialog, where), Qt::Key_Return, Qt::ControlModifier);
            },
            &confirmed);
        EXPECT_TRUE(confirmed) << where;
    }
}

TEST(ModelDialogs, LeaveTheModelOnCancelAndEscape)
{
    bool confirmed = true;
    const RegressionModel before = model({"TOTEMP", "GNP"});
    EXPECT_TRUE(edited(
                    before,
                    [](TModelDialog &dialog) {
                        dialog.Editor().Remove(1);
                        click(dialog, "ModelCancel");
                    },
                    &confirmed) == before);
    EXPECT_FALSE(confirmed);
    EXPECT_TRUE(edited(before, [](TModelDialog &dialog) {
                    dialog.Editor().Remove(1);
                    QTest::keyClick(&dialog, Qt::Key_Escape);
                }) == before);
}

TEST(ModelDialogs, TakeANameThatIsStillBeingTyped)
{
    const RegressionModel after = edited(model({"TOTEMP"}), [](TModelDialog &dialog) {
        QWidget *slot = part(dialog, "FieldX2");
        slot->setFocus();
        QTest::keyClick(slot, Qt::Key_F2);
        QTest::keyClicks(part(*slot, "FieldEdit"), u("GNP"));
        click(dialog, "ModelOK");
    });
    EXPECT_EQ(after.term(2), u("GNP"));
}

TEST(ModelDialogs, AreNotDoneBeforeWhatWasChangedIsFinished)
{
    RegressionModel before = model({"TOTEMP", "GNP"});
    before.setTransformation(3, u("Log")); // unfinished, but not by this person
    edited(before, [](TModelDialog &dialog) {
        EXPECT_TRUE(canConfirm(dialog));
        auto *box = part<QComboBox>(dialog, "TransformationX1");
        box->setFocus();
        while (box->currentText() != u("x times a field"))
            QTest::keyClick(box, Qt::Key_Down);
        EXPECT_FALSE(canConfirm(dialog));
        EXPECT_EQ(part<QLabel>(dialog, "Unfinished")->text(), u("X1 is not finished."));
        drop(part(dialog, "SecondFieldX1"), nuvo::mimeOfFields({u("POP")}));
        EXPECT_TRUE(canConfirm(dialog));
        drop(part(dialog, "FieldX2"), nuvo::mimeOfFields({u("POP")}));
        drop(part(dialog, "FieldX2"), nuvo::mimeOfFields({u("TOTEMP")}));
        EXPECT_TRUE(canConfirm(dialog)) << "what is doubtful only can be meant";
        dialog.reject();
    });
}

TEST(ModelDialogs, OpenLargeEnoughAndCanBeMadeSmallAndLarge)
{
    edited(model({"TOTEMP", "Product GNP POP", "Scale YEAR 100"}), [](TModelDialog &dialog) {
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&dialog));
        for (const char *name : {"FieldX1", "TransformationX1", "SecondFieldX1", "TermX1", "NumberX2"}) {
            const QWidget *widget = part(dialog, name);
            EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << name;
            EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << name;
        }
        EXPECT_FALSE(part(dialog, "FieldX10")->visibleRegion().isEmpty()) << "all places are in sight";
        dialog.resize(dialog.minimumSizeHint());
        QApplication::processEvents();
        EXPECT_LE(dialog.width(), 800);
        EXPECT_LE(dialog.height(), 480) << "it fits on a small screen";
        dialog.resize(1600, 900);
        QApplication::processEvents();
        EXPECT_GT(part(dialog, "FieldX1")->width(), 200);
        dialog.reject();
    });
}
