#include "support/Postgres.h"

#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

namespace {

bool script(const QString &action, const QString &state, const QString &password = {})
{
    QProcess process;
    // The server inherits what it writes to; it goes on when the script is done.
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(QStringLiteral(NUVO_POSTGRES_SCRIPT), {action, state, password});
    const bool done = process.waitForFinished(120000) && process.exitCode() == 0;
    EXPECT_TRUE(done) << process.readAllStandardError().toStdString();
    return done;
}

QString urlIn(const QString &state)
{
    QFile file(state);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    file.readLine(); // the server's directory
    return QString::fromUtf8(file.readLine()).trimmed();
}

QString sharedUrlIn(const QString &state)
{
    QString url = urlIn(state);
    EXPECT_FALSE(url.isEmpty()) << "No PostgreSQL server was started for the tests: run them with ctest, or call "
                                << NUVO_POSTGRES_SCRIPT << " start " << state.toStdString();
    return url;
}

} // namespace

QString PostgresServer::sharedUrl()
{
    return sharedUrlIn(QStringLiteral(NUVO_POSTGRES_STATE));
}

QString PostgresServer::sharedShardUrl(int number)
{
    return sharedUrlIn(QStringLiteral(NUVO_POSTGRES_STATE "-%1").arg(number));
}

PostgresServer::PostgresServer(Whom whom) : whom_(whom)
{
    startAgain();
}

PostgresServer::~PostgresServer()
{
    script(QStringLiteral("stop"), directory_.filePath(QStringLiteral("state")));
}

void PostgresServer::kill()
{
    script(QStringLiteral("kill"), directory_.filePath(QStringLiteral("state")));
}

void PostgresServer::startAgain()
{
    const QString state = directory_.filePath(QStringLiteral("state"));
    script(url_.isEmpty() ? QStringLiteral("start") : QStringLiteral("restart"), state,
           whom_ == AsksForAPassword ? password() : QString());
    url_ = urlIn(state);
}
