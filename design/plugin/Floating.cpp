// SPDX-License-Identifier: MIT
#include "design/plugin/Floating.h"

#include "design/plugin/Icons.h"
#include "platform/Component.h"

#include <QDesignerFormEditorInterface>
#include <QLayout>
#include <QSplitter>

#include <algorithm>

namespace {

bool takenUp(const TComponent &component)
{
    const QWidget *parent = component.parentWidget();
    return qobject_cast<const QSplitter *>(parent) != nullptr ||
           (parent->layout() != nullptr && parent->layout()->indexOf(&component) >= 0);
}

} // namespace

void nuvo::putOn(TComponent &component, const QDesignerFormWindowInterface &form, bool warning)
{
    const QIcon icon = componentIcon(QString::fromLatin1(component.metaObject()->className()), warning);
    component.SetDesigning(true, icon, &form);
}

nuvo::Floating::Floating(QDesignerFormWindowInterface &form) : QObject(&form), form_(form)
{
    // Designer is in the middle of a command when it says so.
    timer_.setSingleShot(true);
    timer_.setInterval(0);
    connect(&timer_, &QTimer::timeout, this, &Floating::Sweep);
    const auto soon = [this] { timer_.start(); };
    connect(&form, &QDesignerFormWindowInterface::widgetManaged, this, soon);
    connect(&form, &QDesignerFormWindowInterface::widgetManaged, this, [this](QWidget *widget) {
        if (auto *component = qobject_cast<TComponent *>(widget))
            putOn(*component, form_);
    });
    // Designer keeps what was deleted, and an insertion that was undone, as hidden children of the form.
    connect(&form, &QDesignerFormWindowInterface::widgetUnmanaged, this, [](QWidget *widget) {
        if (auto *component = qobject_cast<TComponent *>(widget))
            component->SetDesigning(false);
    });
    connect(&form, &QDesignerFormWindowInterface::changed, this, soon);
}

void nuvo::Floating::Sweep()
{
    if (form_.mainContainer() == nullptr)
        return;
    bool swept = false;
    for (TComponent *component : form_.mainContainer()->findChildren<TComponent *>()) {
        if (takenUp(*component)) {
            TakeOut(*component);
            swept = true;
        }
        places_[component] = {component->parentWidget(), component->pos()};
    }
    if (swept)
        form_.emitSelectionChanged();
}

void nuvo::Floating::TakeOut(TComponent &component)
{
    QWidget *parent = component.parentWidget();
    if (QLayout *layout = parent->layout())
        layout->removeWidget(&component);
    const Place place = places_.value(&component, {parent, component.pos()});
    // A layout of its own widget, or a splitter, has put itself between the component and what it was on.
    QWidget *owner = place.parent;
    if (owner == nullptr || !form_.mainContainer()->isAncestorOf(owner))
        owner = form_.mainContainer();
    if (owner != parent)
        component.setParent(owner);
    const QPoint last(std::max(0, owner->width() - component.width()),
                      std::max(0, owner->height() - component.height()));
    component.move(std::clamp(place.position.x(), 0, last.x()), std::clamp(place.position.y(), 0, last.y()));
    component.show();
    component.raise();
}
