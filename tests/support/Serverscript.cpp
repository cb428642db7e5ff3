// SPDX-License-Identifier: MIT
#include "support/Serverscript.h"

#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

bool ServerScript::isInstalled() const
{
    QProcess process;
    process.start(QString::fromUtf8(script_), {QStringLiteral("installed"), QString()});
    return process.waitForFinished() && process.exitCode() == 0;
}

void ServerScript::run(const char *action, const QString &state, const QString &argument) const
{
    QProcess process;
    // The server inherits what it writes to; it goes on when the script is done.
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(QString::fromUtf8(script_), {QLatin1String(action), state, argument});
    EXPECT_TRUE(process.waitForFinished(120000) && process.exitCode() == 0)
        << process.readAllStandardError().toStdString();
}

QString ServerScript::urlIn(const QString &state)
{
    QFile file(state);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    file.readLine(); // the server's directory
    return QString::fromUtf8(file.readLine()).trimmed();
}

QString ServerScript::sharedUrlIn(const QString &state) const
{
    QString url = urlIn(state);
    EXPECT_FALSE(url.isEmpty()) << "No " << kind_
                                << " server was started for the tests: run them with ctest, or call " << script_
                                << " start " << state.toStdString();
    return url;
}
