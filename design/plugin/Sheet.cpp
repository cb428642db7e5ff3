// SPDX-License-Identifier: MIT
#include "design/plugin/Sheet.h"

#include "design/plugin/Details.h"
#include "design/plugin/Rowtexts.h"
#include "engine/Regression.h"
#include "platform/Component.h"

#include <QExtensionManager>
#include <QScopedValueRollback>
#include <QVariant>

nuvo::PropertySheet::PropertySheet(TComponent &component, QObject &own, QObject *parent)
    : QObject(parent), component_(component), own_(&own),
      sheet_(qobject_cast<QDesignerPropertySheetExtension *>(&own)),
      dynamic_(qobject_cast<QDesignerDynamicPropertySheetExtension *>(&own))
{
    if (dynamic_cast<const TRegression *>(&component) != nullptr)
        model_ = sheet_->indexOf(QStringLiteral("ControlVar01"));
    connect(&component, &QObject::destroyed, this, &QObject::deleteLater);
}

int nuvo::PropertySheet::count() const
{
    return own_ == nullptr ? 0 : sheet_->count() + (model_ >= 0 ? 1 : 0);
}

int nuvo::PropertySheet::indexOf(const QString &name) const
{
    if (own_ == nullptr)
        return -1;
    if (model_ >= 0 && name == QLatin1String(ModelRow))
        return model_;
    const int own = sheet_->indexOf(name);
    return own < 0 ? own : outerIndex(own);
}

QString nuvo::PropertySheet::propertyName(int index) const
{
    return isModel(index) ? QLatin1String(ModelRow) : sheet_->propertyName(ownIndex(index));
}

QString nuvo::PropertySheet::propertyGroup(int index) const
{
    const QString group = nuvo::propertyGroup(propertyName(index));
    return group.isEmpty() || (!isModel(index) && !isPublished(index)) ? sheet_->propertyGroup(ownIndex(index))
                                                                       : group;
}

void nuvo::PropertySheet::setPropertyGroup(int index, const QString &group)
{
    if (!isModel(index))
        sheet_->setPropertyGroup(ownIndex(index), group);
}

/// Whether the component itself publishes it, beyond what every component has as a widget.
bool nuvo::PropertySheet::isPublished(int index) const
{
    const int number = component_.metaObject()->indexOfProperty(propertyName(index).toUtf8().constData());
    return number >= TComponent::staticMetaObject.propertyCount();
}

bool nuvo::PropertySheet::hasReset(int index) const
{
    return !isModel(index) && !isPublished(index) && sheet_->hasReset(ownIndex(index));
}

bool nuvo::PropertySheet::reset(int index)
{
    return !isModel(index) && sheet_->reset(ownIndex(index));
}

bool nuvo::PropertySheet::isVisible(int index) const
{
    if (isModel(index))
        return true;
    const bool facesOnly =
        !isPublished(index) && !isDynamicProperty(index) && propertyName(index) != QLatin1String("objectName");
    return !facesOnly && sheet_->isVisible(ownIndex(index));
}

void nuvo::PropertySheet::setVisible(int index, bool visible)
{
    if (!isModel(index))
        sheet_->setVisible(ownIndex(index), visible);
}

bool nuvo::PropertySheet::isAttribute(int index) const
{
    return !isModel(index) && sheet_->isAttribute(ownIndex(index));
}

void nuvo::PropertySheet::setAttribute(int index, bool attribute)
{
    if (!isModel(index))
        sheet_->setAttribute(ownIndex(index), attribute);
}

QVariant nuvo::PropertySheet::property(int index) const
{
    return isModel(index) ? QVariant(modelText(component_)) : sheet_->property(ownIndex(index));
}

void nuvo::PropertySheet::setProperty(int index, const QVariant &value)
{
    if (!isModel(index))
        sheet_->setProperty(ownIndex(index), value);
}

/// What is changed is stored.
bool nuvo::PropertySheet::isChanged(int index) const
{
    return !isModel(index) && sheet_->isChanged(ownIndex(index));
}

void nuvo::PropertySheet::setChanged(int index, bool changed)
{
    if (!isModel(index))
        sheet_->setChanged(ownIndex(index), changed);
}

bool nuvo::PropertySheet::isEnabled(int index) const
{
    return isModel(index) || sheet_->isEnabled(ownIndex(index));
}

bool nuvo::PropertySheet::dynamicPropertiesAllowed() const
{
    return own_ != nullptr && dynamic_ != nullptr && dynamic_->dynamicPropertiesAllowed();
}

int nuvo::PropertySheet::addDynamicProperty(const QString &name, const QVariant &value)
{
    const int own = canAddDynamicProperty(name) ? dynamic_->addDynamicProperty(name, value) : -1;
    return own < 0 ? own : outerIndex(own);
}

bool nuvo::PropertySheet::removeDynamicProperty(int index)
{
    return isDynamicProperty(index) && dynamic_->removeDynamicProperty(ownIndex(index));
}

bool nuvo::PropertySheet::isDynamicProperty(int index) const
{
    return own_ != nullptr && dynamic_ != nullptr && !isModel(index) && dynamic_->isDynamicProperty(ownIndex(index));
}

bool nuvo::PropertySheet::canAddDynamicProperty(const QString &name) const
{
    return dynamicPropertiesAllowed() && name != QLatin1String(ModelRow) && dynamic_->canAddDynamicProperty(name);
}

QObject *nuvo::SheetFactory::createExtension(QObject *object, const QString &iid, QObject *parent) const
{
    auto *component = qobject_cast<TComponent *>(object);
    if (component == nullptr || asking_)
        return nullptr;
    // The designer's own factories come behind this one.
    const QScopedValueRollback<bool> asking(asking_, true);
    QObject *own = extensionManager()->extension(object, Q_TYPEID(QDesignerPropertySheetExtension));
    const bool ours =
        iid == Q_TYPEID(QDesignerPropertySheetExtension) || iid == Q_TYPEID(QDesignerDynamicPropertySheetExtension);
    if (!ours || qobject_cast<QDesignerPropertySheetExtension *>(own) == nullptr)
        return nullptr;
    return new PropertySheet(*component, *own, parent);
}
