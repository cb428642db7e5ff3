// SPDX-License-Identifier: MIT
#include "present/controls/Imagebox.h"

#include <QPainter>

TImage::TImage(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void TImage::SetImage(const QImage &image)
{
    image_ = image;
    update();
}

void TImage::paintEvent(QPaintEvent *)
{
    QPainter(this).drawImage(rect(), image_);
}
