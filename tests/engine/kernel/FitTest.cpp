// SPDX-License-Identifier: MIT
#include "engine/Fit.h"
#include "engine/kernel/Exact.h"
#include "engine/kernel/Usablerecords.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

using namespace nuvo;

namespace {

using Values = std::vector<double>;

Values scaled(Values values, double factor)
{
    for (double &value : values)
        value *= factor;
    return values;
}

const Values a = {1, 2, 4, 5, 7, 8, 3, 6};
const Values b = {2, 0, 1, 3, 4, 2, 9, 5};
const Values y = {3, 5, 7, 8, 12, 13, 1, 9};

/// The figures of a fit in rational arithmetic, from the very doubles.
struct RationalFit
{
    std::vector<Exact> coefficients;
    std::vector<std::vector<Exact>> inverse;
    Exact sse;
    Exact sst;
    int freedom;

    RationalFit(const std::vector<Values> &x, const Values &response)
    {
        const std::size_t p = x.size() + 1;
        const std::size_t n = response.size();
        const auto at = [&](std::size_t i, std::size_t j) { return j == 0 ? Exact(1) : exact(x[j - 1][i]); };
        std::vector<std::vector<Exact>> rows(p, std::vector<Exact>(2 * p));
        std::vector<Exact> side(p);
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t j = 0; j < p; ++j) {
                for (std::size_t k = 0; k < p; ++k)
                    rows[j][k] += at(i, j) * at(i, k);
                side[j] += at(i, j) * exact(response[i]);
            }
        }
        for (std::size_t j = 0; j < p; ++j)
            rows[j][p + j] = 1;
        for (std::size_t j = 0; j < p; ++j) { // by Gauss and Jordan
            const Exact pivot = rows[j][j];
            for (Exact &value : rows[j])
                value /= pivot;
            for (std::size_t i = 0; i < p; ++i) {
                if (i == j)
                    continue;
                const Exact factor = rows[i][j];
                for (std::size_t k = 0; k < 2 * p; ++k)
                    rows[i][k] -= factor * rows[j][k];
            }
        }
        Exact mean;
        for (const double value : response)
            mean += exact(value) / Exact(n);
        coefficients.resize(p);
        for (std::size_t j = 0; j < p; ++j) {
            inverse.emplace_back(rows[j].begin() + std::ptrdiff_t(p), rows[j].end());
            for (std::size_t k = 0; k < p; ++k)
                coefficients[j] += inverse[j][k] * side[k];
        }
        for (std::size_t i = 0; i < n; ++i) {
            Exact rest = exact(response[i]);
            for (std::size_t j = 0; j < p; ++j)
                rest -= coefficients[j] * at(i, j);
            sse += rest * rest;
            sst += (exact(response[i]) - mean) * (exact(response[i]) - mean);
        }
        freedom = int(n - p);
    }

    Exact variance(std::size_t j) const { return inverse[j][j] * sse / freedom; }
};

} // namespace

// Observations.

TEST(Observations, CopiesShareWhatTheyPointTo)
{
    Observations all = Observations::of({a, b}, y);
    const Observations copy = all;
    all = Observations();
    EXPECT_EQ(copy.n(), 8);
    EXPECT_EQ(copy.m(), 2);
    EXPECT_EQ(Values(copy.x(2).values, copy.x(2).values + 8), b);
    EXPECT_EQ(Values(copy.y().values, copy.y().values + 8), y);
    EXPECT_EQ(copy.x(1).range.max, 8);
    EXPECT_EQ(copy.y().range.min, 1);
    EXPECT_EQ(copy.x(1).low, nullptr);
    EXPECT_EQ(copy.record(8), 8);
}

TEST(Observations, FurtherColumnsAreZeros)
{
    const Observations wider = Observations::of({a}, y).ofColumns(3);
    EXPECT_EQ(wider.m(), 3);
    EXPECT_EQ(wider.x(1).values[7], 6);
    EXPECT_EQ(wider.x(3).values[7], 0);
    const Observations narrower = wider.ofColumns(0);
    EXPECT_EQ(narrower.m(), 0);
    EXPECT_EQ(narrower.x(1).values[7], 0);
    EXPECT_EQ(narrower.y().values[7], 9);
}

TEST(Observations, SomeOfTheColumnsAreTheSameNumbersWithoutTheOthers)
{
    const Observations all = Observations::of({a, b, y}, y);
    const Observations some = all.only(std::vector<int>{2});
    EXPECT_EQ(some.n(), 8);
    EXPECT_EQ(some.m(), 1);
    EXPECT_EQ(some.x(1).values, all.x(2).values);
    EXPECT_EQ(some.x(2).values[7], 0);
    EXPECT_EQ(some.y().values, all.y().values);
    EXPECT_EQ(Fit(some).sse(), Fit(Observations::of({b}, y)).sse());
    EXPECT_EQ(all.only({}).m(), 0);
}

TEST(Observations, SomeOfTheColumnsAtKnownRecordsKeepTheProductsThatAreKnown)
{
    const auto records = std::make_shared<UsableRecords>(std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7}, 8, 3);
    const std::vector<int> numbers = {2, 1, 0};
    for (const auto &[number, source] : {std::pair(0, &y), std::pair(1, &a), std::pair(2, &b)})
        records->column(number, *source);
    const Observations some = Observations(records, numbers).only(std::vector<int>{2});
    ASSERT_EQ(some.keptProducts(), records.get());
    EXPECT_EQ(std::vector<int>(some.numbers().begin(), some.numbers().end()), (std::vector<int>{1, 0}));
    EXPECT_EQ(Fit(some).sse(), Fit(Observations::of({a}, y)).sse());
}

TEST(Observations, OfRecordsThatAreKnownAreTheirColumnsAndOrdinals)
{
    const auto records = std::make_shared<UsableRecords>(std::vector<int>{1, 3, 4, 7}, 8, 3,
                                                         std::vector<std::int64_t>{12, 14, 15, 20});
    const std::vector<int> numbers = {2, 1, 0};
    for (const auto &[number, source] : {std::pair(0, &y), std::pair(1, &a), std::pair(2, &b)})
        records->column(number, *source);
    const Observations some(records, numbers);
    EXPECT_EQ(some.n(), 4);
    EXPECT_EQ(some.record(4), 20);
    EXPECT_EQ(some.x(1).values[3], b[7]);
    const Sums kept = sumsOf(some);
    const Sums formed = sumsOf(Observations::of({{0, 3, 4, 5}, {2, 5, 7, 6}}, {5, 8, 12, 9}));
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = 0; j < 4; ++j)
            EXPECT_TRUE(same(kept.products[i][j], formed.products[i][j])) << i << ' ' << j;
    }
}

// Sums.

TEST(Sums, OfOrdinaryColumnsAreTheirCrossProducts)
{
    const Observations observations = Observations::of({a, scaled(b, 1e55)}, y);
    const Sums sums = sumsOf(observations);
    EXPECT_TRUE(sums.plain());
    EXPECT_EQ(sums.n, 8);
    CrossProducts products{};
    crossProducts({observations.columns().data(), 3}, 8, products);
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = 0; j < 4; ++j)
            EXPECT_TRUE(same(sums.products[i][j], products[i][j])) << i << ' ' << j;
    }
}

TEST(Sums, OfColumnsOutOfTheOrdinaryAreExactMultiples)
{
    const Sums sums = sumsOf(Observations::of({scaled(a, 0x1p900), scaled(b, 0x1p-600)}, y));
    EXPECT_EQ(sums.exponents[1], 903);
    EXPECT_EQ(sums.exponents[2], -597);
    EXPECT_EQ(sums.exponents[3], 0);
    const Sums plain = sumsOf(Observations::of({a, b}, y));
    Sums same = sums;
    same.rescale(1, 900);
    same.rescale(2, -600);
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = 0; j < 4; ++j)
            EXPECT_EQ(exact(same.products[i][j]), exact(plain.products[i][j])) << i << ' ' << j;
    }
}

TEST(Sums, OfTwoPartsAddUpWhateverTheirScale)
{
    std::mt19937 random(3);
    std::normal_distribution<double> normal;
    Values first(200);
    Values second(200);
    Values response(200);
    for (std::size_t i = 0; i < 200; ++i) {
        first[i] = std::ldexp(normal(random), i < 80 ? 500 : 3); // the exponents of the parts differ
        second[i] = normal(random);
        response[i] = normal(random);
    }
    const auto part = [&](std::ptrdiff_t from, std::ptrdiff_t to) {
        const auto of = [&](const Values &values) { return Values(values.begin() + from, values.begin() + to); };
        return sumsOf(Observations::of({of(first), of(second)}, of(response)));
    };
    Sums sums;
    sums += part(0, 80);
    sums += part(80, 200);
    sums += Sums();
    const Sums whole = part(0, 200);
    EXPECT_EQ(sums.n, 200);
    EXPECT_EQ(sums.exponents, whole.exponents);
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = 0; j < 4; ++j)
            EXPECT_LT(relativeError(exact(sums.products[i][j]), exact(whole.products[i][j])), 1e-26) << i << ' ' << j;
    }
}

// The fit.

TEST(Fit, FiguresAreThoseOfRationalArithmeticAtAnyMagnitude)
{
    for (const auto &[ofA, ofB, ofY] :
         {std::tuple(1.0, 1.0, 1.0), std::tuple(1e154, 3e154, 1.0), std::tuple(1e300, 1.0, 1.0),
          std::tuple(1.0, 1e10, 1e299), std::tuple(1e250, 1e-50, 1e200), std::tuple(1e-150, 1.0, 1e-160),
          std::tuple(1e-290, 1e-200, 1e-300), std::tuple(1e80, 1e100, 1e-90), std::tuple(1e-61, 1e61, 1e59)}) {
        const std::vector<Values> x = {scaled(a, ofA), scaled(b, ofB)};
        const Values response = scaled(y, ofY);
        const RationalFit expected(x, response);
        const Fit fit(Observations::of(x, response));
        const auto close = [](double got, const Exact &wanted) { return relativeError(exact(got), wanted) < 4e-15; };
        const auto squareClose = [](double got, const Exact &wanted) {
            return relativeError(exact(got) * exact(got), wanted) < 1e-14;
        };
        for (std::size_t j = 0; j < 3; ++j) {
            EXPECT_TRUE(close(fit.b()[j], expected.coefficients[j])) << ofA << ' ' << ofB << ' ' << ofY << ' ' << j;
            EXPECT_TRUE(squareClose(fit.stdErr(int(j)), expected.variance(j))) << ofA << ' ' << ofB << ' ' << ofY;
            for (std::size_t k = 0; k < 3; ++k)
                EXPECT_TRUE(
                    squareClose(fit.correlations()[j][k], expected.inverse[j][k] * expected.inverse[j][k] /
                                                              (expected.inverse[j][j] * expected.inverse[k][k])))
                    << ofA << ' ' << ofB << ' ' << ofY;
        }
        const Exact ssr = expected.sst - expected.sse;
        EXPECT_TRUE(close(fit.rSquared().value(), ssr / expected.sst)) << ofA << ' ' << ofB << ' ' << ofY;
        EXPECT_TRUE(close(fit.f(), ssr / 2 / (expected.sse / 5))) << ofA << ' ' << ofB << ' ' << ofY;
        EXPECT_TRUE(squareClose(fit.syx(), expected.sse / 5)) << ofA << ' ' << ofB << ' ' << ofY;
        EXPECT_EQ(fit.dependentColumns(), std::vector<int>()) << ofA << ' ' << ofB << ' ' << ofY;
        for (std::size_t i = 0; i < 8; ++i)
            EXPECT_NEAR(fit.residuals()[i] / ofY,
                        exact(response[i]).convert_to<double>() / ofY - fit.fitted()[i] / ofY, 1e-12);
    }
}

TEST(Fit, TenColumnsBeyondTheRootOfTheRangeAreNotCombinationsOfOneAnother)
{
    std::mt19937 random(4);
    std::normal_distribution<double> normal;
    std::vector<Values> x(10, Values(60));
    Values response(60);
    for (std::size_t i = 0; i < 60; ++i) {
        response[i] = normal(random);
        for (Values &column : x) {
            column[i] = 1e154 * (1 + 0.1 * normal(random));
            response[i] += column[i] / 1e154;
        }
    }
    const Fit fit(Observations::of(x, response));
    EXPECT_EQ(fit.dependentColumns(), std::vector<int>());
    EXPECT_GT(fit.rSquared().value(), 0);
    EXPECT_LT(fit.rSquared().value(), 1);
    x[7] = x[2];
    EXPECT_EQ(Fit(Observations::of(x, response)).dependentColumns(), std::vector<int>{8});
}

TEST(Fit, WhatSumsAloneSayIsTheSameWithASampleOfTheObservations)
{
    const Observations all = Observations::of({a, b}, y);
    const Fit whole(all);
    const Fit sampled(Observations::of({{1, 4}, {2, 1}}, {3, 7}), sumsOf(all));
    EXPECT_EQ(sampled.n(), 8);
    EXPECT_EQ(sampled.b(), whole.b());
    EXPECT_EQ(sampled.covariances(), whole.covariances());
    EXPECT_EQ(sampled.residuals().size(), 2u);
    EXPECT_EQ(sampled.residuals()[1], whole.residuals()[2]);
}

TEST(Fit, AResponseThatIsZeroHasNoRSquared)
{
    EXPECT_FALSE(Fit(Observations::of({a}, Values(8, 0.0))).rSquared().has_value());
}

// How many digits the data leave.

TEST(Fit, DigitsAreThoseThatRoundingTheDataLeaves)
{
    // The coefficients from the data, and from the same data rounded to doubles after an offset was added, in
    // rational arithmetic: the estimate is right to a digit or so.
    std::mt19937 random(5);
    std::normal_distribution<double> normal;
    for (const double offset : {0.0, 1e3, 1e6, 1e9, 1e12, 1e14}) {
        double worst = 0;
        double estimate = 16;
        for (int round = 0; round < 8; ++round) {
            Values plain(30);
            Values moved(30);
            Values response(30);
            for (std::size_t i = 0; i < 30; ++i) {
                plain[i] = 10 * normal(random);
                moved[i] = plain[i] + offset;
                response[i] = plain[i] / 3 + normal(random);
            }
            const Exact slope = RationalFit({plain}, response).coefficients[1];
            worst = std::max(worst, relativeError(RationalFit({moved}, response).coefficients[1], slope));
            estimate = std::min(estimate, Fit(Observations::of({moved}, response)).digits(1));
        }
        if (offset > 0)
            EXPECT_NEAR(estimate, -std::log10(worst), 1) << offset;
        else
            EXPECT_GT(estimate, 14.5);
    }
}

TEST(Fit, WholeNumbersAreNotRounded)
{
    Values years = scaled(a, 1);
    for (double &year : years)
        year += 1e12;
    EXPECT_EQ(Fit(Observations::of({years}, y)).digits(), 16);
    years[3] += 0.25;
    EXPECT_LT(Fit(Observations::of({years}, y)).digits(), 6);
}

TEST(Fit, NoDigitsAreClaimedWhereColumnsDependOnOthers)
{
    EXPECT_EQ(Fit(Observations::of({a, scaled(a, 3)}, y)).digits(), 0);
}
