// SPDX-License-Identifier: MIT
// What the session with the model dialog and the SQL editor (session/Modelwalk.cpp) saw.

#include "design/Sessionseen.h"

TEST_F(Designer, DefinesAWholeModelInOneDialogAndOneStep)
{
    EXPECT_EQ(text("modelTitle"), u("mlrTable Model"));
    EXPECT_TRUE(yes("modelFieldFocus"));
    EXPECT_EQ(text("modelTerm"), u("Ln(GNP)"));
    EXPECT_EQ(list("modelDefinitions"),
              words("Undefined None TOTEMP Undefined Undefined 1;Active Log GNP Datafield2 1.00 10;"
                    "Active None UNEMP Datafield2 1.00 10;Active None YEAR Datafield2 1.00 10;"
                    "Inactive Undefined Datafield1 Datafield2 1.00 10"));
    EXPECT_EQ(seen("modelSteps").toInt(), 1);
    EXPECT_EQ(text("modelUndoText"), u("Change the model of \"mlrTable\""));
    EXPECT_TRUE(yes("modelUndone"));
    EXPECT_TRUE(yes("modelRedone"));
    EXPECT_TRUE(yes("modelLoads"));
    EXPECT_NEAR(seen("modelRSquared").toDouble(), 0.99, 0.01);
}

TEST_F(Designer, ChangesNothingOfAModelThatNobodyTouches)
{
    EXPECT_EQ(seen("modelStepsOfNothing").toInt(-1), 0) << "neither OK without a change nor Cancel is a step";
    EXPECT_TRUE(yes("modelSameForm"));
    EXPECT_EQ(list("modelAfterDelete"),
              words("Undefined None TOTEMP Undefined Undefined 1;Active Log GNP Datafield2 1.00 10;"
                    "Inactive Undefined Datafield1 Datafield2 1.00 10;Active None YEAR Datafield2 1.00 10;"
                    "Active Cube GNP a b c"));
}

TEST_F(Designer, AsksForTheStatementOfAQueryFirstAndTriesIt)
{
    EXPECT_EQ(text("queryMenu"), u("Edit SQL…"));
    EXPECT_EQ(text("sqlTitle"), u("mlrQuery SQL"));
    EXPECT_EQ(seen("sqlRows").toInt(), 10);
    EXPECT_EQ(list("sqlLines"), words("SELECT TOTEMP, GNP, YEAR FROM Longley"));
    EXPECT_EQ(seen("sqlSteps").toInt(), 1);
    EXPECT_EQ(text("sqlUndoText"), u("Change SQL of \"mlrQuery\""));
    EXPECT_TRUE(yes("sqlNotForTranslation"));
    EXPECT_TRUE(yes("sqlUndone"));
    EXPECT_EQ(text("sqlButton"), u("Edit…"));
    EXPECT_EQ(seen("sqlStepsOfNothing").toInt(-1), 0);
}

TEST_F(Designer, KnowsTheFieldsOfAQueryWhereverTheyAreNamed)
{
    EXPECT_EQ(text("afterSql"), u("mlrQuery Response Variable Definition"));
    EXPECT_EQ(list("queryFields"), words("TOTEMP;GNP;YEAR"));
    EXPECT_TRUE(yes("queryLoads"));
}

TEST_F(Designer, IsFifteenActionsAwayFromFigures)
{
    EXPECT_LE(seen("actionsToFigures").toInt(99), 15);
    EXPECT_EQ(text("figuresWindow"), u("StatisticsForm"));
    EXPECT_TRUE(yes("figuresAreThere"));
    EXPECT_EQ(list("messagesOnTheWay"), Strings());
}
