// SPDX-License-Identifier: MIT
#include "design/Mlrctrldialog.h"
#include "design/Mlrresp.h"

#include <QAbstractItemView>
#include <QFocusEvent>

// When the boxes of the definition dialogs are read: at entering, leaving and clicking too, not at changes alone. A
// change that is kept from the dialog shows which of them reads.

namespace {

using Act = std::function<void(QDialog &)>;

/// Puts a text into a box or an edit without a word to the dialog.
void slipIn(const QWidget &dialog, const char *name, const char *text)
{
    auto *box = part<QWidget>(dialog, name);
    const QSignalBlocker silent(box);
    if (auto *edit = qobject_cast<QLineEdit *>(box)) {
        edit->setText(u(text));
        return;
    }
    auto *combo = qobject_cast<QComboBox *>(box);
    if (combo->isEditable()) {
        combo->setEditText(u(text));
    } else {
        ASSERT_GE(combo->findText(u(text)), 0) << text;
        combo->setCurrentIndex(combo->findText(u(text)));
    }
}

void enter(const QWidget &dialog, const char *name)
{
    auto *box = part<QWidget>(dialog, name);
    QFocusEvent event(QEvent::FocusIn, Qt::TabFocusReason);
    QApplication::sendEvent(box, &event);
    QTest::qWait(60);
}

void leaveBox(const QWidget &dialog, const char *name)
{
    auto *box = part<QWidget>(dialog, name);
    QFocusEvent event(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(box, &event);
    QTest::qWait(60);
}

/// Chooses the entry that is chosen already: a click, and no change.
void clickOnEntry(const QWidget &dialog, const char *name)
{
    auto *box = part<QComboBox>(dialog, name);
    Q_EMIT box->activated(box->currentIndex());
}

void pressReturn(const QWidget &dialog, const char *name)
{
    QTest::keyClick(part<QComboBox>(dialog, name)->lineEdit(), Qt::Key_Return);
}

TDependentVar response(const char *transformation, const char *field, const char *factor = "1")
{
    TDependentVar definition;
    definition.SetTransformation(u(transformation));
    definition.SetField(u(field));
    definition.SetScaleFactor(u(factor));
    return definition;
}

Edited<TDependentVar> editTable(const TDependentVar &definition, const Act &act)
{
    TMLRTable table;
    return openFor<TResponseDefDlg>(table, "ResponseVarY", definition, act, fieldNames());
}

Edited<TDependentVar> editQuery(const TDependentVar &definition, const Act &act)
{
    TMLRQuery query;
    return openFor<TResponseDefDlg>(query, "ResponseVarY", definition, act, {u("...")});
}

using Happening = void (*)(const QWidget &, const char *);

/// A definition, what is slipped into which of its boxes, what happens there, and the term that must then stand.
struct Reading
{
    const char *transformation;
    bool query;
    const char *box;
    const char *slippedIn;
    Happening happens;
    const char *term;
};

} // namespace

TEST(ControlDialogBoxes, AreReadWhenTheyAreEnteredLeftAndClicked)
{
    const Reading readings[] = {
        {"None", true, "edStringX", "AGE", enter, "AGE"},
        {"Product", true, "edStringX", "AGE", enter, "AGE*POP"},
        {"Product", true, "edStringY", "AGE", enter, "GNP*AGE"},
        {"None", false, "cboxTableX", "YEAR", leaveBox, "YEAR"},
        {"Quotient", false, "cboxTableY", "YEAR", leaveBox, "GNP/YEAR"},
        {"Power", false, "cboxpwrY", "4", enter, "GNP^4"},
        {"Power", false, "cboxpwrY", "4", leaveBox, "GNP^4"},
        {"Power", true, "cboxpwrY", "4", clickOnEntry, "GNP^4"},
        {"Power", true, "cboxpwrY", "4", pressReturn, "GNP^4"},
        {"Scale", false, "cboxDivideBy", "7", leaveBox, "GNP/7"},
        {"Scale", true, "cboxDivideBy", "7", clickOnEntry, "GNP/7"},
        {"Scale", true, "cboxDivideBy", "7", pressReturn, "GNP/7"},
    };
    for (const Reading &reading : readings) {
        SCOPED_TRACE(reading.box);
        const auto act = [&reading](QDialog &dialog) {
            slipIn(dialog, reading.box, reading.slippedIn);
            EXPECT_NE(term(dialog), u(reading.term)) << "nothing has happened yet";
            reading.happens(dialog, reading.box);
            EXPECT_EQ(term(dialog), u(reading.term));
            dialog.close();
        };
        const TIndepVar definition = variable(reading.transformation, "GNP", "POP", "2", "100");
        reading.query ? editQuery(definition, act) : editTable(definition, act);
    }
}

TEST(ResponseDialogBoxes, AreReadWhenTheyAreEnteredLeftAndClicked)
{
    const Reading readings[] = {
        {"Log", true, "edStringX", "AGE", enter, "ln(AGE)"},
        {"Log", false, "cboxTableX", "YEAR", leaveBox, "ln(YEAR)"},
        {"Scale", false, "cboxDivideBy", "7", leaveBox, "GNP/7"},
        {"Scale", true, "cboxDivideBy", "7", clickOnEntry, "GNP/7"},
        {"Scale", true, "cboxDivideBy", "7", pressReturn, "GNP/7"},
    };
    for (const Reading &reading : readings) {
        SCOPED_TRACE(reading.box);
        const auto act = [&reading](QDialog &dialog) {
            slipIn(dialog, reading.box, reading.slippedIn);
            EXPECT_NE(term(dialog), u(reading.term)) << "nothing has happened yet";
            reading.happens(dialog, reading.box);
            EXPECT_EQ(term(dialog), u(reading.term));
            dialog.close();
        };
        const TDependentVar definition = response(reading.transformation, "GNP", "100");
        reading.query ? editQuery(definition, act) : editTable(definition, act);
    }
}

TEST(ResponseDialogBoxes, TheBoxThatIsLeftIsReadBeforeTheOneThatIsEntered)
{
    // A divisor of 0 takes OK away, and the name, which is asked for alone, gives it back.
    const auto edited = editQuery(response("Scale", "GNP", "100"), [](QDialog &dialog) {
        type(dialog, "cboxDivideBy", "0");
        EXPECT_FALSE(canConfirm(dialog));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab, Qt::ShiftModifier);
        ASSERT_EQ(dialog.focusWidget()->objectName(), u("edStringX"));
        QTest::qWait(100);
        EXPECT_EQ(term(dialog), u("GNP/1"));
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.ScaleFactor(), u("1"));
}

TEST(ResponseDialogBoxes, ANumberFoundUnreadableAtLeavingIsNotCalledCompleteAtEntering)
{
    const auto edited = editQuery(response("Scale", "GNP", "100"), [](QDialog &dialog) {
        type(dialog, "cboxDivideBy", "abc");
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab, Qt::ShiftModifier);
        QTest::qWait(100);
        EXPECT_FALSE(canConfirm(dialog));
        cancel(dialog);
    });
    EXPECT_EQ(edited.messages, QStringList(u("\"abc\" is not a number")));
}

TEST(ControlDialogBoxes, AnIncompleteTermOfATableLeavesTheFieldsAsTheyWere)
{
    // The second field is in no list, or the first; what was picked beside it is not taken.
    const auto second = editTable(variable("Product", "GNP", "GONE"), [](QDialog &dialog) {
        pick(dialog, "cboxTableX", u("YEAR"));
        EXPECT_FALSE(canConfirm(dialog));
        chooseItem(dialog, 0);
        confirm(dialog);
    });
    EXPECT_EQ(second.variable.Field1(), u("GNP"));
    EXPECT_EQ(second.variable.Field2(), u("GONE"));
    const auto first = editTable(variable("Quotient", "GONE", "GNP"), [](QDialog &dialog) {
        pick(dialog, "cboxTableY", u("YEAR"));
        EXPECT_FALSE(canConfirm(dialog));
        chooseItem(dialog, 0);
        confirm(dialog);
    });
    EXPECT_EQ(first.variable.Field1(), u("GONE"));
    EXPECT_EQ(first.variable.Field2(), u("GNP"));
    for (const int item : {1, 2, 3, 4, 5}) {
        const auto none = editTable(variable("Undefined", "GONE", "POP", "2"), [item](QDialog &dialog) {
            chooseItem(dialog, item);
            EXPECT_FALSE(canConfirm(dialog));
            chooseItem(dialog, 0);
            confirm(dialog);
        });
        EXPECT_EQ(none.variable.Field1(), u("GONE")) << item;
    }
}

TEST(ControlDialogBoxes, AQuerysEmptyNameIsTakenAsItStands)
{
    for (const int item : {1, 2, 3, 4, 5, 6, 7, 8}) {
        const auto edited = editQuery(variable("None", "AGE", "COST", "2", "100"), [item](QDialog &dialog) {
            chooseItem(dialog, item);
            type(dialog, "edStringX", "");
            EXPECT_FALSE(canConfirm(dialog));
            chooseItem(dialog, 0);
            confirm(dialog);
        });
        EXPECT_EQ(edited.variable.Field1(), QString()) << item;
    }
    const auto edited = editQuery(variable("Product", "AGE", "COST"), [](QDialog &dialog) {
        type(dialog, "edStringY", "");
        EXPECT_FALSE(canConfirm(dialog));
        chooseItem(dialog, 0);
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.Field2(), QString());
}
