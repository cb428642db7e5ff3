// SPDX-License-Identifier: MIT
#include "platform/Rowsource.h"

#include "platform/Errors.h"
#include "platform/Resultcolumns.h"

#include <QSqlError>

#include <algorithm>
#include <atomic>

namespace nuvo {

namespace {

/// A statement that the driver itself reads row by row.
class PlainSource : public RowSource
{
public:
    PlainSource(const Connection &connection, const Select &select, const QString &caption)
        : RowSource(connection, caption)
    {
        query_ = connection.query(select.sql, select.values, caption);
        if (select.skip > 0 && !query_.seek(int(select.skip) - 1))
            checkError();
    }

    bool next() override
    {
        const AnswerLimit::Wait wait = connection_.waiting();
        if (query_.next())
            return true;
        checkError();
        return false;
    }

private:
    void checkError() const
    {
        if (query_.lastError().isValid())
            connection_.fail(query_.lastError(), caption_);
    }
};

/// A cursor of the server in a transaction that only reads: neither server nor driver holds more than a batch of rows
/// for us, and other statements on the connection do not disturb it.
class CursorSource : public RowSource
{
public:
    CursorSource(const Connection &connection, const Select &select, const QString &caption)
        : RowSource(connection, caption)
    {
        static std::atomic<int> count{0};
        name_ = QStringLiteral("nuvo_scan_%1").arg(++count);
        // On a registered connection the program's transaction may be under way; it is the program's to end.
        inside_ = !connection.isOwn() && savepoint();
        if (!inside_)
            exec(QStringLiteral("BEGIN READ ONLY"));
        began_ = !inside_;
        try {
            if (began_ && select.limited == false && !select.keyColumns.empty())
                exec(QStringLiteral("SET LOCAL cursor_tuple_fraction = 0")); // the first rows matter, by the index
            exec(QStringLiteral("DECLARE %1 NO SCROLL CURSOR FOR %2").arg(name_, select.sql));
            if (select.skip > 0)
                exec(QStringLiteral("MOVE FORWARD %1 IN %2").arg(select.skip).arg(name_));
            if (inside_)
                release();
        } catch (...) {
            end(false);
            throw;
        }
    }

    ~CursorSource() override { end(true); }

    bool next() override
    {
        if (query_.isActive() && query_.next())
            return true;
        if (fetched_ >= 0 && fetched_ < asked_)
            return false;
        return fetch();
    }

    bool isLost() const override { return lost_; }

    std::vector<Column> columns() override
    {
        const AnswerLimit::Wait wait = connection_.waiting();
        QSqlQuery query(connection_.database());
        if (!query.exec(QStringLiteral("FETCH FORWARD 0 FROM %1").arg(name_)))
            connection_.fail(query.lastError(), caption_);
        return columnsOf(query, connection_.dialect());
    }

private:
    static constexpr qint64 kMaxBatch = 1024;
    static constexpr qint64 kBatchBytes = qint64(1) << 20;

    bool fetch()
    {
        if (inside_ && !savepoint()) {
            lost_ = true;
            return false;
        }
        asked_ = asked_ == 0 ? 4 : std::min(2 * asked_, kMaxBatch);
        asked_ = std::clamp(kBatchBytes / std::max<qint64>(rowBytes_, 1), qint64(1), asked_);
        const AnswerLimit::Wait wait = connection_.waiting();
        query_ = QSqlQuery(connection_.database());
        // As text: the driver makes a null of a decimal that a double cannot hold.
        query_.setNumericalPrecisionPolicy(QSql::HighPrecision);
        if (!query_.exec(QStringLiteral("FETCH FORWARD %1 FROM %2").arg(asked_).arg(name_))) {
            const QSqlError error = query_.lastError();
            if (inside_)
                rollBack();
            if (inside_ && error.nativeErrorCode() == u"34000") { // invalid_cursor_name
                lost_ = true;
                return false;
            }
            connection_.fail(error, caption_);
        }
        fetched_ = query_.size();
        if (inside_)
            release();
        return query_.next();
    }

    void exec(const QString &sql)
    {
        const AnswerLimit::Wait wait = connection_.waiting();
        QSqlQuery query(connection_.database());
        if (!query.exec(sql))
            connection_.fail(query.lastError(), caption_);
    }
    bool tryExec(const QString &sql)
    {
        const AnswerLimit::Wait wait = connection_.waiting();
        return QSqlQuery(connection_.database()).exec(sql);
    }
    /// False where no transaction is under way.
    bool savepoint()
    {
        const AnswerLimit::Wait wait = connection_.waiting();
        QSqlQuery query(connection_.database());
        if (query.exec(QStringLiteral("SAVEPOINT nuvo_scan")))
            return true;
        if (query.lastError().nativeErrorCode() != u"25P01") // no_active_sql_transaction
            connection_.fail(query.lastError(), caption_);
        return false;
    }
    void release() { tryExec(QStringLiteral("RELEASE SAVEPOINT nuvo_scan")); }
    void rollBack()
    {
        tryExec(QStringLiteral("ROLLBACK TO SAVEPOINT nuvo_scan"));
        release();
    }

    void end(bool declared)
    {
        query_ = QSqlQuery();
        // Some functions write in a transaction that only reads (lo_create): nothing of that is to stay.
        if (began_)
            tryExec(QStringLiteral("ROLLBACK"));
        else if (!declared)
            rollBack();
        else if (!lost_ && tryExec(QStringLiteral("SAVEPOINT nuvo_scan"))) {
            if (tryExec(QStringLiteral("CLOSE %1").arg(name_)))
                release();
            else
                rollBack();
        }
    }

    QString name_;
    bool inside_ = false;
    bool began_ = false;
    bool lost_ = false;
    qint64 asked_ = 0;
    qint64 fetched_ = -1;
};

} // namespace

RowSource::RowSource(const Connection &connection, const QString &caption)
    : connection_(connection), caption_(caption)
{
}

RowSource::~RowSource() = default;

std::vector<Column> RowSource::columns()
{
    return columnsOf(query_, connection_.dialect());
}

std::unique_ptr<RowSource> RowSource::open(const Connection &connection, const Select &select, const QString &caption)
{
    if (connection.dialect() == Dialect::Postgres && select.cursor)
        return std::make_unique<CursorSource>(connection, select, caption);
    return std::make_unique<PlainSource>(connection, select, caption);
}

} // namespace nuvo
