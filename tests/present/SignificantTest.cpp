// SPDX-License-Identifier: MIT
#include "present/Significant.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using nuvo::probability;
using nuvo::significant;

TEST(Significant, ARoundedFigureHasAsManyDigitsAsAskedItsLastZerosIncluded)
{
    EXPECT_EQ(significant(1829.15146461355), u("1829.151"));
    EXPECT_EQ(significant(0.995479004577296), u("0.9954790"));
    EXPECT_EQ(significant(-0.0358191792925910), u("-0.03581918"));
    EXPECT_EQ(significant(304.854073561965, 3), u("305"));
    EXPECT_EQ(significant(0.1 + 0.2, 17), u("0.30000000000000004"));
    EXPECT_EQ(significant(2.0 / 3, 1), u("0.7"));
}

TEST(Significant, AFigureThatNeedsFewerHasFewer)
{
    EXPECT_EQ(significant(2.5), u("2.5"));
    EXPECT_EQ(significant(83), u("83"));
    EXPECT_EQ(significant(0), u("0"));
    EXPECT_EQ(significant(-0.0), u("0"));
    EXPECT_EQ(significant(0.95), u("0.95"));
    EXPECT_EQ(significant(185008826.0), u("185008826"));
}

TEST(Significant, NoDigitBeforeThePointBecomesAZeroByRounding)
{
    EXPECT_EQ(significant(184172401.944494), u("184172402"));
    EXPECT_EQ(significant(-3482258.63459582, 3), u("-3482259"));
    EXPECT_EQ(significant(123456789012345.6), u("123456789012346"));
    EXPECT_EQ(significant(9999999.96), u("10000000")) << "rounded to a whole number";
    EXPECT_EQ(significant(1.23456789e15), u("1.234568e+15"));
}

TEST(Significant, WhatIsNotZeroIsNotShownAsZero)
{
    EXPECT_EQ(significant(4.98403052872e-10), u("4.984031e-10"));
    EXPECT_EQ(significant(0.00012345678), u("0.0001234568"));
    EXPECT_EQ(significant(0.000012345678), u("1.234568e-05"));
    EXPECT_EQ(significant(std::numeric_limits<double>::denorm_min()), u("5e-324"));
    EXPECT_EQ(significant(1e-200), u("1e-200"));
    EXPECT_EQ(significant(-1.7976931348623157e308), u("-1.797693e+308"));
}

TEST(Significant, RoundingCarriesOverTheEdges)
{
    EXPECT_EQ(significant(0.99999999), u("1.000000"));
    EXPECT_EQ(significant(999.99999999), u("1000.000"));
    EXPECT_EQ(significant(0.000099999999999), u("0.0001000000"));
}

TEST(Significant, WhatIsNoFigureIsADashAndInfinityAWord)
{
    EXPECT_EQ(significant(std::nan("")), u("-"));
    EXPECT_EQ(significant(-std::numeric_limits<double>::infinity()), u("-inf"));
}

TEST(Significant, TheDecimalSignIsThatAsked)
{
    EXPECT_EQ(significant(1829.15146461355, 7, u','), u("1829,151"));
    EXPECT_EQ(significant(4.98403052872e-10, 7, u','), u("4,984031e-10"));
}

TEST(Probability, IsNeverZero)
{
    EXPECT_EQ(probability(0), u("<1e-300"));
    EXPECT_EQ(probability(1e-301), u("<1e-300"));
    EXPECT_EQ(probability(1e-300), u("1e-300"));
    EXPECT_EQ(probability(1.23456789e-200), u("1.234568e-200"));
    EXPECT_EQ(probability(0.00356040366373), u("0.003560404"));
    EXPECT_EQ(probability(1), u("1"));
    EXPECT_EQ(probability(std::nan("")), u("-"));
}

} // namespace
