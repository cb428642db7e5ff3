// SPDX-License-Identifier: MIT
#pragma once

#include "app/Filesyntax.h"

class QWidget;

namespace nuvo {

/// Makes a table of a CSV file's records, in a thread: meanwhile the window lives and shows how far that is, and
/// Escape ends it. Whole or not at all.
/// \return whether it was not ended. \throws EPlatformError with one sentence.
bool importInBackground(QWidget *parent, const CsvOptions &csv, const QString &database, const QString &table);

} // namespace nuvo
