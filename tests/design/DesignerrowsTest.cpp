// SPDX-License-Identifier: MIT
// What the walks through Qt Designer with rows, menus and names (session/Rowswalk.cpp) and with a long fit
// (session/Fitwalk.cpp) saw.

#include "design/Sessionseen.h"

TEST_F(Designer, HasNoArrowThatResetsARow)
{
    EXPECT_EQ(list("rowsWithResetArrow"), Strings());
}

TEST_F(Designer, HidesWhatAComponentWithoutAFaceDoesNotHave)
{
    for (const char *property : {"font", "palette", "minimumSize", "toolTip", "styleSheet", "cursor", "geometry"})
        EXPECT_TRUE(list("hiddenProperties").contains(QLatin1String(property))) << property;
    EXPECT_GE(list("hiddenProperties").size(), 25);
}

TEST_F(Designer, ShowsTermsInTheRowsOfDefinitionsAndTheModelInOne)
{
    EXPECT_EQ(list("definitionRows"),
              (Strings{QStringLiteral("TOTEMP"), QStringLiteral("Ln(GNP)"), QStringLiteral("UNEMP"), QString()}));
    EXPECT_EQ(text("modelRow"), QStringLiteral("TOTEMP on Ln(GNP), UNEMP, YEAR"));
    EXPECT_EQ(text("defineButton"), QString::fromUtf8("Ln(GNP) …"));
    EXPECT_EQ(text("dialogOfModelRow"), QStringLiteral("mlrTable Model"));
}

TEST_F(Designer, KeepsRowsReadableAfterTheFormsOwnWereLookedAt)
{
    EXPECT_EQ(list("blankRows"), Strings());
}

TEST_F(Designer, ClearsADefinitionByItsRowAndUndoesIt)
{
    EXPECT_EQ(list("clearedByRow"), words("Inactive;Undefined;Datafield1;Datafield2;1.00;10"));
    EXPECT_EQ(text("clearedRow"), QString());
    EXPECT_EQ(text("modelAfterClear"), QStringLiteral("TOTEMP on UNEMP, YEAR"));
    EXPECT_FALSE(yes("clearButtonAfterwards"));
    EXPECT_EQ(text("clearText"), QStringLiteral("Clear ControlVar01 of \"mlrTable\""));
    EXPECT_EQ(seen("storedWhenCleared").toInt(), 11);
    EXPECT_EQ(list("afterUndoneClear"), words("Active;Log;GNP;Datafield2;1.00;10"));
    EXPECT_TRUE(yes("sameAfterUndoneClear"));
}

TEST_F(Designer, ClearsDefinitionsByTheMenuOneByOneOrAllInOneStep)
{
    EXPECT_EQ(list("clearMenu"), words("ControlVar01: Ln(GNP);ControlVar02: UNEMP;ControlVar03: YEAR;ResponseVarY: "
                                       "TOTEMP;;All of them"));
    EXPECT_EQ(text("modelWhenAllCleared"), QString());
    EXPECT_EQ(text("clearAllText"), QStringLiteral("Clear the definitions of \"mlrTable\""));
    EXPECT_FALSE(yes("clearEnabledWhenNothingIs"));
    EXPECT_TRUE(yes("sameAfterUndoneClearOfAll"));
}

TEST_F(Designer, TakesReferencesAlongWhenAComponentIsRenamedAndBackWithOneUndo)
{
    EXPECT_EQ(seen("stepsOfRenaming").toInt(), 1);
    EXPECT_EQ(text("datasetAfterRenaming"), QStringLiteral("jobs"));
    EXPECT_TRUE(yes("boundAfterRenaming"));
    EXPECT_TRUE(yes("savedAfterRenaming"));
    EXPECT_EQ(text("datasetAfterUndoneRenaming"), QStringLiteral("mlrTable"));
    EXPECT_TRUE(yes("sameAfterUndoneRenaming"));
    EXPECT_EQ(text("datasetAfterRedoneRenaming"), QStringLiteral("jobs"));
    EXPECT_EQ(text("datasetAfterTyping"), QStringLiteral("work"));
    EXPECT_TRUE(yes("sameAfterUndoneTyping"));
}

TEST_F(Designer, MarksAReferenceToWhatIsNotOnTheForm)
{
    EXPECT_EQ(text("rowOfMissing"), QStringLiteral("mlrTable (not on this form)"));
    EXPECT_TRUE(yes("markedIcon"));
    EXPECT_EQ(text("datasetOfMissing"), QStringLiteral("mlrTable"));
    EXPECT_EQ(text("rowWhenBack"), QStringLiteral("mlrTable"));
    EXPECT_TRUE(yes("plainIconWhenBack"));
    EXPECT_EQ(text("rowOfMissingTable"), QStringLiteral("gone (not on this form)"));
}

TEST_F(Designer, FitsACopyAndShowsItsStatisticsWithTheFormUntouched)
{
    EXPECT_TRUE(text("statisticsTitle").contains(QStringLiteral("Longley"))) << qPrintable(text("statisticsTitle"));
    EXPECT_EQ(list("messagesOfFitting"), Strings());
    EXPECT_TRUE(yes("sameAfterFitting"));
    EXPECT_FALSE(yes("loadedByFitting"));
    EXPECT_EQ(list("messagesWithoutDefinitions"), words("\"mlrTable\" has no response yet: define ResponseVarY."));
}

TEST_F(Designer, EscapeEndsALongFitWithoutAWindowAndWithTheFormUntouched)
{
    EXPECT_GE(seen("escapesOfLongFit").toInt(), 1) << "its progress was shown";
    EXPECT_FALSE(yes("windowAfterEscape"));
    EXPECT_EQ(list("messagesOfEscape"), Strings()) << "who has ended it knows";
    EXPECT_TRUE(yes("sameAfterEscape"));
    EXPECT_FALSE(yes("loadedAfterEscape"));
}

TEST_F(Designer, RunsACopyOfASelectionAndShowsItsChoice)
{
    ASSERT_EQ(list("reportOfChoosing").size(), 1);
    EXPECT_TRUE(list("reportOfChoosing").first().contains(QStringLiteral("Ln(GNP)")));
    EXPECT_TRUE(yes("sameAfterChoosing"));
    EXPECT_EQ(text("choiceTitle"), QStringLiteral("Choice of a model: Longley"));
    EXPECT_EQ(list("messagesOfTextbook"), Strings());
    EXPECT_EQ(list("messagesOfChoosingNothing"),
              words("stepWiseMLR finds no regression component called \"nobody\", its Dataset."));
}

TEST_F(Designer, PutsTheNameOfAServerTogetherInTheRowAndTakesItBack)
{
    if (text("connected") == QStringLiteral("not with the sanitizer"))
        GTEST_SKIP() << "Qt Designer runs with the address sanitizer.";
    EXPECT_EQ(text("connected"), QStringLiteral("postgresql://me@127.0.0.1:1/sales"));
    EXPECT_TRUE(text("connectionRefused").contains(QStringLiteral("refused")))
        << text("connectionRefused").toStdString();
    EXPECT_EQ(text("connectionUndone"), QStringLiteral(SESSION "/samples.db"));
}

TEST_F(Designer, StoresADatabaseBelowTheFormWithItsPathFromThereAndFindsIt)
{
    EXPECT_EQ(text("pickedBelow"), QStringLiteral("data/moved.db"));
    EXPECT_TRUE(list("tablesBelow").contains(QStringLiteral("Longley")));
    EXPECT_EQ(list("messagesOfBelow"), Strings());
    EXPECT_EQ(text("pickedElsewhere"), QStringLiteral(SESSION "/samples.db"));
    EXPECT_EQ(
        list("messagesOfNowhere"),
        Strings{QStringLiteral("Cannot open the database \"nowhere.db\": there is no such file beside the form, in "
                               "\"%1\", or in the working folder \"%2\", and no registered connection of that "
                               "name.")
                    .arg(list("folders").value(0), list("folders").value(1))});
}
