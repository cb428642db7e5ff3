// SPDX-License-Identifier: MIT
#pragma once

#include "present/Plotcanvas.h"

#include <QColor>
#include <QImage>
#include <QString>

class TRegression;

namespace nuvo {

/// A plot as a picture to keep: the canvas with its dots, its caption above and the figures at the ends of its axes,
/// at any size and smooth at each.
struct PlotPicture
{
    Plot plot;
    QColor dots = QColor(0x80, 0, 0);
    QColor ground = Qt::white;
    QChar point = u'.';
};

inline constexpr int MinPictureWidth = 100;
inline constexpr int MaxPictureWidth = 10000;

/// The picture that many pixels wide, 100 to 10000; its height follows.
NUVO_EXPORT QImage plotImage(const PlotPicture &picture, int width);

/// Writes the picture: .png, that many pixels wide, or .svg (of any size anyway) by the ending, upper or lower case.
/// \throws EPlatformError for another ending and for a file that cannot be written; no partial file is left.
NUVO_EXPORT void savePlot(const PlotPicture &picture, const QString &file, int width);

/// Writes the canvas of every plot of a regression into a directory, made when it is not there: PNG files of 327 x
/// 185 pixels, maroon on white, named as allPlots() has them. Needs no display. \throws EPlatformError naming the
/// directory or file that cannot be written, and the files that were written before it.
NUVO_EXPORT void savePlots(TRegression &regression, const QString &directory);

} // namespace nuvo
