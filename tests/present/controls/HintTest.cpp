// SPDX-License-Identifier: MIT
#include "present/controls/Hint.h"

#include "support/Print.h"

#include <gtest/gtest.h>

#include <QObject>

#include <memory>

namespace {

TEST(Hint, IsTheApplications)
{
    SetApplicationHint(QStringLiteral("Scatter Plots"));
    EXPECT_EQ(ApplicationHint(), QStringLiteral("Scatter Plots"));
    SetApplicationHint(QString());
    EXPECT_EQ(ApplicationHint(), QString());
}

TEST(Hint, TheHandlerIsCalledWheneverItIsSetUntilItsOwnerGoes)
{
    auto owner = std::make_unique<QObject>();
    QStringList shown;
    SetHintHandler(owner.get(), [&shown] { shown += ApplicationHint(); });
    SetApplicationHint(QStringLiteral("a"));
    SetApplicationHint(QStringLiteral("a"));
    EXPECT_EQ(shown, QStringList({QStringLiteral("a"), QStringLiteral("a")}));
    owner.reset();
    SetApplicationHint(QStringLiteral("b"));
    EXPECT_EQ(shown.size(), 2);
    EXPECT_EQ(ApplicationHint(), QStringLiteral("b"));
    SetApplicationHint(QString());
}

TEST(Hint, AnotherHandlerTakesOverEvenFromWithin)
{
    QObject owner;
    int second = 0;
    SetHintHandler(&owner, [&] {
        SetHintHandler(&owner, [&second] { ++second; });
        EXPECT_EQ(second, 0);
    });
    SetApplicationHint(QStringLiteral("a"));
    EXPECT_EQ(second, 0);
    SetApplicationHint(QString());
    EXPECT_EQ(second, 1);
}

TEST(Hint, ATextWithABarIsATooltipAndALine)
{
    const struct
    {
        const char *hint, *tooltip, *line;
    } rows[] = {{"Clear Plot|", "Clear Plot", ""},
                {"Clear Plot|Clears it", "Clear Plot", "Clears it"},
                {"Clear Plot", "Clear Plot", "Clear Plot"},
                {"|Clears it", "", "Clears it"},
                {"a|b|c", "a", "b|c"},
                {"", "", ""}};
    for (const auto &[hint, tooltip, line] : rows) {
        EXPECT_EQ(ShortHint(QLatin1String(hint)), QLatin1String(tooltip)) << hint;
        EXPECT_EQ(LongHint(QLatin1String(hint)), QLatin1String(line)) << hint;
    }
}

} // namespace
