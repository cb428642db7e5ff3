// SPDX-License-Identifier: MIT
#include "platform/Table.h"

#include "platform/Connection.h"
#include "platform/Errors.h"
#include "platform/Formfolder.h"
#include "platform/Rowsource.h"
#include "platform/Scan.h"
#include "platform/Tableorder.h"

#include <algorithm>

using nuvo::Column;
using nuvo::Connection;
using nuvo::Dialect;
using nuvo::KeyPart;

class TTable::Private : public nuvo::TableOrder
{
public:
    QString tableName;

    QVariant recordsBefore(const Connection &connection, const std::vector<KeyPart> &key, const QVariantList &values,
                           const QString &caption) const;
};

TTable::TTable(QWidget *owner) : TDataSet(owner), d_(std::make_unique<Private>()) {}

TTable::~TTable() = default;

QString TTable::TableName() const
{
    return d_->tableName;
}

void TTable::SetTableName(const QString &name)
{
    if (name == d_->tableName)
        return;
    Forget();
    d_->tableName = name;
}

QString TTable::Filter() const
{
    return d_->filter;
}

void TTable::SetFilter(const QString &condition)
{
    if (condition == d_->filter)
        return;
    CheckChange();
    d_->filter = condition;
    if (d_->filtered && Active())
        Refresh();
}

bool TTable::Filtered() const
{
    return d_->filtered;
}

void TTable::SetFiltered(bool filtered)
{
    if (filtered == d_->filtered)
        return;
    CheckChange();
    d_->filtered = filtered;
    if (Active())
        Refresh();
}

QString TTable::IndexFieldNames() const
{
    return d_->indexFieldNames;
}

void TTable::SetIndexFieldNames(const QString &names)
{
    if (names == d_->indexFieldNames)
        return;
    CheckChange();
    d_->indexFieldNames = names;
    if (Active())
        Refresh();
}

nuvo::ScanSource TTable::Source() const
{
    nuvo::ScanSource source;
    source.databaseName = nuvo::databasePlace(DatabaseName(), nuvo::formFolder(*this));
    source.table = TableName();
    if (Filtered())
        source.filter = Filter();
    return source;
}

QString TTable::Caption() const
{
    return QStringLiteral("table \"%1\"").arg(d_->tableName);
}

QStringList TTable::TableNames()
{
    QStringList names;
    WithConnection([&](const Connection &connection) { names = nuvo::tableNames(connection); });
    return names;
}

std::vector<Column> TTable::Describe(const Connection &connection)
{
    if (d_->tableName.isEmpty())
        throw EDatabaseError(QStringLiteral("No table is named (TableName is empty)."));
    static_cast<nuvo::TableDescription &>(*d_) = nuvo::TableDescription::of(connection, d_->tableName);
    d_->makeOrder(connection, Caption());
    return d_->columns;
}

/// How many records come before the first one with these key values; null when there is none with them.
QVariant TTable::Private::recordsBefore(const Connection &connection, const std::vector<KeyPart> &key,
                                        const QVariantList &values, const QString &caption) const
{
    const QString filterHere = condition(connection.dialect());
    QVariantList bound;
    const auto from = [&](const QString &where) {
        return QStringLiteral("FROM %1 WHERE %2")
            .arg(source, filterHere.isEmpty() ? where : filterHere + QLatin1String(" AND ") + where);
    };
    const auto equalUpTo = [&](qsizetype parts) {
        QString where;
        for (qsizetype i = 0; i < parts; ++i)
            where +=
                QStringLiteral("%1 = %2 AND ").arg(key[size_t(i)].expression, connection.bound(values[i], bound));
        return where;
    };
    QString sql =
        QStringLiteral("SELECT CASE WHEN EXISTS (SELECT 1 %1) THEN 0").arg(from(equalUpTo(values.size()).chopped(5)));
    // Each of these counts a range of the index.
    for (qsizetype i = 0; i < values.size(); ++i) {
        const KeyPart &part = key[size_t(i)];
        const QString equal = equalUpTo(i);
        sql += QStringLiteral(" + (SELECT COUNT(*) %1)")
                   .arg(from(equal +
                             QStringLiteral("%1 < %2").arg(part.expression, connection.bound(values[i], bound))));
        if (part.nullable && connection.dialect() != Dialect::Postgres)
            sql += QStringLiteral(" + (SELECT COUNT(*) %1)")
                       .arg(from(equalUpTo(i) + QStringLiteral("%1 IS NULL").arg(part.expression)));
    }
    sql += QLatin1String(" END");
    nuvo::Select select;
    select.sql = sql;
    select.values = bound;
    // A cursor keeps the program's transaction on a registered connection from harm, and takes back what a function
    // in the filter writes.
    select.cursor = !connection.isOwn() || !filterHere.isEmpty();
    const std::unique_ptr<nuvo::RowSource> result = nuvo::RowSource::open(connection, select, caption);
    return result->next() ? result->value(0) : QVariant();
}

nuvo::Select TTable::SelectFrom(const Connection &connection, const nuvo::ReadPosition &position)
{
    return d_->select(connection, position);
}

bool TTable::FindKey(const QVariantList &values)
{
    NeedRecords();
    const std::vector<KeyPart> key =
        d_->indexParts > 0 ? std::vector<KeyPart>(d_->order.begin(), d_->order.begin() + qint64(d_->indexParts))
                           : d_->primaryKey;
    if (key.empty())
        throw EDatabaseError(
            QStringLiteral("%1 has no primary key, and no IndexFieldNames are set, to find a record by.")
                .arg(nuvo::sentenceStart(Caption())));
    if (values.isEmpty() || size_t(values.size()) > key.size())
        throw EDatabaseError(QStringLiteral("The key of %1 has %2 fields; %3 values were given.")
                                 .arg(Caption())
                                 .arg(key.size())
                                 .arg(values.size()));
    std::vector<int> fields;
    std::vector<double> numbers;
    QStringList names;
    for (const QVariant &value : values) {
        if (value.isNull())
            return false;
        const int field = key[fields.size()].field;
        fields.push_back(field);
        names.append(Fields(field).FieldName());
        // Whether two numbers are equal is the same everywhere; for texts the engine has rules of its own.
        if (Fields(field).IsNumeric() && nuvo::isExactNumber(value))
            numbers.push_back(value.toDouble());
    }
    const bool numeric = numbers.size() == fields.size();
    if (numeric) {
        bool complete = false;
        const qint64 kept = FindKeptNumbers(fields, numbers, complete);
        if (kept >= 0)
            return MoveToRow(kept);
        if (complete)
            return false;
    }
    QVariant before;
    WithConnection(
        [&](const Connection &connection) { before = d_->recordsBefore(connection, key, values, Caption()); });
    if (before.isNull())
        return false;
    const qint64 row = before.toLongLong();
    // The engine speaks of the table as it is now, the rows kept are from the time they were read.
    if (!MoveToRow(row))
        return Locate(names, values);
    if (numeric && !std::equal(fields.begin(), fields.end(), numbers.begin(),
                               [&](int field, double number) { return Fields(field).AsFloat() == number; }))
        return Locate(names, values);
    return true;
}

nuvo::Select TTable::CountStatement(const Connection &connection)
{
    nuvo::Select select;
    select.sql = QStringLiteral("SELECT COUNT(*) FROM %1").arg(d_->source);
    const QString filter = d_->condition(connection.dialect());
    if (!filter.isEmpty())
        select.sql += QLatin1String(" WHERE ") + filter;
    return select;
}
