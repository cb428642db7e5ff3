// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Answerlimit.h"
#include "platform/Export.h"
#include "platform/Sqltext.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariantList>

#include <memory>

class QSqlError;

namespace nuvo {

/// What a DatabaseName leads to: a registered QSqlDatabase, used as it is, or a connection of its own to an SQLite
/// file or a server, whose session only reads.
class NUVO_EXPORT Connection
{
public:
    Connection() = default;
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;
    ~Connection();

    enum class Access {
        Read,
        Write, ///< a session that may write; an SQLite file that is not there is made, empty
    };

    /// \throws EDatabaseError with one sentence: no such file, no permission, no such driver or server …; a server's
    /// own words are in it, a password never is. A password is for this connection to a server alone; without one the
    /// program's is taken (platform/Passwords.h), and EPasswordError thrown where the server wants another.
    /// \param formFolder where the path of a file is looked for first (platform/Formfolder.h).
    void open(const QString &databaseName, Access access = Access::Read, const QString &password = {},
              const QString &formFolder = {});
    /// The same for a reader in a thread of its own: where the name is that of a registered connection, a connection
    /// of its own to the same database.  \throws EDatabaseError also for a database that is in memory alone.
    void openBeside(const QString &databaseName);
    /// Removes a connection of its own; a registered one stays open.
    void close();
    bool isOpen() const { return open_ && database_.isOpen(); }
    /// Whether this made the connection.
    bool isOwn() const { return own_; }
    /// The SQLite file that open() made; empty when it was there before.
    const QString &madeFile() const { return madeFile_; }
    Dialect dialect() const { return dialect_; }
    const QSqlDatabase &database() const { return database_; }

    /// The database as messages name it.
    QString caption() const;

    /// Held while an answer of the database is waited for: where the address sets a read_timeout, a server that stays
    /// silent for longer is given up, with an error of the statement.
    AnswerLimit::Wait waiting() const { return AnswerLimit::Wait(limit_.get()); }

    /// A statement that is read once, forward.
    QSqlQuery newQuery() const;
    /// Executes a short statement with values for its "?".
    /// \throws EDatabaseError "Cannot read <what>: <reason>."
    QSqlQuery query(const QString &sql, const QVariantList &values, const QString &what) const;

    /// How a value stands in a statement: "?" with the value appended to values, or itself as a literal where the
    /// driver cannot bind (a server's cursor).
    QString bound(const QVariant &value, QVariantList &values) const;

    /// What the driver says, as half a sentence: its first line, without its own decoration.
    QString reason(const QSqlError &error) const;
    /// \throws EDatabaseError "Cannot read <what>: <reason>."
    [[noreturn]] void fail(const QSqlError &error, const QString &what) const;

private:
    void openSqlite(const QString &path, Access access, const QString &formFolder);
    void openServer(const QString &url, Access access, const QString &password);
    void openOwn(const QString &driver, const QString &package);
    void set(Access access, int readTimeout);
    bool wantsPassword(const QSqlError &error, int connectTimeout) const;
    [[noreturn]] void refuseServer(const QSqlError &error, bool forPassword = false);

    QSqlDatabase database_;
    QString name_;
    QString madeFile_;
    std::unique_ptr<AnswerLimit> limit_;
    Dialect dialect_ = Dialect::Other;
    int readTimeout_ = 0; ///< of MySQL, in seconds; 0 for none
    bool open_ = false;
    bool own_ = false;
};

/// Names of the tables and views that a user of the database sees, sorted; with their schema where they need one.
/// \throws EDatabaseError when the database cannot be read.
QStringList tableNames(const Connection &connection);

} // namespace nuvo
