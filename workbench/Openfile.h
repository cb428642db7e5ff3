#pragma once

#include "workbench/Modelstate.h"

#include <optional>

namespace nuvo {

/// What a file is by its name and its first bytes.
enum class FileKind { Database, Form, Csv };
FileKind kindOf(const QString &file);

/// The state that a form has, or that of a CSV file, which becomes a table of the database `into` (made when it is
/// not there; a table of that name gives way to "name_2", …). Nothing for a database: which of its tables is meant is
/// the person's choice. \throws EPlatformError with one sentence.
std::optional<ModelState> openedFile(const QString &file, const QString &into);

/// Copies a database file, whole or not at all. \throws EPlatformError
void saveCopy(const QString &database, const QString &file);

/// A name for a table of a file's records: its base name, in letters, digits and '_'.
QString tableNameFor(const QString &file);

} // namespace nuvo
