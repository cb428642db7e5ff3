// SPDX-License-Identifier: MIT
#include "platform/Libpq.h"

#include <QLibrary>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QSqlResult>
#include <QVariant>

#include <array>
#include <memory>
#include <utility>
#include <vector>

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

CancelRequest cancelRequest(const QSqlDatabase &database)
{
    const auto get = symbol<void *(*)(void *)>("PQgetCancel");
    const auto ask = symbol<int (*)(void *, char *, int)>("PQcancel");
    const auto socketOf = symbol<int (*)(const void *)>("PQsocket");
    void *const connection = connectionOf(database);
    if (get == nullptr || ask == nullptr || connection == nullptr)
        return {};
    const std::shared_ptr<void> cancel(get(connection), symbol<void (*)(void *)>("PQfreeCancel"));
    if (!cancel)
        return {};
    return {[cancel, ask] {
                std::array<char, 256> words;
                ask(cancel.get(), words.data(), int(words.size()));
            },
            true, socketOf != nullptr ? socketOf(connection) : -1};
}

bool wantsPassword(const QSqlDatabase &database, int connectTimeout)
{
    const auto connect = symbol<void *(*)(const char *const *, const char *const *, int)>("PQconnectdbParams");
    const auto needs = symbol<int (*)(const void *)>("PQconnectionNeedsPassword");
    const auto used = symbol<int (*)(const void *)>("PQconnectionUsedPassword");
    const auto status = symbol<int (*)(const void *)>("PQstatus");
    const auto finish = symbol<void (*)(void *)>("PQfinish");
    if (connect == nullptr || needs == nullptr || used == nullptr || status == nullptr || finish == nullptr)
        return false;
    std::vector<std::pair<const char *, QByteArray>> parts{{"connect_timeout", QByteArray::number(connectTimeout)}};
    const auto add = [&parts](const char *name, const QString &value) {
        if (!value.isEmpty())
            parts.emplace_back(name, value.toUtf8());
    };
    add("host", database.hostName());
    add("dbname", database.databaseName());
    add("user", database.userName());
    add("password", database.password());
    if (database.port() > 0)
        add("port", QString::number(database.port()));
    std::vector<const char *> names;
    std::vector<const char *> values;
    for (const auto &[name, value] : parts) {
        names.push_back(name);
        values.push_back(value.constData());
    }
    names.push_back(nullptr);
    values.push_back(nullptr);
    void *const connection = connect(names.data(), values.data(), 0);
    constexpr int good = 0;
    const bool wants = status(connection) != good && (needs(connection) != 0 || used(connection) != 0);
    finish(connection);
    return wants;
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
