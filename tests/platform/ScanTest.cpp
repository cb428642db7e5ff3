// SPDX-License-Identifier: MIT
#include "platform/Scan.h"

#include "platform/Errors.h"
#include "platform/Query.h"
#include "platform/Recordpages.h"
#include "platform/Table.h"
#include "support/Badserver.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Text.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <thread>

class Scans : public testing::TestWithParam<TestDatabase::Backend>
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(GetParam());

    nuvo::ScanSource table(const char *name, const QStringList &columns) const
    {
        nuvo::ScanSource source;
        source.databaseName = db->name();
        source.table = u(name);
        source.columns = columns;
        return source;
    }
    nuvo::ScanSource query(const QString &sql, const QStringList &columns) const
    {
        nuvo::ScanSource source;
        source.databaseName = db->name();
        source.sql = sql;
        source.columns = columns;
        return source;
    }
    /// Every cell of a scan, record by record; a null is a NaN.
    std::vector<std::vector<double>> read(const nuvo::ScanSource &source) const
    {
        nuvo::Scan scan(source);
        scan.open();
        std::vector<std::vector<double>> records;
        nuvo::ScanBlock block;
        while (scan.next(block)) {
            EXPECT_EQ(block.firstRecord(), qint64(records.size()) + 1);
            for (int row = 0; row < block.rows(); ++row) {
                records.emplace_back();
                for (int column = 0; column < source.columns.size(); ++column)
                    records.back().push_back(block.column(column)[row]);
            }
        }
        EXPECT_EQ(block.rows(), 0);
        EXPECT_FALSE(scan.next(block));
        EXPECT_EQ(scan.records(), qint64(records.size()));
        return records;
    }
};

INSTANTIATE_TEST_SUITE_P(On, Scans, testing::Values(TestDatabase::Sqlite, TestDatabase::Postgres),
                         [](const auto &each) { return backendName(each.param); });

TEST_P(Scans, GiveEveryRecordOnceWithTheColumnsAskedFor)
{
    for (const int rows : {0, 1, 1023, 1024, 1025, 5000}) {
        const QString name = u("numbers%1").arg(rows);
        db->makeNumbers(name, rows, 3);
        const QByteArray table8 = name.toUtf8();
        auto records = read(table(table8.constData(), {u("X2"), u("id")}));
        ASSERT_EQ(records.size(), size_t(rows));
        std::sort(records.begin(), records.end(), [](const auto &a, const auto &b) { return a[1] < b[1]; });
        for (int i = 0; i < rows; ++i) {
            ASSERT_EQ(records[size_t(i)][1], i + 1);
            ASSERT_EQ(records[size_t(i)][0], TestDatabase::number(i + 1, 2));
        }
    }
}

TEST_P(Scans, TakeAFilterOrAStatementWithParameters)
{
    db->makeNumbers(u("numbers"), 3000, 2);
    nuvo::ScanSource filtered = table("numbers", {u("id")});
    filtered.filter = u("id > 2990 -- the last");
    EXPECT_EQ(read(filtered).size(), 10U);
    nuvo::ScanSource chosen =
        query(u("SELECT x0, x1, x0 + x1 AS total, x0 FROM numbers WHERE id > :least ORDER BY id;"),
              {u("total"), u("x0_1")});
    chosen.params.insert(u("least"), 2000);
    const auto records = read(chosen);
    ASSERT_EQ(records.size(), 1000U);
    EXPECT_EQ(records[0][0], TestDatabase::number(2001, 0) + TestDatabase::number(2001, 1));
    EXPECT_EQ(records[999][1], TestDatabase::number(3000, 0));
    EXPECT_EQ(read(query(u("SELECT id FROM numbers"), {u("id")})).size(), 3000U);
    EXPECT_EQ(read(table("numbers", {})).size(), 3000U);
}

TEST_P(Scans, ReadValuesAsFieldsDo)
{
    db->exec(u("CREATE TABLE t (id INTEGER PRIMARY KEY, i BIGINT, d DOUBLE PRECISION, n NUMERIC, v VARCHAR(30), b "
               "BOOLEAN, da DATE, m MONEY)"));
    db->exec(u("INSERT INTO t VALUES (1, 9007199254740993, 0.1, 12.125, '2.5', TRUE, '2024-02-29', 5.99)"));
    db->exec(u("INSERT INTO t VALUES (2, NULL, NULL, NULL, NULL, NULL, NULL, NULL)"));
    db->exec(u("INSERT INTO t VALUES (3, -5, 1e300, 1e-400, 'NaN', FALSE, NULL, -1234.5)"));
    db->exec(u("INSERT INTO t VALUES (4, -5, 1e-300, 1e15, 'Infinity', FALSE, NULL, 0)"));
    db->exec(u("INSERT INTO t VALUES (5, 0, 1, 2, 'word', FALSE, NULL, 0)"));
    db->exec(u("INSERT INTO t VALUES (6, 0, 1, 2, '12,50 €', FALSE, NULL, 0)"));
    db->exec(u("INSERT INTO t VALUES (7, 0, 1, 2, '$1,234.50', FALSE, NULL, 0)"));
    const QStringList columns{u("i"), u("d"), u("n"), u("v"), u("b"), u("da"), u("m")};
    TTable fields;
    fields.SetDatabaseName(db->name());
    fields.SetTableName(u("t"));
    for (const nuvo::ScanSource &source : {table("t", columns), query(u("SELECT * FROM t ORDER BY id"), columns)}) {
        fields.Open();
        nuvo::Scan scan(source);
        scan.open();
        nuvo::ScanBlock block;
        ASSERT_TRUE(scan.next(block));
        ASSERT_EQ(block.rows(), 7);
        fields.First();
        for (int row = 0; row < 7; ++row, fields.Next()) {
            for (int column = 0; column < columns.size(); ++column) {
                TField &field = fields.FieldByName(columns[column]);
                EXPECT_EQ(block.isNull(column, row), field.IsNull()) << row << ' ' << columns[column].toStdString();
                const QString error = errorOf([&] { field.AsFloat(); });
                if (error.isEmpty() && !field.IsNull()) {
                    EXPECT_EQ(block.column(column)[row], field.AsFloat());
                } else {
                    EXPECT_TRUE(std::isnan(block.column(column)[row]));
                }
                if (!error.isEmpty() && !source.table.isEmpty()) {
                    EXPECT_EQ(errorOf([&] { block.fail(column, row); }), error);
                }
            }
        }
        fields.Close();
    }
}

TEST_P(Scans, RunOnAThreadOfTheirOwn)
{
    db->makeNumbers(u("numbers"), 20000, 2);
    std::vector<std::vector<double>> records;
    std::thread other([&] { records = read(table("numbers", {u("x1")})); });
    other.join();
    EXPECT_EQ(records.size(), 20000U);
    EXPECT_TRUE(QSqlDatabase::connectionNames().filter(u("nuvo-")).isEmpty());
}

TEST_P(Scans, TellWhichShareIsRead)
{
    db->makeNumbers(u("numbers"), 20000, 2);
    if (db->backend() == TestDatabase::Postgres)
        db->exec(u("ANALYZE numbers"));
    nuvo::Scan scan(table("numbers", {u("x1")}));
    scan.open();
    nuvo::ScanBlock block;
    double before = 0;
    while (scan.next(block)) {
        EXPECT_NEAR(scan.share(), double(scan.records()) / 20000, 1e-3);
        EXPECT_GE(scan.share(), before);
        before = scan.share();
    }
    EXPECT_EQ(scan.share(), 1);
    nuvo::Scan unknown(query(u("SELECT x1 FROM numbers"), {u("x1")}));
    unknown.open();
    ASSERT_TRUE(unknown.next(block));
    EXPECT_LT(unknown.share(), 0);
}

TEST_P(Scans, AreCancelledFromAnotherThreadAlsoInTheMiddleOfAStatement)
{
    // No record comes before the whole of it is counted, which takes minutes.
    nuvo::Scan scan(
        query(db->backend() == TestDatabase::Sqlite
                  ? u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 4000000000) "
                      "SELECT count(*) AS c FROM n")
                  : u("SELECT count(pg_sleep(0.01)) AS c FROM generate_series(1, 100000)"),
              {u("c")}));
    std::thread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        scan.cancel();
    });
    QElapsedTimer timer;
    timer.start();
    nuvo::ScanBlock block;
    scan.open();
    EXPECT_FALSE(scan.next(block));
    EXPECT_LT(timer.elapsed(), 30000);
    EXPECT_TRUE(scan.cancelled());
    other.join();
}

TEST_P(Scans, BetweenTwoBlocksEndWhenCancelled)
{
    db->makeNumbers(u("numbers"), 5000, 2);
    nuvo::Scan scan(table("numbers", {u("x1")}));
    scan.open();
    nuvo::ScanBlock block;
    ASSERT_TRUE(scan.next(block));
    scan.cancel();
    EXPECT_FALSE(scan.next(block));
    EXPECT_EQ(block.rows(), 0);
}

TEST_P(Scans, SayWhatIsNotThere)
{
    db->makeNumbers(u("numbers"), 5, 2);
    const auto openError = [](const nuvo::ScanSource &source) {
        return errorOf<EDatabaseError>([&] { nuvo::Scan(source).open(); });
    };
    EXPECT_EQ(openError(table("numbers", {u("y")})),
              u("No field \"y\" in table \"numbers\"; its fields: id, x0, x1."));
    EXPECT_EQ(openError(query(u("SELECT x0 AS a FROM numbers"), {u("y")})),
              u("No field \"y\" in query \"SELECT x0 AS a FROM numbers\"; its fields: a."));
    EXPECT_TRUE(openError(table("none", {u("y")})).startsWith(u("No table \"none\" in database ")));
    EXPECT_TRUE(openError(query(u("DELETE FROM numbers"), {u("y")})).startsWith(u("Only statements that read")));
    nuvo::ScanSource filtered = table("numbers", {u("id")});
    filtered.filter = u("1 = 1) OR (1 = 1");
    EXPECT_NE(openError(filtered), QString());
    filtered.filter = u("nothing > 1");
    EXPECT_TRUE(openError(filtered).startsWith(u("Cannot read table \"numbers\": ")))
        << openError(filtered).toStdString();
    EXPECT_TRUE(QSqlDatabase::connectionNames().filter(u("nuvo-")).isEmpty());
}

TEST_P(Scans, ThatAreCutShortSaySo)
{
    db->makeNumbers(u("numbers"), 5000, 2);
    nuvo::Scan scan(
        query(db->backend() == TestDatabase::Sqlite
                  ? u("SELECT CASE WHEN id > 3000 THEN abs(-9223372036854775807 - 1) ELSE 1 END AS x FROM numbers")
                  : u("SELECT 1 / (3001 - id) AS x FROM numbers"),
              {u("x")}));
    scan.open();
    nuvo::ScanBlock block;
    const QString error = errorOf<EDatabaseError>([&] {
        while (scan.next(block)) {
        }
    });
    EXPECT_TRUE(error.startsWith(u("Cannot read query "))) << error.toStdString();
    EXPECT_LT(scan.records(), 3001);
    EXPECT_FALSE(scan.next(block));
}

TEST(ScansOfServers, ThatFallSilentAreGivenUp)
{
    const auto db = TestDatabase::make(TestDatabase::Postgres);
    db->makeNumbers(u("numbers"), 20000, 2);
    BadServer server(db->name(), BadServer::FallSilent, std::numeric_limits<int>::max());
    nuvo::ScanSource source;
    source.databaseName = server.url() + u("?read_timeout=1");
    source.table = u("numbers");
    source.columns = QStringList{u("x0")};
    nuvo::Scan scan(source);
    scan.open();
    nuvo::ScanBlock block;
    ASSERT_TRUE(scan.next(block));
    server.behaveBadly();
    EXPECT_EQ(errorOf<EDatabaseError>([&] {
                  while (scan.next(block)) {
                  }
              }),
              u("Cannot read table \"numbers\": the server has not answered within 1 s."));
}

TEST(RecordPages, OfAnSqliteFileEndWheneverTheyAreTold)
{
    const auto db = TestDatabase::make(TestDatabase::Sqlite);
    db->exec(u("CREATE VIEW endless AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
               "SELECT i FROM n WHERE i < 0"));
    nuvo::ScanSource source;
    source.databaseName = db->name();
    source.table = u("endless");
    for (int microseconds = 0; microseconds < 60; ++microseconds) {
        nuvo::RecordPages pages(source);
        std::atomic<bool> begins{false};
        std::atomic<bool> ended{false};
        std::thread reader([&] {
            EXPECT_THROW(
                {
                    pages.open();
                    begins = true;
                    pages.count();
                },
                EDatabaseError);
            ended = true;
        });
        while (!begins)
            std::this_thread::yield();
        QElapsedTimer since;
        since.start();
        while (since.nsecsElapsed() < microseconds * 1000) {
        }
        pages.cancel(); // once
        since.restart();
        while (!ended && since.elapsed() < 5000)
            std::this_thread::yield();
        EXPECT_TRUE(ended) << microseconds;
        const bool wasLost = !ended;
        while (!ended)
            pages.cancel();
        reader.join();
        if (wasLost)
            return;
    }
}
