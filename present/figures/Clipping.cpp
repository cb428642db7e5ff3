// SPDX-License-Identifier: MIT
#include "present/figures/Clipping.h"

#include <algorithm>

namespace nuvo {

namespace {

/// Cuts a segment after Liang and Barsky (1984); false when nothing of it is inside.
bool clipSegment(QPointF &a, QPointF &b, const QRectF &frame)
{
    const QPointF start = a;
    const QPointF way = b - a;
    double from = 0;
    double to = 1;
    const auto cut = [&](double along, double room) {
        if (along == 0)
            return room >= 0;
        const double at = room / along;
        if (along < 0)
            from = std::max(from, at);
        else
            to = std::min(to, at);
        return from <= to;
    };
    if (!cut(-way.x(), a.x() - frame.left()) || !cut(way.x(), frame.right() - a.x()) ||
        !cut(-way.y(), a.y() - frame.top()) || !cut(way.y(), frame.bottom() - a.y()))
        return false;
    a = start + from * way;
    b = start + to * way;
    return true;
}

} // namespace

std::vector<QPolygonF> clipLine(const QPolygonF &line, const QRectF &frame)
{
    std::vector<QPolygonF> pieces;
    bool joined = false;
    for (int i = 0; i + 1 < line.size(); ++i) {
        QPointF a = line[i];
        QPointF b = line[i + 1];
        if (!clipSegment(a, b, frame)) {
            joined = false;
            continue;
        }
        if (!joined)
            pieces.push_back(QPolygonF{a});
        pieces.back() << b;
        joined = b == line[i + 1];
    }
    return pieces;
}

QPolygonF clipArea(const QPolygonF &area, const QRectF &frame)
{
    // One side after the other, after Sutherland and Hodgman (1974). Each gives how far inside a point is.
    const auto cutSide = [](const QPolygonF &polygon, const auto &inside) {
        QPolygonF left;
        for (int i = 0; i < polygon.size(); ++i) {
            const QPointF a = polygon[(i + polygon.size() - 1) % polygon.size()];
            const QPointF b = polygon[i];
            const double ia = inside(a);
            const double ib = inside(b);
            if ((ia < 0) != (ib < 0))
                left << a + (b - a) * (ia / (ia - ib));
            if (ib >= 0)
                left << b;
        }
        return left;
    };
    QPolygonF rest = cutSide(area, [&](const QPointF &p) { return p.x() - frame.left(); });
    rest = cutSide(rest, [&](const QPointF &p) { return frame.right() - p.x(); });
    rest = cutSide(rest, [&](const QPointF &p) { return p.y() - frame.top(); });
    return cutSide(rest, [&](const QPointF &p) { return frame.bottom() - p.y(); });
}

} // namespace nuvo
