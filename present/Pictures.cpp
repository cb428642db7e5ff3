// SPDX-License-Identifier: MIT
#include "present/Pictures.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>

namespace {

constexpr QColor Ink(0x1f, 0x3a, 0x5f);
constexpr QColor Accent(0x80, 0x00, 0x00);

/// The colours of a picture that has no ground of its own.
struct Colors
{
    QColor ink;
    QColor accent;
};

constexpr Colors OnLight{Ink, Accent};
constexpr Colors OnDark{QColor(0xc8, 0xd8, 0xec), QColor(0xff, 0x9a, 0x8c)};

void drawRecords(QPainter &painter)
{
    painter.setPen(QPen(Ink, 1));
    // From the bottom up: each disc covers the one below.
    for (const double top : {15.5, 9.0, 2.5}) {
        const QRectF lid(3.5, top, 21, 6.5);
        QPainterPath disc;
        disc.moveTo(lid.left(), lid.center().y());
        disc.lineTo(lid.left(), lid.center().y() + 5.5);
        disc.arcTo(lid.translated(0, 5.5), 180, 180);
        disc.lineTo(lid.right(), lid.center().y());
        disc.closeSubpath();
        QLinearGradient side(lid.topLeft(), lid.topRight());
        side.setColorAt(0, QColor(0x5b, 0x8a, 0xc0));
        side.setColorAt(0.35, QColor(0xc4, 0xdc, 0xf4));
        side.setColorAt(1, QColor(0x3e, 0x69, 0x9e));
        painter.setBrush(side);
        painter.drawPath(disc);
        painter.setBrush(QColor(0xdc, 0xea, 0xf8));
        painter.drawEllipse(lid);
    }
}

void drawFit(QPainter &painter)
{
    painter.setPen(QPen(Ink, 1));
    painter.setBrush(Qt::white);
    painter.drawRect(QRectF(1.5, 1.5, 25, 25));
    painter.setPen(QPen(Qt::darkBlue, 1.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(4, 22.5), QPointF(24, 6));
    painter.setPen(Qt::NoPen);
    painter.setBrush(Accent);
    for (const QPointF &point : {QPointF(6, 15.5), QPointF(9, 23.5), QPointF(12.5, 11), QPointF(16, 18),
                                 QPointF(18.5, 5.5), QPointF(22.5, 13)})
        painter.drawEllipse(point, 1.7, 1.7);
}

void drawModels(QPainter &painter)
{
    painter.setPen(QPen(Ink, 1));
    painter.setBrush(Qt::white);
    painter.drawRect(QRectF(1.5, 1.5, 29, 29));
    constexpr int Heights[] = {8, 13, 22, 17, 10};
    int left = 4;
    for (const int height : Heights) {
        painter.fillRect(left, 28 - height, 4, height, height == 22 ? Accent : QColor(0x7f, 0xa3, 0xcc));
        left += 5;
    }
}

void drawAxes(QPainter &painter, const Colors &colors)
{
    painter.setPen(QPen(colors.ink, 1.2));
    painter.drawLine(QPointF(3.5, 2), QPointF(3.5, 20.5));
    painter.drawLine(QPointF(3.5, 20.5), QPointF(22, 20.5));
}

void drawSmallDots(QPainter &painter, const Colors &colors, std::initializer_list<QPointF> dots)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.accent);
    for (const QPointF &dot : dots)
        painter.drawEllipse(dot, 1.5, 1.5);
}

/// Residuals about zero and the letter of what they are set against.
void drawResiduals(QPainter &painter, const Colors &colors, const QString &letter)
{
    painter.setPen(QPen(colors.ink, 1.2));
    painter.drawLine(QPointF(3.5, 1), QPointF(3.5, 16));
    painter.drawLine(QPointF(3.5, 8.5), QPointF(22, 8.5));
    drawSmallDots(painter, colors,
                  {QPointF(6.5, 4.5), QPointF(9.5, 12), QPointF(12.5, 5), QPointF(15.5, 13.5), QPointF(18.5, 3.5),
                   QPointF(21, 11)});
    QFont font(QStringLiteral("Arial"));
    font.setPixelSize(9);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(colors.ink);
    painter.drawText(QRectF(3, 14.5, 20, 10), Qt::AlignHCenter | Qt::AlignBottom, letter);
}

void drawClear(QPainter &painter)
{
    painter.setPen(QPen(Ink, 1));
    painter.setBrush(Qt::white);
    painter.drawPolygon(QPolygonF(
        {QPointF(5.5, 2.5), QPointF(14.5, 2.5), QPointF(18.5, 6.5), QPointF(18.5, 21.5), QPointF(5.5, 21.5)}));
    painter.drawPolyline(QPolygonF({QPointF(14.5, 2.5), QPointF(14.5, 6.5), QPointF(18.5, 6.5)}));
}

void drawClose(QPainter &painter, const Colors &colors)
{
    painter.setPen(QPen(colors.accent, 3, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(6, 6), QPointF(18, 18));
    painter.drawLine(QPointF(18, 6), QPointF(6, 18));
}

int sideOf(nuvo::Picture picture)
{
    switch (picture) {
    case nuvo::Picture::Records:
    case nuvo::Picture::Fit:
        return 28;
    case nuvo::Picture::Models:
        return 32;
    default:
        return 24;
    }
}

} // namespace

namespace nuvo {

QPixmap drawPicture(Picture picture, qreal ratio, bool onDark)
{
    const QString key = QStringLiteral("nuvo-picture-%1-%2-%3").arg(int(picture)).arg(ratio).arg(int(onDark));
    const Colors &colors = onDark ? OnDark : OnLight;
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    const int side = sideOf(picture);
    pixmap = QPixmap(QSize(side, side) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    switch (picture) {
    case Picture::Records:
        drawRecords(painter);
        break;
    case Picture::Fit:
        drawFit(painter);
        break;
    case Picture::Models:
        drawModels(painter);
        break;
    case Picture::Scatter:
        drawAxes(painter, colors);
        drawSmallDots(painter, colors,
                      {QPointF(6.5, 17), QPointF(9, 13), QPointF(12, 14.5), QPointF(14, 8.5), QPointF(17.5, 10),
                       QPointF(20, 4.5)});
        break;
    case Picture::ResidualInput:
        drawResiduals(painter, colors, QStringLiteral("1..n"));
        break;
    case Picture::ResidualControl:
        drawResiduals(painter, colors, QStringLiteral("X"));
        break;
    case Picture::ResidualResponse:
        drawResiduals(painter, colors, QStringLiteral("Y"));
        break;
    case Picture::ResidualFitted:
        drawResiduals(painter, colors, QStringLiteral("Y\u0302"));
        break;
    case Picture::Ecdf:
        drawAxes(painter, colors);
        drawSmallDots(painter, colors,
                      {QPointF(6, 18), QPointF(8.5, 17), QPointF(11, 14.5), QPointF(13, 11), QPointF(15, 7.5),
                       QPointF(17.5, 5), QPointF(20.5, 4)});
        break;
    case Picture::Clear:
        drawClear(painter);
        break;
    case Picture::Close:
        drawClose(painter, colors);
        break;
    }
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

} // namespace nuvo
