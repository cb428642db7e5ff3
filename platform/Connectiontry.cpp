// SPDX-License-Identifier: MIT
#include "platform/Connectiontry.h"

#include "platform/Connection.h"
#include "platform/Errors.h"
#include "platform/Passwords.h"

#include <QCoreApplication>
#include <QPointer>

#include <chrono>
#include <exception>
#include <future>
#include <utility>
#include <vector>

namespace nuvo {

namespace {

/// Those under way. Drivers go with the application, so its end waits for them.
std::vector<std::future<void>> &attempts()
{
    static std::vector<std::future<void>> list;
    return list;
}

void waitForAttempts()
{
    attempts().clear();
}

ConnectionAnswer answerOf(const QString &databaseName, const QString &password)
{
    ConnectionAnswer answer;
    try {
        Connection connection;
        connection.open(databaseName, Connection::Access::Read, password);
        answer.tables = tableNames(connection);
    } catch (const EPasswordError &error) {
        answer.error = error.Message();
        answer.passwordWanted = true;
    } catch (const EPlatformError &error) {
        answer.error = error.Message();
    } catch (const std::exception &error) {
        answer.error = QString::fromUtf8(error.what());
    }
    return answer;
}

} // namespace

void tryConnection(const QString &databaseName, const QString &password, const QObject *receiver,
                   std::function<void(const ConnectionAnswer &)> answered)
{
    std::vector<std::future<void>> &list = attempts();
    if (list.empty())
        qAddPostRoutine(waitForAttempts);
    std::erase_if(list, [](const std::future<void> &one) {
        return one.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    });
    const auto tell = [alive = QPointer<const QObject>(receiver),
                       answered = std::move(answered)](const ConnectionAnswer &answer) {
        if (alive)
            answered(answer);
    };
    list.push_back(std::async(std::launch::async, [databaseName, secret = password, tell]() mutable {
        const ConnectionAnswer answer = answerOf(databaseName, std::exchange(secret, {}));
        QMetaObject::invokeMethod(
            qApp, [tell, answer] { tell(answer); }, Qt::QueuedConnection);
    }));
}

} // namespace nuvo
