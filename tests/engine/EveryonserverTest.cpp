// SPDX-License-Identifier: MIT
#include "engine/Everyrecords.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

// Every record of a table on a PostgreSQL server, read or added up there.

namespace {

class EveryOnServer : public testing::Test
{
protected:
    /// y on a and b, nulls in each of them.
    void fill(int count)
    {
        db->exec(text("CREATE TABLE data (id INTEGER PRIMARY KEY, y DOUBLE PRECISION, a DOUBLE PRECISION, b DOUBLE "
                      "PRECISION)"));
        db->exec(text("INSERT INTO data SELECT i, CASE WHEN i % 31 = 0 THEN NULL ELSE (i * 7919 % 1009) / 16.0 END, "
                      "CASE WHEN i % 17 = 0 THEN NULL ELSE (i * 31 % 977) / 8.0 END, "
                      "CASE WHEN i % 13 = 0 THEN NULL ELSE i % 59 END FROM generate_series(1, %1) AS i")
                     .arg(count));
        for (qint64 i = 1; i <= count; ++i) {
            if (i % 31 == 0 || i % 17 == 0 || i % 13 == 0)
                continue;
            y.push_back(double(i * 7919 % 1009) / 16);
            x[0].push_back(double(i * 31 % 977) / 8);
            x[1].push_back(double(i % 59));
            records.push_back(i);
        }
        bind(regression, *db, "data");
        define(regression, "a b");
    }
    /// A query whose records take hours.
    void bindSlow()
    {
        db->makeNumbers(text("n"), 2000, 2);
        slow.SetDatabaseName(db->name());
        slow.SetSQL(text("SELECT n.x0 + o.x1 AS y, p.x1 AS a FROM n, n o, n p"));
        slow.Open();
        define(slow, "a");
    }
    /// Transactions that are reading its table.
    int readersOfSlow()
    {
        return db
            ->value(text("SELECT count(*) FROM pg_locks WHERE relation = 'n'::regclass AND pid <> "
                         "pg_backend_pid()"))
            .toInt();
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Postgres);
    Messages messages;
    TMLRTable regression;
    TMLRQuery slow;
    std::vector<std::vector<double>> x{2};
    std::vector<double> y;
    std::vector<qint64> records;
};

} // namespace

TEST_F(EveryOnServer, IsReadWithItsExactFigures)
{
    fill(20000);
    regression.SetRecords(TMLRTable::AllRecords);
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_EQ(regression.RecordsRead(), 20000);
    EXPECT_EQ(regression.RecordsUsed(), qint64(y.size()));
    EXPECT_EQ(regression.SampleSize(), 2500);
    expectDigits(regression, BigFit(x, y), 14);
}

TEST_F(EveryOnServer, IsAddedUpThereWithTheFirstRecordsAsSample)
{
    fill(20000);
    regression.SetRecords(TMLRTable::ServerRecords);
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_EQ(regression.RecordsUsed(), qint64(y.size()));
    EXPECT_EQ(regression.DegreesOfFreedom(), qint64(y.size()) - 3);
    ASSERT_EQ(regression.SampleSize(), 2500);
    EXPECT_EQ(regression.Gety(1), y[0]);
    EXPECT_EQ(regression.Getx(2500, 2), x[1][2499]);
    expectDigits(regression, BigFit(x, y), 12);
}

TEST_F(EveryOnServer, ALoadThatIsStoppedEndsTheStatement)
{
    bindSlow();
    for (const auto use : {TMLRQuery::AllRecords, TMLRQuery::ServerRecords}) {
        slow.SetRecords(use);
        QSignalSpy ended(&slow, &TMLRQuery::LoadEnded);
        slow.StartReLoad();
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 300)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        EXPECT_TRUE(ended.isEmpty());
        EXPECT_GT(readersOfSlow(), 0);
        clock.start();
        slow.StopLoad();
        EXPECT_LT(clock.elapsed(), 5000);
        EXPECT_EQ(ended, QList<QVariantList>{{false}});
        EXPECT_TRUE(slow.LoadStopped());
        EXPECT_EQ(readersOfSlow(), 0);
    }
}

TEST_F(EveryOnServer, AComponentCanGoMeanwhile)
{
    for (const auto use : {TMLRQuery::AllRecords, TMLRQuery::ServerRecords}) {
        auto component = std::make_unique<TMLRQuery>();
        if (use == TMLRQuery::AllRecords)
            db->makeNumbers(text("n"), 2000, 2);
        component->SetDatabaseName(db->name());
        component->SetSQL(text("SELECT n.x0 + o.x1 AS y, p.x1 AS a FROM n, n o, n p"));
        component->Open();
        define(*component, "a");
        component->SetRecords(use);
        component->StartReLoad();
        waitFor([] { return true; });
        component.reset();
    }
}
