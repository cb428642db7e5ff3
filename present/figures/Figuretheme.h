// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QColor>
#include <QFont>
#include <QSizeF>

class QPalette;

namespace nuvo {

/// Colours of a figure. Points, lines and selection differ in lightness as well as in hue, so that they can be told
/// apart without colour vision and on grey paper; each has a contrast of at least 3 to 1 with the ground, texts 7
/// to 1. Hues after Okabe and Ito, "Color Universal Design" (2008).
struct NUVO_EXPORT FigureTheme
{
    QColor ground, text, frame, grid; ///< the grid is decoration and quieter
    QColor point, fit, band, contour, bar, selected;

    /// Dark on white: paper and files.
    static FigureTheme light();
    /// Light on dark.
    static FigureTheme dark();
    /// Of a window: light or dark after its palette, on the palette's ground.
    static FigureTheme of(const QPalette &palette);
};

/// How a figure is drawn on a device.
struct NUVO_EXPORT FigureStyle
{
    FigureTheme theme = FigureTheme::light();
    QFont font;         ///< with a size in pixels; titles are a little larger, ticks a little smaller
    QChar point = u'.'; ///< decimal

    /// Of a file or a sheet of that many logical pixels: Arial, at a size that can be read there, 10 to 40 pixels.
    static FigureStyle ofSheet(const QSizeF &size);
};

/// Ratio of two opaque colours' luminances, 1 to 21, as the Web Content Accessibility Guidelines 2.1 define it.
NUVO_EXPORT double contrast(const QColor &a, const QColor &b);

} // namespace nuvo
