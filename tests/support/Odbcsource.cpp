// SPDX-License-Identifier: MIT
#include "support/Odbcsource.h"

#include <QFile>
#include <QSqlDatabase>
#include <QUrl>

#include <gtest/gtest.h>

namespace {

/// What the driver manager calls PostgreSQL's driver; empty where it has none.
QString registeredDriver()
{
    const QString folder = qEnvironmentVariable("ODBCSYSINI");
    for (const QString &place :
         {folder, QStringLiteral("/etc"), QStringLiteral("/etc/unixODBC"), QStringLiteral("/usr/local/etc")}) {
        QFile file(place + QStringLiteral("/odbcinst.ini"));
        if (place.isEmpty() || !file.open(QIODevice::ReadOnly))
            continue;
        QString section;
        for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n')) {
            if (line.startsWith(u'[') && line.trimmed().endsWith(u']'))
                section = line.trimmed().chopped(1).mid(1);
            else if (line.contains(QLatin1String("psqlodbcw"))) // the one of Unicode
                return section;
        }
    }
    return {};
}

} // namespace

QString OdbcSource::driver()
{
    return registeredDriver();
}

bool OdbcSource::isInstalled()
{
    return QSqlDatabase::isDriverAvailable(QStringLiteral("QODBC")) && !registeredDriver().isEmpty();
}

OdbcSource::OdbcSource(const QString &url)
{
    // The driver manager remembers for a while what a source was.
    static int sources = 0;
    dsn_ = QStringLiteral("nuvo test %1").arg(++sources);
    const QUrl server(url);
    QFile file(folder_.filePath(QStringLiteral("odbc.ini")));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QStringLiteral("[%1]\nDriver=%2\nServername=%3\nPort=%4\nUserName=%5\nDatabase=%6\n")
                   .arg(dsn_, registeredDriver(), server.host(), QString::number(server.port()), server.userName(),
                        server.path().mid(1))
                   .toUtf8());
    qputenv("ODBCINI", file.fileName().toLocal8Bit());
}
