// SPDX-License-Identifier: MIT
#include "platform/Formats.h"

#include "platform/Errors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

struct Fixed
{
    double value;
    int precision;
    int decimals;
    const char *text;
};

void expectFixed(std::initializer_list<Fixed> rows)
{
    for (const Fixed &row : rows)
        EXPECT_EQ(FloatToStrFixed(row.value, row.precision, row.decimals).toStdString(), row.text)
            << row.value << " with precision " << row.precision << ", " << row.decimals << " decimals";
}

std::string masked(const char16_t *mask, double value)
{
    return FormatFloat(mask, value).toStdString();
}

constexpr char16_t SignedSci[] = u" 0.00E+0;-0.00E+0";
constexpr char16_t Sci[] = u"0.00E+0";

} // namespace

TEST(FixedNotation, KeepsAtMostTheSignificantDigitsAndPadsWithZeros)
{
    expectFixed({{836424.0555, 8, 3, "836424.060"},
                 {1234567.25, 8, 4, "1234567.3000"},
                 {12345678.5, 8, 3, "12345679.000"},
                 {524.7024775, 8, 4, "524.7025"},
                 {1234.5675, 7, 3, "1234.568"},
                 {0.00012345678912, 8, 12, "0.000123456790"},
                 {0, 8, 3, "0.000"},
                 {42, 8, 0, "42"},
                 {-3482258.6345, 8, 4, "-3482258.6000"},
                 {0.1, 18, 18, "0.100000000000000006"}});
}

TEST(FixedNotation, RoundsTiesAwayFromZero)
{
    expectFixed({{0.125, 8, 2, "0.13"},
                 {0.375, 8, 2, "0.38"},
                 {-0.125, 8, 2, "-0.13"},
                 {0.0625, 8, 3, "0.063"},
                 {0.5, 8, 0, "1"},
                 {1.5, 8, 0, "2"},
                 {2.5, 8, 0, "3"},
                 {-2.5, 8, 0, "-3"}});
}

TEST(FixedNotation, RoundsTheDoubleThatIsThereNotTheTextThatItCameFrom)
{
    // 1.0005 and 1.005 are doubles a little below, 1.0015 is one a little above.
    expectFixed({{1.0005, 8, 3, "1.000"},
                 {1.005, 8, 2, "1.00"},
                 {1.0015, 8, 3, "1.002"},
                 {9999.99995, 8, 4, "9999.9999"},
                 {std::nextafter(0.125, 0), 8, 2, "0.12"},
                 {std::nextafter(2.5, 0), 8, 0, "2"}});
}

TEST(FixedNotation, RoundsOnlyOnce)
{
    // To eight digits first this would be 12345.445, and 12345.45 after that.
    expectFixed({{12345.4449999, 8, 2, "12345.44"}, {0.44999999999, 8, 1, "0.4"}});
    // A hair beside a half, however many digits are looked at.
    expectFixed({{std::nextafter(0.5, 0), 8, 0, "0"},
                 {std::nextafter(4096.5, 0), 8, 0, "4096"},
                 {std::nextafter(1024.0625, 0), 8, 3, "1024.062"},
                 {std::nextafter(1024.0625, 2000), 8, 3, "1024.063"},
                 {0.00004999999999999999, 8, 4, "0.0000"},
                 {9999.99994999999999, 8, 4, "9999.9999"}});
}

TEST(FixedNotation, CarriesThroughNines)
{
    expectFixed({{9.9996, 8, 3, "10.000"},
                 {999.9996, 8, 3, "1000.000"},
                 {0.9996, 8, 3, "1.000"},
                 {9999999.96, 8, 3, "10000000.000"}});
}

TEST(FixedNotation, AnIntegerPartOfMoreDigitsIsWrittenInGeneralForm)
{
    expectFixed({{99999999, 8, 3, "99999999.000"},
                 {99999999.4996, 8, 3, "99999999.000"},
                 {99999999.9996, 8, 3, "1E8"},
                 {100000000, 8, 3, "1E8"},
                 {123456789, 8, 3, "1.2345679E8"},
                 {-123456789, 8, 4, "-1.2345679E8"},
                 {120000000, 8, 3, "1.2E8"},
                 {12345675, 7, 2, "1.234568E7"},
                 {1e308, 8, 3, "1E308"},
                 {std::numeric_limits<double>::max(), 8, 4, "1.7976931E308"},
                 {std::numeric_limits<double>::lowest(), 8, 4, "-1.7976931E308"}});
}

TEST(FixedNotation, WhatRoundsToZeroHasNoSign)
{
    expectFixed({{-0.0, 8, 3, "0.000"},
                 {-0.0004, 8, 3, "0.000"},
                 {-0.0005, 8, 3, "-0.001"},
                 {-0.4, 8, 0, "0"},
                 {5e-324, 8, 3, "0.000"},
                 {-5e-324, 8, 3, "0.000"},
                 {2.2250738585072011e-308, 8, 3, "0.000"}});
}

TEST(FixedNotation, WritesWhatIsNoNumberAsAWordThatReadsBack)
{
    expectFixed({{NaN, 8, 3, "NAN"}, {-NaN, 8, 3, "NAN"}, {Infinity, 8, 3, "INF"}, {-Infinity, 8, 4, "-INF"}});
}

TEST(FixedNotation, TakesALocalesDecimalSign)
{
    EXPECT_EQ(FloatToStrFixed(-1.25, 8, 3, u','), QStringLiteral("-1,250"));
    EXPECT_EQ(FloatToStrFixed(123456789, 8, 3, u','), QStringLiteral("1,2345679E8"));
}

TEST(FixedNotation, AgreesWithTheCLibraryWhereThatRoundsNoTie)
{
    // The library's digits are exact, but a tie goes to the even one: random doubles are hardly ever ties.
    std::mt19937_64 random(20240517);
    std::uniform_real_distribution<double> mantissa(1, 10);
    std::uniform_int_distribution<int> exponent(-6, 3);
    for (int i = 0; i < 20000; ++i) {
        const double value = (i % 2 ? -1 : 1) * mantissa(random) * std::pow(10, exponent(random));
        std::string expected = QString::asprintf("%.4f", value).toStdString();
        if (expected == "-0.0000")
            expected = "0.0000";
        ASSERT_EQ(FloatToStrFixed(value, 8, 4).toStdString(), expected)
            << QString::asprintf("%.20g", value).toStdString();
    }
}

TEST(NumberMask, ScientificWithASignOrABlankInFront)
{
    EXPECT_EQ(masked(SignedSci, 0.0123), " 1.23E-2");
    EXPECT_EQ(masked(SignedSci, -0.0123), "-1.23E-2");
    EXPECT_EQ(masked(SignedSci, 123456), " 1.23E+5");
    EXPECT_EQ(masked(SignedSci, 1), " 1.00E+0");
    EXPECT_EQ(masked(SignedSci, 0), " 0.00E+0");
    EXPECT_EQ(masked(SignedSci, -0.0), " 0.00E+0");
    EXPECT_EQ(masked(Sci, 0), "0.00E+0");
    EXPECT_EQ(masked(Sci, -0.5), "-5.00E-1");
    EXPECT_EQ(masked(Sci, 1), "1.00E+0");
}

TEST(NumberMask, TheMantissaRoundsOnceAndCarriesIntoTheExponent)
{
    EXPECT_EQ(masked(Sci, 9.994), "9.99E+0");
    EXPECT_EQ(masked(Sci, 9.995), "9.99E+0"); // the double lies below
    EXPECT_EQ(masked(Sci, 9.996), "1.00E+1");
    EXPECT_EQ(masked(Sci, 0.09996), "1.00E-1");
    EXPECT_EQ(masked(Sci, 1.125), "1.13E+0"); // a tie
    EXPECT_EQ(masked(Sci, -1.125), "-1.13E+0");
}

TEST(NumberMask, TheExponentHasAsManyDigitsAsItNeeds)
{
    EXPECT_EQ(masked(Sci, 1e308), "1.00E+308");
    EXPECT_EQ(masked(SignedSci, -5e-324), "-4.94E-324");
    EXPECT_EQ(masked(Sci, 1e-12), "1.00E-12");
    EXPECT_EQ(masked(u"0.0E+000", 12), "1.2E+001");
    EXPECT_EQ(masked(u"0.0E-00", 12), "1.2E01");
    EXPECT_EQ(masked(u"0.0e-00", 0.12), "1.2e-01");
    EXPECT_EQ(masked(u"000.0E+0", 12345), "123.5E+2");
    EXPECT_EQ(masked(u".00E+0", 12), ".12E+2");
}

TEST(NumberMask, PlacesThousandsAndText)
{
    EXPECT_EQ(masked(u"0.00", 1234.565), "1234.57"); // the double lies above
    EXPECT_EQ(masked(u"00000.0", 12.34), "00012.3");
    EXPECT_EQ(masked(u"#.##", 0.5), ".5");
    EXPECT_EQ(masked(u"0.##", 5), "5");
    EXPECT_EQ(masked(u"#,##0.00", 1234567.891), "1,234,567.89");
    EXPECT_EQ(masked(u"#,##0", 999), "999");
    EXPECT_EQ(masked(u"#,##0", 123456), "123,456");
    EXPECT_EQ(masked(u"0000,0", 12), "00,012");
    EXPECT_EQ(masked(u"\"0;E+0 \"0' units'", 7), "0;E+0 7 units");
    EXPECT_EQ(masked(u"00-00", 1234), "12-34");
    EXPECT_EQ(masked(u"00-00", 123456), "1234-56");
    EXPECT_EQ(masked(u".00", 12.5), "12.50");
    EXPECT_EQ(masked(u"0.00", 1e22), "10000000000000000000000.00");
    EXPECT_EQ(FormatFloat(u"#,##0.00", 1234.5, u','), QStringLiteral("1.234,50"));
}

TEST(NumberMask, SectionsForPositiveNegativeAndZero)
{
    EXPECT_EQ(masked(u"0.0;(0.0);none", 1.25), "1.3");
    EXPECT_EQ(masked(u"0.0;(0.0);none", -1.25), "(1.3)");
    EXPECT_EQ(masked(u"0.0;(0.0);none", 0), "none");
    EXPECT_EQ(masked(u"0.0;(0.0);none", -0.01), "none");
    EXPECT_EQ(masked(u"0.0;(0.0)", -0.01), "0.0");
    EXPECT_EQ(masked(u"0.0", -1.25), "-1.3");
    EXPECT_EQ(masked(u"0.0;;z", -1.25), "-1.3");
    EXPECT_EQ(masked(u"", 0.1), "0.1");
}

TEST(NumberMask, WritesWhatIsNoNumberAsAWord)
{
    EXPECT_EQ(masked(SignedSci, NaN), "NAN");
    EXPECT_EQ(masked(SignedSci, Infinity), "INF");
    EXPECT_EQ(masked(SignedSci, -Infinity), "-INF");
}

TEST(NumberMask, AMaskCutShortIsStillOne)
{
    EXPECT_EQ(masked(u"0.00E+", 12), "12.00E+");
    EXPECT_EQ(masked(u"\"open", 12), "open");
    EXPECT_EQ(masked(u"E+0", 0), "E+0");
    EXPECT_EQ(masked(u";;", 5), "5");
    EXPECT_EQ(masked(u"größe 0", 5), "größe 5");
}

TEST(ShortestNotation, ReadsBackAsTheSameDouble)
{
    std::mt19937_64 random(7);
    for (int i = 0; i < 20000; ++i) {
        const auto bits = random();
        double value;
        static_assert(sizeof value == sizeof bits);
        std::memcpy(&value, &bits, sizeof value);
        if (std::isnan(value))
            continue;
        double back = 0;
        ASSERT_TRUE(TryStrToFloat(FloatToStr(value), back)) << FloatToStr(value).toStdString();
        ASSERT_EQ(back, value);
    }
    EXPECT_TRUE(std::signbit(StrToFloat(FloatToStr(-0.0))));
}

TEST(ShortestNotation, IsPlainWhereAPersonWouldWriteItPlain)
{
    EXPECT_EQ(FloatToStr(0.1), QStringLiteral("0.1"));
    EXPECT_EQ(FloatToStr(0), QStringLiteral("0"));
    EXPECT_EQ(FloatToStr(-2500), QStringLiteral("-2500"));
    EXPECT_EQ(FloatToStr(1234.5, u','), QStringLiteral("1234,5"));
    EXPECT_EQ(FloatToStr(0.0001), QStringLiteral("0.0001"));
    EXPECT_EQ(FloatToStr(0.00001), QStringLiteral("1E-5"));
    EXPECT_EQ(FloatToStr(123456789012345), QStringLiteral("123456789012345"));
    EXPECT_EQ(FloatToStr(1e15), QStringLiteral("1E15"));
    EXPECT_EQ(FloatToStr(1e300), QStringLiteral("1E300"));
    EXPECT_EQ(FloatToStr(-1.5e-300), QStringLiteral("-1.5E-300"));
    EXPECT_EQ(FloatToStr(std::numeric_limits<double>::denorm_min()), QStringLiteral("5E-324"));
}

TEST(Conversion, ReadsNumbersAsPeopleWriteThem)
{
    const std::pair<const char16_t *, double> rows[] = {
        {u"1.5", 1.5},      {u"1,5", 1.5},      {u" 1.5\t", 1.5},     {u".5", 0.5},           {u",5", 0.5},
        {u"5.", 5},         {u"-5,", -5},       {u"1e5", 1e5},        {u"1E+5", 1e5},         {u"+1,5e-3", 1.5e-3},
        {u"007", 7},        {u"-0", 0},         {u"1e308", 1e308},    {u"5e-324", 5e-324},    {u"0e999", 0},
        {u"INF", Infinity}, {u"inf", Infinity}, {u"-Inf", -Infinity}, {u" -INF ", -Infinity},
    };
    for (const auto &[text, value] : rows)
        EXPECT_EQ(StrToFloat(QString::fromUtf16(text)), value) << QString::fromUtf16(text).toStdString();
    EXPECT_TRUE(std::isnan(StrToFloat(QStringLiteral("NAN"))));
    EXPECT_TRUE(std::isnan(StrToFloat(QStringLiteral("nan"))));
}

TEST(Conversion, RefusesWhatIsNoNumberAndLeavesTheValue)
{
    for (const char16_t *text :
         {u"",      u" ",     u"abc",      u"1.2.3",      u"1,2,3", u"1.000,5", u"1 000", u"1\u00a0000",
          u"0x10",  u"0x1p3", u"infinity", u"+INF",       u"-NAN",  u"nan(1)",  u".",     u",",
          u"-",     u"+",     u"+-5",      u"--5",        u"1e",    u"1e+",     u"e5",    u"1e5.5",
          u"1d5",   u"1e400", u"-1e400",   u"1e-400",     u"$5",    u"5%",      u"١٢٣",   u"１２",
          u"число", u"五",    u"−5",       u"5\U0001F600"}) {
        double value = 42;
        EXPECT_FALSE(TryStrToFloat(text, value)) << QString::fromUtf16(text).toStdString();
        EXPECT_EQ(value, 42);
        EXPECT_THROW(StrToFloat(QString::fromUtf16(text)), EConvertError);
    }
    double value = 42;
    EXPECT_FALSE(TryStrToFloat(QString(QChar(0xd800)), value)) << "half of a surrogate pair";
    EXPECT_FALSE(TryStrToFloat(QStringLiteral("1") + QChar(0) + QStringLiteral("2"), value));
    EXPECT_FALSE(TryStrToFloat({}, value));
    EXPECT_TRUE(TryStrToFloat(QString(100000, u'1') + QStringLiteral("e-99999"), value)) << "long, but a number";
    EXPECT_DOUBLE_EQ(value, 10.0 / 9);
}

TEST(Conversion, AnErrorNamesTheText)
{
    try {
        StrToFloat(QStringLiteral("größe"));
        FAIL();
    } catch (const EConvertError &error) {
        EXPECT_EQ(error.Message(), QStringLiteral("\"größe\" is not a number"));
    }
    try {
        StrToInt(QStringLiteral("2.5"));
        FAIL();
    } catch (const EConvertError &error) {
        EXPECT_EQ(error.Message(), QStringLiteral("\"2.5\" is not an integer"));
    }
}

TEST(Conversion, IntegersAreStrict)
{
    EXPECT_EQ(StrToInt(QStringLiteral("42")), 42);
    EXPECT_EQ(StrToInt(QStringLiteral(" -42 ")), -42);
    EXPECT_EQ(StrToInt(QStringLiteral("+007")), 7);
    EXPECT_EQ(StrToInt(QStringLiteral("2147483647")), 2147483647);
    EXPECT_EQ(StrToInt(QStringLiteral("-2147483648")), -2147483647 - 1);
    for (const char16_t *text : {u"", u"2.0", u"2.", u"2,5", u"1e2", u"abc", u"2147483648", u"-2147483649", u"1 000",
                                 u"0x10", u"+-5", u"-", u"٤٢", u"99999999999999999999", u"NAN"})
        EXPECT_THROW(StrToInt(QString::fromUtf16(text)), EConvertError) << QString::fromUtf16(text).toStdString();
}

TEST(ElapsedTime, IsWrittenInHoursMinutesAndSeconds)
{
    constexpr double Second = 1.0 / 86400;
    EXPECT_EQ(FormatTime(0), QStringLiteral("00:00:00"));
    EXPECT_EQ(FormatTime(Second), QStringLiteral("00:00:01"));
    EXPECT_EQ(FormatTime(0.9 * Second), QStringLiteral("00:00:00"));
    EXPECT_EQ(FormatTime((3600 + 120 + 3) * Second), QStringLiteral("01:02:03"));
    EXPECT_EQ(FormatTime(0.5), QStringLiteral("12:00:00"));
    EXPECT_EQ(FormatTime(86399 * Second), QStringLiteral("23:59:59"));
}

TEST(ElapsedTime, WrapsAfterADay)
{
    EXPECT_EQ(FormatTime(1), QStringLiteral("00:00:00"));
    EXPECT_EQ(FormatTime(1.5), QStringLiteral("12:00:00"));
    EXPECT_EQ(FormatTime(45000.25), QStringLiteral("06:00:00"));
    EXPECT_EQ(FormatTime(std::nextafter(1, 0)), QStringLiteral("00:00:00"));
}

TEST(ElapsedTime, ADifferenceOfTwoReadingsDoesNotLoseItsSecond)
{
    for (int seconds = 0; seconds < 3600; ++seconds) {
        const double start = 45000.123456789;
        const double now = start + seconds / 86400.0;
        ASSERT_EQ(FormatTime(now - start), FormatTime(seconds / 86400.0)) << seconds;
    }
}

TEST(ElapsedTime, HasNoSignAndSurvivesWhatIsNoTime)
{
    EXPECT_EQ(FormatTime(-0.5), QStringLiteral("12:00:00"));
    EXPECT_EQ(FormatTime(NaN), QStringLiteral("00:00:00"));
    EXPECT_EQ(FormatTime(Infinity), QStringLiteral("00:00:00"));
    EXPECT_EQ(FormatTime(1e300), QStringLiteral("00:00:00"));
}
