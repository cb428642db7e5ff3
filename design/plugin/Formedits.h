// SPDX-License-Identifier: MIT
#pragma once

#include <QDesignerFormWindowInterface>
#include <QPointer>
#include <QString>
#include <QUndoCommand>
#include <QVariant>

#include <vector>

class TComponent;

namespace nuvo {

/// One property of one component, as it is to be.
struct PropertyEdit
{
    QPointer<TComponent> component;
    QString property;
    QVariant value;
};

/// Shows the value that a property has now, where the property editor shows that component.
void showInEditor(const QDesignerFormWindowInterface &form, TComponent &component, const QString &property);

/// Changes properties of a form's components as one step of the form's undo stack. Designer's own command would
/// forget that a text is not for translation.
class EditCommand : public QUndoCommand
{
public:
    /// \param name of the step; empty for one that names what it changes.
    EditCommand(QDesignerFormWindowInterface &form, const std::vector<PropertyEdit> &edits, const QString &name = {});

    void redo() override;
    void undo() override;

private:
    struct Step
    {
        PropertyEdit edit;
        QVariant before;
        bool changedBefore;
    };
    void apply(const Step &step, const QVariant &value, bool changed);

    QPointer<QDesignerFormWindowInterface> form_;
    std::vector<Step> steps_;
};

} // namespace nuvo
