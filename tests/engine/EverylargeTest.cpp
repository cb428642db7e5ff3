// SPDX-License-Identifier: MIT
#include "engine/Everyrecords.h"

#include <QElapsedTimer>
#include <QFile>

#include <gtest/gtest.h>

// Tables of millions of records: their exact figures, in the memory of a small one.

namespace {

/// The most memory that the process ever had, in MB.
double peak()
{
    QFile status(text("/proc/self/status"));
    EXPECT_TRUE(status.open(QIODevice::ReadOnly));
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.simplified().split(' ')[1].toDouble() / 1024;
    }
    return 0;
}

class EveryLarge : public testing::TestWithParam<int>
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    TMLRTable regression;
};
INSTANTIATE_TEST_SUITE_P(Millions, EveryLarge, testing::Values(1, 10));

} // namespace

TEST_P(EveryLarge, HasItsExactFiguresInTheMemoryOfASmallOne)
{
    const int count = GetParam() * 1000000;
    db->exec(text("PRAGMA synchronous = OFF"));
    db->makeNumbers(text("data"), count, 3);
    bind(regression, *db, "data");
    define(regression, "x1 x2", "x0");
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    const double small = peak();
    regression.SetRecords(TMLRTable::AllRecords);
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    const double large = peak();
    std::printf("%d records: %.2f s, %.1f MB above the first 2500\n", count, double(clock.elapsed()) / 1000,
                large - small);
    EXPECT_EQ(regression.RecordsUsed(), count);
    EXPECT_EQ(regression.SampleSize(), 2500);
    EXPECT_LT(large - small, 10);

    // The values come back after 1009 records.
    constexpr int period = 1009;
    std::vector<std::vector<double>> x(2);
    std::vector<double> y;
    std::vector<qint64> weights;
    for (int i = 1; i <= period; ++i) {
        y.push_back(TestDatabase::number(i, 0));
        for (int j = 0; j < 2; ++j)
            x[std::size_t(j)].push_back(TestDatabase::number(i, j + 1));
        weights.push_back(count / period + (i <= count % period ? 1 : 0));
    }
    expectDigits(regression, BigFit(x, y, weights), 14);
}
