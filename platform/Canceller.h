// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

class QSqlDatabase;

namespace nuvo {

/// How a database is asked to end what a connection of it waits for.
struct CancelRequest
{
    std::function<void()> ask;
    bool takesTime = true; ///< a server is asked: usable on any thread, however long that takes
    int socket = -1;       ///< of the connection; -1 where it is not known
};

/// Ends, from another thread, the statement that a connection waits for. SQLite's library is told; a server of
/// PostgreSQL, MySQL or MariaDB is asked over a connection of its own. One that does not answer even that within some
/// seconds is given up: whoever waits sees a lost connection.
class Canceller
{
public:
    /// Does nothing where the driver is another one.
    void use(const QSqlDatabase &database);
    /// Called before the connection closes.
    void forget();
    /// Whether cancel() does something.
    bool isUsed() const { return order_ != nullptr; }
    /// Usable on any thread, not beside the two above. Does nothing where no database is in use. Waits until the
    /// server has heard it, and for a moment at most. One that comes between two statements is lost.
    void cancel() const;

private:
    struct Order;
    std::shared_ptr<Order> order_;
};

} // namespace nuvo
