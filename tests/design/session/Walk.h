#pragma once

#include <QJsonObject>

class QDesignerFormEditorInterface;

/// Works in Qt Designer as a user does, with clicks and keys; what was to be seen on the way, by name.
QJsonObject walkThroughDesigner(QDesignerFormEditorInterface &core);
/// The same with the model dialog and the SQL editor, on a form of their own.
QJsonObject walkThroughModels(QDesignerFormEditorInterface &core);
