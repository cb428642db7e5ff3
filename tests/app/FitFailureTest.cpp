// SPDX-License-Identifier: MIT
#include "app/Fitting.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <csignal>

namespace {

class FitFailure : public Fitting
{
};

INSTANTIATE_TEST_SUITE_P(, FitFailure, testing::Values(TestDatabase::Sqlite, TestDatabase::Postgres),
                         [](const auto &backend) { return backendName(backend.param); });

TEST_P(FitFailure, NoUsableRecordIsStatus1)
{
    makeTable({u("3,1,NULL"), u("5,2,NULL")});
    const QStringList arguments{u("--table"),   u("t"), u("--response"),    u("y"),
                                u("--control"), u("b"), u("--description"), u("d")};
    const Outcome run = fit(arguments);
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.out.contains(u("0 of 2 records were used, 2 could not be"))) << run.out.toStdString();
    EXPECT_TRUE(run.out.endsWith(u("\nNo result.\n"))) << run.out.toStdString();
    EXPECT_EQ(fit(arguments + QStringList{u("--format=report")}).out,
              u("Data: t\nNo result. Records: 2 in the dataset, 2 read, 0 used, 2 skipped.\n"));
    EXPECT_EQ(run.err, u("error: There are 0 degrees of freedom.\n"));
    const Outcome json = fit(arguments + QStringList{u("--format=json")});
    EXPECT_EQ(json.status, 1);
    EXPECT_EQ(json.err, run.err);
    EXPECT_EQ(
        parsed(json).dump(),
        R"({"component":"table","dataset":"t","description":"d","loaded":false,"computed":false,"observations":0,)"
        R"("controls":1,"degreesOfFreedom":0,"records":{"total":2,"read":2,"used":0,"skipped":2},)"
        R"("dependentTerms":[],"response":"y","terms":["b"],)"
        R"("messages":[{"type":"error","text":"There are 0 degrees of freedom."}]})");
}

TEST_P(FitFailure, AConstantColumnIsStatus1AndItsMessageOneLine)
{
    makeTable({u("3,1,7"), u("5,2,7"), u("9,4,7")});
    const Outcome run =
        fit({u("--table"), u("t"), u("--response"), u("y"), u("--control"), u("b"), u("--format=json")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, u("error: The dataset has an invariant column. Matrix is singular!\n"));
    EXPECT_EQ(parsed(run)["messages"][0]["text"], "The dataset has an invariant\n\rcolumn. Matrix is singular!");
    EXPECT_EQ(parsed(run)["observations"], 3);
}

TEST_P(FitFailure, WhatTheDatabaseCannotDoIsStatus3AndOneSentence)
{
    makeTable({u("3,1,2"), u("5,2,9"), u("7,4,1")});
    const struct
    {
        QStringList arguments;
        const char *asked;
        const char *there;
    } cases[] = {
        {{u("--table"), u("nope"), u("--response"), u("y")}, "\"nope\"", "t"},
        {{u("--table"), u("t"), u("--response"), u("nope")}, "\"nope\"", "id, y, a, b, name"},
        {{u("--table"), u("t"), u("--response"), u("y"), u("--control"), u("nope")}, "\"nope\"", "id, y, a, b, name"},
        {{u("--table"), u("t"), u("--response"), u("y"), u("--control"), u("a/nope")},
         "\"nope\"",
         "id, y, a, b, name"},
        {{u("--table"), u("t"), u("--response"), u("y"), u("--control"), u("name")}, "name", "\"x\""},
        {{u("--table"), u("t"), u("--response"), u("y"), u("--control"), u("a^2.5")}, "\"2.5\"", "integer"},
        {{u("--table"), u("t"), u("--response"), u("y"), u("--filter"), u("nope = 1")}, "nope", "column"},
        {{u("--table"), u("t"), u("--response"), u("y"), u("--filter"), u("1) OR (1")}, "filter", "parenthes"},
        {{u("--sql"), u("SELECT FROM WHERE"), u("--response"), u("y")}, "SELECT FROM WHERE", "syntax"},
        {{u("--sql"), u("DELETE FROM t"), u("--response"), u("y")}, "DELETE", "SELECT"},
        {{u("--sql"), u("SELECT 1; DROP TABLE t"), u("--response"), u("y")}, "", ""},
        {{u("--sql"), QString(), u("--response"), u("y")}, "", ""},
    };
    for (const auto &asked : cases) {
        SCOPED_TRACE(asked.arguments.join(u' ').toStdString());
        const Outcome run = fit(asked.arguments);
        EXPECT_EQ(run.status, 3);
        EXPECT_EQ(run.out, QString());
        EXPECT_TRUE(run.err.startsWith(u("nuvostat: "))) << run.err.toStdString();
        EXPECT_EQ(run.err.count(u'\n'), 1);
        EXPECT_TRUE(run.err.contains(u(asked.asked))) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(u(asked.there), Qt::CaseInsensitive)) << run.err.toStdString();
        const Outcome json = fit(asked.arguments + QStringList{u("--format=json")});
        EXPECT_EQ(json.status, 3);
        EXPECT_EQ(json.err, run.err);
        EXPECT_EQ(keys(parsed(json)), std::vector<std::string>{"error"});
        EXPECT_EQ(u("nuvostat: ") + text(parsed(json)["error"]) + u'\n', run.err);
    }
    EXPECT_EQ(database_->value(u("SELECT COUNT(*) FROM t")).toInt(), 3);
}

TEST_P(FitFailure, CtrlCEndsWith130)
{
    const QString slow = u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30000000) "
                           "SELECT count(*) AS y FROM n");
    const auto process = startProgram(fitArguments(database_->name(), {u("--sql"), slow, u("--response"), u("y")}));
    waitForSignalHandler(*process);
    ::kill(pid_t(process->processId()), SIGINT);
    const Outcome run = finish(*process);
    EXPECT_EQ(run.status, 130);
    EXPECT_EQ(run.out + run.err, QString());
}

TEST(FitOnAFile, AMissingOneIsNotMade)
{
    const QTemporaryDir directory;
    const QStringList rest{u("--table"), u("t"), u("--response"), u("y")};
    const Outcome run = runProgram(fitArguments(u("none.db"), rest), directory.path());
    EXPECT_EQ(run.status, 3);
    EXPECT_TRUE(run.err.contains(u("\"none.db\"")) && run.err.contains(u("no such file"))) << run.err.toStdString();
    EXPECT_FALSE(QFile::exists(directory.filePath(u("none.db"))));
    EXPECT_EQ(runProgram(fitArguments(u("."), rest), directory.path()).status, 3);
    EXPECT_EQ(runProgram(fitArguments(QString(), rest), directory.path()).status, 3);
    EXPECT_EQ(runProgram(fitArguments(u("mongo://h/x"), rest), directory.path()).status, 3);
    EXPECT_EQ(runProgram(fitArguments(u("postgresql://user:secret@h/x"), rest), directory.path()).status, 3);
    EXPECT_FALSE(runProgram(fitArguments(u("postgresql://user:secret@h/x"), rest)).err.contains(u("secret")));
    EXPECT_EQ(runProgram(fitArguments(u("postgresql://127.0.0.1:1/x"), rest), directory.path()).status, 3);
}

TEST(FitOnAFile, OneThatIsNoDatabaseIsTold)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(u("x.db")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("this is no database, only a text that is long enough to be looked at\n");
    file.close();
    const Outcome run = runProgram(fitArguments(file.fileName(), {u("--table"), u("t"), u("--response"), u("y")}));
    EXPECT_EQ(run.status, 3);
    EXPECT_TRUE(run.err.contains(u("no SQLite database"))) << run.err.toStdString();
}

TEST(FitOnAFile, ALockedOneIsTold)
{
    const auto database = TestDatabase::make(TestDatabase::Sqlite);
    database->exec(u("CREATE TABLE t (y INTEGER)"));
    database->exec(u("BEGIN EXCLUSIVE"));
    const Outcome run = runProgram(fitArguments(database->name(), {u("--table"), u("t"), u("--response"), u("y")}));
    EXPECT_EQ(run.status, 3);
    EXPECT_TRUE(run.err.contains(u("locked"))) << run.err.toStdString();
}

} // namespace
