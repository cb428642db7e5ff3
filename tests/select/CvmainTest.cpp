// SPDX-License-Identifier: MIT
#include "select/Selections.h"

#include "platform/Formats.h"

#include <random>

namespace {

using OptimalOnTable = SelectionOver<TMLRTable, TOptimizeMLR>;
using OptimalOnQuery = SelectionOver<TMLRQuery, TOptimizeMLR>;

TMLRModel model(double f, double rSquared, double sSquared)
{
    TMLRModel made;
    made.F = f;
    made.RSquared = rSquared;
    made.SSquared = sSquared;
    return made;
}

Message information(const char *words)
{
    return {text(words), TMsgDlgType::mtInformation, mbOK, 0};
}

constexpr char FullReport[] = "CORVANE OUTPUT REPORT\n\r\n\r\n\rFull (Current) Model is Optimal.\n\r"
                              "No variables removed.\n\r\n\rProcessing Time: 00:00:00";

} // namespace

TEST_F(OptimalOnTable, TriesEverySubsetTheLastControlFastest)
{
    fill("y a b c", 9, [](int i) { return Row{i * i % 7, i, i % 4, i % 3}; });
    prepare("a b c");
    QStringList subsets;
    QObject::connect(&regression, &TMLRTable::LoadEnded, &search, [&] {
        QString subset;
        for (int k = 1; k <= 3; ++k)
            subset += regression.ControlVar(k).Transformation() == u"Undefined" ? u'0' : u'1';
        subsets.append(subset);
    });
    search.Run();
    EXPECT_EQ(subsets.first(7), text("001 010 011 100 101 110 111").split(u' '));
    EXPECT_EQ(subsets.size(), 8) << "the model chosen is loaded once more";
}

TEST_F(OptimalOnTable, KeepsWhatOthersWriteIntoADefinitionMeanwhile)
{
    fill("y a b c", 9, [](int i) { return Row{i * i % 7, i, i % 4, i % 3}; });
    prepare("a b c");
    int loads = 0;
    QObject::connect(&regression, &TMLRTable::LoadEnded, &search, [&] {
        if (++loads == 4) {
            regression.ControlVar(1).SetExponent(text("3"));
            regression.ControlVar(2).SetExponent(text("4"));
            regression.ControlVar(3).SetExponent(text("5"));
        }
    });
    search.Run();
    ASSERT_EQ(loads, 8);
    EXPECT_EQ(regression.ControlVar(1).Exponent(), text("3"));
    EXPECT_EQ(regression.ControlVar(2).Exponent(), text("4"));
    EXPECT_EQ(regression.ControlVar(3).Exponent(), text("5"));
}

TEST_F(OptimalOnTable, WithOneModelToSaveLeavesTheFullModel)
{
    fillCement();
    search.Run();
    EXPECT_EQ(search.Report(), text(FullReport));
    EXPECT_EQ(messages.shown, std::vector<Message>({information(FullReport)}));
    EXPECT_EQ(search.ModelCount(), 1);
    EXPECT_EQ(regression.GetNumVars(), 4);
    EXPECT_TRUE(regression.Loaded());
    EXPECT_TRUE(regression.ResultsCurrent());
    EXPECT_EQ(search.Ended(), TRunEnd::Converged);
    EXPECT_EQ(search.GetModelList(1).F, regression.GetF());
}

TEST_F(OptimalOnTable, TheBestBySmallestMeanSquareEliminatesWhatItLeavesOut)
{
    fillCement();
    regression.SetDescription(text("Cement\nHald"));
    search.SetOptCriteria(TOptimizationType::MinSsquared);
    search.SetModelsToSave(3);
    search.Run();
    // Row 13 (a, b, d) has the smallest mean square; the full model was fitted last and is the third.
    EXPECT_EQ(search.Report(), text("CORVANE OUTPUT REPORT\n\rCement\nHald\n\r\n\r"
                                    "Optimal Model Eliminates Variable(s):\n\r\n\r   c\n\r"
                                    "\n\r\n\rThe 3 top models were saved."
                                    "\n\r\n\rProcessing Time: 00:00:00"));
    EXPECT_EQ(search.ModelCount(), 3);
    EXPECT_EQ(transformations().first(4), QStringList({text("None"), text("None"), text("Undefined"), text("None")}));
    EXPECT_NEAR(regression.GetMSE(), 5.3303032667096826, 1e-12);
    EXPECT_LE(search.GetModelList(1).SSquared, search.GetModelList(2).SSquared);
    EXPECT_LE(search.GetModelList(2).SSquared, search.GetModelList(3).SSquared);
    EXPECT_EQ(search.GetModelList(3).Transformations[2], text("None"));
    EXPECT_NEAR(search.GetModelList(3).SSquared, 5.9829549188123794, 1e-12);
}

TEST_F(OptimalOnTable, ARejectedModelOverwritesTheLastEntry)
{
    // Kept on purpose. Two models by largest F: after row 12, whose F is the largest, rows 13 to 15 are worse than
    // the first entry but each takes the second.
    fillCement();
    search.SetOptCriteria(TOptimizationType::MaxFValue);
    search.SetModelsToSave(2);
    Trace trace;
    search.Run();
    const QStringList subsets = trace.of("subset");
    ASSERT_EQ(subsets.size(), 15);
    EXPECT_EQ(traced(subsets[14], "accepted"), text("0"));
    EXPECT_EQ(search.GetModelList(2).F, traced(subsets[14], "f").toDouble()) << "the rejected full model";
    EXPECT_EQ(search.GetModelList(1).F, traced(subsets[11], "f").toDouble());
    EXPECT_EQ(search.Report(), text("CORVANE OUTPUT REPORT\n\r\n\r\n\r"
                                    "Optimal Model Eliminates Variable(s):\n\r\n\r   c\n\r   d\n\r"
                                    "\n\r\n\rThe 2 top models were saved."
                                    "\n\r\n\rProcessing Time: 00:00:00"));
}

TEST_F(OptimalOnTable, EntriesByLargestFDoNotIncrease)
{
    fillCement();
    search.SetOptCriteria(TOptimizationType::MaxFValue);
    search.SetModelsToSave(3);
    search.Run();
    EXPECT_EQ(search.ModelCount(), 3);
    EXPECT_GE(search.GetModelList(1).F, search.GetModelList(2).F);
    EXPECT_GE(search.GetModelList(2).F, search.GetModelList(3).F);
}

TEST_F(OptimalOnTable, TheTraceTellsEveryFigureAndDecision)
{
    fillCement();
    search.SetModelsToSave(2);
    Trace trace;
    search.Run();
    EXPECT_EQ(trace.lines.first(), text("start method=optimal variables=4"));
    EXPECT_EQ(trace.lines.last(), text("end reason=converged passes=1 controls=%1").arg(regression.GetNumVars()));
    // Published sums of squares of the sixteen regressions (Draper and Smith): 1265.69 for c, 906.34 for b, ...
    const double residual[] = {883.867, 1939.400, 175.738, 906.336, 868.880, 415.443, 73.815, 1265.687,
                               74.762,  1227.072, 50.836,  57.904,  47.973,  48.111,  47.864};
    const int columns[] = {1, 1, 2, 1, 2, 2, 3, 1, 2, 2, 3, 2, 3, 3, 4};
    const QStringList subsets = trace.of("subset");
    ASSERT_EQ(subsets.size(), 15);
    for (int i = 0; i < 15; ++i) {
        EXPECT_EQ(traced(subsets[i], "number"), QString::number(i + 1));
        EXPECT_EQ(traced(subsets[i], "loaded"), text("1"));
        EXPECT_EQ(traced(subsets[i], "controls"), QString::number(columns[i]));
        EXPECT_NEAR(traced(subsets[i], "ms").toDouble() * (12 - columns[i]), residual[i], 0.0006);
    }
    EXPECT_EQ(subsets[0], text("subset number=1 loaded=1 controls=1 ms=%1 r2=%2 f=%3 accepted=1 improved=1 count=1")
                              .arg(traced(subsets[0], "ms"), traced(subsets[0], "r2"), traced(subsets[0], "f")));
    EXPECT_EQ(traced(subsets[0], "ms").toDouble(), 80.351537899934712) << "digits enough to read it back";
    EXPECT_EQ(traced(subsets[1], "accepted"), text("1")) << "the list is not full yet";
    EXPECT_EQ(traced(subsets[1], "improved"), text("0"));
    EXPECT_EQ(traced(subsets[1], "count"), text("2"));
}

TEST_F(OptimalOnTable, TheStepsAreTheAcceptedModels)
{
    fillCement();
    search.Run();
    EXPECT_EQ(search.Steps(),
              QStringList({text("(R)^2 = 0.6745,  (s)^2 = 80.3515."), text("(R)^2 = 0.9353,  (s)^2 = 17.5738."),
                           text("(R)^2 = 0.8470,  (s)^2 = 41.5443."), text("(R)^2 = 0.9728,  (s)^2 = 8.2016."),
                           text("(R)^2 = 0.9725,  (s)^2 = 7.4762."), text("(R)^2 = 0.9813,  (s)^2 = 5.6485."),
                           text("(R)^2 = 0.9823,  (s)^2 = 5.3303.")}));
}

TEST_F(OptimalOnQuery, DoesTheSame)
{
    fillCement();
    search.SetOptCriteria(TOptimizationType::MinSsquared);
    search.SetModelsToSave(3);
    search.Run();
    EXPECT_EQ(search.Report(), text("CORVANE OUTPUT REPORT\n\r\n\r\n\r"
                                    "Optimal Model Eliminates Variable(s):\n\r\n\r   c\n\r"
                                    "\n\r\n\rThe 3 top models were saved."
                                    "\n\r\n\rProcessing Time: 00:00:00"));
    OptMLRQuery(regression, search);
    EXPECT_EQ(regression.GetNumVars(), 3) << "the search of what is left, by its own name";
}

TEST_F(OptimalOnTable, MoreThanTwentyModelsCountAsTwenty)
{
    fill("y a b c d e", 20, [](int i) { return Row{i * i % 17, i % 5, i % 7, i * 3 % 11, i * 5 % 13, i % 3}; });
    for (const int models : {20, 21, 65535}) {
        prepare("a b c d e");
        search.SetModelsToSave(models);
        search.SetOptCriteria(TOptimizationType::MaxFValue);
        search.Run();
        EXPECT_EQ(search.ModelCount(), 20);
        EXPECT_TRUE(search.Report().contains(text("The 20 top models were saved.")));
        for (int i = 2; i <= 20; ++i)
            EXPECT_GE(search.GetModelList(i - 1).F, search.GetModelList(i).F);
    }
}

TEST_F(OptimalOnTable, TheListIsReadWrittenAndApplied)
{
    fillCement();
    search.SetModelsToSave(3);
    search.SetOptCriteria(TOptimizationType::MinSsquared);
    search.Run();
    search.SetModel(3);
    EXPECT_EQ(transformations().first(4), QStringList({text("None"), text("None"), text("None"), text("None")}));
    EXPECT_EQ(regression.GetNumVars(), 3) << "nothing is loaded";
    TMLRModel changed = search.GetModelList(1);
    changed.Transformations[0] = text("Log");
    search.SetModelList(20, changed);
    EXPECT_EQ(search.GetModelList(20).Transformations[0], text("Log"));
    search.SetModel(20);
    EXPECT_EQ(transformations().first(), text("Log"));
    search.AssignModel(search.GetModelList(1));
    EXPECT_EQ(transformations().first(), text("None"));
    TMLRModel saved;
    search.SaveModel(saved);
    EXPECT_EQ(saved.Transformations, search.GetModelList(1).Transformations);
    EXPECT_EQ(saved.F, regression.GetF());
    for (const int index : {-1, 0, 21}) {
        EXPECT_THROW(search.GetModelList(index), EStringListError) << index;
        EXPECT_THROW(search.SetModelList(index, saved), EStringListError) << index;
        EXPECT_THROW(search.SetModel(index), EStringListError) << index;
    }
}

TEST_F(OptimalOnTable, ACandidateHasToBeatOneModelOfAFullList)
{
    fillCement();
    search.SetModelsToSave(2);
    EXPECT_TRUE(search.Dominates(-1, 1e300)) << "while the list is not full";
    EXPECT_TRUE(search.BetterF(-1));
    EXPECT_TRUE(search.BetterS(1e300));
    search.Run();
    ASSERT_EQ(search.ModelCount(), 2);
    search.SetModelList(1, model(10, 0.9, 4));
    search.SetModelList(2, model(5, 0.8, 3));
    EXPECT_TRUE(search.BetterF(5.5));
    EXPECT_FALSE(search.BetterF(5));
    EXPECT_TRUE(search.BetterS(3.5));
    EXPECT_FALSE(search.BetterS(4));
    EXPECT_TRUE(search.Dominates(0.85, 2));
    EXPECT_FALSE(search.Dominates(0.85, 3)) << "both strictly";
    EXPECT_FALSE(search.Dominates(0.8, 2));
    EXPECT_TRUE(search.Dominates(0.95, 3.5));
}

TEST_F(OptimalOnTable, TheListIsOrderedByTheCriterion)
{
    fillCement();
    search.SetModelsToSave(3);
    search.Run();
    ASSERT_EQ(search.ModelCount(), 3);
    const auto order = [&](TOptimizationType criterion) {
        search.SetModelList(1, model(1, 0.5, 4));
        search.SetModelList(2, model(9, 0.4, 2));
        search.SetModelList(3, model(5, 0.6, 3));
        search.SetOptCriteria(criterion);
        search.SortModelList();
        return std::vector<double>({search.GetModelList(1).F, search.GetModelList(2).F, search.GetModelList(3).F});
    };
    EXPECT_EQ(order(TOptimizationType::MaxFValue), std::vector<double>({9, 5, 1}));
    EXPECT_EQ(order(TOptimizationType::MinSsquared), std::vector<double>({9, 5, 1}));
    EXPECT_EQ(order(TOptimizationType::Nondominated), std::vector<double>({5, 9, 1}))
        << "only the third dominates the first";
}

TEST_F(OptimalOnTable, WithoutAControlVariableTheDefinitionsStay)
{
    fill("y a", 5, [](int i) { return Row{i * i, i}; });
    prepare("");
    Trace trace;
    search.Run();
    EXPECT_EQ(trace.lines, QStringList({text("start method=optimal variables=0"),
                                        text("end reason=converged passes=1 controls=0")}));
    EXPECT_EQ(transformations(), QStringList(10, text("Undefined")));
    EXPECT_EQ(search.ModelCount(), 0);
    EXPECT_EQ(search.GetModelList(1).SSquared, 1.0e40);
    EXPECT_EQ(search.Report(),
              text("Full (Current) Model is Optimal.\n\rNo variables removed.\n\r\n\rProcessing Time: 00:00:00"))
        << "no candidate was fitted: no head";
    EXPECT_TRUE(regression.Loaded());
}

TEST_F(OptimalOnTable, AComponentThatWasNeverLoadedHasNoVariablesYet)
{
    fill("y a", 5, [](int i) { return Row{i * i, i}; });
    define(regression, "a");
    search.Run();
    EXPECT_EQ(transformations().first(2), QStringList({text("None"), text("Undefined")}));
    EXPECT_EQ(regression.GetNumVars(), 1);
    EXPECT_TRUE(regression.ResultsCurrent());
}

TEST_F(OptimalOnTable, WhereNoSubsetCanBeFittedTheDefinitionsStay)
{
    fill("y a b", 5, [](int) { return Row{3, 1, 2}; });
    define(regression, "a b");
    regression.SetControl(3, control("Undefined", "kept"));
    EXPECT_FALSE(regression.ReLoad());
    messages.shown.clear();
    search.Run();
    EXPECT_EQ(transformations().first(3), QStringList({text("None"), text("None"), text("Undefined")}));
    EXPECT_EQ(search.ModelCount(), 0);
    EXPECT_FALSE(regression.Loaded());
    EXPECT_EQ(search.Report(),
              text("Full (Current) Model is Optimal.\n\rNo variables removed.\n\r\n\rProcessing Time: 00:00:00"));
    EXPECT_EQ(messages.shown.size(), 5U) << "the three subsets, the last load, the report";
}

TEST_F(OptimalOnTable, ASubsetThatCannotBeLoadedIsSkipped)
{
    // Where b is not null, a does not vary: (a, b) cannot be fitted, a and b can.
    fill("y a b", {{1, 1, 1}, {5, 1, 2}, {2, 1, 5}, {9, 1, 3}, {4, 2, null}, {6, 3, null}});
    prepare("a");
    regression.SetControl(2, control("None", "b"));
    regression.ReLoad();
    messages.shown.clear();
    Trace trace;
    search.Run();
    const QStringList subsets = trace.of("subset");
    ASSERT_EQ(subsets.size(), 3);
    EXPECT_EQ(subsets[2], text("subset number=3 loaded=0 controls=2"));
    EXPECT_EQ(traced(subsets[1], "loaded"), text("1"));
    EXPECT_EQ(search.Report(), text("CORVANE OUTPUT REPORT\n\r\n\r\n\r"
                                    "Optimal Model Eliminates Variable(s):\n\r\n\r") +
                                   (traced(subsets[1], "improved") == u"1" ? text("   b\n\r") : text("   a\n\r")) +
                                   text("\n\r\n\rProcessing Time: 00:00:00"));
    EXPECT_EQ(messages.shown.size(), 2U);
    EXPECT_EQ(messages.shown.front(), invariantMessage());
}

TEST_F(OptimalOnTable, OneObservationHasNothingToChoose)
{
    fill("y a b", {{3, 1, 2}});
    define(regression, "a b");
    regression.ReLoad();
    search.Run();
    EXPECT_EQ(transformations().first(2), QStringList({text("None"), text("None")}));
    EXPECT_EQ(search.ModelCount(), 0);
}

TEST_F(OptimalOnTable, AControlWhoseTermIsDisabledIsNeverListed)
{
    // ControlVar01 is out from the start; the search switches the first two of three, as two are active.
    fill("y a b c", 9, [](int i) { return Row{i * i % 7, i, i % 4, i % 3}; });
    define(regression, "a b c");
    regression.ControlVar(1).SetTransformation(text("Undefined"));
    ASSERT_TRUE(regression.ReLoad());
    messages.shown.clear();
    Trace trace;
    search.SetModelsToSave(20);
    search.SetOptCriteria(TOptimizationType::MaxFValue);
    search.Run();
    QStringList controls;
    for (const QString &subset : trace.of("subset"))
        controls.append(traced(subset, "controls"));
    EXPECT_EQ(controls, text("2 1 2").split(u' ')) << "c is always in";
    EXPECT_FALSE(search.Report().contains(text("Disabled")));
    EXPECT_TRUE(search.Report().contains(text("The 3 top models were saved.")));
}

TEST_F(OptimalOnTable, TwoVariablesMayBeTheSameField)
{
    fill("y a b c", 12, [](int i) { return Row{i * i % 7, i % 5, i % 4, i % 3}; });
    prepare("a b c a b c a b");
    search.SetModelsToSave(5);
    search.SetOptCriteria(TOptimizationType::MinSsquared);
    search.Run();
    EXPECT_EQ(search.ModelCount(), 5);
}

TEST_F(OptimalOnTable, TheNextRunClearsTheFiguresOfAllTwenty)
{
    fillCement();
    search.SetModelList(20, model(1, 2, 3));
    search.Run();
    EXPECT_EQ(search.GetModelList(20).F, 0);
    EXPECT_EQ(search.GetModelList(20).SSquared, 1.0e40);
}
