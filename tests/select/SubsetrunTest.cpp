// SPDX-License-Identifier: MIT
#include "select/Choices.h"
#include "support/Text.h"

// The best subset on one sample.

namespace {

using Optimal = SelectionOver<TMLRTable, TOptimizeMLR>;
using OptimalOnQuery = SelectionOver<TMLRQuery, TOptimizeMLR>;

/// "d; b; a b; a d; ...": the list.
QString listed(const nuvo::Choice &choice)
{
    QStringList models;
    for (const nuvo::SubsetFigures &model : choice.subsets.bySize)
        models.append(choice.terms(model.controls).join(u' '));
    return models.join(text("; "));
}

} // namespace

TEST_F(Optimal, WithACriterionLeavesTheBestOfAllSubsetsFitted)
{
    fillCement();
    struct Best
    {
        TOptimizationType criterion;
        const char *model;
        double value;
    };
    // leaps 3.1 of R: Cp and adjusted R2; AIC() and BIC() of lm(); sum((resid / (1 - hatvalues))^2).
    for (const Best &best :
         {Best{TOptimizeMLR::Cp, "a b", 2.678242}, Best{TOptimizeMLR::AIC, "a b d", 63.866285},
          Best{TOptimizeMLR::BIC, "a b", 66.57219}, Best{TOptimizeMLR::AdjustedRSquared, "a b d", 0.9764473},
          Best{TOptimizeMLR::PRESS, "a b d", 85.35112}}) {
        SCOPED_TRACE(best.model);
        prepare("a b c d");
        search.SetOptCriteria(best.criterion);
        search.Run();
        EXPECT_EQ(selected(regression), text(best.model));
        EXPECT_TRUE(regression.ResultsCurrent());
        const nuvo::Choice &choice = *search.Choice();
        ASSERT_TRUE(choice.subsets.best.has_value());
        const nuvo::SubsetFigures &figures = *choice.subsets.best;
        const double value = best.criterion == TOptimizeMLR::Cp                 ? figures.cp
                             : best.criterion == TOptimizeMLR::AIC              ? figures.aic
                             : best.criterion == TOptimizeMLR::BIC              ? figures.bic
                             : best.criterion == TOptimizeMLR::AdjustedRSquared ? figures.adjustedRSquared
                                                                                : figures.press;
        EXPECT_NEAR(value, best.value, 1e-5);
        EXPECT_EQ(search.ModelCount(), 4) << "one of each size";
    }
}

TEST_F(Optimal, FiguresOfTheListAreThoseOfTheFits)
{
    fillCement();
    search.SetModelsPerSize(2);
    search.Run();
    const nuvo::Choice choice = *search.Choice();
    EXPECT_EQ(listed(choice), text("d; b; a b; a d; a b d; a b c; a b c d"));
    for (int i = 1; i <= search.ModelCount(); ++i) {
        SCOPED_TRACE(i);
        const nuvo::SubsetFigures &figures = choice.subsets.bySize[std::size_t(i) - 1];
        search.SelectModel(i);
        EXPECT_EQ(selected(regression), choice.terms(figures.controls).join(u' '));
        EXPECT_DOUBLE_EQ(regression.GetSSE(), figures.sse);
        EXPECT_DOUBLE_EQ(regression.GetRSquared(), figures.rSquared);
        EXPECT_DOUBLE_EQ(regression.GetMSE(), figures.sSquared);
        EXPECT_DOUBLE_EQ(regression.GetF(), figures.f);
        EXPECT_NEAR(regression.GetAdjustedRSquared(), figures.adjustedRSquared, 1e-15);
        EXPECT_NEAR(regression.GetAIC(), figures.aic, 1e-12);
        EXPECT_NEAR(regression.GetBIC(), figures.bic, 1e-12);
        EXPECT_NEAR(regression.GetPRESS(), figures.press, 1e-9 * figures.press);
        const TMLRModel model = search.GetModelList(i);
        EXPECT_EQ(model.F, figures.f);
        EXPECT_EQ(model.RSquared, figures.rSquared);
        EXPECT_EQ(model.SSquared, figures.sSquared);
        EXPECT_EQ(QStringList(model.Transformations.begin(), model.Transformations.end()), transformations());
    }
    EXPECT_THROW(search.SelectModel(0), EStringListError);
    EXPECT_EQ(errorOf<EStringListError>([&] { search.SelectModel(8); }),
              text("There is no model 8 in the choice: it has 7."));
}

TEST_F(Optimal, TheRuleAloneAsksForCpAndTheOldCriteriaKeepTheirMeaningOnOneSample)
{
    fillCement();
    search.SetRule(TCorvane::Textbook);
    search.Run();
    EXPECT_EQ(search.Choice()->criterion, nuvo::SubsetCriterion::Cp);
    EXPECT_EQ(selected(regression), text("a b"));
    prepare("a b c d");
    search.SetOptCriteria(TOptimizeMLR::MinSsquared);
    search.Run();
    EXPECT_EQ(selected(regression), text("a b d")) << "s2 orders as adjusted R2 does";
    prepare("a b c d");
    search.SetOptCriteria(TOptimizeMLR::MaxFValue);
    search.Run();
    EXPECT_EQ(selected(regression), text("a b"));
    EXPECT_NEAR(search.Choice()->subsets.best->f, 229.5037, 1e-4);
}

TEST_F(Optimal, TheWrittenSearchHasNoChoiceAndAnyOfItsModelsCanBeSelected)
{
    fillCement();
    search.SetModelsToSave(20);
    search.SetOptCriteria(TOptimizeMLR::MinSsquared);
    search.Run();
    EXPECT_EQ(search.Choice(), nullptr);
    EXPECT_EQ(search.ModelCount(), 15);
    search.SelectModel(2);
    EXPECT_TRUE(regression.ResultsCurrent());
    EXPECT_EQ(regression.GetMSE(), search.GetModelList(2).SSquared);
    EXPECT_EQ(errorOf<EStringListError>([&] { search.SelectModel(16); }),
              text("There is no model 16 in the list: it has 15."));
}

TEST_F(Optimal, AListLongerThan20IsListedWhole)
{
    std::vector<Row> rows;
    for (int i = 0; i < 40; ++i) {
        Row row;
        for (int j = 0; j <= 6; ++j)
            row.push_back((i * (7 * j + 3) + i * i * (j + 1)) % 31);
        rows.push_back(row);
    }
    fill("y a b c d e f", rows);
    prepare("a b c d e f");
    search.SetModelsPerSize(99);
    search.Run();
    ASSERT_EQ(search.ModelCount(), 63) << "all of them";
    const nuvo::Choice choice = *search.Choice();
    const TMLRModel last = search.GetModelList(63);
    EXPECT_EQ(last.RSquared, choice.subsets.bySize[62].rSquared);
    search.SelectModel(40);
    EXPECT_DOUBLE_EQ(regression.GetSSE(), choice.subsets.bySize[39].sse);
    EXPECT_EQ(search.Choice()->applied, 40);
    search.SetModel(63);
    EXPECT_EQ(transformations().first(6), QStringList(6, text("None")));
    EXPECT_THROW(search.GetModelList(64), EStringListError);
    search.SortModelList();
    EXPECT_EQ(search.GetModelList(1).RSquared, choice.subsets.bySize[0].rSquared) << "the order of the sizes stays";
}

TEST_F(Optimal, TheSampleIsTheOneOfAllControlsAlsoForTheModelThatIsSelected)
{
    std::vector<Row> rows = cement();
    rows[2][3] = null;
    rows[7][4] = null;
    fill("y a b c d", rows);
    prepare("a b c d");
    search.SetOptCriteria(TOptimizeMLR::Cp);
    search.Run();
    EXPECT_EQ(regression.GetNumObs(), 11);
    EXPECT_EQ(search.Choice()->observations, 11);
    const double sse = search.Choice()->subsets.bySize[0].sse;
    search.SelectModel(1);
    EXPECT_EQ(regression.GetNumObs(), 11);
    EXPECT_DOUBLE_EQ(regression.GetSSE(), sse);
}

TEST_F(Optimal, AChoiceOfOtherVariablesOrRecordsIsRefusedAndChangesNothing)
{
    fillCement();
    search.SetOptCriteria(TOptimizeMLR::Cp);
    search.Run();
    db->exec(text("DELETE FROM data WHERE id = 5"));
    regression.Refresh();
    const QString before = selected(regression);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { search.SelectModel(1); }),
              text("The variables of table \"data\" have 12 observations in common, where the choice had 13; let a "
                   "model be chosen anew."));
    EXPECT_EQ(selected(regression), before);
    EXPECT_TRUE(regression.ResultsCurrent());
    regression.SetControl(1, control("None", "y"));
    EXPECT_EQ(
        errorOf<EDatabaseError>([&] { search.SelectModel(1); }),
        text("The variables of table \"data\" are not those of the choice any more; let a model be chosen anew."));
    EXPECT_EQ(regression.ControlVar(1).Field1(), text("y"));
}

TEST_F(Optimal, ADependentSubsetIsListedAsSuchAndNeverTheBest)
{
    fill("y a b c", 12, [](int i) { return Row{i * i % 7 + i, i, i % 3, 2 * i + i % 3}; });
    define(regression, "a b c");
    for (const TOptimizationType criterion :
         {TOptimizeMLR::Cp, TOptimizeMLR::AdjustedRSquared, TOptimizeMLR::PRESS}) {
        define(regression, "a b c");
        search.SetOptCriteria(criterion);
        search.SetModelsPerSize(3);
        search.Run();
        const nuvo::Choice &choice = *search.Choice();
        EXPECT_EQ(choice.subsets.dependent, std::vector<nuvo::ControlSet>{0b111});
        EXPECT_TRUE(choice.subsets.bySize.back().dependent);
        EXPECT_TRUE(std::isnan(choice.subsets.bySize.back().cp));
        EXPECT_FALSE(choice.subsets.best->dependent);
        EXPECT_LT(regression.GetNumVars(), 3);
        EXPECT_TRUE(search.Report().contains(text("dependent")));
    }
}

TEST_F(Optimal, AnExactFitIsTheBest)
{
    fill("y a b c", 12, [](int i) { return Row{3 * i - 2 * (i % 5), i, i % 5, i * i % 11}; });
    define(regression, "a b c");
    for (const TOptimizationType criterion : {TOptimizeMLR::AIC, TOptimizeMLR::BIC, TOptimizeMLR::PRESS}) {
        define(regression, "a b c");
        search.SetOptCriteria(criterion);
        search.Run();
        EXPECT_EQ(selected(regression), text("a b"));
        EXPECT_EQ(search.Choice()->subsets.best->sse, 0);
    }
}

TEST_F(Optimal, WithoutDegreesOfFreedomForAllControlsThereIsNoCpAndAllIsAsBefore)
{
    fill("y a b c d", std::vector<Row>(cement().begin(), cement().begin() + 4));
    prepare("a b c d");
    search.SetOptCriteria(TOptimizeMLR::Cp);
    search.Run();
    EXPECT_EQ(search.Choice()->end, nuvo::Choice::End::NoBestModel);
    EXPECT_EQ(selected(regression), text("a b c d"));
    EXPECT_TRUE(regression.ResultsCurrent());
    EXPECT_TRUE(
        search.Report().simplified().contains(text("The variables as they were before: Cp exists for no subset, as 4 "
                                                   "observations leave the full model no degrees of freedom.")));
    search.SetOptCriteria(TOptimizeMLR::BIC);
    search.Run();
    EXPECT_EQ(search.Choice()->end, nuvo::Choice::End::Chosen);
    EXPECT_LE(regression.GetNumVars(), 2);
}

TEST_F(Optimal, WithoutControlsThereIsNothingToChooseFrom)
{
    fill("y", 9, [](int i) { return Row{i * i % 7}; });
    define(regression, "");
    search.SetOptCriteria(TOptimizeMLR::AIC);
    search.Run();
    EXPECT_EQ(search.ModelCount(), 0);
    EXPECT_TRUE(regression.ResultsCurrent());
    EXPECT_TRUE(search.Report().contains(text("The constant alone: there is no variable to choose from.")));
    EXPECT_EQ(errorOf<EStringListError>([&] { search.SelectModel(1); }),
              text("There is no model 1 in the choice: it has none."));
}

TEST_F(Optimal, NoRecordForAllControlsIsNoResult)
{
    std::vector<Row> rows = cement();
    for (Row &row : rows)
        row[3] = null;
    fill("y a b c d", rows);
    define(regression, "a b c d");
    search.SetOptCriteria(TOptimizeMLR::BIC);
    search.Run();
    EXPECT_EQ(search.Choice()->end, nuvo::Choice::End::NoRecords);
    EXPECT_FALSE(regression.Loaded());
    EXPECT_EQ(transformations().first(4), QStringList(4, text("None")));
    EXPECT_TRUE(search.Report().contains(text("None: no record can be used by every variable.")));
    EXPECT_TRUE(search.Report().simplified().contains(text("c 13 null")));
}

TEST_F(Optimal, AResponseThatDoesNotVaryIsNoResult)
{
    std::vector<Row> rows = cement();
    for (Row &row : rows)
        row[0] = 7;
    fill("y a b c d", rows);
    define(regression, "a b c d");
    search.SetRule(TCorvane::Textbook);
    search.Run();
    EXPECT_EQ(search.Choice()->end, nuvo::Choice::End::ResponseFixed);
    EXPECT_FALSE(regression.Loaded());
}

TEST_F(Optimal, AResponseOutOfTheOrdinaryHasTheSameChoice)
{
    std::vector<Row> rows = cement();
    for (Row &row : rows)
        row[0] = *row[0] * 0x1p300;
    fill("y a b c d", rows);
    prepare("a b c d");
    search.SetOptCriteria(TOptimizeMLR::PRESS);
    search.Run();
    EXPECT_EQ(selected(regression), text("a b d"));
    const nuvo::SubsetFigures &best = *search.Choice()->subsets.best;
    EXPECT_NEAR(best.f, 166.8317, 1e-4);
    EXPECT_NEAR(best.aic, 63.866285 + 13 * 2 * 300 * std::log(2), 1e-5);
    EXPECT_DOUBLE_EQ(best.sse, regression.GetSSE());
}

TEST_F(OptimalOnQuery, GivesWhatTheTableGives)
{
    fillCement();
    search.SetOptCriteria(TOptimizeMLR::AIC);
    search.Run();
    EXPECT_EQ(selected(regression), text("a b d"));
    EXPECT_NEAR(search.Choice()->subsets.best->aic, 63.86629, 1e-5);
    search.SelectModel(2);
    EXPECT_EQ(selected(regression), text("a b"));
}

TEST_F(Optimal, EveryRecordIsComparedWhereTheFitIsOfEveryRecord)
{
    std::vector<Row> rows;
    for (int i = 0; i < 3000; ++i) {
        const double a = i * 37 % 101;
        const double b = i * 53 % 97;
        rows.push_back({a - b + i * i % 89, a, b, i % 100 == 7 ? Row::value_type() : i * 11 % 13});
    }
    fill("y a b c", rows);
    regression.SetRecords(TMLRTable::AllRecords);
    prepare("a b c");
    search.SetModelsPerSize(1);
    search.Run();
    const nuvo::Choice choice = *search.Choice();
    EXPECT_EQ(choice.observations, 2970);
    EXPECT_EQ(choice.skipped(), 30);
    EXPECT_EQ(regression.RecordsUsed(), 2970);
    EXPECT_DOUBLE_EQ(regression.GetSSE(), choice.subsets.best->sse);
    search.SelectModel(3);
    EXPECT_EQ(regression.RecordsUsed(), 2970);
    EXPECT_DOUBLE_EQ(regression.GetSSE(), choice.subsets.bySize[2].sse);
    search.SetOptCriteria(TOptimizeMLR::PRESS);
    search.Run();
    EXPECT_TRUE(search.Summary().simplified().contains(
        text("PRESS exists for no subset, as it needs every observation, not a sample of them.")));
}
