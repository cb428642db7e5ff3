#include "present/Pictures.h"

#include <QPainter>
#include <QPainterPath>

namespace {

constexpr QColor Ink(0x1f, 0x3a, 0x5f);
constexpr QColor Accent(0x80, 0x00, 0x00);

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

} // namespace

namespace nuvo {

QPixmap drawPicture(Picture picture, qreal ratio)
{
    const int side = picture == Picture::Models ? 32 : 28;
    QPixmap pixmap(QSize(side, side) * ratio);
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
    }
    return pixmap;
}

} // namespace nuvo
