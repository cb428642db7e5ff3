// SPDX-License-Identifier: MIT
#pragma once

#include "app/Columntype.h"
#include "app/Console.h"
#include "platform/Connection.h"

#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <optional>
#include <vector>

namespace nuvo {

struct NewColumn
{
    QString name;
    ColumnType type = ColumnType::Text;
};

/// A table that is made whole or not at all: in one transaction of an SQLite file or a PostgreSQL database, in which
/// an old table is replaced too. Unless it is committed, its end undoes everything, and an SQLite file that was made
/// for it is removed. While it lives, a signal to end is held back and comes as Interrupted.
///
/// \throws from every operation: EDatabaseError with one sentence, Interrupted.
class NewTable
{
public:
    NewTable(QString database, QString table);
    NewTable(const NewTable &) = delete;
    NewTable &operator=(const NewTable &) = delete;
    ~NewTable();

    /// Opens the database, or makes the SQLite file that is not there, and makes the table without rows. The key
    /// columns, if any, become its primary key.
    /// \param replace whether a table of that name may be there; it is dropped then
    void create(const std::vector<NewColumn> &columns, const QStringList &key, bool replace);
    /// Appends a row: a value for each column, qlonglong, double or QString as its type says, or a null.
    void add(const QVariantList &row);
    void commit();

    /// The type of a column as the database calls it.
    QString typeName(ColumnType type) const;

private:
    bool sqlite() const { return connection_.dialect() == Dialect::Sqlite; }
    QString quoted(const QString &name) const { return quotedName(name, connection_.dialect()); }
    [[noreturn]] void fail(const QSqlError &error) const;
    void execute(const QString &sql) const;
    QVariant ask(const QString &sql, const QString &value) const;
    QString kindOf(const QString &name) const;
    QString findTarget();
    void refuseLongName(const QString &name) const;
    void prepareInsert(const std::vector<NewColumn> &columns);
    void gather(const QVariantList &row);
    void sendGathered();
    void undo();

    const QString database_;
    const QString table_;
    InterruptHold hold_;
    Connection connection_;
    QString target_; ///< the table's quoted name, with its schema where that is told
    std::optional<QSqlQuery> insert_;
    std::vector<QString> gathered_; ///< values of each column for a server, parted by commas
    qsizetype gatheredLength_ = 0;
};

} // namespace nuvo
