// SPDX-License-Identifier: MIT
#include "present/controls/Gauge.h"

#include <QImage>
#include <QPixmap>

#include <gtest/gtest.h>

#include <limits>

namespace {

const QColor Navy(0, 0, 128);
const QColor Ground(0xa6, 0xca, 0xf0);

QImage painted(TGauge &gauge)
{
    return gauge.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

int count(const QImage &image, const QRect &part, const QColor &color)
{
    int pixels = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x)
            pixels += image.pixelColor(x, y) == color;
    }
    return pixels;
}

class GaugePainting : public testing::Test
{
protected:
    GaugePainting()
    {
        gauge.resize(400, 21);
        gauge.SetForeColor(Navy);
        gauge.SetBackColor(Ground);
        // Strokes wide enough to have pixels of the pure colour.
        QFont font;
        font.setPixelSize(18);
        font.setBold(true);
        gauge.setFont(font);
    }

    TGauge gauge;
};

} // namespace

TEST(Gauge, StartsEmptyOnAHundred)
{
    const TGauge gauge;
    EXPECT_EQ(gauge.Progress(), 0);
    EXPECT_EQ(gauge.MinValue(), 0);
    EXPECT_EQ(gauge.MaxValue(), 100);
    EXPECT_EQ(gauge.PercentDone(), 0);
}

TEST(Gauge, KeepsItsProgressWithinItsLimits)
{
    TGauge gauge;
    gauge.SetProgress(65535);
    EXPECT_EQ(gauge.Progress(), 100);
    gauge.SetProgress(-1);
    EXPECT_EQ(gauge.Progress(), 0);
    gauge.SetProgress(80);
    gauge.SetMaxValue(50);
    EXPECT_EQ(gauge.Progress(), 50);
    gauge.SetMinValue(60);
    EXPECT_EQ(gauge.MaxValue(), 60);
    EXPECT_EQ(gauge.Progress(), 60);
    gauge.SetMaxValue(-10);
    EXPECT_EQ(gauge.MinValue(), -10);
    EXPECT_EQ(gauge.Progress(), -10);
}

TEST(Gauge, AHundredPercentMeansDone)
{
    TGauge gauge;
    gauge.SetMaxValue(2500);
    gauge.SetProgress(2499);
    EXPECT_EQ(gauge.PercentDone(), 99);
    gauge.SetProgress(2500);
    EXPECT_EQ(gauge.PercentDone(), 100);
    gauge.SetMinValue(2500);
    EXPECT_EQ(gauge.PercentDone(), 0) << "no range, nothing done";
}

TEST(Gauge, TheWidestLimitsDoNotOverflow)
{
    TGauge gauge;
    gauge.SetMinValue(std::numeric_limits<int>::min());
    gauge.SetMaxValue(std::numeric_limits<int>::max());
    gauge.SetProgress(std::numeric_limits<int>::max());
    EXPECT_EQ(gauge.PercentDone(), 100);
    gauge.SetProgress(0);
    EXPECT_EQ(gauge.PercentDone(), 50);
}

TEST_F(GaugePainting, FillsFromTheLeft)
{
    gauge.SetProgress(25);
    const QImage image = painted(gauge);
    EXPECT_EQ(count(image, QRect(0, 0, 100, 21), Navy), 100 * 21);
    EXPECT_EQ(count(image, QRect(100, 0, 50, 21), Ground), 50 * 21);
    EXPECT_EQ(count(image, QRect(250, 0, 150, 21), Ground), 150 * 21);
}

TEST_F(GaugePainting, EmptyAndFullHaveOneGround)
{
    const QImage empty = painted(gauge);
    EXPECT_EQ(count(empty, QRect(0, 0, 150, 21), Ground), 150 * 21);
    gauge.SetProgress(100);
    const QImage full = painted(gauge);
    EXPECT_EQ(count(full, QRect(0, 0, 150, 21), Navy), 150 * 21);
    EXPECT_EQ(count(full, QRect(250, 0, 150, 21), Navy), 150 * 21);
}

TEST_F(GaugePainting, ThePercentageIsInvertedWhereTheBarCoversIt)
{
    const QRect middle(150, 0, 100, 21);
    gauge.SetProgress(0);
    EXPECT_GT(count(painted(gauge), middle, Navy), 0) << "0 % in the fore colour";
    gauge.SetProgress(100);
    EXPECT_GT(count(painted(gauge), middle, Ground), 0) << "100 % in the back colour";
    gauge.SetProgress(50);
    const QImage half = painted(gauge);
    EXPECT_GT(count(half, QRect(150, 0, 50, 21), Ground), 0);
    EXPECT_GT(count(half, QRect(200, 0, 50, 21), Navy), 0);
}
