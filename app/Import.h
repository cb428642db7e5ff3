#pragma once

#include "app/Syntax.h"

namespace nuvo {

struct ImportOptions
{
    QString file;
    QString database;
    QString table;
    bool replace = false;
};

/// The command line of import.
class ImportCommand : public CommandSyntax
{
public:
    explicit ImportCommand(CLI::App &program);
    ImportOptions read() const;

private:
    CLI::Option *file_;
    CLI::Option *database_;
    CLI::Option *table_;
    CLI::Option *replace_;
};

/// Makes a table from a CSV file, whole or not at all: in one transaction, in which an old table is replaced too. An
/// SQLite file that was made for it is removed when the import fails or is interrupted.
/// \return one line that says what was imported.
/// \throws EPlatformError when file or database fail, and when the table is there and is not to be replaced;
/// Interrupted when a signal came.
QString importCsv(const ImportOptions &options);

} // namespace nuvo
