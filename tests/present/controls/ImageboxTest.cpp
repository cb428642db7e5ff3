// SPDX-License-Identifier: MIT
#include "present/controls/Imagebox.h"

#include <gtest/gtest.h>

#include <QImage>

namespace {

TEST(ImageBox, StretchesThePictureWithoutSmoothing)
{
    QImage checks(2, 2, QImage::Format_RGB32);
    checks.setPixelColor(0, 0, Qt::red);
    checks.setPixelColor(1, 0, Qt::white);
    checks.setPixelColor(0, 1, Qt::blue);
    checks.setPixelColor(1, 1, Qt::black);
    TImage box;
    box.resize(40, 20);
    box.SetImage(checks);
    EXPECT_TRUE(box.Image() == checks);
    const QImage seen = box.grab().toImage();
    for (int y = 0; y < seen.height(); ++y) {
        for (int x = 0; x < seen.width(); ++x) {
            ASSERT_EQ(seen.pixelColor(x, y), checks.pixelColor(2 * x / seen.width(), 2 * y / seen.height()))
                << x << ", " << y;
        }
    }
}

TEST(ImageBox, ShowsThePictureSetLast)
{
    TImage box;
    box.resize(8, 8);
    QImage image(8, 8, QImage::Format_RGB32);
    for (const QColor &color : {QColor(Qt::yellow), QColor(Qt::darkCyan)}) {
        image.fill(color);
        box.SetImage(image);
        EXPECT_EQ(box.grab().toImage().pixelColor(4, 4), color);
    }
}

} // namespace
