// SPDX-License-Identifier: MIT
#include "platform/Errors.h"
#include "platform/Query.h"
#include "platform/Table.h"
#include "support/Badserver.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Text.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace {

QString openingError(const QString &database)
{
    TTable table;
    table.SetDatabaseName(database);
    table.SetTableName(u("numbers"));
    return errorOf<EDatabaseError>([&] { table.Open(); });
}

void expectOneSentence(const QString &error)
{
    EXPECT_TRUE(error.startsWith(u("Cannot "))) << error.toStdString();
    EXPECT_TRUE(error.endsWith(u'.')) << error.toStdString();
    EXPECT_FALSE(error.contains(u'\n')) << error.toStdString();
    EXPECT_FALSE(error.contains(u("gives no reason"))) << error.toStdString();
    EXPECT_FALSE(error.contains(u("FATAL"))) << error.toStdString();
}

/// An error as the server sends it while a client connects.
QByteArray fatal(const char *message)
{
    QByteArray fields("SFATAL\0VFATAL\0C57P03\0M", 22);
    fields += message;
    fields += QByteArray(2, '\0');
    QByteArray length(4, '\0');
    length[3] = char(fields.size() + 4);
    return 'E' + length + fields;
}

} // namespace

class LostServers : public testing::Test
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Postgres);

    void SetUp() override { db->makeNumbers(u("numbers"), 5000, 2); }
    /// How many messages it takes to open the table.
    int messagesToOpen() const
    {
        BadServer server(db->name(), BadServer::Close, std::numeric_limits<int>::max());
        TTable table;
        table.SetDatabaseName(server.url());
        table.SetTableName(u("numbers"));
        table.Open();
        return server.messages();
    }
};

TEST_F(LostServers, WhileADatasetOpensGiveOneSentenceWhereverItHappens)
{
    const int most = messagesToOpen();
    EXPECT_GT(most, 8);
    for (int after = 0; after <= most; ++after) {
        const BadServer server(db->name(), BadServer::Close, after);
        const QString error = openingError(server.url());
        if (after < most) { // the last one is the end of what was read
            expectOneSentence(error);
        }
    }
}

TEST_F(LostServers, ThatSayWhyAreQuoted)
{
    const BadServer server(fatal("the database system is starting up"));
    const QString error = openingError(server.url());
    expectOneSentence(error);
    EXPECT_TRUE(error.startsWith(u("Cannot open the database \"%1\": ").arg(server.url()))) << error.toStdString();
    EXPECT_TRUE(error.endsWith(u(" failed: the database system is starting up."))) << error.toStdString();
}

TEST_F(LostServers, ThatFallSilentAreGivenUpInTheTimeThatTheAddressSets)
{
    const int most = messagesToOpen();
    for (const int after : {0, 1, 2, 3, 5, most - 2}) {
        const BadServer server(db->name(), BadServer::FallSilent, after);
        QElapsedTimer timer;
        timer.start();
        const QString error = openingError(server.url() + u("?connect_timeout=2&read_timeout=1"));
        EXPECT_LT(timer.elapsed(), 30000);
        expectOneSentence(error);
        EXPECT_TRUE(error.contains(u("timeout expired")) ||
                    error.contains(u("the server has not answered within 1 s")))
            << after << ": " << error.toStdString();
    }
}

TEST_F(LostServers, ThatFallSilentInAScanAreGivenUpAndCanBeReadAgain)
{
    BadServer server(db->name(), BadServer::FallSilent, std::numeric_limits<int>::max());
    TTable table;
    table.SetDatabaseName(server.url() + u("?read_timeout=1"));
    table.SetTableName(u("numbers"));
    table.Open();
    const nuvo::ControlsOff quiet(table);
    table.MoveBy(2000);
    server.behaveBadly();
    const QString error = errorOf<EDatabaseError>([&] { table.Last(); });
    EXPECT_EQ(error, u("Cannot read table \"numbers\": the server has not answered within 1 s."));
    EXPECT_EQ(table.RecNo(), 2001);
    EXPECT_EQ(table.FieldByName(u("id")).AsInteger(), 2001);
}

TEST_F(LostServers, StatementsThatTakeTooLongAreEndedByAServerThatLives)
{
    TQuery query;
    query.SetDatabaseName(db->name() + u("?read_timeout=1"));
    query.SetSQL(u("SELECT pg_sleep(30)"));
    EXPECT_EQ(errorOf<EDatabaseError>([&] { query.Open(); }),
              u("Cannot read query \"SELECT pg_sleep(30)\": canceling statement due to statement timeout."));
}
