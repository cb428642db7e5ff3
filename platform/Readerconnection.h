// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Canceller.h"
#include "platform/Connection.h"
#include "platform/Libsqlite.h"

#include <atomic>
#include <mutex>

namespace nuvo {

/// A connection of its own for a reader in a thread, whose statements another thread can end, as Canceller does.
class ReaderConnection : public Connection
{
public:
    ReaderConnection() = default;
    ~ReaderConnection() { close(); }

    /// As Connection::openBeside(). \throws EDatabaseError
    void open(const QString &databaseName);
    void close();

    /// From another thread, at any time: ends the statement that is under way, of SQLite the next one, too. To a
    /// server one that comes between two statements says nothing, so it is called again until the reader has ended.
    void cancel();
    /// Whether it was ever called.
    bool isCancelled() const { return cancelled_; }
    /// \throws EDatabaseError where it was. \param what is read
    void checkCancelled(const QString &what) const;

    /// SQLite's library, and its handle, for the reader's thread; null for other databases, and while it is closed.
    const Libsqlite *library() const { return library_; }
    sqlite3 *sqlite() const { return sqlite_; }

private:
    std::mutex mutex_; ///< while what follows is used by cancel() or changes
    std::atomic<bool> cancelled_{false};
    Canceller canceller_;
    const Libsqlite *library_ = nullptr;
    sqlite3 *sqlite_ = nullptr;
};

} // namespace nuvo
