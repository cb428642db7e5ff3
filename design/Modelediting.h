// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariant>

#include <utility>
#include <vector>

class TComponent;

namespace nuvo {

/// Whether a component has a model to edit.
bool hasModel(const TComponent &component);

/// Lets the user edit the model of a regression component in the model dialog, with the fields of its dataset. The
/// component stays as it is: the properties that are to change are returned with their values, ResponseVarY first;
/// none where nothing was changed. \throws EInvalidCast for a component without a model.
std::vector<std::pair<QString, QVariant>> editModel(TComponent &component);

} // namespace nuvo
