#include "app/Import.h"

#include "app/Csv.h"
#include "app/Newtable.h"

namespace nuvo {
namespace {

constexpr char importUsage[] = R"(Usage:
  nuvostat import FILE.csv --database DB --table NAME [--replace]
)";

constexpr char importFooter[] = R"(
The first row names the columns. Cells are parted by commas, or by semicolons or
tabs when the first row has these and no comma; cells in double quotes may hold
anything. The text is UTF-8, or Windows-1252 where it is no UTF-8.

A column becomes whole numbers (64 bits) or floating-point numbers (with a
decimal point) when all its cells are, and texts otherwise; leading zeros make a
text, so that codes like 00123 stay as they are. An empty cell or NA is a null,
in quotes or not. A row with too few or too many cells is an error, and so is a
column without a name or with a name that is there already.

The table is made whole or not at all, in an SQLite file, which is made when it
is not there, or in a PostgreSQL database.

Examples:
  nuvostat import Longley.csv --database demo.db --table Longley
  nuvostat import sales.csv --database postgresql://ann@localhost/shop
           --table Sales --replace)";

QVariant cellValue(std::string_view cell, ColumnType type, bool utf8)
{
    if (type == ColumnType::Text) {
        const auto text = csvText(cell, utf8);
        return text ? QVariant(*text) : QVariant();
    }
    if (type == ColumnType::Whole) {
        const auto number = csvWhole(cell);
        return number ? QVariant(*number) : QVariant();
    }
    const auto number = csvFloating(cell);
    return number ? QVariant(*number) : QVariant();
}

QString summary(const ImportOptions &options, const CsvReader &reader, const CsvSurvey &survey, const NewTable &table)
{
    QStringList columns;
    for (const CsvColumn &column : survey.columns) {
        QString told = column.name + u' ' + table.typeName(column.type);
        if (column.intruderLine > 0)
            told += QStringLiteral(" (line %1: \"%2\")").arg(QString::number(column.intruderLine), column.intruder);
        columns.append(told);
    }
    QString line = QStringLiteral("Imported %1 into table \"%2\": %3.")
                       .arg(survey.rows == 1 ? QStringLiteral("1 row") : QStringLiteral("%1 rows").arg(survey.rows),
                            options.table, columns.join(QStringLiteral(", ")));
    if (reader.separator() != ',')
        line += reader.separator() == ';' ? QStringLiteral(" Cells are parted by semicolons.")
                                          : QStringLiteral(" Cells are parted by tabs.");
    if (!survey.utf8)
        line += QStringLiteral(" The file is no UTF-8 and was read as Windows-1252.");
    return line;
}

} // namespace

ImportCommand::ImportCommand(CLI::App &program)
    : CommandSyntax(program, "import", "Make a table from a CSV file", importUsage, importFooter),
      file_(addRequired("FILE.csv", "", "The file to read")), database_(addDatabase()),
      table_(addRequired("--table", "NAME", "The table to make")),
      replace_(addFlag("--replace", "Replace a table that is there already"))
{
}

ImportOptions ImportCommand::read() const
{
    return {optionText(file_), optionText(database_), newTableName(table_), isGiven(replace_)};
}

QString importCsv(const ImportOptions &options)
{
    CsvReader reader(options.file);
    const CsvSurvey survey = surveyCsv(reader);
    std::vector<NewColumn> columns;
    for (const CsvColumn &column : survey.columns)
        columns.push_back({column.name, column.type});

    NewTable table(options.database, options.table);
    table.create(columns, {}, options.replace);
    QVariantList row(qsizetype(columns.size()));
    reader.rewind();
    if (!reader.next() || reader.cellCount() != columns.size())
        failChangedCsv();
    qint64 left = survey.rows;
    while (reader.next()) {
        if (left-- == 0)
            failChangedCsv();
        for (size_t i = 0; i < columns.size(); ++i)
            row[qsizetype(i)] = cellValue(reader.cell(i), columns[i].type, survey.utf8);
        table.add(row);
    }
    if (left > 0)
        failChangedCsv();
    table.commit();
    return summary(options, reader, survey, table);
}

} // namespace nuvo
