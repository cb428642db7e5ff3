#include "platform/Component.h"

TComponent::TComponent(QWidget *owner) : QWidget(owner)
{
    setFixedSize(TComponent::sizeHint());
    // An explicit "no", so that showing the form does not show the component with it.
    QWidget::setVisible(false);
}

TComponent::~TComponent() = default;

void TComponent::SetDesigning(bool designing)
{
    designing_ = designing;
    // Without an owner it would become a window of its own.
    setVisible(parentWidget() != nullptr);
}

void TComponent::setVisible(bool visible)
{
    QWidget::setVisible(visible && designing_);
}
