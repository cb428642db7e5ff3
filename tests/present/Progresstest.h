// SPDX-License-Identifier: MIT
#pragma once

#include "present/controls/Gauge.h"

#include <QDialog>
#include <QEvent>
#include <QLabel>
#include <QWidget>

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// A control of a dialog's form by its name.
template <class T = QWidget>
T *control(const QDialog *window, const char *name)
{
    return window->findChild<T *>(QLatin1String(name));
}

/// Where a control of a form stands, its parent and its size.
struct Place
{
    const char *name;
    const char *parent;
    QRect geometry;
};

inline void expectPlaces(const QDialog *window, std::initializer_list<Place> places)
{
    for (const Place &place : places) {
        const QWidget *widget = control(window, place.name);
        ASSERT_NE(widget, nullptr) << place.name;
        EXPECT_EQ(widget->geometry(), place.geometry) << place.name;
        EXPECT_EQ(widget->parentWidget()->objectName(), QLatin1String(place.parent)) << place.name;
        EXPECT_TRUE(widget->isVisible()) << place.name;
    }
}

/// A title: its text, where its top left corner is, its colour and its letters.
inline void expectTitle(const QDialog *window, const char *name, const char *text, QPoint topLeft,
                        Qt::GlobalColor color, int pixels)
{
    const QLabel *label = control<QLabel>(window, name);
    ASSERT_NE(label, nullptr) << name;
    EXPECT_EQ(label->text(), QLatin1String(text)) << name;
    EXPECT_EQ(label->pos(), topLeft) << name;
    EXPECT_EQ(label->palette().color(label->foregroundRole()), QColor(color)) << name;
    EXPECT_EQ(label->font().pixelSize(), pixels) << name;
    EXPECT_TRUE(label->font().bold()) << name;
    EXPECT_GE(label->width(), label->fontMetrics().horizontalAdvance(label->text())) << name << " is clipped";
}

/// Every state that the screen has seen: what the gauge and the status panel held whenever they were painted.
class PaintLog : public QObject
{
public:
    explicit PaintLog(const QDialog *window)
        : gauge_(control<TGauge>(window, "Gauge1")), status_(control<QLabel>(window, "Panel1"))
    {
        gauge_->installEventFilter(this);
        status_->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && watched == gauge_)
            progress.push_back(gauge_->Progress());
        else if (event->type() == QEvent::Paint)
            texts.push_back(status_->text().toStdString());
        return false;
    }

    std::vector<int> progress;
    std::vector<std::string> texts;

private:
    TGauge *gauge_;
    QLabel *status_;
};
