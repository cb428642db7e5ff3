// SPDX-License-Identifier: MIT
#include "platform/Query.h"
#include "platform/Errors.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

class Queries : public testing::TestWithParam<TestDatabase::Backend>
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(GetParam());
    TQuery query;

    void SetUp() override { query.SetDatabaseName(db->name()); }
    void open(const char *sql)
    {
        query.SetSQL(u(sql));
        query.Open();
    }
    QString first() { return query.Fields(0).AsString(); }
};

INSTANTIATE_TEST_SUITE_P(On, Queries, testing::Values(TestDatabase::Sqlite, TestDatabase::Postgres),
                         [](const auto &each) { return backendName(each.param); });

TEST_P(Queries, AreNamedByTheirFirstLine)
{
    query.SetSQLLines({u("SELECT 1 AS a"), u("WHERE 1 = 1")});
    EXPECT_EQ(query.SQL(), u("SELECT 1 AS a\nWHERE 1 = 1"));
    EXPECT_EQ(query.SQLLines().size(), 2);
    EXPECT_EQ(query.Caption(), u("query \"SELECT 1 AS a\""));
    query.SetSQL(QString());
    EXPECT_EQ(query.SQLLines(), QStringList());
    EXPECT_EQ(errorOf<EDatabaseError>([&] { query.Open(); }), u("There is no SQL text."));
}

TEST_P(Queries, TakeWhatReads)
{
    open("SELECT 5 AS a;");
    EXPECT_EQ(first(), u("5"));
    open("WITH t(a) AS (SELECT 6) SELECT a FROM t -- the end");
    EXPECT_EQ(first(), u("6"));
    open("VALUES (7), (8)");
    EXPECT_EQ(first(), u("7"));
    EXPECT_EQ(query.RecordCount(), 2);
    open("SELECT 'a;b' AS a /* ; */");
    EXPECT_EQ(first(), u("a;b"));
    if (db->backend() == TestDatabase::Postgres) {
        open("SHOW server_encoding");
        EXPECT_EQ(first(), u("UTF8"));
        EXPECT_EQ(query.RecordCount(), 1);
    }
}

TEST_P(Queries, RefuseWhatWritesBeforeTheEngineSeesIt)
{
    db->makeNumbers(u("numbers"), 10, 1);
    for (const char *sql : {"DELETE FROM numbers", "INSERT INTO numbers VALUES (11, 1)", "DROP TABLE numbers",
                            "SELECT 1; DELETE FROM numbers", "WITH t AS (SELECT 1) DELETE FROM numbers",
                            "PRAGMA writable_schema = 1", "EXPLAIN SELECT 1"}) {
        SCOPED_TRACE(sql);
        EXPECT_NE(errorOf<EDatabaseError>([&] { open(sql); }), QString());
        EXPECT_FALSE(query.Active());
        // A registered connection may write; the statement is refused all the same.
        query.SetDatabaseName(db->writer().connectionName());
        EXPECT_NE(errorOf<EDatabaseError>([&] { query.Open(); }), QString());
        query.SetDatabaseName(db->name());
    }
    EXPECT_EQ(db->value(u("SELECT COUNT(*) FROM numbers")).toInt(), 10);
}

TEST_P(Queries, CannotWriteByTheBackDoor)
{
    if (db->backend() == TestDatabase::Sqlite)
        return; // no statement that passes writes there
    db->makeNumbers(u("numbers"), 10, 1);
    db->exec(u("CREATE FUNCTION wipe() RETURNS integer LANGUAGE sql AS 'DELETE FROM numbers; SELECT 1'"));
    for (const char *sql :
         {"SELECT wipe()", "WITH gone AS (DELETE FROM numbers RETURNING id) SELECT * FROM gone",
          "SELECT * INTO copied FROM numbers", "SELECT set_config('transaction_read_only', 'off', false), wipe()",
          "SELECT nextval('s')", "SELECT 1 FROM numbers FOR UPDATE"}) {
        SCOPED_TRACE(sql);
        db->exec(u("CREATE SEQUENCE IF NOT EXISTS s"));
        EXPECT_NE(errorOf<EDatabaseError>([&] { open(sql); }), QString());
    }
    // Nor does it help to prepare the session for the transactions to come.
    open("SELECT set_config('default_transaction_read_only', 'off', false), CASE WHEN i > 500 THEN wipe() END "
         "FROM generate_series(1, 1000) AS n(i)");
    EXPECT_NE(errorOf<EDatabaseError>([&] { query.Last(); }), QString());
    EXPECT_EQ(db->value(u("SELECT COUNT(*) FROM numbers")).toInt(), 10);
}

TEST_P(Queries, TakeParametersByValue)
{
    db->makeNumbers(u("numbers"), 10, 1);
    query.SetSQL(u(
        "SELECT id, ':least' AS literal FROM numbers WHERE id > :least AND id <= :Most OR id = :least ORDER BY id"));
    EXPECT_EQ(query.ParamNames(), QStringList({u("least"), u("Most")}));
    EXPECT_EQ(errorOf<EDatabaseError>([&] { query.Open(); }),
              u("The parameter \"least\" of query \"SELECT id, ':least' AS literal "
                "FROM numbers WHERE id > :least AND id <= "
                ":Most OR id = :least ORDER BY id\" has no value."));
    query.SetParam(u("least"), 3);
    query.SetParam(u("MOST"), 5);
    query.Open();
    EXPECT_EQ(query.RecordCount(), 3);
    EXPECT_EQ(first(), u("3"));
    EXPECT_EQ(query.FieldByName(u("literal")).AsString(), u(":least"));
    query.SetParam(u("least"), 4); // taken at the next opening
    query.Last();
    EXPECT_EQ(query.RecNo(), 3);
    query.Refresh();
    query.Last();
    EXPECT_EQ(query.RecNo(), 2);
    EXPECT_EQ(query.Param(u("Least")), QVariant(4));
    query.SetSQL(u("SELECT 1"));
    EXPECT_FALSE(query.Param(u("least")).isValid());
    query.SetSQL(u("SELECT 'unfinished"));
    EXPECT_EQ(query.ParamNames(), QStringList());
}

TEST_P(Queries, CannotBeChangedByAParametersText)
{
    db->exec(u("CREATE TABLE t (v VARCHAR(80))"));
    const QStringList texts = {u("' OR '1'='1"), u("\\' OR 1=1 --"), u("'; DROP TABLE t; --"),
                               u("a\\"),         u(":other"),        u("$1"),
                               u("?"),           u("€ \" ` ")};
    for (const QString &text : texts)
        db->exec(u("INSERT INTO t VALUES (?)"), {text});
    query.SetSQL(u("SELECT v, CAST(:text AS VARCHAR(80)) AS given FROM t WHERE v = :text"));
    for (const QString &text : texts) {
        SCOPED_TRACE(text.toStdString());
        query.Close();
        query.SetParam(u("text"), text);
        query.Open();
        EXPECT_EQ(query.RecordCount(), 1);
        EXPECT_EQ(query.Fields(0).AsString(), text);
        EXPECT_EQ(query.Fields(1).AsString(), text);
    }
    query.Close();
    query.SetParam(u("text"), QVariant());
    query.Open();
    EXPECT_TRUE(query.IsEmpty());
}

TEST_P(Queries, TakeParametersOfEveryKind)
{
    query.SetSQL(
        u("SELECT CAST(:d AS DOUBLE PRECISION) AS d, CAST(:i AS BIGINT) AS i, :b AS b, CAST(:s AS VARCHAR(9)) AS s"));
    query.SetParam(u("d"), 0.1);
    query.SetParam(u("i"), qint64(9007199254740993));
    query.SetParam(u("b"), true);
    query.SetParam(u("s"), u("x"));
    query.Open();
    EXPECT_EQ(query.Fields(0).AsFloat(), 0.1);
    EXPECT_EQ(query.Fields(1).AsInteger(), 9007199254740993);
    EXPECT_TRUE(query.Fields(2).AsBoolean());
    EXPECT_EQ(query.Fields(3).AsString(), u("x"));
}

TEST_P(Queries, TellDoubledColumnNamesApart)
{
    open("SELECT 1 AS a, 2 AS A, 3 AS a_1, 4 AS a, 5 AS b");
    EXPECT_EQ(query.GetFieldNames().join(u' ').toLower(), u("a a_2 a_1 a_3 b"));
    EXPECT_EQ(query.FieldByName(u("A_3")).AsInteger(), 4);
    EXPECT_EQ(query.FieldByName(u("a_1")).AsInteger(), 3);
}

TEST_P(Queries, KeepAnyColumnName)
{
    open("SELECT 1 AS \"a\"\"b\", 2 AS \"x.y\", 3 AS \"Größe €\", 4 AS \"c:1\", 5 AS \" \"");
    EXPECT_EQ(query.GetFieldNames(), QStringList({u("a\"b"), u("x.y"), u("Größe €"), u("c:1"), u(" ")}));
}

TEST_P(Queries, AreCountedByTheEngine)
{
    db->makeNumbers(u("numbers"), 500, 1);
    for (const char *sql : {"SELECT * FROM numbers ORDER BY id DESC; -- all", "SELECT id, id FROM numbers",
                            "WITH t AS (SELECT * FROM numbers) SELECT * FROM t", "(SELECT id FROM numbers)",
                            "SELECT id FROM numbers -- it's\n/* ; */ ;"}) {
        if (db->backend() == TestDatabase::Sqlite && sql[0] == '(')
            continue;
        SCOPED_TRACE(sql);
        open(sql);
        EXPECT_EQ(query.RecordCount(), 500);
    }
    // Where it cannot be wrapped it is read through, on its own.
    open("SELECT id FROM numbers LIMIT 400 OFFSET 50");
    EXPECT_EQ(query.RecordCount(), 400);
}

TEST_P(Queries, SayWhatTheEngineHasAgainstThem)
{
    const QString unknown = errorOf<EDatabaseError>([&] { open("SELECT x\nFROM nothing"); });
    EXPECT_TRUE(unknown.startsWith(u("Cannot read query \"SELECT x\": "))) << unknown.toStdString();
    EXPECT_TRUE(unknown.contains(u("nothing"))) << unknown.toStdString();
    EXPECT_TRUE(unknown.endsWith(u'.')) << unknown.toStdString();
    EXPECT_FALSE(unknown.contains(u'\n'));
    EXPECT_FALSE(unknown.contains(u("QPSQL")));
    const QString wrong = errorOf<EDatabaseError>([&] { open("SELECT FROM WHERE"); });
    EXPECT_TRUE(wrong.contains(u("syntax error"))) << wrong.toStdString();
    open("SELECT 1 AS a");
    EXPECT_EQ(first(), u("1"));
}
