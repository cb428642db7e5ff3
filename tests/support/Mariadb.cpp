#include "support/Mariadb.h"

#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QStandardPaths>

#include <gtest/gtest.h>

namespace {

bool script(const QString &action, const QString &state)
{
    QProcess process;
    // The server inherits what it writes to; it goes on when the script is done.
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(QStringLiteral(NUVO_MARIADB_SCRIPT), {action, state});
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

} // namespace

bool MariadbServer::isInstalled()
{
    return QSqlDatabase::isDriverAvailable(QStringLiteral("QMYSQL")) &&
           QFile::exists(QStringLiteral("/usr/sbin/mariadbd"));
}

QString MariadbServer::sharedUrl()
{
    QString url = urlIn(QStringLiteral(NUVO_MARIADB_STATE));
    EXPECT_FALSE(url.isEmpty()) << "No MariaDB server was started for the tests: run them with ctest, or call "
                                << NUVO_MARIADB_SCRIPT << " start " << NUVO_MARIADB_STATE;
    return url;
}

MariadbServer::MariadbServer()
{
    const QString state = directory_.filePath(QStringLiteral("state"));
    script(QStringLiteral("start"), state);
    url_ = urlIn(state);
}

MariadbServer::~MariadbServer()
{
    script(QStringLiteral("stop"), directory_.filePath(QStringLiteral("state")));
}

void MariadbServer::kill()
{
    script(QStringLiteral("kill"), directory_.filePath(QStringLiteral("state")));
}
