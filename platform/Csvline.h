// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QStringList>

namespace nuvo {

/// The cells of a line of a CSV file parted by commas, without an end of line. A cell is in quotes where it would not
/// be read back as it is: with a comma, a quote or a line break in it, or a blank at one of its ends.
NUVO_EXPORT QString csvLine(const QStringList &cells);

} // namespace nuvo
