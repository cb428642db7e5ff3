// SPDX-License-Identifier: MIT
#include "platform/Partitions.h"

#include <QSqlError>

#include <algorithm>

namespace nuvo {

QString Partition::caption() const
{
    return server.isEmpty() ? QStringLiteral("partition \"%1\"").arg(name)
                            : QStringLiteral("partition \"%1\" on server \"%2\"").arg(name, server);
}

std::vector<Partition> partitionsOf(const Connection &connection, const QString &source, const QString &caption)
{
    if (connection.dialect() != Dialect::Postgres)
        return {};
    QVariantList none;
    QSqlQuery query = connection.query(
        QStringLiteral("WITH RECURSIVE tree(id) AS (SELECT to_regclass(%1)::oid UNION "
                       "SELECT i.inhrelid FROM tree t JOIN pg_inherits i ON i.inhparent = t.id) "
                       "SELECT n.nspname, c.relname, c.relkind, COALESCE(s.srvname, ''), "
                       "has_table_privilege(c.oid, 'SELECT') AND NOT c.relrowsecurity, c.oid = to_regclass(%1)::oid "
                       "FROM tree t JOIN pg_class c ON c.oid = t.id JOIN pg_namespace n ON n.oid = c.relnamespace "
                       "LEFT JOIN pg_foreign_table f ON f.ftrelid = c.oid "
                       "LEFT JOIN pg_foreign_server s ON s.oid = f.ftserver ORDER BY c.oid")
            .arg(connection.bound(source, none)),
        {}, caption);
    std::vector<Partition> parts;
    QString tableName;
    bool readable = true;
    while (query.next()) {
        const QString schema = query.value(0).toString();
        const QString name = query.value(1).toString();
        const QString kind = query.value(2).toString();
        readable = readable && query.value(4).toBool();
        if (query.value(5).toBool())
            tableName = name;
        if (kind != u"r" && kind != u"f")
            continue; // a partitioned table has no records of its own
        parts.push_back({quotedName(schema, Dialect::Postgres) + u'.' + quotedName(name, Dialect::Postgres),
                         schema + u'.' + name, query.value(3).toString()});
    }
    if (query.lastError().isValid())
        connection.fail(query.lastError(), caption);
    const bool spread = parts.size() > 1 && std::any_of(parts.begin(), parts.end(),
                                                        [](const Partition &part) { return !part.server.isEmpty(); });
    if (!readable || !spread)
        return {};
    for (Partition &part : parts)
        part.source = QStringLiteral("ONLY %1 AS %2").arg(part.source, quotedName(tableName, Dialect::Postgres));
    return parts;
}

bool isPlannedElsewhere(const Connection &connection, const QString &source, const QString &caption)
{
    if (connection.dialect() != Dialect::Postgres)
        return false;
    QSqlQuery query = connection.query(QStringLiteral("EXPLAIN (COSTS OFF) SELECT * FROM ") + source, {}, caption);
    bool elsewhere = false;
    while (query.next()) {
        const QString line = query.value(0).toString();
        elsewhere =
            elsewhere || line.contains(QLatin1String("Foreign Scan")) || line.contains(QLatin1String("Custom Scan"));
    }
    if (query.lastError().isValid())
        connection.fail(query.lastError(), caption);
    return elsewhere;
}

} // namespace nuvo
