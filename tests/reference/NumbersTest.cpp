// SPDX-License-Identifier: MIT
#include "engine/Observations.h"
#include "engine/kernel/Bestsubsets.h"
#include "engine/kernel/Dependence.h"
#include "engine/kernel/Diagnostics.h"
#include "engine/kernel/Distributions.h"
#include "engine/kernel/Evensample.h"
#include "engine/kernel/Influence.h"
#include "engine/kernel/Lowparts.h"
#include "engine/kernel/Normalequations.h"
#include "engine/kernel/Patternsample.h"
#include "engine/kernel/Patternsums.h"
#include "engine/kernel/Prediction.h"
#include "engine/kernel/Robust.h"
#include "engine/kernel/Shiftedsums.h"
#include "engine/kernel/Stepsearch.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

namespace {

const std::vector<double> firstValues = {1, 2, 3, 4, 5, 6};
const std::vector<double> secondValues = {2, 1, 4, 3, 6, 5};
const std::vector<double> responseValues = {3.1, 2.9, 7.2, 6.8, 11.1, 10.9};

/// Cross products of the two columns and the response.
nuvo::CrossProducts productsOfThem()
{
    //! [DataColumn]
    const auto column = [](const std::vector<double> &values) {
        const nuvo::ColumnRange range = nuvo::minMax(values.data(), int(values.size()));
        return nuvo::DataColumn{values.data(), range.largest()};
    };
    const std::array columns = {column(firstValues), column(secondValues), column(responseValues)};
    nuvo::CrossProducts products{}; // of the constant, the columns and the response
    nuvo::crossProducts(columns, 6, products);
    //! [DataColumn]
    return products;
}

} // namespace

TEST(NumberExamples, TwoDoublesForANumber)
{
    //! [DoubleDouble]
    using nuvo::DoubleDouble;
    const DoubleDouble third = DoubleDouble(1) / DoubleDouble(3); // about 32 digits
    const DoubleDouble rest = DoubleDouble(1) - third - third - third;
    //! [DoubleDouble]
    EXPECT_LT(std::fabs(double(rest)), 1e-31);
    EXPECT_NE(third.lo, 0);
}

TEST(NumberExamples, CoefficientsFromCrossProducts)
{
    //! [NormalEquations]
    const nuvo::CrossProducts products = productsOfThem();
    const nuvo::NormalEquations fit = nuvo::solveNormalEquations(products, 2);
    const double b1 = fit.b[1];
    const nuvo::Coefficients same = nuvo::solveCoefficients(products, 2); // without the matrices
    //! [NormalEquations]
    EXPECT_EQ(b1, same.b[1]);
    EXPECT_NEAR(fit.sse, 0, 1);
}

TEST(NumberExamples, WhatAFitTells)
{
    const nuvo::Observations observations = nuvo::Observations::of({firstValues, secondValues}, responseValues);
    //! [Factors]
    const nuvo::ObservedColumns columns = nuvo::columnsOf(observations);
    const nuvo::Factors factors = nuvo::factorize(productsOfThem(), columns);
    const nuvo::Observed observed = nuvo::observe(factors, columns);
    const nuvo::Inference inference = nuvo::infer(factors, 0.95);
    const nuvo::Diagnostics tests = nuvo::diagnose(factors, observed, columns);
    const nuvo::Influence influence = nuvo::influence(factors, observed);
    const nuvo::Robust robust = nuvo::robust(factors, observed, nuvo::RobustKind::Hc3);
    const nuvo::Prediction there = nuvo::predict(factors, std::array{7.0, 8.0}, {}, 0.95);
    //! [Factors]
    EXPECT_GT(inference.vif[0], 1);
    EXPECT_NEAR(std::accumulate(influence.leverage.begin(), influence.leverage.end(), 0.0), 3, 1e-12);
    EXPECT_GE(tests.breuschPagan.pValue, 0);
    EXPECT_GT(robust.standardErrors[1], 0);
    EXPECT_LT(there.prediction[0], there.confidence[0]);
    //! [Explained]
    const std::array terms = {nuvo::ExtendedColumn{{firstValues.data(), 6}, nullptr}};
    const nuvo::Explained explained = nuvo::regressOn(terms, {secondValues.data(), 6}, 6);
    const double vif = 1 / (1 - explained.rSquared);
    //! [Explained]
    EXPECT_NEAR(vif, inference.vif[0], 1e-9);
}

TEST(NumberExamples, AllSubsetsAndASearch)
{
    //! [SubsetSums]
    const nuvo::SubsetSums sums(productsOfThem(), 2);
    const double both = double(sums.sse(0b11)); // bit j - 1 stands for control j
    const nuvo::SubsetChoice choice = nuvo::chooseSubsets(sums, 1, nuvo::SubsetCriterion::Bic);
    const int size = choice.best->size;
    //! [SubsetSums]
    EXPECT_LT(both, double(sums.sse(0b01)));
    EXPECT_EQ(size, 2);
    //! [StepSearch]
    const nuvo::StepSearch search =
        nuvo::searchSteps(sums, nuvo::StepMethod::Forward, nuvo::fixedThreshold(4), nuvo::fixedThreshold(4));
    const nuvo::SearchStep &first = search.path.front();
    const double f = first.candidates[std::size_t(first.control) - 1].f;
    //! [StepSearch]
    EXPECT_EQ(f, first.f);
}

TEST(NumberExamples, SumsByPatternOfAnyNumberOfRows)
{
    //! [PatternSums]
    nuvo::PatternSums sums(2);
    const std::array columns = {firstValues.data(), secondValues.data(), responseValues.data()};
    const std::vector<std::uint32_t> usable = {0b111, 0b111, 0b101,
                                               0b111, 0b111, 0b111}; // `secondValues` is missing once
    sums.add(columns, usable);
    const std::int64_t both = sums.count(0b11);
    const std::int64_t first = sums.count(0b01);
    //! [PatternSums]
    EXPECT_EQ(both, 5);
    EXPECT_EQ(first, 6);
    //! [PatternSample]
    nuvo::PatternSample sample(2);
    sample.add(columns, usable, 1);
    const nuvo::EvenSample::Rows rows = sample.rows(0b11);
    //! [PatternSample]
    EXPECT_EQ(rows.ordinals, (std::vector<std::int64_t>{1, 2, 4, 5, 6}));
}

TEST(NumberExamples, AnEvenSample)
{
    //! [EvenSample]
    nuvo::EvenSample sample(1, 100); // at most 100 of however many
    for (std::int64_t row = 1; row <= 10000; ++row) {
        const double value = double(row);
        const double *column = &value;
        sample.add({&column, 1}, 0, row);
    }
    const std::vector<std::int64_t> ordinals = sample.sorted().ordinals;
    //! [EvenSample]
    EXPECT_EQ(ordinals.size(), 100U);
    EXPECT_TRUE(std::is_sorted(ordinals.begin(), ordinals.end()));
}

TEST(NumberExamples, SumsThatSomebodyElseHasAddedUp)
{
    //! [ColumnShift]
    // 1e9 + 1, 1e9 + 2, 1e9 + 3: plain sums of squares would lose the differences.
    const nuvo::ColumnRange range{1e9 + 1, 1e9 + 3};
    const nuvo::ColumnShift shift = nuvo::ColumnShift::of(1e9 + 2, range, range);
    const double first = (1e9 + 1) * std::ldexp(1, -shift.exponent) - shift.shift;
    //! [ColumnShift]
    EXPECT_LT(std::fabs(first), 1000);
    //! [Combination]
    nuvo::CrossProducts products = productsOfThem();
    const nuvo::Combination solution = nuvo::firstSolution(products, 2); // whose residuals are then added up
    const double b1 = solution.b[1];
    //! [Combination]
    EXPECT_NEAR(b1, nuvo::solveCoefficients(products, 2).b[1], 1e-3);
}
