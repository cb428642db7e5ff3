// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Canceller.h"
#include "platform/Connection.h"
#include "platform/Export.h"

#include <QString>
#include <QVariantList>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace nuvo {

/// Statements that belong together and return a few numbers each, on a connection of their own, in one transaction
/// that only reads: where the engine can, all of them see the same records. For one thread, which need not be that of
/// the application.
class NUVO_EXPORT ServerSession
{
public:
    ServerSession() = default;
    ServerSession(const ServerSession &) = delete;
    ServerSession &operator=(const ServerSession &) = delete;
    ~ServerSession();

    /// Connects and begins. \throws EDatabaseError with one sentence; likewise the others.
    void open(const QString &databaseName);
    const Connection &connection() const { return connection_; }

    /// The rows of a statement as numbers, at most so many (-1 for all); a NaN where there is none.
    std::vector<std::vector<double>> rows(const QString &sql, const QVariantList &values, const QString &caption,
                                          qint64 most = -1);
    /// Why a statement fails, as half a sentence, tried in a transaction of its own; empty where it does not. The
    /// transaction of this object is over then.
    QString whyNot(const QString &sql);
    /// Whether the statement that has failed was cut short by the loss of the connection to this server.
    bool isLost();
    /// Ends the transaction, in which nothing was written, and disconnects.
    void close();

    /// Ends the statement that is under way and refuses further ones, from another thread and at any time. PostgreSQL
    /// and MySQL are asked over a second connection; elsewhere the statement goes on to its end.
    void cancel();
    bool cancelled() const { return cancelled_; }

private:
    void begin();
    void askToEnd();

    QString databaseName_;
    Connection connection_;
    std::atomic<bool> cancelled_{false};
    std::mutex mutex_; ///< for what follows
    std::condition_variable changed_;
    bool running_ = false; ///< a statement
    bool closed_ = true;
    Canceller canceller_;
    qint64 session_ = 0; ///< its number to the server, where the driver cannot ask it; 0 for none
    std::thread asking_;
};

} // namespace nuvo
