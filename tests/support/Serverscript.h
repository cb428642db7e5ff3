// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The script that starts and stops one kind of database server for the tests; what it does stands in
/// tests/support/server.sh.
class ServerScript
{
public:
    /// \param kind of server, for messages: "MariaDB"
    constexpr ServerScript(const char *kind, const char *script) : kind_(kind), script_(script) {}

    /// Whether such a server is installed.
    bool isInstalled() const;
    /// Does an action on the server of a state file; a failure is a test failure.
    void run(const char *action, const QString &state, const QString &argument = {}) const;
    /// URL of the server of a state file; empty where none runs.
    static QString urlIn(const QString &state);
    /// The same of one that CTest starts: its absence is a test failure that says what to do.
    QString sharedUrlIn(const QString &state) const;

private:
    const char *kind_;
    const char *script_;
};
