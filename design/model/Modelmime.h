// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QStringList>

#include <optional>

class QMimeData;

/// What is dragged between the parts of the model editor.
namespace nuvo {

/// Fields by their names.
NUVO_EXPORT QMimeData *mimeOfFields(const QStringList &names);
/// The definition at a place.
NUVO_EXPORT QMimeData *mimeOfPlace(int place);
/// Empty where something else is dragged.
NUVO_EXPORT QStringList fieldsIn(const QMimeData *mime);
/// Empty where something else is dragged, or no place of a model.
NUVO_EXPORT std::optional<int> placeIn(const QMimeData *mime);

} // namespace nuvo
