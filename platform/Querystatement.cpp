// SPDX-License-Identifier: MIT
#include "platform/Querystatement.h"

#include "platform/Errors.h"

#include <QRegularExpression>
#include <QSqlError>

#include <algorithm>

namespace nuvo {

namespace {

/// A view's doubled column names are told apart by ":1", ":2", …
QString nameBeforeNumbering(const QString &name, const std::vector<Column> &before)
{
    static const QRegularExpression numbered(QStringLiteral("^(.*):[0-9]+$"),
                                             QRegularExpression::DotMatchesEverythingOption);
    const QString plain = numbered.match(name).captured(1);
    const bool doubled = std::any_of(before.begin(), before.end(), [&](const Column &column) {
        return column.name.compare(plain, Qt::CaseInsensitive) == 0;
    });
    return doubled ? plain : name;
}

} // namespace

QString queryCaption(const QString &sql)
{
    return QStringLiteral("query \"%1\"").arg(sql.section(u'\n', 0, 0).trimmed());
}

Select selectOf(const Connection &connection, const ReadingStatement &statement, const QVariantMap &params,
                const QString &caption)
{
    Select select;
    QStringList places;
    for (const QString &name : statement.parameters) {
        const auto value = params.constFind(name.toLower());
        if (value == params.constEnd())
            throw EDatabaseError(QStringLiteral("The parameter \"%1\" of %2 has no value.").arg(name, caption));
        places.append(connection.bound(*value, select.values));
    }
    select.sql = statement.with(places);
    select.cursor = statement.wrappable;
    return select;
}

std::vector<Column> describeStatement(const Connection &connection, const ReadingStatement &statement)
{
    std::vector<Column> columns;
    if (connection.dialect() != Dialect::Sqlite)
        return columns;
    // SQLite tells where a result's columns come from only of a view. This one is seen by this connection alone and
    // needs no right to write; a parameter has no place in it, and none is needed for a type.
    const QString view = QStringLiteral("nuvo_described");
    QSqlQuery create = connection.newQuery();
    const QStringList nulls(statement.parameters.size(), QStringLiteral("NULL"));
    if (!create.exec(QStringLiteral("CREATE TEMP VIEW %1 AS %2").arg(view, statement.with(nulls))))
        return columns; // the statement itself will say what is wrong with it
    QSqlQuery info = connection.newQuery();
    if (info.exec(QStringLiteral("SELECT name, type FROM pragma_table_xinfo('%1', 'temp')").arg(view))) {
        while (info.next()) {
            Column column;
            column.name = nameBeforeNumbering(info.value(0).toString(), columns);
            column.declaredType = info.value(1).toString();
            column.kind = kindOfDeclaredType(column.declaredType);
            columns.push_back(column);
        }
        if (info.lastError().isValid())
            columns.clear();
    }
    info.finish();
    QSqlQuery(connection.database()).exec(QStringLiteral("DROP VIEW temp.%1").arg(view));
    return columns;
}

} // namespace nuvo
