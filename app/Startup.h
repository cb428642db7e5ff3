// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace nuvo {

/// Makes the start of a command on this database cheaper; whatever does not work here does no harm.
void prepareDriver(const QString &database);

} // namespace nuvo
