// SPDX-License-Identifier: MIT
#include "app/Program.h"
#include "platform/Table.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QThread>

#include <csignal>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

void writeFile(const QString &name, const QByteArray &bytes)
{
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
}

/// A file that takes the program seconds, the test none: its rows repeat.
void writeLongFile(const QString &name, int rows = 1500000)
{
    constexpr int block = 10000;
    QByteArray bytes;
    for (int i = 0; i < block; ++i)
        bytes += QByteArray::number(i) + ",0.25,some text," + QByteArray::number(i * 0.5) + '\n';
    writeFile(name, "a,b,c,d\n" + bytes.repeated(rows / block));
}

/// Imports into each kind of database.
class Import : public testing::TestWithParam<TestDatabase::Backend>
{
protected:
    Outcome import(const QByteArray &bytes, const QString &table, const QStringList &more = {})
    {
        writeFile(files_.filePath(u("data.csv")), bytes);
        return runProgram(arguments(u("data.csv"), table) + more, files_.path());
    }

    QStringList arguments(const QString &file, const QString &table) const
    {
        return {u("import"), file, u("--database"), database_->name(), u("--table"), table};
    }

    QString type(const char *sqlite, const char *postgres) const
    {
        return u(GetParam() == TestDatabase::Sqlite ? sqlite : postgres);
    }

    /// The rows of a statement, values parted by "|", a null as "NULL".
    QStringList rows(const QString &sql)
    {
        QStringList rows;
        QSqlQuery query(database_->writer());
        EXPECT_TRUE(query.exec(sql)) << sql.toStdString();
        while (query.next()) {
            QStringList values;
            for (int i = 0; i < query.record().count(); ++i)
                values.append(query.isNull(i) ? u("NULL") : query.value(i).toString());
            rows.append(values.join(u'|'));
        }
        return rows;
    }

    bool hasTable(const QString &table) { return database_->writer().tables().contains(table); }

    QTemporaryDir files_;
    std::unique_ptr<TestDatabase> database_ = TestDatabase::make(GetParam());
};

INSTANTIATE_TEST_SUITE_P(, Import, testing::Values(TestDatabase::Sqlite, TestDatabase::Postgres),
                         [](const auto &backend) { return backendName(backend.param); });

TEST_P(Import, MakesATableOfWholeNumbersFloatingPointNumbersAndTexts)
{
    const Outcome run = import("id,x,code,note,none\n1,0.1,00123,\"a, b\",\n-2,1e3,7,NA,NA\n"
                               "9223372036854775807,,x,\" c \",\n",
                               u("t"));
    EXPECT_EQ(run.err, QString());
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, u("Imported 3 rows into table \"t\": id %1, x %2, code TEXT, note TEXT, none TEXT.\n")
                           .arg(type("INTEGER", "BIGINT"), type("REAL", "DOUBLE PRECISION")));
    EXPECT_EQ(rows(u("SELECT id, x, code, note, none FROM t ORDER BY id")),
              (QStringList{u("-2|1000|7|NULL|NULL"), u("1|0.1|00123|a, b|NULL"),
                           u("9223372036854775807|NULL|x| c |NULL")}));
    if (GetParam() == TestDatabase::Sqlite) {
        EXPECT_EQ(rows(u("SELECT typeof(id), typeof(x), typeof(code), typeof(note), typeof(none) FROM t LIMIT 1")),
                  QStringList{u("integer|real|text|text|null")});
    }
}

TEST_P(Import, KeepsEveryDigitAndEveryCharacter)
{
    const QByteArray text = "\"quote \"\" back\\slash \\\"\" 'single' {braces}, comma;\n line\t\xE2\x82\xAC NULL\"";
    const Outcome run = import("x,y,t\n0.1,-1.7976931348623157e+308," + text +
                                   "\n+5e-324,1e-400,NULL\n2.2250738585072011e-308,.5,\\N\n",
                               u("t"));
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    QSqlQuery query(database_->writer());
    query.exec(u("SELECT x, y, t FROM t"));
    ASSERT_TRUE(query.next());
    EXPECT_EQ(query.value(0).toDouble(), 0.1);
    EXPECT_EQ(query.value(1).toDouble(), -1.7976931348623157e+308);
    EXPECT_EQ(query.value(2).toString(), u("quote \" back\\slash \\\" 'single' {braces}, comma;\n line\t€ NULL"));
    ASSERT_TRUE(query.next());
    EXPECT_EQ(query.value(0).toDouble(), 5e-324);
    EXPECT_EQ(query.value(1).toDouble(), 0.0);
    EXPECT_EQ(query.value(2).toString(), u("NULL"));
    ASSERT_TRUE(query.next());
    EXPECT_EQ(query.value(0).toDouble(), 2.2250738585072011e-308);
    EXPECT_EQ(query.value(1).toDouble(), 0.5);
    EXPECT_EQ(query.value(2).toString(), u("\\N"));
}

TEST_P(Import, NotANumberIsNullAndAnInfinityIsItself)
{
    EXPECT_EQ(import("x\n1\nNaN\n-Inf\ninf\n", u("t")).status, 0);
    EXPECT_EQ(rows(u("SELECT count(*), count(x) FROM t")), QStringList{u("4|3")});
    EXPECT_EQ(rows(u("SELECT count(*) FROM t WHERE x > 1e308 OR x < -1e308")), QStringList{u("2")});
}

TEST_P(Import, TakesAnyNames)
{
    const QString table = u("Ta\"ble'; DROP TABLE \"x\"; -- ü.日");
    const Outcome run = import("\"a\"\"b\",\"select\",c.d,?,:e,\xC3\x9C,\"x]\",`y`,%1\n1,2,3,4,5,6,7,8,9\n", table);
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.startsWith(u("Imported 1 row into table \"") + table + u("\": a\"b ")));
    EXPECT_EQ(rows(u("SELECT \"a\"\"b\", \"select\", \"c.d\", \"Ü\", \"x]\", \"`y`\", \"%1\" FROM ") + u'"' +
                   QString(table).replace(u'"', u("\"\"")) + u'"'),
              QStringList{u("1|2|3|6|7|8|9")});
}

TEST_P(Import, APointPartsSchemaAndTableWhereThereIsSuchASchema)
{
    if (GetParam() == TestDatabase::Sqlite) {
        EXPECT_EQ(import("a\n1\n", u("main.t")).status, 0);
        EXPECT_EQ(rows(u("SELECT a FROM \"main.t\"")), QStringList{u("1")});
        return;
    }
    database_->exec(u("CREATE SCHEMA \"s.x\""));
    EXPECT_EQ(import("a\n1\n", u("s.x.t.u")).status, 0);
    EXPECT_EQ(rows(u("SELECT a FROM \"s.x\".\"t.u\"")), QStringList{u("1")});
    EXPECT_EQ(import("a\n2\n", u("s.x.t.u")).status, 3);
    EXPECT_EQ(import("a\n2\n", u("s.x.t.u"), {u("--replace")}).status, 0);
    EXPECT_EQ(rows(u("SELECT a FROM \"s.x\".\"t.u\"")), QStringList{u("2")});
    EXPECT_EQ(import("a\n3\n", u("y.t")).status, 0);
    EXPECT_EQ(rows(u("SELECT a FROM \"y.t\"")), QStringList{u("3")});
}

TEST_P(Import, AColumnNameThatTheServerWouldCutIsRefused)
{
    const Outcome run =
        import(QByteArray(40, 'x') + "\xC3\xA4\xC3\xB6\xC3\xBC" + QByteArray(20, 'y') + "\n1\n", u("t"));
    EXPECT_EQ(run.status, GetParam() == TestDatabase::Sqlite ? 0 : 3);
    EXPECT_EQ(run.err.contains(u("more than the 63 bytes")), GetParam() == TestDatabase::Postgres);
}

TEST_P(Import, ManyColumnsAndManyRowsArrive)
{
    QByteArray bytes = "c0";
    for (int i = 1; i < 300; ++i)
        bytes += ",c" + QByteArray::number(i);
    for (int row = 0; row < 3000; ++row) {
        bytes += '\n' + QByteArray::number(row);
        for (int i = 1; i < 300; ++i)
            bytes += i % 3 == 0 ? QByteArray(",t") : ',' + QByteArray::number(row * i);
    }
    const Outcome run = import(bytes, u("wide"));
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(rows(u("SELECT count(*), min(c0), max(c0), count(DISTINCT c0), sum(c298), max(c297) FROM wide")),
              QStringList{u("3000|0|2999|3000|%1|t").arg(qint64(298) * 2999 * 1500)});
}

TEST_P(Import, AHeaderRowAloneMakesAnEmptyTable)
{
    EXPECT_EQ(import("a,b", u("t")).out, u("Imported 0 rows into table \"t\": a TEXT, b TEXT.\n"));
    EXPECT_EQ(rows(u("SELECT count(*) FROM t")), QStringList{u("0")});
}

TEST_P(Import, SaysWhatAPersonWouldNotExpect)
{
    EXPECT_EQ(import("n;s\n1;x\nn/a;\xE4\n", u("t")).out,
              u("Imported 2 rows into table \"t\": n TEXT (line 3: \"n/a\"), s TEXT. Cells are parted by semicolons. "
                "The file is no UTF-8 and was read as Windows-1252.\n"));
    EXPECT_EQ(rows(u("SELECT s FROM t WHERE n = 'n/a'")), QStringList{u("ä")});
}

TEST_P(Import, NamesAndCellsCannotSteerTheTerminal)
{
    const Outcome run = import("\"a\x1b[31m\nb\",c\n1,2\n1,\x1b[2J\n", u("t\x1b]0;x\n"));
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.out, u("Imported 2 rows into table \"t ]0;x \": a [31m b %1, c TEXT (line 4: \" [2J\").\n")
                           .arg(type("INTEGER", "BIGINT")));
}

TEST_P(Import, ATableThatIsThereStaysUnlessItIsToBeReplaced)
{
    ASSERT_EQ(import("a\n1\n", u("t")).status, 0);
    const Outcome again = import("b\n2\n", u("t"));
    EXPECT_EQ(again.status, 3);
    EXPECT_EQ(again.out, QString());
    EXPECT_EQ(again.err, u("nuvostat: The table \"t\" is there already in \"%1\"; --replace replaces a table.\n")
                             .arg(database_->name()));
    EXPECT_EQ(rows(u("SELECT a FROM t")), QStringList{u("1")});
    EXPECT_EQ(import("b\n2\n", u("t"), {u("--replace")}).status, 0);
    EXPECT_EQ(rows(u("SELECT * FROM t")), QStringList{u("2")});
    EXPECT_EQ(import("b\n3\n", u("new"), {u("--replace")}).status, 0);
}

TEST_P(Import, AViewIsNeverReplaced)
{
    database_->exec(u("CREATE VIEW v AS SELECT 1 AS one"));
    EXPECT_EQ(import("a\n1\n", u("v")).status, 3);
    const Outcome run = import("a\n1\n", u("v"), {u("--replace")});
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.err,
              u("nuvostat: \"v\" in \"%1\" is a view, and only tables are replaced.\n").arg(database_->name()));
    EXPECT_EQ(rows(u("SELECT one FROM v")), QStringList{u("1")});
}

TEST_P(Import, ARaggedRowLeavesTheOldTable)
{
    ASSERT_EQ(import("a\n1\n", u("t")).status, 0);
    const Outcome run = import("a,b\n1,2\n3\n", u("t"), {u("--replace")});
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.err, u("nuvostat: \"data.csv\", line 3: 1 cell where the header row has 2.\n"));
    EXPECT_EQ(rows(u("SELECT a FROM t")), QStringList{u("1")});
}

TEST_P(Import, CtrlCLeavesTheOldTableAndEndsWith130)
{
    ASSERT_EQ(import("a\n1\n", u("t")).status, 0);
    writeLongFile(files_.filePath(u("long.csv")));
    for (const int delay : {0, 150, 300, 450, 700}) {
        const auto process =
            startProgram(arguments(u("long.csv"), u("t")) + QStringList{u("--replace")}, files_.path());
        waitForSignalHandler(*process);
        QThread::msleep(ulong(delay));
        ::kill(pid_t(process->processId()), SIGINT);
        const Outcome run = finish(*process);
        EXPECT_EQ(run.status, 130);
        EXPECT_EQ(run.out + run.err, QString());
        EXPECT_EQ(rows(u("SELECT a FROM t")), QStringList{u("1")});
    }
}

TEST_P(Import, AKilledProcessLeavesTheOldTable)
{
    ASSERT_EQ(import("a\n1\n", u("t")).status, 0);
    writeLongFile(files_.filePath(u("long.csv")));
    for (const int delay : {150, 300, 450}) {
        const auto process =
            startProgram(arguments(u("long.csv"), u("t")) + QStringList{u("--replace")}, files_.path());
        QThread::msleep(ulong(delay));
        process->kill();
        EXPECT_EQ(finish(*process).status, -1);
        EXPECT_EQ(rows(u("SELECT a FROM t")), QStringList{u("1")});
    }
}

/// What is SQLite's own: files.
class ImportIntoFile : public testing::Test
{
protected:
    void SetUp() override { writeFile(path(u("a.csv")), "a,b\n1,x\n"); }

    QString path(const QString &name) const { return directory_.filePath(name); }

    Outcome import(const QString &file, const QString &database, const QStringList &more = {})
    {
        return runProgram(QStringList{u("import"), file, u("--database"), database, u("--table"), u("t")} + more,
                          directory_.path());
    }

    QStringList files() const { return QDir(directory_.path()).entryList(QDir::Files); }

    QTemporaryDir directory_;
};

TEST_F(ImportIntoFile, AFileThatIsNotThereIsMade)
{
    EXPECT_EQ(import(u("a.csv"), u("new.db")).status, 0);
    EXPECT_EQ(files(), (QStringList{u("a.csv"), u("new.db")}));
    EXPECT_EQ(
        import(u("a.csv"), u("no/such/folder.db")).err,
        u("nuvostat: Cannot open the database \"no/such/folder.db\": there is no such file and it cannot be made "
          "(No such file or directory).\n"));
}

TEST_F(ImportIntoFile, AFileThatWasMadeIsRemovedWhenTheImportFails)
{
    writeFile(path(u("bad.csv")), "a,b\n1\n");
    EXPECT_EQ(import(u("bad.csv"), u("new.db")).status, 3);
    EXPECT_EQ(import(u("none.csv"), u("new.db")).status, 3);
    EXPECT_EQ(files(), (QStringList{u("a.csv"), u("bad.csv")}));
    // Accepted by the reader, refused by the database.
    const Outcome refused = runProgram(
        {u("import"), u("a.csv"), u("--database"), u("new.db"), u("--table"), u("sqlite_t")}, directory_.path());
    EXPECT_EQ(refused.status, 3);
    EXPECT_EQ(refused.err, u("nuvostat: Cannot make table \"sqlite_t\" in \"new.db\": object name reserved for "
                             "internal use: sqlite_t.\n"));
    EXPECT_EQ(files(), (QStringList{u("a.csv"), u("bad.csv")}));
}

TEST_F(ImportIntoFile, AFileThatWasMadeIsRemovedOnCtrlC)
{
    writeLongFile(path(u("long.csv")));
    const auto process = startProgram(
        {u("import"), u("long.csv"), u("--database"), u("new.db"), u("--table"), u("t")}, directory_.path());
    QElapsedTimer timer;
    timer.start();
    while (QFile(path(u("new.db"))).size() == 0 && timer.elapsed() < 30000)
        QThread::msleep(1);
    ASSERT_GT(QFile(path(u("new.db"))).size(), 0) << "the import has not begun to write";
    ::kill(pid_t(process->processId()), SIGINT);
    EXPECT_EQ(finish(*process).status, 130);
    EXPECT_EQ(files(), (QStringList{u("a.csv"), u("long.csv")}));
}

/// Imports a file into a database that is locked, changes the file once its types are known, and lets the import go
/// on.
class ImportOfAChangingFile : public ImportIntoFile
{
protected:
    Outcome importChanged(const QByteArray &before, const QByteArray &after)
    {
        const auto database = TestDatabase::make(TestDatabase::Sqlite);
        database->exec(u("CREATE TABLE other (a)"));
        Outcome run;
        for (int attempt = 0; attempt < 10; ++attempt) {
            writeFile(path(u("a.csv")), before);
            database->exec(u("BEGIN IMMEDIATE"));
            const auto process =
                startProgram({u("import"), u("a.csv"), u("--database"), database->name(), u("--table"), u("t")},
                             directory_.path());
            EXPECT_TRUE(waitUntilOpen(*process, database->name()));
            writeFile(path(u("a.csv")), after);
            database->exec(u("ROLLBACK"));
            run = finish(*process);
            if (!run.err.contains(u("locked"))) // the machine was so busy that the program waited in vain
                break;
        }
        EXPECT_EQ(database->writer().tables(), QStringList{u("other")});
        return run;
    }

private:
    /// The database is opened when the file has been looked at.
    static bool waitUntilOpen(const QProcess &process, const QString &file)
    {
        const QDir descriptors(u("/proc/%1/fd").arg(process.processId()));
        const QString real = QFileInfo(file).canonicalFilePath();
        for (int i = 0; i < 30000; ++i) {
            for (const QFileInfo &one : descriptors.entryInfoList(QDir::Files | QDir::System)) {
                if (one.canonicalFilePath() == real)
                    return true;
            }
            QThread::msleep(1);
        }
        return false;
    }
};

TEST_F(ImportOfAChangingFile, MoreOrFewerRowsAndAnotherHeaderAreTold)
{
    const QByteArray before = "a,b\n1,x\n2,y\n";
    for (const QByteArray after :
         {"a,b\n1,x\n2,y\n3,z\n", "a,b\n1,x\n", "a\n1\n2\n", "a,b,c\n1,2,3\n4,5,6\n", "", "a,b\n1,x\ny,2\n"}) {
        const Outcome run = importChanged(before, after);
        EXPECT_EQ(run.status, 3);
        EXPECT_EQ(run.out, QString());
        EXPECT_EQ(run.err, u("nuvostat: The file changed while it was read.\n")) << after.toStdString();
    }
}

/// A port that takes connections and never says a word.
class UnansweringServer
{
public:
    UnansweringServer() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *const generic = reinterpret_cast<sockaddr *>(&address);
        EXPECT_TRUE(::bind(socket_, generic, size) == 0 && ::listen(socket_, 5) == 0 &&
                    ::getsockname(socket_, generic, &size) == 0);
        port_ = ntohs(address.sin_port);
    }
    ~UnansweringServer() { ::close(socket_); }
    UnansweringServer(const UnansweringServer &) = delete;
    UnansweringServer &operator=(const UnansweringServer &) = delete;

    QString url() const { return u("postgresql://127.0.0.1:%1/x").arg(port_); }
    /// Waits until a client is there.
    void waitForClient() const
    {
        pollfd client = {socket_, POLLIN, 0};
        ASSERT_EQ(::poll(&client, 1, 30000), 1);
    }

private:
    int socket_;
    int port_ = 0;
};

TEST_F(ImportIntoFile, CtrlCEndsAnImportIntoAServerThatDoesNotAnswer)
{
    for (const int signals : {1, 2}) {
        const UnansweringServer server;
        const auto process = startProgram(
            {u("import"), u("a.csv"), u("--database"), server.url(), u("--table"), u("t")}, directory_.path());
        server.waitForClient();
        QThread::msleep(100);
        for (int i = 0; i < signals; ++i)
            ::kill(pid_t(process->processId()), SIGINT);
        const Outcome run = finish(*process);
        EXPECT_EQ(run.status, 130);
        EXPECT_EQ(run.out + run.err, QString());
    }
}

TEST_F(ImportIntoFile, WhatWasMadeIsToldWhereStandardOutputIsFull)
{
    const Outcome run =
        runShell(u("\"$nuvostat\" import a.csv --database new.db --table t >/dev/full"), directory_.path());
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.err, u("nuvostat: Standard output cannot be written: No space left on device. Imported 1 row into "
                         "table \"t\": a INTEGER, b TEXT.\n"));
    EXPECT_TRUE(QFile::exists(path(u("new.db"))));
}

TEST_F(ImportIntoFile, ADatasetReadsTheOldTableAfterAKilledImport)
{
    ASSERT_EQ(import(u("a.csv"), u("old.db")).status, 0);
    const qint64 size = QFile(path(u("old.db"))).size();
    writeLongFile(path(u("long.csv")));
    const auto process =
        startProgram({u("import"), u("long.csv"), u("--database"), u("old.db"), u("--table"), u("t"), u("--replace")},
                     directory_.path());
    QElapsedTimer timer;
    timer.start();
    while (QFile(path(u("old.db"))).size() == size && timer.elapsed() < 30000)
        QThread::msleep(1);
    process->kill();
    EXPECT_EQ(finish(*process).status, -1);
    ASSERT_TRUE(QFile::exists(path(u("old.db-journal")))) << "the import was not in the middle of writing";

    TTable table;
    table.SetDatabaseName(path(u("old.db")));
    table.SetTableName(u("t"));
    table.Open();
    EXPECT_EQ(table.RecordCount(), 1);
    EXPECT_EQ(table.FieldByName(u("b")).AsString(), u("x"));
}

TEST_F(ImportIntoFile, AFullDiskLeavesNothing)
{
    writeLongFile(path(u("long.csv")), 100000);
    // A limit on the size of files stands for a full disk.
    const Outcome run =
        runShell(u("ulimit -f 1000; \"$nuvostat\" import long.csv --database new.db --table t"), directory_.path());
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.out, QString());
    EXPECT_TRUE(run.err.startsWith(u("nuvostat: Cannot make table \"t\" in \"new.db\": "))) << run.err.toStdString();
    EXPECT_EQ(run.err.count(u'\n'), 1);
    EXPECT_EQ(files(), (QStringList{u("a.csv"), u("long.csv")}));

    ASSERT_EQ(import(u("a.csv"), u("old.db")).status, 0);
    EXPECT_EQ(runShell(u("ulimit -f 1000; \"$nuvostat\" import long.csv --database old.db --table t --replace"),
                       directory_.path())
                  .status,
              3);
    const Outcome again = import(u("a.csv"), u("old.db"));
    EXPECT_TRUE(again.err.contains(u("is there already"))) << again.err.toStdString();
}

TEST_F(ImportIntoFile, WhatIsNoDatabaseALockedOneADirectoryAndAFileWithoutPermissionAreTold)
{
    EXPECT_EQ(import(u("a.csv"), u("a.csv")).err,
              u("nuvostat: Cannot open the database \"a.csv\": the file is no SQLite database.\n"));
    EXPECT_EQ(import(u("a.csv"), u(".")).err,
              u("nuvostat: Cannot open the database \".\": it is a directory, not an SQLite file.\n"));
    EXPECT_EQ(import(u("a.csv"), u("mongo://host/x")).status, 3);

    const auto database = TestDatabase::make(TestDatabase::Sqlite);
    database->exec(u("CREATE TABLE other (a)"));
    database->exec(u("BEGIN IMMEDIATE"));
    const Outcome locked = import(u("a.csv"), database->name());
    EXPECT_EQ(locked.status, 3);
    EXPECT_EQ(locked.err, u("nuvostat: Cannot make table \"t\" in \"%1\": it is locked by another program that "
                            "writes; try again when that is done.\n")
                              .arg(database->name()));
    database->exec(u("ROLLBACK"));
    EXPECT_EQ(import(u("a.csv"), database->name()).status, 0);
}

TEST_F(ImportIntoFile, ADirectoryADeviceAndAMissingFileAreNoCsv)
{
    EXPECT_EQ(
        import(u("none.csv"), u("new.db")).err,
        u("nuvostat: The file \"none.csv\" cannot be opened: No such file or directory; its folder has a.csv.\n"));
    EXPECT_TRUE(import(u("b.csv/a.csv"), u("new.db")).err.endsWith(u("; there is no folder \"b.csv\".\n")));
    writeFile(path(u("sales2024.csv")), "a\n1\n");
    EXPECT_TRUE(import(u("sales2042.csv"), u("new.db"))
                    .err.endsWith(u("; its folder has a.csv, sales2024.csv (perhaps \"sales2024.csv\").\n")));
    EXPECT_EQ(import(u("."), u("new.db")).err.count(u'\n'), 1);
    EXPECT_TRUE(import(u("/dev/null"), u("new.db")).err.contains(u("is no ordinary file")));
}

} // namespace
