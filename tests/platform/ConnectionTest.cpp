// SPDX-License-Identifier: MIT
#include "platform/Errors.h"
#include "platform/Query.h"
#include "platform/Table.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Text.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

#include <gtest/gtest.h>

class ConnectedDatasets : public testing::TestWithParam<TestDatabase::Backend>
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(GetParam());
};

INSTANTIATE_TEST_SUITE_P(On, ConnectedDatasets, testing::Values(TestDatabase::Sqlite, TestDatabase::Postgres),
                         [](const auto &each) { return backendName(each.param); });

namespace {

void open(TTable &table, const QString &database, const QString &name)
{
    table.SetDatabaseName(database);
    table.SetTableName(name);
    table.Open();
}

void open(TTable &table, const TestDatabase &db, const QString &name)
{
    open(table, db.name(), name);
}

} // namespace

TEST_P(ConnectedDatasets, HaveSessionsOfTheirOwnThatOnlyRead)
{
    db->makeNumbers(u("numbers"), 30, 1);
    TTable table;
    open(table, *db, u("numbers"));
    const QStringList own = QSqlDatabase::connectionNames().filter(u("nuvo-"));
    ASSERT_EQ(own.size(), 1);
    QSqlQuery query(QSqlDatabase::database(own[0]));
    EXPECT_FALSE(query.exec(u("DELETE FROM numbers")));
    EXPECT_TRUE(query.lastError().text().contains(
        db->backend() == TestDatabase::Sqlite ? u("readonly database") : u("read-only transaction")));
}

TEST_P(ConnectedDatasets, ReadARegisteredConnectionAndLeaveItOpen)
{
    db->makeNumbers(u("numbers"), 3000, 2);
    const QString name = db->writer().connectionName();
    {
        TTable table;
        table.SetDatabaseName(name);
        table.SetTableName(u("numbers"));
        table.Open();
        const nuvo::ControlsOff quiet(table);
        qint64 seen = 0;
        for (table.First(); !table.Eof(); table.Next(), ++seen) {
            if (seen % 1000 == 500)
                db->exec(u("SELECT 1")); // another statement in the middle of the scan
        }
        EXPECT_EQ(seen, 3000);
        EXPECT_EQ(table.RecordCount(), 3000);
        TQuery query;
        query.SetDatabaseName(name);
        query.SetSQL(u("SELECT * FROM numbers ORDER BY id"));
        query.Open();
        query.Last();
        EXPECT_EQ(query.RecNo(), 3000);
    }
    EXPECT_TRUE(db->writer().isOpen());
    EXPECT_TRUE(QSqlDatabase::contains(name));
    db->exec(u("INSERT INTO numbers VALUES (5000, 1, 1)"));
}

TEST_P(ConnectedDatasets, LeaveATransactionOfARegisteredConnectionToItsOwner)
{
    db->makeNumbers(u("numbers"), 3000, 1);
    QSqlDatabase connection = db->writer();
    ASSERT_TRUE(connection.transaction());
    db->exec(u("DELETE FROM numbers WHERE id > 2500"));
    {
        TTable table;
        table.SetDatabaseName(connection.connectionName());
        table.SetTableName(u("numbers"));
        table.Open();
        table.Last();
        EXPECT_EQ(table.RecNo(), 2500);
        EXPECT_EQ(table.RecordCount(), 2500);
        // What fails is the dataset's business alone.
        TQuery wrong;
        wrong.SetDatabaseName(connection.connectionName());
        wrong.SetSQL(u("SELECT nothing FROM numbers"));
        EXPECT_NE(errorOf<EDatabaseError>([&] { wrong.Open(); }), QString());
        if (db->backend() == TestDatabase::Postgres) {
            wrong.SetSQL(u("SELECT 1 / (id - 2000) FROM numbers"));
            EXPECT_NE(errorOf<EDatabaseError>([&] {
                          wrong.Open();
                          wrong.Last();
                      }),
                      QString());
        }
        table.First();
        EXPECT_TRUE(table.FindKey({2400}));
    }
    db->exec(u("INSERT INTO numbers VALUES (9000, 1)"));
    ASSERT_TRUE(connection.rollback());
    EXPECT_EQ(db->value(u("SELECT COUNT(*) FROM numbers")).toInt(), 3000);
}

TEST_P(ConnectedDatasets, GoOnWhenTheTransactionAroundAScanEnds)
{
    db->makeNumbers(u("numbers"), 3000, 1);
    QSqlDatabase connection = db->writer();
    TTable table;
    table.SetDatabaseName(connection.connectionName());
    table.SetTableName(u("numbers"));
    ASSERT_TRUE(connection.transaction());
    table.Open();
    const nuvo::ControlsOff quiet(table);
    qint64 seen = 0;
    for (table.First(); !table.Eof(); table.Next()) {
        ++seen;
        ASSERT_EQ(table.FieldByName(u("id")).AsInteger(), seen);
        if (seen == 1500 && db->backend() == TestDatabase::Postgres) {
            ASSERT_TRUE(connection.commit());
        }
    }
    EXPECT_EQ(seen, 3000);
}

TEST_P(ConnectedDatasets, OfOneRegisteredConnectionCanBeScannedAtTheSameTime)
{
    db->makeNumbers(u("numbers"), 3000, 1);
    db->makeNumbers(u("others"), 2000, 1);
    TTable first;
    TTable second;
    for (TTable *table : {&first, &second}) {
        table->SetDatabaseName(db->writer().connectionName());
        table->SetTableName(table == &first ? u("numbers") : u("others"));
        table->Open();
        table->DisableControls();
    }
    qint64 seen = 0;
    for (; !first.Eof(); first.Next(), second.Next()) {
        ++seen;
        ASSERT_EQ(first.FieldByName(u("id")).AsInteger(), seen);
        ASSERT_EQ(second.FieldByName(u("id")).AsInteger(), std::min<qint64>(seen, 2000));
        if (seen == 1000)
            first.EnableControls(); // its transaction ends, with the other's cursor in it
    }
    EXPECT_EQ(seen, 3000);
    second.EnableControls();
}

TEST_P(ConnectedDatasets, SurviveThatTheirRegisteredConnectionIsClosedOrRemoved)
{
    db->makeNumbers(u("numbers"), 3000, 1);
    const QString name = u("to be removed");
    const auto add = [&] {
        QSqlDatabase connection = QSqlDatabase::cloneDatabase(db->writer(), name);
        EXPECT_TRUE(connection.open());
    };
    add();
    TTable table;
    table.SetDatabaseName(name);
    table.SetTableName(u("numbers"));
    table.Open();
    QSqlDatabase::database(name).close();
    table.Last(); // Qt opens it again for who asks for it
    EXPECT_EQ(table.RecNo(), 3000);
    table.Close();
    table.Open();
    QSqlDatabase::removeDatabase(name);
    EXPECT_NE(errorOf<EDatabaseError>([&] { table.Last(); }), QString());
    EXPECT_EQ(table.RecNo(), 1);
    add();
    table.Last();
    EXPECT_EQ(table.RecNo(), 3000);
    table.Close();
    QSqlDatabase::removeDatabase(name);
}

TEST_P(ConnectedDatasets, HoldNoStatementBetweenTwoScans)
{
    db->makeNumbers(u("numbers"), 3000, 1);
    TTable table;
    open(table, *db, u("numbers"));
    const auto write = [&] {
        QSqlQuery query(db->writer());
        return query.exec(db->backend() == TestDatabase::Sqlite
                              ? u("UPDATE numbers SET x0 = 1")
                              : u("LOCK TABLE numbers IN ACCESS EXCLUSIVE MODE NOWAIT"));
    };
    if (db->backend() == TestDatabase::Sqlite)
        db->exec(u("PRAGMA busy_timeout = 0"));
    const auto tryToWrite = [&] {
        QSqlDatabase connection = db->writer();
        connection.transaction();
        const bool done = write();
        // A reader that holds the file shows when the change is to be stored.
        const bool stored = done && connection.commit();
        if (!stored)
            connection.rollback();
        return stored;
    };
    EXPECT_TRUE(tryToWrite());
    table.MoveBy(1000);
    EXPECT_TRUE(tryToWrite());
    EXPECT_EQ(table.RecordCount(), 3000);
    EXPECT_TRUE(tryToWrite());
    table.DisableControls();
    table.MoveBy(1000);
    EXPECT_FALSE(tryToWrite()); // in the middle of a scan
    table.EnableControls();
    EXPECT_TRUE(tryToWrite());
    table.DisableControls();
    table.Last();
    EXPECT_TRUE(tryToWrite()); // the end was reached
    table.EnableControls();
    EXPECT_FALSE(table.Locate({u("id")}, {-1}));
    EXPECT_TRUE(tryToWrite());
    table.FindKey({2999});
    EXPECT_TRUE(tryToWrite());
}

TEST(SqliteFiles, CanHaveAnyName)
{
    const std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    db->makeNumbers(u("numbers"), 3, 1);
    for (const char *name :
         {"Größe €.db", "a?b#c.db", "a;b=c.db", "100%25.db", "file:x.db", "it's \"x\".db", " .db"}) {
        const QString path = db->name().section(u'/', 0, -2) + u'/' + u(name);
        ASSERT_TRUE(QFile::copy(db->name(), path));
        TTable table;
        table.SetDatabaseName(path);
        table.SetTableName(u("numbers"));
        table.Open();
        EXPECT_EQ(table.RecordCount(), 3) << name;
    }
}

TEST(SqliteFiles, AreNamedByAPathWhateverItBeginsWith)
{
    const std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    db->makeNumbers(u("numbers"), 3, 1);
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(QFileInfo(db->name()).path()));
    for (const char *name : {"file:x.db", "file:x.db?mode=memory", "FILE:x.db", ":memory:", "x.db"}) {
        ASSERT_TRUE(QFile::copy(db->name(), u(name)));
        TTable table;
        EXPECT_EQ(errorOf<EDatabaseError>([&] { open(table, u(name), u("numbers")); }), QString()) << name;
        EXPECT_EQ(errorOf<EDatabaseError>([&] { EXPECT_EQ(table.RecordCount(), 3); }), QString()) << name;
    }
    ASSERT_TRUE(QDir::setCurrent(before));
}

class WritingFunctions : public testing::Test
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Postgres);

    int largeObjects() { return db->value(u("SELECT COUNT(*) FROM pg_largeobject_metadata")).toInt(); }
    /// Servers from version 16 refuse to make one while they only read; older ones make it, and it goes with the
    /// reading.
    const bool refuses = db->value(u("SHOW server_version_num")).toInt() >= 160000;
    void expectWhatTheServerDoes(const QString &error, const char *function) const
    {
        EXPECT_EQ(error.contains(u("in a read-only transaction")), refuses)
            << function << ": " << error.toStdString();
        EXPECT_EQ(error.isEmpty(), !refuses) << function << ": " << error.toStdString();
    }
};

TEST_F(WritingFunctions, OfAQueryLeaveNothing)
{
    TQuery query;
    query.SetDatabaseName(db->name());
    for (const char *function :
         {"lo_create(0)", "lo_creat(-1)", "lo_from_bytea(0, 'text')", "lo_import('/etc/passwd')",
          "lo_create(g::oid) FROM generate_series(1, 3000) n(g)"}) {
        query.SetSQL(u("SELECT %1").arg(u(function)));
        expectWhatTheServerDoes(errorOf<EDatabaseError>([&] {
                                    query.Open();
                                    query.RecordCount();
                                    query.Last();
                                    EXPECT_FALSE(query.Fields(0).IsNull());
                                }),
                                function);
        query.Close();
        EXPECT_EQ(largeObjects(), 0) << function;
    }
}

TEST_F(WritingFunctions, OfAFilterLeaveNothing)
{
    db->makeNumbers(u("numbers"), 300, 1);
    TTable table;
    table.SetDatabaseName(db->name());
    table.SetTableName(u("numbers"));
    table.SetFilter(u("lo_create(0) > 0"));
    table.SetFiltered(true);
    expectWhatTheServerDoes(errorOf<EDatabaseError>([&] {
                                table.Open();
                                EXPECT_EQ(table.RecordCount(), 300);
                                EXPECT_TRUE(table.FindKey({250}));
                                table.Last();
                            }),
                            "lo_create");
    table.Close();
    EXPECT_EQ(largeObjects(), 0);
}

TEST_F(WritingFunctions, CannotMakeTheSessionWrite)
{
    db->makeNumbers(u("numbers"), 3, 1);
    TQuery query;
    query.SetDatabaseName(db->name());
    for (const char *setting : {"default_transaction_read_only", "transaction_read_only"}) {
        query.SetSQL(u("SELECT set_config('%1', 'off', false)").arg(u(setting)));
        errorOf<EDatabaseError>([&] { query.Open(); });
        query.SetSQL(u("SELECT query_to_xml('DELETE FROM numbers RETURNING 1', true, true, '')"));
        EXPECT_NE(errorOf<EDatabaseError>([&] { query.Open(); }), QString()) << setting;
    }
    EXPECT_EQ(db->value(u("SELECT COUNT(*) FROM numbers")).toInt(), 3);
}

TEST(SqliteFiles, ThatAWriterWritesInWriteAheadModeAreRead)
{
    const std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    db->exec(u("PRAGMA journal_mode = WAL"));
    db->makeNumbers(u("numbers"), 300, 1);
    db->exec(u("BEGIN IMMEDIATE"));
    db->exec(u("INSERT INTO numbers VALUES (1000, 1)"));
    TTable table;
    open(table, *db, u("numbers"));
    EXPECT_EQ(table.RecordCount(), 300);
    table.Last();
    db->exec(u("COMMIT"));
    table.Refresh();
    EXPECT_EQ(table.RecordCount(), 301);
}

TEST(ProgramsEnd, ClosesTheConnectionsOfDatasetsThatAreStillOpen)
{
    EXPECT_EXIT(
        {
            const std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
            db->makeNumbers(u("numbers"), 200, 1);
            auto *left = new TTable; // never deleted
            open(*left, *db, u("numbers"));
            left->DisableControls();
            left->MoveBy(100);
            static int warnings = 0; // Qt's word for a connection that is closed under a statement
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) { ++warnings; });
            QCoreApplication *application = QCoreApplication::instance();
            application->~QCoreApplication(); // it stands on the stack of main()
            const bool quiet = warnings == 0; // newer versions warn of any question after the application
            const bool closed = QSqlDatabase::connectionNames().filter(u("nuvo")).isEmpty() && !left->Active();
            std::_Exit(closed && quiet ? 7 : 1);
        },
        testing::ExitedWithCode(7), "");
}
