#pragma once

#include "platform/Export.h"

#include <QString>
#include <QStringList>

class QWidget;

namespace nuvo {

/// Asks where to save. `kinds` are file dialog filters; the ending of the chosen one is added to a name without one.
/// Empty when nobody chose.
QString askFileName(QWidget *parent, const QString &title, const QStringList &kinds);

/// Asks for a file that is there, beginning with `current` where that names one. Empty when nobody chose.
NUVO_EXPORT QString askExistingFile(QWidget *parent, const QString &title, const QStringList &kinds,
                                    const QString &current);

} // namespace nuvo
