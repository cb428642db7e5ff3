// SPDX-License-Identifier: MIT
#include "engine/Loading.h"
#include "engine/Serversums.h"
#include "support/Mariadb.h"
#include "support/Text.h"

#include <QElapsedTimer>
#include <QTimer>

#include <cmath>

// Every record of a table on a MariaDB server, read or added up there.

namespace {

class EveryOnMariadb : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!MariadbServer::isInstalled())
            GTEST_SKIP() << "MariaDB (mariadb-server-core) or Qt's driver for it (libqt6sql6-mysql) is not installed";
        db = TestDatabase::make(TestDatabase::Mariadb);
    }
    /// Numbers of several kinds, with nulls in two of them and values that Ln cannot take.
    void fill(int records)
    {
        db->exec(
            u("CREATE TABLE `da ta` (id INT PRIMARY KEY, y DECIMAL(20,6), a BIGINT UNSIGNED, `b c` DOUBLE, f FLOAT, "
              "flag BOOLEAN, t VARCHAR(20))"));
        db->exec(u("INSERT INTO `da ta` SELECT seq, seq * 7919 % 1009 + 0.125, 9000000000000000000 + seq % 900 * "
                   "10000000000000000, "
                   "CASE WHEN seq % 13 = 0 THEN NULL WHEN seq % 100 = 1 THEN -1 ELSE seq % 59 + 0.5 END, "
                   "seq % 31 * 0.1, seq % 2, seq * 31 % 101 FROM seq_1_to_%1")
                     .arg(records));
    }
    void fit(TRegression &regression, nuvo::RecordUse use)
    {
        regression.SetUseOfRecords(use);
        ASSERT_TRUE(regression.ReLoad());
        regression.Execute();
    }
    void define(TRegression &regression)
    {
        TDependentVar response;
        response.SetField(u("y"));
        response.SetTransformation(u("None"));
        regression.SetResponse(response);
        const auto control = [&](int k, const char *field, const char *transformation) {
            TIndepVar variable;
            variable.SetField1(u(field));
            variable.SetTransformation(u(transformation));
            regression.SetControl(k, variable);
        };
        control(1, "a", "None");
        control(2, "b c", "Log");
        control(3, "flag", "None");
    }

    /// A query whose sums take seconds, as its rows do, which the driver fetches when it is opened.
    static void makeSlow(TMLRQuery &slow, TestDatabase &database)
    {
        database.makeNumbers(u("n"), 200, 2);
        slow.SetDatabaseName(database.name());
        slow.SetSQL(u("SELECT x0 AS y, x1 + SLEEP(0.01) AS a FROM n"));
        slow.Open();
        TDependentVar response;
        response.SetField(u("y"));
        response.SetTransformation(u("None"));
        slow.SetResponse(response);
        TIndepVar control;
        control.SetField1(u("a"));
        control.SetTransformation(u("None"));
        slow.SetControl(1, control);
        slow.SetUseOfRecords(nuvo::RecordUse::Server);
    }

    std::unique_ptr<TestDatabase> db;
    Messages messages;
};

void expectSame(TRegression &one, TRegression &other, double near)
{
    ASSERT_EQ(one.GetNumVars(), other.GetNumVars());
    EXPECT_EQ(one.RecordsUsed(), other.RecordsUsed());
    EXPECT_EQ(one.RecordsSkipped(), other.RecordsSkipped());
    for (int j = 0; j <= one.GetNumVars(); ++j) {
        EXPECT_NEAR(one.Getb(j) / other.Getb(j), 1, near) << j;
        EXPECT_NEAR(one.GetStdErr(j) / other.GetStdErr(j), 1, near) << j;
    }
    EXPECT_NEAR(one.GetSSE() / other.GetSSE(), 1, near);
    EXPECT_NEAR(one.GetSST() / other.GetSST(), 1, near);
}

} // namespace

TEST_F(EveryOnMariadb, ATableIsAddedUpAsItIsRead)
{
    fill(12000);
    TMLRTable server;
    TMLRTable all;
    for (TMLRTable *one : {&server, &all}) {
        one->SetDatabaseName(db->name());
        one->SetTableName(u("da ta"));
        one->SetFilter(u("id > 10"));
        one->SetFiltered(true);
        one->Open();
        define(*one);
    }
    fit(server, nuvo::RecordUse::Server);
    fit(all, nuvo::RecordUse::All);
    EXPECT_EQ(server.RecordsUsed(), db->value(u("SELECT COUNT(*) FROM `da ta` WHERE id > 10 AND `b c` > 0")).toInt());
    EXPECT_EQ(server.RecordsSkipped(), 11990 - server.RecordsUsed());
    EXPECT_EQ(server.SampleSize(), 2500);
    EXPECT_EQ(server.LeftOut()[2].null, all.LeftOut()[2].null);
    EXPECT_EQ(server.LeftOut()[2].invalid, all.LeftOut()[2].invalid);
    expectSame(server, all, 1e-10);
}

TEST_F(EveryOnMariadb, AQueryIsAddedUpAsItIsRead)
{
    fill(6000);
    TMLRQuery server;
    TMLRQuery all;
    for (TMLRQuery *one : {&server, &all}) {
        one->SetDatabaseName(db->name());
        one->SetSQL(u("SELECT y, a, `b c`, f, flag FROM `da ta` WHERE id < :most"));
        one->SetParam(u("most"), 5000);
        one->Open();
        define(*one);
    }
    fit(server, nuvo::RecordUse::Server);
    fit(all, nuvo::RecordUse::All);
    expectSame(server, all, 1e-10);
}

TEST_F(EveryOnMariadb, EveryTermIsWorkedOutAsByUs)
{
    db->exec(u("CREATE TABLE t (id INT PRIMARY KEY, y DOUBLE, a DOUBLE, b DOUBLE)"));
    db->exec(
        u("INSERT INTO t SELECT seq, seq * 31 % 97 + 1, CASE WHEN seq % 11 = 0 THEN 0 WHEN seq % 7 = 0 THEN -2.5 "
          "ELSE seq % 23 / 8 + 1 END, CASE WHEN seq % 19 = 0 THEN NULL WHEN seq % 17 = 0 THEN 0 ELSE CAST(seq % 29 "
          "AS SIGNED) - 14 END FROM seq_1_to_3000"));
    for (const char *transformation :
         {"None", "Log", "Inverse", "SquareRoot", "Power", "Scale", "Product", "Quotient"}) {
        SCOPED_TRACE(transformation);
        TMLRTable server;
        TMLRTable all;
        for (TMLRTable *one : {&server, &all}) {
            one->SetDatabaseName(db->name());
            one->SetTableName(u("t"));
            one->Open();
            TDependentVar response;
            response.SetField(u("y"));
            response.SetTransformation(u("Log"));
            one->SetResponse(response);
            TIndepVar variable;
            variable.SetField1(u("a"));
            variable.SetField2(u("b"));
            variable.SetExponent(u("3"));
            variable.SetScaleFactor(u("4"));
            variable.SetTransformation(u(transformation));
            one->SetControl(1, variable);
        }
        fit(server, nuvo::RecordUse::Server);
        fit(all, nuvo::RecordUse::All);
        expectSame(server, all, 1e-11);
    }
}

TEST_F(EveryOnMariadb, TextsAreReadButNotAddedUp)
{
    fill(100);
    TMLRTable table;
    table.SetDatabaseName(db->name());
    table.SetTableName(u("da ta"));
    table.Open();
    TDependentVar response;
    response.SetField(u("t"));
    response.SetTransformation(u("None"));
    table.SetResponse(response);
    TIndepVar control;
    control.SetField1(u("f"));
    control.SetTransformation(u("None"));
    table.SetControl(1, control);
    fit(table, nuvo::RecordUse::All);
    EXPECT_EQ(table.RecordsUsed(), 100);
    table.SetUseOfRecords(nuvo::RecordUse::Server);
    const QString error = errorOf<EDatabaseError>([&] { table.ReLoad(); });
    EXPECT_TRUE(error.contains(u("Field \"t\" of table \"da ta\" is of type varchar(20) to the server")))
        << error.toStdString();
}

TEST_F(EveryOnMariadb, ALoadThatIsStoppedEndsItsStatement)
{
    TMLRQuery slow;
    makeSlow(slow, *db);
    QTimer::singleShot(300, [&] { slow.StopLoad(); });
    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(slow.ReLoad());
    EXPECT_TRUE(slow.LoadStopped());
    EXPECT_LT(clock.elapsed(), 1800); // the first of its statements takes two seconds at least
    EXPECT_EQ(
        db->value(u("SELECT COUNT(*) FROM information_schema.PROCESSLIST WHERE INFO LIKE '%SUM%SLEEP%' AND ID <> "
                    "CONNECTION_ID()"))
            .toInt(),
        0);
}

TEST_F(EveryOnMariadb, ALostServerIsASentence)
{
    MariadbServer own;
    const auto other = TestDatabase::makeOnMariadb(own.url());
    TMLRQuery slow;
    makeSlow(slow, *other);
    QTimer::singleShot(500, [&] { own.kill(); });
    const QString error = errorOf<EDatabaseError>([&] { slow.ReLoad(); });
    EXPECT_TRUE(error.startsWith(u("Cannot read query "))) << error.toStdString();
    EXPECT_TRUE(error.endsWith(u'.') && !error.contains(u'\n')) << error.toStdString();
}
