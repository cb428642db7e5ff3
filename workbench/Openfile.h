// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace nuvo {

/// What a file is by its first bytes and its name. \throws EPlatformError when it cannot be read.
enum class FileKind { Database, Form, Csv };
FileKind kindOf(const QString &file);

/// A name for a table of a file's records in a database that may not be there yet: the file's base name in letters,
/// digits and '_', and where that is taken "name_2", …  \throws EPlatformError when the database cannot be read.
QString newTableFor(const QString &file, const QString &database);

/// Copies a database file, whole or not at all. \throws EPlatformError
void saveCopy(const QString &database, const QString &file);

} // namespace nuvo
