// SPDX-License-Identifier: MIT
#include "platform/Errors.h"
#include "platform/Query.h"
#include "platform/Table.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Text.h"

#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>
#include <QSqlError>
#include <QSqlQuery>

#include <gtest/gtest.h>

class Datasets : public testing::TestWithParam<TestDatabase::Backend>
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(GetParam());
};

INSTANTIATE_TEST_SUITE_P(On, Datasets, testing::Values(TestDatabase::Sqlite, TestDatabase::Postgres),
                         [](const auto &each) { return backendName(each.param); });

namespace {

void openTable(TTable &table, const TestDatabase &db, const QString &name)
{
    table.SetDatabaseName(db.name());
    table.SetTableName(name);
    table.Open();
}

} // namespace

TEST_P(Datasets, ATableIsWalkedFromTheFirstRecordToTheLast)
{
    db->makeNumbers(QStringLiteral("numbers"), 3000, 3);
    TTable table;
    openTable(table, *db, QStringLiteral("numbers"));
    EXPECT_EQ(table.RecordCount(), 3000);
    TField &id = table.FieldByName(QStringLiteral("ID"));
    TField &x2 = table.FieldByName(QStringLiteral("x2"));
    for (int pass = 0; pass < 2; ++pass) {
        const nuvo::ControlsOff quiet(table);
        qint64 expected = 0;
        for (table.First(); !table.Eof(); table.Next()) {
            ++expected;
            ASSERT_EQ(table.RecNo(), expected);
            ASSERT_EQ(id.AsInteger(), expected);
            ASSERT_FALSE(x2.IsNull());
            ASSERT_EQ(x2.AsFloat(), TestDatabase::number(expected, 2));
        }
        EXPECT_EQ(expected, 3000);
    }
    EXPECT_EQ(table.RecordCount(), 3000);
}

TEST_P(Datasets, AQueryIsWalkedAndCounted)
{
    db->makeNumbers(QStringLiteral("numbers"), 300, 2);
    TQuery query;
    query.SetDatabaseName(db->name());
    query.SetSQL(
        QStringLiteral("SELECT x0, x1, x0 + x1 AS total, x0\nFROM numbers WHERE id > :least ORDER BY id -- end\n;"));
    query.SetParam(QStringLiteral("LEAST"), 100);
    query.Open();
    EXPECT_EQ(query.GetFieldNames().join(u' '), QStringLiteral("x0 x1 total x0_1"));
    EXPECT_EQ(query.RecordCount(), 200);
    qint64 id = 100;
    for (query.First(); !query.Eof(); query.Next()) {
        ++id;
        ASSERT_EQ(query.FieldByName(QStringLiteral("total")).AsFloat(),
                  TestDatabase::number(id, 0) + TestDatabase::number(id, 1));
    }
    EXPECT_EQ(id, 300);
}

TEST_P(Datasets, AnUnknownFieldIsNamedWithTheFieldsThatAreThere)
{
    db->makeNumbers(QStringLiteral("numbers"), 3, 2);
    TTable table;
    openTable(table, *db, QStringLiteral("numbers"));
    try {
        table.FieldByName(QStringLiteral("y"));
        FAIL();
    } catch (const EDatabaseError &error) {
        EXPECT_EQ(error.Message(), QStringLiteral("No field \"y\" in table \"numbers\"; its fields: id, x0, x1."));
    }
}

TEST_P(Datasets, NullsReadAsZeroAndSayThatTheyAreNull)
{
    db->exec(QStringLiteral("CREATE TABLE t (a DOUBLE PRECISION, b VARCHAR(10), c INTEGER)"));
    db->exec(QStringLiteral("INSERT INTO t VALUES (NULL, NULL, NULL)"));
    db->exec(QStringLiteral("INSERT INTO t VALUES (1.5, 'x', 7)"));
    TTable table;
    openTable(table, *db, QStringLiteral("t"));
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(table.Fields(i).IsNull());
        EXPECT_EQ(table.Fields(i).AsFloat(), 0);
        EXPECT_EQ(table.Fields(i).AsString(), QString());
    }
    table.Next();
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(table.Fields(i).IsNull());
    EXPECT_EQ(table.Fields(2).AsString(), QStringLiteral("7"));
    table.Next();
    EXPECT_TRUE(table.Eof());
}

TEST_P(Datasets, StandOnTheFirstRecordWhenOpened)
{
    db->makeNumbers(u("numbers"), 3, 1);
    TTable table;
    openTable(table, *db, u("numbers"));
    EXPECT_TRUE(table.Active());
    EXPECT_TRUE(table.Bof());
    EXPECT_FALSE(table.Eof());
    EXPECT_FALSE(table.IsEmpty());
    EXPECT_EQ(table.RecNo(), 1);
    table.Open();
    EXPECT_EQ(table.RecNo(), 1);
}

TEST_P(Datasets, EndBehindTheLastRecordAndBeginBeforeTheFirst)
{
    db->makeNumbers(u("numbers"), 3, 1);
    TTable table;
    openTable(table, *db, u("numbers"));
    table.Next();
    EXPECT_FALSE(table.Bof());
    table.Next();
    EXPECT_FALSE(table.Eof());
    table.Next();
    EXPECT_TRUE(table.Eof());
    EXPECT_EQ(table.RecNo(), 3);
    table.Next();
    EXPECT_EQ(table.RecNo(), 3);
    table.Prior();
    EXPECT_FALSE(table.Eof());
    EXPECT_EQ(table.RecNo(), 2);
    EXPECT_EQ(table.MoveBy(-7), -1);
    EXPECT_TRUE(table.Bof());
    EXPECT_EQ(table.RecNo(), 1);
    EXPECT_EQ(table.MoveBy(std::numeric_limits<qint64>::max()), 2);
    EXPECT_TRUE(table.Eof());
    EXPECT_EQ(table.MoveBy(std::numeric_limits<qint64>::min()), -2);
    EXPECT_EQ(table.MoveBy(0), 0);
    table.Last();
    EXPECT_TRUE(table.Eof());
    EXPECT_EQ(table.RecNo(), 3);
    table.First();
    EXPECT_TRUE(table.Bof());
    EXPECT_FALSE(table.Eof());
    const nuvo::ControlsOff quiet(table);
    table.Next();
    EXPECT_FALSE(table.Bof());
    table.Prior();
    EXPECT_FALSE(table.Bof());
    table.Prior();
    EXPECT_TRUE(table.Bof());
    table.Next();
    EXPECT_FALSE(table.Bof());
}

TEST_P(Datasets, WithoutRecordsAreAtBothEnds)
{
    db->makeNumbers(u("numbers"), 0, 1);
    TTable table;
    openTable(table, *db, u("numbers"));
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(table.Bof());
        EXPECT_TRUE(table.Eof());
        EXPECT_TRUE(table.IsEmpty());
        EXPECT_EQ(table.RecNo(), 0);
        EXPECT_EQ(table.RecordCount(), 0);
        table.First();
        table.Next();
        table.Prior();
        table.Last();
        EXPECT_EQ(table.MoveBy(3), 0);
        EXPECT_FALSE(table.Locate({u("id")}, {1}));
        EXPECT_FALSE(table.FindKey({1}));
        table.Refresh();
    }
}

TEST_P(Datasets, ThatAreClosedSaySoWhenARecordIsNeeded)
{
    db->makeNumbers(u("numbers"), 3, 1);
    TTable table;
    table.SetDatabaseName(db->name());
    table.SetTableName(u("numbers"));
    const QString closed = u("Table \"numbers\" is closed.");
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.First(); }), closed);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.Next(); }), closed);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.Prior(); }), closed);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.Last(); }), closed);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.MoveBy(1); }), closed);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.Eof(); }), closed);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.Bof(); }), closed);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.IsEmpty(); }), closed);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.RecNo(); }), closed);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.RecordCount(); }), closed);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.Refresh(); }), closed);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.Locate({u("id")}, {1}); }), closed);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.FindKey({1}); }), closed);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.FieldByName(u("id")).AsFloat(); }), closed);
    EXPECT_FALSE(table.Active());
}

TEST_P(Datasets, LoadFieldDefinitionsWithoutOpening)
{
    db->makeNumbers(u("numbers"), 3, 1);
    TTable table;
    table.SetDatabaseName(db->name());
    table.SetTableName(u("numbers"));
    EXPECT_EQ(table.GetFieldNames(), QStringList({u("id"), u("x0")}));
    EXPECT_EQ(table.FieldCount(), 2);
    EXPECT_TRUE(table.FieldByName(u("X0")).IsNumeric());
    EXPECT_EQ(table.FindField(u("y")), nullptr);
    EXPECT_FALSE(table.Active());
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.Fields(2); }),
              u("No field number 2 in table \"numbers\"; it has 2 fields."));

    TQuery query;
    query.SetDatabaseName(db->name());
    query.SetSQL(u("SELECT x0 + 1 AS y, id FROM numbers"));
    EXPECT_EQ(query.GetFieldNames(), QStringList({u("y"), u("id")}));
    EXPECT_TRUE(query.Fields(0).IsNumeric());
    EXPECT_FALSE(query.Active());
}

TEST_P(Datasets, CarryOutAWishToBeActiveWhenFirstNeeded)
{
    db->makeNumbers(u("numbers"), 3, 1);
    const std::vector<std::function<void(TTable &)>> needs = {
        [](TTable &table) { table.First(); },       [](TTable &table) { table.Eof(); },
        [](TTable &table) { table.RecordCount(); }, [](TTable &table) { table.RecNo(); },
        [](TTable &table) { table.Last(); },        [](TTable &table) { table.FieldByName(u("id")); },
        [](TTable &table) { table.FindKey({2}); },  [](TTable &table) { table.GetFieldNames(); }};
    for (const auto &need : needs) {
        TTable table;
        table.WishActive(true); // a form's properties come in any order
        table.SetTableName(u("numbers"));
        table.SetDatabaseName(db->name());
        table.SetFiltered(true);
        EXPECT_FALSE(table.Active());
        EXPECT_TRUE(table.ActiveWished());
        need(table);
        EXPECT_TRUE(table.Active());
        table.WishActive(false);
        EXPECT_FALSE(table.Active());
        EXPECT_FALSE(table.ActiveWished());
    }
}

TEST_P(Datasets, CloseWhenTheirDefinitionChanges)
{
    db->makeNumbers(u("numbers"), 3, 1);
    db->makeNumbers(u("others"), 5, 2);
    TTable table;
    openTable(table, *db, u("numbers"));
    table.SetTableName(u("numbers"));
    EXPECT_TRUE(table.Active());
    table.SetTableName(u("others"));
    EXPECT_FALSE(table.Active());
    EXPECT_EQ(table.FieldCount(), 3);
    table.Open();
    EXPECT_EQ(table.RecordCount(), 5);
    table.SetDatabaseName(u("elsewhere"));
    EXPECT_FALSE(table.Active());
    table.SetActive(false);
    table.SetDatabaseName(db->name());
    table.SetActive(true);
    EXPECT_EQ(table.RecordCount(), 5);
}

TEST_P(Datasets, CountWhatTheEngineCountsOnceAnOpening)
{
    db->makeNumbers(u("numbers"), 500, 1);
    TTable table;
    openTable(table, *db, u("numbers"));
    EXPECT_EQ(table.RecordCount(), 500);
    db->exec(u("INSERT INTO numbers VALUES (1001, 1)"));
    EXPECT_EQ(table.RecordCount(), 500);
    table.Refresh();
    EXPECT_EQ(table.RecordCount(), 501);
    table.Last();
    db->exec(u("INSERT INTO numbers VALUES (1002, 1)"));
    EXPECT_EQ(table.RecordCount(), 501);
    table.Close();
    table.Open();
    table.Last();
    EXPECT_EQ(table.RecordCount(), 502);
}

TEST_P(Datasets, AreASnapshotAsFarAsTheirRowsAreKept)
{
    db->makeNumbers(u("numbers"), 500, 1);
    TTable table;
    openTable(table, *db, u("numbers"));
    table.Last();
    db->exec(u("UPDATE numbers SET x0 = -1"));
    table.First();
    EXPECT_EQ(table.FieldByName(u("x0")).AsFloat(), TestDatabase::number(1, 0));
    table.Refresh();
    EXPECT_EQ(table.FieldByName(u("x0")).AsFloat(), -1);
}

TEST_P(Datasets, LocateByOneOrSeveralFields)
{
    db->exec(u("CREATE TABLE t (id INTEGER PRIMARY KEY, a DOUBLE PRECISION, b VARCHAR(5))"));
    db->exec(u("INSERT INTO t VALUES (1, 0.5, 'x'), (2, 0.5, 'y'), (3, NULL, 'y'), (4, 2, NULL)"));
    TTable table;
    openTable(table, *db, u("t"));
    EXPECT_TRUE(table.Locate({u("a"), u("B")}, {0.5, u("y")}));
    EXPECT_EQ(table.RecNo(), 2);
    EXPECT_TRUE(table.Locate({u("a")}, {QVariant()}));
    EXPECT_EQ(table.RecNo(), 3);
    EXPECT_TRUE(table.Locate({u("a")}, {u("2")}));
    EXPECT_EQ(table.RecNo(), 4);
    EXPECT_FALSE(table.Locate({u("b")}, {u("z")}));
    EXPECT_EQ(table.RecNo(), 4);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.Locate({u("c")}, {1}); }),
              u("No field \"c\" in table \"t\"; its fields: id, a, b."));
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.Locate({u("a")}, {}); }),
              u("Locate in table \"t\" was given 1 fields and 0 values."));
    EXPECT_FALSE(table.ControlsDisabled());
}

TEST_P(Datasets, SayThatTheyWereOpenedScrolledAndClosed)
{
    db->makeNumbers(u("numbers"), 200, 1);
    TTable table;
    QSignalSpy opened(&table, &TDataSet::Opened);
    QSignalSpy scrolled(&table, &TDataSet::Scrolled);
    QSignalSpy closed(&table, &TDataSet::Closed);
    openTable(table, *db, u("numbers"));
    EXPECT_EQ(opened.count(), 1);
    EXPECT_EQ(scrolled.count(), 0);
    table.Next();
    table.Prior();
    table.Last();
    table.First();
    EXPECT_EQ(scrolled.count(), 4);
    table.MoveBy(5);
    table.FindKey({100});
    table.Locate({u("id")}, {50});
    EXPECT_EQ(scrolled.count(), 7);
    table.DisableControls();
    table.DisableControls();
    for (table.First(); !table.Eof(); table.Next()) {
    }
    table.EnableControls();
    EXPECT_TRUE(table.ControlsDisabled());
    EXPECT_EQ(scrolled.count(), 7);
    table.EnableControls();
    EXPECT_FALSE(table.ControlsDisabled());
    EXPECT_EQ(scrolled.count(), 8);
    table.DisableControls();
    table.Prior();
    table.Next();
    table.EnableControls();
    EXPECT_EQ(scrolled.count(), 8);
    table.EnableControls();
    EXPECT_FALSE(table.ControlsDisabled());
    table.DisableControls();
    table.First();
    table.Next();
    table.EnableControls();
    EXPECT_EQ(scrolled.count(), 9);
    table.Next();
    EXPECT_EQ(scrolled.count(), 10);
    table.Close();
    table.Close();
    EXPECT_EQ(closed.count(), 1);
    EXPECT_EQ(opened.count(), 1);
}

TEST_P(Datasets, ReadNoFurtherThanTheyAreWalked)
{
    // The record behind the hundredth cannot be read.
    db->makeNumbers(u("numbers"), 5000, 1);
    TQuery query;
    query.SetDatabaseName(db->name());
    query.SetSQL(
        db->backend() == TestDatabase::Sqlite
            ? u("SELECT id, CASE WHEN id > 300 THEN abs(-9223372036854775807 - 1) ELSE 1 END AS x FROM numbers")
            : u("SELECT id, 1 / (301 - id) AS x FROM numbers WHERE id <= 5000 OFFSET 0"));
    query.Open();
    query.DisableControls();
    query.MoveBy(100);
    EXPECT_EQ(query.RecNo(), 101);
    EXPECT_NE(errorOf<EDatabaseError>([&] { query.MoveBy(1000); }), QString());
    // The position is unchanged, and what is there stays usable.
    EXPECT_EQ(query.RecNo(), 101);
    EXPECT_EQ(query.FieldByName(u("id")).AsInteger(), 101);
    EXPECT_NE(errorOf<EDatabaseError>([&] { query.Last(); }), QString());
    query.First();
    EXPECT_EQ(query.RecNo(), 1);
    query.EnableControls();
    EXPECT_TRUE(query.Active());
}
