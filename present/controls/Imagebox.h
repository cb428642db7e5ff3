// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QImage>
#include <QWidget>

/// Shows a picture stretched to the control, without smoothing: pixels stay pixels on dense screens.
class NUVO_EXPORT TImage : public QWidget
{
    Q_OBJECT

public:
    explicit TImage(QWidget *parent = nullptr);

    /// The picture as it was set.
    const QImage &Image() const { return image_; }
    /// Any size; a null image shows nothing.
    void SetImage(const QImage &image);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage image_;
};
