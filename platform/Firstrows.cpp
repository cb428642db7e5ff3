// SPDX-License-Identifier: MIT
#include "platform/Firstrows.h"

#include "platform/Errors.h"
#include "platform/Querystatement.h"
#include "platform/Readerconnection.h"
#include "platform/Resultcolumns.h"
#include "platform/Rowsource.h"
#include "platform/Statementerror.h"

namespace nuvo {

class FirstRows::Private
{
public:
    void readRows();

    ScanSource source;
    int wanted = 0;
    ReaderConnection connection;
    std::vector<Column> columns;
    std::vector<QVariantList> rows;
    bool more = false;
    QStringList nullParameters;
    qsizetype errorPosition = -1;
};

void FirstRows::Private::readRows()
{
    const ReadingStatement statement = readingStatement(source.sql, connection.dialect());
    QVariantMap params = source.params;
    for (const QString &name : statement.parameters) {
        if (!params.contains(name.toLower())) {
            params.insert(name.toLower(), QVariant());
            nullParameters += name;
        }
    }
    const QString caption = queryCaption(source.sql);
    try {
        columns = describeStatement(connection, statement);
        const std::unique_ptr<RowSource> read =
            RowSource::open(connection, selectOf(connection, statement, params, caption), caption);
        if (columns.empty())
            columns = read->columns();
        while (!connection.isCancelled() && read->next()) {
            if (int(rows.size()) == wanted) {
                more = true;
                break;
            }
            QVariantList row;
            for (int column = 0; column < int(columns.size()); ++column)
                row += read->value(column);
            rows.push_back(row);
        }
    } catch (const EDatabaseError &) {
        if (!connection.isCancelled())
            errorPosition = statementErrorPosition(connection, source.sql);
        throw;
    }
    makeNamesUnique(columns);
    takeKindsOfValues(columns, rows);
    for (Column &column : columns) {
        if (column.kind == FieldKind::Unknown)
            column.kind = FieldKind::Float;
    }
}

FirstRows::FirstRows(ScanSource source, int rows) : d_(std::make_unique<Private>())
{
    d_->source = std::move(source);
    d_->wanted = rows;
}

FirstRows::~FirstRows() = default;

bool FirstRows::read()
{
    ReaderConnection &connection = d_->connection;
    try {
        if (!connection.isCancelled())
            connection.open(d_->source.databaseName);
        if (!connection.isCancelled())
            d_->readRows();
    } catch (...) {
        connection.close();
        if (!connection.isCancelled())
            throw;
    }
    connection.close();
    return !connection.isCancelled();
}

void FirstRows::cancel()
{
    d_->connection.cancel();
}

const std::vector<Column> &FirstRows::columns() const
{
    return d_->columns;
}

const std::vector<QVariantList> &FirstRows::rows() const
{
    return d_->rows;
}

bool FirstRows::more() const
{
    return d_->more;
}

const QStringList &FirstRows::nullParameters() const
{
    return d_->nullParameters;
}

qsizetype FirstRows::errorPosition() const
{
    return d_->errorPosition;
}

} // namespace nuvo
