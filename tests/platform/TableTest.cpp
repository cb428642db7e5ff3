// SPDX-License-Identifier: MIT
#include "platform/Table.h"
#include "platform/Errors.h"
#include "platform/Query.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Recordlimits.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <set>

namespace {

QString quoted(const QString &name)
{
    return u("\"") + QString(name).replace(u'"', u("\"\"")) + u("\"");
}

} // namespace

class Tables : public testing::TestWithParam<TestDatabase::Backend>
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(GetParam());
    TTable table;

    void open(const QString &name)
    {
        table.SetDatabaseName(db->name());
        table.SetTableName(name);
        table.Open();
    }
    /// A field's values in the order of the records, as one text.
    QString column(const char *name)
    {
        QStringList values;
        for (table.First(); !table.Eof(); table.Next())
            values.append(table.FieldByName(u(name)).AsString());
        return values.join(u' ');
    }
};

INSTANTIATE_TEST_SUITE_P(On, Tables, testing::Values(TestDatabase::Sqlite, TestDatabase::Postgres),
                         [](const auto &each) { return backendName(each.param); });

TEST_P(Tables, AndTheirFieldsCanHaveAnyName)
{
    const QStringList names = {
        u("plain"),      u("a\"b"), u("x.y"),  u("\"quoted\""), u("Größe €"),   u("drop table t; --"),
        u("with blank"), u("it's"), u("1999"), u("GNP/cap"),    u("select"),    u("таблица"),
        u("[a]"),        u("`a`"),  u("a;b"),  u("%s %1"),      u("a\\b"),      u(":p"),
        u("?"),          u("--"),   u("\""),   u("😀"),          u("MixedCase"), u(" "),
        u("a\nb")};
    for (const QString &name : names) {
        SCOPED_TRACE(name.toStdString());
        db->exec(u("CREATE TABLE %1 (%1 DOUBLE PRECISION, %2 INTEGER PRIMARY KEY)")
                     .arg(quoted(name), quoted(name + u("2"))));
        db->exec(u("INSERT INTO %1 VALUES (2.5, 1)").arg(quoted(name)));
        open(name);
        EXPECT_EQ(table.GetFieldNames(), QStringList({name, name + u("2")}));
        EXPECT_EQ(table.FieldByName(name).AsFloat(), 2.5);
        EXPECT_EQ(table.RecordCount(), 1);
        EXPECT_TRUE(table.FindKey({1}));
        EXPECT_FALSE(table.FindKey({2}));
        table.SetIndexFieldNames(name);
        EXPECT_TRUE(table.FindKey({2.5}));
        table.SetIndexFieldNames(QString());
        table.Close();
    }
    QStringList sorted = names;
    sorted.sort(Qt::CaseInsensitive);
    EXPECT_EQ(table.TableNames(), sorted);
}

TEST_P(Tables, ThatAreNotThereAreNamedWithThoseThatAre)
{
    db->exec(u("CREATE TABLE b (x INTEGER)"));
    db->exec(u("CREATE VIEW a AS SELECT * FROM b"));
    EXPECT_EQ(errorOf<EDatabaseError>([&] { open(u("c")); }),
              u("No table \"c\" in database \"%1\"; its tables: a, b.").arg(db->name()));
    EXPECT_FALSE(table.Active());
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.FieldByName(u("x")); }),
              u("No table \"c\" in database \"%1\"; its tables: a, b.").arg(db->name()));
    EXPECT_EQ(errorOf<EDatabaseError>([&] { open(QString()); }), u("No table is named (TableName is empty)."));
    for (const char *name : {"b; DROP TABLE b", "b\" --", "b) --", "(SELECT 1)", "b, b AS c", "\"b\""})
        EXPECT_TRUE(errorOf<EDatabaseError>([&] { open(u(name)); }).startsWith(u("No table "))) << name;
    open(u("b"));
    EXPECT_EQ(table.TableNames(), QStringList({u("a"), u("b")}));
}

TEST_P(Tables, ComeInTheOrderOfTheirPrimaryKey)
{
    db->exec(u("CREATE TABLE t (v INTEGER, b INTEGER, a VARCHAR(3), PRIMARY KEY (a, b))"));
    db->exec(u("INSERT INTO t VALUES (1, 2, 'y'), (2, 1, 'y'), (3, 9, 'x'), (4, 1, 'z')"));
    open(u("t"));
    EXPECT_EQ(column("v"), u("3 2 1 4"));
}

TEST_P(Tables, ComeInTheOrderOfIndexFieldNames)
{
    db->exec(u("CREATE TABLE t (id INTEGER PRIMARY KEY, a INTEGER, b VARCHAR(3), \"c;d\" INTEGER)"));
    db->exec(u("INSERT INTO t VALUES (1, 2, 'y', 4), (2, 1, 'y', 3), (3, 2, 'x', 2), (4, 1, 'z', 1)"));
    open(u("t"));
    EXPECT_EQ(column("id"), u("1 2 3 4"));
    table.SetIndexFieldNames(u("a; B"));
    EXPECT_EQ(column("id"), u("2 4 3 1"));
    table.SetIndexFieldNames(u("b,a"));
    EXPECT_EQ(column("id"), u("3 2 1 4"));
    table.SetIndexFieldNames(u("c;d"));
    EXPECT_EQ(column("id"), u("4 3 2 1"));
    table.SetIndexFieldNames(u("a"));
    EXPECT_EQ(column("id"), u("2 4 1 3"));
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.SetIndexFieldNames(u("a;e")); }),
              u("No field \"e\" to order table \"t\" by; its fields: id, a, b, c;d."));
    EXPECT_EQ(table.IndexFieldNames(), u("a;e"));
    table.SetIndexFieldNames(QString());
    EXPECT_EQ(column("id"), u("1 2 3 4"));
}

TEST_P(Tables, WithoutAKeyComeInTheOrderTheyWereStored)
{
    db->exec(u("CREATE TABLE t (v INTEGER)"));
    db->exec(u("INSERT INTO t VALUES (5), (3), (9), (1)"));
    open(u("t"));
    EXPECT_EQ(column("v"), u("5 3 9 1"));
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.FindKey({5}); }),
              u("Table \"t\" has no primary key, and no IndexFieldNames are set, to find a record by."));
}

TEST_P(Tables, AreFilteredByACondition)
{
    db->makeNumbers(u("numbers"), 300, 2);
    open(u("numbers"));
    table.SetFilter(u("id > 100 OR id = 1 -- and no more"));
    EXPECT_EQ(table.RecordCount(), 300);
    table.SetFiltered(true);
    EXPECT_EQ(table.RecordCount(), 201);
    table.First();
    EXPECT_EQ(table.FieldByName(u("id")).AsInteger(), 1);
    table.Next();
    EXPECT_EQ(table.FieldByName(u("id")).AsInteger(), 101);
    table.Last();
    EXPECT_EQ(table.RecNo(), 201);
    EXPECT_TRUE(table.FindKey({200}));
    EXPECT_EQ(table.RecNo(), 101);
    EXPECT_FALSE(table.FindKey({99}));
    table.SetFilter(u("\"numbers\".id < 4"));
    EXPECT_EQ(table.RecordCount(), 3);
    table.SetFilter(u("id < 0"));
    EXPECT_TRUE(table.IsEmpty());
    table.SetFilter(QString());
    EXPECT_EQ(table.RecordCount(), 300);
    table.SetFilter(u("id < 7"));
    table.SetFiltered(false);
    EXPECT_EQ(table.RecordCount(), 300);
    EXPECT_EQ(table.Filter(), u("id < 7"));
}

TEST_P(Tables, LetNoFilterReachBeyondItsCondition)
{
    db->makeNumbers(u("numbers"), 30, 1);
    for (const char *filter :
         {"1=1) OR (1=1", "1=1; DROP TABLE numbers", "id > 10) --", "id > 10) /*", "1=1) UNION SELECT 1, (2"}) {
        SCOPED_TRACE(filter);
        open(u("numbers"));
        table.SetFiltered(true);
        EXPECT_TRUE(
            errorOf<EDatabaseError>([&] { table.SetFilter(u(filter)); }).contains(u("is not one condition")) ||
            u(filter).endsWith(u("/*")));
        EXPECT_FALSE(table.Active());
        table.SetFilter(QString());
        table.Open();
        EXPECT_EQ(table.RecordCount(), 30);
        table.SetFiltered(false);
        table.Close();
    }
    open(u("numbers"));
    table.SetFiltered(true);
    const QString wrong = errorOf<EDatabaseError>([&] { table.SetFilter(u("nothing > 1")); });
    EXPECT_TRUE(wrong.startsWith(u("Cannot read table \"numbers\": "))) << wrong.toStdString();
    EXPECT_TRUE(wrong.contains(u("nothing"))) << wrong.toStdString();
    EXPECT_FALSE(wrong.contains(u'\n'));
}

TEST_P(Tables, FindTheFirstRecordWithAKey)
{
    db->exec(u("CREATE TABLE f (numerator INTEGER, denominator INTEGER, \"95 Percent\" DOUBLE PRECISION, "
               "PRIMARY KEY (numerator, denominator))"));
    db->exec(db->backend() == TestDatabase::Sqlite
                 ? u("WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 24999) "
                     "INSERT INTO f SELECT i / 2500 + 1, i % 2500 + 1, 1.0 / (i + 1) FROM n")
                 : u("INSERT INTO f SELECT i / 2500 + 1, i % 2500 + 1, 1.0 / (i + 1) FROM generate_series(0, 24999) "
                     "n(i)"));
    open(u("f"));
    for (const auto &[n, d] :
         {std::pair(1, 2300), {1, 5}, {1, 2301}, {7, 1}, {10, 2500}, {7, 2500}, {1, 1}, {3, 3}}) {
        ASSERT_TRUE(table.FindKey({n, d}));
        const int i = (n - 1) * 2500 + d - 1;
        EXPECT_EQ(table.RecNo(), i + 1);
        EXPECT_EQ(table.FieldByName(u("95 Percent")).AsFloat(), 1.0 / (i + 1));
    }
    EXPECT_TRUE(table.FindKey({8}));
    EXPECT_EQ(table.RecNo(), 17501);
    table.Prior();
    EXPECT_EQ(table.FieldByName(u("denominator")).AsInteger(), 2500);
    EXPECT_FALSE(table.FindKey({1, 2501}));
    EXPECT_FALSE(table.FindKey({1, 2.5}));
    EXPECT_FALSE(table.FindKey({QVariant(), 5}));
    EXPECT_EQ(table.RecNo(), 17500);
    EXPECT_EQ(errorOf<EDatabaseError>([&] {
                  table.FindKey({1, 2, 3});
              }),
              u("The key of table \"f\" has 2 fields; 3 values were given."));
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.FindKey({}); }),
              u("The key of table \"f\" has 2 fields; 0 values were given."));
}

TEST_P(Tables, FindTextsAsTheEngineComparesThem)
{
    db->exec(db->backend() == TestDatabase::Sqlite
                 ? u("CREATE TABLE t (name VARCHAR(9) COLLATE NOCASE, v INTEGER, PRIMARY KEY (name))")
                 : u("CREATE TABLE t (name CHAR(9), v INTEGER, PRIMARY KEY (name))"));
    db->exec(u("INSERT INTO t VALUES ('beta', 2), ('alpha', 1), ('Gamma''s', 3)"));
    open(u("t"));
    EXPECT_TRUE(table.FindKey({u("Gamma's")}));
    EXPECT_EQ(table.FieldByName(u("v")).AsInteger(), 3);
    // Either engine has a rule of its own by which these are equal.
    EXPECT_TRUE(table.FindKey({db->backend() == TestDatabase::Sqlite ? u("BETA") : u("beta   ")}));
    EXPECT_EQ(table.FieldByName(u("v")).AsInteger(), 2);
    EXPECT_FALSE(table.FindKey({u("delta' OR '1'='1")}));
}

TEST_P(Tables, FindInTheRowsThatWereReadWhateverBecameOfTheTable)
{
    db->makeNumbers(u("numbers"), 200, 1);
    nuvo::RecordLimits limits;
    limits.headRows = 32;
    limits.blockRows = 16;
    setRecordLimits(table, limits);
    open(u("numbers"));
    table.Last();
    db->exec(u("DELETE FROM numbers WHERE id <= 100"));
    EXPECT_TRUE(table.FindKey({10}));
    EXPECT_EQ(table.RecNo(), 10);
    // What is neither kept nor in the table any more is not found; the rows kept tell of the others.
    EXPECT_FALSE(table.FindKey({90}));
    EXPECT_EQ(table.RecNo(), 10);
    table.Refresh();
    EXPECT_EQ(table.RecNo(), 10);
    EXPECT_TRUE(table.FindKey({110}));
    EXPECT_EQ(table.RecNo(), 10);
}

TEST_P(Tables, CanBeViews)
{
    db->makeNumbers(u("numbers"), 100, 1);
    db->exec(u("CREATE VIEW v AS SELECT id, x0, x0 * 2 AS twice FROM numbers WHERE id > 10"));
    open(u("v"));
    EXPECT_EQ(table.RecordCount(), 90);
    EXPECT_TRUE(table.FieldByName(u("twice")).IsNumeric());
    EXPECT_EQ(table.FieldByName(u("twice")).AsFloat(), 2 * TestDatabase::number(11, 0));
    table.SetIndexFieldNames(u("id"));
    EXPECT_TRUE(table.FindKey({50}));
    EXPECT_EQ(table.RecNo(), 40);
}

TEST_P(Tables, HaveTheirGeneratedColumns)
{
    db->exec(u("CREATE TABLE t (id INTEGER PRIMARY KEY, x INTEGER, g INTEGER GENERATED ALWAYS AS (x * 2) STORED)"));
    db->exec(u("INSERT INTO t (id, x) VALUES (1, 21)"));
    open(u("t"));
    EXPECT_EQ(table.FieldByName(u("g")).AsInteger(), 42);
}

class SqliteTables : public Tables
{
};

INSTANTIATE_TEST_SUITE_P(On, SqliteTables, testing::Values(TestDatabase::Sqlite),
                         [](const auto &each) { return backendName(each.param); });

TEST_P(SqliteTables, OfEveryKindAreReadAgainFromTheMiddle)
{
    const QString numbers = u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100) ");
    const std::map<const char *, const char *> kinds = {
        {"CREATE TABLE t (k, v)", "SELECT i % 7, i FROM n"},
        {"CREATE TABLE t (rowid TEXT, v INTEGER)", "SELECT 'r' || (100 - i), i FROM n"},
        {"CREATE TABLE t (rowid, _rowid_, oid, v INTEGER)", "SELECT 1, 2, 3, i FROM n"},
        {"CREATE TABLE t (k INTEGER, v INTEGER, PRIMARY KEY (k)) WITHOUT ROWID", "SELECT i, i FROM n"},
        {"CREATE TABLE t (k, v INTEGER, PRIMARY KEY (k))", // nulls and values of every kind in one key
         "SELECT CASE WHEN i < 5 THEN NULL WHEN i < 30 THEN i WHEN i < 60 THEN 'k' || (1000 + i) ELSE CAST(1000 + i "
         "AS "
         "BLOB) END, i FROM n"},
        {"CREATE TABLE t (k TEXT PRIMARY KEY COLLATE NOCASE, v INTEGER)",
         "SELECT CASE i % 2 WHEN 0 THEN 'A' ELSE 'a' END || (1000 + i), i FROM n"},
        {"CREATE TABLE t (k TEXT PRIMARY KEY, v INTEGER)", "SELECT CAST(x'ff' AS TEXT) || (1000 + i), i FROM n"},
        {"CREATE TABLE t (k REAL PRIMARY KEY, v INTEGER)", "SELECT i / 3.0, i FROM n"},
        {"CREATE VIRTUAL TABLE t USING rtree(v, low, high)", "SELECT i, i, i + 1 FROM n"}};
    for (const auto &[create, select] : kinds) {
        SCOPED_TRACE(create);
        db->exec(u("DROP TABLE IF EXISTS t"));
        db->exec(u(create));
        db->exec(QString(numbers).replace(u("WITH"), u("INSERT INTO t WITH")) + u(select));
        nuvo::RecordLimits limits;
        limits.blockRows = 4;
        limits.headRows = 8;
        limits.windowRows = 16;
        limits.firstChunk = 3;
        limits.lastChunk = 5;
        setRecordLimits(table, limits);
        open(u("t"));
        for (int i = 1; i <= 100; ++i, table.Next())
            ASSERT_EQ(table.FieldByName(u("v")).AsInteger(), i);
        EXPECT_TRUE(table.Eof());
        for (int i = 100; i >= 1; --i, table.Prior())
            ASSERT_EQ(table.FieldByName(u("v")).AsInteger(), i);
        table.Close();
    }
}

TEST_P(SqliteTables, FindTextsBehindNulls)
{
    db->exec(u("CREATE TABLE t (k TEXT, v INTEGER, PRIMARY KEY (k, v))"));
    db->exec(u("INSERT INTO t VALUES (NULL, 1), (NULL, 2), ('a', NULL), ('a', 3), ('b', 4)"));
    open(u("t"));
    EXPECT_TRUE(table.FindKey({u("a")}));
    EXPECT_EQ(table.RecNo(), 3);
    EXPECT_TRUE(table.FindKey({u("a"), 3}));
    EXPECT_EQ(table.RecNo(), 4);
    EXPECT_TRUE(table.FindKey({u("b"), 4}));
    EXPECT_EQ(table.RecNo(), 5);
}

TEST_P(SqliteTables, OfAnotherCaseAreFoundAsTheEngineFindsThem)
{
    db->makeNumbers(u("Numbers"), 10, 1);
    open(u("NUMBERS"));
    EXPECT_EQ(table.RecordCount(), 10);
    EXPECT_EQ(table.FieldByName(u("ID")).FieldName(), u("id"));
}

TEST_P(SqliteTables, NeverTakeAMissingColumnForAText)
{
    db->makeNumbers(u("numbers"), 3000, 2);
    open(u("numbers"));
    db->exec(u("ALTER TABLE numbers DROP COLUMN x0"));
    const QString error = errorOf<EDatabaseError>([&] { table.Last(); });
    EXPECT_EQ(error, u("Cannot read table \"numbers\": no such column: numbers.x0."));
    EXPECT_EQ(table.RecNo(), 1);
    table.Refresh();
    EXPECT_EQ(table.GetFieldNames(), QStringList({u("id"), u("x1")}));
    table.Last();
    EXPECT_EQ(table.RecNo(), 3000);
}

class PostgresTables : public Tables
{
};

INSTANTIATE_TEST_SUITE_P(On, PostgresTables, testing::Values(TestDatabase::Postgres),
                         [](const auto &each) { return backendName(each.param); });

TEST_P(PostgresTables, OfAnotherSchemaAreNamedWithIt)
{
    db->exec(u("CREATE SCHEMA \"my.own\""));
    db->exec(u("CREATE TABLE \"my.own\".\"a.b\" (x INTEGER PRIMARY KEY)"));
    db->exec(u("CREATE TABLE \"my.own.a\" (y INTEGER)"));
    db->exec(u("INSERT INTO \"my.own\".\"a.b\" VALUES (3)"));
    open(u("my.own.a.b"));
    EXPECT_EQ(column("x"), u("3"));
    open(u("my.own.a"));
    EXPECT_EQ(table.GetFieldNames(), QStringList({u("y")}));
    EXPECT_EQ(table.TableNames(), QStringList({u("my.own.a"), u("my.own.a.b")}));
}

TEST_P(PostgresTables, WithChildrenOrPartitionsAreReadWhole)
{
    db->exec(u("CREATE TABLE parent (id INTEGER PRIMARY KEY)"));
    db->exec(u("CREATE TABLE child () INHERITS (parent)"));
    db->exec(u("INSERT INTO parent SELECT generate_series(1, 200)"));
    db->exec(u("INSERT INTO child SELECT generate_series(1, 200)")); // the parent's key is none for both
    open(u("parent"));
    QStringList ids;
    for (; !table.Eof(); table.Next())
        ids.append(table.FieldByName(u("id")).AsString());
    EXPECT_EQ(ids.size(), 400);
    EXPECT_EQ(table.RecordCount(), 400);
    db->exec(u("CREATE TABLE parts (id INTEGER PRIMARY KEY) PARTITION BY RANGE (id)"));
    db->exec(u("CREATE TABLE p1 PARTITION OF parts FOR VALUES FROM (1) TO (150)"));
    db->exec(u("CREATE TABLE p2 PARTITION OF parts FOR VALUES FROM (150) TO (1000)"));
    db->exec(u("INSERT INTO parts SELECT generate_series(1, 300)"));
    open(u("parts"));
    table.Last();
    EXPECT_EQ(table.RecNo(), 300);
    EXPECT_EQ(table.FieldByName(u("id")).AsInteger(), 300);
    EXPECT_TRUE(table.FindKey({170}));
    EXPECT_EQ(table.RecNo(), 170);
}

TEST_P(PostgresTables, WhoseOrderHasTiesShowEachRecordOnce)
{
    db->exec(u("CREATE TABLE t (id INTEGER, a INTEGER)"));
    db->exec(u("INSERT INTO t SELECT i, i % 3 FROM generate_series(1, 5000) n(i)"));
    db->exec(u("CREATE VIEW v AS SELECT * FROM t"));
    table.SetIndexFieldNames(u("a"));
    for (const char *name : {"v", "t"}) {
        open(u(name));
        std::set<qint64> ids;
        for (; !table.Eof(); table.Next())
            ids.insert(table.FieldByName(u("id")).AsInteger());
        EXPECT_EQ(ids.size(), 5000) << name;
    }
}

TEST_P(PostgresTables, WithoutPermissionSayWhoseItIs)
{
    db->exec(u("CREATE TABLE secret (x INTEGER)"));
    db->exec(u("CREATE ROLE stranger%1 LOGIN").arg(QString(db->name()).section(u'_', -1)));
    QString url = db->name();
    url.replace(u("nuvo@"), u("stranger%1@").arg(QString(db->name()).section(u'_', -1)));
    table.SetDatabaseName(url);
    table.SetTableName(u("secret"));
    EXPECT_EQ(errorOf<EDatabaseError>([&] { table.Open(); }),
              u("Cannot read table \"secret\": permission denied for table secret."));
    EXPECT_FALSE(table.Active());
}
