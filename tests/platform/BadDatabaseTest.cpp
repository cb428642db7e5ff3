// SPDX-License-Identifier: MIT
#include "platform/Errors.h"
#include "platform/Query.h"
#include "platform/Table.h"
#include "support/Databases.h"
#include "support/Postgres.h"
#include "support/Print.h"
#include "support/Text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>
#include <QTcpServer>
#include <QThread>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

/// What opening a table of this database says.
QString openError(const QString &database)
{
    const QStringList connections = QSqlDatabase::connectionNames();
    TTable table;
    table.SetDatabaseName(database);
    table.SetTableName(u("t"));
    QString error = errorOf<EDatabaseError>([&] { table.Open(); });
    EXPECT_FALSE(table.Active());
    EXPECT_FALSE(error.contains(u'\n')) << error.toStdString();
    // Field definitions are as far away, and nothing is left behind.
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.GetFieldNames(); }), error);
    if (!error.startsWith(u("No table"))) {
        EXPECT_EQ(errorOf<EDatabaseError>([&] { table.TableNames(); }), error);
    }
    EXPECT_EQ(QSqlDatabase::connectionNames(), connections);
    return error;
}

} // namespace

TEST(BadDatabases, WithoutANameAreRefused)
{
    EXPECT_EQ(openError(QString()), u("No database is named (DatabaseName is empty)."));
}

TEST(BadDatabases, ThatAreNotThereAreNotMade)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(u("missing.db"));
    EXPECT_EQ(openError(path),
              u("Cannot open the database \"%1\": there is no such file and no registered connection of that name.")
                  .arg(path));
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_EQ(openError(directory.path()),
              u("Cannot open the database \"%1\": it is a directory, not an SQLite file.").arg(directory.path()));
}

TEST(BadDatabases, ThatArePipesOrDevicesAreRefusedAndNotOpened)
{
    const QTemporaryDir directory;
    const QString pipe = directory.filePath(u("pipe.db"));
    ASSERT_EQ(::mkfifo(qPrintable(pipe), 0600), 0); // opening it would wait for ever
    for (const QString &path : {pipe, u("/dev/zero")})
        EXPECT_EQ(openError(path),
                  u("Cannot open the database \"%1\": it is a device or a pipe, not an SQLite file.").arg(path));
}

TEST(BadDatabases, ThatAreSomeOtherFileAreRefused)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(u("notes.txt"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("These are notes and no database, however long they are. ").repeated(50));
    file.close();
    EXPECT_EQ(openError(path), u("Cannot open the database \"%1\": the file is no SQLite database.").arg(path));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.close();
    EXPECT_EQ(openError(path).replace(path, u("…")), u("No table \"t\" in database \"…\"; its tables: none."));
    EXPECT_EQ(QFileInfo(path).size(), 0);
}

TEST(BadDatabases, ThatMayNotBeReadAreRefused)
{
    const std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    db->makeNumbers(u("t"), 3, 1);
    const QString directory = QFileInfo(db->name()).path();
    const QFile::Permissions own = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    // Root may read everything.
    const bool root = geteuid() == 0;
    constexpr uid_t kStranger = 65534;
    const auto openAsStranger = [&] {
        if (root) {
            EXPECT_EQ(setresuid(kStranger, kStranger, 0), 0);
        }
        QString error = openError(db->name());
        if (root) {
            EXPECT_EQ(setresuid(0, 0, 0), 0);
        }
        return error;
    };
    ASSERT_TRUE(QFile::setPermissions(db->name(), {}));
    ASSERT_TRUE(QFile::setPermissions(directory, own | QFile::ExeGroup | QFile::ExeOther));
    EXPECT_EQ(openAsStranger(),
              u("Cannot open the database \"%1\": there is no permission to read the file.").arg(db->name()));
    ASSERT_TRUE(QFile::setPermissions(directory, {}));
    EXPECT_EQ(openAsStranger(),
              u("Cannot open the database \"%1\": there is no permission to read its directory.").arg(db->name()));
    ASSERT_TRUE(QFile::setPermissions(directory, own));
}

TEST(BadDatabases, ThatAWriterLocksSayThatTheyAreLocked)
{
    const std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    db->makeNumbers(u("t"), 3000, 1);
    TTable table;
    table.SetDatabaseName(db->name());
    table.SetTableName(u("t"));
    table.Open();
    db->exec(u("BEGIN EXCLUSIVE"));
    EXPECT_EQ(openError(db->name()), u("Cannot open the database \"%1\": it is locked by another program that "
                                       "writes; try again when that is done.")
                                         .arg(db->name()));
    // One that is open keeps what it has and goes on when the writer is done.
    EXPECT_EQ(
        errorOf<EDatabaseError>([&] { table.Last(); }),
        u("Cannot read table \"t\": it is locked by another program that writes; try again when that is done."));
    EXPECT_EQ(table.RecNo(), 1);
    EXPECT_TRUE(errorOf<EDatabaseError>([&] {
                    table.RecordCount();
                }).endsWith(u(": it is locked by another program that writes; try again when that is done.")));
    EXPECT_EQ(table.MoveBy(10), 10);
    db->exec(u("COMMIT"));
    table.Last();
    EXPECT_EQ(table.RecNo(), 3000);
}

TEST(BadDatabases, ThatAreDamagedInTheMiddleSaySo)
{
    const std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    db->makeNumbers(u("t"), 20000, 3);
    TTable table;
    table.SetDatabaseName(db->name());
    table.SetTableName(u("t"));
    table.Open();
    QFile file(db->name());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const qint64 middle = file.size() / 2;
    ASSERT_TRUE(file.seek(middle / 4096 * 4096));
    file.write(QByteArray(32768, '\x5a'));
    file.close();
    const QString error = errorOf<EDatabaseError>([&] {
        const nuvo::ControlsOff quiet(table);
        for (; !table.Eof(); table.Next()) {
        }
    });
    EXPECT_EQ(error, u("Cannot read table \"t\": database disk image is malformed."));
    EXPECT_FALSE(table.ControlsDisabled());
    EXPECT_GT(table.RecNo(), 100);
    table.First();
    EXPECT_EQ(table.RecNo(), 1);
}

TEST(BadDatabases, WhoseTableVanishesSaySo)
{
    for (const TestDatabase::Backend backend : {TestDatabase::Sqlite, TestDatabase::Postgres}) {
        const std::unique_ptr<TestDatabase> db = TestDatabase::make(backend);
        db->makeNumbers(u("t"), 3000, 1);
        TTable table;
        table.SetDatabaseName(db->name());
        table.SetTableName(u("t"));
        table.Open();
        db->exec(u("DROP TABLE t"));
        const QString error = errorOf<EDatabaseError>([&] { table.Last(); });
        EXPECT_TRUE(error.startsWith(u("Cannot read table \"t\": "))) << error.toStdString();
        EXPECT_TRUE(error.contains(backend == TestDatabase::Sqlite ? u("no such table: t") : u("does not exist")));
        EXPECT_EQ(table.RecNo(), 1);
        EXPECT_TRUE(errorOf<EDatabaseError>([&] { table.Refresh(); }).startsWith(u("No table \"t\" in database ")));
        EXPECT_FALSE(table.Active());
        db->makeNumbers(u("t"), 30, 1);
        table.Open();
        EXPECT_EQ(table.RecordCount(), 30);
    }
}

TEST(BadDatabases, WhoseFileVanishesSaySoAtTheNextOpening)
{
    const std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    db->makeNumbers(u("t"), 300, 1);
    TTable table;
    table.SetDatabaseName(db->name());
    table.SetTableName(u("t"));
    table.Open();
    ASSERT_TRUE(QFile::rename(db->name(), db->name() + u(".away")));
    EXPECT_TRUE(errorOf<EDatabaseError>([&] { table.Refresh(); }).contains(u("there is no such file")));
    EXPECT_FALSE(table.Active());
    ASSERT_TRUE(QFile::rename(db->name() + u(".away"), db->name()));
    table.Open();
    EXPECT_EQ(table.RecordCount(), 300);
}

TEST(BadDatabases, WithBytesThatAreNoTextAreReadWithReplacements)
{
    const std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    db->exec(u("CREATE TABLE t (id INTEGER PRIMARY KEY, v TEXT)"));
    db->exec(u("INSERT INTO t VALUES (1, CAST(x'47f6df65' AS TEXT)), (2, CAST(x'610062' AS TEXT)), (3, x'ff00')"));
    TTable table;
    table.SetDatabaseName(db->name());
    table.SetTableName(u("t"));
    table.Open();
    const TField &v = table.FieldByName(u("v"));
    EXPECT_TRUE(v.AsString().startsWith(u'G'));
    EXPECT_TRUE(v.AsString().contains(QChar::ReplacementCharacter));
    EXPECT_THROW(v.AsFloat(), EConvertError);
    table.Next();
    EXPECT_TRUE(v.AsString().startsWith(u'a'));
    table.Next();
    EXPECT_FALSE(v.IsNull());
    EXPECT_THROW(v.AsFloat(), EDatabaseError);
}

TEST(BadDatabases, OfUnknownKindsNameTheKnownOnes)
{
    EXPECT_EQ(
        openError(u("oracle://scott@host/db")),
        u("Cannot open \"oracle://scott@host/db\": \"oracle\" is no kind of database known here (postgresql, mysql, "
          "odbc, or the path of an SQLite file)."));
    for (const auto &[url, driver, package] : {std::tuple("mysql://me@host/db", "QMYSQL", "libqt6sql6-mysql"),
                                               {"odbc:Sales", "QODBC", "libqt6sql6-odbc"}}) {
        if (QSqlDatabase::isDriverAvailable(u(driver)))
            continue;
        EXPECT_EQ(openError(u(url)), u("Cannot open \"%1\": the Qt driver %2 is not installed (Debian package %3); "
                                       "installed are %4.")
                                         .arg(u(url), u(driver), u(package), QSqlDatabase::drivers().join(u(", "))));
    }
}

TEST(BadDatabases, BehindARegisteredConnectionThatDoesNotOpenSayWhy)
{
    const QString name = u("registered");
    {
        QSqlDatabase registered = QSqlDatabase::addDatabase(u("QSQLITE"), name);
        registered.setDatabaseName(u("/nowhere/at/all.db"));
        TTable table;
        table.SetDatabaseName(name);
        table.SetTableName(u("t"));
        const QString error = errorOf<EDatabaseError>([&] { table.Open(); });
        EXPECT_TRUE(error.startsWith(u("Cannot open the registered connection \"registered\": ")))
            << error.toStdString();
    }
    QSqlDatabase::removeDatabase(name);
    const std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    std::unique_ptr<QThread> thread(
        QThread::create([&] { QSqlDatabase::addDatabase(u("QSQLITE"), u("of another thread")); }));
    thread->start();
    thread->wait();
    TTable table;
    table.SetDatabaseName(u("of another thread"));
    table.SetTableName(u("t"));
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.Open(); }),
              u("Cannot open the registered connection \"of another thread\": it "
                "belongs to another thread or has no driver."));
}

TEST(BadServers, ThatAreNotThereSaySo)
{
    QTcpServer reserved;
    ASSERT_TRUE(reserved.listen(QHostAddress::LocalHost));
    const quint16 port = reserved.serverPort();
    reserved.close();
    const QString url = u("postgresql://nuvo@127.0.0.1:%1/db").arg(port);
    const QString error = openError(url);
    EXPECT_TRUE(error.startsWith(u("Cannot open the database \"%1\": ").arg(url))) << error.toStdString();
    EXPECT_TRUE(error.contains(u("refused"))) << error.toStdString();
}

TEST(BadServers, WhoseTableIsLockedSaySo)
{
    const std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Postgres);
    db->makeNumbers(u("t"), 10, 1);
    db->exec(u("BEGIN"));
    db->exec(u("LOCK TABLE t IN ACCESS EXCLUSIVE MODE"));
    TTable table;
    table.SetDatabaseName(db->name());
    table.SetTableName(u("t"));
    EXPECT_EQ(
        errorOf<EDatabaseError>([&] { table.Open(); }),
        u("Cannot read table \"t\": it is locked by another program that writes; try again when that is done."));
    db->exec(u("COMMIT"));
    table.Open();
    EXPECT_EQ(table.RecordCount(), 10);
}

TEST(BadServers, LeaveStandardErrorToTheProgram)
{
    const std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Postgres);
    db->exec(u("CREATE FUNCTION talk() RETURNS integer LANGUAGE plpgsql AS "
               "$$ BEGIN RAISE WARNING 'talking'; RETURN 1; END $$"));
    testing::internal::CaptureStderr();
    TQuery query;
    query.SetDatabaseName(db->name());
    query.SetSQL(u("SELECT talk() AS x"));
    query.Open();
    EXPECT_EQ(query.FieldByName(u("x")).AsInteger(), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(BadServers, WithoutTheDatabaseSaySo)
{
    QString url = PostgresServer::sharedUrl();
    url.replace(u("/postgres"), u("/no%20such"));
    const QString error = openError(url);
    EXPECT_TRUE(error.startsWith(u("Cannot open the database \"%1\": ").arg(url))) << error.toStdString();
    EXPECT_TRUE(error.contains(u("\"no such\" does not exist"))) << error.toStdString();
}

TEST(BadServers, OfAnotherEncodingAreReadAllTheSame)
{
    const std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Postgres);
    const QString name = db->name().section(u'/', -1) + u("_latin1");
    db->exec(u("CREATE DATABASE %1 TEMPLATE template0 ENCODING 'LATIN1' LC_COLLATE 'C' LC_CTYPE 'C'").arg(name));
    TQuery query;
    query.SetDatabaseName(db->name().section(u'/', 0, -2) + u'/' + name);
    query.SetSQL(u("SELECT 'Größe' AS \"Größe\", chr(228) AS c"));
    query.Open();
    EXPECT_EQ(query.FieldByName(u("größe")).AsString(), u("Größe"));
    EXPECT_EQ(query.FieldByName(u("c")).AsString(), u("ä"));
    query.Close();
    db->exec(u("DROP DATABASE %1 WITH (FORCE)").arg(name));
}

class ServersThatGoAway : public testing::Test
{
protected:
    PostgresServer server;
    TTable table;

    void SetUp() override
    {
        TTable empty;
        {
            QSqlDatabase database = QSqlDatabase::addDatabase(u("QPSQL"), u("maker"));
            const QUrl url(server.url());
            database.setHostName(url.host());
            database.setPort(url.port());
            database.setUserName(url.userName());
            database.setDatabaseName(url.path().mid(1));
            ASSERT_TRUE(database.open());
            QSqlQuery query(database);
            ASSERT_TRUE(
                query.exec(u("CREATE TABLE t AS SELECT i AS id, i * 0.5 AS x FROM generate_series(1, 20000) n(i)")));
            ASSERT_TRUE(query.exec(u("ALTER TABLE t ADD PRIMARY KEY (id)")));
            database.close();
        }
        QSqlDatabase::removeDatabase(u("maker"));
        table.SetDatabaseName(server.url());
        table.SetTableName(u("t"));
        table.Open();
    }
    QString scan()
    {
        return errorOf<EDatabaseError>([&] {
            const nuvo::ControlsOff quiet(table);
            for (table.First(); !table.Eof(); table.Next()) {
            }
        });
    }
    void isOneSentence(const QString &error)
    {
        EXPECT_TRUE(error.startsWith(u("Cannot "))) << error.toStdString();
        EXPECT_TRUE(error.endsWith(u'.')) << error.toStdString();
        EXPECT_FALSE(error.contains(u'\n')) << error.toStdString();
    }
};

TEST_F(ServersThatGoAway, BetweenOpeningAndTheScanGiveOneSentence)
{
    server.kill();
    isOneSentence(scan());
    EXPECT_FALSE(table.ControlsDisabled());
    isOneSentence(errorOf<EDatabaseError>([&] { table.RecordCount(); }));
    // What was read is there, and when the server is back the scan goes on.
    table.First();
    EXPECT_EQ(table.FieldByName(u("x")).AsFloat(), 0.5);
    isOneSentence(errorOf<EDatabaseError>([&] { table.Refresh(); }));
    EXPECT_FALSE(table.Active());
    server.startAgain();
    table.Open();
    EXPECT_EQ(scan(), QString());
    EXPECT_EQ(table.RecNo(), 20000);
}

TEST_F(ServersThatGoAway, InTheMiddleOfAScanNeverMakeItShort)
{
    table.DisableControls();
    table.MoveBy(5000);
    server.kill();
    QString error;
    while (error.isEmpty() && !table.Eof())
        error = errorOf<EDatabaseError>([&] { table.Next(); });
    isOneSentence(error);
    EXPECT_FALSE(table.Eof());
    const qint64 reached = table.RecNo();
    EXPECT_GE(reached, 5001);
    EXPECT_EQ(table.FieldByName(u("id")).AsInteger(), reached);
    table.EnableControls();
    server.startAgain();
    table.Next();
    EXPECT_EQ(table.FieldByName(u("id")).AsInteger(), reached + 1);
    EXPECT_EQ(scan(), QString());
    EXPECT_EQ(table.RecordCount(), 20000);
}
