// SPDX-License-Identifier: MIT
#include "present/figures/Figurepainter.h"

#include "present/figures/Clipping.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace nuvo {

namespace {

/// More selected points than that are marked without their ordinals, which would hide each other.
constexpr std::size_t MostOrdinals = 12;

QColor withAlpha(QColor colour, double alpha)
{
    colour.setAlphaF(float(alpha));
    return colour;
}

} // namespace

QPen FigurePainter::PenOf(FigureRole role) const
{
    const double unit = text_ / 13;
    switch (role) {
    case FigureRole::Fit:
        return QPen(style_.theme.fit, 2 * unit, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin);
    case FigureRole::Zero:
        return QPen(style_.theme.frame, 1.2 * unit);
    case FigureRole::Contour:
        return QPen(style_.theme.contour, 1.2 * unit, Qt::DashLine, Qt::FlatCap);
    }
    return {};
}

void FigurePainter::Paint(QPainter &painter) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(QRectF(QPointF(), size_), style_.theme.ground);
    painter.setPen(style_.theme.text);
    painter.setFont(FontOf(1.1, true));
    painter.drawText(title_.place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, title_.text);
    if (!figure_.note.isEmpty()) {
        painter.setFont(FontOf(1));
        painter.drawText(frame_, Qt::AlignCenter | Qt::TextWordWrap, figure_.note);
        painter.restore();
        return;
    }
    PaintAxes(painter);
    PaintBands(painter);
    PaintBars(painter);
    PaintLines(painter, false);
    PaintPoints(painter);
    PaintLines(painter, true);
    PaintKey(painter);
    painter.restore();
}

void FigurePainter::PaintAxes(QPainter &painter) const
{
    const QColor frame = style_.theme.frame;
    painter.setBrush(Qt::NoBrush);
    for (const bool grid : {true, false}) {
        painter.setPen(QPen(grid ? style_.theme.grid : frame, 1));
        // Lines are in the middle of pixels, where they are sharp.
        const auto sharp = [](double at) { return std::floor(at) + 0.5; };
        for (const AxisTick &tick : x_.ticks) {
            const double x = sharp(Place(tick.value, 0).x());
            painter.drawLine(QPointF(x, frame_.bottom()),
                             QPointF(x, grid ? frame_.top() : frame_.bottom() + TickLength));
        }
        for (const AxisTick &tick : y_.ticks) {
            const double y = sharp(Place(0, tick.value).y());
            painter.drawLine(QPointF(frame_.left(), y),
                             QPointF(grid ? frame_.right() : frame_.left() - TickLength, y));
        }
    }
    painter.drawRect(frame_);

    painter.setPen(style_.theme.text);
    painter.setFont(FontOf(0.92));
    for (const auto *texts : {&xTexts_, &yTexts_}) {
        for (const Text &text : *texts)
            painter.drawText(text.place, Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, text.text);
    }
    painter.setFont(FontOf(1));
    painter.drawText(xTitle_.place, Qt::AlignCenter | Qt::TextSingleLine, xTitle_.text);
    painter.save();
    painter.translate(yTitle_.place.left(), yTitle_.place.bottom());
    painter.rotate(-90);
    painter.drawText(QRectF(0, 0, yTitle_.place.height(), yTitle_.place.width()),
                     Qt::AlignCenter | Qt::TextSingleLine, yTitle_.text);
    painter.restore();
}

void FigurePainter::PaintBands(QPainter &painter) const
{
    for (const FigureBand &band : figure_.bands) {
        QPolygonF high;
        QPolygonF low;
        for (std::size_t i = 0; i < band.x.size(); ++i) {
            high << Place(band.x[i], band.high[i]);
            low << Place(band.x[i], band.low[i]);
        }
        painter.setPen(Qt::NoPen);
        painter.setBrush(style_.theme.band);
        painter.drawPolygon(clipArea(high + QPolygonF(low.rbegin(), low.rend()), frame_));
        // A pale area alone would be lost where it is narrow, and on poor screens.
        painter.setPen(QPen(withAlpha(style_.theme.fit, 0.6), 1));
        for (const QPolygonF &edge : {high, low}) {
            for (const QPolygonF &piece : clipLine(edge, frame_))
                painter.drawPolyline(piece);
        }
    }
}

void FigurePainter::PaintBars(QPainter &painter) const
{
    painter.setPen(QPen(style_.theme.ground, 1));
    painter.setBrush(style_.theme.bar);
    for (const FigureBar &bar : figure_.bars) {
        if (const QRectF place = BarPlace(bar, bar.height); bar.height > 0 && !place.isEmpty())
            painter.drawRect(place);
    }
}

void FigurePainter::PaintPoints(QPainter &painter) const
{
    // Where points lie on each other it shows.
    painter.setPen(Qt::NoPen);
    painter.setBrush(withAlpha(style_.theme.point, figure_.PointCount() > 400 ? 0.6 : 0.8));
    for (std::size_t i = 0; i < figure_.PointCount(); ++i) {
        if (IsSeen(i))
            painter.drawEllipse(Place(figure_.x[i], figure_.y[i]), pointSize_, pointSize_);
    }
}

void FigurePainter::PaintLines(QPainter &painter, bool accented) const
{
    painter.setBrush(Qt::NoBrush);
    for (const FigureLine &line : figure_.lines) {
        if ((line.role == FigureRole::Fit) != accented)
            continue;
        QPolygonF way;
        for (std::size_t i = 0; i < line.x.size(); ++i)
            way << Place(line.x[i], line.y[i]);
        const std::vector<QPolygonF> pieces = clipLine(way, frame_);
        painter.setPen(PenOf(line.role));
        for (const QPolygonF &piece : pieces)
            painter.drawPolyline(piece);
        if (!pieces.empty() && !line.label.isEmpty())
            PaintLabel(painter, pieces.back(), line.label);
    }
}

void FigurePainter::PaintLabel(QPainter &painter, const QPolygonF &line, const QString &label) const
{
    const QFont font = FontOf(0.85);
    const QFontMetricsF metrics(font);
    QRectF place(0, 0, metrics.horizontalAdvance(label) + 4, metrics.height());
    place.moveCenter(line.back());
    place.moveRight(std::min(place.right(), frame_.right() - 2));
    place.moveTop(std::clamp(place.top(), frame_.top() + 2, frame_.bottom() - 2 - place.height()));
    // No rest of a dash between the text and the frame.
    QRectF cleared = place;
    if (line.back().x() > place.right())
        cleared.setRight(frame_.right() - 1);
    painter.fillRect(cleared, style_.theme.ground);
    painter.setPen(style_.theme.contour);
    painter.setFont(font);
    painter.drawText(place, Qt::AlignCenter | Qt::TextSingleLine, label);
}

void FigurePainter::PaintKey(QPainter &painter) const
{
    const double width = SignWidth();
    painter.setFont(FontOf(0.92));
    for (const KeyEntry &entry : key_) {
        const QRectF sign(entry.place.left(), entry.place.top(), width, entry.place.height());
        const QPointF middle = sign.center();
        const QRectF block(sign.left(), middle.y() - text_ * 0.35, width, text_ * 0.7);
        switch (entry.sign) {
        case KeyEntry::Point:
            painter.setPen(Qt::NoPen);
            painter.setBrush(style_.theme.point);
            painter.drawEllipse(middle, std::max(pointSize_, 3.0), std::max(pointSize_, 3.0));
            break;
        case KeyEntry::Line:
            painter.setPen(PenOf(entry.role));
            painter.drawLine(QPointF(sign.left(), middle.y()), QPointF(sign.right(), middle.y()));
            break;
        case KeyEntry::Band:
            painter.fillRect(block, style_.theme.band);
            break;
        case KeyEntry::Bar:
            painter.fillRect(block, style_.theme.bar);
            break;
        }
        painter.setPen(style_.theme.text);
        painter.drawText(entry.place.adjusted(width + SignGap(), 0, 0, 0),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, entry.name);
    }
}

void FigurePainter::PaintSelected(QPainter &painter, const std::set<qint64> &records) const
{
    if (records.empty() || !figure_.note.isEmpty())
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(FontOf(0.85, true));
    const QFontMetricsF metrics(painter.font());
    const double radius = std::max(pointSize_, text_ * 0.2) + 2;
    painter.setBrush(style_.theme.selected);
    painter.setPen(QPen(style_.theme.text, 1.4 * text_ / 13));
    for (const FigureBar &bar : figure_.bars) {
        const auto chosen = std::count_if(bar.records.begin(), bar.records.end(),
                                          [&](qint64 record) { return records.count(record) != 0; });
        if (chosen > 0)
            painter.drawRect(BarPlace(bar, double(chosen)));
    }
    for (std::size_t i = 0; i < figure_.records.size() && i < figure_.PointCount(); ++i) {
        if (records.count(figure_.records[i]) == 0 || !IsSeen(i))
            continue;
        const QPointF place = Place(figure_.x[i], figure_.y[i]);
        painter.drawEllipse(place, radius, radius);
        if (records.size() > MostOrdinals)
            continue;
        const QString ordinal = QString::number(figure_.records[i]);
        const double width = metrics.horizontalAdvance(ordinal);
        QPointF at = place + QPointF(radius + 3, -radius);
        if (at.x() + width > frame_.right())
            at.setX(place.x() - radius - 3 - width);
        at.setY(std::max(at.y(), frame_.top() + metrics.ascent()));
        // A rim in the ground's colour keeps it readable on top of other points.
        QPainterPath letters;
        letters.addText(at, painter.font(), ordinal);
        painter.strokePath(letters, QPen(style_.theme.ground, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.fillPath(letters, style_.theme.text);
    }
    painter.restore();
}

void FigurePainter::PaintCurrent(QPainter &painter, std::size_t i) const
{
    const bool bar = figure_.PointCount() == 0 && i < figure_.bars.size();
    if (!bar && (i >= figure_.PointCount() || !IsSeen(i)))
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(style_.theme.text, 1.6));
    const double radius = std::max(pointSize_, text_ * 0.2) + 5;
    if (bar)
        painter.drawRect(BarPlace(figure_.bars[i], figure_.bars[i].height));
    else
        painter.drawEllipse(Place(figure_.x[i], figure_.y[i]), radius, radius);
    painter.restore();
}

} // namespace nuvo
