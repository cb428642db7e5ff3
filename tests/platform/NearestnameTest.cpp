// SPDX-License-Identifier: MIT
#include "platform/Nearestname.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

TEST(NearestName, IsOneThatASlipOrTwoMakeOfIt)
{
    const QStringList there{u("GNP"), u("GNPDEFL"), u("Life expectancy"), u("x"), u("x1"), u("Größe")};
    const auto meant = [&](const char *name) { return nuvo::perhaps(u(name), there); };
    EXPECT_EQ(meant("GNPP"), u(" (perhaps \"GNP\")"));
    EXPECT_EQ(meant("gmp"), u(" (perhaps \"GNP\")"));
    EXPECT_EQ(meant("GNPDEF"), u(" (perhaps \"GNPDEFL\")"));
    EXPECT_EQ(meant("lief expectancy"), u(" (perhaps \"Life expectancy\")"));
    EXPECT_EQ(meant("Lifexpectancy"), u(" (perhaps \"Life expectancy\")"));
    EXPECT_EQ(meant("größse"), u(" (perhaps \"Größe\")"));
    for (const char *other : {"", "y", "x2", "GDP2", "Murder", "Lifetime expectancies"})
        EXPECT_EQ(meant(other), QString()) << other;
    EXPECT_EQ(nuvo::perhaps(u("abc"), {}), QString());
    EXPECT_EQ(nuvo::perhaps(QString(100, u'x'), {QString(99, u'x')}), QString());
}
