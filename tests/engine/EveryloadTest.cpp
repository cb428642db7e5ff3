// SPDX-License-Identifier: MIT
#include "engine/Everyrecords.h"

#include <QTimer>

#include <gtest/gtest.h>

// A load of every record while it is under way.

namespace {

/// Its log stays when it goes.
class Query : public TMLRQuery
{
public:
    explicit Query(ProgressLog &log) : log_(log) {}

protected:
    std::unique_ptr<nuvo::Progress> MakeLoadProgress() override { return std::make_unique<RecordedProgress>(log_); }

private:
    ProgressLog &log_;
};

/// Ends the component at the n-th value that it is told, and counts what it is told afterwards.
struct EndingLog
{
    std::unique_ptr<TMLRQuery> query;
    int endAt = 1;
    int told = 0;
    int afterwards = 0;
    bool destroyed = false;

    void tell(bool value)
    {
        afterwards += query == nullptr;
        if (value && query != nullptr && ++told == endAt)
            query.reset();
    }
};

class EndingProgress : public nuvo::Progress
{
public:
    explicit EndingProgress(EndingLog &log) : log_(log) {}
    ~EndingProgress() override { log_.destroyed = true; }
    void Show() override { log_.tell(false); }
    void SetGaugeProgress(unsigned short) override { log_.tell(true); }
    void SetGaugeText(const QString &) override { log_.tell(false); }
    bool Stopped() const override
    {
        log_.tell(false);
        return false;
    }

private:
    EndingLog &log_;
};

class EndingQuery : public TMLRQuery
{
public:
    explicit EndingQuery(EndingLog &log) : log_(log) {}

protected:
    std::unique_ptr<nuvo::Progress> MakeLoadProgress() override { return std::make_unique<EndingProgress>(log_); }

private:
    EndingLog &log_;
};

class UnderWay : public testing::Test
{
protected:
    UnderWay() { make(); }

    void make()
    {
        db->exec(text("CREATE TABLE t (y DOUBLE PRECISION, a DOUBLE PRECISION)"));
        db->exec(text("INSERT INTO t VALUES (1, 2), (2, 5), (4, 6), (3, 3)"));
        query = std::make_unique<Query>(log);
        query->SetDatabaseName(db->name());
        query->SetSQL(endless());
        query->Open();
        define(*query, "a");
        query->SetRecords(Query::AllRecords);
    }
    void finite()
    {
        query->SetSQL(text("SELECT * FROM t"));
        query->Open();
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    Messages messages;
    ProgressLog log;
    std::unique_ptr<Query> query;
};

} // namespace

TEST_F(UnderWay, AStartedLoadReturnsAtOnceAndTellsItsEnd)
{
    finite();
    QSignalSpy ended(query.get(), &Query::LoadEnded);
    query->StartReLoad();
    EXPECT_FALSE(query->Loaded());
    ASSERT_TRUE(waitFor([&] { return !ended.isEmpty(); }));
    EXPECT_EQ(ended, QList<QVariantList>{{true}});
    EXPECT_TRUE(query->Loaded());
    query->Execute();
    EXPECT_EQ(query->RecordsUsed(), 4);
}

TEST_F(UnderWay, StopLoadEndsAStartedLoadAtOnce)
{
    QSignalSpy ended(query.get(), &Query::LoadEnded);
    query->StartReLoad();
    query->StopLoad();
    EXPECT_EQ(ended, QList<QVariantList>{{false}});
    EXPECT_TRUE(query->LoadStopped());
    EXPECT_FALSE(query->Loaded());
    // Nothing is left that would come later, and the next load is a load.
    finite();
    query->StartReLoad();
    ASSERT_TRUE(waitFor([&] { return ended.size() == 2; }));
    EXPECT_TRUE(query->Loaded());
    EXPECT_FALSE(query->LoadStopped());
    query->StopLoad();
    EXPECT_EQ(ended.size(), 2);
}

TEST_F(UnderWay, TheComponentRefusesToBeChangedMeanwhile)
{
    query->StartReLoad();
    const auto refused = [&](const auto &call) { return !errorOf<EDatabaseError>(call).isEmpty(); };
    EXPECT_TRUE(refused([&] { query->ReLoad(); }));
    EXPECT_TRUE(refused([&] { query->StartReLoad(); }));
    EXPECT_TRUE(refused([&] { query->Execute(); }));
    EXPECT_TRUE(refused([&] { query->Close(); }));
    EXPECT_TRUE(refused([&] { query->SetSQL(text("SELECT 1")); }));
    EXPECT_TRUE(refused([&] { query->SetRecords(Query::FirstRecords); }));
    EXPECT_TRUE(refused([&] { query->SetControl(1, TIndepVar()); }));
    query->StopLoad();
    query->Close();
}

TEST_F(UnderWay, ComponentsCanGoWhileAStartedLoadIsUnderWay)
{
    for (int i = 0; i < 5; ++i) {
        query->StartReLoad();
        if (i > 2)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        query.reset();
        db = TestDatabase::make(TestDatabase::Sqlite);
        make();
    }
}

TEST_F(UnderWay, ReLoadWaitsAndTheApplicationLives)
{
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (++ticks == 3)
            query->StopLoad();
    });
    timer.start(10);
    EXPECT_FALSE(query->ReLoad());
    EXPECT_GE(ticks, 3);
    EXPECT_TRUE(query->LoadStopped());
    query->Close();
}

TEST_F(UnderWay, AComponentCanGoDuringReLoad)
{
    QTimer::singleShot(30, [&] { query.reset(); });
    TRegression *const regression = query.get();
    EXPECT_FALSE(regression->ReLoad());
    EXPECT_FALSE(query);
}

TEST_F(UnderWay, EscapeOnTheProgressEndsIt)
{
    query->SetShowLoadProgress(true);
    log.meanwhile = [&](const QString &call) {
        // The records are counted as they come.
        if (call.startsWith(text("Records Read: ")) && call.mid(14).toLongLong() > 0)
            log.stopped = true;
    };
    EXPECT_FALSE(query->ReLoad());
    EXPECT_TRUE(query->LoadStopped());
    EXPECT_EQ(log.made, 1);
    EXPECT_EQ(log.alive, 0);

    log.stopped = false;
    QSignalSpy ended(query.get(), &Query::LoadEnded);
    query->StartReLoad();
    ASSERT_TRUE(waitFor([&] { return !ended.isEmpty(); }));
    EXPECT_TRUE(query->LoadStopped());
    EXPECT_EQ(log.alive, 0);
}

TEST_F(UnderWay, AComponentCanGoWhileItsProgressIsShown)
{
    query->SetShowLoadProgress(true);
    int made = 0;
    for (const bool started : {false, true}) {
        log.meanwhile = [&](const QString &) {
            ++made;
            QTimer::singleShot(0, [&] { query.reset(); });
            log.meanwhile = nullptr;
        };
        if (started)
            query->StartReLoad();
        else
            EXPECT_FALSE(static_cast<TRegression *>(query.get())->ReLoad());
        ASSERT_TRUE(waitFor([&] { return query == nullptr; }));
        EXPECT_EQ(made, started ? 2 : 1);
        db = TestDatabase::make(TestDatabase::Sqlite);
        make();
        query->SetShowLoadProgress(true);
    }
}

TEST_F(UnderWay, AProgressIsToldNoMoreWhenItHasEndedItsComponent)
{
    for (const TMLRQuery::TRecords records : {TMLRQuery::FirstRecords, TMLRQuery::AllRecords}) {
        for (const bool started : {false, true}) {
            for (const int endAt : {1, 2, 4}) {
                EndingLog ending;
                ending.endAt = endAt;
                ending.query = std::make_unique<EndingQuery>(ending);
                TMLRQuery *const dying = ending.query.get();
                dying->SetDatabaseName(db->name());
                dying->SetSQL(records == TMLRQuery::AllRecords ? endless() : text("SELECT * FROM t, t AS u"));
                dying->Open();
                define(*dying, "a");
                dying->SetRecords(records);
                dying->SetShowLoadProgress(true);
                if (started)
                    dying->StartReLoad();
                else
                    EXPECT_FALSE(static_cast<TRegression *>(dying)->ReLoad());
                ASSERT_TRUE(waitFor([&] { return ending.query == nullptr && ending.destroyed; }));
                EXPECT_EQ(ending.afterwards, 0) << int(records) << started << endAt;
            }
        }
    }
}

TEST_F(UnderWay, AnErrorOfAStartedLoadIsShown)
{
    query->SetSQL(text("SELECT y, 'word' AS a FROM t"));
    query->Open();
    QSignalSpy ended(query.get(), &Query::LoadEnded);
    query->StartReLoad();
    ASSERT_TRUE(waitFor([&] { return !ended.isEmpty(); }));
    EXPECT_EQ(ended, QList<QVariantList>{{false}});
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_TRUE(messages.shown[0].text.contains(text("word")));
    EXPECT_EQ(messages.shown[0].type, TMsgDlgType::mtError);
    EXPECT_FALSE(query->LoadStopped());

    // What is wrong before anything is read is for the caller.
    define(*query, "nothing");
    EXPECT_FALSE(errorOf<EDatabaseError>([&] { query->StartReLoad(); }).isEmpty());
    EXPECT_EQ(ended.size(), 1);
    query->Close();
}

TEST_F(UnderWay, AStoppedLoadLeavesTheFiguresOfTheOneBefore)
{
    finite();
    ASSERT_TRUE(query->ReLoad());
    query->Execute();
    const double slope = query->Getb(1);
    query->SetSQL(endless());
    query->Open();
    query->StartReLoad();
    query->StopLoad();
    EXPECT_FALSE(query->Loaded());
    EXPECT_FALSE(query->ResultsCurrent());
    EXPECT_EQ(query->Getb(1), slope);
    EXPECT_EQ(query->RecordsUsed(), 4);
}

TEST_F(UnderWay, WritersWaitNoLongerThanTheScan)
{
    query->StartReLoad();
    ASSERT_TRUE(waitFor([] { return true; }));
    query->StopLoad();
    db->exec(text("INSERT INTO t VALUES (5, 6)"));
}

TEST_F(UnderWay, WithTheFirstRecordsAStartedLoadIsALoad)
{
    finite();
    query->SetRecords(Query::FirstRecords);
    QSignalSpy ended(query.get(), &Query::LoadEnded);
    query->StartReLoad();
    EXPECT_TRUE(query->Loaded());
    EXPECT_EQ(ended, QList<QVariantList>{{true}});
}
