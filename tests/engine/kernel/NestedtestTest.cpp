// SPDX-License-Identifier: MIT
#include "engine/kernel/Nestedtest.h"

#include <gtest/gtest.h>

#include <cmath>

using nuvo::nestedTest;

// R 4.2: anova(lm(Employed ~ GNP, longley), lm(Employed ~ GNP + Unemployed + Armed.Forces, longley))
TEST(NestedTest, IsThatOfTwoFitsOfTheLongleyTable)
{
    const nuvo::NestedTest test = nestedTest({6.0361401660767795, 14}, {2.7567116889111412, 12});
    EXPECT_NEAR(test.f, 7.1376963148314481, 1e-9);
    EXPECT_NEAR(test.pValue, 0.0090738624212935524, 1e-12);
    EXPECT_EQ(test.numerator, 2);
    EXPECT_EQ(test.denominator, 12);
}

TEST(NestedTest, DoesNotExistWithoutFurtherTermsOrDegreesOfFreedomNorForAnExactFit)
{
    for (const nuvo::NestedTest &test :
         {nestedTest({2, 5}, {1, 5}), nestedTest({2, 1}, {1, 0}), nestedTest({2, 5}, {0, 4})}) {
        EXPECT_TRUE(std::isnan(test.f));
        EXPECT_TRUE(std::isnan(test.pValue));
    }
}

TEST(NestedTest, IsZeroWhereOnlyRoundingTellsTheFitsApart)
{
    const nuvo::NestedTest test = nestedTest({1, 5}, {1 + 1e-15, 4});
    EXPECT_EQ(test.f, 0);
    EXPECT_EQ(test.pValue, 1);
}
