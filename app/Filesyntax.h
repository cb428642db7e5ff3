// SPDX-License-Identifier: MIT
#pragma once

#include "app/Csvformat.h"
#include "app/Syntax.h"

namespace nuvo {

/// A CSV file on a command line.
struct CsvOptions
{
    QString file;
    CsvCorrections corrections;
    std::optional<int> head; ///< show what is understood and so many records, and do nothing else
};

/// The options of every command that reads a CSV file.
class FileSyntax : public CommandSyntax
{
protected:
    using CommandSyntax::CommandSyntax;

    /// FILE.csv, the argument at this place, --separator, --decimal, --encoding, --null and --head.
    void addFile(const char *help, const char *group = "CSV file");
    bool hasFile() const { return isGiven(file_); }
    /// \throws UsageError also for the others without a file.
    std::optional<CsvOptions> readFile() const;

private:
    CLI::Option *file_ = nullptr;
    CLI::Option *separator_ = nullptr;
    CLI::Option *decimal_ = nullptr;
    CLI::Option *encoding_ = nullptr;
    CLI::Option *nulls_ = nullptr;
    CLI::Option *head_ = nullptr;
};

} // namespace nuvo
