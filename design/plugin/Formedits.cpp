// SPDX-License-Identifier: MIT
#include "design/plugin/Formedits.h"

#include "design/plugin/Sheet.h"
#include "platform/Component.h"
#include "present/Forms.h"

#include <QDesignerFormEditorInterface>
#include <QDesignerPropertyEditorInterface>
#include <QDesignerPropertySheetExtension>
#include <QExtensionManager>

namespace {

QDesignerPropertySheetExtension *sheetOf(const QDesignerFormWindowInterface &form, TComponent *component)
{
    return qt_extension<QDesignerPropertySheetExtension *>(form.core()->extensionManager(), component);
}

} // namespace

void nuvo::showInEditor(const QDesignerFormWindowInterface &form, TComponent &component, const QString &property)
{
    QDesignerPropertyEditorInterface *editor = form.core()->propertyEditor();
    if (editor == nullptr || editor->object() != &component)
        return;
    const QDesignerPropertySheetExtension *sheet = sheetOf(form, &component);
    for (const QString &row : {property, QString::fromLatin1(ModelRow)}) {
        const int index = sheet->indexOf(row);
        if (index >= 0)
            editor->setPropertyValue(row, sheet->property(index), sheet->isChanged(index));
    }
}

nuvo::EditCommand::EditCommand(QDesignerFormWindowInterface &form, const std::vector<PropertyEdit> &edits,
                               const QString &name)
    : form_(&form)
{
    for (const PropertyEdit &edit : edits) {
        const QDesignerPropertySheetExtension *sheet = sheetOf(form, edit.component);
        steps_.push_back({edit, edit.component->property(edit.property.toUtf8().constData()),
                          sheet->isChanged(sheet->indexOf(edit.property))});
    }
    const PropertyEdit &first = edits.front();
    if (!name.isEmpty())
        setText(name);
    else if (edits.size() == 1)
        setText(QStringLiteral("Change %1 of \"%2\"").arg(first.property, first.component->Name()));
    else
        setText(QStringLiteral("Change %1 of %2 components").arg(first.property).arg(edits.size()));
}

void nuvo::EditCommand::redo()
{
    for (const Step &step : steps_)
        apply(step, step.edit.value, true);
}

void nuvo::EditCommand::undo()
{
    for (const Step &step : steps_)
        apply(step, step.before, step.changedBefore);
}

void nuvo::EditCommand::apply(const Step &step, const QVariant &value, bool changed)
{
    TComponent *component = step.edit.component;
    if (form_ == nullptr || component == nullptr)
        return;
    guarded([&] { component->setProperty(step.edit.property.toUtf8().constData(), value); });
    QDesignerPropertySheetExtension *sheet = sheetOf(*form_, component);
    sheet->setChanged(sheet->indexOf(step.edit.property), changed);
    showInEditor(*form_, *component, step.edit.property);
}
