// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QString>

class QWidget;

namespace nuvo {

// Where the file of a relative DatabaseName lies. A form and its database move together, so it is looked for beside
// the form first, then in the working folder; a file that is in both places is the one beside the form. The form's
// folder is known in a form designer, for forms that nuvostat runs, and where a program says it; a form that was
// compiled into a program has none, so that there the working folder alone counts. Registered connections, addresses
// of servers and absolute paths are what they are.

/// Says in which folder the file of a form lies, for all components below the widget; empty for none. For a form that
/// a QUiLoader has made: setFormFolder(*form, loader.workingDirectory().absolutePath()).
NUVO_EXPORT void setFormFolder(QWidget &form, const QString &folder);

/// What setFormFolder() said of the nearest ancestor that it was called for, or of the widget itself; empty for none.
NUVO_EXPORT QString formFolder(const QWidget &widget);

/// What a DatabaseName leads to: the path of the file beside the form where there is one, else the name itself.
/// \param folder the form's; empty for none.
NUVO_EXPORT QString databasePlace(const QString &databaseName, const QString &folder);

/// The path from a folder to a file that lies in it or below it, however links lead there; any other path as it is.
NUVO_EXPORT QString pathFromForm(const QString &path, const QString &folder);

} // namespace nuvo
