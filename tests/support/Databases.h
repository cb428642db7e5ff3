// SPDX-License-Identifier: MIT
#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QTemporaryDir>
#include <QVariantList>

#include <memory>

/// A database of its own for one test, and a connection of the test's own that writes into it.
class TestDatabase
{
public:
    enum Backend { Sqlite, Postgres, Mariadb };

    /// Mariadb only where MariadbServer::isInstalled().
    static std::unique_ptr<TestDatabase> make(Backend backend);
    /// On the PostgreSQL server with this URL.
    static std::unique_ptr<TestDatabase> makeOn(const QString &serverUrl);
    /// On the MariaDB server with this URL.
    static std::unique_ptr<TestDatabase> makeOnMariadb(const QString &serverUrl);
    virtual ~TestDatabase() = default;

    /// What a dataset's DatabaseName is set to.
    virtual QString name() const = 0;
    virtual Backend backend() const = 0;
    QSqlDatabase writer() const { return writer_; }

    /// Executes a statement; a failure is a test failure.
    void exec(const QString &sql, const QVariantList &values = {});
    /// Executes a statement and returns its first value.
    QVariant value(const QString &sql);
    /// A table of `rows` records: id from 1 (primary key), x0 … x(columns-1) as doubles, made by the engine itself.
    void makeNumbers(const QString &table, qint64 rows, int columns);
    /// The value that makeNumbers() puts into column `column` of the record with this id.
    static double number(qint64 id, int column) { return double((id * (column + 3)) % 1009) + 0.25 * double(column); }

protected:
    QSqlDatabase writer_;
};

/// How a parameterised test names its backends.
std::string backendName(TestDatabase::Backend backend);
