// SPDX-License-Identifier: MIT
#include "app/Csvtable.h"

#include "platform/Messages.h"
#include "present/Textreport.h"

#include <QStringBuilder>

#include <algorithm>

namespace nuvo {
namespace {

QVariant cellValue(std::string_view cell, ColumnType type, const CsvFormat &format)
{
    if (type == ColumnType::Text) {
        const auto text = csvText(cell, format.encoding);
        return text ? QVariant(*text) : QVariant();
    }
    if (type == ColumnType::Whole) {
        const auto number = csvWhole(cell);
        return number ? QVariant(*number) : QVariant();
    }
    const auto number = csvFloating(cell, format.decimal);
    return number ? QVariant(*number) : QVariant();
}

QString kindName(ColumnType type)
{
    switch (type) {
    case ColumnType::Whole:
        return QStringLiteral("whole numbers");
    case ColumnType::Floating:
        return QStringLiteral("floating-point numbers");
    case ColumnType::Text:
        break;
    }
    return QStringLiteral("texts");
}

/// Lines of cells, columns two blanks apart.
class Grid
{
public:
    void add(QStringList cells) { rows_.push_back(std::move(cells)); }
    /// \param right the columns whose cells stand at the right
    QString text(const std::vector<bool> &right) const
    {
        std::vector<int> widths;
        for (const QStringList &row : rows_) {
            widths.resize(std::max(widths.size(), size_t(row.size())));
            for (qsizetype i = 0; i < row.size(); ++i)
                widths[size_t(i)] = std::max(widths[size_t(i)], displayWidth(row[i]));
        }
        QString text;
        for (const QStringList &row : rows_) {
            QString line;
            for (qsizetype i = 0; i < row.size(); ++i) {
                const QString blanks(widths[size_t(i)] - displayWidth(row[i]), u' ');
                const bool atRight = size_t(i) < right.size() && right[size_t(i)];
                line += (i == 0 ? QString() : QStringLiteral("  ")) + (atRight ? blanks + row[i] : row[i] + blanks);
            }
            while (line.endsWith(u' '))
                line.chop(1);
            text += line + u'\n';
        }
        return text;
    }

private:
    std::vector<QStringList> rows_;
};

QString leftOutText(size_t count)
{
    if (count == 0)
        return {};
    return count == 1 ? QStringLiteral("; another one has neither name nor values")
                      : QStringLiteral("; %1 others have neither names nor values").arg(count);
}

/// Whether the header row looks like a record.
bool namedByNumbers(const CsvSurvey &survey)
{
    return std::all_of(survey.columns.begin(), survey.columns.end(), [&](const CsvColumn &column) {
        const CellKind kind = cellKindOf(column.name.toStdString(), survey.format.decimal);
        return kind == CellKind::Whole || kind == CellKind::Floating;
    });
}

/// A cell as it is shown: on one line, and not longer than that.
QString shown(const QString &cell)
{
    constexpr qsizetype longest = 30;
    const QString text = withoutControls(cell);
    return text.size() > longest ? text.left(longest - 1) + QChar(0x2026) : text;
}

} // namespace

void fillTable(NewTable &table, CsvReader &reader, const CsvSurvey &survey, bool replace)
{
    std::vector<NewColumn> columns;
    for (const CsvColumn &column : survey.columns)
        columns.push_back({column.name, column.type});
    table.create(columns, {}, replace);
    QVariantList row(qsizetype(columns.size()));
    reader.rewind();
    if (!reader.next() || reader.cellCount() != columns.size() + survey.leftOut)
        failChangedCsv();
    qint64 left = survey.rows;
    while (reader.next()) {
        if (left-- == 0)
            failChangedCsv();
        for (size_t i = 0; i < columns.size(); ++i)
            row[qsizetype(i)] = cellValue(reader.cell(survey.columns[i].cell), columns[i].type, survey.format);
        table.add(row);
    }
    if (left > 0)
        failChangedCsv();
}

QString intruderText(const CsvColumn &column)
{
    if (column.intruderLine == 0)
        return {};
    const QString like = column.intruderLike.isEmpty() ? QString() : u' ' + column.intruderLike;
    return QStringLiteral(" (line %1: \"%2\"%3)").arg(QString::number(column.intruderLine), column.intruder, like);
}

QString headOf(const CsvOptions &options)
{
    CsvReader reader(options.file, options.corrections);
    const CsvSurvey survey = surveyCsv(reader);
    const int records = options.head.value_or(0);
    const CsvFormat &format = survey.format;
    QString text =
        QStringLiteral("%1: %2 of %3%4.\n\n")
            .arg(withoutControls(reader.fileName()),
                 survey.rows == 1 ? QStringLiteral("1 record") : QStringLiteral("%1 records").arg(survey.rows),
                 survey.columns.size() == 1 ? QStringLiteral("1 column")
                                            : QStringLiteral("%1 columns").arg(survey.columns.size()),
                 leftOutText(survey.leftOut));
    const auto why = [](const QString &reason) { return reason.isEmpty() ? QString() : u": " % reason; };
    Grid how;
    how.add({QStringLiteral("Encoding"), encodingName(format.encoding) + why(survey.reasons.encoding)});
    how.add({QStringLiteral("Separator"), separatorName(format.separator) + why(survey.reasons.separator)});
    how.add(
        {QStringLiteral("Decimal sign"), (format.decimal == ',' ? QStringLiteral("comma") : QStringLiteral("point")) +
                                             why(withoutControls(survey.reasons.decimal))});
    if (namedByNumbers(survey))
        how.add({QStringLiteral("Header row"), QStringLiteral("numbers: perhaps the names are missing")});
    text += how.text({}) + u'\n';

    Grid columns;
    columns.add({QStringLiteral("Column"), QStringLiteral("Kind")});
    for (const CsvColumn &column : survey.columns)
        columns.add({shown(column.name), withoutControls(kindName(column.type) + intruderText(column))});
    text += columns.text({});
    if (records == 0)
        return text;

    Grid head;
    QStringList names;
    std::vector<bool> right;
    for (const CsvColumn &column : survey.columns) {
        names.append(shown(column.name));
        right.push_back(column.type != ColumnType::Text);
    }
    head.add(names);
    reader.rewind();
    reader.next();
    for (int row = 0; row < records && reader.next(); ++row) {
        QStringList cells;
        for (const CsvColumn &column : survey.columns) {
            const auto cell = csvText(reader.cell(column.cell).substr(0, 200), format.encoding);
            cells.append(cell ? shown(cell->trimmed()) : QString());
        }
        head.add(cells);
    }
    return text + u'\n' + head.text(right);
}

} // namespace nuvo
