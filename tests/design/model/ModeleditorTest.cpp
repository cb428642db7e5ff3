// SPDX-License-Identifier: MIT
#include "design/model/Modelhands.h"

#include <QScrollArea>
#include <QScrollBar>

// Keys, clicks and what is shown.

namespace {

class ModelEditor : public ModelHands
{
};

} // namespace

TEST_F(ModelEditor, ShowsFieldsWithTheirKindsAndWhyTheyCannotBeUsed)
{
    const QAbstractItemModel &fields = *list()->model();
    ASSERT_EQ(fields.rowCount(), 10);
    EXPECT_EQ(row("GNP").siblingAtColumn(1).data().toString(), u("number"));
    EXPECT_TRUE(row("GNP").flags() & Qt::ItemIsDragEnabled);
    EXPECT_EQ(row("NAME").siblingAtColumn(1).data().toString(), u("text"));
    EXPECT_FALSE(row("NAME").flags() & Qt::ItemIsDragEnabled);
    EXPECT_EQ(row("NAME").data(Qt::ToolTipRole).toString(),
              u("NAME holds no number (text): it cannot be a variable of a regression."));
    EXPECT_NE(row("NAME").data(Qt::ForegroundRole), row("GNP").data(Qt::ForegroundRole));
    editor.SetModel(model({"GNP", "Log GNP", "POP"}));
    EXPECT_EQ(row("GNP").siblingAtColumn(2).data().toString(), u("Y, X1"));
    EXPECT_EQ(row("POP").siblingAtColumn(2).data().toString(), u("X2"));
}

TEST_F(ModelEditor, AddsWithEnterInsertAndADoubleClickAndMakesYWithY)
{
    open();
    const QSignalSpy changed(&editor, &TModelEditor::ModelChanged);
    press("TOTEMP", Qt::Key_Y);
    press("GNP", Qt::Key_Return);
    press("UNEMP", Qt::Key_Insert);
    doubleClick("YEAR");
    EXPECT_EQ(terms(editor.Model()), (QStringList{u("TOTEMP"), u("GNP"), u("UNEMP"), u("YEAR")}));
    EXPECT_EQ(changed.count(), 4);
    EXPECT_EQ(shownField("X2"), u("UNEMP"));
    EXPECT_EQ(part<QLabel>(editor, "Equation")->text(), u("TOTEMP = B0 + B1 GNP + B2 UNEMP + B3 YEAR"));
}

TEST_F(ModelEditor, AddsToTheFirstFreePlaceAndLeavesTheOthersWhereTheyAre)
{
    editor.SetModel(model({"TOTEMP", "", "Log POP"}));
    open();
    press("GNP", Qt::Key_Return);
    press("YEAR", Qt::Key_Return);
    EXPECT_EQ(terms(editor.Model()), (QStringList{u("TOTEMP"), u("GNP"), u("Ln(POP)"), u("YEAR")}));
}

TEST_F(ModelEditor, AddsAllMarkedFieldsButThoseWithoutNumbers)
{
    open();
    list()->selectAll();
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_EQ(terms(editor.Model()).size(), 1 + 8);
    EXPECT_EQ(said(), u("BORN holds no number (date): it cannot be a variable of a regression."));
    press("GNP", Qt::Key_Return);
    press("GNP", Qt::Key_Return);
    const RegressionModel full = editor.Model();
    press("GNP", Qt::Key_Return);
    EXPECT_EQ(said(), u("All ten places are taken: GNP found none."));
    EXPECT_TRUE(editor.Model() == full);
}

TEST_F(ModelEditor, RefusesAFieldWithoutNumbers)
{
    open();
    const QSignalSpy changed(&editor, &TModelEditor::ModelChanged);
    press("NAME", Qt::Key_Return);
    EXPECT_EQ(said(), u("NAME holds no number (text): it cannot be a variable of a regression."));
    press("BORN", Qt::Key_Y);
    EXPECT_EQ(terms(editor.Model()), QStringList());
    EXPECT_EQ(changed.count(), 0);
}

TEST_F(ModelEditor, TransformsAndShowsTheTermAsReportsPrintIt)
{
    editor.SetModel(model({"TOTEMP", "GNP"}));
    open();
    const std::pair<const char *, const char *> forms[] = {
        {"ln x", "Ln(GNP)"},
        {"1 / x", "1/GNP"},
        {"square root of x", "GNP^1/2"},
        {"x to a power", "GNP^2"},
        {"x over a number", "GNP/10"},
        {"x as it is", "GNP"},
    };
    for (const auto &[name, term] : forms) {
        transform("X1", name);
        EXPECT_EQ(shownTerm("X1"), u(term));
    }
    transform("Y", "1 / x");
    EXPECT_EQ(shownTerm("Y"), u("1/(TOTEMP)"));
    EXPECT_EQ(transformation("Y")->count(), 4);
    EXPECT_EQ(transformation("X1")->count(), 9);
}

TEST_F(ModelEditor, ChangesTheTermWhileANumberIsTyped)
{
    editor.SetModel(model({"TOTEMP", "GNP"}));
    open();
    transform("X1", "x over a number");
    QLineEdit *edit = number("X1");
    ASSERT_TRUE(edit->isVisible());
    EXPECT_EQ(edit->text(), u("10"));
    edit->setFocus();
    edit->selectAll();
    QTest::keyClicks(edit, u("2.5"));
    EXPECT_EQ(shownTerm("X1"), u("GNP/2.5"));
    QTest::keyClicks(edit, u("x"));
    EXPECT_EQ(trouble("X1"), u("\"2.5x\" is not a number."));
    QTest::keyClick(edit, Qt::Key_Backspace);
    EXPECT_EQ(trouble("X1"), QString());
}

TEST_F(ModelEditor, ShowsNumbersInTheCountrysWay)
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    editor.SetModel(model({"TOTEMP", "Scale GNP 2.5"}));
    open();
    EXPECT_EQ(number("X1")->text(), u("2,5"));
    number("X1")->setFocus();
    number("X1")->selectAll();
    QTest::keyClicks(number("X1"), u("0,25"));
    EXPECT_EQ(editor.Model().number(1), u("0.25"));
    EXPECT_EQ(number("X1")->text(), u("0,25"));
    QLocale::setDefault(QLocale::c());
}

TEST_F(ModelEditor, TellsWhatIsWrongInItsPlace)
{
    editor.SetModel(model({"TOTEMP", "GNP", "GNPX", "GNP"}));
    open();
    EXPECT_EQ(trouble("X1"), QString());
    EXPECT_EQ(trouble("X2"), u("There is no field \"GNPX\"."));
    EXPECT_EQ(trouble("X3"), u("This is the same term as X1."));
    transform("X3", "ln x");
    EXPECT_EQ(trouble("X3"), QString());
    transform("X3", "x times a field");
    EXPECT_EQ(trouble("X3"), u("No second field is chosen."));
    EXPECT_EQ(field("X3")->accessibleDescription(), u("No second field is chosen."));
    transform("X5", "ln x");
    EXPECT_EQ(trouble("X5"), u("No field is chosen."));
}

TEST_F(ModelEditor, RemovesWithDeleteAndMovesWithAltAndArrows)
{
    editor.SetModel(model({"TOTEMP", "GNP", "Log POP"}));
    open();
    field("X2")->setFocus();
    QTest::keyClick(field("X2"), Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(terms(editor.Model()), (QStringList{u("TOTEMP"), u("Ln(POP)"), u("GNP")}));
    EXPECT_TRUE(field("X1")->hasFocus()) << "it goes with what it moves";
    QTest::keyClick(field("X1"), Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(editor.Model().term(0), u("TOTEMP")) << "a control variable does not become the response by that";
    QTest::keyClick(field("X1"), Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(field("X2"), Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(terms(editor.Model()), (QStringList{u("TOTEMP"), u("GNP"), QString(), u("Ln(POP)")}));
    QTest::keyClick(field("X3"), Qt::Key_Delete);
    EXPECT_EQ(terms(editor.Model()), (QStringList{u("TOTEMP"), u("GNP")}));
    field("X1")->setFocus();
    QTest::keyClick(field("X1"), Qt::Key_Up);
    ASSERT_TRUE(field("Y")->hasFocus());
    QTest::keyClick(field("Y"), Qt::Key_Backspace);
    EXPECT_EQ(terms(editor.Model()), (QStringList{QString(), u("GNP")}));
}

TEST_F(ModelEditor, DoesWithItsButtonsWhatKeysDo)
{
    open();
    mark("TOTEMP");
    click(editor, "MakeResponse");
    mark("GNP");
    click(editor, "AddFields");
    mark("POP");
    click(editor, "AddFields");
    click(editor, "MoveUp");
    EXPECT_EQ(terms(editor.Model()), (QStringList{u("TOTEMP"), u("POP"), u("GNP")}));
    click(editor, "MoveDown");
    click(editor, "RemovePlace");
    EXPECT_EQ(terms(editor.Model()), (QStringList{u("TOTEMP"), u("GNP")}));
    EXPECT_FALSE(part<QPushButton>(editor, "RemovePlace")->isEnabled()) << "there is nothing left at that place";
}

TEST_F(ModelEditor, LeavesWhatItDoesNotKnowAsItIs)
{
    RegressionModel odd;
    odd.setStrings(0, {});
    odd.setStrings(1, {u("Active"), u("Cube"), u("GNP")});
    odd.setStrings(2, {u("Inactive"), u("Undefined"), u("POP"), u("YEAR"), u("7"), u("x")});
    odd.setStrings(4, {u("Active"), u("Scaled"), u("GNP"), u("a"), u("b"), u("c"), u("d")});
    editor.SetModel(odd);
    open();
    EXPECT_EQ(transformation("X1")->currentText(), u("\"Cube\""));
    EXPECT_EQ(transformation("X2")->currentText(), u("inactive"));
    EXPECT_EQ(shownField("X2"), u("POP"));
    EXPECT_EQ(transformation("X4")->currentText(), u("\"Scaled\""));
    press("YEAR", Qt::Key_Return);
    EXPECT_EQ(editor.Model().differences(odd), std::vector<int>{3});
    transform("X1", "ln x");
    EXPECT_EQ(transformation("X1")->count(), 9) << "the odd one is gone from the list";
    EXPECT_EQ(editor.Model().term(1), u("Ln(GNP)"));
    transform("X2", "ln x");
    EXPECT_EQ(editor.Model().strings(2), (QStringList{u("Active"), u("Log"), u("POP"), u("YEAR"), u("7"), u("x")}));
}

TEST_F(ModelEditor, FindsOneFieldAmongFiveHundred)
{
    nuvo::ModelFields many;
    many.known = true;
    for (int i = 0; i < 500; ++i)
        many.fields.push_back({QStringLiteral("FIELD_%1").arg(i, 3, 10, QLatin1Char('0')), u("number"), i % 7 != 0});
    editor.SetFields(many);
    open();
    QTest::keyClick(&editor, Qt::Key_F, Qt::ControlModifier);
    auto *filter = part<QLineEdit>(editor, "FieldFilter");
    ASSERT_TRUE(filter->hasFocus());
    QTest::keyClicks(filter, u("_12"));
    EXPECT_EQ(list()->model()->rowCount(), 10);
    EXPECT_EQ(part<QLabel>(editor, "FieldsState")->text(), u("10 of 500 fields"));
    QTest::keyClicks(filter, u("3"));
    QTest::keyClick(filter, Qt::Key_Return);
    EXPECT_EQ(terms(editor.Model()), (QStringList{QString(), u("FIELD_123")})) << "the only one that is left";
    QTest::keyClick(filter, Qt::Key_Escape);
    EXPECT_EQ(list()->model()->rowCount(), 500);
    QTest::keyClick(filter, Qt::Key_Down);
    EXPECT_TRUE(list()->hasFocus());
}

TEST_F(ModelEditor, SaysWhyThereAreNoFields)
{
    nuvo::ModelFields unknown;
    unknown.why = u("Cannot open the database \"nowhere.db\".");
    editor.SetFields(unknown);
    open();
    EXPECT_EQ(part<QLabel>(editor, "FieldsState")->text(),
              u("Cannot open the database \"nowhere.db\". Names can be typed all the same."));
    nuvo::ModelFields words;
    words.known = true;
    words.fields.push_back({u("NAME"), u("text"), false});
    editor.SetFields(words);
    EXPECT_EQ(part<QLabel>(editor, "FieldsState")->text(), u("None of the fields holds numbers."));
}

TEST_F(ModelEditor, CanBeUsedWithTheKeyboardAlone)
{
    editor.SetModel(model({"TOTEMP", "GNP", "Product GNP POP", "Scale GNP 10"}));
    open();
    // Tab goes through everything in the order of reading and comes back.
    QStringList way;
    part<QLineEdit>(editor, "FieldFilter")->setFocus();
    do {
        way += QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        ASSERT_LT(way.size(), 60) << way.join(u(" ")).toStdString();
    } while (QApplication::focusWidget()->objectName() != u("FieldFilter"));
    EXPECT_EQ(way.mid(0, 10), (QStringList{u("FieldFilter"), u("FieldsView"), u("MakeResponse"), u("AddFields"),
                                           u("FieldY"), u("TransformationY"), u("FieldX1"), u("TransformationX1"),
                                           u("FieldX2"), u("TransformationX2")}));
    EXPECT_TRUE(way.contains(u("SecondFieldX2")) && way.contains(u("NumberX3")) && !way.contains(u("NumberX1")));
    for (const QWidget *widget : editor.findChildren<QWidget *>()) {
        const bool input = (widget->focusPolicy() & Qt::TabFocus) && !widget->objectName().startsWith(u("qt_")) &&
                           widget->focusProxy() == nullptr && qobject_cast<const QLabel *>(widget) == nullptr &&
                           !widget->objectName().isEmpty();
        EXPECT_FALSE(input && widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
    }
}

TEST_F(ModelEditor, ShowsThePlaceOfYWhenThereIsNoModelYet)
{
    editor.resize(860, 260);
    editor.SetModel(model({"TOTEMP", "GNP"}));
    open();
    editor.resize(860, editor.minimumSizeHint().height());
    QScrollBar *const bar = part<QScrollArea>(editor, "Places")->verticalScrollBar();
    bar->setValue(bar->maximum());
    ASSERT_GT(bar->value(), 0);
    editor.SetModel(model({"TOTEMP", "GNP", "UNEMP"}));
    EXPECT_GT(bar->value(), 0) << "whoever is at work there stays there";
    editor.SetModel({});
    EXPECT_EQ(bar->value(), 0);
}
