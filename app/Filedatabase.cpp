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
    std::vector<size_t> places;
    for (size_t i = 0; i < survey.columns.size(); ++i) {
        if (survey.columns[i].type == ColumnType::Text &&
            fields.contains(survey.columns[i].name, Qt::CaseInsensitive))
            places.push_back(i);
    }
    reader.rewind();
    reader.next();
    while (!places.empty() && reader.next()) {
        for (const size_t place : places) {
            const auto text = csvText(reader.cell(place), survey.format.encoding);
            double number = 0;
            if (text && !numberFromText(*text, number))
                return QStringLiteral("In \"%1\" the first such cell is in line %2, column \"%3\": \"%4\".")
                    .arg(options_.file, QString::number(reader.line()), survey.columns[place].name, text->left(40));
        }
    }
    return {};
}

} // namespace nuvo
