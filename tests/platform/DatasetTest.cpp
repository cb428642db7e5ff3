#include "platform/Errors.h"
#include "platform/Query.h"
#include "platform/Table.h"
#include "support/Databases.h"
#include "support/Print.h"

#include <gtest/gtest.h>

class Datasets : public testing::TestWithParam<TestDatabase::Backend>
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(GetParam());
};

INSTANTIATE_TEST_SUITE_P(On, Datasets, testing::Values(TestDatabase::Sqlite),
                         [](const auto &each) { return backendName(each.param); });

namespace {

void open(TTable &table, const TestDatabase &db, const QString &name)
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
    open(table, *db, QStringLiteral("numbers"));
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
    open(table, *db, QStringLiteral("numbers"));
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
    open(table, *db, QStringLiteral("t"));
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
