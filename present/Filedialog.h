// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QString>
#include <QStringList>

class QWidget;

namespace nuvo {

/// Asks where to save. `kinds` are file dialog filters; the ending of the chosen one is added to a name without one.
/// A file that is there is replaced only after another question. Empty when nobody chose.
/// \param proposed a name without its ending that stands there first, with or without a folder
NUVO_EXPORT QString askFileName(QWidget *parent, const QString &title, const QStringList &kinds,
                                const QString &proposed = {});

/// Asks for a file that is there, beginning with `current` where that names one. Empty when nobody chose.
NUVO_EXPORT QString askExistingFile(QWidget *parent, const QString &title, const QStringList &kinds,
                                    const QString &current);

} // namespace nuvo
