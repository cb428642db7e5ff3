// SPDX-License-Identifier: MIT
#include "app/Filedatabase.h"

#include "app/Csvtable.h"
#include "platform/Numbervalue.h"

#include <QFileInfo>

namespace nuvo {
namespace {

/// SQLite keeps names that begin so to itself.
QString tableNameOf(const QString &file)
{
    const QString name = QFileInfo(file).fileName();
    return name.startsWith(QStringLiteral("sqlite_"), Qt::CaseInsensitive) ? u'_' + name : name;
}

/// What can be done about a cell that is no number, as a sentence.
QString advice(const CsvColumn &column, const QString &cell, const CsvSurvey &survey)
{
    const QString like = writtenLike(cell, QLatin1Char(survey.format.decimal));
    if (like.contains(QStringLiteral("thousands")))
        return QStringLiteral("Write the numbers without them.");
    if (like.contains(QStringLiteral("decimal")))
        return QStringLiteral("--decimal tells the decimal sign of the file.");
    if (like.contains(QStringLiteral("percentage")))
        return QStringLiteral("Write the numbers without the sign.");
    if (!like.isEmpty())
        return QStringLiteral("A number can stand for it, such as the days or hours since the first.");
    if (column.intruderLine > 0)
        return QStringLiteral("Correct it, or, where it stands for a missing value, --null \"%1\".").arg(cell);
    return QStringLiteral("A category takes part as 0 and 1: \"nuvostat import\" makes a table, of which --sql makes "
                          "a column such as \"%1\" = '%2' AS indicator.")
        .arg(QString(column.name).replace(u'"', QStringLiteral("\"\"")),
             QString(cell).replace(u'\'', QStringLiteral("''")));
}

} // namespace

FileDatabase::FileDatabase(const CsvOptions &options) : options_(options), table_(tableNameOf(options.file))
{
    CsvReader reader(options.file, options.corrections);
    const CsvSurvey survey = surveyCsv(reader);
    NewTable table(database(), table_);
    fillTable(table, reader, survey, false);
    table.commit();
}

QString FileDatabase::firstWithoutNumber(const QStringList &fields) const
{
    CsvReader reader(options_.file, options_.corrections);
    const CsvSurvey survey = surveyCsv(reader);
    std::vector<CsvColumn> columns;
    for (const CsvColumn &column : survey.columns) {
        if (column.type == ColumnType::Text && fields.contains(column.name, Qt::CaseInsensitive))
            columns.push_back(column);
    }
    reader.rewind();
    reader.next();
    while (!columns.empty() && reader.next()) {
        for (const CsvColumn &column : columns) {
            const auto text = csvText(reader.cell(column.cell), survey.format.encoding);
            double number = 0;
            if (text && !numberFromText(*text, number))
                return QStringLiteral("In \"%1\" the first such cell is in line %2, column \"%3\": \"%4\". ")
                           .arg(options_.file, QString::number(reader.line()), column.name, text->left(40)) +
                       advice(column, text->left(40).trimmed(), survey);
        }
    }
    return {};
}

} // namespace nuvo
