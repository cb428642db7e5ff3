// SPDX-License-Identifier: MIT
#pragma once

#include <QPolygonF>
#include <QRectF>

#include <vector>

namespace nuvo {

/// The pieces of a joined line that lie within a rectangle. Cut here, not by the paint device: SVG files have no
/// clipping, and coordinates far away from a page are rounded.
std::vector<QPolygonF> clipLine(const QPolygonF &line, const QRectF &frame);

/// What of an area lies within a rectangle; empty when nothing does.
QPolygonF clipArea(const QPolygonF &area, const QRectF &frame);

} // namespace nuvo
