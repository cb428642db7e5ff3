// SPDX-License-Identifier: MIT
#pragma once

#include "app/Filesyntax.h"
#include "app/Terms.h"
#include "engine/Regression.h"

#include <QList>

namespace nuvo {

/// The data and the variables of a regression, and what every command with one is asked.
struct ModelOptions
{
    std::optional<CsvOptions> csv; ///< in place of database, table and sql
    QString database;
    std::optional<QString> table; ///< exactly one of table and sql
    std::optional<QString> sql;
    QString filter;
    QString order;
    Term response;
    QList<Term> controls; ///< in the order given; at most ten
    QString description;
    RecordUse records = RecordUse::First;
    bool progress = false;
    OutputFormat format = OutputFormat::Text;
};

/// The options of every command with a regression.
class ModelSyntax : public FileSyntax
{
protected:
    /// \param footer follows what a TERM is
    ModelSyntax(CLI::App &program, const char *name, const char *description, const char *usage, const char *footer);

    void addModel();
    /// With CsvOptions::head the data alone.
    void readModel(ModelOptions &options) const;

private:
    void readData(ModelOptions &options) const;

    CLI::Option *database_ = nullptr;
    CLI::Option *table_ = nullptr;
    CLI::Option *filter_ = nullptr;
    CLI::Option *order_ = nullptr;
    CLI::Option *sql_ = nullptr;
    CLI::Option *response_ = nullptr;
    CLI::Option *controls_ = nullptr;
    CLI::Option *description_ = nullptr;
    CLI::Option *records_ = nullptr;
    CLI::Option *progress_ = nullptr;
    CLI::Option *format_ = nullptr;
};

} // namespace nuvo
