// SPDX-License-Identifier: MIT
#include "design/Mlrctrldialog.h"

#include "platform/Errors.h"

TEST(ControlDialog, AFreshVariableIsInactiveAndThatIsComplete)
{
    const auto edited = editTable(TIndepVar(), [](QDialog &dialog) {
        EXPECT_TRUE(part<QRadioButton>(dialog, "RadioGroup1Item0")->isChecked());
        EXPECT_EQ(term(dialog), u("Inactive"));
        EXPECT_FALSE(part(dialog, "cboxTableX")->isEnabled());
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.ToQStringList(), TIndepVar().ToQStringList());
}

TEST(ControlDialog, EveryFormOfAQueryIsStoredAndShown)
{
    const char *const terms[] = {"Inactive", "AGE",     "ln(AGE)",  "1/(AGE)", "AGE^1/2",
                                 "AGE^2",    "AGE/100", "AGE*COST", "AGE/COST"};
    for (int item = 0; item < 9; ++item) {
        const auto edited = editQuery(variable("None", "AGE", "COST", "2", "100"), [&](QDialog &dialog) {
            chooseItem(dialog, item);
            EXPECT_EQ(term(dialog), u(terms[item]));
            confirm(dialog);
        });
        EXPECT_EQ(edited.variable.Transformation(), u(kKeywords[item]));
        EXPECT_EQ(edited.variable.Usage(), item == 0 ? u("Inactive") : u("Active"));
        EXPECT_EQ(edited.variable.Field1(), u("AGE"));
        EXPECT_EQ(edited.variable.Field2(), u("COST"));
        EXPECT_EQ(edited.variable.Exponent(), item == 4 ? u("0.5") : u("2"));
        EXPECT_TRUE(edited.messages.isEmpty());
    }
}

TEST(ControlDialog, EveryFormOfATableIsStoredAndShown)
{
    const char *const terms[] = {"Inactive", "GNP",      "ln(GNP)", "1/(GNP)", "GNP^1/2",
                                 "GNP^3",    "GNP/1000", "GNP*POP", "GNP/POP"};
    for (int item = 1; item < 9; ++item) {
        const auto edited = editTable(TIndepVar(), [&](QDialog &dialog) {
            chooseItem(dialog, item);
            EXPECT_EQ(part(dialog, "cboxTableY")->isEnabled(), item >= 7);
            EXPECT_EQ(part(dialog, "cboxpwrY")->isEnabled(), item == 5);
            EXPECT_EQ(part(dialog, "cboxDivideBy")->isEnabled(), item == 6);
            pick(dialog, "cboxTableX", u("GNP"));
            if (item == 5)
                pick(dialog, "cboxpwrY", u("3"));
            if (item == 6)
                pick(dialog, "cboxDivideBy", u("1000"));
            if (item >= 7) {
                EXPECT_FALSE(canConfirm(dialog)) << "the second field is still open";
                EXPECT_EQ(term(dialog), QString());
                pick(dialog, "cboxTableY", u("POP"));
            }
            EXPECT_EQ(term(dialog), u(terms[item]));
            confirm(dialog);
        });
        EXPECT_EQ(edited.variable.Transformation(), u(kKeywords[item]));
        EXPECT_EQ(edited.variable.Usage(), u("Active"));
        EXPECT_EQ(edited.variable.Field1(), u("GNP"));
        EXPECT_EQ(edited.variable.Field2(), item >= 7 ? u("POP") : u("Datafield2"));
        EXPECT_EQ(edited.variable.Exponent(), item == 4 ? u("0.5") : item == 5 ? u("3") : u("1.00"));
        EXPECT_EQ(edited.variable.ScaleFactor(), item == 6 ? u("1000") : u("10"));
    }
}

TEST(ControlDialog, ItsFormsAreShownAgain)
{
    for (int item = 0; item < 9; ++item) {
        editTable(variable(kKeywords[item], "GNP", "POP", "2", "100"), [&](QDialog &dialog) {
            for (int i = 0; i < 9; ++i)
                EXPECT_EQ(
                    part<QRadioButton>(dialog, qPrintable(QStringLiteral("RadioGroup1Item%1").arg(i)))->isChecked(),
                    i == item);
            EXPECT_EQ(shown(dialog, "cboxTableX"), u("GNP"));
            EXPECT_EQ(shown(dialog, "cboxTableY"), u("POP"));
            EXPECT_EQ(shown(dialog, "cboxpwrY"), item == 4 ? u("1/2") : u("2"));
            EXPECT_EQ(part<QComboBox>(dialog, "cboxDivideBy")->currentIndex(), 1);
            expectInFront(dialog, item == 4 || item == 5 ? "pnlXpwry" : item == 6 ? "pnlScaleX" : "pnlTblY");
            EXPECT_TRUE(canConfirm(dialog));
            dialog.close();
        });
    }
}

TEST(ControlDialog, HelpTellsWhatEachFormDoes)
{
    const char *const texts[] = {
        "The Inactive option disables ControlVar03.",
        "This will set ControlVar03 to the\n\rvalues of the database field with\n\rthe name listed in "
        "\"datafield1\".",
        "This will set ControlVar03 to the\n\rnatural logarithm of the values of\n\rthe database field named in "
        "\"datafield1\".",
        "This will set ControlVar03 to\n\r1 divided by the values of\n\rthe database field named in "
        "\"datafield1\".\n\r\n\rNOTE: All values must be nonzero.",
        "This will set ControlVar03 to the\n\rsquare root of the values of\n\r\"datafield1\".\n\r\n\rAll values must "
        "be >= 0.",
        "This will set ControlVar03 to the\n\rvalues of database field named in\n\r\"datafield1\" raised to the "
        "power\n\rentered below.",
        "This will set each element of ControlVar03\n\rto the value of the database field named "
        "in\n\r\"datafield1\", divided by the value below.",
        "This will set each element of ControlVar03\n\rto the value of the database field named "
        "in\n\r\"datafield1\", multiplied by the value of the\n\rdatabase field named in \"datafield2\".",
        "This will set each element of ControlVar03\n\rto the value of the database field named "
        "in\n\r\"datafield1\", divided by the value of the\n\rdatabase field named in \"datafield2\"."};
    const QString one = u("\n\r\n\rNOTE: \"datafield1\" must be in the\n\rquery's result dataset.");
    const QString both =
        u("\n\r\n\rNOTE: Both \"datafield1\" and \"datafield2\"\n\rmust be in the query's result dataset.");
    editTable(TIndepVar(), [&](QDialog &dialog) {
        for (int item = 0; item < 9; ++item) {
            chooseItem(dialog, item);
            EXPECT_EQ(helpText(dialog), u(texts[item]));
        }
        dialog.close();
    });
    editQuery(TIndepVar(), [&](QDialog &dialog) {
        for (int item = 0; item < 9; ++item) {
            chooseItem(dialog, item);
            const QString note = item == 0   ? QString()
                                 : item < 7  ? one
                                 : item == 7 ? both
                                             : both + u("\n\rALL values in datafield2 MUST be nonzero.");
            EXPECT_EQ(helpText(dialog), u(texts[item]) + note);
        }
        dialog.close();
    });
}

TEST(ControlDialog, CancelEscapeAndClosingLeaveTheVariableAsItWas)
{
    const TIndepVar before = variable("Scale", "GNP", "POP", "4", "100");
    const std::function<void(QDialog &)> ends[] = {
        [](QDialog &dialog) { cancel(dialog); },
        [](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
        [](QDialog &dialog) { dialog.close(); },
    };
    for (const auto &end : ends) {
        const auto edited = editTable(before, [&](QDialog &dialog) {
            type(dialog, "cboxDivideBy", "7");
            chooseItem(dialog, 5);
            type(dialog, "cboxpwrY", "3");
            pick(dialog, "cboxTableX", u("YEAR"));
            chooseItem(dialog, 8);
            pick(dialog, "cboxTableY", u("UNEMP"));
            EXPECT_EQ(term(dialog), u("YEAR/UNEMP"));
            chooseItem(dialog, 0);
            end(dialog);
        });
        EXPECT_EQ(edited.variable.ToQStringList(), before.ToQStringList());
        EXPECT_TRUE(edited.messages.isEmpty());
    }
}

TEST(ControlDialog, TheSquareRootSelectsOneHalf)
{
    const auto edited = editTable(variable("Power", "GNP", "POP", "3"), [](QDialog &dialog) {
        EXPECT_EQ(shown(dialog, "cboxpwrY"), u("3"));
        chooseItem(dialog, 4);
        EXPECT_EQ(shown(dialog, "cboxpwrY"), u("1/2"));
        EXPECT_EQ(term(dialog), u("GNP^1/2"));
        EXPECT_FALSE(part(dialog, "cboxpwrY")->isEnabled());
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.Transformation(), u("Sqrt"));
    EXPECT_EQ(edited.variable.Exponent(), u("0.5"));
}

TEST(ControlDialog, ATableWithoutAChosenFieldIsCompleteOnlyWhenInactive)
{
    editTable(TIndepVar(), [](QDialog &dialog) {
        for (int item = 0; item < 9; ++item) {
            chooseItem(dialog, item);
            EXPECT_EQ(canConfirm(dialog), item == 0) << kItems[item];
            EXPECT_EQ(term(dialog), item == 0 ? u("Inactive") : QString());
            if (item == 7 || item == 8)
                pick(dialog, "cboxTableY", u("POP"));
            EXPECT_EQ(canConfirm(dialog), item == 0) << kItems[item];
        }
        dialog.close();
    });
}

TEST(ControlDialog, AQueryNeedsAName)
{
    editQuery(variable("None", "AGE", "COST"), [](QDialog &dialog) {
        type(dialog, "edStringX", "");
        for (int item = 1; item < 9; ++item) {
            chooseItem(dialog, item);
            EXPECT_FALSE(canConfirm(dialog)) << kItems[item];
        }
        type(dialog, "edStringX", "W");
        EXPECT_TRUE(canConfirm(dialog));
        EXPECT_EQ(term(dialog), u("W/COST"));
        type(dialog, "edStringY", "");
        EXPECT_FALSE(canConfirm(dialog));
        dialog.close();
    });
}

TEST(ControlDialog, TheExponentsLabelIsSetByBothPanels)
{
    editTable(variable("None", "GNP"), [](QDialog &dialog) {
        chooseItem(dialog, 5);
        EXPECT_EQ(textOf(dialog, "Label4"), u("Raise GNP to the power:"));
        chooseItem(dialog, 6);
        EXPECT_EQ(textOf(dialog, "Label4"), u("Scale GNP by the value:"));
        EXPECT_EQ(textOf(dialog, "Label8"), u("Divide datafield1 by the value:"));
        pick(dialog, "cboxTableX", u("POP"));
        EXPECT_EQ(textOf(dialog, "Label4"), u("Scale POP by the value:"));
        dialog.close();
    });
}

TEST(ControlDialog, AFieldThatIsNotInTheListIsNotSelected)
{
    const TIndepVar before = variable("Log", "GONE", "POP");
    const auto edited = editTable(before, [](QDialog &dialog) {
        EXPECT_EQ(part<QComboBox>(dialog, "cboxTableX")->currentIndex(), -1);
        EXPECT_FALSE(canConfirm(dialog));
        cancel(dialog);
    });
    EXPECT_EQ(edited.variable.ToQStringList(), before.ToQStringList());
}

TEST(ControlDialog, FieldNamesIgnoreUpperAndLowerCaseWhereNoneIsTheSame)
{
    editTable(variable("None", "gnp", "Pop"), [](QDialog &dialog) {
        EXPECT_EQ(shown(dialog, "cboxTableX"), u("GNP"));
        EXPECT_EQ(shown(dialog, "cboxTableY"), u("POP"));
        EXPECT_TRUE(canConfirm(dialog));
        dialog.close();
    });
    editTable(variable("None", "age"),
              [](QDialog &dialog) {
                  EXPECT_EQ(shown(dialog, "cboxTableX"), u("age"));
                  dialog.close();
              },
              {u("AGE"), u("age")});
}

TEST(ControlDialog, AnUnknownTransformationSelectsNothing)
{
    const TIndepVar before = variable("Cube", "GNP");
    const auto edited = editTable(before, [](QDialog &dialog) {
        for (int i = 0; i < 9; ++i)
            EXPECT_FALSE(
                part<QRadioButton>(dialog, qPrintable(QStringLiteral("RadioGroup1Item%1").arg(i)))->isChecked());
        EXPECT_FALSE(canConfirm(dialog));
        EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
        chooseItem(dialog, 1);
        EXPECT_TRUE(canConfirm(dialog));
        dialog.close();
    });
    EXPECT_EQ(edited.variable.ToQStringList(), before.ToQStringList());
}

TEST(ControlDialog, FillingIsSilentAndThenTheHandlerRunsOnce)
{
    class Counting : public TControlDefDlg
    {
    public:
        int clicks = 0;
        int validations = 0;

    protected:
        void RadioGroup1Click() override
        {
            ++clicks;
            TControlDefDlg::RadioGroup1Click();
        }
        void ValidateData() override
        {
            ++validations;
            TControlDefDlg::ValidateData();
        }
    };
    TMLRTable table;
    Counting dialog;
    TIndepVar definition = variable("Scale", "GNP", "POP", "3", "7");
    const TModalRunner before = SetModalRunner([](QDialog &) { return int(QDialog::Rejected); });
    dialog.OpenForm(table, u("ControlVar01"), fieldNames(), definition);
    EXPECT_EQ(dialog.clicks, 1);
    EXPECT_EQ(dialog.validations, 1);
    definition = variable("Cube", "GNP");
    dialog.OpenForm(table, u("ControlVar01"), fieldNames(), definition);
    EXPECT_EQ(dialog.clicks, 1);
    SetModalRunner(before);
}

TEST(ControlDialog, ADefinitionOfTooFewStringsIsAnErrorOfTheCaller)
{
    TMLRTable table;
    TIndepVar definition;
    definition.Assign(QStringList{u("Active"), u("Log"), u("GNP")});
    const QStringList before = definition.ToQStringList();
    EXPECT_THROW(TControlDefDlg().OpenForm(table, u("ControlVar01"), fieldNames(), definition), EStringListError);
    EXPECT_EQ(definition.ToQStringList(), before);
}
