// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTemporaryDir>

/// A MariaDB server on loopback, as PostgresServer is one of PostgreSQL; where none is installed the tests of it are
/// skipped.
class MariadbServer
{
public:
    /// Whether server and driver are installed.
    static bool isInstalled();
    /// URL of the server that the tests of a run share, ended by "/"; empty, with a test failure that says why, when
    /// it was not started. \pre isInstalled()
    static QString sharedUrl();

    /// Starts a server of its own; a failure is a test failure.
    MariadbServer();
    MariadbServer(const MariadbServer &) = delete;
    MariadbServer &operator=(const MariadbServer &) = delete;
    ~MariadbServer();

    QString url() const { return url_; }
    /// Stops it at once, connections and all.
    void kill();
    void startAgain();

private:
    QString state() const;

    QTemporaryDir directory_;
    QString url_;
};
