// SPDX-License-Identifier: MIT
#include "platform/Passwords.h"

#include "platform/Databasename.h"

#include <QHash>

#include <mutex>

namespace nuvo {

namespace {

struct PasswordsKept
{
    std::mutex mutex;
    QHash<QString, QString> passwords;
};

PasswordsKept &passwordsKept()
{
    static PasswordsKept all;
    return all;
}

/// The same for all addresses of one user and one database: options say nothing of who is let in.
QString whoAndWhere(const QString &databaseName)
{
    if (!databaseName.contains(QLatin1String("://")))
        return databaseName;
    try {
        ServerAddress address = serverAddress(databaseName);
        address.connectTimeout = ServerAddress().connectTimeout;
        address.readTimeout = 0;
        return nuvo::databaseName(address);
    } catch (const EDatabaseError &) {
        return databaseName;
    }
}

} // namespace

EPasswordError::~EPasswordError() = default;

void setPassword(const QString &databaseName, const QString &password)
{
    const QString key = whoAndWhere(databaseName);
    const std::lock_guard lock(passwordsKept().mutex);
    if (password.isEmpty())
        passwordsKept().passwords.remove(key);
    else
        passwordsKept().passwords.insert(key, password);
}

QString passwordOf(const QString &databaseName)
{
    const QString key = whoAndWhere(databaseName);
    const std::lock_guard lock(passwordsKept().mutex);
    return passwordsKept().passwords.value(key);
}

} // namespace nuvo
