// SPDX-License-Identifier: MIT
#pragma once

#include "design/Propertyeditors.h"
#include "select/Components.h"

#include <QMetaObject>

#include <functional>
#include <memory>
#include <vector>

namespace nuvo {

/// A component on the palette.
struct ComponentEntry
{
    const QMetaObject *metaObject;
    QString page;
    QString description; ///< one line, for a tool tip
    QString header;      ///< as a program includes it
    QString firstName;   ///< of a new one; the designer numbers the others
    QString whatsThis;
    std::function<TComponent *(QWidget *owner)> create;

    QString ClassName() const { return QString::fromLatin1(metaObject->className()); }
};

/// Which editor opens for which properties.
struct EditorEntry
{
    QString propertyType; ///< as Catalogue::PropertyType() tells it
    const QMetaObject *component;
    QString propertyName; ///< empty: every property of the type
    std::function<std::unique_ptr<TPropertyEditor>(const QList<TComponent *> &components, const QString &property)>
        create;
};

/// What a form designer offers: components by palette pages, and editors of their properties. Registration procedures
/// fill it; the order of registration is the order on the palette.
class Catalogue
{
public:
    /// The components of one of the lists.
    template <class List>
    void RegisterComponents(const List &list)
    {
        forEach(list, [this](const auto &listed) { this->Register(listed); });
    }
    /// For the properties of that type and name on a class and the classes derived from it.
    template <class Component, class Editor>
    void RegisterPropertyEditor(const QString &propertyType, const QString &propertyName)
    {
        editors_.push_back({propertyType, &Component::staticMetaObject, propertyName,
                            [](const QList<TComponent *> &components, const QString &property) {
                                return std::make_unique<Editor>(components, property);
                            }});
    }

    const std::vector<ComponentEntry> &Components() const { return components_; }
    const std::vector<EditorEntry> &Editors() const { return editors_; }

    /// The entry for a property of a component class: the nearest base class counts, on it a name more than a type.
    /// nullptr when there is none; the designer's own editor then does.
    const EditorEntry *EditorFor(const QMetaObject &component, const QString &propertyName) const;

    /// The type of a property as the entries call it: "TIndepVar" and "TDependentVar" for the definitions, which are
    /// published as lists of strings, else the type's own name. Empty when the class has no such property.
    static QString PropertyType(const QMetaObject &component, const QString &propertyName);

private:
    template <class Component>
    void Register(const Listed<Component> &listed)
    {
        components_.push_back({&Component::staticMetaObject, QString::fromUtf8(listed.page),
                               QString::fromUtf8(listed.description), QString::fromUtf8(listed.header),
                               QString::fromUtf8(listed.firstName), QString::fromUtf8(listed.whatsThis),
                               [](QWidget *owner) -> TComponent * { return new Component(owner); }});
    }

    std::vector<ComponentEntry> components_;
    std::vector<EditorEntry> editors_;
};

} // namespace nuvo
