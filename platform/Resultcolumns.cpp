// SPDX-License-Identifier: MIT
#include "platform/Resultcolumns.h"

#include "platform/Libpq.h"

#include <QSet>
#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>

namespace nuvo {

namespace {

/// \param type the server's number of it; 0 where that is not known
Column columnOf(const QSqlField &field, Dialect dialect, int type)
{
    Column column;
    column.name = field.name();
    column.kind = kindOfMetaType(field.metaType());
    if (dialect == Dialect::Postgres) {
        column.declaredType = postgresTypeName(type);
        if (column.declaredType == u"bit")
            column.declaredType += QStringLiteral("(%1)").arg(field.length());
        if (!column.declaredType.isEmpty())
            column.kind = kindOfDeclaredType(column.declaredType);
    }
#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0) // from then on they come as bytes, which are no numbers either
    constexpr int mysqlBit = 16;
    if (dialect == Dialect::Mysql && field.typeID() == mysqlBit)
        column.kind = FieldKind::Bits;
#endif
    return column;
}

FieldKind kindOfValues(const std::vector<QVariantList> &rows, int column)
{
    FieldKind kind = FieldKind::Unknown;
    for (const QVariantList &row : rows) {
        const QVariant &value = row[column];
        if (value.isNull())
            continue;
        const FieldKind own = kindOfMetaType(value.metaType());
        if (!isNumeric(own))
            return own;
        if (kind != FieldKind::Float)
            kind = own == FieldKind::Float ? FieldKind::Float : FieldKind::Largeint;
    }
    return kind;
}

} // namespace

std::vector<Column> columnsOf(const QSqlQuery &query, Dialect dialect)
{
    const QSqlRecord record = query.record();
    std::vector<Column> columns;
    columns.reserve(std::size_t(record.count()));
    for (int i = 0; i < record.count(); ++i)
        columns.push_back(columnOf(record.field(i), dialect, libpq::columnType(query, i)));
    return columns;
}

void makeNamesUnique(std::vector<Column> &columns)
{
    QSet<QString> taken;
    for (const Column &column : columns)
        taken.insert(column.name.toLower());
    QSet<QString> used;
    for (Column &column : columns) {
        if (column.name.isEmpty())
            column.name = QStringLiteral("COLUMN");
        QString name = column.name;
        for (int i = 1; used.contains(name.toLower()) || (i > 1 && taken.contains(name.toLower())); ++i)
            name = QStringLiteral("%1_%2").arg(column.name).arg(i);
        column.name = name;
        used.insert(name.toLower());
    }
}

void takeKindsOfValues(std::vector<Column> &columns, const std::vector<QVariantList> &rows)
{
    for (int i = 0; i < int(columns.size()); ++i) {
        if (columns[size_t(i)].kind == FieldKind::Unknown)
            columns[size_t(i)].kind = kindOfValues(rows, i);
    }
}

} // namespace nuvo
