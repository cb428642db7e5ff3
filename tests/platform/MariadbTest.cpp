// SPDX-License-Identifier: MIT
#include "support/Mariadb.h"
#include "platform/Connection.h"
#include "platform/Errors.h"
#include "platform/Query.h"
#include "platform/Table.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QRegularExpression>

// Tables and queries of a MariaDB server: mysql://…

namespace {

class MariadbTables : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!MariadbServer::isInstalled())
            GTEST_SKIP() << "MariaDB (mariadb-server-core) or Qt's driver for it (libqt6sql6-mysql) is not installed";
        db = TestDatabase::make(TestDatabase::Mariadb);
    }
    void open(const QString &name, const QString &options = {})
    {
        table.SetDatabaseName(db->name() + options);
        table.SetTableName(name);
        table.Open();
    }
    TField &field(const char *name) { return table.FieldByName(u(name)); }
    template <class Field>
    bool is(const char *name)
    {
        return dynamic_cast<Field *>(&field(name)) != nullptr;
    }

    std::unique_ptr<TestDatabase> db;
    TTable table;
};

QString ticked(const QString &name)
{
    return u'`' + QString(name).replace(u'`', u("``")) + u'`';
}

} // namespace

TEST_F(MariadbTables, HaveFieldsOfTheKindsThatTheirTypesSay)
{
    db->exec(
        u("CREATE TABLE t (ti TINYINT, si SMALLINT, mi MEDIUMINT, i INT, bi BIGINT, utiny TINYINT UNSIGNED, usmall "
          "SMALLINT UNSIGNED, uint INT UNSIGNED, ubig BIGINT UNSIGNED, f FLOAT, d DOUBLE, dec2 DECIMAL(12,2), big "
          "DECIMAL(40,10), flag BOOLEAN, bit1 BIT(1), bit8 BIT(8), y YEAR, da DATE, ti2 TIME, dt DATETIME(3), ts "
          "TIMESTAMP NULL, c CHAR(5), v VARCHAR(20), tx TEXT, bl BLOB, e ENUM('a', 'b'), j JSON, id INT "
          "AUTO_INCREMENT PRIMARY KEY)"));
    db->exec(
        u("INSERT INTO t VALUES (-128, -32768, -8388608, -2147483648, -9223372036854775808, 255, 65535, 4294967295, "
          "18446744073709551615, 0.1, 0.1, 1234567890.25, 123456789012345678901234567890.5, TRUE, b'1', b'101', "
          "1999, '2024-01-31', '12:30:15', '2024-01-31 12:30:15.250', '2024-01-31 12:30:15', 'ab', '12.5', "
          "'$1,234.50', 'x', 'b', '[1]', 7)"));
    db->exec(u("INSERT INTO t (id) VALUES (8)"));
    open(u("t"));
    const struct
    {
        const char *name;
        double value;
    } numbers[] = {{"ti", -128},
                   {"si", -32768},
                   {"mi", -8388608},
                   {"i", -2147483648.0},
                   {"bi", -0x1p63},
                   {"utiny", 255},
                   {"usmall", 65535},
                   {"uint", 4294967295.0},
                   {"ubig", 0x1p64},
                   {"f", 0.1},
                   {"d", 0.1},
                   {"dec2", 1234567890.25},
                   {"big", 123456789012345678901234567890.5},
                   {"flag", 1},
                   {"y", 1999},
                   {"id", 7}};
    for (const auto &number : numbers) {
        EXPECT_EQ(field(number.name).AsFloat(), number.value) << number.name;
    }
    for (const char *whole : {"ti", "si", "mi", "i", "bi", "utiny", "usmall", "uint", "ubig", "y", "id"})
        EXPECT_TRUE(is<TIntegerField>(whole) || is<TSmallintField>(whole) || is<TWordField>(whole) ||
                    is<TLargeintField>(whole) || is<TAutoIncField>(whole))
            << whole;
    for (const char *real : {"f", "d", "dec2", "big"})
        EXPECT_TRUE(is<TFloatField>(real)) << real;
    EXPECT_EQ(field("bi").AsInteger(), std::numeric_limits<qint64>::min());
    EXPECT_EQ(field("ubig").AsString(), u("18446744073709551615"));
    EXPECT_EQ(field("bit1").AsFloat(), 1);
    EXPECT_TRUE(is<TStringField>("v") && is<TStringField>("c") && is<TStringField>("e"));
    EXPECT_EQ(field("v").AsFloat(), 12.5);
    EXPECT_EQ(field("tx").AsFloat(), 1234.5);
    EXPECT_TRUE(is<TDateField>("da") && is<TDateTimeField>("dt"));
    EXPECT_EQ(field("da").AsString(), u("2024-01-31"));
    EXPECT_EQ(field("dt").AsString(), u("2024-01-31 12:30:15.250"));
    for (const char *name : {"da", "ti2", "dt", "ts"})
        EXPECT_TRUE(errorOf<EDatabaseError>([&] { field(name).AsFloat(); }).startsWith(u("A date is not a number")))
            << name;
    EXPECT_FALSE(errorOf([&] { field("bl").AsFloat(); }).isEmpty());
    EXPECT_FALSE(errorOf([&] { field("bit8").AsFloat(); }).isEmpty());
    table.Next();
    for (const QString &name : table.GetFieldNames()) {
        EXPECT_EQ(table.FieldByName(name).IsNull(), name != u"id") << name.toStdString();
    }
}

TEST_F(MariadbTables, AndTheirFieldsCanHaveAnyName)
{
    for (const QString &name : {u("plain"), u("a\"b"), u("x.y"), u("Größe €"), u("drop table t; --"), u("with blank"),
                                u("it's"), u("1999"), u("select"), u("a`b"), u("a\\b"), u("?"), u(":p"), u("%s")}) {
        db->exec(u("CREATE TABLE %1 (%2 DOUBLE, %3 INTEGER PRIMARY KEY)")
                     .arg(ticked(name), ticked(name), ticked(name + u("2"))));
        db->exec(u("INSERT INTO ") + ticked(name) + u(" VALUES (2.5, 1)"));
        open(name);
        EXPECT_EQ(table.GetFieldNames(), QStringList({name, name + u("2")}));
        EXPECT_EQ(table.FieldByName(name).AsFloat(), 2.5) << name.toStdString();
        EXPECT_EQ(table.RecordCount(), 1);
        table.Close();
    }
}

TEST_F(MariadbTables, ComeInTheOrderOfTheirKeyOrOfTheFieldsThatAreNamed)
{
    db->exec(u("CREATE TABLE t (id INT PRIMARY KEY, x DOUBLE)"));
    db->exec(u("INSERT INTO t VALUES (3, 1), (1, 2), (2, NULL)"));
    const auto ids = [&] {
        QStringList all;
        for (table.First(); !table.Eof(); table.Next())
            all.append(field("id").AsString());
        return all.join(u' ');
    };
    open(u("t"));
    EXPECT_EQ(ids(), u("1 2 3"));
    table.SetIndexFieldNames(u("x"));
    EXPECT_EQ(ids(), u("2 3 1"));
    table.SetIndexFieldNames(QString());
    table.SetFilter(u("x IS NOT NULL"));
    table.SetFiltered(true);
    EXPECT_EQ(ids(), u("1 3"));
    EXPECT_TRUE(table.FindKey({3}));
    EXPECT_EQ(field("x").AsFloat(), 1);
}

TEST_F(MariadbTables, OfManyRecordsAreWalkedAndWalkedAgain)
{
    db->makeNumbers(u("numbers"), 30000, 2);
    open(u("numbers"));
    for (int round = 0; round < 2; ++round) {
        qint64 records = 0;
        double sum = 0;
        for (table.First(); !table.Eof(); table.Next(), ++records)
            sum += field("x0").AsFloat();
        EXPECT_EQ(records, 30000);
        EXPECT_EQ(sum, db->value(u("SELECT SUM(x0) FROM numbers")).toDouble());
    }
}

TEST_F(MariadbTables, ThatAreNotThereAreNamedWithThoseThatAre)
{
    db->exec(u("CREATE TABLE b (x INTEGER)"));
    db->exec(u("CREATE VIEW a AS SELECT * FROM b"));
    EXPECT_EQ(errorOf<EDatabaseError>([&] { open(u("c")); }),
              u("No table \"c\" in database \"%1\"; its tables: a, b.").arg(db->name()));
    EXPECT_TRUE(errorOf<EDatabaseError>([&] {
                    open(u("b"));
                    field("y");
                }).contains(u("x")));
}

TEST_F(MariadbTables, QueriesTakeParametersAndRefuseWhatDoesNotRead)
{
    db->exec(u("CREATE TABLE t (x DOUBLE, n VARCHAR(10))"));
    db->exec(u("INSERT INTO t VALUES (1, 'a'), (2, 'b'), (3, NULL)"));
    TQuery query;
    query.SetDatabaseName(db->name());
    query.SetSQL(u("SELECT x, n, x * 2 AS twice, CAST(x AS DECIMAL(10,3)) AS d FROM t WHERE x > :least ORDER BY x"));
    query.SetParam(u("least"), 1);
    query.Open();
    EXPECT_EQ(query.RecordCount(), 2);
    EXPECT_EQ(query.FieldByName(u("twice")).AsFloat(), 4);
    EXPECT_EQ(query.FieldByName(u("d")).AsFloat(), 2);
    query.Next();
    EXPECT_TRUE(query.FieldByName(u("n")).IsNull());
    query.Close();
    query.SetSQL(u("DELETE FROM t"));
    EXPECT_FALSE(errorOf<EDatabaseError>([&] { query.Open(); }).isEmpty());
    // A function that writes, called by a statement that reads.
    db->exec(u("CREATE FUNCTION writes() RETURNS INT BEGIN DELETE FROM t; RETURN 1; END"));
    query.SetSQL(u("SELECT writes() AS x"));
    const QString refused = errorOf<EDatabaseError>([&] { query.Open(); });
    EXPECT_TRUE(refused.contains(u("READ ONLY"))) << refused.toStdString();
    EXPECT_EQ(db->value(u("SELECT COUNT(*) FROM t")).toInt(), 3);
}

TEST_F(MariadbTables, AnAnswerThatTakesTooLongIsGivenUp)
{
    TQuery query;
    query.SetDatabaseName(db->name() + u("?read_timeout=1"));
    query.SetSQL(u("SELECT SLEEP(20) AS x"));
    QElapsedTimer clock;
    clock.start();
    const QString error = errorOf<EDatabaseError>([&] { query.Open(); });
    EXPECT_LT(clock.elapsed(), 10000);
    EXPECT_TRUE(error.contains(u("has not answered within 1 s"))) << error.toStdString();
}

TEST_F(MariadbTables, AServerThatIsNotThereOrDoesNotKnowUsIsASentence)
{
    const auto error = [&](const QString &name) {
        table.Close();
        table.SetDatabaseName(name);
        table.SetTableName(u("t"));
        return errorOf<EDatabaseError>([&] { table.Open(); });
    };
    const QString server = db->name().section(u'/', 0, 2);
    const QRegularExpression sentence(u("^Cannot open the database \"mysql://[^\"]*\": [^\n]*[^.]\\.$"));
    for (const QString &name : {server + u("/none"), QString(server).replace(u("nuvo@"), u("nobody@")) + u("/x"),
                                u("mysql://nuvo@127.0.0.1:1/x"), u("mysql://nuvo@127.0.0.1:1/x?connect_timeout=1")}) {
        const QString said = error(name);
        EXPECT_TRUE(sentence.match(said).hasMatch()) << said.toStdString();
        EXPECT_FALSE(said.contains(u("QMYSQL"))) << said.toStdString();
    }
}

TEST_F(MariadbTables, ALostServerIsASentence)
{
    MariadbServer own;
    const auto other = TestDatabase::makeOnMariadb(own.url());
    other->makeNumbers(u("numbers"), 200000, 3);
    table.SetDatabaseName(other->name());
    table.SetTableName(u("numbers"));
    table.Open();
    own.kill();
    const QString error = errorOf<EDatabaseError>([&] { table.Refresh(); });
    EXPECT_TRUE(error.startsWith(u("Cannot "))) << error.toStdString();
    EXPECT_TRUE(error.endsWith(u'.') && !error.contains(u'\n')) << error.toStdString();
}
