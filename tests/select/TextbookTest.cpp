// SPDX-License-Identifier: MIT
#include "select/Choices.h"

// The searches by partial F under the rule Textbook.

namespace {

using Forward = SelectionOver<TMLRTable, TFwdSelectMLR>;
using Backward = SelectionOver<TMLRTable, TBackElimMLR>;
using Stepwise = SelectionOver<TMLRTable, TStepWiseMLR>;

/// Of a step: F and p of a candidate.
const nuvo::StepCandidate &candidateOf(const nuvo::Choice &choice, int step, const char *term)
{
    for (const nuvo::StepCandidate &candidate : choice.search.path[std::size_t(step)].candidates) {
        if (choice.term(candidate.control) == text(term))
            return candidate;
    }
    throw std::out_of_range(term);
}

} // namespace

TEST_F(Forward, AddsTheLargestPartialFWhileItIsAboveTheThreshold)
{
    fillCement();
    search.SetRule(TCorvane::Textbook);
    search.Run();
    ASSERT_EQ(walk(search), text("+d +a +b ."));
    const nuvo::Choice &choice = *search.Choice();
    const auto &path = choice.search.path;
    // R 4.2, add1() and drop1().
    EXPECT_NEAR(path[0].f, 22.798520, 1e-6);
    EXPECT_NEAR(path[0].pValue, 0.0005762318, 1e-9);
    EXPECT_NEAR(path[0].sse, 883.86692, 1e-5);
    EXPECT_NEAR(path[1].f, 108.223909, 1e-6);
    EXPECT_NEAR(path[2].f, 5.025865, 1e-6);
    EXPECT_NEAR(path[2].pValue, 0.05168735, 1e-8);
    EXPECT_NEAR(path[2].sse, 47.97273, 1e-5);
    EXPECT_NEAR(candidateOf(choice, 0, "c").f, 4.403417, 1e-6);
    EXPECT_NEAR(candidateOf(choice, 0, "c").pValue, 0.05976232, 1e-8);
    ASSERT_EQ(path[3].candidates.size(), 1U) << "what is left, with its F";
    EXPECT_NEAR(path[3].candidates[0].f, 0.018233, 1e-6);
    EXPECT_EQ(choice.selected, 0b1011U);
    EXPECT_EQ(choice.observations, 13);
    EXPECT_EQ(selected(regression), text("a b d"));
    EXPECT_TRUE(regression.ResultsCurrent());
    EXPECT_EQ(regression.GetSSE(), path[2].sse);
    EXPECT_EQ(search.Ended(), TRunEnd::Converged);
}

TEST_F(Forward, AProbabilityGivesTheThresholdOfEachStep)
{
    fillCement();
    search.SetRule(TCorvane::Textbook);
    search.SetP(0.05);
    search.Run();
    EXPECT_EQ(walk(search), text("+d +a ."));
    EXPECT_NEAR(search.Choice()->search.path[0].threshold, 4.844336, 1e-6) << "1 and 11 degrees of freedom";
    EXPECT_NEAR(search.Choice()->search.path[1].threshold, 4.964603, 1e-6) << "1 and 10";
    search.SetP(0.052);
    prepare("a b c d");
    search.Run();
    EXPECT_EQ(walk(search), text("+d +a +b ."));
}

TEST_F(Forward, NothingAboveTheThresholdLeavesTheConstantAndTellsTheFOfAll)
{
    fillCement();
    search.SetRule(TCorvane::Textbook);
    search.SetFDefault(1000);
    search.Run();
    EXPECT_EQ(walk(search), text("."));
    EXPECT_EQ(search.Steps(), QStringList(text("No variable above the threshold.")));
    EXPECT_EQ(search.Choice()->search.path[0].candidates.size(), 4U);
    EXPECT_EQ(regression.GetNumVars(), 0);
    EXPECT_TRUE(regression.ResultsCurrent());
    EXPECT_NEAR(regression.Getb(0), 95.423077, 1e-6);
}

TEST_F(Backward, TakesOutTheSmallestPartialFWhileItIsBelowTheThreshold)
{
    fillCement();
    search.SetRule(TCorvane::Textbook);
    search.Run();
    ASSERT_EQ(walk(search), text("-c -d ."));
    EXPECT_NEAR(search.Choice()->search.path[0].f, 0.018233, 1e-6);
    EXPECT_NEAR(search.Choice()->search.path[1].f, 1.863262, 1e-6);
    EXPECT_EQ(selected(regression), text("a b"));
    EXPECT_NEAR(regression.GetSSE(), 57.90448, 1e-5);
    EXPECT_EQ(transformations().first(4),
              QStringList({text("None"), text("None"), text("Undefined"), text("Undefined")}));
}

TEST_F(Stepwise, TakesOutAgainWhatFallsBelow)
{
    fillCement();
    search.SetRule(TCorvane::Textbook);
    search.Run();
    EXPECT_EQ(walk(search), text("+d +a +b -d ."));
    EXPECT_EQ(selected(regression), text("a b"));
    EXPECT_NEAR(regression.Getb(1), 1.468306, 1e-6);
    const nuvo::SearchStep &end = search.Choice()->search.path.back();
    EXPECT_EQ(end.entering, 2);
    EXPECT_EQ(end.candidates.size(), 4U) << "those that could enter, then those that could leave";
}

TEST_F(Stepwise, AProbabilityToStayBelowTheOneToEnterOrNoneAtAllCountsAsThatOne)
{
    fillCement();
    search.SetRule(TCorvane::Textbook);
    search.SetPIn(0.15);
    for (const double pOut : {0.0, 0.01, 0.15}) {
        search.SetPOut(pOut);
        prepare("a b c d");
        search.Run();
        EXPECT_EQ(walk(search), text("+d +a +b -d .")) << pOut;
    }
    search.SetPOut(0.3);
    prepare("a b c d");
    search.Run();
    EXPECT_EQ(walk(search), text("+d +a +b .")) << "p of d is 0.2054";
}

TEST_F(Stepwise, AThresholdToStayAboveTheOneToEnterDoesNotGoRoundInCircles)
{
    fillCement();
    search.SetRule(TCorvane::Textbook);
    search.SetFInDefault(1);
    search.SetFOutDefault(1000);
    search.Run();
    EXPECT_EQ(search.Ended(), TRunEnd::Converged);
    EXPECT_EQ(walk(search), text("+d +a +b .")) << "with 1000 to stay nothing could";
}

TEST_F(Stepwise, ANumberAndAProbabilityStandBesideEachOther)
{
    fillCement();
    search.SetRule(TCorvane::Textbook);
    search.SetFInDefault(3);
    search.SetPOut(0.1);
    search.Run();
    EXPECT_EQ(walk(search), text("+d +a +b -d .")) << "F of 0.1 and 9 degrees of freedom is 3.36, which 3 caps";
    EXPECT_EQ(search.Choice()->search.path[3].threshold, 3);
    EXPECT_EQ(search.Choice()->remove.kind, nuvo::ChoiceThreshold::Kind::Probability);
    EXPECT_EQ(search.Choice()->enter.kind, nuvo::ChoiceThreshold::Kind::Number);
}

TEST_F(Stepwise, TheWrittenRuleKnowsNoProbabilitiesAndHasNoChoice)
{
    fillCement();
    search.Run();
    const QStringList steps = search.Steps();
    const QString model = selected(regression);
    search.SetPIn(0.5);
    search.SetPOut(7);
    prepare("a b c d");
    search.Run();
    EXPECT_EQ(search.Steps(), steps);
    EXPECT_EQ(selected(regression), model);
    EXPECT_EQ(search.Choice(), nullptr);
    search.SetRule(TCorvane::Textbook);
    search.SetPOut(0);
    search.Run();
    EXPECT_NE(search.Choice(), nullptr);
    search.SetRule(TCorvane::Written);
    search.Run();
    EXPECT_EQ(search.Choice(), nullptr) << "that of the run before is gone";
}

TEST_F(Stepwise, AllCandidatesShareTheRecordsThatAllControlsCanUse)
{
    std::vector<Row> rows = cement();
    rows[3][3] = null;
    fill("y a b c d", rows);
    prepare("a b c d");
    search.SetRule(TCorvane::Textbook);
    search.Run();
    EXPECT_EQ(selected(regression), text("a b")) << "c, whose null it is, is not in the model";
    EXPECT_EQ(regression.GetNumObs(), 12);
    EXPECT_EQ(regression.GetDOF(), 9);
    EXPECT_EQ(regression.GetRecord(4), 5);
    const nuvo::Choice &choice = *search.Choice();
    EXPECT_EQ(choice.observations, 12);
    EXPECT_EQ(choice.skipped(), 1);
    ASSERT_EQ(choice.leftOut.size(), 5U);
    EXPECT_EQ(choice.leftOut[3].term, text("c"));
    EXPECT_EQ(choice.leftOut[3].null, 1);
    EXPECT_EQ(regression.LeftOut().size(), 3U) << "of the model that is left";

    // The fit is the one of a table that never had the record.
    rows.erase(rows.begin() + 3);
    makeTable(*db, "without", "y a b c d", rows);
    TMLRTable without;
    bind(without, *db, "without");
    define(without, "a b");
    ASSERT_TRUE(without.ReLoad());
    without.Execute();
    for (int j = 0; j <= 2; ++j) {
        EXPECT_EQ(regression.Getb(j), without.Getb(j));
        EXPECT_EQ(regression.GetStdErr(j), without.GetStdErr(j));
    }
    EXPECT_EQ(regression.GetSSE(), without.GetSSE());
    EXPECT_EQ(regression.GetxBar(2), without.GetxBar(2));
    EXPECT_EQ(regression.GetxMax(2), without.GetxMax(2));
    EXPECT_EQ(regression.Gete(12), without.Gete(12));
    EXPECT_EQ(regression.GetPRESS(), without.GetPRESS());
    ASSERT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetNumObs(), 13) << "by itself the model has all its records";
}

TEST_F(Backward, OfStackLossLeavesOutTheConcentration)
{
    fill("loss air water acid", stackLoss());
    define(regression, "air water acid", "loss");
    search.SetRule(TCorvane::Textbook);
    search.SetP(0.05);
    search.Run();
    EXPECT_EQ(walk(search), text("-acid ."));
    // R 4.2: drop1(lm(stack.loss ~ ., stackloss), test = "F")
    EXPECT_NEAR(search.Choice()->search.path[0].f, 0.9473319, 1e-6);
    EXPECT_NEAR(search.Choice()->search.path[0].pValue, 0.3440461, 1e-6);
    EXPECT_NEAR(search.Choice()->search.path[0].sse, 188.7953, 1e-4);
}

TEST_F(Backward, ADependentControlIsLeftOutAndSaidSo)
{
    fill("y a b c", 12, [](int i) { return Row{i * i % 7 + i, i, i % 3, 2 * i + i % 3}; });
    define(regression, "a b c");
    search.SetRule(TCorvane::Textbook);
    search.SetFDefault(0);
    search.Run();
    EXPECT_EQ(selected(regression), text("a b"));
    EXPECT_EQ(search.Choice()->search.leftOut, 0b100U);
    EXPECT_TRUE(search.Report().contains(text("Left out at the beginning, as they depend on those before them: c.")));
}

TEST_F(Forward, AControlThatDoesNotVaryInTheSharedSampleNeverEnters)
{
    std::vector<Row> rows = cement();
    for (Row &row : rows)
        row.push_back(1);
    rows[0].back() = 2; // it varies, but only where c is null
    rows[0][3] = null;
    fill("y a b c d e", rows);
    define(regression, "a b c d e");
    search.SetRule(TCorvane::Textbook);
    search.SetFDefault(0);
    search.Run();
    EXPECT_EQ(selected(regression), text("a b c d"));
    EXPECT_TRUE(regression.ResultsCurrent());
    ASSERT_EQ(search.Choice()->search.path.back().candidates.size(), 1U);
    EXPECT_TRUE(search.Choice()->search.path.back().candidates[0].dependent);
    EXPECT_EQ(messages.shown, std::vector<Message>{invariantMessage()}) << "the load says so";
}

TEST_F(Forward, AnExactFitEndsTheSearch)
{
    fill("y a b c", 12, [](int i) { return Row{3 * i - 2 * (i % 5), i, i % 5, i * i % 11}; });
    define(regression, "a b c");
    search.SetRule(TCorvane::Textbook);
    search.Run();
    EXPECT_EQ(walk(search), text("+a +b ."));
    EXPECT_TRUE(std::isinf(search.Choice()->search.path[1].f));
    EXPECT_EQ(search.Choice()->search.path[1].sse, 0);
    EXPECT_EQ(search.Steps().mid(1),
              QStringList({text("Adding b: the fit becomes exact."), text("The model fits exactly.")}));
    EXPECT_EQ(regression.GetSSE(), 0);
}

TEST_F(Backward, FromAnExactFitLeavesWhatItDoesNotNeed)
{
    fill("y a b c", 12, [](int i) { return Row{3 * i - 2 * (i % 5), i, i % 5, i * i % 11}; });
    define(regression, "a b c");
    search.SetRule(TCorvane::Textbook);
    search.Run();
    EXPECT_EQ(search.Steps(), QStringList({text("Removing c: the fit is exact with it and without."),
                                           text("The model fits exactly.")}));
    EXPECT_EQ(selected(regression), text("a b"));
}

TEST_F(Forward, FewerRecordsThanControlsLeaveDegreesOfFreedomToTheModel)
{
    std::vector<Row> rows(cement().begin(), cement().begin() + 4);
    fill("y a b c d", rows);
    define(regression, "a b c d");
    search.SetRule(TCorvane::Textbook);
    search.SetFDefault(0);
    search.Run();
    EXPECT_EQ(regression.GetNumVars(), 2) << "of four observations";
    EXPECT_EQ(regression.GetDOF(), 1);
    EXPECT_TRUE(search.Steps().last().startsWith(text("No variable can enter: ")));
    EXPECT_EQ(messages.shown, std::vector<Message>{dofMessage()}) << "of the load with all of them";
}

TEST_F(Backward, WithoutDegreesOfFreedomNothingLeaves)
{
    std::vector<Row> rows(cement().begin(), cement().begin() + 5);
    fill("y a b c d", rows);
    define(regression, "a b c d");
    search.SetRule(TCorvane::Textbook);
    search.Run();
    EXPECT_EQ(walk(search), text("."));
    EXPECT_EQ(search.Steps().last(), text("No variable can be judged: there are no degrees of freedom."));
    EXPECT_EQ(selected(regression), text("a b c d"));
}
