// SPDX-License-Identifier: MIT
#include "platform/Libpq.h"

#include <QLibrary>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QSqlResult>
#include <QVariant>

#include <array>

#include <sys/socket.h>

namespace nuvo::libpq {

namespace {

void *connectionOf(const QSqlDatabase &database)
{
    const QVariant handle = database.driver()->handle();
    if (qstrcmp(handle.typeName(), "PGconn*") != 0 && qstrcmp(handle.typeName(), "pg_conn*") != 0)
        return nullptr;
    return *static_cast<void *const *>(handle.constData());
}

template <class Function>
Function symbol(const char *name)
{
    return reinterpret_cast<Function>(QLibrary::resolve(QStringLiteral("pq"), 5, name));
}

} // namespace

void silenceNotices(const QSqlDatabase &database)
{
    using Processor = void (*)(void *, const char *);
    const auto set = symbol<Processor (*)(void *, Processor, void *)>("PQsetNoticeProcessor");
    void *connection = connectionOf(database);
    if (set != nullptr && connection != nullptr)
        set(
            connection, [](void *, const char *) {}, nullptr);
}

QString errorMessage(const QSqlDatabase &database)
{
    const auto message = symbol<const char *(*)(const void *)>("PQerrorMessage");
    const void *connection = connectionOf(database);
    return message != nullptr && connection != nullptr ? QString::fromUtf8(message(connection)) : QString();
}

int columnType(const QSqlQuery &query, int column)
{
    const QVariant handle = query.result()->handle();
    if (qstrcmp(handle.typeName(), "PGresult*") != 0 && qstrcmp(handle.typeName(), "pg_result*") != 0)
        return 0;
    const void *result = *static_cast<void *const *>(handle.constData());
    const auto type = symbol<unsigned (*)(const void *, int)>("PQftype");
    return type != nullptr && result != nullptr ? int(type(result, column)) : 0;
}

void Canceller::use(const QSqlDatabase &database)
{
    forget();
    const auto get = symbol<void *(*)(void *)>("PQgetCancel");
    void *connection = connectionOf(database);
    if (get != nullptr && connection != nullptr)
        cancel_ = get(connection);
}

void Canceller::forget()
{
    if (cancel_ == nullptr)
        return;
    symbol<void (*)(void *)>("PQfreeCancel")(cancel_);
    cancel_ = nullptr;
}

void Canceller::cancel() const
{
    std::array<char, 256> words;
    const auto ask = symbol<int (*)(void *, char *, int)>("PQcancel");
    if (cancel_ != nullptr && ask != nullptr)
        ask(cancel_, words.data(), int(words.size()));
}

void cut(const QSqlDatabase &database)
{
    const auto socketOf = symbol<int (*)(const void *)>("PQsocket");
    const void *connection = connectionOf(database);
    const int socket = socketOf != nullptr && connection != nullptr ? socketOf(connection) : -1;
    if (socket >= 0)
        ::shutdown(socket, SHUT_RDWR);
}

} // namespace nuvo::libpq
