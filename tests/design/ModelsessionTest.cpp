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
