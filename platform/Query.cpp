#include "platform/Query.h"

#include "platform/Connection.h"
#include "platform/Errors.h"
#include "platform/Fieldtypes.h"
#include "platform/Rowsource.h"

#include <QRegularExpression>
#include <QSqlError>

#include <algorithm>

namespace {

/// The statement with its parameters' values.
nuvo::Select selectOf(const nuvo::Connection &connection, const nuvo::ReadingStatement &statement,
                      const QVariantMap &params, const QString &caption)
{
    nuvo::Select select;
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

/// A view's doubled column names are told apart by ":1", ":2", …
QString nameBeforeNumbering(const QString &name, const std::vector<nuvo::Column> &before)
{
    static const QRegularExpression numbered(QStringLiteral("^(.*):[0-9]+$"),
                                             QRegularExpression::DotMatchesEverythingOption);
    const QString plain = numbered.match(name).captured(1);
    const bool doubled = std::any_of(before.begin(), before.end(), [&](const nuvo::Column &column) {
        return column.name.compare(plain, Qt::CaseInsensitive) == 0;
    });
    return doubled ? plain : name;
}

} // namespace

TQuery::TQuery(QWidget *owner) : TDataSet(owner) {}

TQuery::~TQuery() = default;

QString TQuery::SQL() const
{
    return sql_;
}

void TQuery::SetSQL(const QString &text)
{
    if (text == sql_)
        return;
    Forget();
    sql_ = text;
    params_.clear();
}

QStringList TQuery::SQLLines() const
{
    return sql_.isEmpty() ? QStringList() : sql_.split(u'\n');
}

void TQuery::SetSQLLines(const QStringList &lines)
{
    SetSQL(lines.join(u'\n'));
}

QVariant TQuery::Param(const QString &name) const
{
    return params_.value(name.toLower());
}

void TQuery::SetParam(const QString &name, const QVariant &value)
{
    params_.insert(name.toLower(), value);
}

QStringList TQuery::ParamNames() const
{
    return nuvo::parameterNames(sql_, nuvo::Dialect::Other);
}

QString TQuery::Caption() const
{
    return QStringLiteral("query \"%1\"").arg(sql_.section(u'\n', 0, 0).trimmed());
}

std::vector<nuvo::Column> TQuery::Describe(const nuvo::Connection &connection)
{
    const nuvo::ReadingStatement statement = nuvo::readingStatement(sql_, connection.dialect());
    std::vector<nuvo::Column> columns;
    if (connection.dialect() != nuvo::Dialect::Sqlite)
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
            nuvo::Column column;
            column.name = nameBeforeNumbering(info.value(0).toString(), columns);
            column.declaredType = info.value(1).toString();
            column.kind = nuvo::kindOfDeclaredType(column.declaredType);
            columns.push_back(column);
        }
        if (info.lastError().isValid())
            columns.clear();
    }
    info.finish();
    QSqlQuery(connection.database()).exec(QStringLiteral("DROP VIEW temp.%1").arg(view));
    return columns;
}

nuvo::Select TQuery::SelectFrom(const nuvo::Connection &connection, const nuvo::ReadPosition &position)
{
    nuvo::Select select =
        selectOf(connection, nuvo::readingStatement(sql_, connection.dialect()), params_, Caption());
    select.skip = position.row;
    return select;
}

nuvo::Select TQuery::CountStatement(const nuvo::Connection &connection)
{
    const nuvo::ReadingStatement statement = nuvo::readingStatement(sql_, connection.dialect());
    if (!statement.wrappable)
        return {};
    nuvo::Select select = selectOf(connection, statement, params_, Caption());
    select.sql = QStringLiteral("SELECT COUNT(*) FROM (%1) AS nuvo_counted").arg(select.sql);
    select.optional = true;
    return select;
}
