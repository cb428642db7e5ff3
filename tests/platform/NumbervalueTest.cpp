// SPDX-License-Identifier: MIT
#include "platform/Numbervalue.h"

#include "platform/Errors.h"
#include "platform/Query.h"
#include "platform/Table.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(NumbersInTexts, AreReadWithAPointOrAsMoney)
{
    const std::map<const char *, double> texts = {
        {"12.5", 12.5},
        {" -3e2 ", -300},
        {".5", 0.5},
        {"5.", 5},
        {"+4", 4},
        {"1E5", 1e5},
        {"0.1000000000000000055511151231257827021181583404541015625", 0.1},
        {"00000000000000000000000000000000000000000000000000000000000000012", 12},
        {"$5.99", 5.99},
        {"-$1,234.50", -1234.5},
        {"$-2.00", -2},
        {"($3.25)", -3.25},
        {"1,000 €", 1000},
        {"1,234,567.25 €", 1234567.25},
        {"£ 7", 7}};
    for (const auto &[text, number] : texts) {
        double value = 0;
        EXPECT_TRUE(nuvo::numberFromText(u(text), value)) << text;
        EXPECT_EQ(value, number) << text;
    }
    for (const char *text : {"abc", "",    " ", "1,234", "12.5x", "$", "$abc", "1 2",   "0x10",  "--1", "+-1",
                             "-+1", "$ -", "€", "1e",    "e5",    ".", "-",    "1.2.3", "1e5.5", "١٢"}) {
        double value = 17;
        EXPECT_FALSE(nuvo::numberFromText(u(text), value)) << text;
        EXPECT_EQ(value, 17) << text;
    }
}

TEST(NumbersInTexts, OfMoneyWithADecimalCommaAreRefused)
{
    for (const char *text :
         {"12,50 €", "1.234,50 €", "99,99 €", "€ 12,5", "-12,50 €", "(12,50 €)", "1,2345 €", "1234,567 €", "0,125 €",
          "1,23,456 $", "$1,234,5", "$,123", "$1,,234", "1.000.000 €", "1,234.567,8 €"}) {
        double value = 17;
        EXPECT_FALSE(nuvo::numberFromText(u(text), value)) << text << " is read as " << value;
        EXPECT_EQ(value, 17) << text;
    }
}

TEST(NumbersInTexts, ThatADoubleCannotHoldAreZeroOrNotFinite)
{
    for (const char *text : {"1e-400", "-1e-400", "0.000001e-320", "1e-99999999999999999999", "0e999999999999",
                             "0.0000000000000000000000000000000000000000000000000000000000000000000000001e-300"}) {
        double value = 17;
        EXPECT_TRUE(nuvo::numberFromText(u(text), value)) << text;
        EXPECT_EQ(value, 0) << text;
    }
    for (const char *text : {"1e400", "-1e400", "1e99999999999999999999", "NaN", "nan", "Inf", "-inf", "+Infinity",
                             "-INFINITY", " inf ", "$1e999"}) {
        double value = 17;
        EXPECT_TRUE(nuvo::numberFromText(u(text), value)) << text;
        EXPECT_TRUE(std::isnan(value)) << text << " is read as " << value;
    }
    double value = 0;
    EXPECT_TRUE(nuvo::numberFromText(u("5e-324"), value));
    EXPECT_EQ(value, std::numeric_limits<double>::denorm_min());
    EXPECT_TRUE(nuvo::numberFromText(u("1.7976931348623157e308"), value));
    EXPECT_EQ(value, std::numeric_limits<double>::max());
}

class NumbersOf : public testing::TestWithParam<TestDatabase::Backend>
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(GetParam());
    TTable table;
    TQuery query;

    /// Opens the table "t" and a query of all of it, both in the order of id.
    void open()
    {
        table.SetDatabaseName(db->name());
        table.SetTableName(u("t"));
        table.Open();
        query.SetDatabaseName(db->name());
        query.SetSQL(u("SELECT * FROM t ORDER BY id"));
        query.Open();
    }
    std::vector<TDataSet *> both() { return {&table, &query}; }
};

INSTANTIATE_TEST_SUITE_P(On, NumbersOf, testing::Values(TestDatabase::Sqlite, TestDatabase::Postgres),
                         [](const auto &each) { return backendName(each.param); });

TEST_P(NumbersOf, TextColumnsThatAreNotFiniteAreNullsThatShowTheirText)
{
    const QStringList words{u("NaN"), u("Inf"), u("-Infinity"), u("infinity"), u("+inf"), u("1e400")};
    db->exec(u("CREATE TABLE t (id INTEGER PRIMARY KEY, v VARCHAR(20))"));
    for (int i = 0; i < words.size(); ++i)
        db->exec(u("INSERT INTO t VALUES (%1, '%2')").arg(i).arg(words[i]));
    db->exec(u("INSERT INTO t VALUES (90, '1e-400'), (91, '2.5'), (92, 'Ina')"));
    open();
    for (TDataSet *dataset : both()) {
        const TField &v = dataset->FieldByName(u("v"));
        for (const QString &word : words) {
            EXPECT_TRUE(v.IsNull()) << word.toStdString();
            EXPECT_EQ(v.AsFloat(), 0) << word.toStdString();
            EXPECT_FALSE(v.AsBoolean());
            EXPECT_EQ(v.AsString(), word);
            dataset->Next();
        }
        EXPECT_FALSE(v.IsNull());
        EXPECT_EQ(v.AsFloat(), 0);
        dataset->Next();
        EXPECT_EQ(v.AsFloat(), 2.5);
        dataset->Next();
        EXPECT_FALSE(v.IsNull());
        EXPECT_THROW(v.AsFloat(), EConvertError);
    }
}

TEST_P(NumbersOf, DecimalsBelowTheSmallestDoubleAreZero)
{
    db->exec(u("CREATE TABLE t (id INTEGER PRIMARY KEY, x NUMERIC)"));
    db->exec(u("INSERT INTO t VALUES (1, 1e-400), (2, -1e-400), (3, 0.1), (4, 12345678901234567890.5)"));
    if (db->backend() == TestDatabase::Postgres)
        db->exec(u("INSERT INTO t VALUES (5, 1e400), (6, 'NaN'), (7, 'Infinity'), (8, NULL)"));
    else
        db->exec(u("INSERT INTO t VALUES (5, 9e999), (8, NULL)"));
    open();
    for (TDataSet *dataset : both()) {
        const TField &x = dataset->FieldByName(u("x"));
        EXPECT_TRUE(x.IsNumeric());
        for (const double expected : {0.0, 0.0, 0.1, 12345678901234567890.5}) {
            EXPECT_FALSE(x.IsNull());
            EXPECT_EQ(x.AsFloat(), expected);
            EXPECT_EQ(x.Value().typeId(), QMetaType::Double);
            dataset->Next();
        }
        for (; !dataset->Eof(); dataset->Next())
            EXPECT_TRUE(x.IsNull());
    }
}

class BitsOf : public NumbersOf
{
};

INSTANTIATE_TEST_SUITE_P(On, BitsOf, testing::Values(TestDatabase::Postgres),
                         [](const auto &each) { return backendName(each.param); });

TEST_P(BitsOf, StringsOfThemAreNoDecimalNumbers)
{
    db->exec(u("CREATE DOMAIN flags AS BIT(4)"));
    db->exec(u("CREATE TABLE t (id INTEGER PRIMARY KEY, b BIT(4), v BIT VARYING(8), f flags, one BIT)"));
    db->exec(u("INSERT INTO t VALUES (1, B'1001', B'10', B'0001', B'1'), (2, NULL, NULL, NULL, NULL)"));
    open();
    for (TDataSet *dataset : both()) {
        for (const char *name : {"b", "v", "f"}) {
            const TField &field = dataset->FieldByName(u(name));
            EXPECT_FALSE(field.IsNumeric());
            EXPECT_FALSE(field.IsNull());
            const QString error = errorOf<EDatabaseError>([&] { field.AsFloat(); });
            EXPECT_EQ(error, u("A string of bits is not a number (field \"%1\" of %2, record 1).")
                                 .arg(u(name), dataset->Caption()));
        }
        EXPECT_EQ(dataset->FieldByName(u("b")).AsString(), u("1001"));
        EXPECT_EQ(dataset->FieldByName(u("one")).AsFloat(), 1);
        dataset->Next();
        EXPECT_TRUE(dataset->FieldByName(u("b")).IsNull());
    }
}
