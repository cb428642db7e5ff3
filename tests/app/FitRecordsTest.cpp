// SPDX-License-Identifier: MIT
#include "app/Fitting.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

// Which records are used: --records.

namespace {

class Records : public testing::Test
{
protected:
    QStringList arguments(const QStringList &more, const QString &command = u("fit"))
    {
        QStringList all = command.split(u' ');
        all += {u("--database"), db->name(),     u("--table"), u("numbers"),   u("--response"),
                u("x0"),         u("--control"), u("x1"),      u("--control"), u("x2")};
        return all + more;
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
};

} // namespace

TEST_F(Records, OfASmallTableGiveTheSameFigures)
{
    db->makeNumbers(u("numbers"), 2000, 3);
    const Json first = parsed(runProgram(arguments({u("--format=json")})));
    const Json all = parsed(runProgram(arguments({u("--format=json"), u("--records=all")})));
    EXPECT_FALSE(first.contains("sample"));
    EXPECT_EQ(all["sample"]["size"], 2000);
    EXPECT_EQ(all["sample"]["of"], 2000);
    EXPECT_EQ(all["sample"]["record"].size(), 2000U);
    EXPECT_EQ(all["records"], first["records"]);
    EXPECT_EQ(all["observations"], 2000);
    EXPECT_EQ(all["degreesOfFreedom"], 1997);
    EXPECT_EQ(all["report"], first["report"]);
    EXPECT_EQ(all["residuals"].size(), 2000U);
    for (std::size_t j = 0; j < 3; ++j)
        EXPECT_NEAR(all["coefficients"][j].get<double>() / first["coefficients"][j].get<double>(), 1, 1e-13);
    // On an SQLite file the server's way is a scan too.
    const Json server = parsed(runProgram(arguments({u("--format=json"), u("--records=server")})));
    EXPECT_EQ(server["coefficients"], all["coefficients"]);
}

TEST_F(Records, OfALargeTableAreAllUsedWithASampleOfObservations)
{
    db->makeNumbers(u("numbers"), 40000, 3);
    const Json all =
        parsed(runProgram(arguments({u("--format=json"), u("--records=all"), u("--influence"), u("--robust=hc3")})));
    EXPECT_EQ(all["observations"], 40000);
    EXPECT_EQ(all["degreesOfFreedom"], 39997);
    EXPECT_EQ(all["records"], (Json{{"total", 40000}, {"read", 40000}, {"used", 40000}, {"skipped", 0}}));
    EXPECT_EQ(all["sample"]["size"], 2500);
    EXPECT_EQ(all["sample"]["of"], 40000);
    for (const char *name : {"fitted", "residuals"})
        EXPECT_EQ(all[name].size(), 2500U);
    EXPECT_EQ(all["influence"]["record"], all["sample"]["record"]);
    EXPECT_FALSE(all["inference"]["pValues"][1].is_null());
    const Json first = parsed(runProgram(arguments({u("--format=json")})));
    EXPECT_EQ(first["observations"], 2500);
    EXPECT_TRUE(first["records"]["total"].is_null());
}

TEST_F(Records, TextSaysWhichWereUsed)
{
    db->makeNumbers(u("numbers"), 2501, 3);
    const QString mark = u("the first 2,500 records; --records all uses every one");
    const auto said = [&](const QStringList &more) { return runProgram(arguments(more)).out.simplified(); };
    EXPECT_TRUE(said({}).contains(mark));
    EXPECT_FALSE(said({u("--records"), u("all")}).contains(mark));
    EXPECT_TRUE(said({u("--records"), u("all")}).contains(u("a sample of 2500 records, drawn evenly")));
    EXPECT_FALSE(said({u("--filter"), u("id <= 2500")}).contains(mark));
    EXPECT_FALSE(said({u("--format"), u("report")}).contains(mark));
    const QTemporaryDir directory;
    const QString path = directory.filePath(u("report.md"));
    EXPECT_EQ(runProgram(arguments({u("--save-report"), path})).status, 0);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(QString::fromUtf8(file.readAll()).simplified().contains(mark));
}

TEST_F(Records, AreAskedOfASelectionToo)
{
    db->makeNumbers(u("numbers"), 9000, 3);
    const Json chosen = parsed(runProgram(arguments({u("--format=json"), u("--records=all")}, u("select optimal"))));
    EXPECT_EQ(chosen["selected"]["observations"], 9000);
    EXPECT_EQ(chosen["selected"]["sample"]["of"], 9000);
    const Json textbook = parsed(
        runProgram(arguments({u("--format=json"), u("--records=all"), u("--rule=textbook")}, u("select forward"))));
    EXPECT_EQ(textbook["selected"]["observations"], 9000);
}

TEST_F(Records, OfAnUnknownKindAreRefused)
{
    const Outcome outcome = runProgram(arguments({u("--records=some")}));
    EXPECT_EQ(outcome.status, 2);
    EXPECT_TRUE(outcome.err.contains(u("--records"))) << outcome.err.toStdString();
}

TEST_F(Records, OfATableWithoutAUsableOneAreAResultThatIsNone)
{
    db->exec(u("CREATE TABLE numbers (x0 DOUBLE PRECISION, x1 DOUBLE PRECISION, x2 DOUBLE PRECISION)"));
    const Outcome outcome = runProgram(arguments({u("--format=json"), u("--records=all")}));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(parsed(outcome)["observations"], 0);
}
