// SPDX-License-Identifier: MIT
#pragma once

#include "workbench/Choicesettings.h"
#include "workbench/Modelstate.h"

#include <QByteArray>

#include <optional>

namespace nuvo {

/// A form with one regression component that has the state, as Qt Designer saves it: UTF-8.
/// \param folder where it is to be saved; a database file in or below it is named from there, so that both can move.
/// \param choice puts a component beside it that chooses so among its control variables
QByteArray formFile(const ModelState &state, const QString &folder, const std::optional<ChoiceSettings> &choice = {});

/// What a form file has of it.
struct OpenedForm
{
    ModelState state;                     ///< of the first regression component
    std::optional<ChoiceSettings> choice; ///< of the first component that chooses
};

/// \throws EPlatformError as nuvo::loadForm(), and where the form has no regression component.
OpenedForm openForm(const QString &file);

} // namespace nuvo
