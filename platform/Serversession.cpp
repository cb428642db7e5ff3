// SPDX-License-Identifier: MIT
#include "platform/Serversession.h"

#include "platform/Errors.h"
#include "platform/Quietthread.h"
#include "platform/Rowsource.h"

#include <QSqlError>

#include <chrono>
#include <limits>

namespace nuvo {

namespace {

/// While one lives a statement is under way.
class Running
{
public:
    Running(std::mutex &mutex, std::condition_variable &changed, bool &running)
        : mutex_(mutex), changed_(changed), running_(running)
    {
        set(true);
    }
    Running(const Running &) = delete;
    Running &operator=(const Running &) = delete;
    ~Running() { set(false); }

private:
    void set(bool running)
    {
        {
            const std::lock_guard lock(mutex_);
            running_ = running;
        }
        changed_.notify_all();
    }

    std::mutex &mutex_;
    std::condition_variable &changed_;
    bool &running_;
};

} // namespace

ServerSession::~ServerSession()
{
    close();
    if (asking_.joinable())
        asking_.join();
}

void ServerSession::open(const QString &databaseName)
{
    databaseName_ = databaseName;
    connection_.openBeside(databaseName);
    {
        const std::lock_guard lock(mutex_);
        closed_ = false;
        canceller_.use(connection_.database());
    }
    QString number;
    if (!canceller_.isUsed()) { // over ODBC
        if (connection_.dialect() == Dialect::Mysql)
            number = QStringLiteral("SELECT CONNECTION_ID()");
        else if (connection_.dialect() == Dialect::Postgres)
            number = QStringLiteral("SELECT pg_backend_pid()");
    }
    if (!number.isEmpty()) {
        const auto found = rows(number, {}, connection_.caption());
        const std::lock_guard lock(mutex_);
        session_ = found.empty() ? 0 : qint64(found[0][0]);
    }
    begin();
}

void ServerSession::begin()
{
    QString sql;
    if (connection_.dialect() == Dialect::Postgres)
        sql = QStringLiteral("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY");
    else if (connection_.dialect() == Dialect::Mysql)
        sql = QStringLiteral("START TRANSACTION WITH CONSISTENT SNAPSHOT, READ ONLY");
    if (!sql.isEmpty())
        connection_.query(sql, {}, connection_.caption());
}

std::vector<std::vector<double>> ServerSession::rows(const QString &sql, const QVariantList &values,
                                                     const QString &caption, qint64 most)
{
    if (cancelled_)
        throw EDatabaseError(QStringLiteral("Cannot read %1: it was ended.").arg(caption));
    const Running running(mutex_, changed_, running_);
    Select select;
    select.sql = sql;
    select.values = values;
    select.cursor = false;
    const std::unique_ptr<RowSource> source = RowSource::open(connection_, select, caption);
    std::vector<std::vector<double>> result;
    const int columns = int(source->columns().size());
    while ((most < 0 || qint64(result.size()) < most) && source->next()) {
        std::vector<double> &row = result.emplace_back();
        for (int column = 0; column < columns; ++column) {
            const QVariant value = source->value(column);
            bool isNumber = false;
            const double number = value.isNull() ? 0 : value.toDouble(&isNumber);
            row.push_back(isNumber ? number : std::numeric_limits<double>::quiet_NaN());
        }
    }
    return result;
}

QString ServerSession::whyNot(const QString &sql)
{
    const Running running(mutex_, changed_, running_);
    const AnswerLimit::Wait wait = connection_.waiting();
    connection_.newQuery().exec(QStringLiteral("ROLLBACK"));
    QSqlQuery query = connection_.newQuery();
    if (query.exec(sql)) {
        while (query.next()) {
        }
    }
    return query.lastError().isValid() ? connection_.reason(query.lastError()) : QString();
}

bool ServerSession::isLost()
{
    return !whyNot(QStringLiteral("SELECT 1")).isEmpty();
}

void ServerSession::close()
{
    {
        const std::lock_guard lock(mutex_);
        closed_ = true;
        canceller_.forget();
        session_ = 0;
    }
    changed_.notify_all();
    // Some functions write in a transaction that only reads: nothing of that is to stay.
    if (connection_.isOpen()) {
        const AnswerLimit::Wait wait = connection_.waiting();
        connection_.newQuery().exec(QStringLiteral("ROLLBACK"));
    }
    connection_.close();
}

void ServerSession::cancel()
{
    if (cancelled_.exchange(true))
        return;
    asking_ = quietThread([this] { askToEnd(); });
}

/// Asks until it is done: the server may hear it before the statement that it is to end.
void ServerSession::askToEnd()
{
    std::unique_lock lock(mutex_);
    while (!closed_) {
        if (!running_) {
            changed_.wait(lock, [this] { return closed_ || running_; });
            continue;
        }
        canceller_.cancel();
        if (session_ != 0) {
            try {
                Connection second;
                second.openBeside(databaseName_);
                const QString end = second.dialect() == Dialect::Mysql
                                        ? QStringLiteral("KILL QUERY %1")
                                        : QStringLiteral("SELECT pg_cancel_backend(%1)");
                second.query(end.arg(session_), {}, second.caption());
            } catch (const EPlatformError &) {
                session_ = 0; // it cannot be asked; the statement goes on to its end
            }
        }
        changed_.wait_for(lock, std::chrono::milliseconds(200), [this] { return closed_ || !running_; });
    }
}

} // namespace nuvo
