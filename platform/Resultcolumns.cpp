#include "platform/Resultcolumns.h"

#include <QSet>
#include <QSqlField>
#include <QSqlRecord>

namespace nuvo {

namespace {

Column columnOf(const QSqlField &field, Dialect dialect)
{
    Column column;
    column.name = field.name();
    column.kind = kindOfMetaType(field.metaType());
    if (dialect == Dialect::Postgres) {
        column.declaredType = postgresTypeName(field.typeID());
        if (column.declaredType == u"bit")
            column.declaredType += QStringLiteral("(%1)").arg(field.length());
        if (!column.declaredType.isEmpty())
            column.kind = kindOfDeclaredType(column.declaredType);
    }
    constexpr int mysqlBit = 16;
    if (dialect == Dialect::Mysql && field.typeID() == mysqlBit)
        column.kind = FieldKind::Bits;
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

std::vector<Column> columnsOf(const QSqlRecord &record, Dialect dialect)
{
    std::vector<Column> columns;
    for (int i = 0; i < record.count(); ++i)
        columns.push_back(columnOf(record.field(i), dialect));
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
