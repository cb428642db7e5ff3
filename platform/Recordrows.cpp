// SPDX-License-Identifier: MIT
#include "platform/Recordrows.h"

#include "platform/Errors.h"
#include "platform/Numbervalue.h"
#include "platform/Readerconnection.h"
#include "platform/Records.h"
#include "platform/Tableorder.h"

#include <QLocale>

#include <cmath>

namespace nuvo {

class RecordRows::Private
{
public:
    ScanSource source;
    QString caption;
    QStringList fields;
    TableOrder order;
    ReaderConnection connection;
    std::unique_ptr<RowSource> rows; ///< goes before its connection
    qint64 record = 0;

    void checkCancelled() const { connection.checkCancelled(caption); }
    FieldKind kind(int field) const { return order.columns[size_t(field)].kind; }
};

RecordRows::RecordRows(ScanSource table) : d_(std::make_unique<Private>())
{
    d_->caption = QStringLiteral("table \"%1\"").arg(table.table);
    d_->source = std::move(table);
}

RecordRows::~RecordRows() = default;

void RecordRows::open()
{
    d_->checkCancelled();
    d_->connection.open(d_->source.databaseName);
    d_->checkCancelled();
    d_->order = TableOrder::of(d_->connection, d_->source, d_->caption);
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

QString RecordRows::exactText(int field) const
{
    const QVariant value = d_->rows->value(field);
    if (value.typeId() != QMetaType::Double && value.typeId() != QMetaType::Float)
        return textFromValue(value);
    const double number = value.toDouble();
    return std::isfinite(number) ? QString::number(number, 'g', QLocale::FloatingPointShortest) : QString();
}

void RecordRows::cancel()
{
    d_->connection.cancel();
}

} // namespace nuvo
