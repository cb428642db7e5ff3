// SPDX-License-Identifier: MIT
#include "design/Catalogue.h"

#include <QMetaProperty>

namespace nuvo {

const EditorEntry *Catalogue::EditorFor(const QMetaObject &component, const QString &propertyName) const
{
    const QString type = PropertyType(component, propertyName);
    if (type.isEmpty())
        return nullptr;
    for (const QMetaObject *level = &component; level != nullptr; level = level->superClass()) {
        const EditorEntry *byType = nullptr;
        for (const EditorEntry &entry : editors_) {
            if (entry.component != level || entry.propertyType != type)
                continue;
            if (entry.propertyName == propertyName)
                return &entry;
            if (entry.propertyName.isEmpty() && byType == nullptr)
                byType = &entry;
        }
        if (byType != nullptr)
            return byType;
    }
    return nullptr;
}

QString Catalogue::PropertyType(const QMetaObject &component, const QString &propertyName)
{
    const int index = component.indexOfProperty(propertyName.toUtf8().constData());
    if (index < 0)
        return {};
    const QMetaType type = component.property(index).metaType();
    if (type == QMetaType::fromType<QStringList>()) {
        if (controlNumber(propertyName) > 0)
            return QStringLiteral("TIndepVar");
        if (propertyName == u"ResponseVarY")
            return QStringLiteral("TDependentVar");
    }
    return QString::fromLatin1(type.name());
}

} // namespace nuvo
