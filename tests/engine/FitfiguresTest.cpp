// SPDX-License-Identifier: MIT
#include "engine/Fitfigures.h"
#include "engine/kernel/Inferencereference.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace nuvo;

namespace {

FitFigures figuresOf(const ReferenceSet &set)
{
    return FitFigures(std::make_shared<const Fit>(Observations::of(set.columns, set.response)));
}

double wanted(const ReferenceSet &set, const char *group, const char *name, std::size_t index)
{
    return set.figures.at(group).at(name).at(index).get<double>();
}

} // namespace

TEST(FitFigures, AreThoseOfTheFitWhateverIsAskedFirst)
{
    const ReferenceSet set = readReference("Longley");
    const FitFigures figures = figuresOf(set);
    EXPECT_NEAR(figures.influence().cook[4] / wanted(set, "influence", "cook", 4), 1, 1e-12);
    EXPECT_NEAR(figures.inference().pValues[3] / wanted(set, "inference", "pValues", 3), 1, 1e-12);
    EXPECT_NEAR(figures.diagnostics().durbinWatson / set.figures.at("diagnostics").at("durbinWatson").get<double>(),
                1, 1e-12);
    EXPECT_NEAR(figures.robust(RobustKind::Hc3).standardErrors[2] /
                    set.figures.at("robust").at("hc3").at("standardErrors").at(2).get<double>(),
                1, 1e-12);
}

TEST(FitFigures, StandOnScaledSumsAsOnPlainOnes)
{
    for (const char *name : {"large", "small"}) {
        const ReferenceSet set = readReference(name);
        const FitFigures figures = figuresOf(set);
        ASSERT_FALSE(figures.fit()->sums().plain());
        EXPECT_NEAR(figures.factors().coefficient(1) / figures.fit()->b(1), 1, 1e-15);
        EXPECT_NEAR(figures.inference().aic / set.figures.at("inference").at("aic").get<double>(), 1, 1e-12);
        for (std::size_t i = 0; i < set.response.size(); ++i)
            EXPECT_NEAR(figures.influence().dffits[i] / wanted(set, "influence", "dffits", i), 1, 1e-11);
    }
}

TEST(FitFigures, IntervalsAreOfTheLevelAskedFor)
{
    const ReferenceSet set = readReference("Cement");
    const FitFigures figures = figuresOf(set);
    const Interval usual = figures.confidence(1, 0.95);
    const Interval wide = figures.confidence(1, 0.99);
    EXPECT_LT(wide[0], usual[0]);
    EXPECT_GT(wide[1], usual[1]);
    // t(0.99, 8) = 3.355387..., t(0.95, 8) = 2.306004...
    EXPECT_NEAR((wide[1] - wide[0]) / (usual[1] - usual[0]), 3.355387331 / 2.306004135, 1e-8);
    for (const double level : {0.0, 1.0, 2.0, -1.0})
        EXPECT_TRUE(std::isnan(figures.confidence(1, level)[0])) << level;
}

TEST(FitFigures, OfAFitOfMoreRecordsThanItsSampleInfluenceIsOnTheWholeFit)
{
    const ReferenceSet set = readReference("Airquality");
    const Observations all = Observations::of(set.columns, set.response);
    std::vector<std::vector<double>> columns;
    for (const std::vector<double> &column : set.columns)
        columns.emplace_back(column.begin(), column.begin() + 30);
    const Observations sample =
        Observations::of(columns, std::vector<double>(set.response.begin(), set.response.begin() + 30));
    const FitFigures figures(std::make_shared<const Fit>(sample, sumsOf(all)));
    EXPECT_NEAR(figures.inference().bic / set.figures.at("inference").at("bic").get<double>(), 1, 1e-12);
    ASSERT_EQ(figures.influence().leverage.size(), 30u);
    EXPECT_NEAR(figures.influence().leverage[7] / wanted(set, "influence", "leverage", 7), 1, 1e-12);
    EXPECT_NEAR(figures.influence().cook[7] / wanted(set, "influence", "cook", 7), 1, 1e-12);
    const FitFigures own(std::make_shared<const Fit>(sample));
    EXPECT_EQ(figures.diagnostics().press, own.diagnostics().press);
}
