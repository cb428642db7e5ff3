// SPDX-License-Identifier: MIT
// Tables of millions of records: what is read of them, and in how much memory.

#include "platform/Table.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Text.h"
#include "support/Walkrecords.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <gtest/gtest.h>

#include <cstdio>

namespace {

/// Bytes that this process has read from files so far.
qint64 bytesRead()
{
    QFile io(u("/proc/self/io"));
    EXPECT_TRUE(io.open(QIODevice::ReadOnly));
    return io.readAll().split('\n').constFirst().mid(7).toLongLong();
}

/// Blocks of 8 kB of a PostgreSQL table and its index that were looked at so far.
qint64 blocksRead(TestDatabase &db)
{
    QThread::msleep(1500); // a session says it when it ends; one that goes on once a second, when it does something
    db.value(u("SELECT 1"));
    QThread::msleep(1500);
    return db
        .value(u("SELECT heap_blks_read + heap_blks_hit + idx_blks_read + idx_blks_hit FROM pg_statio_user_tables "
                 "WHERE relname = 'many'"))
        .toLongLong();
}

} // namespace

class LargeTables : public testing::TestWithParam<TestDatabase::Backend>
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(GetParam());
};

INSTANTIATE_TEST_SUITE_P(On, LargeTables, testing::Values(TestDatabase::Sqlite, TestDatabase::Postgres),
                         [](const auto &each) { return backendName(each.param); });

TEST_P(LargeTables, OfAMillionRecordsAreWalkedInBoundedMemory)
{
    db->makeNumbers(u("few"), 3000, 11);
    db->makeNumbers(u("many"), 1000000, 11);
    const struct
    {
        const char *what;
        const char *source;
        const char *mode;
    } walks[] = {{"table, controls disabled", "%1", "quiet"},
                 {"table, controls enabled", "%1", "attached"},
                 {"query, controls disabled", "SELECT * FROM %1 ORDER BY id", "quiet"}};
    for (const auto &[what, source, mode] : walks) {
        const WalkedRecords few = walkRecords(db->name(), u(source).arg(u("few")), u(mode));
        const WalkedRecords many = walkRecords(db->name(), u(source).arg(u("many")), u(mode));
        EXPECT_EQ(few.records, 3000);
        EXPECT_EQ(many.records, 1000000);
        EXPECT_EQ(many.sum, db->value(u("SELECT SUM(x0) FROM many")).toDouble());
        std::printf("%s, %s: peak %lld kB for 3000 records, %lld kB for a million\n", backendName(GetParam()).c_str(),
                    what, static_cast<long long>(few.peakKilobytes), static_cast<long long>(many.peakKilobytes));
        EXPECT_LE(many.peakKilobytes - few.peakKilobytes, 6 * 1024);
    }
}

TEST_P(LargeTables, WithWideRecordsAreWalkedInBoundedMemory)
{
    const bool sqlite = GetParam() == TestDatabase::Sqlite;
    db->exec(sqlite ? u("CREATE TABLE wide (id INTEGER PRIMARY KEY, x REAL, photo BLOB)")
                    : u("CREATE TABLE wide (id INTEGER PRIMARY KEY, x REAL, photo BYTEA)"));
    db->exec(sqlite ? u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 400) "
                        "INSERT INTO wide SELECT i, i, randomblob(1000000) FROM n")
                    : u("INSERT INTO wide SELECT i, i, decode(repeat('a1', 1000000), 'hex') FROM generate_series(1, "
                        "400) n(i)"));
    for (const char *mode : {"quiet", "attached"}) {
        const WalkedRecords walked = walkRecords(db->name(), u("wide"), u(mode));
        EXPECT_EQ(walked.records, 400);
        std::printf("%s, controls %s: peak %lld kB for 400 records of 1 MB\n", backendName(GetParam()).c_str(), mode,
                    static_cast<long long>(walked.peakKilobytes));
        EXPECT_LE(walked.peakKilobytes, 150 * 1024);
    }
}

TEST_P(LargeTables, OfTenMillionRowsOpenAndShowFiftyWithoutReadingTheRest)
{
    db->makeNumbers(u("many"), 10000000, 3);
    if (GetParam() == TestDatabase::Postgres) {
        db->exec(u("ANALYZE many"));
        db->exec(u("ALTER TABLE many SET (autovacuum_enabled = off)")); // it would read along
    }
    TTable table;
    table.SetDatabaseName(db->name());
    table.SetTableName(u("many"));
    const bool sqlite = GetParam() == TestDatabase::Sqlite;
    const qint64 before = sqlite ? bytesRead() : blocksRead(*db);
    QElapsedTimer timer;
    timer.start();
    table.Open();
    double sum = 0;
    for (int i = 0; i < 50; ++i, table.Next())
        sum += table.FieldByName(u("x0")).AsFloat();
    const double milliseconds = double(timer.nsecsElapsed()) * 1e-6;
    table.Close();
    const qint64 after = sqlite ? bytesRead() : blocksRead(*db);
    std::printf("%s: %.1f ms to open ten million rows and walk fifty; %lld %s read\n",
                backendName(GetParam()).c_str(), milliseconds, static_cast<long long>(after - before),
                sqlite ? "bytes" : "blocks");
    EXPECT_LT(after - before, sqlite ? 1000000 : 500); // the table has some hundreds of millions, and 70000
    EXPECT_EQ(sum, [] {
        double expected = 0;
        for (int id = 1; id <= 50; ++id)
            expected += TestDatabase::number(id, 0);
        return expected;
    }());

    // A load of the first 2500, as the regression makes it.
    timer.start();
    table.Open();
    {
        const nuvo::ControlsOff quiet(table);
        for (int i = 0; i < 2500; ++i)
            table.Next();
    }
    EXPECT_EQ(table.RecNo(), 2501);
    std::printf("%s: %.1f ms to open it and walk 2500 with controls disabled\n", backendName(GetParam()).c_str(),
                double(timer.nsecsElapsed()) * 1e-6);
    timer.start();
    EXPECT_TRUE(table.FindKey({9000000}));
    EXPECT_EQ(table.RecNo(), 9000000);
    std::printf("%s: %.1f ms to find record 9000000 by its key\n", backendName(GetParam()).c_str(),
                double(timer.nsecsElapsed()) * 1e-6);
}
