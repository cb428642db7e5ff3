// SPDX-License-Identifier: MIT
#include "engine/kernel/Crossproducts.h"
#include "engine/kernel/Exact.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <thread>
#include <vector>

using namespace nuvo;

namespace {

using Values = std::vector<double>;

DataColumn columnOf(const Values &values)
{
    const int n = static_cast<int>(values.size());
    return {values.data(), n == 0 ? 0 : minMax(values.data(), n).largest()};
}

DoubleDouble dot(const Values &a, const Values &b)
{
    const DataColumn right = columnOf(b);
    DoubleDouble out;
    dots(columnOf(a), {&right, 1}, static_cast<int>(a.size()), &out);
    return out;
}

Exact exactDot(const Values &a, const Values &b)
{
    Exact sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        sum += exact(a[i]) * exact(b[i]);
    return sum;
}

/// The error that Crossproducts.cpp derives, relative to (n rounded up to 4) * |a| |b|.
Exact bound(const Values &a, const Values &b)
{
    const auto terms = (a.size() + 3) / 4;
    return exact(18.01 * static_cast<double>(terms + 4) * 0x1p-104) * 4 * terms * exact(columnOf(a).largest) *
           exact(columnOf(b).largest);
}

class ProductsOfColumns : public testing::Test
{
protected:
    Values filled(int n, const std::function<double()> &value)
    {
        Values result(n);
        std::generate(result.begin(), result.end(), value);
        return result;
    }

    double normal() { return std::normal_distribution<double>()(random_); }
    double uniform() { return std::uniform_real_distribution<double>()(random_); }
    int size() { return 1 + static_cast<int>(random_() % 300); }

    /// Kinds of columns that people have, and some that they have not.
    const std::vector<std::pair<const char *, std::function<double()>>> kinds_ = {
        {"normal", [this] { return normal(); }},
        {"far from zero", [this] { return 1e6 + normal(); }},
        {"uniform", [this] { return uniform(); }},
        {"heavy tails", [this] { return normal() / normal(); }},
        {"zeros and ones", [this] { return static_cast<double>(random_() % 2); }},
        {"mostly zero", [this] { return random_() % 50 == 0 ? normal() : 0.0; }},
        {"large integers", [this] { return static_cast<double>(random_() % 1000000000); }},
        {"small integers", [this] { return static_cast<double>(random_() % 100) - 50; }},
        {"a peak", [this] { return random_() % 100 == 0 ? 1e7 : 1 + uniform(); }},
        {"all magnitudes", [this] { return std::ldexp(normal(), static_cast<int>(random_() % 200) - 100); }},
        {"near 1e140", [this] { return 1e140 * normal(); }},
        {"near 1e-130", [this] { return 1e-130 * normal(); }},
    };

    std::mt19937_64 random_{20240302};
};

} // namespace

TEST_F(ProductsOfColumns, DotsAreWithinTheDerivedBoundOfTheExactSum)
{
    for (const auto &[leftName, left] : kinds_) {
        for (const auto &[rightName, right] : kinds_) {
            for (int round = 0; round < 8; ++round) {
                const int n = round == 0 ? 2500 : size();
                const Values a = filled(n, left);
                const Values b = filled(n, right);
                const Exact error = abs(exact(dot(a, b)) - exactDot(a, b));
                EXPECT_LE(error, bound(a, b)) << leftName << ", " << rightName << ", n = " << n;
            }
        }
    }
}

TEST_F(ProductsOfColumns, TheBoundAt2500IsTheOneInTheHeader)
{
    const Values ones(2500, 1.0);
    EXPECT_LT(bound(ones, ones), exact(2500 * 0x1p-90));
}

TEST_F(ProductsOfColumns, SumsOfSquaresHaveThirtyDigits)
{
    for (int round = 0; round < 20; ++round) {
        const Values a = filled(2500, kinds_[0].second);
        EXPECT_LT(relativeError(exact(dot(a, a)), exactDot(a, a)), 0x1p-94);
    }
}

TEST_F(ProductsOfColumns, IntegersThatFitGiveTheExactSum)
{
    for (int round = 0; round < 200; ++round) {
        const Values a = filled(size(), [this] { return static_cast<double>(random_() % 2000000); });
        const Values b =
            filled(static_cast<int>(a.size()), [this] { return -static_cast<double>(random_() % 2000000); });
        EXPECT_EQ(exact(dot(a, b)), exactDot(a, b));
    }
}

TEST_F(ProductsOfColumns, RoundingsThatAllGoOneWayStayWithinTheBound)
{
    // After the first terms each one is a leftover, a little less than half a unit of the sum, and if 600 of them
    // were added up at once, nearly half a place of that sum would be lost at each.
    const double unit = 0x1p-41;
    Values a(2500, unit * (0.4375 + 0.49 * 0x1p-44));
    std::fill_n(a.begin(), 4, 1.0);
    const Values ones(2500, 1.0);
    EXPECT_LE(abs(exact(dot(a, ones)) - exactDot(a, ones)), bound(a, ones));
}

TEST_F(ProductsOfColumns, MagnitudesAtTheEndsOfTheRangeAreRight)
{
    struct Scales
    {
        double a;
        double b;
    };
    for (const auto &[aScale, bScale] : {Scales{1e200, 1e-200},
                                         {1e-200, 1e200},
                                         {1e150, 1e150},
                                         {1e-150, 1e-120},
                                         {1e-300, 1e290},
                                         {1e300, 1e-305},
                                         {1e306, 1},
                                         {1e-300, 1},
                                         {1e-318, 1e300},
                                         {1e-318, 1},
                                         {1e200, 1e90},
                                         {1e-200, 1e-80}}) {
        const Values a = filled(100, [&, scale = aScale] { return scale * normal(); });
        const Values b = filled(100, [&, scale = bScale] { return scale * (1 + uniform()); });
        const DoubleDouble got = dot(a, b);
        const Exact wanted = exactDot(a, b);
        // Below the normal numbers the last place is an absolute one.
        const Exact underflow = exact(std::numeric_limits<double>::denorm_min());
        EXPECT_LE(abs(exact(got) - wanted), bound(a, b) + 2 * underflow) << aScale << ' ' << bScale;
        EXPECT_TRUE(std::isfinite(got.hi));
        const WithoutAvx2 guard;
        EXPECT_TRUE(same(dot(a, b), got)) << aScale << ' ' << bScale;
    }
}

TEST_F(ProductsOfColumns, SumsOutOfRangeAreInfiniteOrZero)
{
    const Values huge(10, 1e200);
    const Values tiny(10, 1e-200);
    EXPECT_TRUE(same(dot(huge, huge), infinity));
    EXPECT_TRUE(same(dot(huge, Values(10, -1e200)), -infinity));
    EXPECT_EQ(dot(tiny, tiny), DoubleDouble(0));
    EXPECT_EQ(dot(Values(10, 0.0), huge), DoubleDouble(0));
    EXPECT_EQ(dot({}, {}), DoubleDouble(0));
}

TEST_F(ProductsOfColumns, InfinitiesAndNaNsShowInEverySumTheyAreIn)
{
    for (const int n : {1, 2, 3, 4, 5, 7, 8, 100, 131, 2500}) {
        const int last = n - 1;
        for (const int at : {0, n / 2, last}) {
            const Values plain = filled(n, [this] { return 1 + uniform(); });
            Values odd = plain;
            odd[at] = notANumber;
            EXPECT_TRUE(std::isnan(dot(odd, plain).hi));
            EXPECT_TRUE(std::isnan(dot(plain, odd).hi));
            EXPECT_TRUE(std::isnan(dot(Values(n, 0.0), odd).hi));
            odd[at] = infinity;
            EXPECT_TRUE(same(dot(odd, plain), infinity));
            EXPECT_TRUE(same(dot(plain, odd), infinity));
            EXPECT_TRUE(same(dot(odd, odd), infinity));
            EXPECT_TRUE(std::isnan(dot(odd, Values(n, 0.0)).hi));
            Values negative = plain;
            negative[at] = -infinity;
            EXPECT_TRUE(same(dot(negative, plain), -infinity));
            odd[last - at] = -infinity; // meets the other one or is alone in the middle
            EXPECT_FALSE(std::isfinite(dot(odd, plain).hi));
        }
    }
}

TEST_F(ProductsOfColumns, APairsSumDoesNotDependOnTheOtherPairsOrItsSides)
{
    for (int round = 0; round < 40; ++round) {
        const int n = round == 0 ? 2500 : size();
        std::vector<Values> data;
        for (const auto &[name, kind] : kinds_)
            data.push_back(filled(n, kind));
        std::vector<DataColumn> columns(data.size());
        std::transform(data.begin(), data.end(), columns.begin(), columnOf);
        for (std::size_t count = 1; count <= columns.size(); ++count) {
            std::vector<DoubleDouble> together(count);
            dots(columns.back(), std::span(columns).first(count), n, together.data());
            std::vector<DoubleDouble> summed(count);
            sums(std::span(columns).first(count), n, summed.data());
            for (std::size_t k = 0; k < count; ++k) {
                EXPECT_TRUE(same(together[k], dot(data.back(), data[k])));
                EXPECT_TRUE(same(together[k], dot(data[k], data.back())));
                EXPECT_TRUE(same(summed[k], dot(Values(n, 1.0), data[k])));
            }
        }
    }
}

TEST_F(ProductsOfColumns, SumsAndCrossProductsAreThoseOfTheConstantAndTheColumns)
{
    const int n = 250;
    std::vector<Values> data{Values(n, 1.0)};
    std::vector<DataColumn> columns;
    for (int j = 0; j < 11; ++j)
        data.push_back(filled(n, kinds_[j % 4].second));
    for (int j = 1; j <= 11; ++j)
        columns.push_back(columnOf(data[j]));
    CrossProducts products;
    crossProducts(columns, n, products);
    for (int i = 0; i < 12; ++i)
        for (int j = 0; j < 12; ++j)
            EXPECT_TRUE(same(products[i][j], dot(data[i], data[j]))) << i << ' ' << j;

    CrossProducts few;
    crossProducts(std::span(columns).first(2), n, few);
    EXPECT_EQ(few[2][1], products[1][2]);
    EXPECT_EQ(few[0][0], DoubleDouble(n));
    EXPECT_EQ(few[0][3], DoubleDouble(0));
}

TEST_F(ProductsOfColumns, WithoutAvx2EveryBitIsTheSame)
{
    for (const auto &[leftName, left] : kinds_) {
        for (const auto &[rightName, right] : kinds_) {
            for (int round = 0; round < 20; ++round) {
                const int n = round == 0 ? 2500 : size();
                const Values a = filled(n, left);
                const Values b = filled(n, right);
                const DoubleDouble with = dot(a, b);
                const WithoutAvx2 guard;
                const DoubleDouble without = dot(a, b);
                EXPECT_TRUE(same(with, without)) << leftName << ", " << rightName << ", n = " << n;
            }
        }
    }
}

TEST_F(ProductsOfColumns, WithoutAvx2TiesAreTheSame)
{
    // Terms at or next to half a unit of the running sum, with and without something below them.
    for (int round = 0; round < 20000; ++round) {
        const int n = 1 + static_cast<int>(random_() % 12);
        const auto odd = [this] {
            return static_cast<double>(2 * (random_() % 4) + 1) + (random_() % 2 ? 0.0 : 0x1p-40 * normal());
        };
        Values a = filled(n, odd);
        Values b = filled(n, odd);
        const int exponent = static_cast<int>(random_() % 60);
        a[random_() % n] = std::ldexp(1 + uniform(), exponent);
        b[random_() % n] = std::ldexp(1 + uniform(), 54 - exponent);
        const DoubleDouble with = dot(a, b);
        const WithoutAvx2 guard;
        ASSERT_TRUE(same(with, dot(a, b))) << round;
    }
}

TEST_F(ProductsOfColumns, WithoutAvx2TermsBelowTheRangeAreTheSame)
{
    for (int round = 0; round < 2000; ++round) {
        const int exponent = -560 - static_cast<int>(random_() % 400);
        const Values a = {1, std::ldexp(normal(), exponent), 0, 0};
        const Values b = {1, std::ldexp(normal(), -1000 - exponent - static_cast<int>(random_() % 80)), 0, 0};
        const DoubleDouble with = dot(a, b);
        EXPECT_EQ(with, DoubleDouble(1, a[1] * b[1]));
        const WithoutAvx2 guard;
        EXPECT_TRUE(same(with, dot(a, b)));
    }
}

namespace {

double plainMean(const Values &x)
{
    double sum = 0;
    for (const double value : x)
        sum += value / static_cast<double>(x.size());
    return sum;
}

double plainDeviation(const Values &x, double mean)
{
    double sum = 0;
    for (const double value : x)
        sum += (value - mean) * (value - mean) / (static_cast<double>(x.size()) - 1);
    return std::sqrt(sum);
}

/// Expects means() and standardDeviations() of these columns, all n long, to be the plain loops' bits.
void expectPlain(const std::vector<Values> &data, const char *what)
{
    std::vector<const double *> columns(data.size());
    std::transform(data.begin(), data.end(), columns.begin(), [](const Values &values) { return values.data(); });
    const int n = static_cast<int>(data[0].size());
    Values mean(data.size());
    Values deviation(data.size());
    means(columns, n, mean.data());
    standardDeviations(columns, mean.data(), n, deviation.data());
    for (std::size_t k = 0; k < data.size(); ++k) {
        ASSERT_TRUE(same(mean[k], plainMean(data[k]))) << what << ", n = " << n << ", column " << k;
        ASSERT_TRUE(same(deviation[k], plainDeviation(data[k], mean[k])))
            << what << ", n = " << n << ", column " << k;
    }
}

} // namespace

TEST_F(ProductsOfColumns, MeansAndDeviationsAreThePlainLoopsToTheLastBit)
{
    for (const auto &[name, kind] : kinds_) {
        for (int round = 0; round < 100; ++round) {
            std::vector<Values> data(1 + round % 11);
            const int n = round % 10 == 0 ? 2500 : size();
            for (Values &values : data)
                values = filled(n, kind);
            expectPlain(data, name);
            const WithoutAvx2 guard;
            expectPlain(data, name);
        }
    }
}

TEST_F(ProductsOfColumns, EveryQuotientIsTheRoundedOne)
{
    // One term that is not zero: the mean is its quotient.
    for (int n = 1; n <= 2500; ++n) {
        for (int round = 0; round < 4; ++round) {
            std::vector<Values> data(4, Values(n, 0.0));
            for (Values &values : data) {
                // Next to n times a number half-way between two doubles, the hardest to round.
                const double significand = static_cast<double>(0x1p52 + static_cast<double>(random_() >> 12));
                const DoubleDouble halfWay = DoubleDouble::product(significand, n) + DoubleDouble(n / 2.0);
                values[random_() % n] =
                    std::ldexp(round % 2 ? halfWay.hi : normal(), static_cast<int>(random_() % 1800) - 900);
            }
            expectPlain(data, "one term");
        }
    }
}

TEST_F(ProductsOfColumns, MeansOfSubnormalAndHugeValuesAreThePlainLoopsToo)
{
    const double least = std::numeric_limits<double>::denorm_min();
    const std::vector<std::pair<const char *, std::function<double()>>> kinds = {
        {"subnormal", [&] { return least * static_cast<double>(random_() % 100000); }},
        {"around the least normal", [&] { return std::ldexp(normal(), -1022 + static_cast<int>(random_() % 20)); }},
        {"subnormal among zeros", [&] { return random_() % 10 ? 0.0 : -least * static_cast<double>(random_() % 9); }},
        {"subnormal that cancels", [&] { return random_() % 3 ? (random_() % 2 ? 1.0 : -1.0) : 3 * least; }},
        {"squares that are subnormal", [&] { return 0x1p-525 * normal(); }},
        {"huge", [&] { return 1e308 * uniform(); }},
        {"squares that overflow", [&] { return 1e200 * normal(); }},
        {"now and then infinite", [&] { return random_() % 100 ? normal() : infinity; }},
        {"now and then NaN", [&] { return random_() % 100 ? normal() : notANumber; }},
        {"zeros of both signs", [&] { return random_() % 2 ? 0.0 : -0.0; }},
    };
    for (const auto &[name, kind] : kinds) {
        for (int round = 0; round < 200; ++round) {
            std::vector<Values> data(4);
            const int n = 2 * size();
            for (Values &values : data)
                values = filled(n, kind);
            expectPlain(data, name);
        }
    }
}

TEST_F(ProductsOfColumns, OneBadColumnLeavesTheOthersAlone)
{
    std::vector<Values> data(7);
    for (Values &values : data)
        values = filled(100, kinds_[0].second);
    data[1][50] = notANumber;
    data[2][99] = infinity;
    data[4][3] = 5e-324;
    expectPlain(data, "mixed");
}

TEST_F(ProductsOfColumns, OneObservationHasNoDeviation)
{
    const double x = 5;
    const double *column = &x;
    double mean = 0;
    double deviation = 0;
    means({&column, 1}, 1, &mean);
    standardDeviations({&column, 1}, &mean, 1, &deviation);
    EXPECT_EQ(mean, 5);
    EXPECT_TRUE(std::isnan(deviation));
    means({&column, 1}, 0, &mean);
    EXPECT_EQ(mean, 0);
}

TEST_F(ProductsOfColumns, KnownMeanAndDeviation)
{
    const Values x = {1, 2, 3, 5};
    const double *column = x.data();
    double mean = 0;
    double deviation = 0;
    means({&column, 1}, 4, &mean);
    standardDeviations({&column, 1}, &mean, 4, &deviation);
    EXPECT_EQ(mean, 2.75);
    EXPECT_DOUBLE_EQ(deviation, std::sqrt(8.75 / 3));
}

namespace {

ColumnRange plainRange(const Values &x)
{
    ColumnRange range{x[0], x[0]};
    for (const double value : x) {
        if (value > range.max)
            range.max = value;
        else if (value < range.min)
            range.min = value;
    }
    return range;
}

} // namespace

TEST_F(ProductsOfColumns, ExtremesAreThePlainLoopsToTheLastBit)
{
    auto kinds = kinds_;
    kinds.emplace_back("zeros of both signs", [this] { return random_() % 2 ? 0.0 : -0.0; });
    kinds.emplace_back("no negative ones", [this] { return random_() % 3 ? uniform() : random_() % 2 ? 0.0 : -0.0; });
    kinds.emplace_back("no positive ones", [this] {
        return random_() % 3 ? -uniform() : random_() % 2 ? 0.0 : -0.0;
    });
    kinds.emplace_back("many NaNs", [this] { return random_() % 3 ? normal() : notANumber; });
    kinds.emplace_back("infinities", [this] { return random_() % 9 ? normal() : normal() / 0.0; });
    for (const auto &[name, kind] : kinds) {
        for (int round = 0; round < 300; ++round) {
            const Values x = filled(round == 0 ? 2500 : 1 + round / 3, kind);
            const ColumnRange expected = plainRange(x);
            const ColumnRange with = minMax(x.data(), static_cast<int>(x.size()));
            EXPECT_TRUE(same(with.min, expected.min)) << name << ' ' << x.size();
            EXPECT_TRUE(same(with.max, expected.max)) << name << ' ' << x.size();
            const WithoutAvx2 guard;
            const ColumnRange without = minMax(x.data(), static_cast<int>(x.size()));
            EXPECT_TRUE(same(without.min, expected.min) && same(without.max, expected.max))
                << name << ' ' << x.size();
        }
    }
}

TEST_F(ProductsOfColumns, AFirstNaNStaysBothExtremes)
{
    for (const int n : {1, 3, 8, 40}) {
        Values x = filled(n, kinds_[0].second);
        x[0] = notANumber;
        const ColumnRange range = minMax(x.data(), n);
        EXPECT_TRUE(std::isnan(range.min));
        EXPECT_TRUE(std::isnan(range.max));
        EXPECT_TRUE(std::isnan(range.largest()));
    }
}

TEST_F(ProductsOfColumns, TheLargestValueIsTheLargestEitherSideOfZero)
{
    EXPECT_EQ((ColumnRange{-7, 3}.largest()), 7);
    EXPECT_EQ((ColumnRange{-2, 3}.largest()), 3);
    EXPECT_EQ((ColumnRange{4, 9}.largest()), 9);
    EXPECT_EQ((ColumnRange{-9, -4}.largest()), 9);
    EXPECT_EQ((ColumnRange{-infinity, 0}.largest()), infinity);
}

TEST_F(ProductsOfColumns, MayBeSummedInSeveralThreads)
{
    const Values a = filled(2500, kinds_[0].second);
    const Values b = filled(2500, kinds_[1].second);
    const DoubleDouble expected = dot(a, b);
    bool right = true;
    std::thread other([&] {
        for (int round = 0; round < 500; ++round)
            right = right && same(dot(a, b), expected);
    });
    for (int round = 0; round < 500; ++round)
        EXPECT_TRUE(same(dot(a, b), expected));
    other.join();
    EXPECT_TRUE(right);
}
