// SPDX-License-Identifier: MIT
#include "platform/Query.h"

#include "platform/Connection.h"
#include "platform/Errors.h"
#include "platform/Formfolder.h"
#include "platform/Querystatement.h"
#include "platform/Scan.h"

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

nuvo::ScanSource TQuery::Source() const
{
    nuvo::ScanSource source;
    source.databaseName = nuvo::databasePlace(DatabaseName(), nuvo::formFolder(*this));
    source.sql = sql_;
    source.params = params_;
    return source;
}

QString TQuery::Caption() const
{
    return nuvo::queryCaption(sql_);
}

std::vector<nuvo::Column> TQuery::Describe(const nuvo::Connection &connection)
{
    return nuvo::describeStatement(connection, nuvo::readingStatement(sql_, connection.dialect()));
}

nuvo::Select TQuery::SelectFrom(const nuvo::Connection &connection, const nuvo::ReadPosition &position)
{
    nuvo::Select select =
        nuvo::selectOf(connection, nuvo::readingStatement(sql_, connection.dialect()), params_, Caption());
    select.skip = position.row;
    return select;
}

nuvo::Select TQuery::CountStatement(const nuvo::Connection &connection)
{
    const nuvo::ReadingStatement statement = nuvo::readingStatement(sql_, connection.dialect());
    if (!statement.wrappable)
        return {};
    nuvo::Select select = nuvo::selectOf(connection, statement, params_, Caption());
    select.sql = QStringLiteral("SELECT COUNT(*) FROM (%1) AS nuvo_counted").arg(select.sql);
    select.optional = true;
    return select;
}
