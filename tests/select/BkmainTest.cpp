// SPDX-License-Identifier: MIT
#include "select/Selections.h"

namespace {

using BackwardOnTable = SelectionOver<TMLRTable, TBackElimMLR>;
using BackwardOnQuery = SelectionOver<TMLRQuery, TBackElimMLR>;

constexpr char BackwardReport[] = "CORVANE OUTPUT REPORT\n\r\n\r\n\rBackward Elimination Removes Variable(s):\n\r\n\r"
                                  "   c\n\r\n\r\n\rProcessing Time: 00:00:00";

} // namespace

TEST_F(BackwardOnTable, TheFirstStatisticIsTheDegreesOfFreedom)
{
    // Deliberate: the mean square before is 0, so (MS - 0) / (MS / DOF) is DOF.
    fillCement();
    Trace trace;
    search.Run();
    const QStringList first = trace.of("candidate pass=1");
    ASSERT_EQ(first.size(), 4);
    for (const QString &candidate : first.first(3)) {
        EXPECT_EQ(traced(candidate, "best"), text("1"));
        EXPECT_EQ(traced(candidate, "f").toDouble(), 9);
    }
    EXPECT_EQ(traced(first[3], "best"), text("0"));
    EXPECT_EQ(trace.of("decision")[0], text("decision pass=1 remove=3 f=%1 critical=4").arg(traced(first[2], "f")));
}

TEST_F(BackwardOnTable, RemovesOneAndEndsWhenTheRemovedOneComesFirst)
{
    fillCement();
    Trace trace;
    search.Run();
    EXPECT_EQ(trace.lines.first(), text("start method=backward variables=4"));
    EXPECT_EQ(trace.lines.last(), text("end reason=converged passes=2 controls=3"));
    const QStringList second = trace.of("candidate pass=2");
    ASSERT_EQ(second.size(), 4) << "the removed candidate is not skipped";
    EXPECT_EQ(second[2], text("candidate pass=2 number=3 loaded=1 controls=3 dof=9 ms=%1 critical=4 best=1 f=0")
                             .arg(traced(second[2], "ms")))
        << "and no t2 is worked out for it";
    EXPECT_EQ(trace.of("decision")[1], text("decision pass=2 none f=0 critical=4"));
    EXPECT_EQ(search.Report(), text(BackwardReport));
    EXPECT_EQ(regression.GetNumVars(), 3);
    EXPECT_TRUE(regression.ResultsCurrent());
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(BackwardOnTable, TheStepPrintsTheT2ThatWasWorkedOutLast)
{
    // Deliberate: that of d (1.8633), examined last, in the model without c; not that of c, which was removed.
    fillCement();
    Trace trace;
    search.Run();
    const QStringList first = trace.of("candidate pass=1");
    EXPECT_NEAR(traced(first[0], "t2").toDouble(), 4.337474, 5e-7) << "of a, in the full model fitted before the run";
    EXPECT_NEAR(traced(first[3], "t2").toDouble(), 1.863262, 5e-7);
    EXPECT_EQ(search.Steps(), QStringList({text("Removing c:  Partial F = 1.8633.")}));
}

TEST_F(BackwardOnTable, OnAModelThatWasNotFittedTheFirstT2IsZero)
{
    fill("y a b c d", cement());
    define(regression, "a b c d");
    ASSERT_TRUE(regression.ReLoad());
    Trace trace;
    search.Run();
    EXPECT_EQ(traced(trace.of("candidate")[0], "t2"), text("0"));
    EXPECT_NE(traced(trace.of("candidate")[1], "t2"), text("0"));
}

TEST_F(BackwardOnQuery, SetsFullModelOnALineOfItsOwn)
{
    // The one difference between the two forms.
    fillCement();
    search.SetFDefault(20);
    search.SetShowReport(true);
    search.Run();
    const QString report = text("CORVANE OUTPUT REPORT\n\r\n\r\n\r\n\rFull Model.\n\r\n\rProcessing Time: 00:00:00");
    EXPECT_EQ(search.Report(), report);
    EXPECT_EQ(messages.shown, std::vector<Message>({{report, TMsgDlgType::mtInformation, mbOK, 0}}));
    prepare("a b c d");
    search.SetFDefault(4);
    search.Run();
    EXPECT_EQ(search.Report(), text(BackwardReport));
}

TEST_F(BackwardOnTable, SetsFullModelDirectlyAfterTheHead)
{
    fillCement();
    search.SetFDefault(20);
    search.Run();
    EXPECT_EQ(search.Report(), text("CORVANE OUTPUT REPORT\n\r\n\r\n\rFull Model.\n\r\n\rProcessing Time: 00:00:00"));
    EXPECT_EQ(regression.GetNumVars(), 4);
}

TEST_F(BackwardOnTable, WithoutAVariableThereIsOnePass)
{
    fill("y a", 5, [](int i) { return Row{i * i, i}; });
    prepare("");
    Trace trace;
    search.Run();
    EXPECT_EQ(search.Report(), text("Full Model.\n\r\n\rProcessing Time: 00:00:00"));
    EXPECT_EQ(trace.lines,
              QStringList({text("start method=backward variables=0"), text("decision pass=1 none f=0 critical=4"),
                           text("end reason=converged passes=1 controls=0")}));
}

TEST_F(BackwardOnTable, RemovesAsLongAsTheStatisticIsAbove)
{
    // With four observations of noise the removal of one more raises the mean square steeply each time, and the
    // removed candidate comes behind the best.
    fill("y a b c",
         {{1, 1, 2, 1}, {4, 2, 1, 5}, {2, 3, 5, 2}, {7, 4, 3, 3}, {3, 5, 4, 9}, {8, 6, 6, 4}, {5, 7, 2, 7}});
    prepare("a b c");
    search.SetFDefault(0.5);
    Trace trace;
    search.Run();
    for (const QString &decision : trace.of("decision")) {
        if (decision.contains(u"remove"))
            EXPECT_GT(traced(decision, "f").toDouble(), 0.5);
        else
            EXPECT_LE(traced(decision, "f").toDouble(), 0.5);
    }
    EXPECT_EQ(search.Ended(), TRunEnd::Converged);
}

TEST_F(BackwardOnTable, ACandidateThatCannotBeLoadedIsSkipped)
{
    fill("y a b", {{1, 1, 1}, {5, 1, 2}, {2, 1, 5}, {9, 1, 3}, {4, 2, null}, {6, 3, null}, {1, 4, null}});
    prepare("b");
    regression.SetControl(2, control("None", "a"));
    EXPECT_FALSE(regression.ReLoad());
    messages.shown.clear();
    Trace trace;
    search.Run();
    const QStringList candidates = trace.of("candidate");
    EXPECT_EQ(traced(candidates[0], "loaded"), text("1"));
    EXPECT_EQ(search.Ended(), TRunEnd::Converged);
    EXPECT_EQ(regression.GetNumVars(), 1);
}
