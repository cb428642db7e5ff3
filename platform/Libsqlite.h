// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QSqlDatabase;
struct sqlite3;
struct sqlite3_stmt;

namespace nuvo {

/// SQLite's own library behind an open connection of Qt's driver, for what the driver is too slow for or cannot do.
/// Usable where the driver was built against the system's library and not with a copy of its own.
class Libsqlite
{
public:
    /// Null where it cannot be used.
    static const Libsqlite *of(const QSqlDatabase &database);
    static sqlite3 *handleOf(const QSqlDatabase &database);

    static constexpr int kRow = 100;
    static constexpr int kDone = 101;
    static constexpr int kInterrupted = 9;
    enum Type { Integer = 1, Float = 2, Text = 3, Blob = 4, Null = 5 };

    int (*prepare)(sqlite3 *, const char *, int, sqlite3_stmt **, const char **) = nullptr;
    int (*step)(sqlite3_stmt *) = nullptr;
    int (*finalize)(sqlite3_stmt *) = nullptr;
    int (*columnCount)(sqlite3_stmt *) = nullptr;
    int (*columnType)(sqlite3_stmt *, int) = nullptr;
    double (*columnDouble)(sqlite3_stmt *, int) = nullptr;
    long long (*columnInteger)(sqlite3_stmt *, int) = nullptr;
    const unsigned char *(*columnText)(sqlite3_stmt *, int) = nullptr;
    int (*columnBytes)(sqlite3_stmt *, int) = nullptr;
    const char *(*message)(sqlite3 *) = nullptr;
    int (*errorCode)(sqlite3 *) = nullptr;
    void (*interrupt)(sqlite3 *) = nullptr;
    void (*progressHandler)(sqlite3 *, int, int (*)(void *), void *) = nullptr;
    int (*errorOffset)(sqlite3 *) = nullptr; ///< null before version 3.38

private:
    bool resolve();
};

} // namespace nuvo
