// SPDX-License-Identifier: MIT
#include "engine/kernel/Lowparts.h"
#include "engine/kernel/Exact.h"
#include "engine/kernel/Inferencereference.h"
#include "engine/kernel/Nist.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

using namespace nuvo;

namespace {

Exact powerOf(const Exact &a, int exponent)
{
    Exact result = 1;
    for (int i = 0; i < std::abs(exponent); ++i)
        result *= a;
    return exponent < 0 ? Exact(1 / result) : result;
}

/// Columns, each with its low parts.
struct Extended
{
    std::vector<std::vector<double>> values;
    std::vector<std::vector<double>> low;

    void add(const std::vector<double> &column, const std::function<double(double)> &value,
             const std::function<double(double, double)> &lowPart)
    {
        values.emplace_back();
        low.emplace_back();
        for (const double x : column) {
            values.back().push_back(value(x));
            low.back().push_back(lowPart(x, values.back().back()));
        }
    }
};

struct Fitted
{
    double coefficients = 15;
    double standardErrors = 15;
    double residualDeviation = 15;
};

/// The digits that a fit of Filip's data on x and its powers has.
Fitted fitPowers(bool lowParts, bool correction)
{
    const NistSet set = readNist("Filip"); // x, its powers as published, y
    const std::vector<double> &x = set.columns[0];
    Extended powers;
    for (int k = 1; k <= set.controls(); ++k)
        powers.add(
            x, [k](double v) { return std::pow(v, k); },
            [k](double v, double power) { return lowPartOfPower(v, k, power); });
    ObservedColumns observed;
    observed.n = set.observations();
    observed.m = set.controls();
    for (int j = 1; j <= observed.m; ++j) {
        observed.x[j] = powers.values[j - 1].data();
        observed.xLow[j] = lowParts && j > 1 ? powers.low[j - 1].data() : nullptr;
    }
    observed.y = set.columns.back().data();
    const CrossProducts products = productsOf(observed);
    const Factors factors = correction ? factorize(products, observed) : factorize(products, observed.m);
    Fitted result;
    for (int j = 0; j <= observed.m; ++j) {
        const double error = std::ldexp(std::sqrt(factors.variance()) * sqrt(factors.inverseDiagonal(j)).hi,
                                        factors.exponent[observed.m + 1] - factors.exponent[j]);
        result.coefficients =
            std::min(result.coefficients, digitsAgreed(factors.coefficient(j), set.coefficients[j].certified));
        result.standardErrors = std::min(result.standardErrors, digitsAgreed(error, set.standardErrors[j].certified));
    }
    result.residualDeviation = digitsAgreed(factors.unscaled(std::sqrt(factors.variance()), observed.m + 1),
                                            set.residualDeviation.certified);
    std::printf("low parts %d, correction %d: coefficients %.1f, standard errors %.1f, residual deviation %.1f\n",
                lowParts, correction, result.coefficients, result.standardErrors, result.residualDeviation);
    return result;
}

} // namespace

TEST(LowParts, AreWhatRoundingCutsOff)
{
    std::mt19937_64 random(20240404);
    std::normal_distribution<double> normal(0, 100);
    for (int round = 0; round < 2000; ++round) {
        const double a = normal(random);
        const double b = normal(random);
        EXPECT_EQ(exact(a * b) + exact(lowPartOfProduct(a, b)), exact(a) * exact(b));
        EXPECT_LE(relativeError(exact(a / b) + exact(lowPartOfQuotient(a, b)), exact(a) / exact(b)), 0x1p-104);
        const double root = std::sqrt(std::fabs(a));
        const Exact whole = exact(root) + exact(lowPartOfRoot(std::fabs(a)));
        EXPECT_LE(relativeError(whole * whole, exact(std::fabs(a))), 0x1p-102);
        for (const int exponent : {-3, -1, 0, 1, 2, 3, 7, 10}) {
            const double power = std::pow(a, exponent);
            EXPECT_LE(
                relativeError(exact(power) + exact(lowPartOfPower(a, exponent, power)), powerOf(exact(a), exponent)),
                0x1p-98)
                << a << '^' << exponent;
        }
    }
}

TEST(LowParts, AreZeroWhereThereIsNoneToTell)
{
    EXPECT_EQ(lowPartOfProduct(3, 5), 0);
    EXPECT_EQ(lowPartOfProduct(1e200, 1e200), 0);
    EXPECT_EQ(lowPartOfQuotient(1, 0), 0);
    EXPECT_EQ(lowPartOfQuotient(0, 0), 0);
    EXPECT_EQ(lowPartOfRoot(0), 0);
    EXPECT_EQ(lowPartOfRoot(-1), 0);
    EXPECT_EQ(lowPartOfPower(3, 0.5, std::sqrt(3)), 0);
    EXPECT_EQ(lowPartOfPower(1e200, 2, infinity), 0);
    EXPECT_EQ(lowPartOfPower(0, -1, infinity), 0);
    EXPECT_EQ(lowPartOfPower(3, 1e300, infinity), 0);
    EXPECT_EQ(lowPartOfPower(3, notANumber, notANumber), 0);
    EXPECT_EQ(lowPartOfPower(-3, 3, -27), 0);
}

TEST(LowParts, APowerThatIsNotRoundedToNearestHasItsLowPartAllTheSame)
{
    const double cube = 1.1 * 1.1 * 1.1; // rounded twice
    EXPECT_LE(relativeError(exact(cube) + exact(lowPartOfPower(1.1, 3, cube)), powerOf(exact(1.1), 3)), 0x1p-100);
}

TEST(LowParts, CountInCrossProducts)
{
    std::mt19937_64 random(7);
    std::normal_distribution<double> normal(1e3, 1);
    std::vector<double> x(101);
    std::generate(x.begin(), x.end(), [&] { return normal(random); });
    Extended columns;
    columns.add(
        x, [](double v) { return v; }, [](double, double) { return 0; });
    columns.add(
        x, [](double v) { return v / 7; }, [](double v, double) { return lowPartOfQuotient(v, 7); });
    columns.add(
        x, [](double v) { return std::sqrt(v); }, [](double v, double) { return lowPartOfRoot(v); });
    std::vector<ExtendedColumn> operands;
    for (std::size_t j = 0; j < 3; ++j)
        operands.push_back({{columns.values[j].data(), minMax(columns.values[j].data(), 101).largest()},
                            j == 0 ? nullptr : columns.low[j].data()});
    CrossProducts products;
    crossProducts(operands, 101, products);
    for (std::size_t i = 0; i < 3; ++i) {
        Exact sum = 0;
        for (std::size_t k = 0; k < x.size(); ++k)
            sum += exact(columns.values[i][k]) + exact(columns.low[i][k]);
        EXPECT_LE(relativeError(exact(products[0][i + 1]), sum), 0x1p-90);
        for (std::size_t j = 0; j < 3; ++j) {
            sum = 0;
            for (std::size_t k = 0; k < x.size(); ++k)
                sum += (exact(columns.values[i][k]) + exact(columns.low[i][k])) *
                       (exact(columns.values[j][k]) + exact(columns.low[j][k]));
            EXPECT_LE(relativeError(exact(products[i + 1][j + 1]), sum), 0x1p-90) << i << j;
            EXPECT_TRUE(same(products[i + 1][j + 1], products[j + 1][i + 1]));
        }
    }
}

TEST(LowParts, WithoutThemCrossProductsAreTheSameToTheLastBit)
{
    const NistSet set = readNist("Longley");
    std::vector<DataColumn> plain;
    std::vector<ExtendedColumn> extended;
    std::vector<double> low(set.columns[0].size(), 1e-20);
    for (const std::vector<double> &column : set.columns) {
        plain.push_back({column.data(), minMax(column.data(), set.observations()).largest()});
        extended.push_back({plain.back(), plain.size() == 3 ? low.data() : nullptr});
    }
    CrossProducts without;
    CrossProducts with;
    crossProducts(plain, set.observations(), without);
    crossProducts(extended, set.observations(), with);
    for (std::size_t i = 0; i <= plain.size(); ++i)
        for (std::size_t j = 0; j <= plain.size(); ++j)
            EXPECT_EQ(same(without[i][j], with[i][j]), i != 3 && j != 3);
}

TEST(LowParts, FilipFromPowersOfItsColumnReachesThePublishedDigits)
{
    const Fitted rounded = fitPowers(false, true);
    EXPECT_LT(rounded.coefficients, 9); // the yardstick: rounded powers lose the rest
    const Fitted exactPowers = fitPowers(true, false);
    EXPECT_GE(exactPowers.coefficients, 11);
    EXPECT_GE(exactPowers.standardErrors, 11);
    const Fitted corrected = fitPowers(true, true);
    EXPECT_GE(corrected.coefficients, 13.9);
    EXPECT_GE(corrected.standardErrors, 13.9);
    EXPECT_GE(corrected.residualDeviation, 13.9);
}
