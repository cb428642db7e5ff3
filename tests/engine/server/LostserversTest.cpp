// SPDX-License-Identifier: MIT
#include "engine/server/Serverfit.h"
#include "support/Cluster.h"
#include "support/Postgres.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

constexpr const char *kSlowly = "pg_sleep(0.005)::text IS NOT NULL";

void expectOneSentence(const QString &error, const char *beginning)
{
    EXPECT_TRUE(error.startsWith(u(beginning))) << error.toStdString();
    EXPECT_TRUE(error.endsWith(u'.')) << error.toStdString();
    EXPECT_FALSE(error.contains(u'\n')) << error.toStdString();
    EXPECT_FALSE(error.contains(u("gives no reason"))) << error.toStdString();
}

/// Does something half a second after it was made.
class Later
{
public:
    template <class Action>
    explicit Later(Action action)
        : thread_([action] {
              std::this_thread::sleep_for(std::chrono::milliseconds(500));
              action();
          })
    {
    }
    Later(const Later &) = delete;
    Later &operator=(const Later &) = delete;
    ~Later() { thread_.join(); }

private:
    std::thread thread_;
};

} // namespace

TEST(ServerSumsOfALostServer, AreOneSentence)
{
    PostgresServer server;
    const auto db = TestDatabase::makeOn(server.url());
    db->makeNumbers(u("t"), 1000, 2);
    nuvo::RecordRequest request = requestOf(db->name(), "t", {u("x0")}, "x1");
    request.source.filter = u(kSlowly);
    QString error;
    {
        const Later later([&] { server.kill(); });
        error = errorOf<EDatabaseError>([&] { readOn(request); });
    }
    expectOneSentence(error, "Cannot read table \"t\": ");
    expectOneSentence(errorOf<EDatabaseError>([&] { readOn(request); }), "Cannot open the database \"postgresql://");
}

TEST(ServerSums, EndWhenTheyAreCancelledAndSoDoesTheirStatement)
{
    const auto db = TestDatabase::make(TestDatabase::Postgres);
    db->makeNumbers(u("t"), 20000, 2);
    nuvo::RecordRequest request = requestOf(db->name(), "t", {u("x0")}, "x1");
    request.source.filter = u(kSlowly); // a hundred seconds
    nuvo::ServerReader reader(request);
    const auto began = std::chrono::steady_clock::now();
    {
        const Later later([&] { reader.cancel(); });
        EXPECT_FALSE(reader.read().has_value());
    }
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(20));
    EXPECT_EQ(db->value(u("SELECT count(*) FROM pg_stat_activity WHERE datname = current_database() AND "
                          "application_name = 'nuvo' AND state = 'active'"))
                  .toInt(),
              0);
    nuvo::ServerReader never(request);
    never.cancel();
    EXPECT_FALSE(never.read().has_value());
}

/// A cluster with records in each part.
class ServerSumsOfParts : public testing::Test
{
protected:
    std::unique_ptr<Cluster> cluster;

    void SetUp() override
    {
        if (!cluster)
            cluster = std::make_unique<Cluster>();
        cluster->makeTable(u("id int, x float8, y float8"));
        for (const char *name : {"t1", "t2", "t3a", "t3b"})
            cluster->parent->exec(u("INSERT INTO %1 SELECT %2 + i, i % 17, i % 29 FROM generate_series(1, 400) i")
                                      .arg(u(name), u(name) == u("t1")    ? u("0")
                                                    : u(name) == u("t2")  ? u("1000")
                                                    : u(name) == u("t3a") ? u("2000")
                                                                          : u("3000")));
    }
    QString error() const
    {
        return errorOf<EDatabaseError>([&] { readOn(requestOf(cluster->name(), "t", {u("x")})); });
    }
};

/// One of its servers belongs to the test.
class ServerSumsOfALostPart : public ServerSumsOfParts
{
protected:
    PostgresServer second;

    void SetUp() override
    {
        cluster = std::make_unique<Cluster>(second.url());
        ServerSumsOfParts::SetUp();
    }
};

TEST_F(ServerSumsOfALostPart, AreOneSentenceThatNamesIt)
{
    EXPECT_EQ(error(), QString());
    second.kill();
    expectOneSentence(error(), "Cannot read table \"t\": its partition \"public.t2\" on server \"shard2\": ");
    second.startAgain();
    EXPECT_EQ(error(), QString());
}

TEST_F(ServerSumsOfALostPart, InTheMiddleOfAStatementToo)
{
    cluster->shards[1]->exec(u("ALTER TABLE t2 RENAME TO t2_rows"));
    cluster->shards[1]->exec(u("CREATE VIEW t2 AS SELECT * FROM t2_rows WHERE %1").arg(u(kSlowly)));
    QString why;
    {
        const Later later([&] { second.kill(); });
        why = error();
    }
    expectOneSentence(why, "Cannot read table \"t\": its partition \"public.t2\" on server \"shard2\": ");
}

TEST_F(ServerSumsOfParts, TellOfAColumnThatAPartHasNot)
{
    cluster->shards[1]->exec(u("ALTER TABLE t3b RENAME COLUMN x TO z"));
    const QString why = error();
    expectOneSentence(why, "Cannot read table \"t\": its partition \"public.t3b\" on server \"shard2\": ");
    EXPECT_TRUE(why.contains(u("column \"x\" does not exist"))) << why.toStdString();
}
