// SPDX-License-Identifier: MIT
#include "design/plugin/Icons.h"

#include "select/Components.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <algorithm>

namespace {

// Drawn on a square of 32 in steps of 2, so that edges meet the pixels at 16 too. Each stands on a white sheet of its
// own and is seen on light and dark ground.

constexpr QColor Ink(0x1f, 0x3a, 0x5f);
constexpr QColor Header(0x3b, 0x78, 0xb5);
constexpr QColor Pale(0xa9, 0xc4, 0xe2);
constexpr QColor Accent(0xb0, 0x20, 0x20);
constexpr QColor Plus(0x1e, 0x7f, 0x3c);

void drawSheet(QPainter &painter)
{
    painter.fillRect(0, 2, 32, 28, Ink);
    painter.fillRect(2, 4, 28, 24, Qt::white);
}

/// A table: its header and, below, the lines between its cells.
void drawGrid(QPainter &painter, const QColor &lines)
{
    drawSheet(painter);
    painter.fillRect(2, 4, 28, 6, Header);
    for (const int x : {10, 20})
        painter.fillRect(x, 10, 2, 18, lines);
    for (const int y : {14, 20})
        painter.fillRect(2, y, 28, 2, lines);
}

/// A magnifying glass in the lower right corner, with a white rim that parts it from what it lies on.
void drawGlass(QPainter &painter)
{
    const QPointF handle(25.4, 25.4);
    const QPointF end(30.2, 30.2);
    for (const bool rim : {true, false}) {
        painter.setPen(QPen(rim ? Qt::white : Accent, rim ? 6.6 : 3.6, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(handle, end);
        painter.setBrush(QColor(0xff, 0xf3, 0xd6));
        painter.setPen(QPen(rim ? Qt::white : Accent, rim ? 5.4 : 2.6));
        painter.drawEllipse(QPointF(20.4, 20.4), 6.4, 6.4);
    }
}

/// Points and the line through them, below a table's header; `right` is where they end.
void drawFit(QPainter &painter, double right)
{
    drawSheet(painter);
    painter.fillRect(2, 4, 28, 6, Header);
    painter.setClipRect(QRectF(2, 10, right - 2, 18));
    painter.setPen(QPen(Ink, 2.4, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(4, 26), QPointF(28, 12));
    painter.setPen(Qt::NoPen);
    painter.setBrush(Accent);
    for (const QPointF &point : {QPointF(6.5, 17.5), QPointF(12, 13.5), QPointF(17, 24), QPointF(25, 19)})
        painter.drawEllipse(point, 2.4, 2.4);
    painter.setClipping(false);
}

/// The drawing of each component; one that is listed and not drawn does not link.
template <class Component>
void draw(QPainter &painter);

template <>
void draw<TTable>(QPainter &painter)
{
    drawGrid(painter, Pale);
}

template <>
void draw<TQuery>(QPainter &painter)
{
    drawGrid(painter, Pale);
    drawGlass(painter);
}

template <>
void draw<TMLRTable>(QPainter &painter)
{
    drawFit(painter, 30);
}

template <>
void draw<TMLRQuery>(QPainter &painter)
{
    drawFit(painter, 18);
    drawGlass(painter);
}

/// Candidates, the best one marked.
template <>
void draw<TOptimizeMLR>(QPainter &painter)
{
    drawSheet(painter);
    painter.fillRect(6, 18, 4, 10, Pale);
    painter.fillRect(12, 14, 4, 14, Pale);
    painter.fillRect(18, 6, 4, 22, Accent);
    painter.fillRect(24, 16, 4, 12, Pale);
}

/// The variables of a model, one above the other; the lowest one on its way.
void drawVariables(QPainter &painter, const QColor &moving)
{
    drawSheet(painter);
    painter.fillRect(4, 6, 24, 4, Header);
    painter.fillRect(4, 12, 18, 4, Header);
    painter.fillRect(4, 18, 10, 4, moving);
}

void drawSign(QPainter &painter, const QColor &color, bool plus)
{
    painter.setPen(QPen(Qt::white, 2));
    painter.setBrush(color);
    painter.drawEllipse(QPointF(23, 23), 9, 9);
    painter.fillRect(QRectF(18, 22, 10, 2), Qt::white);
    if (plus)
        painter.fillRect(QRectF(22, 18, 2, 10), Qt::white);
}

template <>
void draw<TBackElimMLR>(QPainter &painter)
{
    drawVariables(painter, Pale);
    drawSign(painter, Accent, false);
}

template <>
void draw<TFwdSelectMLR>(QPainter &painter)
{
    drawVariables(painter, Header);
    drawSign(painter, Plus, true);
}

/// Steps upwards: what goes in above them, what goes out below.
template <>
void draw<TStepWiseMLR>(QPainter &painter)
{
    drawSheet(painter);
    QPainterPath steps;
    steps.moveTo(2, 28);
    for (const QPointF &corner : {QPointF(2, 24), QPointF(10, 24), QPointF(10, 18), QPointF(18, 18), QPointF(18, 12),
                                  QPointF(26, 12), QPointF(26, 8), QPointF(30, 8), QPointF(30, 28)})
        steps.lineTo(corner);
    steps.closeSubpath();
    painter.fillPath(steps, Header);
    painter.fillRect(6, 10, 8, 2, Plus);
    painter.fillRect(9, 7, 2, 8, Plus);
    painter.fillRect(20, 20, 8, 2, Qt::white);
}

/// A triangle with an exclamation mark, in the lower right corner.
void drawWarning(QPainter &painter)
{
    const QPolygonF triangle({QPointF(23, 14), QPointF(32, 31), QPointF(14, 31)});
    painter.setPen(QPen(Qt::white, 1.5));
    painter.setBrush(QColor(0xc6, 0x28, 0x28));
    painter.drawPolygon(triangle);
    painter.fillRect(QRectF(22, 20, 2, 6), Qt::white);
    painter.fillRect(QRectF(22, 27, 2, 2), Qt::white);
}

class DrawnIcon : public QIconEngine
{
public:
    DrawnIcon(void (*draw)(QPainter &painter), bool warning) : draw_(draw), warning_(warning) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const double side = std::min(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (mode == QIcon::Disabled)
            painter->setOpacity(0.4);
        painter->translate(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
        painter->scale(side / 32, side / 32);
        draw_(*painter);
        if (warning_)
            drawWarning(*painter);
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    /// Drawn at any size; but Designer's palette takes an icon without sizes for none.
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override { return {{16, 16}, {32, 32}, {64, 64}}; }

    QIconEngine *clone() const override { return new DrawnIcon(*this); }

private:
    void (*draw_)(QPainter &painter);
    bool warning_;
};

} // namespace

QIcon nuvo::componentIcon(const QString &className, bool warning)
{
    QIcon icon;
    forEachComponent([&]<class Component>(const Listed<Component> &) {
        if (className == QLatin1String(Component::staticMetaObject.className()))
            icon = QIcon(new DrawnIcon(draw<Component>, warning)); // the icon owns it
    });
    return icon;
}
