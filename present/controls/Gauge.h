// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QColor>
#include <QWidget>

/// A horizontal bar that fills from the left with the share of MinValue..MaxValue that Progress has reached, the
/// percentage in its middle: in ForeColor where the bar has not come yet, in BackColor on the bar.
class NUVO_EXPORT TGauge : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int MinValue READ MinValue WRITE SetMinValue)
    Q_PROPERTY(int MaxValue READ MaxValue WRITE SetMaxValue)
    Q_PROPERTY(int Progress READ Progress WRITE SetProgress)
    Q_PROPERTY(QColor ForeColor READ ForeColor WRITE SetForeColor)
    Q_PROPERTY(QColor BackColor READ BackColor WRITE SetBackColor)

public:
    /// 0 of 0..100, black on white.
    explicit TGauge(QWidget *parent = nullptr);

    /// The progress at which the bar is empty.
    int MinValue() const { return minimum_; }
    /// The progress at which it is full.
    int MaxValue() const { return maximum_; }
    /// Moving one limit past the other takes that one along; the progress stays within both.
    void SetMinValue(int value);
    /// As SetMinValue().
    void SetMaxValue(int value);

    /// Where the work is, MinValue() to MaxValue().
    int Progress() const { return progress_; }
    /// A value outside the limits becomes the nearer limit. The gauge is painted with the next event or repaint().
    void SetProgress(int value);
    /// Whole percent reached, cut and not rounded: 100 means done. 0 where the limits are equal.
    int PercentDone() const;

    /// Of the bar.
    QColor ForeColor() const { return foreColor_; }
    void SetForeColor(const QColor &color);
    /// Of what the bar has not reached.
    QColor BackColor() const { return backColor_; }
    void SetBackColor(const QColor &color);

    QSize sizeHint() const override { return {175, 21}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    double Share() const;

    int minimum_ = 0;
    int maximum_ = 100;
    int progress_ = 0;
    QColor foreColor_ = Qt::black;
    QColor backColor_ = Qt::white;
};
