// SPDX-License-Identifier: MIT
#include "engine/Loading.h"
#include "platform/Query.h"
#include "platform/Table.h"
#include "support/Odbcsource.h"
#include "support/Postgres.h"
#include "support/Text.h"

#include <QElapsedTimer>
#include <QTimer>

#include <cmath>

// odbc:…, tried with PostgreSQL's own ODBC driver.

namespace {

class Odbc : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!OdbcSource::isInstalled())
            GTEST_SKIP()
                << "Qt's driver for ODBC (libqt6sql6-odbc) or PostgreSQL's (odbc-postgresql) is not installed";
        db = TestDatabase::make(TestDatabase::Postgres);
        source = sourceOf(db->name());
    }
    /// A data source of that PostgreSQL database, the only one from now on.
    QString sourceOf(const QString &url)
    {
        odbc = std::make_unique<OdbcSource>(url);
        return odbc->name();
    }
    void define(TMLRQuery &query, const QString &sql, nuvo::RecordUse use)
    {
        query.SetDatabaseName(source);
        query.SetSQL(sql);
        query.Open();
        ::define(query, "a");
        query.SetUseOfRecords(use);
    }

    std::unique_ptr<TestDatabase> db;
    QString source;
    std::unique_ptr<OdbcSource> odbc;
    Messages messages;
};

} // namespace

TEST_F(Odbc, TablesHaveTheirFieldsAndNulls)
{
    db->exec(
        u("CREATE TABLE \"T x\" (id INTEGER PRIMARY KEY, big BIGINT, n NUMERIC(20,4), r REAL, d DOUBLE PRECISION, "
          "flag BOOLEAN, t TEXT, v VARCHAR(10), day DATE, moment TIMESTAMP, \"b c\" SMALLINT)"));
    db->exec(u("INSERT INTO \"T x\" VALUES (1, 9223372036854775807, 12345.6789, 0.1, 0.1, TRUE, '12.5', 'x', "
               "'2024-01-31', '2024-01-31 12:30:15.25', -7)"));
    db->exec(u("INSERT INTO \"T x\" (id) VALUES (2)"));
    TTable table;
    table.SetDatabaseName(source);
    table.SetTableName(u("T x"));
    table.Open();
    EXPECT_EQ(table.RecordCount(), 2);
    const auto field = [&](const char *name) -> TField & { return table.FieldByName(u(name)); };
    EXPECT_EQ(field("id").AsFloat(), 1);
    EXPECT_EQ(field("big").AsInteger(), 9223372036854775807);
    EXPECT_EQ(field("n").AsFloat(), 12345.6789);
    EXPECT_EQ(field("d").AsFloat(), 0.1);
    EXPECT_EQ(field("flag").AsFloat(), 1);
    EXPECT_EQ(field("t").AsFloat(), 12.5);
    EXPECT_EQ(field("b c").AsFloat(), -7);
    EXPECT_EQ(field("day").AsString(), u("2024-01-31"));
    EXPECT_EQ(field("moment").AsString(), u("2024-01-31 12:30:15.250"));
    EXPECT_FALSE(errorOf([&] { field("day").AsFloat(); }).isEmpty());
    EXPECT_FALSE(errorOf([&] { field("v").AsFloat(); }).isEmpty());
    table.Next();
    for (const QString &name : table.GetFieldNames())
        EXPECT_EQ(table.FieldByName(name).IsNull(), name != u"id") << name.toStdString();
    table.Close();
    table.SetTableName(u("none"));
    EXPECT_TRUE(errorOf<EDatabaseError>([&] { table.Open(); }).contains(u("its tables: T x.")));
}

TEST_F(Odbc, EveryRecordIsReadOrAddedUp)
{
    db->exec(u("CREATE TABLE t (id INTEGER PRIMARY KEY, y NUMERIC(12,3), a DOUBLE PRECISION, b BIGINT)"));
    db->exec(
        u("INSERT INTO t SELECT i, i * 7919 % 1009 + 0.125, CASE WHEN i % 13 = 0 THEN NULL ELSE i % 59 - 0.5 END, "
          "i % 977 FROM generate_series(1, 9000) AS i"));
    TMLRTable server;
    TMLRTable all;
    for (TMLRTable *one : {&server, &all}) {
        one->SetDatabaseName(source);
        one->SetTableName(u("t"));
        one->Open();
        ::define(*one, "a b");
        one->SetUseOfRecords(one == &server ? nuvo::RecordUse::Server : nuvo::RecordUse::All);
        ASSERT_TRUE(one->ReLoad());
        one->Execute();
    }
    EXPECT_EQ(server.RecordsUsed(), 9000 - 9000 / 13);
    EXPECT_EQ(server.RecordsUsed(), all.RecordsUsed());
    EXPECT_EQ(server.SampleSize(), 2500);
    for (int j = 0; j <= 2; ++j) {
        EXPECT_NEAR(server.Getb(j) / all.Getb(j), 1, 1e-11);
        EXPECT_NEAR(server.GetStdErr(j) / all.GetStdErr(j), 1, 1e-11);
    }
}

TEST_F(Odbc, ASessionOnlyReads)
{
    db->exec(u("CREATE TABLE t (x INTEGER)"));
    db->exec(u("CREATE FUNCTION writes() RETURNS INTEGER LANGUAGE sql AS 'INSERT INTO t VALUES (1) RETURNING 1'"));
    TQuery query;
    query.SetDatabaseName(source);
    query.SetSQL(u("SELECT writes() AS x"));
    EXPECT_TRUE(errorOf<EDatabaseError>([&] { query.Open(); }).contains(u("read-only")));
    EXPECT_EQ(db->value(u("SELECT count(*) FROM t")).toInt(), 0);
}

TEST_F(Odbc, ALoadThatIsStoppedEndsItsStatement)
{
    db->makeNumbers(u("n"), 3000, 2);
    TMLRQuery slow;
    define(slow, u("SELECT n.x0 + o.x1 AS y, p.x1 AS a FROM n, n o, n p"), nuvo::RecordUse::Server);
    QTimer::singleShot(500, [&] { slow.StopLoad(); });
    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(slow.ReLoad());
    EXPECT_TRUE(slow.LoadStopped());
    EXPECT_LT(clock.elapsed(), 20000);
    EXPECT_EQ(db->value(u("SELECT count(*) FROM pg_stat_activity WHERE datname = current_database() AND state = "
                          "'active' AND pid <> pg_backend_pid() AND query LIKE '%SUM%'"))
                  .toInt(),
              0);
}

TEST_F(Odbc, ALostServerAndAnUnknownSourceAreSentences)
{
    PostgresServer own;
    const auto other = TestDatabase::makeOn(own.url());
    source = sourceOf(other->name());
    other->makeNumbers(u("n"), 3000, 2);
    TMLRQuery slow;
    define(slow, u("SELECT n.x0 + o.x1 AS y, p.x1 AS a FROM n, n o, n p"), nuvo::RecordUse::Server);
    QTimer::singleShot(500, [&] { own.kill(); });
    QString error = errorOf<EDatabaseError>([&] { slow.ReLoad(); });
    EXPECT_TRUE(error.startsWith(u("Cannot read query "))) << error.toStdString();
    EXPECT_TRUE(error.endsWith(u'.') && !error.contains(u'\n')) << error.toStdString();
    TTable table;
    table.SetDatabaseName(u("odbc:there is none"));
    table.SetTableName(u("t"));
    error = errorOf<EDatabaseError>([&] { table.Open(); });
    EXPECT_TRUE(error.startsWith(u("Cannot open the database \"odbc:there is none\": "))) << error.toStdString();
    EXPECT_TRUE(error.endsWith(u'.') && !error.contains(u'\n')) << error.toStdString();
}
