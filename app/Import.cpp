#include "app/Import.h"

#include "app/Csv.h"
#include "app/Newtable.h"

namespace nuvo {
namespace {

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
    for (reader.rewind(), reader.next(); reader.next();) {
        for (size_t i = 0; i < columns.size(); ++i)
            row[qsizetype(i)] = cellValue(reader.cell(i), columns[i].type, survey.utf8);
        table.add(row);
    }
    table.commit();
    return summary(options, reader, survey, table);
}

} // namespace nuvo
