// SPDX-License-Identifier: MIT
#include "select/Choicepage.h"
#include "select/Choices.h"

#include "platform/Messages.h"

// What the report of a choice says.

namespace {

using Forward = SelectionOver<TMLRTable, TFwdSelectMLR>;
using Stepwise = SelectionOver<TMLRTable, TStepWiseMLR>;
using Optimal = SelectionOver<TMLRTable, TOptimizeMLR>;

/// The report without its last line, the processing time.
QString reportOf(const TCorvane &search)
{
    return DisplayLines(search.Report()).section(text("\n\nProcessing Time: "), 0, 0);
}

} // namespace

TEST_F(Stepwise, TheReportShowsTheWay)
{
    fillCement();
    regression.SetDescription(text("Cement"));
    search.SetRule(TCorvane::Textbook);
    search.SetPIn(0.15);
    search.SetPOut(0.2);
    search.Run();
    EXPECT_TRUE(search.Report().startsWith(text("CORVANE OUTPUT REPORT\n\rCement\n\r\n\rStepwise regression, ")));
    EXPECT_EQ(reportOf(search), text(R"(CORVANE OUTPUT REPORT
Cement

Stepwise regression, by partial F, as textbooks do: y on a, b, c, d

All candidates share 13 observations, the records that every variable can use
(13 read, 0 left out).

A variable enters with p below 0.15. A variable leaves with p above 0.2. The
threshold to stay is never above the one to enter.

Step 1. Adding d: F = 22.7985, p = 0.000576232
----------------------------------------------

threshold F = 2.39494   SSE after = 883.867

Variable  Partial F      p-value
a          12.6025   0.00455204
b          21.9606   0.000664825
c           4.40342  0.0597623
d          22.7985   0.000576232  enters

Step 2. Adding a: F = 108.224, p = 1.10528e-06
----------------------------------------------

threshold F = 2.43122   SSE after = 74.7621

Variable   Partial F      p-value
a         108.224     1.10528e-06  enters
b           0.172484  0.686684
c          40.2946    8.37547e-05

Step 3. Adding b: F = 5.02586, p = 0.0516873
--------------------------------------------

threshold F = 2.47664   SSE after = 47.9727

Variable  Partial F    p-value
b           5.02586  0.0516873  enters
c           4.23585  0.0696923

Step 4. Removing d: F = 1.86326, p = 0.205395
---------------------------------------------

threshold F = 1.91277   SSE after = 57.9045

Variable  Partial F      p-value
a         154.008    5.78076e-07
b           5.02586  0.0516873
d           1.86326  0.205395     leaves

End. No variable above the threshold to enter, none below the one to stay
-------------------------------------------------------------------------

Variable  Partial F      p-value
c           1.83213  0.208889     could enter
d           1.86326  0.205395     could enter
a         146.523    2.69221e-07  could leave
b         208.582    5.02896e-08  could leave

The model that is left
----------------------

a, b.

* The p-values after a selection are too small and the intervals too narrow:
  they do not know that the model was chosen on the same records.)"));
}

TEST_F(Optimal, TheReportListsModelsBySizeWithTheirFiguresAndSaysWhatWasPutInTheirPlace)
{
    fillCement();
    search.SetOptCriteria(TOptimizeMLR::BIC);
    search.Run();
    const QString models = text(R"(The best model of each size
---------------------------

No.  Size      BIC        Variables        SSE        R²  adjusted R²        s²
1       1  99.4389        d           883.867   0.674542     0.644955  80.3515
2       2  66.5722  best  a, b         57.9045  0.978678     0.974414   5.79045
3       3  66.6910        a, b, d      47.9727  0.982335     0.976447   5.33030
4       4  69.2264        a, b, c, d   47.8636  0.982376     0.973563   5.98295

No.         F         Cp      AIC      PRESS
1     22.7985  138.731    97.7440  1194.22
2    229.504     2.67824  64.3124    93.8825
3    166.832     3.01823  63.8663    85.3511
4    111.479     5        65.8367   110.347

The model that is left
----------------------

)");
    EXPECT_TRUE(reportOf(search).contains(models + text("a, b: the smallest BIC of all subsets, 66.5722.")))
        << qPrintable(reportOf(search));
    EXPECT_EQ(search.Steps()[1], text("2 of 4: a, b, BIC = 66.5722."));
    // The box has no room for all that.
    ASSERT_FALSE(messages.shown.empty());
    EXPECT_EQ(messages.shown.back().text, search.Summary());
    EXPECT_EQ(DisplayLines(search.Summary()).section(text("\n\nProcessing Time: "), 0, 0),
              text(R"(CORVANE OUTPUT REPORT


Optimal subset, all subsets by BIC, as textbooks do: y on a, b, c, d

Left: a, b: the smallest BIC of all subsets, 66.5722.

* The p-values after a selection are too small and the intervals too narrow: they do not know that
  the model was chosen on the same records.)"));
    search.SelectModel(3);
    EXPECT_TRUE(reportOf(search).contains(
        models + text("a, b, d (number 3 of the list, put in the place of the chosen one).")))
        << qPrintable(reportOf(search));
    search.SelectModel(2); // the chosen one again
    EXPECT_TRUE(reportOf(search).contains(models + text("a, b: the smallest BIC of all subsets, 66.5722.")))
        << qPrintable(reportOf(search));
}

TEST_F(Forward, NullsAndImpossibleValuesAreAWarningThatNamesWhoTookThem)
{
    std::vector<Row> rows = cement();
    rows[2][3] = null;
    rows[4][3] = null;
    rows[6][4] = -1;
    fill("y a b c d", rows);
    define(regression, "a b c d");
    regression.ControlVar(4).SetTransformation(text("Log"));
    search.SetRule(TCorvane::Textbook);
    search.Run();
    EXPECT_TRUE(reportOf(search).contains(text("(13 read, 3 left out)")));
    const QStringList warnings = nuvo::choiceWarnings(*search.Choice());
    ASSERT_EQ(warnings.size(), 2);
    EXPECT_EQ(
        warnings[0],
        text("Nulls and impossible values took 3 of 13 records away from all candidates (c 2 null; Ln(d) 1 "
             "impossible). Without some of these variables there are more records, and the choice can be another "
             "one."));
    EXPECT_TRUE(warnings[1].startsWith(text("The p-values after a selection are too small")));
}

TEST_F(Forward, TheEndSaysWhyNothingMoreHappens)
{
    fillCement();
    search.SetRule(TCorvane::Textbook);
    search.SetFDefault(0);
    search.Run();
    EXPECT_EQ(search.Steps().last(), text("Every variable is in the model."));
    define(regression, "");
    for (int k = 1; k <= 4; ++k)
        regression.ControlVar(k).SetTransformation(text("Undefined"));
    search.Run();
    EXPECT_EQ(search.Steps(), QStringList(text("There is no variable to choose from.")));
}

TEST(ChoicePage, NamesThresholdsInWords)
{
    using nuvo::ChoiceThreshold;
    EXPECT_EQ(nuvo::thresholdText({ChoiceThreshold::Kind::Number, 4, {}}, true), text("F above 4"));
    EXPECT_EQ(nuvo::thresholdText({ChoiceThreshold::Kind::Number, 2.5, {}}, false), text("F below 2.5"));
    EXPECT_EQ(nuvo::thresholdText({ChoiceThreshold::Kind::Probability, 0.05, {}}, true), text("p below 0.05"));
    EXPECT_EQ(nuvo::thresholdText({ChoiceThreshold::Kind::Probability, 0.1, {}}, false), text("p above 0.1"));
    EXPECT_EQ(nuvo::thresholdText({ChoiceThreshold::Kind::Table, 0, text("95 Percent")}, true),
              text("F above \"95 Percent\" of the F table"));
}
