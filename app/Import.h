// SPDX-License-Identifier: MIT
#pragma once

#include "app/Filesyntax.h"

namespace nuvo {

struct ImportOptions
{
    CsvOptions csv;
    QString database; ///< empty, as the table, where only the head is to be shown
    QString table;
    bool replace = false;
};

/// The command line of import.
class ImportCommand : public FileSyntax
{
public:
    explicit ImportCommand(CLI::App &program);
    ImportOptions read() const;

private:
    CLI::Option *database_ = nullptr;
    CLI::Option *table_ = nullptr;
    CLI::Option *replace_ = nullptr;
};

/// Makes a table from a CSV file, whole or not at all: in one transaction, in which an old table is replaced too. An
/// SQLite file that was made for it is removed when the import fails or is interrupted.
/// \return one line that says what was imported.
/// \throws EPlatformError when file or database fail, and when the table is there and is not to be replaced;
/// Interrupted when a signal came.
QString importCsv(const ImportOptions &options);

} // namespace nuvo
