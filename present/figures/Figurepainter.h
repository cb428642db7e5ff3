// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "present/figures/Figure.h"
#include "present/figures/Figuretheme.h"

#include <QPointF>
#include <QRectF>

#include <set>
#include <vector>

class QPainter;

namespace nuvo {

/// The part of a figure that is shown.
struct FigureSection
{
    AxisRange x, y;
    bool operator==(const FigureSection &) const = default;
};

/// The section that holds all of a figure.
NUVO_EXPORT FigureSection wholeSection(const Figure &figure);

/// Draws a figure at a size, in logical pixels, on whatever a QPainter draws on: screen, paper, PNG, SVG, PDF. The
/// layout is worked out once; title and axis titles that are too long are shortened with an ellipsis, the key stands
/// between title and frame and is left out where it would take the frame's room.
class NUVO_EXPORT FigurePainter
{
public:
    /// The figure has to live as long as the painter.
    FigurePainter(const Figure &figure, const QSizeF &size, const FigureStyle &style);
    FigurePainter(const Figure &figure, const QSizeF &size, const FigureStyle &style, const FigureSection &section);

    const QRectF &Frame() const { return frame_; }
    const Axis &XAxis() const { return x_; }
    const Axis &YAxis() const { return y_; }
    FigureSection Section() const { return {x_.range, y_.range}; }
    QString Title() const { return title_.text; }
    /// Names in the key as they are drawn; none where there is no key.
    QStringList KeyNames() const;
    /// Rectangles that texts take: title, key, axis titles, ticks. For tests.
    std::vector<QRectF> TextPlaces() const;

    /// Where a value stands, held within a billion pixels.
    QPointF Place(double x, double y) const;
    /// The value that stands at a place.
    QPointF Value(const QPointF &place) const;
    /// Whether point i exists and stands within the frame.
    bool IsSeen(std::size_t i) const;
    /// The seen point nearest to a place and at most so far away; -1 when there is none.
    int PointAt(const QPointF &where, double within) const;
    /// The bar that is at a place; -1 when there is none.
    int BarAt(const QPointF &where) const;

    /// Radius of a point.
    double PointSize() const { return pointSize_; }

    void Paint(QPainter &painter) const;
    /// On top of that: the points, or parts of bars, of these records marked, with their ordinals where these are
    /// few.
    void PaintSelected(QPainter &painter, const std::set<qint64> &records) const;
    /// A ring around a point; of a figure without points, around a bar.
    void PaintCurrent(QPainter &painter, std::size_t i) const;

private:
    static constexpr double TickLength = 4;

    struct Text
    {
        QRectF place;
        QString text;
        bool upwards = false;
    };
    struct KeyEntry
    {
        enum Sign { Point, Line, Band, Bar } sign;
        FigureRole role;
        QString name;
        QRectF place{};
    };

    void LayOut();
    double LayOutKey(double top, double mostHeight);
    void LayOutAxes(double top);
    void PaintAxes(QPainter &painter) const;
    void PaintBands(QPainter &painter) const;
    void PaintBars(QPainter &painter) const;
    void PaintPoints(QPainter &painter) const;
    void PaintLines(QPainter &painter, bool accented) const;
    void PaintLabel(QPainter &painter, const QPolygonF &line, const QString &label) const;
    void PaintKey(QPainter &painter) const;
    QPen PenOf(FigureRole role) const;
    double SignWidth() const { return text_ * 1.8; } ///< of a sign in the key
    double SignGap() const { return text_ * 0.45; }
    QFont FontOf(double scale, bool bold = false) const;
    QRectF BarPlace(const FigureBar &bar, double height) const;

    const Figure &figure_;
    QSizeF size_;
    FigureStyle style_;
    FigureSection section_;
    double text_; ///< size of the usual letters
    double pointSize_ = 3;
    QRectF frame_;
    Axis x_, y_;
    Text title_, xTitle_, yTitle_;
    std::vector<Text> xTexts_, yTexts_; ///< of the ticks
    std::vector<KeyEntry> key_;
};

} // namespace nuvo
