// SPDX-License-Identifier: MIT
#include "engine/Recordscan.h"
#include "engine/server/Serverfit.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

constexpr qint64 kRows = 120000;

/// A table that is large enough to be read in two halves.
class HalvesOfATable : public testing::Test
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);

    void SetUp() override
    {
        db->exec(u("PRAGMA synchronous = OFF"));
        fill("t", "");
    }
    /// The row numbers have gaps, and are below and above 0.
    void fill(const char *table, const char *kind)
    {
        db->exec(
            u("CREATE TABLE %1 (n INTEGER PRIMARY KEY, i INT, x1 REAL, x2 REAL, y REAL) %2").arg(u(table), u(kind)));
        db->exec(u("INSERT INTO %1 WITH RECURSIVE r(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM r WHERE i < %2) "
                   "SELECT i * 5 - 300000, i, CASE WHEN i % 50000 > 2 THEN i * 7919 % 10007 + 0.5 END, "
                   "i * i % 997 + 1e6, i * 31 % 1013 FROM r")
                     .arg(u(table))
                     .arg(kRows));
    }
    nuvo::RecordSums read(const char *table = "t", bool onlyAllColumns = false)
    {
        nuvo::RecordRequest request = requestOf(db->name(), table, {u("x1"), u("x2"), u("i")});
        request.onlyAllColumns = onlyAllColumns;
        std::optional<nuvo::RecordSums> sums = nuvo::RecordScan(request).read();
        if (!sums)
            throw EDatabaseError(u("It was ended."));
        return std::move(*sums);
    }
};

void expectSame(nuvo::RecordSums &one, nuvo::RecordSums &other)
{
    EXPECT_EQ(one.read, other.read);
    EXPECT_EQ(one.total, other.total);
    EXPECT_EQ(one.leftOut, other.leftOut);
    for (nuvo::ControlSet set = 0; set < 8; ++set) {
        EXPECT_EQ(one.sums.count(set), other.sums.count(set));
        const nuvo::CrossProducts a = one.sums.products(set);
        const nuvo::CrossProducts b = other.sums.products(set);
        for (size_t i = 0; i < a.size(); ++i) {
            for (size_t j = 0; j < a.size(); ++j)
                EXPECT_EQ(double(a[i][j]), double(b[i][j])) << set << ' ' << i << ' ' << j;
        }
        const auto ours = one.sums.columns(set);
        const auto theirs = other.sums.columns(set);
        ASSERT_EQ(ours.size(), theirs.size());
        for (size_t k = 0; k < ours.size(); ++k) {
            EXPECT_EQ(ours[k].min, theirs[k].min);
            EXPECT_EQ(ours[k].max, theirs[k].max);
            EXPECT_EQ(ours[k].deviation, theirs[k].deviation);
        }
    }
}

} // namespace

TEST_F(HalvesOfATable, GiveTheSumsOfTheWhole)
{
    // Without row numbers it is read in one go.
    fill("whole", "WITHOUT ROWID");
    nuvo::RecordSums halves = read();
    nuvo::RecordSums whole = read("whole");
    EXPECT_EQ(halves.read, kRows);
    EXPECT_EQ(halves.sums.count(7), kRows - 8);
    EXPECT_EQ(halves.leftOut[1].first, (std::vector<qint64>{1, 2, 50000, 50001, 50002, 100000, 100001, 100002}));
    expectSame(halves, whole);
}

TEST_F(HalvesOfATable, GiveASampleOfBothWithTheOrdinalsOfTheTable)
{
    const nuvo::EvenSample::Rows rows = read().sample.rows(7);
    ASSERT_EQ(rows.ordinals.size(), 2500U);
    EXPECT_TRUE(std::is_sorted(rows.ordinals.begin(), rows.ordinals.end()));
    for (size_t k = 0; k < rows.ordinals.size(); ++k)
        EXPECT_EQ(rows.columns[2][k], double(rows.ordinals[k]));
    // Of 2500 even draws 1250 +- 25 fall into a half; six times that is chance once in a thousand million.
    const auto upper =
        std::lower_bound(rows.ordinals.begin(), rows.ordinals.end(), kRows / 2) - rows.ordinals.begin();
    EXPECT_NEAR(double(upper), 1250, 150);
}

TEST_F(HalvesOfATable, AreTheSameSideBySideAndOneAfterTheOther)
{
    nuvo::RecordSums besides = read();
    // Beside a write-ahead log somebody could write between the two connections.
    EXPECT_EQ(db->value(u("PRAGMA journal_mode = WAL")).toString(), u("wal"));
    nuvo::RecordSums inTurn = read();
    expectSame(besides, inTurn);
    for (const nuvo::ControlSet set : {0U, 3U, 7U}) {
        EXPECT_EQ(besides.sample.rows(set).ordinals, inTurn.sample.rows(set).ordinals);
        EXPECT_EQ(besides.sample.rows(set).columns[1], inTurn.sample.rows(set).columns[1]);
    }
}

TEST_F(HalvesOfATable, TellTheRecordOfAnError)
{
    db->exec(u("UPDATE t SET x2 = 'many' WHERE i = 110000"));
    const nuvo::RecordSums sums = read();
    ASSERT_EQ(sums.errors.size(), 1U);
    EXPECT_EQ(sums.errors[0].record, 110000);
    EXPECT_EQ(sums.read, kRows);
    const QString error = errorOf<EConvertError>([&] { read("t", true); });
    EXPECT_TRUE(error.contains(u("record 110000"))) << error.toStdString();
}

TEST_F(HalvesOfATable, AreEndedBoth)
{
    nuvo::RecordScan scan(requestOf(db->name(), "t", {u("x1"), u("x2"), u("i")}));
    std::optional<nuvo::RecordSums> sums;
    std::thread reading([&] { sums = scan.read(); });
    while (scan.records() == 0)
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    scan.cancel();
    reading.join();
    EXPECT_FALSE(sums);
    EXPECT_LT(scan.records(), kRows);
    db->exec(u("DELETE FROM t WHERE i = 1")); // nobody reads any more
}

TEST_F(HalvesOfATable, OfRowNumbersAtTheEndsOfTheirRange)
{
    db->exec(u("UPDATE t SET n = -9223372036854775807 - 1 WHERE i = 1"));
    db->exec(u("UPDATE t SET n = 9223372036854775807 WHERE i = %1").arg(kRows));
    EXPECT_EQ(read().read, kRows);
}

TEST(RowNumbers, AreHalvedWithoutLeavingTheirRange)
{
    using Limits = std::numeric_limits<qint64>;
    const auto [lower, upper] = nuvo::RowNumbers{Limits::min(), Limits::max()}.halves();
    EXPECT_EQ(lower, (nuvo::RowNumbers{Limits::min(), -1}));
    EXPECT_EQ(upper, (nuvo::RowNumbers{0, Limits::max()}));
    EXPECT_EQ((nuvo::RowNumbers{1, 3}.halves().second), (nuvo::RowNumbers{3, 3}));
}
