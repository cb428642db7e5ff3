// SPDX-License-Identifier: MIT
#include "support/Databases.h"

#include "support/Mariadb.h"
#include "support/Postgres.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>
#include <QUuid>

#include <gtest/gtest.h>

namespace {

QString uniqueName(const QString &stem)
{
    return stem + QUuid::createUuid().toString(QUuid::Id128);
}

class SqliteDatabase : public TestDatabase
{
public:
    SqliteDatabase()
    {
        writer_ = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), uniqueName(QStringLiteral("writer")));
        writer_.setDatabaseName(name());
        EXPECT_TRUE(writer_.open()) << writer_.lastError().text().toStdString();
    }
    ~SqliteDatabase() override
    {
        const QString connection = writer_.connectionName();
        writer_ = QSqlDatabase();
        QSqlDatabase::removeDatabase(connection);
    }

    QString name() const override { return directory_.filePath(QStringLiteral("test.db")); }
    Backend backend() const override { return Sqlite; }

private:
    QTemporaryDir directory_;
};

class PostgresDatabase : public TestDatabase
{
public:
    explicit PostgresDatabase(const QString &serverUrl)
    {
        const QUrl server(serverUrl);
        if (server.isEmpty())
            return;
        admin_ = connect(server);
        database_ = uniqueName(QStringLiteral("test_"));
        QSqlQuery query(admin_);
        // From version 15 on it can be told to copy files, which takes half the time.
        const QString create = QStringLiteral("CREATE DATABASE %1").arg(database_);
        EXPECT_TRUE(query.exec(create + QStringLiteral(" STRATEGY FILE_COPY")) || query.exec(create))
            << query.lastError().text().toStdString();
        url_ = server;
        url_.setPath(QStringLiteral("/") + database_);
        writer_ = connect(url_);
    }
    ~PostgresDatabase() override
    {
        QSqlQuery(admin_).exec(QStringLiteral("DROP DATABASE IF EXISTS %1 WITH (FORCE)").arg(database_));
        for (QSqlDatabase *used : {&writer_, &admin_}) {
            const QString connection = used->connectionName();
            *used = QSqlDatabase();
            QSqlDatabase::removeDatabase(connection);
        }
    }

    QString name() const override { return url_.toString(); }
    Backend backend() const override { return Postgres; }

private:
    QSqlDatabase connect(const QUrl &url)
    {
        QSqlDatabase database =
            QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), uniqueName(QStringLiteral("test")));
        database.setHostName(url.host());
        database.setPort(url.port());
        database.setUserName(url.userName());
        database.setDatabaseName(url.path().mid(1));
        EXPECT_TRUE(database.open()) << database.lastError().text().toStdString();
        return database;
    }

    QSqlDatabase admin_;
    QString database_;
    QUrl url_;
};

class MariadbDatabase : public TestDatabase
{
public:
    explicit MariadbDatabase(const QUrl &server) : url_(server)
    {
        if (server.isEmpty())
            return;
        writer_ = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), uniqueName(QStringLiteral("test")));
        writer_.setHostName(server.host());
        writer_.setPort(server.port());
        writer_.setUserName(server.userName());
        EXPECT_TRUE(writer_.open()) << writer_.lastError().text().toStdString();
        const QString name = uniqueName(QStringLiteral("test_"));
        exec(QStringLiteral("CREATE DATABASE %1 CHARACTER SET utf8mb4").arg(name));
        exec(QStringLiteral("USE %1").arg(name));
        url_.setPath(QStringLiteral("/") + name);
    }
    ~MariadbDatabase() override
    {
        // A server that was killed takes it along.
        QSqlQuery(writer_).exec(QStringLiteral("DROP DATABASE IF EXISTS %1").arg(url_.path().mid(1)));
        const QString connection = writer_.connectionName();
        writer_ = QSqlDatabase();
        QSqlDatabase::removeDatabase(connection);
    }

    QString name() const override { return url_.toString(); }
    Backend backend() const override { return Mariadb; }

private:
    QUrl url_;
};

} // namespace

std::unique_ptr<TestDatabase> TestDatabase::make(Backend backend)
{
    if (backend == Sqlite)
        return std::make_unique<SqliteDatabase>();
    if (backend == Mariadb)
        return makeOnMariadb(MariadbServer::sharedUrl());
    return makeOn(PostgresServer::sharedUrl());
}

std::unique_ptr<TestDatabase> TestDatabase::makeOn(const QString &serverUrl)
{
    return std::make_unique<PostgresDatabase>(serverUrl);
}

std::unique_ptr<TestDatabase> TestDatabase::makeOnMariadb(const QString &serverUrl)
{
    return std::make_unique<MariadbDatabase>(QUrl(serverUrl));
}

void TestDatabase::exec(const QString &sql, const QVariantList &values)
{
    QSqlQuery query(writer_);
    bool ok = false;
    if (values.isEmpty()) {
        ok = query.exec(sql); // a statement that makes something cannot be prepared everywhere
    } else {
        ok = query.prepare(sql);
        for (const QVariant &value : values)
            query.addBindValue(value);
        ok = ok && query.exec();
    }
    EXPECT_TRUE(ok) << sql.toStdString() << ": " << query.lastError().text().toStdString();
}

QVariant TestDatabase::value(const QString &sql)
{
    QSqlQuery query(writer_);
    EXPECT_TRUE(query.exec(sql) && query.next())
        << sql.toStdString() << ": " << query.lastError().text().toStdString();
    return query.value(0);
}

void TestDatabase::makeNumbers(const QString &table, qint64 rows, int columns)
{
    QString declared = QStringLiteral("id INTEGER PRIMARY KEY");
    QString values = QStringLiteral("i");
    for (int column = 0; column < columns; ++column) {
        declared += QStringLiteral(", x%1 DOUBLE PRECISION").arg(column);
        values += QStringLiteral(", (i * %1) % 1009 + %2").arg(column + 3).arg(0.25 * column);
    }
    exec(QStringLiteral("CREATE TABLE %1 (%2)").arg(table, declared));
    const QString numbers =
        backend() == Sqlite
            ? QStringLiteral(
                  "WITH RECURSIVE n(i) AS (SELECT 1 WHERE %1 > 0 UNION ALL SELECT i + 1 FROM n WHERE i < %1)"
                  " INSERT INTO %2 SELECT %3 FROM n")
        : backend() == Postgres
            ? QStringLiteral("INSERT INTO %2 SELECT %3 FROM generate_series(1::bigint, %1) AS n(i)")
            : QStringLiteral("INSERT INTO %2 SELECT %3 FROM (SELECT seq AS i FROM seq_1_to_%1) n");
    exec(numbers.arg(QString::number(rows), table, values));
}

std::string backendName(TestDatabase::Backend backend)
{
    switch (backend) {
    case TestDatabase::Sqlite:
        return "Sqlite";
    case TestDatabase::Postgres:
        return "Postgres";
    case TestDatabase::Mariadb:
        break;
    }
    return "Mariadb";
}
