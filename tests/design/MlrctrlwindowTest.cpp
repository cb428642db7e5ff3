// SPDX-License-Identifier: MIT
#include "design/Mlrctrldialog.h"

#include <QGroupBox>
#include <QScreen>

// The form as a window: its texts and sizes, focus and keys.

TEST(ControlDialog, IsAFormOf339By337Pixels)
{
    TControlDefDlg form;
    EXPECT_EQ(form.windowTitle(), u("Control Variable Definition"));
    EXPECT_EQ(form.size(), QSize(339, 337));
    EXPECT_EQ(form.font().family(), u("Arial"));
    EXPECT_EQ(form.font().pixelSize(), 13);
    for (int i = 0; i < 9; ++i) {
        const auto *item = part<QRadioButton>(form, qPrintable(QStringLiteral("RadioGroup1Item%1").arg(i)));
        EXPECT_EQ(item->text(), u(kItems[i]));
        EXPECT_FALSE(item->isChecked());
    }
    EXPECT_EQ(entries(form, "cboxpwrY"), (QStringList{u("1/2"), u("2"), u("3"), u("4"), u("5"), u("6")}));
    EXPECT_EQ(entries(form, "cboxDivideBy"),
              (QStringList{u("10"), u("100"), u("1000"), u("10000"), u("100000"), u("1000000")}));
    EXPECT_EQ(shown(form, "cboxpwrY"), u("1"));
    EXPECT_EQ(shown(form, "cboxDivideBy"), u("1"));
    EXPECT_EQ(textOf(form, "Label4"), u("Raise datafield1 to the power "));
    EXPECT_EQ(textOf(form, "Label8"), u("Divide datafield1 by the value:"));
    EXPECT_EQ(textOf(form, "Label2"), u("Multivariate Regression"));
    EXPECT_EQ(textOf(form, "Label3"), u("Multivariate Regression"));
    EXPECT_EQ(part(form, "Label2")->palette().color(QPalette::WindowText), QColor(Qt::white));
    EXPECT_EQ(part(form, "Label3")->palette().color(QPalette::WindowText), QColor(0, 0, 0x80));
    EXPECT_FALSE(canConfirm(form));
    EXPECT_EQ(part<QPushButton>(form, "bbtnOK")->text(), u("OK"));
    EXPECT_EQ(part<QPushButton>(form, "bbtnCancel")->text(), u("Cancel"));
    EXPECT_TRUE(part<QPushButton>(form, "bbtnOK")->isDefault());
}

TEST(ControlDialog, NamesTheComponentAndThePropertyAndCannotBeResized)
{
    editTable(TIndepVar(), [](QDialog &dialog) {
        EXPECT_EQ(dialog.windowTitle(), u("MLRTable1 Control Variable Definition"));
        EXPECT_EQ(part<QGroupBox>(dialog, "RadioGroup1")->title(), u("Set ControlVar03 to "));
        EXPECT_EQ(dialog.size(), QSize(339, 337));
        EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
        expectNothingIsClipped(dialog);
        dialog.close();
    });
}

TEST(ControlDialog, ATableHasListsAndAQueryHasEdits)
{
    editTable(TIndepVar(), [](QDialog &dialog) {
        EXPECT_TRUE(part(dialog, "pnlTblX")->isVisible());
        EXPECT_FALSE(part(dialog, "pnlQryX")->isVisible());
        EXPECT_EQ(entries(dialog, "cboxTableX"), fieldNames());
        EXPECT_EQ(entries(dialog, "cboxTableY"), fieldNames());
        expectInFront(dialog, "pnlTblY");
        dialog.close();
    });
    editQuery(TIndepVar(), [](QDialog &dialog) {
        EXPECT_FALSE(part(dialog, "pnlTblX")->isVisible());
        EXPECT_TRUE(part(dialog, "pnlQryX")->isVisible());
        EXPECT_EQ(part<QLineEdit>(dialog, "edStringX")->text(), u("Datafield1"));
        EXPECT_EQ(part<QLineEdit>(dialog, "edStringY")->text(), u("Datafield2"));
        expectInFront(dialog, "pnlQryY");
        dialog.close();
    });
}

TEST(ControlDialog, HelpAlsoComesWithTheKeys)
{
    int shown = 0;
    editTable(TIndepVar(), [&shown](QDialog &dialog) {
        const TMessageHandler before = SetMessageHandler([&shown](const QString &, TMsgDlgType, unsigned, int) {
            ++shown;
            return int(mrOk);
        });
        QTest::keyClick(&dialog, Qt::Key_F1);
        EXPECT_EQ(shown, 1);
        QTest::keyClick(&dialog, Qt::Key_H, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([&shown] { return shown == 2; })) << "a button shows that it is pressed first";
        SetMessageHandler(before);
        dialog.close();
    });
}

TEST(ControlDialog, ItsPanelComesToTheFrontOnlyWhenTheDialogIsActivated)
{
    editTable(variable("Product", "GNP", "POP"), [](QDialog &dialog) {
        expectInFront(dialog, "pnlTblY");
        chooseItem(dialog, 4); // does not enable the exponent, so it brings nothing to the front
        expectInFront(dialog, "pnlTblY");
        QEvent activated(QEvent::WindowActivate);
        QApplication::sendEvent(&dialog, &activated);
        expectInFront(dialog, "pnlXpwry");
        chooseItem(dialog, 6);
        expectInFront(dialog, "pnlScaleX");
        chooseItem(dialog, 5);
        expectInFront(dialog, "pnlXpwry");
        chooseItem(dialog, 7);
        expectInFront(dialog, "pnlTblY");
        dialog.close();
    });
}

TEST(ControlDialog, TheFocusGoesWhereTheNextEntryIsDue)
{
    const char *const table[] = {"cboxTableX", "cboxTableX",   "cboxTableX", nullptr,
                                 "cboxpwrY",   "cboxDivideBy", "cboxTableY", "cboxTableY"};
    const char *const query[] = {"edStringX", "edStringX",    "edStringX", nullptr,
                                 "cboxpwrY",  "cboxDivideBy", "edStringY", "edStringY"};
    const auto check = [](const char *const(&expected)[8]) {
        return [&expected](QDialog &dialog) {
            for (int item = 1; item < 9; ++item) {
                chooseItem(dialog, item);
                const char *name = expected[item - 1];
                EXPECT_EQ(dialog.focusWidget()->objectName(), name != nullptr ? u(name) : u("RadioGroup1Item4"));
            }
            dialog.close();
        };
    };
    editTable(variable("None", "GNP", "POP"), check(table));
    editQuery(variable("None", "GNP", "POP"), check(query));
}

TEST(ControlDialog, GrowsWithLongNamesSoThatNothingIsCut)
{
    const QString name = u("AVERAGE_TEMPERATURE_OF_STATION_1");
    const QByteArray utf8 = name.toUtf8();
    const TIndepVar quotient = variable("Quotient", utf8.constData(), utf8.constData());
    editQuery(quotient, [](QDialog &dialog) {
        EXPECT_GT(dialog.width(), 339);
        EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
        expectNothingIsClipped(dialog);
        dialog.close();
    });
    editTable(variable("Power", utf8.constData()),
              [&](QDialog &dialog) {
                  expectNothingIsClipped(dialog);
                  EXPECT_EQ(textOf(dialog, "Label4"), QStringLiteral("Raise %1 to the power:").arg(name));
                  dialog.close();
              },
              {name});
}

TEST(ControlDialog, IsNeverWiderThanTheScreenAndThenHasTheTermAsAHint)
{
    const QByteArray name(2000, 'W');
    editQuery(variable("None", name.constData()), [&](QDialog &dialog) {
        EXPECT_LE(dialog.width(), dialog.screen()->availableGeometry().width());
        EXPECT_EQ(part(dialog, "Panel2")->toolTip(), u(name.constData()));
        confirm(dialog);
    });
}

TEST(ControlDialog, NamesAreShownAsTheyAre)
{
    for (const char *name : {"R&D", "<b>bold</b>", "a b", "Größe"}) {
        const auto edited = editQuery(variable("Power", name, "POP", "2"), [&](QDialog &dialog) {
            EXPECT_EQ(part<QLabel>(dialog, "Panel2")->textFormat(), Qt::PlainText);
            EXPECT_EQ(part<QLabel>(dialog, "Label4")->textFormat(), Qt::PlainText);
            EXPECT_EQ(term(dialog), u(name) + u("^2"));
            confirm(dialog);
        });
        EXPECT_EQ(edited.variable.Field1(), u(name));
    }
}

TEST(ControlDialog, TabGoesThroughWhatCanBeEntered)
{
    editTable(variable("Product", "GNP", "POP"), [](QDialog &dialog) {
        part(dialog, "RadioGroup1Item7")->setFocus();
        for (const char *next :
             {"cboxTableX", "cboxTableY", "bbtnOK", "bbtnCancel", "bbtnHelp", "RadioGroup1Item7"}) {
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
            EXPECT_EQ(dialog.focusWidget()->objectName(), u(next));
        }
        expectAccessible(dialog);
        dialog.close();
    });
    editQuery(variable("Scale", "GNP"), [](QDialog &dialog) {
        part(dialog, "RadioGroup1Item6")->setFocus();
        for (const char *next : {"edStringX", "cboxDivideBy", "bbtnOK", "bbtnCancel", "bbtnHelp"}) {
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
            EXPECT_EQ(dialog.focusWidget()->objectName(), u(next));
        }
        dialog.close();
    });
}

TEST(ControlDialog, FormsCanBeChosenWithTheArrowKeys)
{
    const auto edited = editTable(variable("Log", "GNP"), [](QDialog &dialog) {
        part(dialog, "RadioGroup1Item2")->setFocus();
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Down);
        EXPECT_EQ(term(dialog), u("1/(GNP)"));
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.Transformation(), u("Inverse"));
}

TEST(ControlDialog, MayGoWhileItIsOpen)
{
    TMLRTable table;
    TIndepVar definition = variable("Log", "GNP");
    auto *dialog = new TControlDefDlg;
    const TModalRunner before = SetModalRunner([](QDialog &open) {
        delete &open;
        return int(QDialog::Accepted);
    });
    dialog->OpenForm(table, u("ControlVar01"), fieldNames(), definition);
    SetModalRunner(before);
    EXPECT_EQ(definition.Transformation(), u("Log"));
}
