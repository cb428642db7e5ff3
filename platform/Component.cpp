// SPDX-License-Identifier: MIT
#include "platform/Component.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int IconSize = 32;
/// A longer name is cut in its middle.
constexpr int LongestName = 160;

} // namespace

TComponent::TComponent(QWidget *owner) : QWidget(owner)
{
    setFixedSize(TComponent::sizeHint());
    // An explicit "no", so that showing the form does not show the component with it.
    QWidget::setVisible(false);
}

TComponent::~TComponent() = default;

void TComponent::SetDesigning(bool designing, const QIcon &icon, const QWidget *ground)
{
    designing_ = designing;
    icon_ = icon;
    ground_ = ground;
    if (designing)
        connect(this, &QObject::objectNameChanged, this, &TComponent::Fit, Qt::UniqueConnection);
    Fit();
    // Without an owner it would become a window of its own.
    setVisible(parentWidget() != nullptr);
}

void TComponent::setVisible(bool visible)
{
    QWidget::setVisible(visible && designing_);
}

QString TComponent::Caption() const
{
    return designing_ ? fontMetrics().elidedText(Name(), Qt::ElideMiddle, LongestName) : QString();
}

QSize TComponent::sizeHint() const
{
    const QString caption = Caption();
    if (caption.isEmpty())
        return {IconSize, IconSize};
    const QFontMetrics metrics = fontMetrics();
    return {std::max(IconSize, metrics.horizontalAdvance(caption) + 6), IconSize + metrics.height()};
}

void TComponent::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    icon_.paint(&painter, QRect((width() - IconSize) / 2, 0, IconSize, IconSize));
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRect(0, IconSize, width(), height() - IconSize), Qt::AlignCenter, Caption());
}

void TComponent::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        Fit();
}
