// SPDX-License-Identifier: MIT
#include "engine/Serversource.h"

#include "platform/Errors.h"
#include "platform/Nearestname.h"
#include "platform/Partitions.h"
#include "platform/Querystatement.h"
#include "platform/Resultcolumns.h"
#include "platform/Rowsource.h"
#include "platform/Tabledescription.h"

#include <QSqlRecord>

namespace nuvo {

ServerRecords ServerRecords::of(const Connection &connection, const ScanSource &source)
{
    ServerRecords records;
    if (source.sql.isEmpty())
        records.describeTable(connection, source);
    else
        records.describeQuery(connection, source);
    return records;
}

void ServerRecords::describeTable(const Connection &connection, const ScanSource &source)
{
    caption = QStringLiteral("table \"%1\"").arg(source.table);
    const TableDescription table = TableDescription::of(connection, source.table);
    columns = table.columns;
    for (const Column &column : columns)
        expressions.append(quotedName(column.name, connection.dialect()));
    condition = filterCondition(source.filter, connection.dialect());
    for (const Partition &part : partitionsOf(connection, table.source, caption))
        parts.push_back({part.source, part.server.isEmpty(), part.caption()});
    whole = {table.source, !isPlannedElsewhere(connection, table.source, caption), {}};
}

void ServerRecords::describeQuery(const Connection &connection, const ScanSource &source)
{
    caption = queryCaption(source.sql);
    const ReadingStatement statement = readingStatement(source.sql, connection.dialect());
    if (!statement.wrappable)
        throw EDatabaseError(
            QStringLiteral("The records of %1 cannot be added up by the server: it is no SELECT.").arg(caption));
    const Select select = selectOf(connection, statement, source.params, caption);
    values = select.values;
    Select none = select;
    none.sql = QStringLiteral("SELECT * FROM (%1) nuvo_q WHERE 1 = 0").arg(select.sql);
    none.cursor = false;
    columns = RowSource::open(connection, none, caption)->columns();
    for (const Column &column : columns)
        expressions.append(quotedName(column.name, connection.dialect()));
    makeNamesUnique(columns);
    QString from = QStringLiteral("(%1) nuvo_q").arg(select.sql);
    if (connection.dialect() == Dialect::Postgres) {
        // Names can be doubled; these cannot.
        for (qsizetype i = 0; i < expressions.size(); ++i)
            expressions[i] = QStringLiteral("c%1").arg(i);
        from += QStringLiteral("(%1)").arg(expressions.join(QLatin1String(", ")));
    }
    whole = {from, !isPlannedElsewhere(connection, from, caption), {}};
}

SqlField ServerRecords::field(const QString &name, const SqlNumbers &sql) const
{
    QStringList there;
    for (size_t i = 0; i < columns.size(); ++i) {
        const Column &column = columns[i];
        there.append(column.name);
        if (column.name.compare(name, Qt::CaseInsensitive) != 0)
            continue;
        if (!isNumeric(column.kind) && column.kind != FieldKind::Boolean) {
            const QString type = column.declaredType.isEmpty()
                                     ? QStringLiteral("no number")
                                     : QStringLiteral("of type %1").arg(column.declaredType);
            throw EDatabaseError(
                QStringLiteral("Field \"%1\" of %2 is %3 to the server, which adds up numbers alone; "
                               "reading all records takes numbers in texts too.")
                    .arg(column.name, caption, type));
        }
        const QString &expression = expressions[qsizetype(i)];
        return {sql.number(expression, column.kind), sql.present(expression, column.kind),
                isInteger(column.kind) || column.kind == FieldKind::Boolean};
    }
    throw EDatabaseError(QStringLiteral("No field \"%1\" in %2%3; its fields: %4.")
                             .arg(name, caption, perhaps(name, there), listed(there)));
}

} // namespace nuvo
