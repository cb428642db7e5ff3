// SPDX-License-Identifier: MIT
#include "platform/Firstrows.h"

#include "platform/Connection.h"
#include "platform/Errors.h"
#include "platform/Libpq.h"
#include "platform/Libsqlite.h"
#include "platform/Querystatement.h"
#include "platform/Resultcolumns.h"
#include "platform/Rowsource.h"
#include "platform/Statementerror.h"

#include <atomic>
#include <mutex>

namespace nuvo {

class FirstRows::Private
{
public:
    void connect();
    void disconnect();
    void readRows();

    ScanSource source;
    int wanted = 0;
    std::mutex cancelling; // while the handles below are used or change
    std::atomic<bool> cancelled{false};
    libpq::Canceller canceller;
    sqlite3 *sqlite = nullptr;
    const Libsqlite *library = nullptr;

    Connection connection;
    std::vector<Column> columns;
    std::vector<QVariantList> rows;
    bool more = false;
    QStringList nullParameters;
    qsizetype errorPosition = -1;
};

void FirstRows::Private::connect()
{
    connection.openBeside(source.databaseName);
    const std::lock_guard lock(cancelling);
    if (connection.dialect() == Dialect::Postgres)
        canceller.use(connection.database());
    library = connection.dialect() == Dialect::Sqlite ? Libsqlite::of(connection.database()) : nullptr;
    sqlite = library != nullptr ? Libsqlite::handleOf(connection.database()) : nullptr;
}

void FirstRows::Private::disconnect()
{
    const std::lock_guard lock(cancelling);
    canceller.forget();
    sqlite = nullptr;
    library = nullptr;
    connection.close();
}

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
        while (!cancelled && read->next()) {
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
        if (!cancelled)
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
    try {
        if (!d_->cancelled)
            d_->connect();
        if (!d_->cancelled)
            d_->readRows();
    } catch (...) {
        d_->disconnect();
        if (!d_->cancelled)
            throw;
    }
    d_->disconnect();
    return !d_->cancelled;
}

void FirstRows::cancel()
{
    const std::lock_guard lock(d_->cancelling);
    d_->cancelled = true;
    if (d_->sqlite != nullptr)
        d_->library->interrupt(d_->sqlite);
    d_->canceller.cancel();
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
