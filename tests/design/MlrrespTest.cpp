// SPDX-License-Identifier: MIT
#include "design/Mlrresp.h"

#include "design/Definitiontest.h"
#include "platform/Errors.h"

#include <QGroupBox>

namespace {

TDependentVar variable(const char *transformation, const char *field, const char *factor = "1")
{
    TDependentVar definition;
    definition.SetTransformation(u(transformation));
    definition.SetField(u(field));
    definition.SetScaleFactor(u(factor));
    return definition;
}

Edited<TDependentVar> editTable(const TDependentVar &definition, const std::function<void(QDialog &)> &act)
{
    TMLRTable table;
    table.SetName(u("MLRTable1"));
    return openFor<TResponseDefDlg>(table, "ResponseVarY", definition, act, fieldNames());
}

Edited<TDependentVar> editQuery(const TDependentVar &definition, const std::function<void(QDialog &)> &act)
{
    TMLRQuery query;
    query.SetName(u("MLRQuery1"));
    return openFor<TResponseDefDlg>(query, "ResponseVarY", definition, act, {u("...")});
}

const char *const kItems[] = {"datafield", "ln(datafield)", "datafield/n", "1/(datafield)"};
const char *const kKeywords[] = {"None", "Log", "Scale", "Inverse"};

} // namespace

TEST(ResponseDialog, HasItsTexts)
{
    TResponseDefDlg form;
    EXPECT_EQ(form.windowTitle(), u("Response  Variable Definition"));
    EXPECT_EQ(form.size(), QSize(339, 337));
    EXPECT_EQ(form.font().pixelSize(), 13);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(part<QRadioButton>(form, qPrintable(QStringLiteral("RadioGroup1Item%1").arg(i)))->text(),
                  u(kItems[i]));
    EXPECT_EQ(textOf(form, "Label1"), u("divide datafield by the value"));
    EXPECT_EQ(shown(form, "cboxDivideBy"), u("1"));
    EXPECT_EQ(part<QComboBox>(form, "cboxDivideBy")->count(), 6);
    EXPECT_FALSE(canConfirm(form));
    EXPECT_TRUE(part<QPushButton>(form, "bbtnOK")->isDefault());
    EXPECT_EQ(textOf(form, "Label2"), u("Multivariate Regression"));
    EXPECT_EQ(textOf(form, "Label3"), u("Multivariate Regression"));
}

TEST(ResponseDialog, NamesTheComponentAndThePropertyAndCannotBeResized)
{
    editTable(TDependentVar(), [](QDialog &dialog) {
        EXPECT_EQ(dialog.windowTitle(), u("MLRTable1 Response Variable Definition"));
        EXPECT_EQ(part<QGroupBox>(dialog, "RadioGroup1")->title(), u("Set ResponseVarY to "));
        EXPECT_EQ(dialog.size(), QSize(339, 337));
        EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
        EXPECT_TRUE(inFront(dialog, "pnlTblX"));
        EXPECT_FALSE(part(dialog, "pnlQryX")->isVisible());
        EXPECT_FALSE(canConfirm(dialog)) << "no field is chosen";
        expectNothingIsClipped(dialog);
        dialog.close();
    });
    editQuery(TDependentVar(), [](QDialog &dialog) {
        EXPECT_TRUE(inFront(dialog, "pnlQryX"));
        EXPECT_FALSE(part(dialog, "pnlTblX")->isVisible());
        dialog.close();
    });
}

TEST(ResponseDialog, EveryFormIsStoredAndShown)
{
    const char *const terms[] = {"GNP", "ln(GNP)", "GNP/100", "1/(GNP)"};
    for (int item = 0; item < 4; ++item) {
        const auto act = [&](QDialog &dialog) {
            chooseItem(dialog, (item + 1) % 4);
            chooseItem(dialog, item);
            EXPECT_EQ(part(dialog, "cboxDivideBy")->isEnabled(), item == 2);
            EXPECT_EQ(term(dialog), u(terms[item]));
            confirm(dialog);
        };
        for (const auto &edited :
             {editTable(variable("None", "GNP", "100"), act), editQuery(variable("None", "GNP", "100"), act)}) {
            EXPECT_EQ(edited.variable.Transformation(), u(kKeywords[item]));
            EXPECT_EQ(edited.variable.FieldName(), u("GNP"));
            EXPECT_EQ(edited.variable.ScaleFactor(), u("100"));
            EXPECT_EQ(edited.variable.Strings(0), u("Undefined"));
            EXPECT_TRUE(edited.messages.isEmpty());
        }
    }
}

TEST(ResponseDialog, ItsFormsAreShownAgain)
{
    for (int item = 0; item < 4; ++item) {
        editTable(variable(kKeywords[item], "UNEMP", "1000"), [&](QDialog &dialog) {
            for (int i = 0; i < 4; ++i)
                EXPECT_EQ(
                    part<QRadioButton>(dialog, qPrintable(QStringLiteral("RadioGroup1Item%1").arg(i)))->isChecked(),
                    i == item);
            EXPECT_EQ(shown(dialog, "cboxTableX"), u("UNEMP"));
            EXPECT_EQ(part<QComboBox>(dialog, "cboxDivideBy")->currentIndex(), 2);
            EXPECT_EQ(dialog.focusWidget()->objectName(), u("cboxTableX"));
            dialog.close();
        });
    }
}

TEST(ResponseDialog, HelpTellsWhatEachFormDoesAndAQueryMustHaveTheField)
{
    const char *const texts[] = {
        "This will set ResponseVarY to the\n\rvalues of the database field with\n\rthe name listed in \"datafield\".",
        "This will set ResponseVarY to the\n\rnatural logarithm of the values of\n\rthe database field named in "
        "\"datafield\".\n\rNOTE: \"datafield\" must NOT contain\n\rANY non positive values.",
        "This will divide each element of ResponseVarY\n\rby the scale value below.",
        "This will set each element of ResponseVarY\n\rto the value of 1/\"datafield\".\n\r\n\rNOTE: \"datafield\" "
        "must NOT contain\n\rANY zero values."};
    const QString note = u("\n\r\n\rNOTE: \"datafield\" must be in the\n\rquery's result dataset.");
    const auto expectTexts = [&](const QString &end) {
        return [&texts, end](QDialog &dialog) {
            for (int item = 0; item < 4; ++item) {
                chooseItem(dialog, item);
                EXPECT_EQ(helpText(dialog), u(texts[item]) + end);
            }
            dialog.close();
        };
    };
    editTable(TDependentVar(), expectTexts(QString()));
    editQuery(TDependentVar(), expectTexts(note));
}

TEST(ResponseDialog, CancelEscapeAndClosingLeaveTheVariableAsItWas)
{
    const TDependentVar before = variable("Scale", "GNP", "100");
    const std::function<void(QDialog &)> ends[] = {
        [](QDialog &dialog) { cancel(dialog); },
        [](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
        [](QDialog &dialog) { dialog.close(); },
    };
    for (const auto &end : ends) {
        const auto edited = editTable(before, [&](QDialog &dialog) {
            type(dialog, "cboxDivideBy", "7");
            pick(dialog, "cboxTableX", u("YEAR"));
            chooseItem(dialog, 1);
            EXPECT_EQ(term(dialog), u("ln(YEAR)"));
            end(dialog);
        });
        EXPECT_EQ(edited.variable.ToQStringList(), before.ToQStringList());
    }
}

TEST(ResponseDialog, ADivisorOfZeroStoresOneAndIsNotTaken)
{
    const auto edited = editTable(variable("Scale", "GNP", "100"), [](QDialog &dialog) {
        type(dialog, "cboxDivideBy", "0");
        EXPECT_FALSE(canConfirm(dialog));
        pick(dialog, "cboxTableX", u("POP")); // asks for the field alone
        EXPECT_EQ(term(dialog), u("POP/1"));
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.ScaleFactor(), u("1"));
    const auto query = editQuery(variable("Scale", "GNP", "100"), [](QDialog &dialog) {
        type(dialog, "cboxDivideBy", "0");
        EXPECT_FALSE(canConfirm(dialog));
        type(dialog, "edStringX", "AGE");
        EXPECT_EQ(term(dialog), u("AGE/1"));
        confirm(dialog);
    });
    EXPECT_EQ(query.variable.ScaleFactor(), u("1"));
}

TEST(ResponseDialog, ATablesDivisorIsEnoughEvenWithoutAField)
{
    const auto edited = editTable(variable("None", "GONE"), [](QDialog &dialog) {
        chooseItem(dialog, 2);
        EXPECT_FALSE(canConfirm(dialog));
        type(dialog, "cboxDivideBy", "5");
        EXPECT_EQ(textOf(dialog, "Label1"), u("Divide  by the value:"));
        EXPECT_EQ(term(dialog), u("/5"));
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.FieldName(), QString()) << "the text of the list";
    EXPECT_EQ(edited.variable.ScaleFactor(), u("5"));
}

TEST(ResponseDialog, AQueryNeedsANameAndADivisor)
{
    const auto edited = editQuery(variable("Scale", "GNP", "100"), [](QDialog &dialog) {
        type(dialog, "edStringX", "");
        EXPECT_FALSE(canConfirm(dialog));
        type(dialog, "cboxDivideBy", "5");
        EXPECT_FALSE(canConfirm(dialog));
        EXPECT_EQ(textOf(dialog, "Label1"), u("Scale  by the value:"));
        type(dialog, "edStringX", "AGE");
        EXPECT_TRUE(canConfirm(dialog));
        type(dialog, "cboxDivideBy", "50");
        EXPECT_EQ(textOf(dialog, "Label1"), u("Scale AGE by the value:"));
        EXPECT_EQ(term(dialog), u("AGE/50"));
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.FieldName(), u("AGE"));
    EXPECT_EQ(edited.variable.ScaleFactor(), u("50"));
}

TEST(ResponseDialog, TheDivisorsLabelNamesTheField)
{
    editTable(variable("Scale", "GNP", "100"), [](QDialog &dialog) {
        EXPECT_EQ(textOf(dialog, "Label1"), u("divide datafield by the value"));
        pick(dialog, "cboxDivideBy", u("10"));
        EXPECT_EQ(textOf(dialog, "Label1"), u("Divide GNP by the value:"));
        type(dialog, "cboxDivideBy", "0");
        EXPECT_EQ(textOf(dialog, "Label1"), u("Divide GNP by the value:"));
        dialog.close();
    });
}

TEST(ResponseDialog, ATextThatIsNoNumberIsSaidOnceAndTheDialogStays)
{
    for (const char *wrong : {"abc", "", "1/2", "-"}) {
        const auto edited = editQuery(variable("Scale", "GNP", "100"), [&](QDialog &dialog) {
            type(dialog, "cboxDivideBy", wrong);
            EXPECT_FALSE(canConfirm(dialog)) << wrong;
            leave(dialog);
            EXPECT_TRUE(dialog.isVisible());
            type(dialog, "cboxDivideBy", "2");
            confirm(dialog);
        });
        EXPECT_EQ(edited.messages, QStringList(QStringLiteral("\"%1\" is not a number").arg(u(wrong))));
        EXPECT_EQ(edited.variable.ScaleFactor(), u("2"));
    }
}

TEST(ResponseDialog, AnUnknownTransformationSelectsNothing)
{
    editTable(variable("Sqrt", "GNP"), [](QDialog &dialog) {
        for (int i = 0; i < 4; ++i)
            EXPECT_FALSE(
                part<QRadioButton>(dialog, qPrintable(QStringLiteral("RadioGroup1Item%1").arg(i)))->isChecked());
        EXPECT_FALSE(canConfirm(dialog));
        dialog.close();
    });
}

TEST(ResponseDialog, ADefinitionOfTooFewStringsIsAnErrorOfTheCaller)
{
    TMLRTable table;
    TDependentVar definition;
    definition.Assign(QStringList());
    EXPECT_THROW(TResponseDefDlg().OpenForm(table, u("ResponseVarY"), fieldNames(), definition), EStringListError);
    EXPECT_EQ(definition.Count(), 0);
}

TEST(ResponseDialog, ReturnConfirmsAndTabGoesThroughWhatCanBeEntered)
{
    const auto edited = editTable(variable("Scale", "GNP", "100"), [](QDialog &dialog) {
        expectAccessible(dialog);
        part(dialog, "RadioGroup1Item2")->setFocus();
        for (const char *next :
             {"cboxTableX", "cboxDivideBy", "bbtnOK", "bbtnCancel", "bbtnHelp", "RadioGroup1Item2"}) {
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
            EXPECT_EQ(dialog.focusWidget()->objectName(), u(next));
        }
        pick(dialog, "cboxTableX", u("POP"));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(edited.variable.FieldName(), u("POP"));
}

TEST(ResponseDialog, GrowsWithLongNamesSoThatNothingIsCut)
{
    const QByteArray name = QByteArray("CONSUMPTION_OF_ENERGY_") + QByteArray(40, 'X');
    editQuery(variable("Scale", name.constData(), "1000"), [](QDialog &dialog) {
        type(dialog, "cboxDivideBy", "12345");
        EXPECT_GT(dialog.width(), 339);
        expectNothingIsClipped(dialog);
        dialog.close();
    });
}
