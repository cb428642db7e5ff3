// SPDX-License-Identifier: MIT
#include "app/Json.h"
#include "support/Print.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace {

/// What a reader of the text finds under "x".
nlohmann::json readBack(const nuvo::Json &value)
{
    nuvo::Json object;
    object["x"] = value;
    return nlohmann::json::parse(nuvo::jsonLines(object).toStdString()).at("x");
}

TEST(Json, ANumberIsReadBackAsTheSameDouble)
{
    std::mt19937_64 random(5);
    for (int i = 0; i < 100000; ++i) {
        const auto value = std::bit_cast<double>(std::uint64_t(random()));
        if (!std::isfinite(value))
            continue;
        ASSERT_EQ(std::bit_cast<std::uint64_t>(readBack(nuvo::jsonNumber(value)).get<double>()),
                  std::bit_cast<std::uint64_t>(value));
    }
    for (const double value : {0.0, -0.0, 0.1, 1e21, 5e-324, 1.7976931348623157e308, 16.0, 9007199254740993.0})
        EXPECT_EQ(std::bit_cast<std::uint64_t>(readBack(nuvo::jsonNumber(value)).get<double>()),
                  std::bit_cast<std::uint64_t>(value));
}

TEST(Json, WhatIsNotFiniteIsNull)
{
    EXPECT_TRUE(readBack(nuvo::jsonNumber(std::numeric_limits<double>::quiet_NaN())).is_null());
    EXPECT_TRUE(readBack(nuvo::jsonNumber(std::numeric_limits<double>::infinity())).is_null());
    EXPECT_TRUE(readBack(nuvo::jsonNumber(-std::numeric_limits<double>::infinity())).is_null());
}

TEST(Json, ATextKeepsEveryCharacterThatThereIs)
{
    for (const QString &text : {QString(), QStringLiteral("a\n\r\t\"\\/"), QStringLiteral("äß日本"),
                                QString::fromUcs4(U"\U0001F600"), QString(QChar(0)), QString(QChar(0x2028))}) {
        EXPECT_EQ(QString::fromStdString(readBack(nuvo::jsonText(text)).get<std::string>()), text);
    }
}

TEST(Json, HalfACharacterIsReplaced)
{
    const QString half = u'a' + QString(QChar(0xD800)) + u'b' + QString(QChar(0xDC00));
    const QString back = QString::fromStdString(readBack(nuvo::jsonText(half)).get<std::string>());
    EXPECT_TRUE(back.startsWith(u'a') && back.contains(u'b'));
    nuvo::Json bytes = "\xFF";
    EXPECT_NO_THROW(readBack(bytes));
}

TEST(Json, MembersStandInTheOrderInWhichTheyWerePutInEachOnItsLine)
{
    nuvo::Json object;
    object["z"] = 1;
    object["a"] = nuvo::Json::array({1.5, nullptr});
    object["m"] = nuvo::jsonText(QStringLiteral("t"));
    EXPECT_EQ(nuvo::jsonLines(object), QStringLiteral("{\n  \"z\": 1,\n  \"a\": [1.5,null],\n  \"m\": \"t\"\n}\n"));
}

} // namespace
