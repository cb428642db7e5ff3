// SPDX-License-Identifier: MIT
#include "platform/Tableorder.h"

#include "platform/Errors.h"
#include "platform/Nearestname.h"
#include "platform/Scan.h"

#include <algorithm>
#include <limits>

namespace nuvo {

namespace {

/// Whether a driver hands over a column's values without changing them on the way.
bool comesThrough(FieldKind kind, Dialect dialect)
{
    return dialect == Dialect::Sqlite || isInteger(kind) || kind == FieldKind::String;
}

} // namespace

std::vector<int> TableOrder::indexFields(const QString &caption) const
{
    std::vector<int> found;
    const auto find = [&](const QString &name) {
        for (size_t i = 0; i < columns.size(); ++i) {
            if (columns[i].name.compare(name, Qt::CaseInsensitive) == 0)
                return int(i);
        }
        return -1;
    };
    // A name may hold the signs that part names.
    const int whole = find(indexFieldNames);
    if (whole >= 0)
        return {whole};
    if (indexFieldNames.trimmed().isEmpty())
        return found;
    for (const QString &name : indexFieldNames.split(indexFieldNames.contains(u';') ? u';' : u',')) {
        const int field = find(name.trimmed());
        if (field < 0) {
            QStringList there;
            for (const Column &column : columns)
                there.append(column.name);
            throw EDatabaseError(QStringLiteral("No field \"%1\" to order %2 by%3; its fields: %4.")
                                     .arg(name.trimmed(), caption, perhaps(name.trimmed(), there), listed(there)));
        }
        found.push_back(field);
    }
    return found;
}

void TableOrder::makeOrder(const Connection &connection, const QString &caption)
{
    order.clear();
    keyColumns.clear();
    selected = expressions;
    for (const int field : indexFields(caption)) {
        const auto part = std::find_if(primaryKey.begin(), primaryKey.end(),
                                       [&](const KeyPart &key) { return key.field == field; });
        order.push_back(part != primaryKey.end() ? *part : keyPart(field, connection.dialect()));
    }
    indexParts = order.size();
    orderIsUnique = !primaryKey.empty() && keyIsUnique;
    for (const KeyPart &part : primaryKey) {
        orderIsUnique = orderIsUnique && !part.nullable;
        if (std::none_of(order.begin(), order.end(), [&](const KeyPart &key) { return key.field == part.field; }))
            order.push_back(part);
    }
    if (!orderIsUnique && !rowNumber.isEmpty()) {
        order.push_back({rowNumber, -1, false});
        orderIsUnique = true;
    }
    // Where nulls come last, a comparison with the key of a row loses them.
    const bool nullsLast = connection.dialect() == Dialect::Postgres;
    if (!orderIsUnique || connection.dialect() == Dialect::Other ||
        (nullsLast && std::any_of(order.begin(), order.end(), [](const KeyPart &part) { return part.nullable; })))
        return;
    for (const KeyPart &part : order) {
        // What comes through the driver as it is stored can be handed back; the rest is selected as text beside it.
        if (part.field >= 0 && comesThrough(columns[size_t(part.field)].kind, connection.dialect())) {
            keyColumns.push_back(part.field);
            continue;
        }
        keyColumns.push_back(int(selected.size()));
        selected.append(connection.dialect() == Dialect::Postgres ? part.expression + QLatin1String("::text")
                                                                  : part.expression);
    }
}

QString TableOrder::condition(Dialect dialect) const
{
    return filtered ? filterCondition(filter, dialect) : QString();
}

TableOrder TableOrder::of(const Connection &connection, const ScanSource &table, const QString &caption)
{
    TableOrder order;
    static_cast<TableDescription &>(order) = TableDescription::of(connection, table.table);
    order.filter = table.filter;
    order.filtered = !table.filter.isEmpty();
    order.makeOrder(connection, caption);
    return order;
}

/// The records whose key is on one side ("<", ">") of a row's, or all where none is given, in no order.
Select TableOrder::selectBeside(const Connection &connection, QChar side, const QVariantList &key) const
{
    Select select;
    QStringList conditions;
    const QString wanted = condition(connection.dialect());
    if (!wanted.isEmpty())
        conditions.append(wanted);
    if (!key.isEmpty()) {
        QStringList values;
        for (const QVariant &value : key)
            values.append(connection.bound(value, select.values));
        const bool one = values.size() == 1;
        conditions.append((one ? QStringLiteral("%1 %2 %3") : QStringLiteral("(%1) %2 (%3)"))
                              .arg(keyExpressions().join(u','), side, values.join(u',')));
    }
    select.sql = QStringLiteral("SELECT %1 FROM %2").arg(selected.join(u','), source);
    if (!conditions.isEmpty())
        select.sql += QLatin1String(" WHERE ") + conditions.join(QLatin1String(" AND "));
    select.keyColumns = keyColumns;
    return select;
}

QString TableOrder::orderBy() const
{
    const bool scanOrder = rowNumberIsScan && order.size() == 1 && order[0].field < 0;
    return order.empty() || scanOrder ? QString() : QLatin1String(" ORDER BY ") + keyExpressions().join(u',');
}

Select TableOrder::select(const Connection &connection, const ReadPosition &position) const
{
    Select select = selectBeside(connection, u'>', position.after);
    select.sql += orderBy();
    const qint64 skip = position.row - position.afterRow;
    // Rows that the order does not tell apart can change places from one LIMIT to another.
    if (connection.dialect() == Dialect::Other || !orderIsUnique) {
        select.skip = skip;
        return select;
    }
    if (position.limit >= 0 || skip > 0) {
        const qint64 all = std::numeric_limits<qint64>::max();
        select.sql += QStringLiteral(" LIMIT %1 OFFSET %2").arg(position.limit >= 0 ? position.limit : all).arg(skip);
        select.limited = position.limit >= 0;
    }
    return select;
}

bool TableOrder::isReversible(Dialect dialect) const
{
    // Nothing reads the rows of a table in the order of their places backwards.
    const bool byPlace = rowNumberIsScan && dialect == Dialect::Postgres;
    return !keyColumns.empty() && !byPlace &&
           std::none_of(order.begin(), order.end(), [](const KeyPart &part) { return part.nullable; });
}

Select TableOrder::selectBackwards(const Connection &connection, const QVariantList &before, qint64 limit,
                                   qint64 skip) const
{
    Select select = selectBeside(connection, u'<', before);
    select.sql += QStringLiteral(" ORDER BY %1 DESC LIMIT %2 OFFSET %3")
                      .arg(keyExpressions().join(QLatin1String(" DESC,")))
                      .arg(limit)
                      .arg(skip);
    select.limited = true;
    return select;
}

QStringList TableOrder::keyExpressions() const
{
    QStringList keys;
    for (const KeyPart &part : order)
        keys.append(part.expression);
    return keys;
}

} // namespace nuvo
