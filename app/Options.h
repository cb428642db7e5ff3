#pragma once

#include "app/Terms.h"

#include <QList>
#include <QString>

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace nuvo {

enum class OutputFormat { Text, Json };

struct FitOptions
{
    QString database;
    std::optional<QString> table; ///< exactly one of table and sql
    std::optional<QString> sql;
    QString filter;
    QString order;
    Term response;
    QList<Term> controls; ///< in the order given; at most ten
    QString description;
    QString message;
    bool warnings = false;
    bool matrices = false;
    bool progress = false;
    OutputFormat format = OutputFormat::Text;
};

struct ImportOptions
{
    QString file;
    QString database;
    QString table;
    bool replace = false;
};

/// The most denominators that a table of F quantiles takes.
inline constexpr int MaxDenominators = 1000000;

struct FTableOptions
{
    QString database;
    QString table;
    int denominators = 2500; ///< 1 to MaxDenominators
    bool replace = false;
};

/// A text for standard output: help or the version.
struct PrintOptions
{
    QString text;
};

using Command = std::variant<PrintOptions, FitOptions, ImportOptions, FTableOptions>;

/// Reads a command line, the program's name left out. \throws UsageError, whose sentence ends in a hint at --help.
Command parseCommandLine(std::vector<std::string> arguments);

} // namespace nuvo
