// SPDX-License-Identifier: MIT
#include "app/Fitting.h"
#include "support/Databases.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <QThread>

#include <cmath>
#include <csignal>

// The sums of all records by the server: --records server.

namespace {

class RecordsOfAServer : public testing::Test
{
protected:
    QStringList arguments(const QStringList &more, const QString &command = u("fit"))
    {
        QStringList all = command.split(u' ');
        all += {u("--database"), db->name(),     u("--table"), u("numbers"),   u("--response"),
                u("x0"),         u("--control"), u("x1"),      u("--control"), u("Ln(x2)")};
        return all + more;
    }
    static void expectNear(const Json &ours, const Json &theirs, double near, const char *what)
    {
        ASSERT_EQ(ours.size(), theirs.size()) << what;
        for (std::size_t i = 0; i < theirs.size(); ++i)
            EXPECT_NEAR(ours[i].get<double>() / theirs[i].get<double>(), 1, near) << what << ' ' << i;
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Postgres);
};

} // namespace

TEST_F(RecordsOfAServer, GiveTheFiguresOfAllRecords)
{
    db->makeNumbers(u("numbers"), 12000, 3);
    db->exec(u("UPDATE numbers SET x1 = NULL WHERE id % 100 = 0"));
    db->exec(u("UPDATE numbers SET x2 = -1 WHERE id % 1000 = 1"));
    const Json all = parsed(runProgram(arguments({u("--format=json"), u("--records=all")})));
    const Json server = parsed(runProgram(arguments({u("--format=json"), u("--records=server")})));
    EXPECT_EQ(server["observations"], 11868);
    EXPECT_EQ(server["observations"], all["observations"]);
    EXPECT_EQ(server["degreesOfFreedom"], all["degreesOfFreedom"]);
    for (const char *name : {"coefficients", "standardErrors", "tValues", "xBar", "xStdErr"})
        expectNear(server[name], all[name], 1e-11, name);
    for (const char *name : {"sse", "ssr", "sst", "mse", "syx", "rSquared", "f", "yBar", "yStdErr"})
        EXPECT_NEAR(server[name].get<double>() / all[name].get<double>(), 1, 1e-11) << name;
    EXPECT_EQ(server["yMin"], all["yMin"]);
    EXPECT_EQ(server["xMax"], all["xMax"]);
    EXPECT_EQ(server["leftOut"], all["leftOut"]);
    expectNear(server["inference"]["vif"], all["inference"]["vif"], 1e-11, "vif");
    // The first usable records are the sample.
    EXPECT_EQ(server["sample"]["size"], 2500);
    EXPECT_EQ(server["sample"]["of"], 11868);
    EXPECT_EQ(server["sample"]["record"][0], 1);
    EXPECT_EQ(server["sample"]["record"][2499], 2500);
    EXPECT_EQ(server["records"]["read"], 2500);
    EXPECT_EQ(server["records"]["total"], 12000);
    EXPECT_EQ(server["records"]["used"], 11868);
    EXPECT_EQ(server["residuals"].size(), 2500U);
}

TEST_F(RecordsOfAServer, ThatCouldNotBeUsedAreCountedAmongAllOfThem)
{
    for (const int records : {100, 12000}) {
        db->makeNumbers(u("numbers"), records, 3);
        db->exec(u("UPDATE numbers SET x1 = NULL WHERE id % 10 = 0"));
        const Json server = parsed(runProgram(arguments({u("--format=json"), u("--records=server")})));
        // Read are those of the sample, fits of fewer terms included; the others were looked at where they are.
        EXPECT_EQ(server["records"]["total"], records);
        EXPECT_LE(server["records"]["read"], 2500);
        EXPECT_EQ(server["records"]["used"], records / 10 * 9);
        EXPECT_EQ(server["records"]["skipped"], records / 10);
        const QString said = runProgram(arguments({u("--records=server")})).out.simplified();
        EXPECT_TRUE(said.contains(u("%1 of %2 records were used, %3 could not be: x1 is null in %3.")
                                      .arg(records / 10 * 9)
                                      .arg(records)
                                      .arg(records / 10)))
            << said.toStdString();
        const Json chosen = parsed(
            runProgram(arguments({u("--format=json"), u("--records=server")}, u("select forward --rule textbook"))));
        EXPECT_TRUE(text(chosen["report"]).contains(u("(%1 read, %2 left out)").arg(records).arg(records / 10)))
            << text(chosen["report"]).toStdString();
        db->exec(u("DROP TABLE numbers"));
    }
}

TEST_F(RecordsOfAServer, ServeAQueryAndASelection)
{
    db->makeNumbers(u("numbers"), 6000, 3);
    const Json query = parsed(runProgram(
        {u("fit"), u("--database"), db->name(), u("--sql"), u("SELECT x0 AS y, x1 FROM numbers WHERE id > 1000"),
         u("--response"), u("y"), u("--control"), u("x1"), u("--records=server"), u("--format=json")}));
    EXPECT_EQ(query["observations"], 5000);
    db->exec(u("UPDATE numbers SET x1 = NULL WHERE id % 7 = 0"));
    db->exec(u("UPDATE numbers SET x2 = NULL WHERE id % 5 = 0"));
    for (const char *const method : {"select optimal", "select backward --f 1e9", "select forward --rule textbook"}) {
        const Json server = parsed(runProgram(arguments({u("--format=json"), u("--records=server")}, u(method))));
        const Json all = parsed(runProgram(arguments({u("--format=json"), u("--records=all")}, u(method))));
        EXPECT_EQ(server["selected"]["terms"], all["selected"]["terms"]);
        EXPECT_EQ(server["selected"]["observations"], all["selected"]["observations"]);
        EXPECT_EQ(server["report"].size(), all["report"].size());
        expectNear(server["selected"]["coefficients"], all["selected"]["coefficients"], 1e-11, method);
    }
}

TEST_F(RecordsOfAServer, SayInTheTextWhatTheSampleIs)
{
    db->makeNumbers(u("numbers"), 6000, 3);
    const Outcome run = runProgram(arguments({u("--records=server")}));
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.out.contains(u("6000"))) << run.out.toStdString();
    EXPECT_FALSE(run.out.contains(u("drawn evenly"))) << run.out.toStdString();
}

TEST_F(RecordsOfAServer, AreRefusedWithStatus3WhereTheyAreNoNumbers)
{
    db->exec(u("CREATE TABLE numbers (x0 float8, x1 text, x2 float8)"));
    db->exec(u("INSERT INTO numbers VALUES (1, '2', 3)"));
    const Outcome run = runProgram(arguments({u("--records=server")}));
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.err.count(u'\n'), 1);
    EXPECT_TRUE(run.err.contains(u("Field \"x1\" of table \"numbers\" is of type text"))) << run.err.toStdString();
}

TEST_F(RecordsOfAServer, OfAnEmptyTableAreAResultThatIsNone)
{
    db->exec(u("CREATE TABLE numbers (x0 float8, x1 float8, x2 float8)"));
    const Outcome run = runProgram(arguments({u("--records=server"), u("--format=json")}));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(parsed(run)["observations"], 0);
}

TEST_F(RecordsOfAServer, CtrlCEndsTheStatementOnTheServer)
{
    db->makeNumbers(u("numbers"), 20000, 3);
    const auto active = [this] {
        return db
            ->value(u("SELECT count(*) FROM pg_stat_activity WHERE datname = current_database() AND "
                      "application_name = 'nuvo' AND state = 'active' AND query LIKE '%pg_sleep%'"))
            .toInt();
    };
    for (const char *const command : {"fit", "select optimal"}) {
        const auto process = startProgram(
            arguments({u("--records=server"), u("--filter"), u("pg_sleep(0.01)::text IS NOT NULL")}, u(command)));
        for (int i = 0; i < 300 && active() == 0; ++i)
            QThread::msleep(50);
        EXPECT_EQ(active(), 1);
        ::kill(pid_t(process->processId()), SIGINT);
        const Outcome run = finish(*process);
        EXPECT_EQ(run.status, 130);
        EXPECT_EQ(run.out + run.err, QString());
        for (int i = 0; i < 100 && active() != 0; ++i)
            QThread::msleep(50);
        EXPECT_EQ(active(), 0);
    }
}
