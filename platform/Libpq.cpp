// SPDX-License-Identifier: MIT
#include "platform/Libpq.h"

#include "platform/Quietthread.h"

#include <QLibrary>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QSqlResult>
#include <QVariant>

#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>
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

struct Canceller::Order
{
    Order(void *request, int itsSocket) : cancel(request), socket(itsSocket) {}
    Order(const Order &) = delete;
    Order &operator=(const Order &) = delete;
    ~Order() { symbol<void (*)(void *)>("PQfreeCancel")(cancel); }

    void *const cancel;
    const int socket;
    std::mutex mutex;
    std::condition_variable changed;
    bool asking = false;
    bool watched = false;
    bool forgotten = false;
};

void Canceller::use(const QSqlDatabase &database)
{
    forget();
    const auto get = symbol<void *(*)(void *)>("PQgetCancel");
    const auto socketOf = symbol<int (*)(const void *)>("PQsocket");
    void *connection = connectionOf(database);
    void *const cancel = get != nullptr && connection != nullptr ? get(connection) : nullptr;
    if (cancel != nullptr)
        order_ = std::make_shared<Order>(cancel, socketOf != nullptr ? socketOf(connection) : -1);
}

void Canceller::forget()
{
    if (!order_)
        return;
    {
        const std::lock_guard lock(order_->mutex);
        order_->forgotten = true;
    }
    order_->changed.notify_all();
    order_.reset();
}

void Canceller::cancel() const
{
    constexpr std::chrono::milliseconds moment(200);
    static constexpr std::chrono::seconds patience(3);
    const auto ask = symbol<int (*)(void *, char *, int)>("PQcancel");
    const std::shared_ptr<Order> order = order_;
    if (!order || ask == nullptr)
        return;
    std::unique_lock lock(order->mutex);
    if (std::exchange(order->asking, true))
        return;
    // The library waits for a server that is silent as long as that is.
    quietThread([order, ask] {
        std::array<char, 256> words;
        ask(order->cancel, words.data(), int(words.size()));
        {
            const std::lock_guard asked(order->mutex);
            order->asking = false;
        }
        order->changed.notify_all();
    }).detach();
    if (!std::exchange(order->watched, true))
        quietThread([order] {
            std::unique_lock watch(order->mutex);
            if (!order->changed.wait_for(watch, patience, [&] { return order->forgotten; }) && order->socket >= 0)
                ::shutdown(order->socket, SHUT_RDWR);
        }).detach();
    order->changed.wait_for(lock, moment, [&] { return !order->asking; });
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
