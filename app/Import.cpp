// SPDX-License-Identifier: MIT
#include "app/Import.h"

#include "app/Csvtable.h"
#include "app/Usage.h"

namespace nuvo {
namespace {

constexpr char importUsage[] = R"(Usage:
  nuvostat import FILE.csv --database DB --table NAME [--replace]
           [--separator CHAR] [--decimal .|,] [--encoding NAME] [--null TEXT]...
  nuvostat import FILE.csv --head N
)";

constexpr char importFooter[] = R"(
The first row names the columns. How the file is written is recognised and told:
its separator (the comma where the header row has one, else the semicolon or
tab, else the vertical bar or blank), its decimal sign (a comma is none where it
parts cells), its encoding (UTF-8, UTF-16, else Windows-1252). --head shows
that, with the reasons, and the options put right what is not understood. Cells
in double quotes may hold anything.

A column becomes whole numbers (64 bits) or floating-point numbers when all its
cells are, and texts otherwise; leading zeros make a text, so that codes like
00123 stay as they are, and so do thousands separators and dates, which are
named with their line. An empty cell or NA is a null, in quotes or not, and so
is what --null tells (--null . --null -999). A row with too few or too many
cells is an error, and so is a column with a name that is there already, or with
values and without a name; only the first may have none and is called "row"
then, as what is in it is where statistics programs wrote the file. So are the
names of rows for which the header row has no cell.

The table is made whole or not at all, in an SQLite file, which is made when it
is not there, or in a PostgreSQL database.

Examples:
  nuvostat import Longley.csv --head 5
  nuvostat import Longley.csv --database demo.db --table Longley
  nuvostat import sales.csv --database postgresql://ann@localhost/shop
           --table Sales --replace)";

QString summary(const ImportOptions &options, const CsvSurvey &survey, const NewTable &table)
{
    const CsvFormat &format = survey.format;
    QStringList columns;
    for (const CsvColumn &column : survey.columns) {
        columns.append(column.name + u' ' + table.typeName(column.type) + intruderText(column));
    }
    QString line = QStringLiteral("Imported %1 into table \"%2\": %3.")
                       .arg(survey.rows == 1 ? QStringLiteral("1 row") : QStringLiteral("%1 rows").arg(survey.rows),
                            options.table, columns.join(QStringLiteral(", ")));
    if (format.separator != ',')
        line += QStringLiteral(" Cells are parted by %1s.").arg(separatorName(format.separator));
    if (format.decimal != '.')
        line += QStringLiteral(" Numbers have a decimal comma.");
    if (format.encoding == CsvEncoding::Windows1252)
        line += QStringLiteral(" The file is no UTF-8 and was read as Windows-1252.");
    else if (format.encoding != CsvEncoding::Utf8)
        line += QStringLiteral(" The file was read as %1.").arg(encodingName(format.encoding));
    return line;
}

} // namespace

ImportCommand::ImportCommand(CLI::App &program)
    : FileSyntax(program, "import", "Make a table from a CSV file", importUsage, importFooter)
{
    addFile("The file to read");
    database_ = addValue("--database", "DB", "SQLite file, or URL of a server");
    table_ = addValue("--table", "NAME", "The table to make");
    replace_ = addFlag("--replace", "Replace a table that is there already");
}

ImportOptions ImportCommand::read() const
{
    const std::optional<CsvOptions> csv = readFile();
    if (!csv)
        throw UsageError(QStringLiteral("FILE.csv is required."));
    if (csv->head)
        return {*csv, {}, {}, false};
    for (const CLI::Option *option : {database_, table_}) {
        if (!isGiven(option))
            throw UsageError(QStringLiteral("%1 is required.").arg(optionName(option)));
    }
    return {*csv, optionText(database_), newTableName(table_), isGiven(replace_)};
}

QString importCsv(const ImportOptions &options)
{
    CsvReader reader(options.csv.file, options.csv.corrections);
    const CsvSurvey survey = surveyCsv(reader);
    NewTable table(options.database, options.table);
    fillTable(table, reader, survey, options.replace);
    table.commit();
    return summary(options, survey, table);
}

} // namespace nuvo
