// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>

class QDesignerFormEditorInterface;

// Each works in Qt Designer as a user does, with clicks and keys, and tells what was to be seen on the way, by name.

/// From an empty form to a defined and saved one, and around it.
QJsonObject walkThroughDesigner(QDesignerFormEditorInterface &core);
/// The same with the model dialog and the SQL editor, on a form of their own.
QJsonObject walkThroughModels(QDesignerFormEditorInterface &core);

/// What the rows of the property editor and the context menus can do with the form that the first walk has saved.
QJsonObject walkThroughRows(QDesignerFormEditorInterface &core);

/// What can be ended that takes long, on that form.
QJsonObject walkThroughLongFits(QDesignerFormEditorInterface &core);

/// What docs/designer.md says, on a form of its own.
QJsonObject walkThroughPage(QDesignerFormEditorInterface &core);

/// A form that another program has saved: what is on it, and what becomes of it when it is changed and saved.
QJsonObject lookAtOpenedForm(QDesignerFormEditorInterface &core);

/// Looks at the form's properties, then at a component's, and clicks on the right end of a definition's row, where an
/// arrow that resets it would be; undoes; so many times. Each round is told on standard error before it begins.
QJsonObject resetRows(QDesignerFormEditorInterface &core, int rounds);
