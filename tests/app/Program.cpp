// SPDX-License-Identifier: MIT
#include "app/Program.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>
#include <QThread>

#include <csignal>

namespace {

std::unique_ptr<QProcess> start(const QString &program, const QStringList &arguments, const QString &directory)
{
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Neither a display nor a platform that asks for one is of any use to it.
    environment.remove(QStringLiteral("DISPLAY"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    environment.insert(QStringLiteral("nuvostat"), QStringLiteral(NUVOSTAT_PROGRAM));
    process->setProcessEnvironment(environment);
    process->setWorkingDirectory(directory);
    process->start(program, arguments);
    EXPECT_TRUE(process->waitForStarted()) << process->errorString().toStdString();
    process->closeWriteChannel();
    return process;
}

} // namespace

std::unique_ptr<QProcess> startProgram(const QStringList &arguments, const QString &directory)
{
    return start(QStringLiteral(NUVOSTAT_PROGRAM), arguments, directory);
}

Outcome finish(QProcess &process)
{
    EXPECT_TRUE(process.waitForFinished(60000)) << "the program does not end";
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()), QString::fromUtf8(process.readAllStandardError())};
}

Outcome runProgram(const QStringList &arguments, const QString &directory)
{
    return finish(*startProgram(arguments, directory));
}

Outcome runShell(const QString &command, const QString &directory)
{
    return finish(*start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), command}, directory));
}

void waitForSignalHandler(const QProcess &process)
{
    const QString name = QStringLiteral("/proc/%1/status").arg(process.processId());
    for (int i = 0; i < 30000; ++i) {
        QFile status(name);
        ASSERT_TRUE(status.open(QIODevice::ReadOnly)) << name.toStdString();
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("SigCgt:") &&
                (line.mid(7).trimmed().toULongLong(nullptr, 16) & (1U << (SIGINT - 1))) != 0)
                return;
        }
        QThread::msleep(1);
    }
    FAIL() << "the program never installs a handler";
}

Json parsed(const Outcome &outcome)
{
    return Json::parse(outcome.out.toStdString());
}

std::vector<std::string> keys(const Json &object)
{
    std::vector<std::string> names;
    for (const auto &member : object.items())
        names.push_back(member.key());
    return names;
}

QString text(const Json &value)
{
    return QString::fromStdString(value.get<std::string>());
}

QString withoutTimes(QString report)
{
    static const QRegularExpression date(QStringLiteral("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d"));
    static const QRegularExpression time(QStringLiteral("Processing Time: \\d\\d:\\d\\d:\\d\\d"));
    return report.replace(date, QStringLiteral("2000-01-01 00:00:00"))
        .replace(time, QStringLiteral("Processing Time: 00:00:00"));
}
