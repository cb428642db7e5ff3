// SPDX-License-Identifier: MIT
#pragma once

#include "design/Catalogue.h"
#include "design/plugin/Formedits.h"

#include <QDesignerFormEditorInterface>
#include <QList>
#include <QStringList>

namespace nuvo {

/// Opens the catalogue's property editors on the forms of a designer. What they write goes through the undo stack of
/// the form; what fails is shown.
class Editing
{
public:
    Editing(QDesignerFormEditorInterface &core, const Catalogue &catalogue) : core_(core), catalogue_(catalogue) {}

    QDesignerFormEditorInterface &Core() const { return core_; }
    const Catalogue &Components() const { return catalogue_; }

    /// The properties of a component that have an editor, in the order of their declaration.
    QStringList EditableProperties(const TComponent &component) const;
    /// What the editor of a property can do; none where there is no editor.
    TPropertyAttributes Attributes(const TComponent &component, const QString &property) const;
    /// Lets the user edit a property of the components, the first one's value to begin with: in the editor's
    /// dialog, else in a list of its values.
    void Edit(const QList<TComponent *> &components, const QString &property) const;
    /// Lets the user edit the whole model of a regression component, as one step.
    void EditModel(TComponent &component) const;
    /// The values that an editor offers, in the order in which they are to be shown; none after an error, which is
    /// shown.
    QStringList Values(const QList<TComponent *> &components, const QString &property) const;
    /// Writes a value as one step.
    void Set(const QList<TComponent *> &components, const QString &property, const QVariant &value) const;
    /// Makes definitions of the components what they are on a new one, as one step.
    void Clear(const QList<TComponent *> &components, const QStringList &definitions) const;
    /// The definitions that a component has: of the response and the control variables that are in use.
    QStringList Definitions(const TComponent &component) const;
    /// Stores values as one step.
    /// \param name of the step; empty for one that names what it changes.
    void Commit(const std::vector<PropertyEdit> &edits, const QString &name = {}) const;

    /// The component whose properties are shown and, behind it, the others that are selected and have this property.
    QList<TComponent *> Selected(const QString &property) const;

private:
    const EditorEntry *EntryFor(const TComponent &component, const QString &property) const;
    std::unique_ptr<TPropertyEditor> MakeEditor(const QList<TComponent *> &components, const QString &property,
                                                std::vector<PropertyEdit> &edits) const;

    QDesignerFormEditorInterface &core_;
    const Catalogue &catalogue_;
};

} // namespace nuvo
