// SPDX-License-Identifier: MIT
#include "platform/Recordcopy.h"

#include "platform/Errors.h"
#include "platform/Querystatement.h"
#include "platform/Readerconnection.h"
#include "platform/Records.h"
#include "platform/Resultcolumns.h"
#include "platform/Rowsource.h"
#include "platform/Tableorder.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QSqlError>

namespace nuvo {

namespace {

/// A type of an SQLite column that gives a field of that kind.
QString typeOf(const Column &column)
{
    static const QRegularExpression plain(
        QStringLiteral("\\A[A-Za-z][A-Za-z0-9_ ]*(\\([0-9, ]*\\))?[A-Za-z0-9_ ]*\\z"));
    if (kindOfDeclaredType(column.declaredType) == column.kind && plain.match(column.declaredType).hasMatch() &&
        column.kind != FieldKind::AutoInc)
        return column.declaredType;
    switch (column.kind) {
    case FieldKind::Unknown:
    case FieldKind::Float:
        return QStringLiteral("DOUBLE");
    case FieldKind::Currency:
        return QStringLiteral("MONEY");
    case FieldKind::Integer:
        return QStringLiteral("INTEGER");
    case FieldKind::Smallint:
        return QStringLiteral("SMALLINT");
    case FieldKind::Word:
        return QStringLiteral("WORD");
    case FieldKind::AutoInc:
    case FieldKind::Largeint:
        return QStringLiteral("BIGINT");
    case FieldKind::Bits:
        return QStringLiteral("VARBIT");
    case FieldKind::Boolean:
        return QStringLiteral("BOOLEAN");
    case FieldKind::Date:
        return QStringLiteral("DATE");
    case FieldKind::Time:
        return QStringLiteral("TIME");
    case FieldKind::DateTime:
        return QStringLiteral("TIMESTAMP");
    case FieldKind::Blob:
        return QStringLiteral("BLOB");
    case FieldKind::Memo:
        return QStringLiteral("CLOB");
    case FieldKind::String:
        break;
    }
    return QStringLiteral("TEXT");
}

/// A decimal comes as text from some drivers; SQLite would round it in a way of its own.
QVariant valueFor(const QVariant &value, FieldKind kind)
{
    if (value.typeId() == QMetaType::QString && (kind == FieldKind::Float || kind == FieldKind::Currency)) {
        bool isNumber = false;
        const double number = value.toString().toDouble(&isNumber);
        if (isNumber)
            return number;
    }
    return value;
}

constexpr qint64 kPatience = 1000; // ms until the first record
constexpr size_t kFirstRows = 64;  // that tell the kinds of columns without a type

} // namespace

class RecordCopy::Private
{
public:
    ScanSource source;
    QString file;
    QString table;
    std::atomic<qint64> records{0};
    bool whole = false;
    ReaderConnection from;
    Connection to;
    std::optional<QSqlQuery> insert;
    std::vector<Column> columns;
    QString caption;

    void disconnect();
    std::unique_ptr<RowSource> begin(qint64 &limit);
    std::unique_ptr<RowSource> first(const TableOrder &order, qint64 rows) const;
    void copy(qint64 most);
    void execute(const QString &sql) const;
    void makeTable();
    void add(const QVariantList &row);
};

void RecordCopy::Private::disconnect()
{
    insert.reset();
    to.close();
    from.close();
}

/// The first rows of a table, or all of them where the number is below 0.
std::unique_ptr<RowSource> RecordCopy::Private::first(const TableOrder &order, qint64 rows) const
{
    Select select = order.select(from, {0, rows, 0, {}});
    if (rows >= 0 && !select.limited)
        select.sql += QStringLiteral(" LIMIT %1").arg(rows);
    return RowSource::open(from, select, caption);
}

/// \param limit how many rows are wanted; below 0, all, as it becomes where the first one keeps us waiting.
std::unique_ptr<RowSource> RecordCopy::Private::begin(qint64 &limit)
{
    if (!source.table.isEmpty()) {
        caption = QStringLiteral("table \"%1\"").arg(source.table);
        const TableOrder order = TableOrder::of(from, source, caption);
        columns = order.columns;
        if (from.dialect() != Dialect::Mysql)
            return RowSource::open(from, order.select(from, {}), caption);
        // Its driver brings all of a result before the first row, so how long that takes is tried with it alone.
        QElapsedTimer since;
        since.start();
        first(order, 1)->next();
        if (since.elapsed() > kPatience)
            limit = -1;
        return first(order, limit < 0 ? -1 : limit + 1); // one more tells whether there are more
    }
    caption = queryCaption(source.sql);
    const ReadingStatement statement = readingStatement(source.sql, from.dialect());
    columns = describeStatement(from, statement);
    std::unique_ptr<RowSource> rows =
        RowSource::open(from, selectOf(from, statement, source.params, caption), caption);
    if (columns.empty())
        columns = rows->columns();
    makeNamesUnique(columns);
    return rows;
}

void RecordCopy::Private::execute(const QString &sql) const
{
    QSqlQuery query = to.newQuery();
    if (!query.exec(sql))
        throw EDatabaseError(
            QStringLiteral("Cannot keep the records of %1: %2.").arg(caption, to.reason(query.lastError())));
}

void RecordCopy::Private::makeTable()
{
    to.open(file, Connection::Access::Write);
    // Nobody needs a copy that was not finished.
    execute(QStringLiteral("PRAGMA journal_mode = OFF"));
    execute(QStringLiteral("PRAGMA synchronous = OFF"));
    execute(QStringLiteral("BEGIN"));
    QStringList definitions;
    QStringList places;
    for (const Column &column : columns) {
        definitions.append(quotedName(column.name, Dialect::Sqlite) + u' ' + typeOf(column));
        places.append(QStringLiteral("?"));
    }
    const QString name = quotedName(table, Dialect::Sqlite);
    execute(QStringLiteral("CREATE TABLE %1 (%2)").arg(name, definitions.join(QStringLiteral(", "))));
    insert.emplace(to.newQuery());
    if (!insert->prepare(QStringLiteral("INSERT INTO %1 VALUES (%2)").arg(name, places.join(u','))))
        throw EDatabaseError(
            QStringLiteral("Cannot keep the records of %1: %2.").arg(caption, to.reason(insert->lastError())));
}

void RecordCopy::Private::add(const QVariantList &row)
{
    for (qsizetype i = 0; i < row.size(); ++i)
        insert->bindValue(int(i), valueFor(row[i], columns[size_t(i)].kind));
    if (!insert->exec())
        throw EDatabaseError(
            QStringLiteral("Cannot keep the records of %1: %2.").arg(caption, to.reason(insert->lastError())));
    ++records;
}

void RecordCopy::Private::copy(qint64 most)
{
    QElapsedTimer since;
    since.start();
    qint64 limit = source.table.isEmpty() ? -1 : most;
    const std::unique_ptr<RowSource> rows = begin(limit);
    std::vector<QVariantList> first;
    bool more = true;
    for (qint64 row = 0; !from.isCancelled(); ++row) {
        more = rows->next();
        if (row == 0 && since.elapsed() > kPatience && from.dialect() != Dialect::Mysql)
            limit = -1;
        if (!more || row == limit)
            break;
        QVariantList values;
        qint64 bytes = 0;
        for (int column = 0; column < int(columns.size()); ++column) {
            values.append(rows->value(column));
            bytes += bytesOf(values.constLast());
        }
        rows->setRowBytes(bytes);
        if (insert) {
            add(values);
            continue;
        }
        first.push_back(std::move(values));
        if (first.size() == kFirstRows) {
            takeKindsOfValues(columns, first);
            makeTable();
            for (const QVariantList &one : std::exchange(first, {}))
                add(one);
        }
    }
    if (from.isCancelled())
        return;
    if (!insert) {
        takeKindsOfValues(columns, first);
        makeTable();
        for (const QVariantList &one : first)
            add(one);
    }
    whole = !more;
    insert.reset();
    execute(QStringLiteral("COMMIT"));
}

RecordCopy::RecordCopy(ScanSource source, QString file, QString table) : d_(std::make_unique<Private>())
{
    d_->source = std::move(source);
    d_->file = std::move(file);
    d_->table = std::move(table);
}

RecordCopy::~RecordCopy() = default;

bool RecordCopy::run(qint64 most)
{
    try {
        if (!d_->from.isCancelled())
            d_->from.open(d_->source.databaseName);
        if (!d_->from.isCancelled())
            d_->copy(most);
    } catch (...) {
        d_->disconnect();
        QFile::remove(d_->file);
        if (!d_->from.isCancelled())
            throw;
        return false;
    }
    d_->disconnect();
    if (d_->from.isCancelled())
        QFile::remove(d_->file);
    return !d_->from.isCancelled();
}

void RecordCopy::cancel()
{
    d_->from.cancel();
}

qint64 RecordCopy::records() const
{
    return d_->records;
}

bool RecordCopy::isWhole() const
{
    return d_->whole;
}

} // namespace nuvo
