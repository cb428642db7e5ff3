// SPDX-License-Identifier: MIT
#include "workbench/Hostilewindow.h"

#include "design/model/Modeleditor.h"
#include "engine/Regression.h"
#include "workbench/Pages.h"
#include "workbench/Recordsmodel.h"
#include "workbench/Recordspage.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTableView>

class HostileDatabases : public HostileWindow
{
protected:
    QStringList someRows(const QString &table, const QString &columns) const
    {
        QStringList statements{u("CREATE TABLE %1 (%2)").arg(table, columns)};
        for (int i = 1; i <= 30; ++i)
            statements.append(u("INSERT INTO %1 VALUES (%2, %3)").arg(table).arg(i).arg(3 + 2 * i + i % 4));
        return statements;
    }
    /// Opens a file that is no good: what is told.
    QString refusal(const QString &file)
    {
        const nuvo::ModelState before = sitting().State();
        drop(file);
        EXPECT_EQ(sitting().State(), before);
        EXPECT_TRUE(isAlive());
        return message();
    }
};

TEST_F(HostileDatabases, ThatAreNoneAreToldApart)
{
    QByteArray noise(8192, '\0');
    for (char &byte : noise)
        byte = char(QRandomGenerator::global()->bounded(256));
    for (const QString &file : {write("text.db", "this is a text,\nand no database\n"),
                                write("encrypted.sqlite", noise), write("damaged.db", "SQLite format 3" + noise)}) {
        const QString said = refusal(file);
        EXPECT_TRUE(said.startsWith(u("Error: "))) << said.toStdString();
        EXPECT_TRUE(said.contains(file)) << said.toStdString();
        EXPECT_TRUE(said.contains(u("no SQLite database"))) << said.toStdString();
    }
    EXPECT_TRUE(refusal(folder.filePath(u("gone.db"))).contains(u("gone.db")));
}

TEST_F(HostileDatabases, ThatAreEmptyHaveNoTables)
{
    drop(write("empty.db", {}));
    EXPECT_EQ(sitting().State().database, folder.filePath(u("empty.db"))) << message().toStdString();
    EXPECT_EQ(window->findChild<QListWidget *>(u("Tables"))->count(), 0);
    EXPECT_TRUE(isAlive());
}

TEST_F(HostileDatabases, ThatWereCutShortAreToldSo)
{
    QStringList statements{u("CREATE TABLE t (y, x)")};
    statements += u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i < 20000) INSERT INTO t "
                    "SELECT i, i*2 FROM n");
    const QString name = database("cut.db", statements);
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.resize(file.size() / 2));
    file.close();
    drop(name);
    if (sitting().State().hasData())
        defineModel("y", "x");
    EXPECT_TRUE(message().startsWith(u("Error: "))) << message().toStdString();
    EXPECT_TRUE(message().contains(u("malformed"))) << message().toStdString();
    EXPECT_TRUE(isAlive());
}

TEST_F(HostileDatabases, ThatAreLockedOpenWhenTheyAreFree)
{
    const QString name = database("locked.db", someRows(u("t"), u("x, y")));
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(u("QSQLITE"), u("other"));
        other.setDatabaseName(name);
        ASSERT_TRUE(other.open());
        QSqlQuery lock(other);
        ASSERT_TRUE(lock.exec(u("BEGIN EXCLUSIVE")));
        EXPECT_TRUE(refusal(name).contains(u("locked by another program"))) << message().toStdString();
        lock.exec(u("ROLLBACK"));
        drop(name);
        defineModel("y", "x");
        ASSERT_TRUE(fit().HasFit()) << message().toStdString();
        // Locked while it is open: the fit stays until it is asked for again.
        ASSERT_TRUE(lock.exec(u("BEGIN EXCLUSIVE")));
        action("Read Again").trigger();
        EXPECT_TRUE(message().contains(u("locked by another program"))) << message().toStdString();
        EXPECT_TRUE(isAlive());
        lock.exec(u("ROLLBACK"));
    }
    QSqlDatabase::removeDatabase(u("other"));
    action("Read Again").trigger();
    EXPECT_TRUE(fit().HasFit()) << message().toStdString();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), 30);
    EXPECT_EQ(cell(29, 0), u("30"));
}

TEST_F(HostileDatabases, ThatAreTakenAwayAreToldAndComeBack)
{
    const QString name = database("here.db", someRows(u("t"), u("x, y")));
    drop(name);
    defineModel("y", "x");
    const nuvo::ModelState state = sitting().State();
    ASSERT_TRUE(QFile::rename(name, name + u("x")));
    action("Read Again").trigger();
    EXPECT_TRUE(message().contains(u("here.db"))) << message().toStdString();
    EXPECT_EQ(sitting().State(), state);
    EXPECT_TRUE(isAlive());
    ASSERT_TRUE(QFile::rename(name + u("x"), name));
    action("Read Again").trigger();
    EXPECT_TRUE(fit().HasFit()) << message().toStdString();
    EXPECT_EQ(cell(0, 0), u("1"));
    EXPECT_EQ(window->Editor().Fields().numericNames(), (QStringList{u("x"), u("y")}));
}

TEST_F(HostileDatabases, HaveTablesOfEveryKind)
{
    QStringList statements = someRows(u("plain"), u("x REAL, y REAL"));
    statements += someRows(u("norow"), u("x INTEGER PRIMARY KEY, y REAL"))
                      .replaceInStrings(u("y REAL)"), u("y REAL) WITHOUT ROWID"));
    statements += u("CREATE VIEW seen AS SELECT x, y FROM plain");
    statements += u("CREATE TABLE empty (x REAL, y REAL)");
    statements += u("CREATE TABLE texts (x TEXT, y TEXT)");
    statements += u("INSERT INTO texts VALUES ('one', 'two'), ('three', 'four')");
    statements += someRows(u("\"a \"\"quoted\"\" näme; DROP TABLE plain\""), u("\"x\"\"y\" REAL, \"Grö ße\" REAL"));
    drop(database("kinds.db", statements));
    for (const char *const table : {"plain", "norow", "seen"}) {
        window->OpenTable(u(table));
        ASSERT_TRUE(wait([&] { return sitting().State().table == u(table); })) << table;
        defineModel("y", "x");
        ASSERT_TRUE(fit().HasFit()) << table << message().toStdString();
        EXPECT_EQ(fit().Regression()->RecordsUsed(), 30) << table;
        EXPECT_EQ(cell(29, 0).toDouble(), 30) << table;
        // Sorted by the database, downwards.
        nuvo::RecordsModel &model = window->ShownPages().Records().Model();
        model.SortBy(0, Qt::DescendingOrder);
        EXPECT_EQ(cell(0, 0).toDouble(), 30) << table;
        EXPECT_EQ(cell(29, 0).toDouble(), 1) << table;
        model.SortBy(-1, Qt::AscendingOrder);
        EXPECT_EQ(cell(0, 0).toDouble(), 1) << table;
    }
    window->OpenTable(u("empty"));
    defineModel("y", "x");
    EXPECT_FALSE(fit().HasFit());
    EXPECT_TRUE(message().contains(u("no records"))) << message().toStdString();
    window->OpenTable(u("texts"));
    EXPECT_EQ(window->Editor().Fields().numericNames(), QStringList());
    EXPECT_EQ(window->Editor().Fields().fields.size(), 2U);
    EXPECT_EQ(cell(1, 1), u("four"));
    window->OpenTable(u("a \"quoted\" näme; DROP TABLE plain"));
    defineModel("Grö ße", "x\"y");
    ASSERT_TRUE(fit().HasFit()) << message().toStdString();
    EXPECT_EQ(cell(29, 0).toDouble(), 30);
    window->OpenTable(u("plain"));
    EXPECT_EQ(cell(29, 0).toDouble(), 30) << "and nobody was dropped";
}

TEST_F(HostileDatabases, HaveCellsThatAreTooLongToShow)
{
    drop(database("long.db", {u("CREATE TABLE t (y REAL, x TEXT, z BLOB)"),
                              u("INSERT INTO t VALUES (1, CAST(zeroblob(30000000) AS TEXT), zeroblob(100000000))"),
                              u("INSERT INTO t VALUES (2, 'short', NULL)"),
                              u("UPDATE t SET x = replace(x, char(0), 'a') WHERE y = 1")}));
    ASSERT_TRUE(sitting().State().hasData()) << message().toStdString();
    EXPECT_LE(cell(0, 1).size(), 1001);
    EXPECT_LE(cell(0, 2).size(), 4001);
    EXPECT_EQ(cell(1, 1), u("short"));
    EXPECT_TRUE(isAlive());
}
