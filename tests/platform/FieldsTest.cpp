// SPDX-License-Identifier: MIT
#include "platform/Errors.h"
#include "platform/Fieldtypes.h"
#include "platform/Query.h"
#include "platform/Table.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Text.h"

#include <QTimeZone>

#include <gtest/gtest.h>

#include <cmath>

using nuvo::FieldKind;

namespace {

template <class Class>
bool is(const TField &field)
{
    return typeid(field) == typeid(Class);
}

} // namespace

TEST(DeclaredTypes, ThatAPersonCallsANumberAreNumeric)
{
    const std::map<FieldKind, std::vector<const char *>> types = {
        {FieldKind::Integer,
         {"INT", "integer", "INTEGER(11)", "int4", "MEDIUMINT", "  Integer  ", "int(10)", "SIGNED"}},
        {FieldKind::Smallint, {"SMALLINT", "int2", "TINYINT", "tinyint(1)", "YEAR", "year(4)"}},
        {FieldKind::Word,
         {"UNSIGNED SMALLINT", "smallint(5) unsigned", "TINYINT UNSIGNED ZEROFILL", "WORD", "UINT16"}},
        {FieldKind::Largeint,
         {"BIGINT", "bigint(20)", "INT8", "BIGINT UNSIGNED", "UNSIGNED BIG INT", "INT UNSIGNED", "oid", "UNSIGNED"}},
        {FieldKind::AutoInc, {"SERIAL", "bigserial", "smallserial", "SERIAL8", "INT IDENTITY(1,1)"}},
        {FieldKind::Float,
         {"REAL", "DOUBLE", "double precision", "DOUBLE  PRECISION", "FLOAT", "float(24)", "FLOAT4", "float8",
          "NUMERIC", "numeric(10, 2)", "DECIMAL(10,2)", "DECIMAL (5)", "DECIMAL(10,2) UNSIGNED", "NUMBER(12)",
          "number", "DEC(4)", "LONG REAL", "FLOATING POINT", "DOUBLE UNSIGNED"}},
        {FieldKind::Currency, {"MONEY", "smallmoney", "CURRENCY"}}};
    for (const auto &[kind, names] : types) {
        EXPECT_TRUE(nuvo::isNumeric(kind));
        for (const char *name : names)
            EXPECT_EQ(nuvo::kindOfDeclaredType(u(name)), kind) << name;
    }
}

TEST(DeclaredTypes, OfOtherKindsAreNoNumbers)
{
    const std::map<FieldKind, std::vector<const char *>> types = {
        {FieldKind::String,
         {"TEXT", "VARCHAR(255)", "character varying(20)", "CHAR(10)", "NVARCHAR(100)", "NATIVE CHARACTER(70)",
          "uuid", "interval", "interval day to second(3)", "point", "integer[]", "VARYING CHARACTER (20)", "STRING",
          "VARCHAR(10) COLLATE NOCASE", "numeric(4,1)[]"}},
        {FieldKind::Bits, {"bit(8)", "BIT (2)", "bit varying(5)", "varbit"}},
        {FieldKind::Boolean, {"BOOLEAN", "bool", "BIT", "bit(1)"}},
        {FieldKind::Date, {"DATE"}},
        {FieldKind::Time, {"TIME", "time(3) without time zone", "time with time zone", "TIMETZ"}},
        {FieldKind::DateTime,
         {"DATETIME", "timestamp", "TIMESTAMP(6)", "timestamp(3) with time zone", "timestamp without time zone",
          "TIMESTAMPTZ"}},
        {FieldKind::Blob, {"BLOB", "bytea", "VARBINARY(20)", "LONGBLOB"}},
        {FieldKind::Memo, {"CLOB", "MEMO", "LONGTEXT"}},
        {FieldKind::Unknown, {"", "XYZZY"}}};
    for (const auto &[kind, names] : types) {
        EXPECT_FALSE(nuvo::isNumeric(kind));
        for (const char *name : names)
            EXPECT_EQ(nuvo::kindOfDeclaredType(u(name)), kind) << name;
    }
}

class FieldsOn : public testing::TestWithParam<TestDatabase::Backend>
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(GetParam());
    TTable table;

    void open(const char *name)
    {
        table.SetDatabaseName(db->name());
        table.SetTableName(u(name));
        table.Open();
    }
    TField &field(const char *name) { return table.FieldByName(u(name)); }
};

INSTANTIATE_TEST_SUITE_P(On, FieldsOn, testing::Values(TestDatabase::Sqlite, TestDatabase::Postgres),
                         [](const auto &each) { return backendName(each.param); });

TEST_P(FieldsOn, EveryColumnGetsTheClassOfItsDeclaredType)
{
    db->exec(u("CREATE TABLE t (si SMALLINT, i INTEGER, b BIGINT, r REAL, d DOUBLE PRECISION, n NUMERIC(10,2), "
               "dc DECIMAL(5), f FLOAT(20), v VARCHAR(10), tx TEXT, bo BOOLEAN, da DATE, ti TIME, ts TIMESTAMP)"));
    db->exec(db->backend() == TestDatabase::Sqlite ? u("ALTER TABLE t ADD COLUMN by BLOB")
                                                   : u("ALTER TABLE t ADD COLUMN by BYTEA"));
    db->exec(u("ALTER TABLE t ADD COLUMN m MONEY"));
    open("t");
    EXPECT_TRUE(is<TSmallintField>(field("si")));
    EXPECT_TRUE(is<TIntegerField>(field("i")));
    EXPECT_TRUE(is<TLargeintField>(field("b")));
    for (const char *name : {"r", "d", "n", "dc", "f"})
        EXPECT_TRUE(is<TFloatField>(field(name))) << name;
    EXPECT_TRUE(is<TStringField>(field("v")));
    EXPECT_TRUE(is<TStringField>(field("tx")));
    EXPECT_TRUE(is<TBooleanField>(field("bo")));
    EXPECT_TRUE(is<TDateField>(field("da")));
    EXPECT_TRUE(is<TTimeField>(field("ti")));
    EXPECT_TRUE(is<TDateTimeField>(field("ts")));
    EXPECT_TRUE(is<TBlobField>(field("by")));
    EXPECT_TRUE(is<TCurrencyField>(field("m")));
    EXPECT_EQ(field("n").DeclaredType().toLower(), u("numeric(10,2)"));
    EXPECT_EQ(field("n").Index(), 5);
    EXPECT_EQ(&field("n").DataSet(), &table);
}

TEST_P(FieldsOn, ValuesComeThroughAsNumbersTextsAndDates)
{
    db->exec(
        u("CREATE TABLE t (id INTEGER PRIMARY KEY, big BIGINT, n NUMERIC(10,3), r DOUBLE PRECISION, v VARCHAR(20), "
          "bo BOOLEAN, da DATE, ts TIMESTAMP, m MONEY)"));
    db->exec(u("INSERT INTO t VALUES (1, 9007199254740993, 12.125, 0.1, 'Größe €', TRUE, '2024-02-29', "
               "'2024-02-29 12:30:15', 1234.5)"));
    db->exec(u("INSERT INTO t VALUES (2, -42, -0.5, 1e300, '', FALSE, '1969-12-31', '1969-12-31 23:59:59', -5.99)"));
    open("t");
    EXPECT_EQ(field("big").AsInteger(), 9007199254740993);
    EXPECT_EQ(field("big").AsString(), u("9007199254740993"));
    EXPECT_EQ(field("big").AsFloat(), 9007199254740992.0);
    EXPECT_EQ(field("n").AsFloat(), 12.125);
    EXPECT_EQ(field("r").AsFloat(), 0.1);
    EXPECT_EQ(field("r").AsString(), u("0.1"));
    EXPECT_EQ(field("v").AsString(), u("Größe €"));
    EXPECT_TRUE(field("bo").AsBoolean());
    EXPECT_EQ(field("bo").AsFloat(), 1);
    EXPECT_EQ(field("da").AsString(), u("2024-02-29"));
    EXPECT_EQ(field("da").AsDateTime().date(), QDate(2024, 2, 29));
    EXPECT_EQ(field("ts").AsDateTime().time(), QTime(12, 30, 15));
    EXPECT_EQ(field("ts").AsString(), u("2024-02-29 12:30:15"));
    EXPECT_EQ(field("m").AsFloat(), 1234.5);
    EXPECT_EQ(field("n").AsInteger(), 12);
    EXPECT_EQ(field("id").Value(), QVariant(qint64(1)));
    table.Next();
    EXPECT_EQ(field("big").AsInteger(), -42);
    EXPECT_EQ(field("n").AsInteger(), -1);
    EXPECT_EQ(field("r").AsFloat(), 1e300);
    EXPECT_EQ(field("r").AsString(), u("1E300"));
    EXPECT_FALSE(field("v").IsNull());
    EXPECT_FALSE(field("bo").AsBoolean());
    EXPECT_EQ(field("m").AsFloat(), -5.99);
    EXPECT_EQ(errorOf([&] { field("r").AsInteger(); }),
              u("1E300 is not an integer of 64 bits (field \"r\" of table \"t\", record 2)."));
    EXPECT_EQ(errorOf([&] { field("da").AsFloat(); }),
              u("A date is not a number (field \"da\" of table \"t\", record 2)."));
    EXPECT_EQ(errorOf([&] { field("v").AsFloat(); }),
              u("\"\" is not a number (field \"v\" of table \"t\", record 2)."));
}

TEST_P(FieldsOn, ANaNAndAnInfinityAreNulls)
{
    db->exec(u("CREATE TABLE t (id INTEGER PRIMARY KEY, x DOUBLE PRECISION)"));
    if (db->backend() == TestDatabase::Sqlite)
        db->exec(u("INSERT INTO t VALUES (1, 9e999), (2, -9e999), (3, NULL), (4, 1)")); // SQLite stores no NaN
    else
        db->exec(u("INSERT INTO t VALUES (1, 'Infinity'), (2, '-Infinity'), (3, 'NaN'), (4, 1)"));
    open("t");
    for (int i = 0; i < 3; ++i, table.Next()) {
        EXPECT_TRUE(field("x").IsNull());
        EXPECT_EQ(field("x").AsFloat(), 0);
        EXPECT_EQ(field("x").AsInteger(), 0);
        EXPECT_FALSE(field("x").Value().isValid());
    }
    EXPECT_FALSE(field("x").IsNull());
}

TEST_P(FieldsOn, ASelfNumberingColumnIsAnAutoIncField)
{
    db->exec(db->backend() == TestDatabase::Sqlite
                 ? u("CREATE TABLE t (id INTEGER PRIMARY KEY AUTOINCREMENT, x REAL)")
                 : u("CREATE TABLE t (id BIGSERIAL PRIMARY KEY, x REAL)"));
    open("t");
    EXPECT_TRUE(is<TAutoIncField>(field("id")));
    EXPECT_TRUE(field("id").IsNumeric());
}

TEST_P(FieldsOn, OfADatasetWithoutRecordsAreNull)
{
    db->exec(u("CREATE TABLE t (id INTEGER PRIMARY KEY, x DOUBLE PRECISION, v VARCHAR(5))"));
    open("t");
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(table.Fields(i).IsNull());
        EXPECT_EQ(table.Fields(i).AsFloat(), 0);
        EXPECT_EQ(table.Fields(i).AsString(), QString());
        EXPECT_FALSE(table.Fields(i).AsDateTime().isValid());
    }
}

TEST_P(FieldsOn, StayTheSameObjectsOverClosingAndOpening)
{
    db->exec(u("CREATE TABLE t (id INTEGER PRIMARY KEY, x DOUBLE PRECISION, y DOUBLE PRECISION)"));
    db->exec(u("INSERT INTO t VALUES (1, 2.5, 3.5)"));
    open("t");
    TField &x = field("x");
    TField &y = field("y");
    table.Close();
    EXPECT_EQ(&field("x"), &x);
    EXPECT_EQ(errorOf([&] { x.AsFloat(); }), u("Table \"t\" is closed."));
    table.Open();
    EXPECT_EQ(x.AsFloat(), 2.5);
    table.Close();
    db->exec(u("ALTER TABLE t DROP COLUMN x"));
    table.Open();
    EXPECT_EQ(y.AsFloat(), 3.5);
    EXPECT_EQ(y.Index(), 1);
    EXPECT_EQ(errorOf([&] { x.AsFloat(); }), u("Field \"x\" is no longer in table \"t\"."));
    EXPECT_EQ(errorOf([&] { x.IsNull(); }), u("Field \"x\" is no longer in table \"t\"."));
}

TEST_P(FieldsOn, AQueryTakesTheClassesOfTheColumnsBehindIt)
{
    db->exec(u("CREATE TABLE t (id INTEGER PRIMARY KEY, d DECIMAL(10,2), b BIGINT, v VARCHAR(5), da DATE, m MONEY)"));
    TQuery query;
    query.SetDatabaseName(db->name());
    query.SetSQL(u("SELECT d AS id, b, v AS d, da, id AS whole, m FROM t"));
    query.Open();
    EXPECT_TRUE(is<TFloatField>(query.Fields(0)));
    EXPECT_TRUE(is<TLargeintField>(query.Fields(1)));
    EXPECT_TRUE(is<TStringField>(query.Fields(2)));
    EXPECT_TRUE(is<TDateField>(query.Fields(3)));
    EXPECT_TRUE(is<TIntegerField>(query.Fields(4)));
    EXPECT_TRUE(is<TCurrencyField>(query.Fields(5)));
    EXPECT_EQ(query.Fields(0).FieldName(), u("id"));
}

TEST_P(FieldsOn, MoneyOfAQueryIsANumber)
{
    db->exec(u("CREATE TABLE t (m MONEY)"));
    db->exec(u("INSERT INTO t VALUES (-1234.5)"));
    TQuery query;
    query.SetDatabaseName(db->name());
    query.SetSQL(u("SELECT m FROM t"));
    query.Open();
    EXPECT_EQ(query.Fields(0).AsFloat(), -1234.5);
}

TEST(FieldValues, OfEveryTypeOf64BitsAreOfOne)
{
    const QVariant whole = nuvo::ofOneIntegerType(QVariant::fromValue(9223372036854775807L));
    EXPECT_EQ(whole.typeId(), QMetaType::LongLong);
    EXPECT_EQ(whole.toLongLong(), 9223372036854775807);
    EXPECT_EQ(nuvo::ofOneIntegerType(QVariant::fromValue(18446744073709551615UL)), QVariant(18446744073709551615ULL));
    EXPECT_TRUE(nuvo::ofOneIntegerType(QVariant(QMetaType::fromType<long>())).isNull());
    EXPECT_EQ(nuvo::ofOneIntegerType(0.5), QVariant(0.5));
}

TEST_P(FieldsOn, AFieldThatAProgramMadeReadsItsColumn)
{
    db->exec(u("CREATE TABLE t (id INTEGER PRIMARY KEY, x DOUBLE PRECISION)"));
    db->exec(u("INSERT INTO t VALUES (1, 2.5)"));
    open("t");
    const TBCDField own(table, 1, u("x"), u("NUMERIC"));
    EXPECT_FALSE(own.IsNumeric());
    EXPECT_FALSE(own.IsNull());
    EXPECT_EQ(own.AsFloat(), 2.5);
    const TFloatField none(table, 7, u("y"), QString());
    EXPECT_EQ(errorOf([&] { none.AsFloat(); }), u("Field \"y\" is no longer in table \"t\"."));
}

class SqliteFields : public FieldsOn
{
};

INSTANTIATE_TEST_SUITE_P(On, SqliteFields, testing::Values(TestDatabase::Sqlite),
                         [](const auto &each) { return backendName(each.param); });

TEST_P(SqliteFields, ATextInANumericColumnIsReadAsTheNumberItIsOrNamed)
{
    db->exec(u("CREATE TABLE T (id INTEGER PRIMARY KEY, x REAL)"));
    db->exec(u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20) INSERT INTO T SELECT i, "
               "i FROM n"));
    db->exec(u("UPDATE T SET x = 'abc' WHERE id = 17"));
    db->exec(u("UPDATE T SET x = x'3132' WHERE id = 18"));
    open("T");
    table.MoveBy(16);
    EXPECT_FALSE(field("x").IsNull());
    EXPECT_EQ(errorOf([&] { field("x").AsFloat(); }),
              u("\"abc\" is not a number (field \"x\" of table \"T\", record 17)."));
    EXPECT_THROW(field("x").AsFloat(), EConvertError);
    EXPECT_THROW(field("x").AsInteger(), EConvertError);
    EXPECT_EQ(field("x").AsString(), u("abc"));
    table.Next();
    EXPECT_THROW(field("x").AsFloat(), EDatabaseError);
    table.Next();
    EXPECT_EQ(field("x").AsFloat(), 19);
}

TEST_P(SqliteFields, ValuesOfAnyStorageAreNumbersInANumericColumn)
{
    db->exec(u("CREATE TABLE t (a VARCHAR(5), x INTEGER, m MONEY, v ANYTHING_NUMBER_LIKE)"));
    db->exec(u("INSERT INTO t VALUES ('12.5', 2.5, '$5.99', 9223372036854775807)"));
    db->exec(u("INSERT INTO t VALUES ('x', 9223372036854775807, 'n/a', -9223372036854775807)"));
    open("t");
    EXPECT_EQ(field("a").AsFloat(), 12.5);
    EXPECT_EQ(field("x").AsFloat(), 2.5);
    EXPECT_EQ(field("x").AsString(), u("2.5"));
    EXPECT_EQ(field("x").AsInteger(), 3);
    EXPECT_EQ(field("m").AsFloat(), 5.99);
    EXPECT_EQ(field("v").AsInteger(), 9223372036854775807);
    table.Next();
    EXPECT_EQ(field("x").AsInteger(), 9223372036854775807);
    EXPECT_EQ(field("x").AsFloat(), 0x1p63);
    EXPECT_EQ(field("x").AsString(), u("9223372036854775807"));
    EXPECT_EQ(field("v").AsString(), u("-9223372036854775807"));
    EXPECT_THROW(field("m").AsFloat(), EConvertError);
    EXPECT_EQ(field("m").AsString(), u("n/a"));
}

TEST_P(SqliteFields, ColumnsWithoutATypeGoByTheirFirstValues)
{
    db->exec(u("CREATE TABLE t (whole, fraction, word, unset, bytes, later)"));
    db->exec(u("INSERT INTO t VALUES (NULL, 1, NULL, NULL, x'00', 1)"));
    db->exec(u("INSERT INTO t VALUES (3, 2.5, 'x', NULL, x'01', 2)"));
    for (int i = 0; i < 100; ++i)
        db->exec(u("INSERT INTO t VALUES (3, 2.5, 'x', NULL, x'01', 2)"));
    db->exec(u("INSERT INTO t VALUES (4, 2, 'y', 'text', x'02', 'text')"));
    db->exec(u("INSERT INTO t VALUES (4.5, 2, 5, 7, 8, 9.5)"));
    open("t");
    EXPECT_TRUE(is<TLargeintField>(field("whole")));
    EXPECT_TRUE(is<TFloatField>(field("fraction")));
    EXPECT_TRUE(is<TStringField>(field("word")));
    EXPECT_TRUE(is<TFloatField>(field("unset")));
    EXPECT_TRUE(is<TBlobField>(field("bytes")));
    EXPECT_TRUE(is<TLargeintField>(field("later")));
    table.MoveBy(102);
    EXPECT_EQ(field("unset").AsString(), u("text"));
    EXPECT_EQ(field("later").AsString(), u("text"));
    EXPECT_THROW(field("later").AsFloat(), EConvertError);
    table.Next();
    EXPECT_EQ(field("whole").AsFloat(), 4.5);
    EXPECT_EQ(field("word").AsFloat(), 5);
    EXPECT_EQ(field("unset").AsFloat(), 7);
    EXPECT_EQ(field("later").AsFloat(), 9.5);
}

TEST_P(SqliteFields, ExpressionsAndEmptyResultsOfAQueryHaveAClass)
{
    db->exec(u("CREATE TABLE t (x REAL)"));
    TQuery query;
    query.SetDatabaseName(db->name());
    query.SetSQL(u("SELECT COUNT(*), AVG(x), 1, 'a', 1.5 AS f, NULL FROM t"));
    query.Open();
    EXPECT_TRUE(is<TLargeintField>(query.Fields(0)));
    EXPECT_TRUE(is<TFloatField>(query.Fields(1)));
    EXPECT_TRUE(is<TLargeintField>(query.Fields(2)));
    EXPECT_TRUE(is<TStringField>(query.Fields(3)));
    EXPECT_TRUE(is<TFloatField>(query.Fields(4)));
    EXPECT_TRUE(is<TFloatField>(query.Fields(5)));
    query.SetSQL(u("SELECT x + 1 AS y FROM t"));
    query.Open();
    EXPECT_TRUE(query.IsEmpty());
    EXPECT_TRUE(is<TFloatField>(query.FieldByName(u("y"))));
}

TEST_P(SqliteFields, DatesAreTextsSecondsOrJulianDays)
{
    db->exec(u("CREATE TABLE t (d DATETIME)"));
    db->exec(u("INSERT INTO t VALUES ('2024-02-29 12:30:00'), (1709209800), (2460370.0208333335), ('12:30'), "
               "('soon'), (1e300)"));
    open("t");
    const QDateTime expected(QDate(2024, 2, 29), QTime(12, 30), QTimeZone::utc());
    EXPECT_EQ(field("d").AsDateTime().date(), expected.date());
    EXPECT_EQ(field("d").AsDateTime().time(), expected.time());
    table.Next();
    EXPECT_EQ(field("d").AsDateTime(), expected);
    EXPECT_THROW(field("d").AsFloat(), EDatabaseError);
    table.Next();
    EXPECT_LT(std::abs(field("d").AsDateTime().msecsTo(expected)), 100);
    table.Next();
    EXPECT_EQ(field("d").AsDateTime().time(), QTime(12, 30));
    table.Next();
    EXPECT_FALSE(field("d").AsDateTime().isValid());
    EXPECT_EQ(field("d").AsString(), u("soon"));
    table.Next();
    EXPECT_FALSE(field("d").AsDateTime().isValid());
}

class PostgresFields : public FieldsOn
{
};

INSTANTIATE_TEST_SUITE_P(On, PostgresFields, testing::Values(TestDatabase::Postgres),
                         [](const auto &each) { return backendName(each.param); });

TEST_P(PostgresFields, DomainsAreWhatTheyAreMadeOf)
{
    db->exec(u("CREATE DOMAIN amount AS NUMERIC(10,2)"));
    db->exec(u("CREATE DOMAIN paid AS amount CHECK (VALUE >= 0)"));
    db->exec(u("CREATE TABLE t (p paid, i INTEGER GENERATED ALWAYS AS IDENTITY, a INTEGER[], iv INTERVAL, u UUID)"));
    db->exec(u("INSERT INTO t (p, a, iv) VALUES (12.5, '{1,2}', '1 day')"));
    open("t");
    EXPECT_TRUE(is<TFloatField>(field("p")));
    EXPECT_EQ(field("p").DeclaredType(), u("paid"));
    EXPECT_EQ(field("p").AsFloat(), 12.5);
    EXPECT_TRUE(is<TAutoIncField>(field("i")));
    EXPECT_TRUE(is<TStringField>(field("a")));
    EXPECT_EQ(field("a").AsString(), u("{1,2}"));
    EXPECT_TRUE(is<TStringField>(field("iv")));
    EXPECT_TRUE(is<TStringField>(field("u")));
    TQuery query;
    query.SetDatabaseName(db->name());
    query.SetSQL(u("SELECT p, p * 2 AS twice, iv, now() AS moment FROM t"));
    query.Open();
    EXPECT_TRUE(is<TFloatField>(query.Fields(0)));
    EXPECT_TRUE(is<TFloatField>(query.Fields(1)));
    EXPECT_EQ(query.Fields(1).AsFloat(), 25);
    EXPECT_TRUE(is<TStringField>(query.Fields(2)));
    EXPECT_TRUE(is<TDateTimeField>(query.Fields(3)));
}
