// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTemporaryDir>

/// A PostgreSQL server on loopback. The tests of one run share one, which CTest starts and stops; a test that kills
/// its server starts one of its own.
class PostgresServer
{
public:
    /// URL of the shared server; empty, with a test failure that says why, when there is none.
    static QString sharedUrl();
    /// The same of the two that hold the parts of spread tables, 1 and 2: their tests are given FIXTURES_REQUIRED
    /// postgres_cluster.
    static QString sharedShardUrl(int number);

    enum Whom {
        TrustsEverybody,
        AsksForAPassword, ///< password()
    };
    static QString password() { return QStringLiteral("s3cret"); }

    /// Starts a server; a failure is a test failure.
    explicit PostgresServer(Whom whom = TrustsEverybody);
    PostgresServer(const PostgresServer &) = delete;
    PostgresServer &operator=(const PostgresServer &) = delete;
    ~PostgresServer();

    QString url() const { return url_; }
    /// Stops it at once, connections and all.
    void kill();
    void startAgain();

private:
    QString state() const;

    const Whom whom_;
    QTemporaryDir directory_;
    QString url_;
};
