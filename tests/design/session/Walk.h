#pragma once

#include <QJsonObject>

class QDesignerFormEditorInterface;

/// Works in Qt Designer as a user does, with clicks and keys; what was to be seen on the way, by name.
QJsonObject walkThroughDesigner(QDesignerFormEditorInterface &core);
