// SPDX-License-Identifier: MIT
#include "platform/Libmysql.h"

#include <QByteArray>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QVariant>

#include <algorithm>

#include <dlfcn.h>

namespace nuvo::libmysql {

namespace {

// Of the library's list of options.
constexpr int connectTimeout = 0;
constexpr int readTimeout = 11;
constexpr int writeTimeout = 12;

constexpr unsigned patience = 5; // s

/// MariaDB's library or MySQL's, whichever the driver was built with.
void *library()
{
    for (const char *const name : {"libmariadb.so.3", "libmysqlclient.so.21", "libmysqlclient.so.24"}) {
        if (void *const loaded = ::dlopen(name, RTLD_NOW | RTLD_NOLOAD))
            return loaded;
    }
    return nullptr;
}

struct Library
{
    void *const handle = library();

    template <class Function>
    Function find(const char *name) const
    {
        return handle == nullptr ? nullptr : reinterpret_cast<Function>(::dlsym(handle, name));
    }

    void *(*const init)(void *) = find<void *(*)(void *)>("mysql_init");
    int (*const option)(void *, int, const void *) = find<int (*)(void *, int, const void *)>("mysql_options");
    using Connect = void *(*)(void *, const char *, const char *, const char *, const char *, unsigned, const char *,
                              unsigned long);
    const Connect connect = find<Connect>("mysql_real_connect");
    int (*const query)(void *, const char *) = find<int (*)(void *, const char *)>("mysql_query");
    void (*const close)(void *) = find<void (*)(void *)>("mysql_close");
    void (*const endThread)() = find<void (*)()>("mysql_thread_end");
    unsigned long (*const session)(void *) = find<unsigned long (*)(void *)>("mysql_thread_id");
    int (*const socket)(const void *) = find<int (*)(const void *)>("mysql_get_socket"); // MariaDB's alone

    bool isWhole() const
    {
        return init != nullptr && option != nullptr && connect != nullptr && query != nullptr && close != nullptr &&
               endThread != nullptr && session != nullptr;
    }
};

} // namespace

CancelRequest cancelRequest(const QSqlDatabase &database)
{
    const QVariant handle = database.driver()->handle();
    if (qstrcmp(handle.typeName(), "MYSQL*") != 0 && qstrcmp(handle.typeName(), "st_mysql*") != 0)
        return {};
    void *const connection = *static_cast<void *const *>(handle.constData());
    static const Library mysql;
    if (connection == nullptr || !mysql.isWhole())
        return {};
    CancelRequest request;
    if (mysql.socket != nullptr)
        request.socket = mysql.socket(connection);
    request.ask = [statement = "KILL QUERY " + QByteArray::number(qulonglong(mysql.session(connection))),
                   host = database.hostName().toUtf8(), user = database.userName().toUtf8(),
                   password = database.password().toUtf8(), port = std::max(0, database.port())] {
        const auto orNone = [](const QByteArray &text) { return text.isEmpty() ? nullptr : text.constData(); };
        void *const second = mysql.init(nullptr);
        if (second == nullptr)
            return;
        for (const int timeout : {connectTimeout, readTimeout, writeTimeout})
            mysql.option(second, timeout, &patience);
        if (mysql.connect(second, orNone(host), orNone(user), orNone(password), nullptr, unsigned(port), nullptr,
                          0) != nullptr)
            mysql.query(second, statement.constData());
        mysql.close(second);
        mysql.endThread();
    };
    return request;
}

} // namespace nuvo::libmysql
