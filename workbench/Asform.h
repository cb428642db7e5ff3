#pragma once

#include "workbench/Modelstate.h"

#include <QByteArray>

namespace nuvo {

/// A form with one regression component that has the state, as Qt Designer saves it: UTF-8.
/// \param folder where it is to be saved; a database file in or below it is named from there, so that both can move.
QByteArray formFile(const ModelState &state, const QString &folder);

/// The state of the first regression component of a form file. \throws EPlatformError as nuvo::loadForm(), and where
/// the form has none.
ModelState stateOfForm(const QString &file);

} // namespace nuvo
