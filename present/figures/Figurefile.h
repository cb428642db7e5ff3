// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "present/figures/Figure.h"
#include "present/figures/Figurepainter.h"

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>
#include <set>
#include <vector>

class QPainter;

namespace nuvo {

enum class FigureFormat { Png, Svg, Pdf };

inline constexpr int MinFigureSide = 50;
inline constexpr int MaxFigureSide = 10000;
inline constexpr QSize UsualFigureSize{800, 600};

/// "png", "svg" or "pdf" in upper or lower case. Returns false for anything else; format is then unchanged.
NUVO_EXPORT bool figureFormatFrom(const QString &name, FigureFormat &format);

/// How a figure is put onto a sheet.
struct FigureSheet
{
    QSize size = UsualFigureSize; ///< logical pixels; files hold the sides between 50 and 10000
    QChar point = u'.';           ///< decimal
    bool dark = false;
    std::optional<FigureSection> section{}; ///< all of it unless told
    std::set<qint64> selected{};            ///< records that are marked
};

/// Draws the figure at the painter's origin, as large as the sheet says.
NUVO_EXPORT void paintFigure(const Figure &figure, const FigureSheet &sheet, QPainter &painter);

/// The picture, each logical pixel `ratio` pixels wide.
NUVO_EXPORT QImage figureImage(const Figure &figure, const FigureSheet &sheet, double ratio = 1);

/// The bytes of an SVG file. Empty when it could not be made.
NUVO_EXPORT QByteArray figureSvg(const Figure &figure, const FigureSheet &sheet);

/// Writes one figure: PNG of that many pixels, SVG of that size, a PDF page of that size at 96 pixels an inch. Texts
/// of SVG and PDF are texts. \throws EPlatformError when the file cannot be written; no partial file is left.
NUVO_EXPORT void saveFigure(const Figure &figure, const QString &file, FigureFormat format, const FigureSheet &sheet);
/// The same with the format of the file's ending. \throws EPlatformError for another ending, too.
NUVO_EXPORT void saveFigure(const Figure &figure, const QString &file, const FigureSheet &sheet = {});

/// Writes figures into a directory, made when it is not there, and returns the names of the files in their order:
/// figureFileName() and the format's ending, "response-x1.png". Files of the same name are replaced; needs no
/// display. \throws EPlatformError naming the directory or the file that cannot be written; the files before it
/// stand.
NUVO_EXPORT QStringList saveFigures(const std::vector<Figure> &figures, const QString &directory,
                                    FigureFormat format = FigureFormat::Png, QSize size = UsualFigureSize);

} // namespace nuvo
