// SPDX-License-Identifier: MIT
#include "select/Selections.h"

namespace {

using StepwiseOnTable = SelectionOver<TMLRTable, TStepWiseMLR>;
using StepwiseOnQuery = SelectionOver<TMLRQuery, TStepWiseMLR>;

constexpr char StepwiseReport[] = "CORVANE OUTPUT REPORT\n\r\n\r\n\rStepwise Regression Adds Variable(s):\n\r\n\r"
                                  "   a\n\r   d\n\r\n\r\n\rProcessing Time: 00:00:00";

} // namespace

TEST_F(StepwiseOnTable, AddsWhatEntersAndLeavesTheModelFitted)
{
    fillCement();
    search.Run();
    EXPECT_EQ(search.Report(), text(StepwiseReport));
    EXPECT_EQ(search.Steps(), QStringList({text("Added Variable d"), text("Added Variable a"),
                                           text("Checking included variables...")}));
    EXPECT_EQ(search.Ended(), TRunEnd::Converged);
    EXPECT_EQ(transformations().first(4),
              QStringList({text("None"), text("Undefined"), text("Undefined"), text("None")}));
    EXPECT_EQ(regression.GetNumVars(), 2);
    EXPECT_TRUE(regression.ResultsCurrent());
    EXPECT_TRUE(messages.shown.empty()) << "ShowReport is off";
}

TEST_F(StepwiseOnTable, TheTraceTellsEveryCandidateAndDecision)
{
    fillCement();
    Trace trace;
    search.Run();
    EXPECT_EQ(trace.lines.first(), text("start method=stepwise variables=4"));
    EXPECT_EQ(trace.lines.last(), text("end reason=converged passes=3 controls=2"));
    const QStringList candidates = trace.of("candidate");
    ASSERT_EQ(candidates.size(), 12) << "also those that are in the model already";
    EXPECT_EQ(candidates[0], text("candidate pass=1 number=1 loaded=1 controls=1 dof=11 ms=%1 critical=4 best=1 f=%2")
                                 .arg(traced(candidates[0], "ms"), traced(candidates[0], "f")));
    // Published: F to enter 12.60, 21.96, 4.40 and 22.80; then 108.22 (t2 of a beside d), 0.17 and 40.29.
    EXPECT_NEAR(traced(candidates[0], "f").toDouble(), 12.6025, 5e-5);
    EXPECT_NEAR(traced(candidates[1], "f").toDouble(), 21.9606, 5e-5);
    EXPECT_EQ(candidates[2], text("candidate pass=1 number=3 loaded=1 controls=1 dof=11 ms=%1 critical=4 best=0")
                                 .arg(traced(candidates[2], "ms")));
    EXPECT_NEAR(traced(candidates[3], "f").toDouble(), 22.7985, 5e-5);
    // The drop of the mean square, not of the sum of squares as in textbooks (108.22).
    const double before = traced(candidates[3], "ms").toDouble();
    const double after = traced(candidates[4], "ms").toDouble();
    EXPECT_EQ(traced(candidates[4], "f").toDouble(), (before - after) / (after / 10));
    const QStringList decisions = trace.of("decision");
    ASSERT_EQ(decisions.size(), 3);
    EXPECT_EQ(decisions[0], text("decision pass=1 add=4 f=%1 critical=4").arg(traced(candidates[3], "f")));
    EXPECT_EQ(decisions[1], text("decision pass=2 add=1 f=%1 critical=4").arg(traced(candidates[4], "f")));
    EXPECT_EQ(decisions[2], text("decision pass=3 none f=%1 critical=4").arg(traced(candidates[9], "f")));
    const QStringList checks = trace.of("check");
    ASSERT_EQ(checks.size(), 2);
    EXPECT_EQ(checks[0], text("check pass=2 position=2 t2=%1 critical=4 removed=0").arg(traced(checks[0], "t2")));
    EXPECT_NEAR(traced(checks[0], "t2").toDouble(), 159.295, 5e-4);
    EXPECT_NEAR(traced(checks[1], "t2").toDouble(), 108.224, 5e-4);
    EXPECT_EQ(trace.lines.indexOf(checks[0]), trace.lines.indexOf(decisions[1]) + 1);
}

TEST_F(StepwiseOnQuery, DoesTheSame)
{
    fillCement();
    search.SetShowReport(true);
    search.Run();
    EXPECT_EQ(search.Report(), text(StepwiseReport));
    EXPECT_EQ(messages.shown, std::vector<Message>({{text(StepwiseReport), TMsgDlgType::mtInformation, mbOK, 0}}));
}

TEST_F(StepwiseOnTable, TakesOutWhatALaterOneReplaces)
{
    // d was the first to go in; beside a and b its t2 is 1.86.
    fillCement();
    prepare("d a b c");
    search.SetFInDefault(3.5);
    search.SetFOutDefault(3.0);
    Trace trace;
    search.Run();
    EXPECT_EQ(search.Steps(),
              QStringList({text("Added Variable d"), text("Added Variable a"), text("Checking included variables..."),
                           text("Added Variable b"), text("Checking included variables..."), text("Removed d.")}));
    EXPECT_EQ(search.Report(), text("CORVANE OUTPUT REPORT\n\r\n\r\n\rStepwise Regression Adds Variable(s):\n\r\n\r"
                                    "   a\n\r   b\n\r\n\r\n\rProcessing Time: 00:00:00"));
    const QStringList checks = trace.of("check pass=3");
    ASSERT_EQ(checks.size(), 3);
    EXPECT_EQ(traced(checks[0], "position"), text("3")) << "the last one first";
    EXPECT_EQ(traced(checks[1], "position"), text("2"));
    EXPECT_EQ(checks[2], text("check pass=3 position=1 t2=%1 critical=3 removed=1").arg(traced(checks[2], "t2")));
    EXPECT_NEAR(traced(checks[2], "t2").toDouble(), 1.863262, 5e-7);
}

TEST_F(StepwiseOnTable, TheMeanSquareAfterARemovalIsTheNextOnesYardstick)
{
    fillCement();
    prepare("d a b c");
    search.SetFInDefault(3.5);
    search.SetFOutDefault(3.0);
    Trace trace;
    search.Run();
    const QStringList next = trace.of("candidate pass=4");
    ASSERT_EQ(next.size(), 4);
    // a and b alone are the model; the first candidate brings d back.
    const double previous = traced(next[1], "ms").toDouble();
    EXPECT_EQ(traced(next[1], "controls"), text("2"));
    EXPECT_EQ(traced(next[0], "best"), text("1"));
    const double after = traced(next[0], "ms").toDouble();
    EXPECT_EQ(traced(next[0], "f").toDouble(), (previous - after) / (after / 9));
}

TEST_F(StepwiseOnTable, AllVariablesThatEnterEndTheListWithFullModel)
{
    fill("y a b", 12, [](int i) { return Row{3 * i + 2 * (i * 5 % 7) + (i % 3) * 0.01, i, i * 5 % 7}; });
    prepare("a b");
    search.Run();
    EXPECT_EQ(search.Report(), text("CORVANE OUTPUT REPORT\n\r\n\r\n\rStepwise Regression Adds Variable(s):\n\r\n\r"
                                    "   a\n\r   b\n\rFull Model.\n\r\n\rProcessing Time: 00:00:00"));
}

TEST_F(StepwiseOnTable, WhereNothingEntersEveryVariableIsLeftOut)
{
    fillCement();
    search.SetFInDefault(60);
    search.Run();
    EXPECT_EQ(search.Report(), text("CORVANE OUTPUT REPORT\n\r\n\r\n\r\n\r\n\rProcessing Time: 00:00:00"));
    EXPECT_EQ(transformations(), QStringList(10, text("Undefined")));
    EXPECT_EQ(regression.GetNumVars(), 0);
    EXPECT_TRUE(search.Steps().isEmpty());
}

TEST_F(StepwiseOnTable, TheThresholdsAreAFunctionOfTheDefaults)
{
    fillCement();
    search.SetFInDefault(3.5);
    search.SetFOutDefault(3.0);
    search.Run();
    // b enters with 3.62 now, and d, whose t2 falls to 1.86, goes.
    EXPECT_EQ(search.Steps().mid(3, 3),
              QStringList({text("Added Variable b"), text("Checking included variables..."), text("Removed d.")}));
    EXPECT_EQ(regression.GetcVar(1).OutputTerm(), text("a"));
    EXPECT_EQ(regression.GetcVar(2).OutputTerm(), text("b"));
}

TEST_F(StepwiseOnTable, AT2AtTheThresholdStays)
{
    fillCement();
    Trace trace;
    search.Run();
    const double t2 = traced(trace.of("check")[1], "t2").toDouble();
    prepare("a b c d");
    search.SetFOutDefault(t2);
    search.Run();
    EXPECT_FALSE(search.Steps().contains(text("Removed a.")));
    prepare("a b c d");
    search.SetFOutDefault(std::nextafter(t2, 1e9));
    search.Run();
    EXPECT_TRUE(search.Steps().contains(text("Removed a.")));
}

TEST_F(StepwiseOnTable, AnExactFitOfOneVariableEntersWithAnInfiniteF)
{
    fill("y a b", 6, [](int i) { return Row{2 * i, i, i * i % 5}; });
    prepare("b a");
    Trace trace;
    search.Run();
    EXPECT_EQ(trace.of("decision")[0], text("decision pass=1 add=2 f=inf critical=4"));
    EXPECT_EQ(trace.of("decision")[1], text("decision pass=2 none f=0 critical=4")) << "0 / 0 stands as 0";
    EXPECT_EQ(regression.GetcVar(1).OutputTerm(), text("a"));
}

TEST_F(StepwiseOnTable, WithoutAVariableThereIsNothingToFit)
{
    fill("y a", 5, [](int i) { return Row{i * i, i}; });
    prepare("");
    Trace trace;
    search.Run();
    EXPECT_EQ(search.Report(), text("Full Model.\n\r\n\rProcessing Time: 00:00:00"));
    EXPECT_EQ(trace.lines,
              QStringList({text("start method=stepwise variables=0"), text("decision pass=1 none f=0 critical=4"),
                           text("end reason=converged passes=1 controls=0")}));
}

TEST_F(StepwiseOnTable, WhenNoCandidateCanBeLoadedTheReportHasNoHead)
{
    fill("y a b", 5, [](int) { return Row{3, 1, 2}; });
    define(regression, "a b");
    regression.ReLoad();
    search.Run();
    EXPECT_EQ(search.Report(), text("\n\r\n\rProcessing Time: 00:00:00"));
    EXPECT_EQ(search.Ended(), TRunEnd::Converged);
}

TEST_F(StepwiseOnTable, ModelsAndControlsArePutOntoTheComponent)
{
    fillCement();
    TMLRModel model;
    search.SaveModel(model);
    EXPECT_EQ(model.F, regression.GetF());
    std::array<TTermRow, 1> table;
    table[0].fill(text("Undefined"));
    EXPECT_TRUE(search.SetControl(table, 2, 0));
    EXPECT_EQ(regression.GetNumVars(), 3);
    search.SetControlByIndex(2, text("Undefined"));
    EXPECT_EQ(regression.ControlVar(3).Transformation(), text("Undefined"));
    search.SetModel(model);
    EXPECT_EQ(transformations().first(4), QStringList(4, text("None")));
    EXPECT_TRUE(search.SetControls(table, 0, 3));
    EXPECT_EQ(regression.GetNumVars(), 1);
}

TEST_F(StepwiseOnTable, ARemovalIsNotedByPositionInTheModel)
{
    // As written: d is the third variable of the model (a, b, d), so it is the third control, c, that is noted as
    // out. d is switched off, but the next pass has it in again.
    fillCement();
    search.SetFInDefault(3.5);
    search.SetFOutDefault(3.0);
    Trace trace;
    search.Run();
    EXPECT_EQ(search.Steps().last(), text("Removed d."));
    EXPECT_EQ(traced(trace.of("check pass=3")[0], "position"), text("3"));
    EXPECT_EQ(traced(trace.of("candidate pass=4")[0], "controls"), text("3"));
    EXPECT_EQ(search.Report(), text("CORVANE OUTPUT REPORT\n\r\n\r\n\rStepwise Regression Adds Variable(s):\n\r\n\r"
                                    "   a\n\r   b\n\r   d\n\r\n\r\n\rProcessing Time: 00:00:00"));
}

TEST_F(StepwiseOnTable, VariablesOfTheSameFieldEnd)
{
    fillCement();
    prepare("a b c d a b c d");
    search.SetFInDefault(0.1);
    search.SetFOutDefault(0.1);
    search.Run();
    EXPECT_FALSE(search.Running());
    EXPECT_TRUE(regression.Loaded());
}
