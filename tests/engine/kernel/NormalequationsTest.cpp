// SPDX-License-Identifier: MIT
#include "engine/kernel/Normalequations.h"
#include "engine/kernel/Exact.h"
#include "engine/kernel/Leastsquares.h"
#include "engine/kernel/Nist.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

using namespace nuvo;

namespace {

using Columns = std::vector<std::vector<double>>;

/// Cross products of the constant and these columns, the response last.
CrossProducts productsOf(const Columns &data)
{
    const int n = static_cast<int>(data[0].size());
    std::vector<DataColumn> columns;
    for (const std::vector<double> &values : data)
        columns.push_back({values.data(), minMax(values.data(), n).largest()});
    CrossProducts products;
    crossProducts(columns, n, products);
    return products;
}

NormalEquations fit(const Columns &data)
{
    return solveNormalEquations(productsOf(data), static_cast<int>(data.size()) - 1);
}

/// Which of these columns, with no response among them, depend on the ones before.
std::vector<int> dependent(const Columns &data)
{
    return dependentColumns(productsOf(data), static_cast<int>(data.size()));
}

class NormalEquationsTest : public testing::Test
{
protected:
    double normal() { return std::normal_distribution<double>()(random_); }

    std::vector<double> column(int n, const std::function<double()> &value)
    {
        std::vector<double> result(n);
        std::generate(result.begin(), result.end(), value);
        return result;
    }

    Columns columns(int count, int n, double offset = 0)
    {
        Columns result;
        for (int j = 0; j < count; ++j)
            result.push_back(column(n, [&] { return offset + normal(); }));
        return result;
    }

    std::mt19937_64 random_{20240303};
};

std::vector<double> combined(const std::vector<double> &a, const std::vector<double> &b,
                             const std::function<double(double, double)> &operation)
{
    std::vector<double> result(a.size());
    std::transform(a.begin(), a.end(), b.begin(), result.begin(), operation);
    return result;
}

struct Bar
{
    const char *set;
    double coefficients;
    double standardErrors; ///< 0: the residual is none
};

void PrintTo(const Bar &bar, std::ostream *stream)
{
    *stream << bar.set;
}

class Certified : public testing::TestWithParam<Bar>
{
protected:
    const NistSet set_ = readNist(GetParam().set);
    const NormalEquations fit_ = fit(set_.columns);

    double meanSquare() const { return fit_.sse / (set_.observations() - set_.controls() - 1); }
    double standardError(int i) const { return std::sqrt(meanSquare() * fit_.inverse[i][i]); }
};

} // namespace

// What doubles allow: the columns' decimals are rounded, and Filip's powers nearly depend on each other.
INSTANTIATE_TEST_SUITE_P(Nist, Certified,
                         testing::Values(Bar{"Norris", 14.0, 13.9}, Bar{"Pontius", 13.5, 13.7},
                                         Bar{"Longley", 15, 15}, Bar{"Filip", 7.6, 8.1}, Bar{"Wampler1", 15, 0},
                                         Bar{"Wampler2", 13.2, 0}, Bar{"Wampler3", 15, 15}, Bar{"Wampler4", 15, 15},
                                         Bar{"Wampler5", 15, 15}),
                         [](const auto &test) { return std::string(test.param.set); });

TEST_P(Certified, FiguresReachTheirDigits)
{
    double coefficients = 15;
    double standardErrors = 15;
    for (int i = 0; i <= set_.controls(); ++i) {
        coefficients = std::min(coefficients, digitsAgreed(fit_.b[i], set_.coefficients[i].certified));
        standardErrors = std::min(standardErrors, digitsAgreed(standardError(i), set_.standardErrors[i].certified));
    }
    const double residual = digitsAgreed(std::sqrt(meanSquare()), set_.residualDeviation.certified);
    const double regression = digitsAgreed(fit_.ssr, set_.regressionSquares.certified);
    RecordProperty("coefficients", std::to_string(coefficients));
    RecordProperty("standardErrors", std::to_string(standardErrors));
    RecordProperty("residualDeviation", std::to_string(residual));
    std::printf("%-9s coefficients %4.1f", GetParam().set, coefficients);
    if (GetParam().standardErrors > 0)
        std::printf("  standard errors %4.1f  residual deviation %4.1f", standardErrors, residual);
    std::printf("  regression sum of squares %4.1f\n", regression);

    EXPECT_GE(coefficients, GetParam().coefficients);
    EXPECT_GE(regression, std::min(13.0, GetParam().coefficients));
    if (GetParam().standardErrors > 0) {
        EXPECT_GE(standardErrors, GetParam().standardErrors);
        EXPECT_GE(residual, GetParam().standardErrors);
    }
    EXPECT_LT(digitsAgreed(fit_.b[0] * (1 + 1e-6), set_.coefficients[0].certified), 7);
}

TEST_P(Certified, FiguresAreThoseOfRationalArithmeticOnTheSameDoubles)
{
    // To the last bit; but of the 32 digits Filip's matrix takes 21.
    const double ulp = std::string(GetParam().set) == "Filip" ? 1e-11 : 0x1p-52;
    const auto expectNear = [](double got, const std::string &text, double tolerance) {
        const double exact = std::stod(text);
        EXPECT_LE(std::fabs(got - exact), tolerance * std::fabs(exact)) << got << ", " << text;
    };
    for (int i = 0; i <= set_.controls(); ++i)
        expectNear(fit_.b[i], set_.coefficients[i].fromDoubles, ulp);
    expectNear(fit_.ssr, set_.regressionSquares.fromDoubles, ulp);
    if (GetParam().standardErrors > 0) {
        expectNear(fit_.sse, set_.residualSquares.fromDoubles, ulp);
        for (int i = 0; i <= set_.controls(); ++i)
            expectNear(standardError(i), set_.standardErrors[i].fromDoubles, 4 * ulp);
    }
}

TEST_P(Certified, NoColumnCountsAsDependent)
{
    Columns controls = set_.columns;
    controls.pop_back();
    EXPECT_EQ(dependent(controls), std::vector<int>());
}

TEST_P(Certified, WithoutAvx2EveryBitIsTheSame)
{
    const WithoutAvx2 guard;
    const NormalEquations without = fit(set_.columns);
    for (int i = 0; i < MaxParameters; ++i) {
        EXPECT_TRUE(same(fit_.b[i], without.b[i]));
        for (int j = 0; j < MaxParameters; ++j) {
            EXPECT_TRUE(same(fit_.inverse[i][j], without.inverse[i][j]));
            EXPECT_TRUE(same(fit_.factors[i][j], without.factors[i][j]));
        }
    }
    EXPECT_TRUE(same(fit_.sse, without.sse));
    EXPECT_TRUE(same(fit_.ssr, without.ssr));
}

TEST_P(Certified, TheCoefficientsAloneAreTheSameToTheLastBit)
{
    for (int m = 0; m <= set_.controls(); ++m) {
        const CrossProducts products = productsOf(set_.columns);
        CrossProducts fewer = products; // the first m columns and the response
        for (int i = 0; i <= m; ++i)
            fewer[i][m + 1] = fewer[m + 1][i] = products[i][set_.controls() + 1];
        fewer[m + 1][m + 1] = products[set_.controls() + 1][set_.controls() + 1];
        const NormalEquations whole = solveNormalEquations(fewer, m);
        const Coefficients alone = solveCoefficients(fewer, m);
        for (int i = 0; i < MaxParameters; ++i)
            EXPECT_TRUE(same(alone.b[i], whole.b[i])) << m;
        EXPECT_TRUE(same(alone.sse, whole.sse)) << m;
        EXPECT_TRUE(same(alone.ssr, whole.ssr)) << m;
        EXPECT_EQ(alone.zeroRows, whole.zeroRows);
    }
}

TEST_F(NormalEquationsTest, TheCoefficientsAloneAreTheSameForAnyResponseAndMatrix)
{
    for (int set = 0; set < 300; ++set) {
        const int m = set % 11;
        const int n = 2 + set % 40; // often fewer than parameters
        Columns data = columns(m + 1, n, set % 3 * 100);
        if (set % 4 == 0 && m > 0)
            data[0] = data[static_cast<std::size_t>(m) - 1];
        if (set % 5 == 0)
            std::fill(data.back().begin(), data.back().end(), 0.0);
        if (set % 7 == 0) { // a right side that begins with zeros
            std::fill(data.back().begin(), data.back().end(), 0.0);
            data.back()[0] = 1;
            data.back()[1] = -1;
        }
        const CrossProducts products = productsOf(data);
        const NormalEquations whole = solveNormalEquations(products, m);
        const Coefficients alone = solveCoefficients(products, m);
        for (int i = 0; i < MaxParameters; ++i)
            EXPECT_TRUE(same(alone.b[i], whole.b[i])) << set;
        EXPECT_TRUE(same(alone.sse, whole.sse)) << set;
        EXPECT_TRUE(same(alone.ssr, whole.ssr)) << set;
        EXPECT_EQ(alone.zeroRows, whole.zeroRows);
    }
}

TEST(DigitsAgreed, CountsWhatTheWordSays)
{
    EXPECT_EQ(digitsAgreed(2.0, "2.00000000000000"), 15);
    EXPECT_EQ(digitsAgreed(-3482258.6345958184, "-3482258.63459582"), 15); // the published one when rounded
    EXPECT_NEAR(digitsAgreed(-3482258.63459583, "-3482258.63459582"), 14.54, 0.02);
    EXPECT_NEAR(digitsAgreed(1.001, "1.00000000000000"), 3, 1e-9);
    EXPECT_NEAR(digitsAgreed(0.1001e-3, "0.100000000000000E-03"), 3, 1e-9);
    EXPECT_NEAR(digitsAgreed(2.0, "1.00000000000000"), 0, 1e-9);
    EXPECT_EQ(digitsAgreed(0, "0.000000000000000"), 15);
}

TEST(LeastSquaresByReflections, HaveTheCertifiedFigures)
{
    const NistSet set = readNist("Longley");
    const LeastSquares got = leastSquares(set.columns);
    for (int i = 0; i <= set.controls(); ++i) {
        EXPECT_GE(digitsAgreed(double(got.b[i]), set.coefficients[i].certified), 12.5);
        EXPECT_GE(digitsAgreed(double(std::sqrt(got.inverse[i][i] * got.mse())), set.standardErrors[i].certified),
                  12.5);
    }
    EXPECT_GE(digitsAgreed(double(got.sse), set.residualSquares.certified), 12.5);
    EXPECT_GE(digitsAgreed(double(got.ssr), set.regressionSquares.certified), 12.5);
}

TEST_F(NormalEquationsTest, AgreesWithAnOrthogonalDecompositionInLongDouble)
{
    for (int round = 0; round < 60; ++round) {
        const int m = round % 11;
        const int n = round < 3 ? 2500 : m + 2 + static_cast<int>(random_() % 100);
        Columns data = columns(m + 1, n, round % 2 ? 10 : 0);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < m; ++j)
                data[m][i] += (j + 1) * data[j][i];
        const NormalEquations got = fit(data);
        const LeastSquares other = leastSquares(data);
        double squares = 0;
        for (const double y : data[m])
            squares += y * y;
        EXPECT_NEAR(got.sse, static_cast<double>(other.sse), 1e-13 * squares);
        EXPECT_NEAR(got.ssr, static_cast<double>(other.ssr), 1e-13 * squares);
        for (int i = 0; i <= m; ++i) {
            EXPECT_NEAR(got.b[i], static_cast<double>(other.b[i]), 1e-12 * static_cast<double>(norm(other.b)));
            for (int j = 0; j <= m; ++j)
                EXPECT_NEAR(got.inverse[i][j], static_cast<double>(other.inverse[i][j]),
                            1e-11 * static_cast<double>(norm(other.inverse)));
        }
        for (int i = m + 1; i < MaxParameters; ++i)
            EXPECT_EQ(got.b[i], 0);
        EXPECT_EQ(got.zeroRows, 0);
    }
}

TEST_F(NormalEquationsTest, DataOnAPlaneGiveItsCoefficients)
{
    const Columns data = {{1, 2, 3, 4, 5}, {2, 7, 1, 8, 2}, {3, 1, 10, 6, 15}}; // 2 + 3 x1 - x2
    const NormalEquations got = fit(data);
    EXPECT_EQ(got.b[0], 2);
    EXPECT_EQ(got.b[1], 3);
    EXPECT_EQ(got.b[2], -1);
    EXPECT_GE(got.sse, 0);
    EXPECT_LT(got.sse, 1e-25);
    EXPECT_DOUBLE_EQ(got.ssr, 371 - 35 * 35 / 5.0);
}

TEST_F(NormalEquationsTest, WithoutColumnsTheConstantIsTheMean)
{
    const NormalEquations got = fit({{1, 2, 3, 10}});
    EXPECT_EQ(got.b[0], 4);
    EXPECT_EQ(got.sse, 50);
    EXPECT_EQ(got.ssr, 0);
    EXPECT_EQ(got.inverse[0][0], 0.25);
    EXPECT_EQ(got.factors[0][0], 4);

    std::vector<double> response;
    for (int i = 0; i < 50; ++i) {
        response.push_back(std::sin(i * 1.7) * 1e5 + 1e4);
        EXPECT_EQ(fit({response}).ssr, 0) << "no rounding either";
    }
}

TEST_F(NormalEquationsTest, ANegativeSumOfSquaredErrorsWithinRoundingIsZero)
{
    int zeros = 0;
    for (int round = 0; round < 300; ++round) {
        const int n = round < 5 ? 2500 : 12 + static_cast<int>(random_() % 300);
        Columns data = columns(10, n, round % 3 * 1000);
        std::vector<double> y(n, 7);
        for (std::vector<double> &values : data)
            for (int i = 0; i < n; ++i) {
                values[i] = std::nearbyint(values[i] * 1024); // so that the response is exact
                y[i] += (values == data[3] ? -3 : 2) * values[i];
            }
        data.push_back(y);
        const double sse = fit(data).sse;
        EXPECT_GE(sse, 0);
        EXPECT_LE(sse, 1e-22 * productsOf({y})[1][1].hi);
        zeros += sse == 0;
    }
    EXPECT_GT(zeros, 30);
}

TEST_F(NormalEquationsTest, SmallErrorsOfALargeResponseAreKept)
{
    // An error of one in a response of 1e8: 16 digits down in the sums of squares.
    std::vector<double> x(100);
    std::vector<double> y(100);
    for (int i = 0; i < 100; ++i) {
        x[i] = i;
        y[i] = 1e8 + 3.0 * i;
    }
    y[50] += 1;
    const double inverseAt50 = 1 / 100.0 + 0.25 / 83325.0;
    EXPECT_NEAR(fit({x, y}).sse, 1 - inverseAt50, 1e-12);
}

TEST_F(NormalEquationsTest, RowsOfZerosAreCounted)
{
    const std::vector<double> zero(6, 0.0);
    const std::vector<double> x = {1, 2, 3, 5, 8, 13};
    EXPECT_EQ(fit({x, x}).zeroRows, 0);
    EXPECT_EQ(fit({zero, x}).zeroRows, 1);
    EXPECT_EQ(fit({zero, x, zero, x}).zeroRows, 2);
    EXPECT_EQ(solveNormalEquations(CrossProducts{}, 3).zeroRows, 4);
}

TEST_F(NormalEquationsTest, TooFewObservationsGiveFiguresAndDependentColumns)
{
    for (int m = 0; m <= 10; ++m) {
        for (int n = 1; n <= m; ++n) {
            const CrossProducts products = productsOf(columns(m + 1, n));
            EXPECT_FALSE(std::isnan(solveNormalEquations(products, m).b[0]));
            EXPECT_EQ(static_cast<int>(dependentColumns(products, m).size()), m - n + 1);
        }
    }
}

TEST_F(NormalEquationsTest, NaNsAndOverflowGiveFiguresThatAreNoNumbers)
{
    for (const double odd : {notANumber, infinity, 1e200}) {
        for (int m = 1; m <= 10; ++m) {
            Columns data = columns(m + 1, 20);
            data[m / 2][7] = odd;
            EXPECT_FALSE(std::isfinite(fit(data).sse));
            data = columns(m + 1, 20);
            data[m][19] = odd; // in the response
            EXPECT_FALSE(std::isfinite(fit(data).sse));
        }
    }
}

TEST_F(NormalEquationsTest, AMultipleOfAColumnDependsOnIt)
{
    for (const int n : {5, 50, 2500}) {
        for (const double offset : {0.0, 1e3, 1e6, 1e9}) {
            const std::vector<double> x = column(n, [&] { return offset + normal(); });
            const std::vector<double> other = column(n, [&] { return offset + normal(); });
            const std::vector<double> multiple = combined(x, x, [](double a, double) { return 3.7 * a; });
            EXPECT_EQ(dependent({x, multiple}), (std::vector<int>{2})) << n << ' ' << offset;
            EXPECT_EQ(dependent({multiple, x}), (std::vector<int>{2})) << n << ' ' << offset;
            EXPECT_EQ(dependent({x, other, multiple}), (std::vector<int>{3})) << n << ' ' << offset;
            EXPECT_EQ(dependent({x, multiple, other, multiple}), (std::vector<int>{2, 4})) << n << ' ' << offset;
            EXPECT_EQ(dependent({x, other}), std::vector<int>()) << n << ' ' << offset;
        }
    }
}

TEST_F(NormalEquationsTest, ASumOfColumnsDependsOnThem)
{
    const std::vector<std::function<double()>> kinds = {
        [this] { return normal(); },
        [this] { return 1000 + normal(); },
        [this] { return normal() / normal(); },
        [this] { return std::exp(3 * normal()); },
        [this] { return static_cast<double>(random_() % 2); },
        [this] { return random_() % 1000 == 0 ? 1e6 : 1 + normal() / 100; },
    };
    for (const auto &kind : kinds) {
        for (int round = 0; round < 30; ++round) {
            const int n = round < 5 ? 2500 : 30 + static_cast<int>(random_() % 100);
            const std::vector<double> a = column(n, kind);
            const std::vector<double> b = column(n, [this] { return normal(); });
            const std::vector<double> sum = combined(a, b, std::plus<double>());
            const std::vector<double> affine =
                combined(a, b, [](double x, double y) { return 0.3 * x - 1.1 * y + 7; });
            EXPECT_EQ(dependent({a, b, sum}), (std::vector<int>{3}));
            EXPECT_EQ(dependent({affine, b, sum, a}), (std::vector<int>{3, 4}));
        }
    }
}

TEST_F(NormalEquationsTest, ASumInWhichLargeColumnsCancelDependsOnThem)
{
    for (int round = 0; round < 40; ++round) {
        const std::vector<double> up = column(500, [this] { return 1e8 + normal(); });
        const std::vector<double> down = column(500, [this] { return -1e8 + normal(); });
        EXPECT_EQ(dependent({up, down, combined(up, down, std::plus<double>())}), (std::vector<int>{3}));
    }
}

TEST_F(NormalEquationsTest, ColumnsThatAreOnlyAlikeDoNotDepend)
{
    const std::vector<double> x = column(500, [this] { return normal(); });
    const std::vector<double> near = combined(x, x, [this](double a, double) { return a + 1e-10 * normal(); });
    EXPECT_EQ(dependent({x, near}), std::vector<int>());
    std::vector<double> year;
    std::vector<double> powers[3];
    for (int i = 1947; i <= 1962; ++i) {
        year.push_back(i);
        for (int k = 0; k < 3; ++k)
            powers[k].push_back(std::pow(i, k + 2));
    }
    EXPECT_EQ(dependent({year, powers[0], powers[1], powers[2]}), std::vector<int>());
}

TEST_F(NormalEquationsTest, AConstantColumnDependsOnTheConstant)
{
    EXPECT_EQ(dependent({{7, 7, 7, 7}, {1, 2, 3, 5}, {0, 0, 0, 0}}), (std::vector<int>{1, 3}));
    EXPECT_EQ(dependent({{0.1, 0.1, 0.1}}), (std::vector<int>{1}));
}

TEST_F(NormalEquationsTest, ColumnsBeyondTheRankDepend)
{
    for (int n = 1; n <= 6; ++n) {
        std::vector<int> beyond;
        for (int k = n; k <= 8; ++k)
            beyond.push_back(k);
        EXPECT_EQ(dependent(columns(8, n)), beyond) << n;
    }
    EXPECT_EQ(dependentColumns(productsOf({{1, 2, 3}}), 0), std::vector<int>());
}

TEST_F(NormalEquationsTest, NothingIsSaidOfColumnsWithNaNs)
{
    const std::vector<double> x = {1, 2, 3, 5, 8};
    const std::vector<double> odd = {1, notANumber, 3, 5, 8};
    EXPECT_EQ(dependent({odd, x, x}), (std::vector<int>{3}));
    EXPECT_EQ(dependent({x, odd, odd, x}), (std::vector<int>{4}));
    EXPECT_EQ(dependent({{1, infinity, 3, 5, 8}, x}), std::vector<int>());
}
