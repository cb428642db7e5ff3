#include "design/plugin/Formedits.h"

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
    setText(!name.isEmpty()     ? name
            : edits.size() == 1 ? QStringLiteral("Change %1 of \"%2\"").arg(first.property, first.component->Name())
                                : QStringLiteral("Change %1 of %2 components").arg(first.property).arg(edits.size()));
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
    const int index = sheet->indexOf(step.edit.property);
    sheet->setChanged(index, changed);
    QDesignerPropertyEditorInterface *editor = form_->core()->propertyEditor();
    if (editor != nullptr && editor->object() == component)
        editor->setPropertyValue(step.edit.property, sheet->property(index), changed);
}
