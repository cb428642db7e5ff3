// SPDX-License-Identifier: MIT
#include "engine/Leftout.h"

#include "engine/Columncache.h"
#include "support/Regressions.h"
#include "support/Text.h"

#include <QFile>

namespace {

using nuvo::LeftOut;

/// Six records with a null in every column, a value that a logarithm cannot take, and texts.
class LeftOutOf : public RegressionOver<TMLRTable>
{
protected:
    LeftOutOf()
    {
        db->exec(u("CREATE TABLE data (id INTEGER PRIMARY KEY, y DOUBLE PRECISION, a DOUBLE PRECISION, "
                   "b DOUBLE PRECISION, t TEXT)"));
        db->exec(u("INSERT INTO data (y, a, b, t) VALUES (1, 2, 3, '1'), (NULL, -1, 2, '2'), (4, NULL, NULL, 'NaN'), "
                   "(2, -3, 5, '7'), (7, 0, 1, NULL), (3, 1, 7, '-4'), (5, 9, NULL, '12'), (9, 4, 2, '3'), "
                   "(6, 3, 4, '6'), (8, 6, 8, '5')"));
        bind(regression, *db, "data");
        define(regression, "a b");
        regression.SetControl(1, control("Log", "a"));
    }

    /// The records as they are now.
    void changed(const char *statement)
    {
        db->exec(u(statement));
        regression.Close();
        regression.Open();
    }

    const std::vector<LeftOut> counted{{u("y"), 1, 0, {2}}, {u("Ln(a)"), 1, 3, {2, 3, 4, 5}}, {u("b"), 2, 0, {3, 7}}};
};

} // namespace

TEST_F(LeftOutOf, EachTermIsCountedForItself)
{
    EXPECT_EQ(regression.LeftOut(), std::vector<LeftOut>()) << "nothing was loaded";
    ASSERT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.LeftOut(), counted);
    EXPECT_EQ(regression.RecordsSkipped(), 5);
}

TEST_F(LeftOutOf, AProductLacksWhatEitherFieldLacksAndATextThatIsNoNumberIsNull)
{
    regression.SetControl(1, control("Product", "a", "b"));
    regression.SetControl(2, control("None", "t"));
    ASSERT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.LeftOut(),
              (std::vector<LeftOut>{{u("y"), 1, 0, {2}}, {u("a*b"), 2, 0, {3, 7}}, {u("t"), 2, 0, {3, 5}}}));
    regression.SetControl(2, control("Sqrt", "t"));
    regression.SetResponse(response("Inverse", "y"));
    changed("UPDATE data SET y = 0 WHERE id = 9");
    ASSERT_TRUE(regression.ReLoad());
    EXPECT_EQ(
        regression.LeftOut(),
        (std::vector<LeftOut>{{u("1/(y)"), 1, 1, {2, 9}}, {u("a*b"), 2, 0, {3, 7}}, {u("t^1/2"), 2, 1, {3, 5, 6}}}));
}

TEST_F(LeftOutOf, ATextThatATermBehindCannotReadIsOneThatItCannotTake)
{
    changed("UPDATE data SET t = 'many' WHERE id = 2");
    regression.SetControl(2, control("None", "t"));
    ASSERT_TRUE(regression.ReLoad()) << "the response is null there: the text is not read";
    EXPECT_EQ(regression.LeftOut()[2], (LeftOut{u("t"), 2, 1, {2, 3, 5}}));
}

TEST_F(LeftOutOf, OnlyRecordsThatWereWalkedCount)
{
    changed("INSERT INTO data (y, a, b) WITH RECURSIVE number(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM number "
            "WHERE i < 2600) SELECT i, i + 1, i % 7 FROM number");
    changed("UPDATE data SET y = NULL WHERE id > 2505");
    ASSERT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.RecordsRead(), 2505);
    EXPECT_EQ(regression.LeftOut(), counted);
}

TEST_F(LeftOutOf, TheOrdinalsEndWithTheTenth)
{
    changed("INSERT INTO data (a, b) WITH RECURSIVE number(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM number "
            "WHERE i < 12) SELECT i, 1 FROM number");
    ASSERT_TRUE(regression.ReLoad());
    const LeftOut of = regression.LeftOut()[0];
    EXPECT_EQ(of.null, 13);
    EXPECT_EQ(of.first, (std::vector<qint64>{2, 11, 12, 13, 14, 15, 16, 17, 18, 19}));
}

TEST_F(LeftOutOf, IsOfTheLoadAndNotOfWhatWasDefinedSince)
{
    ASSERT_TRUE(regression.ReLoad());
    define(regression, "t", "b");
    EXPECT_EQ(regression.LeftOut(), counted);
}

TEST_F(LeftOutOf, ALoadOutOfACacheIsWalkedForItAndTheDatasetStaysWhereItIs)
{
    const auto load = [&] {
        regression.SetColumnCache(std::make_shared<nuvo::ColumnCache>(
            regression.DataSet(), std::vector<TIndepVar>{regression.ControlVar(1), regression.ControlVar(2)}));
        ASSERT_TRUE(regression.ReLoad());
        regression.SetColumnCache(nullptr);
    };
    load();
    ASSERT_TRUE(regression.Eof());
    EXPECT_EQ(regression.LeftOut(), counted);
    EXPECT_TRUE(regression.Eof());
    load();
    regression.First();
    regression.MoveBy(3);
    EXPECT_EQ(regression.LeftOut(), counted);
    EXPECT_EQ(regression.RecNo(), 4);
    EXPECT_FALSE(regression.Eof());
    load();
    regression.Close();
    regression.Open();
    EXPECT_EQ(regression.LeftOut(), std::vector<LeftOut>()) << "these are other records";
}

TEST_F(LeftOutOf, CannotBeWalkedForDuringASeries)
{
    TRegression::Series series(regression);
    ASSERT_TRUE(series.ReLoad());
    EXPECT_NE(errorOf<EDatabaseError>([&] { regression.LeftOut(); }), QString());
}

TEST_F(LeftOutOf, ALoadThatFindsNothingTellsWhy)
{
    changed("UPDATE data SET a = -1");
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(regression.LeftOut()[1], (LeftOut{u("Ln(a)"), 0, 10, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}}));
}

TEST(LeftOut, OfTheDaysWithoutAFigureOfTheAir)
{
    const std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    QFile file(u(NUVO_SAMPLES "/Airquality.sql"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    for (const QString &statement : QString::fromUtf8(file.readAll()).split(u(";\n")))
        if (!statement.trimmed().isEmpty())
            db->exec(statement);
    TMLRTable regression;
    bind(regression, *db, "Airquality");
    define(regression, "Radiation Wind Temp", "Ozone");
    ASSERT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.RecordsSkipped(), 42);
    EXPECT_EQ(regression.LeftOut(),
              (std::vector<LeftOut>{{u("Ozone"), 37, 0, {5, 10, 25, 26, 27, 32, 33, 34, 35, 36}},
                                    {u("Radiation"), 7, 0, {5, 6, 11, 27, 96, 97, 98}},
                                    {u("Wind"), 0, 0, {}},
                                    {u("Temp"), 0, 0, {}}}));
}
