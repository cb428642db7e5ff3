// SPDX-License-Identifier: MIT
#include "select/Selections.h"

namespace {

using ForwardOnTable = SelectionOver<TMLRTable, TFwdSelectMLR>;
using ForwardOnQuery = SelectionOver<TMLRQuery, TFwdSelectMLR>;

constexpr char ForwardReport[] = "CORVANE OUTPUT REPORT\n\r\n\r\n\rForward Selection Adds Variable(s):\n\r\n\r"
                                 "   a\n\r   d\n\r\n\r\n\rProcessing Time: 00:00:00";

} // namespace

TEST_F(ForwardOnTable, ListsWhatItAddsInTheOrderOfTheControls)
{
    fillCement();
    search.Run();
    EXPECT_EQ(search.Steps(),
              QStringList({text("Adding d Partial F = 22.7985."), text("Adding a Partial F = 97.4763.")}))
        << "d went in first";
    EXPECT_EQ(search.Report(), text(ForwardReport));
    EXPECT_TRUE(regression.ResultsCurrent());
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(ForwardOnTable, TheTraceTellsEveryCandidateAndDecision)
{
    fillCement();
    Trace trace;
    search.Run();
    EXPECT_EQ(trace.lines.first(), text("start method=forward variables=4"));
    EXPECT_EQ(trace.lines.last(), text("end reason=converged passes=3 controls=2"));
    const QStringList candidates = trace.of("candidate");
    ASSERT_EQ(candidates.size(), 12);
    EXPECT_EQ(traced(candidates[0], "f").toDouble(), 12.60251766448121) << "the overall F of one variable";
    const double before = traced(candidates[3], "ms").toDouble();
    const double after = traced(candidates[4], "ms").toDouble();
    EXPECT_EQ(traced(candidates[4], "f").toDouble(), (before - after) / (after / 10));
    EXPECT_EQ(traced(candidates[7], "controls"), text("1")) << "one that is in already gives the model itself";
    EXPECT_EQ(traced(candidates[8], "f"), text("0"));
    EXPECT_TRUE(trace.of("check").isEmpty());
}

TEST_F(ForwardOnQuery, DoesTheSame)
{
    fillCement();
    search.SetShowReport(true);
    search.Run();
    EXPECT_EQ(search.Report(), text(ForwardReport));
    EXPECT_EQ(messages.shown, std::vector<Message>({{text(ForwardReport), TMsgDlgType::mtInformation, mbOK, 0}}));
}

TEST_F(ForwardOnTable, WhenAllAreAddedTheListEndsWithFullModel)
{
    fill("y a b", 12, [](int i) { return Row{3 * i + 2 * (i * 5 % 7) + (i % 3) * 0.01, i, i * 5 % 7}; });
    prepare("a b");
    search.Run();
    EXPECT_EQ(search.Report(), text("CORVANE OUTPUT REPORT\n\r\n\r\n\rForward Selection Adds Variable(s):\n\r\n\r"
                                    "   a\n\r   b\n\rFull Model.\n\r\n\rProcessing Time: 00:00:00"));
}

TEST_F(ForwardOnTable, WhereNothingEntersTheModelStaysEmpty)
{
    fillCement();
    search.SetFDefault(-60);
    search.Run();
    EXPECT_EQ(search.Report(), text("CORVANE OUTPUT REPORT\n\r\n\r\n\r\n\r\n\rProcessing Time: 00:00:00"));
    EXPECT_EQ(transformations(), QStringList(10, text("Undefined")));
}

TEST_F(ForwardOnTable, WithoutAVariableTheModelIsFullAndEmpty)
{
    fill("y a", 5, [](int i) { return Row{i * i, i}; });
    prepare("");
    search.Run();
    EXPECT_EQ(search.Report(), text("Full Model.\n\r\n\rProcessing Time: 00:00:00"));
}

TEST_F(ForwardOnTable, TiesKeepTheEarlierCandidate)
{
    fill("y a b", 8, [](int i) { return Row{i * i % 11 + 2 * i, i, i}; });
    prepare("a b");
    Trace trace;
    search.Run();
    EXPECT_EQ(traced(trace.of("candidate")[1], "best"), text("0"));
    EXPECT_EQ(search.Steps().first().left(9), text("Adding a "));
}

TEST_F(ForwardOnTable, OneObservationEnds)
{
    fill("y a b", {{3, 1, 2}});
    define(regression, "a b");
    regression.ReLoad();
    search.Run();
    EXPECT_EQ(search.Ended(), TRunEnd::Converged);
    EXPECT_FALSE(regression.Loaded());
}

TEST_F(ForwardOnTable, TheModelOfOneVariableEntersAgainAndAgainWhereNothingBeatsIt)
{
    // As written: while the model itself is the best candidate of the next pass and holds one variable, its statistic
    // is the overall F once more.
    fill("y a b c", {{3, 1, 2, 5}, {4, 2, 2.5, 1}, {7, 3, 9, 2}});
    prepare("a b c");
    Trace trace;
    search.Run();
    EXPECT_EQ(traced(trace.of("decision")[1], "add"), text("2"));
    EXPECT_EQ(trace.of("decision")[0].section(u' ', 2), trace.of("decision")[1].section(u' ', 2));
    EXPECT_EQ(search.Ended(), TRunEnd::Repeats);
    EXPECT_EQ(regression.GetNumVars(), 1);
}

TEST_F(ForwardOnTable, RowsAreIndexedAsWrittenWherePositionAndControlPart)
{
    // ControlVar02 and 03 are active. What belongs to them is written to ControlVar01 and 02, as the text of the
    // first active one reads a field that is not there.
    fill("y a b", 9, [](int i) { return Row{i * i % 7, i, i % 4}; });
    define(regression, "a a b");
    regression.SetControl(1, TIndepVar());
    ASSERT_TRUE(regression.ReLoad());
    const QStringList before = transformations();
    EXPECT_THROW(search.Run(), EDatabaseError);
    EXPECT_EQ(transformations(), before);
    EXPECT_TRUE(regression.ResultsCurrent());
    EXPECT_EQ(search.Report(), QString());
}
