// SPDX-License-Identifier: MIT
#include "engine/kernel/Exact.h"

#include <gtest/gtest.h>

#include <random>

using nuvo::DoubleDouble;

namespace {

constexpr double uu = 0x1p-106; // u squared

class Doubledouble : public testing::Test
{
protected:
    double number(int range = 40)
    {
        const double fraction = std::uniform_real_distribution<double>(0.5, 1)(random_);
        const int exponent = std::uniform_int_distribution<int>(-range, range)(random_);
        return std::ldexp(random_() % 2 ? fraction : -fraction, exponent);
    }

    DoubleDouble wide()
    {
        const double high = number();
        return DoubleDouble::sum(high, high * std::ldexp(number(1), -53));
    }

    /// One close to the other way round, so that a sum cancels.
    DoubleDouble nearly(DoubleDouble value)
    {
        return DoubleDouble::sum(-value.hi, value.hi * std::ldexp(number(3), -50 - static_cast<int>(random_() % 50)));
    }

    static void expectNormal(DoubleDouble value) { EXPECT_EQ(value.hi, value.hi + value.lo); }

    std::mt19937_64 random_{20240229};
};

} // namespace

TEST_F(Doubledouble, SumAndProductOfTwoDoublesAreExact)
{
    for (int i = 0; i < 20000; ++i) {
        const double a = number();
        const double b = number();
        EXPECT_EQ(exact(DoubleDouble::sum(a, b)), exact(a) + exact(b));
        EXPECT_EQ(exact(DoubleDouble::product(a, b)), exact(a) * exact(b));
        expectNormal(DoubleDouble::sum(a, b));
        expectNormal(DoubleDouble::product(a, b));
    }
}

TEST_F(Doubledouble, OperationsStayWithinTheirBounds)
{
    for (int i = 0; i < 20000; ++i) {
        const DoubleDouble a = wide();
        const DoubleDouble b = i % 3 == 0 ? nearly(a) : wide();
        const Exact x = exact(a);
        const Exact y = exact(b);
        EXPECT_LE(relativeError(exact(a + b), x + y), 3.01 * uu);
        EXPECT_LE(relativeError(exact(a - b), x - y), 3.01 * uu);
        EXPECT_LE(relativeError(exact(a * b), x * y), 5.01 * uu);
        EXPECT_LE(relativeError(exact(a / b), x / y), 10.01 * uu);
        expectNormal(a + b);
        expectNormal(a * b);
        expectNormal(a / b);
    }
}

TEST_F(Doubledouble, ASquareRootSquaredIsTheNumber)
{
    for (int i = 0; i < 20000; ++i) {
        const DoubleDouble a = abs(wide());
        const Exact root = exact(sqrt(a));
        EXPECT_LE(relativeError(root * root, exact(a)), 2 * 4.01 * uu);
    }
    EXPECT_EQ(sqrt(DoubleDouble(9)), DoubleDouble(3));
    EXPECT_EQ(sqrt(DoubleDouble(0)), DoubleDouble(0));
    EXPECT_EQ(sqrt(DoubleDouble(infinity)), DoubleDouble(infinity));
    EXPECT_TRUE(std::isnan(sqrt(DoubleDouble(-1)).hi));
}

TEST_F(Doubledouble, IntegersOfThirtyDigitsAreKept)
{
    DoubleDouble factorial = 1;
    for (int i = 2; i <= 27; ++i)
        factorial *= i;
    EXPECT_EQ(exact(factorial), Exact("10888869450418352160768000000"));
    for (int i = 27; i > 1; --i)
        factorial /= i;
    EXPECT_EQ(factorial, DoubleDouble(1));
}

TEST_F(Doubledouble, ComparesByBothParts)
{
    const DoubleDouble one = 1;
    const DoubleDouble more(1, 1e-20);
    EXPECT_LT(one, more);
    EXPECT_GT(more, 1.0);
    EXPECT_LT(-more, -one);
    EXPECT_EQ(one, 1.0);
    EXPECT_NE(one, more);
    EXPECT_GE(more, more);
    EXPECT_EQ(abs(-more), more);
    EXPECT_EQ(abs(more), more);
    EXPECT_EQ(static_cast<double>(more), 1.0);
    EXPECT_FALSE(DoubleDouble(notANumber) < one || DoubleDouble(notANumber) >= one ||
                 DoubleDouble(notANumber) == DoubleDouble(notANumber));
}

TEST_F(Doubledouble, InfinitiesAndNaNsAreThoseOfPlainArithmetic)
{
    const double values[] = {0.0, -0.0, 1, -2.5, 1e308, -1e308, infinity, -infinity, notANumber};
    for (const double x : values) {
        for (const double y : values) {
            const DoubleDouble a = x;
            const DoubleDouble b = y;
            const auto expectPlain = [&](DoubleDouble got, double plain) {
                if (std::isfinite(plain))
                    return;
                EXPECT_TRUE(same(got, DoubleDouble(plain))) << x << ' ' << y << ": " << got.hi << ' ' << got.lo;
            };
            expectPlain(a + b, x + y);
            expectPlain(a - b, x - y);
            expectPlain(a * b, x * y);
            expectPlain(a / b, x / y);
        }
    }
}
