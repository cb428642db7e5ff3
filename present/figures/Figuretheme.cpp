// SPDX-License-Identifier: MIT
#include "present/figures/Figuretheme.h"

#include <QPalette>

#include <algorithm>
#include <cmath>

namespace nuvo {

namespace {

double luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

} // namespace

double contrast(const QColor &a, const QColor &b)
{
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

FigureTheme FigureTheme::light()
{
    return {Qt::white,
            QColor(0x22, 0x22, 0x22),
            QColor(0x80, 0x80, 0x80),
            QColor(0xe8, 0xe8, 0xe8),
            QColor(0x00, 0x72, 0xb2),
            QColor(0xb0, 0x3a, 0x00),
            QColor(0xd5, 0x5e, 0x00, 0x38),
            QColor(0x60, 0x60, 0x60),
            QColor(0x6f, 0xb1, 0xd9),
            QColor(0xe6, 0x9f, 0x00)};
}

FigureTheme FigureTheme::dark()
{
    return {QColor(0x1e, 0x1e, 0x1e),       QColor(0xec, 0xec, 0xec), QColor(0x90, 0x90, 0x90),
            QColor(0x38, 0x38, 0x38),       QColor(0x56, 0xb4, 0xe9), QColor(0xff, 0xb3, 0x47),
            QColor(0xff, 0xb3, 0x47, 0x38), QColor(0xb0, 0xb0, 0xb0), QColor(0x2f, 0x7f, 0xb5),
            QColor(0xff, 0xe0, 0x66)};
}

FigureTheme FigureTheme::of(const QPalette &palette)
{
    const QColor ground = palette.color(QPalette::Base);
    const QColor text = palette.color(QPalette::Text);
    FigureTheme theme = luminance(ground) < 0.18 ? dark() : light();
    // A ground between light and dark would take the contrast of either set of colours.
    if (contrast(ground, theme.ground) < 1.3) {
        theme.ground = ground;
        if (contrast(text, ground) >= 7)
            theme.text = text;
    }
    return theme;
}

FigureStyle FigureStyle::ofSheet(const QSizeF &size)
{
    FigureStyle style;
    style.font = QFont(QStringLiteral("Arial"));
    const double scale = std::min(size.width() / 800, size.height() / 600);
    style.font.setPixelSize(int(std::lround(std::clamp(15 * std::pow(scale, 0.75), 10.0, 40.0))));
    return style;
}

} // namespace nuvo
