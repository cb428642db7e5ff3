// SPDX-License-Identifier: MIT
#include "platform/Recordpages.h"

#include "platform/Errors.h"
#include "platform/Readerconnection.h"
#include "platform/Records.h"
#include "platform/Resultcolumns.h"
#include "platform/Tableorder.h"

#include <QSqlError>

#include <algorithm>
#include <exception>
#include <map>

namespace nuvo {

namespace {

constexpr size_t mostAnchors = 1000;
constexpr int firstRows = 64; // that tell a dataset the kinds of columns without a type

} // namespace

class RecordPages::Private
{
public:
    ScanSource source;
    QString caption;
    ReaderConnection connection;
    TableOrder order;
    std::vector<Field> fields;
    std::optional<RowLayout> layout;        // of values()
    std::map<qint64, QVariantList> anchors; // keys of rows that were read
    qint64 counted = -1;
    int sorted = -1;                                // field
    std::vector<std::pair<QString, bool>> sortedBy; // expressions, and whether downwards
    qsizetype longest = LongestText;

    void checkCancelled() const { connection.checkCancelled(caption); }
    void execute(const QString &sql);
    QStringList texts(const RowSource &row) const;
    QVariantList stored(const RowSource &row) const;
    QVariantList values(const RowSource &row) const;
    template <class Row>
    using RowOf = Row (Private::*)(const RowSource &row) const;
    template <class Row>
    std::vector<Row> read(const Select &select, qint64 first, int most, bool backwards, RowOf<Row> rowOf);
    template <class Row>
    std::vector<Row> ownOrder(qint64 first, int most, RowOf<Row> rowOf);
    std::unique_ptr<RowSource> figures(const QString &sql) const;
    template <class Figure>
    std::optional<Figure> ask(const QString &sql, Figure (*figureOf)(const RowSource &row));
    std::vector<QStringList> sortedRows(qint64 first, int most);
    std::vector<QStringList> sortedAnew(qint64 first, int most);
    QString sorting(bool backwards = false) const;
    void sortSqlite(const QString &by);
    void sortPostgres(const QString &by);
    void endSort();
    QString where() const;
};

void RecordPages::Private::execute(const QString &sql)
{
    const AnswerLimit::Wait wait = connection.waiting();
    QSqlQuery query = connection.newQuery();
    if (!query.exec(sql))
        connection.fail(query.lastError(), caption);
}

QString RecordPages::Private::where() const
{
    const QString condition = order.condition(connection.dialect());
    return condition.isEmpty() ? QString() : QStringLiteral(" WHERE ") + condition;
}

QStringList RecordPages::Private::texts(const RowSource &row) const
{
    QStringList cells;
    for (size_t column = 0; column < fields.size(); ++column) {
        const QVariant value = row.value(int(column));
        // Of a cell of a hundred megabytes a view needs no copy.
        if (value.typeId() == QMetaType::QString && value.toString().size() > longest)
            cells.append(value.toString().left(longest) + QChar(0x2026));
        else if (value.typeId() == QMetaType::QByteArray && value.toByteArray().size() > longest)
            cells.append(textFromValue(value.toByteArray().left(longest)) + QChar(0x2026));
        else
            cells.append(textFromValue(value));
    }
    return cells;
}

QVariantList RecordPages::Private::stored(const RowSource &row) const
{
    QVariantList result;
    for (size_t column = 0; column < fields.size(); ++column)
        result.append(row.value(int(column)));
    return result;
}

QVariantList RecordPages::Private::values(const RowSource &row) const
{
    Block block(*layout, 0);
    block.append([&row](int column) { return row.value(column); });
    QVariantList result;
    for (size_t column = 0; column < fields.size(); ++column)
        result.append(block.value(0, int(column)));
    return result;
}

template <class Row>
std::vector<Row> RecordPages::Private::read(const Select &select, qint64 first, int most, bool backwards,
                                            RowOf<Row> rowOf)
{
    std::vector<Row> rows;
    const std::unique_ptr<RowSource> statement = RowSource::open(connection, select, caption);
    QVariantList firstKey;
    QVariantList lastKey;
    while (int(rows.size()) < most && statement->next()) {
        rows.push_back((this->*rowOf)(*statement));
        if (select.keyColumns.empty())
            continue;
        lastKey.clear();
        for (const int column : select.keyColumns)
            lastKey.append(statement->value(column));
        if (firstKey.isEmpty())
            firstKey = lastKey;
    }
    if (backwards) {
        std::reverse(rows.begin(), rows.end());
        std::swap(firstKey, lastKey);
    }
    if (!lastKey.isEmpty()) {
        if (anchors.size() > mostAnchors)
            anchors.clear();
        anchors.emplace(first, firstKey);
        anchors.emplace(first + qint64(rows.size()) - 1, lastKey);
    }
    return rows;
}

/// From the nearest place whose key is known, the beginning and the end among them.
template <class Row>
std::vector<Row> RecordPages::Private::ownOrder(qint64 first, int most, RowOf<Row> rowOf)
{
    ReadPosition position{first, most, 0, {}};
    const auto above = anchors.lower_bound(first); // the first one not before
    if (above != anchors.begin() && !order.keyColumns.empty()) {
        const auto &[row, key] = *std::prev(above);
        position.afterRow = row + 1;
        position.after = key;
    }
    const qint64 end = counted < 0 ? first + most : std::min(first + most, counted);
    if (counted >= 0 && end > first && order.isReversible(connection.dialect())) {
        qint64 behind = counted - end;
        QVariantList before;
        const auto known = anchors.lower_bound(end);
        if (known != anchors.end() && known->first - end < behind) {
            behind = known->first - end;
            before = known->second;
        }
        if (behind < first - position.afterRow)
            return read(order.selectBackwards(connection, before, end - first, behind), first, int(end - first), true,
                        rowOf);
    }
    return read(order.select(connection, position), first, most, false, rowOf);
}

std::vector<QStringList> RecordPages::Private::sortedRows(qint64 first, int most)
{
    std::vector<QStringList> rows;
    Select select;
    if (connection.dialect() == Dialect::Postgres) {
        execute(QStringLiteral("MOVE ABSOLUTE %1 FROM nuvo_sorted").arg(first));
        select.sql = QStringLiteral("FETCH FORWARD %1 FROM nuvo_sorted").arg(most);
        const AnswerLimit::Wait wait = connection.waiting();
        QSqlQuery query(connection.database());
        query.setNumericalPrecisionPolicy(QSql::HighPrecision);
        if (!query.exec(select.sql))
            connection.fail(query.lastError(), caption);
        while (query.next()) {
            QStringList cells;
            for (size_t column = 0; column < fields.size(); ++column)
                cells.append(textFromValue(query.value(int(column))).left(longest));
            rows.push_back(cells);
        }
        return rows;
    }
    if (connection.dialect() != Dialect::Sqlite)
        return sortedAnew(first, most);
    select.sql =
        order.rowNumber.isEmpty()
            ? QStringLiteral("SELECT * FROM temp.\"nuvo sorted\" WHERE rowid > %1 ORDER BY rowid LIMIT %2")
                  .arg(first)
                  .arg(most)
            : QStringLiteral("SELECT %1 FROM temp.\"nuvo sorted\" CROSS JOIN main.%2 ON %3 = \"nuvo sorted\".k "
                             "WHERE \"nuvo sorted\".rowid > %4 ORDER BY \"nuvo sorted\".rowid LIMIT %5")
                  .arg(order.expressions.join(u','), order.source, order.rowNumber)
                  .arg(first)
                  .arg(most);
    return read(select, first, most, false, &Private::texts);
}

/// Of a database that keeps no sorted rows for us, from the nearer end.
std::vector<QStringList> RecordPages::Private::sortedAnew(qint64 first, int most)
{
    const bool limited = connection.dialect() == Dialect::Mysql; // others have other words for it
    const qint64 end = counted < 0 ? first + most : std::min(first + most, counted);
    const bool backwards = limited && counted >= 0 && counted - end < first;
    Select select;
    select.sql = QStringLiteral("SELECT %1 FROM %2%3 ORDER BY %4")
                     .arg(order.expressions.join(u','), order.source, where(), sorting(backwards));
    if (limited)
        select.sql += QStringLiteral(" LIMIT %1 OFFSET %2").arg(end - first).arg(backwards ? counted - end : first);
    else
        select.skip = first;
    return end > first ? read(select, first, int(end - first), backwards, &Private::texts)
                       : std::vector<QStringList>();
}

QString RecordPages::Private::sorting(bool backwards) const
{
    QStringList by;
    for (const auto &[expression, descending] : sortedBy)
        by.append(expression + (descending != backwards ? QLatin1String(" DESC") : QLatin1String("")));
    return by.join(u',');
}

/// The numbers of the rows in their new order, in a table beside the database.
void RecordPages::Private::sortSqlite(const QString &by)
{
    const QString what =
        order.rowNumber.isEmpty() ? order.expressions.join(u',') : order.rowNumber + QLatin1String(" AS k");
    execute(QStringLiteral("CREATE TEMP TABLE \"nuvo sorted\" AS SELECT %1 FROM %2%3 ORDER BY %4")
                .arg(what, order.source, where(), by));
}

/// The server keeps the rows that it has sorted for a cursor.
void RecordPages::Private::sortPostgres(const QString &by)
{
    execute(QStringLiteral("BEGIN READ ONLY"));
    execute(QStringLiteral("DECLARE nuvo_sorted SCROLL CURSOR FOR SELECT %1 FROM %2%3 ORDER BY %4")
                .arg(order.expressions.join(u','), order.source, where(), by));
}

void RecordPages::Private::endSort()
{
    if (sorted < 0)
        return;
    sorted = -1;
    if (connection.dialect() == Dialect::Postgres)
        execute(QStringLiteral("ROLLBACK"));
    else if (connection.dialect() == Dialect::Sqlite)
        execute(QStringLiteral("DROP TABLE IF EXISTS temp.\"nuvo sorted\""));
}

RecordPages::RecordPages(ScanSource table) : d_(std::make_unique<Private>())
{
    d_->source = std::move(table);
}

RecordPages::~RecordPages() = default;

void RecordPages::open()
{
    d_->caption = QStringLiteral("table \"%1\"").arg(d_->source.table);
    d_->checkCancelled();
    d_->connection.open(d_->source.databaseName);
    d_->checkCancelled();
    d_->order = TableOrder::of(d_->connection, d_->source, d_->caption);
    for (const Column &column : d_->order.columns)
        d_->fields.push_back({column.name, isNumeric(column.kind)});
}

const std::vector<RecordPages::Field> &RecordPages::fields() const
{
    return d_->fields;
}

qint64 RecordPages::count()
{
    d_->checkCancelled();
    Select select;
    select.sql = QStringLiteral("SELECT COUNT(*) FROM %1%2").arg(d_->order.source, d_->where());
    select.cursor = d_->sorted < 0; // the sorted rows are in a transaction of their own
    const std::unique_ptr<RowSource> result = RowSource::open(d_->connection, select, d_->caption);
    d_->counted = result->next() ? result->value(0).toLongLong() : 0;
    return d_->counted;
}

void RecordPages::sort(int field, bool descending)
{
    d_->checkCancelled();
    d_->endSort();
    if (field < 0)
        return;
    d_->sortedBy = {{d_->order.expressions[field], descending}};
    for (const KeyPart &part : d_->order.order)
        d_->sortedBy.emplace_back(part.expression, false);
    // What is sorted anew for each page has to come out the same each time.
    if (d_->connection.dialect() == Dialect::Mysql && !d_->order.orderIsUnique) {
        for (const QString &expression : d_->order.expressions)
            d_->sortedBy.emplace_back(expression, false);
    }
    d_->sorted = field;
    try {
        if (d_->connection.dialect() == Dialect::Postgres)
            d_->sortPostgres(d_->sorting());
        else if (d_->connection.dialect() == Dialect::Sqlite)
            d_->sortSqlite(d_->sorting());
    } catch (...) {
        d_->endSort(); // a cursor that could not be declared leaves a transaction
        throw;
    }
}

std::vector<QStringList> RecordPages::rows(qint64 first, int most, qsizetype longest)
{
    d_->checkCancelled();
    d_->longest = longest;
    return d_->sorted < 0 ? d_->ownOrder(first, most, &Private::texts) : d_->sortedRows(first, most);
}

std::vector<QVariantList> RecordPages::values(qint64 first, int most)
{
    d_->checkCancelled();
    if (!d_->layout) {
        std::vector<Column> columns = d_->order.columns;
        if (std::any_of(columns.begin(), columns.end(),
                        [](const Column &column) { return column.kind == FieldKind::Unknown; }))
            takeKindsOfValues(columns, d_->ownOrder(0, firstRows, &Private::stored));
        std::vector<FieldKind> kinds;
        for (const Column &column : columns)
            kinds.push_back(column.kind);
        d_->layout.emplace(kinds);
    }
    return d_->ownOrder(first, most, &Private::values);
}

std::unique_ptr<RowSource> RecordPages::Private::figures(const QString &sql) const
{
    Select select;
    select.sql = sql;
    std::unique_ptr<RowSource> row = RowSource::open(connection, select, caption);
    row->next();
    return row;
}

/// Nothing where the database does not take the statement. \throws EDatabaseError where it takes no other one either
template <class Figure>
std::optional<Figure> RecordPages::Private::ask(const QString &sql, Figure (*figureOf)(const RowSource &row))
{
    checkCancelled();
    try {
        return figureOf(*figures(sql));
    } catch (const EDatabaseError &) {
        const std::exception_ptr why = std::current_exception();
        checkCancelled();
        try {
            figures(QStringLiteral("SELECT 1 FROM %1 WHERE 1 = 0").arg(order.source));
        } catch (const EDatabaseError &) {
            checkCancelled();
            std::rethrow_exception(why);
        }
        return {};
    }
}

std::optional<qint64> RecordPages::count(const QString &condition, qint64 most)
{
    const Dialect dialect = d_->connection.dialect();
    QString sql =
        QStringLiteral("SELECT 1 FROM %1 WHERE %2").arg(d_->order.source, filterCondition(condition, dialect));
    if (dialect == Dialect::Other)
        sql.replace(0, 8, QStringLiteral("SELECT COUNT(*)"));
    else
        sql = QStringLiteral("SELECT COUNT(*) FROM (%1 LIMIT %2) AS found").arg(sql).arg(most);
    const auto figure = [](const RowSource &row) { return row.value(0).toLongLong(); };
    const std::optional<qint64> found = d_->ask<qint64>(sql, figure);
    return found ? std::optional(std::min(*found, most)) : std::nullopt;
}

std::optional<bool> RecordPages::areTold(const QString &condition, const QString &field, qint64 records)
{
    const QString sql =
        QStringLiteral("SELECT COUNT(*), MAX(n) FROM (SELECT COUNT(*) AS n FROM %1 WHERE %2 GROUP BY %3) AS found")
            .arg(d_->order.source, filterCondition(condition, d_->connection.dialect()), field);
    struct Groups
    {
        qint64 count;
        qint64 largest;
    };
    const auto groups = d_->ask<Groups>(sql, [](const RowSource &row) {
        return Groups{row.value(0).toLongLong(), row.value(1).toLongLong()};
    });
    return groups ? std::optional(groups->count == records && groups->largest == 1) : std::nullopt;
}

void RecordPages::cancel()
{
    d_->connection.cancel();
}

} // namespace nuvo
