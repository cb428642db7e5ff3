// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QString>

/// Numbers of definitions on screen. They are shown and typed with the locale's decimal sign; a point is read as
/// well. Definitions hold a point.
namespace nuvo {

/// A typed number. \throws EConvertError, also for a text that could be meant with digit groups.
NUVO_EXPORT double typedNumber(const QString &text);
/// A typed number as a definition holds it; what is none stays as it is but for its commas.
NUVO_EXPORT QString storedNumber(const QString &typed);
/// A definition's number as it is shown; what is none stays as it is.
NUVO_EXPORT QString shownNumber(const QString &stored);

} // namespace nuvo
