// SPDX-License-Identifier: MIT
#include "platform/Tabledescription.h"

#include "platform/Errors.h"
#include "platform/Nearestname.h"

#include <QSqlError>
#include <QSqlField>
#include <QSqlIndex>
#include <QSqlRecord>

#include <algorithm>
#include <map>

namespace nuvo {

TableDescription TableDescription::of(const Connection &connection, const QString &name)
{
    TableDescription table;
    const bool found = connection.dialect() == Dialect::Sqlite     ? table.describeSqlite(connection, name)
                       : connection.dialect() == Dialect::Postgres ? table.describePostgres(connection, name)
                       : connection.dialect() == Dialect::Mysql    ? table.describeMysql(connection, name)
                                                                   : table.describeOther(connection, name);
    if (!found) {
        const QStringList there = tableNames(connection);
        throw EDatabaseError(QStringLiteral("No table \"%1\" in %2%3; its tables: %4.")
                                 .arg(name, connection.caption(), perhaps(name, there), listed(there)));
    }
    return table;
}

void TableDescription::addColumn(const Column &column, bool canBeNull, Dialect dialect)
{
    // Named with its table: SQLite takes a quoted name that is no column of it for a text.
    QString expression = source + u'.' + quotedName(column.name, dialect);
    // The server's money is a text in its own language.
    if (dialect == Dialect::Postgres && column.kind == FieldKind::Currency)
        expression += QLatin1String("::numeric");
    // The driver hands bits over as bytes.
    if (dialect == Dialect::Mysql && column.kind == FieldKind::Boolean &&
        column.declaredType.startsWith(QLatin1String("bit"), Qt::CaseInsensitive))
        expression += QLatin1String(" + 0");
    else if (dialect == Dialect::Mysql && column.kind == FieldKind::Bits)
        expression = QStringLiteral("BIN(%1)").arg(expression);
    columns.push_back(column);
    expressions.append(expression);
    nullable.push_back(canBeNull);
}

KeyPart TableDescription::keyPart(int field, Dialect dialect) const
{
    return {source + u'.' + quotedName(columns[size_t(field)].name, dialect), field, nullable[size_t(field)]};
}

bool TableDescription::describeSqlite(const Connection &connection, const QString &name)
{
    const QString caption = QStringLiteral("table \"%1\"").arg(name);
    source = quotedName(name, Dialect::Sqlite);
    QSqlQuery info = connection.query(
        QStringLiteral("SELECT name, type, \"notnull\", pk, hidden FROM pragma_table_xinfo(?)"), {name}, caption);
    std::map<int, KeyPart> key;
    while (info.next()) {
        constexpr int kHiddenInVirtualTable = 1;
        if (info.value(4).toInt() == kHiddenInVirtualTable)
            continue;
        Column column;
        column.name = info.value(0).toString();
        column.declaredType = info.value(1).toString();
        column.kind = kindOfDeclaredType(column.declaredType);
        addColumn(column, info.value(2).toInt() == 0, Dialect::Sqlite);
        if (info.value(3).toInt() > 0)
            key[info.value(3).toInt()] = keyPart(int(columns.size()) - 1, Dialect::Sqlite);
    }
    if (info.lastError().isValid())
        connection.fail(info.lastError(), caption);
    if (columns.empty())
        return false;
    for (const auto &[place, part] : key)
        primaryKey.push_back(part);

    QSqlQuery master = connection.query(
        QStringLiteral("SELECT sql FROM sqlite_master WHERE type = 'table' AND name = ? COLLATE NOCASE"), {name},
        caption);
    if (!master.next())
        return true;
    const QString sql = master.value(0).toString();
    master.finish();
    // A column of that name hides the row number; a table without row numbers refuses the statement.
    for (const QLatin1String hidden : {QLatin1String("rowid"), QLatin1String("_rowid_"), QLatin1String("oid")}) {
        if (std::any_of(columns.begin(), columns.end(),
                        [&](const Column &column) { return column.name.compare(hidden, Qt::CaseInsensitive) == 0; }))
            continue;
        QSqlQuery probe = connection.newQuery();
        if (probe.exec(QStringLiteral("SELECT %1.%2 FROM %1 LIMIT 0").arg(source, hidden)))
            rowNumber = source + u'.' + hidden;
        break;
    }
    if (rowNumber.isEmpty()) {
        for (KeyPart &part : primaryKey)
            part.nullable = false; // such a table has no nulls in its key
    } else if (primaryKey.size() == 1) {
        Column &column = columns[size_t(primaryKey[0].field)];
        if (column.declaredType.compare(QLatin1String("INTEGER"), Qt::CaseInsensitive) == 0) {
            primaryKey[0].nullable = false; // it is the row number
            const std::vector<SqlPiece> pieces = sqlPieces(sql, Dialect::Sqlite);
            if (std::any_of(pieces.begin(), pieces.end(), [&](const SqlPiece &piece) {
                    return piece.kind == SqlPiece::Word &&
                           QStringView(sql)
                                   .mid(piece.begin, piece.end - piece.begin)
                                   .compare(u"AUTOINCREMENT", Qt::CaseInsensitive) == 0;
                }))
                column.kind = FieldKind::AutoInc;
        }
    }
    return true;
}

bool TableDescription::describePostgres(const Connection &connection, const QString &name)
{
    const QString caption = QStringLiteral("table \"%1\"").arg(name);
    const auto rows = [&](const QString &sql) { return connection.query(sql, {}, caption); };
    const auto literal = [&](const QString &text) {
        QVariantList none;
        return connection.bound(text, none);
    };
    // The whole text as a name first, then every way to part it into schema and table.
    QString oid;
    QString kind;
    bool hasChildren = false;
    for (qsizetype point = -1; oid.isEmpty();) {
        const QString table = name.mid(point + 1);
        const QString schema = name.left(std::max<qsizetype>(point, 0));
        QSqlQuery found =
            rows(QStringLiteral("SELECT c.oid, c.relkind, c.relhassubclass, n.nspname FROM pg_class c "
                                "JOIN pg_namespace n ON n.oid = c.relnamespace "
                                "WHERE c.relkind IN ('r', 'v', 'm', 'f', 'p') AND c.relname = %1 AND %2")
                     .arg(literal(table), point < 0 ? QStringLiteral("pg_table_is_visible(c.oid)")
                                                    : QStringLiteral("n.nspname = %1").arg(literal(schema))));
        if (found.next()) {
            oid = found.value(0).toString();
            kind = found.value(1).toString();
            hasChildren = found.value(2).toBool();
            source = quotedName(found.value(3).toString(), Dialect::Postgres) + u'.' +
                     quotedName(table, Dialect::Postgres);
        }
        point = name.indexOf(u'.', point + 1);
        if (point < 0)
            break;
    }
    if (oid.isEmpty())
        return false;

    // A domain is what it is made of.
    QSqlQuery info =
        rows(QStringLiteral("WITH RECURSIVE base(attnum, type) AS (SELECT attnum, atttypid FROM pg_attribute "
                            "WHERE attrelid = %1 AND attnum > 0 AND NOT attisdropped UNION ALL "
                            "SELECT b.attnum, t.typbasetype FROM base b JOIN pg_type t ON t.oid = b.type "
                            "WHERE t.typtype = 'd') "
                            "SELECT a.attname, format_type(a.atttypid, a.atttypmod), format_type(b.type, NULL), "
                            "a.attnotnull, a.attidentity <> '' OR "
                            "COALESCE(pg_get_expr(d.adbin, d.adrelid) LIKE 'nextval(%', false), "
                            "(SELECT array_position(i.indkey::int[], a.attnum::int) FROM pg_index i "
                            "WHERE i.indrelid = a.attrelid AND i.indisprimary) "
                            "FROM pg_attribute a JOIN base b USING (attnum) JOIN pg_type t ON t.oid = b.type "
                            "LEFT JOIN pg_attrdef d ON d.adrelid = a.attrelid AND d.adnum = a.attnum "
                            "WHERE a.attrelid = %1 AND t.typtype <> 'd' ORDER BY a.attnum")
                 .arg(oid));
    std::map<int, KeyPart> key;
    while (info.next()) {
        Column column;
        column.name = info.value(0).toString();
        column.declaredType = info.value(1).toString();
        column.kind = kindOfDeclaredType(info.value(2).toString());
        if (info.value(2).toString() == u"bit") // the length is the column's
            column.kind = column.declaredType == u"bit(1)" ? FieldKind::Boolean : FieldKind::Bits;
        if (column.kind == FieldKind::Unknown)
            column.kind = FieldKind::String; // the driver makes texts of the rest
        if (isInteger(column.kind) && info.value(4).toBool())
            column.kind = FieldKind::AutoInc;
        addColumn(column, !info.value(3).toBool(), Dialect::Postgres);
        if (!info.value(5).isNull())
            key[info.value(5).toInt()] = keyPart(int(columns.size()) - 1, Dialect::Postgres);
    }
    if (info.lastError().isValid())
        connection.fail(info.lastError(), caption);
    // A SELECT of a table gives the rows of the tables that inherit from it too, and their keys may be the same.
    for (const auto &[place, part] : key)
        primaryKey.push_back(part);
    keyIsUnique = !hasChildren || kind == u"p";
    // A scan gives the rows in the order of their places, and can begin behind a place; sorting by it would take the
    // whole table.
    if ((kind == u"r" && !hasChildren) || kind == u"m") {
        rowNumber = source + QLatin1String(".ctid");
        rowNumberIsScan = true;
    }
    return true;
}

bool TableDescription::describeMysql(const Connection &connection, const QString &name)
{
    const QString caption = QStringLiteral("table \"%1\"").arg(name);
    // The whole text as a name first, then every way to part it into database and table.
    for (qsizetype point = -1;;) {
        const QString table = name.mid(point + 1);
        const QString schema = name.left(std::max<qsizetype>(point, 0));
        QVariantList values{table};
        if (point >= 0)
            values.append(schema);
        QSqlQuery info = connection.query(
            QStringLiteral("SELECT c.COLUMN_NAME, c.COLUMN_TYPE, c.IS_NULLABLE, c.EXTRA, s.SEQ_IN_INDEX "
                           "FROM information_schema.COLUMNS c LEFT JOIN information_schema.STATISTICS s "
                           "ON s.TABLE_SCHEMA = c.TABLE_SCHEMA AND s.TABLE_NAME = c.TABLE_NAME "
                           "AND s.COLUMN_NAME = c.COLUMN_NAME AND s.INDEX_NAME = 'PRIMARY' "
                           "WHERE c.TABLE_NAME = ? AND c.TABLE_SCHEMA = %1 ORDER BY c.ORDINAL_POSITION")
                .arg(point < 0 ? QStringLiteral("DATABASE()") : QStringLiteral("?")),
            values, caption);
        source = point < 0 ? quotedName(table, Dialect::Mysql)
                           : quotedName(schema, Dialect::Mysql) + u'.' + quotedName(table, Dialect::Mysql);
        std::map<int, KeyPart> key;
        while (info.next()) {
            Column column;
            column.name = info.value(0).toString();
            column.declaredType = info.value(1).toString();
            column.kind = kindOfDeclaredType(column.declaredType);
            if (column.kind == FieldKind::Unknown)
                column.kind = FieldKind::String; // the driver makes texts of the rest
            if (isInteger(column.kind) && info.value(3).toString().contains(QLatin1String("auto_increment")))
                column.kind = FieldKind::AutoInc;
            addColumn(column, info.value(2).toString() != u"NO", Dialect::Mysql);
            if (!info.value(4).isNull())
                key[info.value(4).toInt()] = keyPart(int(columns.size()) - 1, Dialect::Mysql);
        }
        if (info.lastError().isValid())
            connection.fail(info.lastError(), caption);
        for (const auto &[place, part] : key)
            primaryKey.push_back(part);
        point = name.indexOf(u'.', point + 1);
        if (!columns.empty() || point < 0)
            return !columns.empty();
    }
}

bool TableDescription::describeOther(const Connection &connection, const QString &name)
{
    const Dialect dialect = connection.dialect();
    source = quotedName(name, dialect);
    const QSqlRecord record = connection.database().record(name);
    for (int i = 0; i < record.count(); ++i) {
        Column column;
        column.name = record.fieldName(i);
        column.kind = kindOfMetaType(record.field(i).metaType());
        addColumn(column, true, dialect);
    }
    const QSqlIndex key = connection.database().primaryIndex(name);
    for (int i = 0; i < key.count(); ++i) {
        const int field = record.indexOf(key.fieldName(i));
        if (field >= 0)
            primaryKey.push_back({expressions[field], field, false});
    }
    return !columns.empty();
}

QString filterCondition(const QString &filter, Dialect dialect)
{
    if (filter.trimmed().isEmpty())
        return {};
    checkCondition(filter, dialect);
    // A comment at the end of the condition ends with its line.
    return QStringLiteral("(%1\n)").arg(filter);
}

} // namespace nuvo
