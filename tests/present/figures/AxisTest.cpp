// SPDX-License-Identifier: MIT
#include "present/figures/Axis.h"

#include "support/Print.h"
#include "support/Text.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using nuvo::Axis;
using nuvo::AxisRange;
using nuvo::figureNumber;
using nuvo::makeAxis;
using nuvo::roomyRange;

namespace {

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinite = std::numeric_limits<double>::infinity();

QStringList texts(const Axis &axis)
{
    QStringList all;
    for (const nuvo::AxisTick &tick : axis.ticks)
        all += tick.text;
    return all;
}

AxisRange rangeOf(std::initializer_list<double> values)
{
    AxisRange range;
    for (const double value : values)
        range.Add(value);
    return range;
}

/// Ranges of all sizes and kinds.
std::vector<AxisRange> manyRanges()
{
    std::vector<AxisRange> ranges;
    for (const double size : {1e-320, 1e-300, 1e-150, 1e-9, 0.001, 1.0, 3.7, 99.0, 123456.0, 1e9, 1e150, 1e308}) {
        for (const double from : {-1.0, -0.3, 0.0, 0.1, 0.99}) {
            for (const double to : {0.2, 0.7, 1.0, 1.7})
                if (from < to)
                    ranges.push_back(rangeOf({from * size, to * size}));
        }
        ranges.push_back(rangeOf({size}));
        ranges.push_back(rangeOf({-size, size * (1 + 1e-12)}));
    }
    for (const double base : {1e6, 1e10, 123456789.0, 1e16, -1e12})
        ranges.push_back(rangeOf({base, base + 5}));
    ranges.push_back(rangeOf({-std::numeric_limits<double>::max(), std::numeric_limits<double>::max()}));
    return ranges;
}

} // namespace

TEST(AxisRanges, LeaveOutWhatIsNoNumber)
{
    EXPECT_TRUE(rangeOf({NotANumber, Infinite, -Infinite}).IsEmpty());
    EXPECT_EQ(rangeOf({3, NotANumber, -2, Infinite}), (AxisRange{-2, 3}));
}

TEST(AxisRanges, GiveEveryValueRoomWithinThem)
{
    for (const AxisRange &values : manyRanges()) {
        const AxisRange range = roomyRange(values);
        ASSERT_TRUE(std::isfinite(range.low) && std::isfinite(range.high));
        if (std::abs(values.low) < 1e308 && std::abs(values.high) < 1e308) {
            EXPECT_LT(range.low, values.low) << values.low << " to " << values.high;
            EXPECT_GT(range.high, values.high) << values.low << " to " << values.high;
        }
        const Axis axis = makeAxis(range, 6);
        for (const double value : {values.low, values.high}) {
            EXPECT_GE(axis.Place(value), 0);
            EXPECT_LE(axis.Place(value), 1);
        }
    }
}

TEST(AxisRanges, OfOneValueOrNoneHaveAWidth)
{
    EXPECT_EQ(roomyRange(rangeOf({0})), (AxisRange{-1, 1}));
    EXPECT_EQ(roomyRange(rangeOf({50})), (AxisRange{45, 55}));
    EXPECT_EQ(roomyRange(rangeOf({-1e150, -1e150})).low, -1e150 * 1.1);
    EXPECT_EQ(roomyRange({}), (AxisRange{0, 1}));
}

TEST(AxisTicks, StandAtRoundNumbersInOrderWithinTheRange)
{
    for (const AxisRange &values : manyRanges()) {
        const AxisRange range = roomyRange(values);
        for (const int most : {2, 5, 9}) {
            const Axis axis = makeAxis(range, most);
            EXPECT_GE(axis.ticks.size(), 1U) << range.low << " to " << range.high;
            EXPECT_LE(int(axis.ticks.size()), most + 1);
            for (std::size_t i = 0; i < axis.ticks.size(); ++i) {
                EXPECT_TRUE(range.Contains(axis.ticks[i].value));
                if (i > 0) {
                    EXPECT_GT(axis.ticks[i].value, axis.ticks[i - 1].value);
                    EXPECT_NE(axis.ticks[i].text, axis.ticks[i - 1].text) << range.low << " to " << range.high;
                }
            }
        }
    }
}

TEST(AxisTicks, AreWrittenWithoutTheRestsOfBinaryNumbers)
{
    EXPECT_EQ(texts(makeAxis({0, 1}, 10)).join(u' '), u("0 0.1 0.2 0.3 0.4 0.5 0.6 0.7 0.8 0.9 1.0"));
    EXPECT_EQ(texts(makeAxis({-0.35, 0.35}, 8)).join(u' '), u("−0.3 −0.2 −0.1 0 0.1 0.2 0.3"));
    const QRegularExpression plain(u("^−?(0|\\d+(\\.\\d+)?(×10⁻?[⁰¹²³⁴⁵⁶⁷⁸⁹]+)?)$"));
    for (const AxisRange &values : manyRanges()) {
        for (const QString &text : texts(makeAxis(roomyRange(values), 6))) {
            EXPECT_TRUE(plain.match(text).hasMatch()) << text.toStdString();
            EXPECT_LE(text.size(), 20) << text.toStdString();
        }
    }
}

TEST(AxisTicks, SayWhatTheirValuesAre)
{
    for (const AxisRange &values : manyRanges()) {
        const Axis axis = makeAxis(roomyRange(values), 5);
        if (!axis.less.isEmpty() || values.high > 1e300)
            continue;
        for (const nuvo::AxisTick &tick : axis.ticks) {
            QString text = tick.text;
            text.replace(u("−"), u("-")).replace(u("×10"), u("e")).replace(u("⁻"), u("-"));
            const QString raised = u("⁰¹²³⁴⁵⁶⁷⁸⁹");
            for (int digit = 0; digit < 10; ++digit)
                text.replace(raised[digit], QChar(u'0' + digit));
            bool read = false;
            const double value = text.toDouble(&read);
            EXPECT_TRUE(read) << text.toStdString();
            EXPECT_NEAR(value, tick.value, std::abs(tick.value) * 1e-14 + 1e-322) << text.toStdString();
        }
    }
}

TEST(AxisTicks, OfLargeAndSmallNumbersHaveAPowerOfTen)
{
    EXPECT_EQ(texts(makeAxis({0, 2e150}, 4)).join(u' '), u("0 0.5×10¹⁵⁰ 1.0×10¹⁵⁰ 1.5×10¹⁵⁰ 2.0×10¹⁵⁰"));
    EXPECT_EQ(texts(makeAxis({-1e-150, 1e-150}, 2)).join(u' '), u("−1×10⁻¹⁵⁰ 0 1×10⁻¹⁵⁰"));
    EXPECT_EQ(texts(makeAxis({0, 1000000}, 2)).join(u' '), u("0 500000 1000000"));
}

TEST(AxisTicks, OfNearlyEqualLargeNumbersShowWhatIsLeftOfThem)
{
    const Axis axis = makeAxis({1e10, 1e10 + 4}, 4);
    EXPECT_EQ(texts(axis).join(u' '), u("0 1 2 3 4"));
    EXPECT_EQ(axis.less, u(" − 10000000000"));
    const Axis negative = makeAxis({-1e10, -1e10 + 4}, 2);
    EXPECT_EQ(texts(negative).join(u' '), u("0 2 4"));
    EXPECT_EQ(negative.less, u(" + 10000000000"));
    EXPECT_EQ(makeAxis({1947, 1962}, 5).less, QString());
}

TEST(AxisTicks, CanBeKeptToWholeNumbers)
{
    EXPECT_EQ(texts(makeAxis({0.8, 3.2}, 10, true)).join(u' '), u("1 2 3"));
    EXPECT_EQ(texts(makeAxis({0.8, 3.2}, 10)).size(), 5);
}

TEST(AxisTicks, UseTheDecimalPointOfTheReader)
{
    EXPECT_EQ(texts(makeAxis({0, 1}, 2, false, u',')).join(u' '), u("0 0,5 1,0"));
}

TEST(AxisPlaces, GoThereAndBack)
{
    const Axis axis = makeAxis({-1e308, 1.5e308}, 5);
    for (const double value : {-1e308, -3.0, 0.0, 1.2e308})
        EXPECT_NEAR(axis.Value(axis.Place(value)) / 1e308, value / 1e308, 1e-14);
    EXPECT_EQ(axis.Value(10), std::numeric_limits<double>::max());
}

TEST(FigureNumbers, HaveAsManyDigitsAsTheyNeed)
{
    EXPECT_EQ(figureNumber(0.1 + 0.2), u("0.3"));
    EXPECT_EQ(figureNumber(-12.5), u("−12.5"));
    EXPECT_EQ(figureNumber(0), u("0"));
    EXPECT_EQ(figureNumber(-0.0), u("0"));
    EXPECT_EQ(figureNumber(60323), u("60323"));
    EXPECT_EQ(figureNumber(1234567.891), u("1234568"));
    EXPECT_EQ(figureNumber(1.5e150), u("1.5×10¹⁵⁰"));
    EXPECT_EQ(figureNumber(0.00012345678), u("0.0001234568"));
    EXPECT_EQ(figureNumber(2e-7), u("2×10⁻⁷"));
    EXPECT_EQ(figureNumber(NotANumber), u("NaN"));
    EXPECT_EQ(figureNumber(-Infinite), u("−∞"));
    EXPECT_EQ(figureNumber(2.5, 7, u','), u("2,5"));
}
