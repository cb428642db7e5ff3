#pragma once

#include "app/Terms.h"
#include "select/Cvmain.h"

#include <QList>
#include <QString>

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace nuvo {

enum class OutputFormat { Text, Json };

/// The data and the variables of a regression, and what every command with one is asked.
struct ModelOptions
{
    QString database;
    std::optional<QString> table; ///< exactly one of table and sql
    std::optional<QString> sql;
    QString filter;
    QString order;
    Term response;
    QList<Term> controls; ///< in the order given; at most ten
    QString description;
    bool progress = false;
    OutputFormat format = OutputFormat::Text;
};

struct FitOptions : ModelOptions
{
    QString message;
    bool warnings = false;
    bool matrices = false;
    QString saveReport; ///< a file; empty for none
    QString savePlots;  ///< a directory; empty for none
    bool show = false;
};

/// What was not given stays as the component has it.
struct SelectOptions : ModelOptions
{
    enum class Method { Optimal, Stepwise, Backward, Forward };
    Method method = Method::Optimal;
    std::optional<TOptimizationType> criterion;
    std::optional<int> models;
    std::optional<double> f; ///< of backward and forward
    std::optional<double> fIn;
    std::optional<double> fOut;
    std::optional<QString> fPercent;
    std::optional<QString> fTable; ///< a table of the same database
};

struct RunOptions
{
    QString form; ///< a file
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

using Command = std::variant<PrintOptions, FitOptions, SelectOptions, RunOptions, ImportOptions, FTableOptions>;

/// Reads a command line, the program's name left out. \throws UsageError, whose sentence ends in a hint at --help.
Command parseCommandLine(std::vector<std::string> arguments);

} // namespace nuvo
