// SPDX-License-Identifier: MIT
#include "present/figures/Fitdata.h"

#include "present/Fitted.h"
#include "present/figures/Smallfit.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

using nuvo::FigureData;

namespace {

void expectNear(const Column &got, const Column &expected, const char *what)
{
    ASSERT_EQ(got.size(), expected.size()) << what;
    for (std::size_t i = 0; i < got.size(); ++i)
        EXPECT_NEAR(got[i], expected[i], 1e-10 * (1 + std::abs(expected[i]))) << what << ' ' << i;
}

} // namespace

TEST(FitData, AreThoseOfTheFitByAnotherMethod)
{
    Fitted fitted = scatteredFit(30, 3);
    const FigureData data = nuvo::figureData(fitted.table);
    const FigureData other = smallFit(u("y"), data.y, {u("x1"), u("x2"), u("x3")}, data.x, data.records);
    EXPECT_EQ(data.response, other.response);
    EXPECT_EQ(data.terms, other.terms);
    EXPECT_EQ(data.records.back(), 30);
    expectNear(data.fitted, other.fitted, "fitted");
    expectNear(data.residuals, other.residuals, "residuals");
    expectNear(data.leverage, other.leverage, "leverage");
    expectNear(data.standardized, other.standardized, "standardized");
    expectNear(data.studentized, other.studentized, "studentized");
    expectNear(data.cook, other.cook, "cook");
    expectNear(data.coefficients, other.coefficients, "coefficients");
    expectNear({data.s, data.quantile}, {other.s, other.quantile}, "s, quantile");
    for (std::size_t j = 0; j < 3; ++j) {
        expectNear(data.partial[j], other.partial[j], "partial");
        EXPECT_NEAR(data.standardErrors[j + 1], other.standardErrors[j + 1], 1e-10);
    }
}

TEST(FitData, AreEmptyWithoutACurrentFit)
{
    Fitted fitted = scatteredFit(12, 2);
    EXPECT_EQ(nuvo::fitFigures(nuvo::figureData(fitted.table)).size(), 13U);
    EXPECT_TRUE(nuvo::fitFigures(nuvo::figureData(fitted.query)).empty());
}

TEST(FitData, OfDependentTermsAndOfNoDegreesOfFreedomGiveFigures)
{
    Fitted dependent(12, controlNames(3),
                     [](int i, int j) { return j == 3 ? 2 * scattered(i, 1) : scattered(i, j); });
    for (const nuvo::Figure &figure : nuvo::fitFigures(nuvo::figureData(dependent.table))) {
        if (figure.term == 3) {
            EXPECT_TRUE(figure.bands.empty()) << figure.title.toStdString();
        }
    }
    SetMessageHandler([](const QString &, TMsgDlgType, unsigned, int) { return int(mrOk); });
    Fitted exact(3, controlNames(2), scattered);
    const std::vector<nuvo::Figure> figures = nuvo::fitFigures(nuvo::figureData(exact.table));
    EXPECT_EQ(figures.size(), 13U);
    for (const nuvo::Figure &figure : figures)
        EXPECT_TRUE(figure.bands.empty());
    SetMessageHandler({});
}
