// SPDX-License-Identifier: MIT
#include "app/Modeloptions.h"

#include "app/Usage.h"
#include "engine/kernel/Maxdata.h"

namespace nuvo {
namespace {

constexpr char termHelp[] = R"(
TERM is one of these; F and G are fields, K and N are numbers:
  response  control   means
  F         F         the field's value
  Ln(F)     Ln(F)     natural logarithm
  1/(F)     1/F       inverse
            F^1/2     square root
            F^K       power
  F/N       F/N       divided by the number N
            F*G       product of two fields
            F/G       quotient of two fields
The K of a power is a whole number from 1; an odd one gives the power of the
absolute value with a minus sign, so use 1/F and F^1/2 where these are meant.
A field's name that holds an operator or is a number stands in double quotes, a
quote inside doubled: "GNP/cap"^2, "1999". The --control options become
ControlVar01, ControlVar02, ... in the order given; an empty one (--control "")
leaves its position undefined.
)";

} // namespace

ModelSyntax::ModelSyntax(CLI::App &program, const char *name, const char *description, const char *usage,
                         const char *footer)
    : FileSyntax(program, name, description, usage, std::string(termHelp) + footer)
{
}

void ModelSyntax::addModel()
{
    addFile("A CSV file, in place of a database", "DATA");
    database_ = addValue("--database", "DB", "SQLite file, or URL of a server", "DATA");
    table_ = addValue("--table", "NAME", "A table or view of the database", "DATA");
    filter_ = addValue("--filter", "EXPRESSION", "An SQL condition on the table's records", "DATA");
    order_ = addValue("--order", "FIELD[,FIELD...]", "The order of the table's records", "DATA");
    sql_ = addValue("--sql", "TEXT", "In place of a table: SELECT ...", "DATA");
    response_ = addValue("--response", "TERM", "The response variable Y", "VARIABLES");
    controls_ = addValues("--control", "TERM", "A control variable X; up to ten of them", "VARIABLES");
    description_ = addValue("--description", "TEXT", "What it is about, for the report's head");
    records_ = addValue("--records", "first|all|server", "Which to use: the first 2500 unless told", "DATA");
    progress_ = addFlag("--progress", "Draw a progress bar on a terminal");
    format_ = addFormat();
}

void ModelSyntax::readData(ModelOptions &options) const
{
    options.csv = readFile();
    options.database = optionText(database_);
    options.table = optionalText(table_);
    options.sql = optionalText(sql_);
    if (options.csv && (isGiven(database_) || options.table || options.sql))
        throw UsageError(
            QStringLiteral("\"%1\" is taken for a CSV file, which excludes --database, --table and --sql.%2")
                .arg(options.csv->file, options.sql && !isGiven(database_)
                                            ? QStringLiteral(" \"nuvostat import\" makes a table of it that a "
                                                             "statement reads.")
                                            : QString()));
    if (options.csv)
        return;
    if (!isGiven(database_))
        throw UsageError(QStringLiteral("--database is required, or a CSV file."));
    if (options.table && options.sql)
        throw UsageError(QStringLiteral("--table and --sql exclude each other."));
    if (!options.table && !options.sql)
        throw UsageError(QStringLiteral("--table or --sql is required."));
    if (options.sql && (isGiven(filter_) || isGiven(order_)))
        throw UsageError(
            QStringLiteral("--filter and --order belong to --table; a statement has its own WHERE and ORDER BY."));
}

void ModelSyntax::readModel(ModelOptions &options) const
{
    readData(options);
    options.format = outputFormat(format_);
    if (options.csv && options.csv->head) {
        if (options.format != OutputFormat::Text)
            throw UsageError(QStringLiteral("--head is a text; --format belongs to a fit."));
        return;
    }
    if (!isGiven(response_))
        throw UsageError(QStringLiteral("--response is required."));
    options.filter = optionText(filter_);
    options.order = optionText(order_);
    options.response = parseResponse(optionText(response_));
    const QStringList controls = optionTexts(controls_);
    if (controls.size() > MaxControls)
        throw UsageError(QStringLiteral("--control is there %1 times; a regression has up to %2 control variables.")
                             .arg(controls.size())
                             .arg(MaxControls));
    for (const QString &control : controls)
        options.controls.append(parseControl(control));
    options.description = optionText(description_);
    if (isGiven(records_))
        options.records = oneOf<RecordUse>(
            records_, {{"first", RecordUse::First}, {"all", RecordUse::All}, {"server", RecordUse::Server}});
    options.progress = isGiven(progress_);
}

} // namespace nuvo
