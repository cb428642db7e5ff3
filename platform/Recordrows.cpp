// SPDX-License-Identifier: MIT
#include "platform/Recordrows.h"

#include "platform/Connection.h"
#include "platform/Errors.h"
#include "platform/Libpq.h"
#include "platform/Libsqlite.h"
#include "platform/Numbervalue.h"
#include "platform/Records.h"
#include "platform/Tableorder.h"

#include <atomic>
#include <mutex>

namespace nuvo {

class RecordRows::Private
{
public:
    ScanSource source;
    QString caption;
    QStringList fields;
    TableOrder order;
    Connection connection;
    std::unique_ptr<RowSource> rows;
    qint64 record = 0;
    std::mutex cancelling; // while the handles below are used or change
    std::atomic<bool> cancelled{false};
    libpq::Canceller canceller;
    sqlite3 *sqlite = nullptr;
    const Libsqlite *library = nullptr;

    void connect();
    void close();
    void checkCancelled() const;
    FieldKind kind(int field) const { return order.columns[size_t(field)].kind; }
};

void RecordRows::Private::connect()
{
    connection.openBeside(source.databaseName);
    const std::lock_guard lock(cancelling);
    if (connection.dialect() == Dialect::Postgres)
        canceller.use(connection.database());
    library = connection.dialect() == Dialect::Sqlite ? Libsqlite::of(connection.database()) : nullptr;
    sqlite = library != nullptr ? Libsqlite::handleOf(connection.database()) : nullptr;
}

void RecordRows::Private::close()
{
    rows.reset();
    const std::lock_guard lock(cancelling);
    canceller.forget();
    sqlite = nullptr;
    library = nullptr;
    connection.close();
}

void RecordRows::Private::checkCancelled() const
{
    if (cancelled)
        throw EDatabaseError(QStringLiteral("The reading of %1 was ended.").arg(caption));
}

RecordRows::RecordRows(ScanSource table) : d_(std::make_unique<Private>())
{
    d_->caption = QStringLiteral("table \"%1\"").arg(table.table);
    d_->source = std::move(table);
}

RecordRows::~RecordRows()
{
    d_->close();
}

void RecordRows::open()
{
    d_->checkCancelled();
    d_->connect();
    d_->checkCancelled();
    static_cast<TableDescription &>(d_->order) = TableDescription::of(d_->connection, d_->source.table);
    d_->order.filter = d_->source.filter;
    d_->order.filtered = !d_->source.filter.isEmpty();
    d_->order.makeOrder(d_->connection, d_->caption);
    for (const Column &column : d_->order.columns)
        d_->fields.append(column.name);
}

const QStringList &RecordRows::fields() const
{
    return d_->fields;
}

bool RecordRows::next()
{
    d_->checkCancelled();
    if (!d_->rows)
        d_->rows = RowSource::open(d_->connection, d_->order.select(d_->connection, {}), d_->caption);
    ++d_->record;
    if (!d_->rows->next())
        return false;
    qint64 bytes = 0;
    for (int field = 0; field < int(d_->fields.size()); ++field)
        bytes += bytesOf(d_->rows->value(field));
    d_->rows->setRowBytes(bytes);
    return true;
}

std::optional<double> RecordRows::number(int field) const
{
    const QVariant value = d_->rows->value(field);
    double number = 0;
    const NumberReading reading = readNumber(value, d_->kind(field), number);
    if (reading == NumberReading::Number)
        return number;
    if (reading != NumberReading::Null && reading != NumberReading::Text)
        requireNumber(
            reading, value,
            QStringLiteral("field \"%1\" of %2, record %3").arg(d_->fields[field], d_->caption).arg(d_->record));
    return {};
}

bool RecordRows::isNull(int field) const
{
    double number = 0;
    return readNumber(d_->rows->value(field), d_->kind(field), number) == NumberReading::Null;
}

QString RecordRows::text(int field) const
{
    return textFromValue(d_->rows->value(field));
}

void RecordRows::cancel()
{
    const std::lock_guard lock(d_->cancelling);
    d_->cancelled = true;
    if (d_->sqlite != nullptr)
        d_->library->interrupt(d_->sqlite);
    d_->canceller.cancel();
}

} // namespace nuvo
