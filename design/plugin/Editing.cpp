// SPDX-License-Identifier: MIT
#include "design/plugin/Editing.h"

#include "design/Modelediting.h"
#include "design/plugin/Rowtexts.h"
#include "engine/Mlrtypes.h"
#include "platform/Formfolder.h"
#include "present/Forms.h"

#include <QDesignerFormWindowCursorInterface>
#include <QDesignerPropertyEditorInterface>
#include <QInputDialog>
#include <QMetaProperty>
#include <QUndoStack>

#include <algorithm>

namespace {

QStringList valuesOf(TPropertyEditor &editor)
{
    QStringList values = editor.GetValues();
    if (editor.GetAttributes() & paSortList)
        values.sort(Qt::CaseInsensitive);
    return values;
}

QString currentText(const TComponent &component, const QString &property)
{
    return component.property(property.toUtf8().constData()).toString();
}

/// A form and its database move together.
QVariant storedValue(const TComponent &component, const QString &property, const QVariant &value)
{
    if (property != u"DatabaseName")
        return value;
    return nuvo::pathFromForm(value.toString(), nuvo::formFolder(component));
}

} // namespace

const nuvo::EditorEntry *nuvo::Editing::EntryFor(const TComponent &component, const QString &property) const
{
    return catalogue_.EditorFor(*component.metaObject(), property);
}

QStringList nuvo::Editing::EditableProperties(const TComponent &component) const
{
    QStringList properties;
    const QMetaObject *meta = component.metaObject();
    for (int i = TComponent::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
        const QString name = QString::fromLatin1(meta->property(i).name());
        if (EntryFor(component, name) != nullptr)
            properties += name;
    }
    return properties;
}

TPropertyAttributes nuvo::Editing::Attributes(const TComponent &component, const QString &property) const
{
    const EditorEntry *entry = EntryFor(component, property);
    if (entry == nullptr)
        return {};
    return entry->create({const_cast<TComponent *>(&component)}, property)->GetAttributes();
}

/// An editor that notes down what it writes.
std::unique_ptr<TPropertyEditor> nuvo::Editing::MakeEditor(const QList<TComponent *> &components,
                                                           const QString &property,
                                                           std::vector<PropertyEdit> &edits) const
{
    std::unique_ptr<TPropertyEditor> editor = EntryFor(*components.first(), property)->create(components, property);
    editor->SetWriter([&edits](TComponent &component, const QString &name, const QVariant &value) {
        edits.push_back({&component, name, storedValue(component, name, value)});
    });
    editor->SetScopeFinder([](const TComponent &component) -> QWidget * {
        auto *form = QDesignerFormWindowInterface::findFormWindow(const_cast<TComponent *>(&component));
        return form == nullptr ? nullptr : form->mainContainer();
    });
    return editor;
}

void nuvo::Editing::Edit(const QList<TComponent *> &components, const QString &property) const
{
    guarded([&] {
        std::vector<PropertyEdit> edits;
        const std::unique_ptr<TPropertyEditor> editor = MakeEditor(components, property, edits);
        if (editor->GetAttributes() & paDialog) {
            editor->Edit();
        } else {
            const QStringList values = valuesOf(*editor);
            const TComponent &first = *components.first();
            bool chosen = false;
            const QString value =
                QInputDialog::getItem(core_.topLevel(), QStringLiteral("Choose %1").arg(property),
                                      QStringLiteral("%1 of \"%2\":").arg(property, first.Name()), values,
                                      std::max(0, int(values.indexOf(currentText(first, property)))), true, &chosen);
            if (chosen)
                editor->SetValue(value);
        }
        Commit(edits);
    });
}

void nuvo::Editing::EditModel(TComponent &component) const
{
    guarded([&] {
        const QPointer<TComponent> edited(&component);
        std::vector<PropertyEdit> edits;
        for (const auto &[property, value] : editModel(component))
            edits.push_back({edited, property, value});
        if (!edited.isNull())
            Commit(edits, QStringLiteral("Change the model of \"%1\"").arg(edited->Name()));
    });
}

QStringList nuvo::Editing::Values(const QList<TComponent *> &components, const QString &property) const
{
    QStringList values;
    guarded([&] {
        std::vector<PropertyEdit> edits;
        values = valuesOf(*MakeEditor(components, property, edits));
    });
    return values;
}

void nuvo::Editing::Set(const QList<TComponent *> &components, const QString &property, const QVariant &value) const
{
    guarded([&] {
        std::vector<PropertyEdit> edits;
        MakeEditor(components, property, edits)->SetValue(value);
        Commit(edits);
    });
}

QStringList nuvo::Editing::Definitions(const TComponent &component) const
{
    QStringList definitions;
    for (const QString &property : EditableProperties(component)) {
        if (!definitionText(component, property).isEmpty())
            definitions += property;
    }
    return definitions;
}

void nuvo::Editing::Clear(const QList<TComponent *> &components, const QStringList &definitions) const
{
    guarded([&] {
        std::vector<PropertyEdit> edits;
        for (TComponent *component : components) {
            for (const QString &property : definitions)
                edits.push_back(
                    {component, property,
                     controlNumber(property) > 0 ? TIndepVar().ToQStringList() : TDependentVar().ToQStringList()});
        }
        Commit(edits, QStringLiteral("Clear %1 of %2")
                          .arg(definitions.size() == 1 ? definitions.first() : QStringLiteral("the definitions"),
                               components.size() == 1 ? QStringLiteral("\"%1\"").arg(components.first()->Name())
                                                      : QStringLiteral("%1 components").arg(components.size())));
    });
}

/// What changes nothing goes to the setters, which run on every edit, but leaves the form as unchanged as it was.
void nuvo::Editing::Commit(const std::vector<PropertyEdit> &edits, const QString &name) const
{
    std::vector<PropertyEdit> changes;
    for (const PropertyEdit &edit : edits) {
        if (edit.component == nullptr)
            continue;
        const QByteArray property = edit.property.toUtf8();
        if (edit.component->property(property.constData()) == edit.value)
            edit.component->setProperty(property.constData(), edit.value);
        else
            changes.push_back(edit);
    }
    if (changes.empty())
        return;
    QWidget *first = changes.front().component;
    if (auto *form = QDesignerFormWindowInterface::findFormWindow(first); form != nullptr)
        form->commandHistory()->push(new EditCommand(*form, changes, name)); // the stack owns it
}

QList<TComponent *> nuvo::Editing::Selected(const QString &property) const
{
    QList<TComponent *> components;
    auto *shown = qobject_cast<TComponent *>(core_.propertyEditor()->object());
    auto *form =
        shown == nullptr ? nullptr : QDesignerFormWindowInterface::findFormWindow(static_cast<QWidget *>(shown));
    if (form == nullptr)
        return components;
    components += shown;
    const QDesignerFormWindowCursorInterface *cursor = form->cursor();
    for (int i = 0; i < cursor->selectedWidgetCount(); ++i) {
        auto *other = qobject_cast<TComponent *>(cursor->selectedWidget(i));
        if (other != nullptr && other != shown && other->metaObject()->indexOfProperty(property.toUtf8()) >= 0)
            components += other;
    }
    return components;
}
