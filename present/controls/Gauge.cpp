// SPDX-License-Identifier: MIT
#include "present/controls/Gauge.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

TGauge::TGauge(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void TGauge::SetMinValue(int value)
{
    minimum_ = value;
    maximum_ = std::max(maximum_, value);
    SetProgress(progress_);
    update();
}

void TGauge::SetMaxValue(int value)
{
    maximum_ = value;
    minimum_ = std::min(minimum_, value);
    SetProgress(progress_);
    update();
}

void TGauge::SetProgress(int value)
{
    value = std::clamp(value, minimum_, maximum_);
    if (value == progress_)
        return;
    progress_ = value;
    update();
}

double TGauge::Share() const
{
    if (maximum_ == minimum_)
        return 0;
    return (double(progress_) - minimum_) / (double(maximum_) - minimum_);
}

int TGauge::PercentDone() const
{
    if (maximum_ == minimum_)
        return 0;
    return int((qint64(progress_) - minimum_) * 100 / (qint64(maximum_) - minimum_));
}

void TGauge::SetForeColor(const QColor &color)
{
    foreColor_ = color;
    update();
}

void TGauge::SetBackColor(const QColor &color)
{
    backColor_ = color;
    update();
}

void TGauge::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    // To the device's pixel, so that the bar's edge and the text's two colours meet there.
    const double ratio = devicePixelRatioF();
    const double edge = std::round(width() * Share() * ratio) / ratio;
    const QString text = QString::number(PercentDone()) + u'%';
    const auto paintPart = [&](const QRectF &part, const QColor &ground, const QColor &ink) {
        painter.setClipRect(part);
        painter.fillRect(part, ground);
        painter.setPen(ink);
        painter.drawText(rect(), Qt::AlignCenter, text);
    };
    paintPart(QRectF(0, 0, edge, height()), foreColor_, backColor_);
    paintPart(QRectF(edge, 0, width() - edge, height()), backColor_, foreColor_);
}
