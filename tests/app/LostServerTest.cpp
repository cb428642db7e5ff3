// SPDX-License-Identifier: MIT
#include "app/Program.h"
#include "support/Badserver.h"
#include "support/Databases.h"
#include "support/Text.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <csignal>
#include <limits>

class SilentServer : public testing::Test
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Postgres);
    QTemporaryDir directory;

    /// Runs the program on a server that falls silent at the client's message with this number, and presses Ctrl-C
    /// when it has.
    Outcome interrupted(const QStringList &before, const QStringList &behind, int after)
    {
        BadServer server(db->name(), BadServer::FallSilent, after);
        const auto process = startProgram(before + QStringList{u("--database"), server.url()} + behind);
        waitForSignalHandler(*process);
        for (int i = 0; i < 30000 && server.messages() < after; ++i)
            QThread::msleep(1);
        EXPECT_GE(server.messages(), after);
        QThread::msleep(100);
        EXPECT_EQ(process->state(), QProcess::Running);
        ::kill(pid_t(process->processId()), SIGINT);
        return finish(*process);
    }
};

TEST_F(SilentServer, CtrlCEndsAFit)
{
    db->makeNumbers(u("numbers"), 3000, 2);
    for (const int after : {1, 3, 10}) {
        const Outcome run = interrupted(
            {u("fit")}, {u("--table"), u("numbers"), u("--response"), u("x0"), u("--control"), u("x1")}, after);
        EXPECT_EQ(run.status, 130) << after;
        EXPECT_EQ(run.out + run.err, QString());
    }
}

TEST_F(SilentServer, CtrlCEndsAnImport)
{
    QFile csv(directory.filePath(u("data.csv")));
    ASSERT_TRUE(csv.open(QIODevice::WriteOnly));
    csv.write("a,b\n1,2\n3,4\n");
    csv.close();
    for (const int after : {1, 3, 10}) {
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(interrupted({u("import"), csv.fileName()}, {u("--table"), u("t")}, after).status, 130) << after;
        EXPECT_LT(timer.elapsed(), 40000);
    }
}
