// SPDX-License-Identifier: MIT
#include "engine/Everyrecords.h"

#include "engine/Fit.h"
#include "engine/Fitfigures.h"
#include "engine/Leftout.h"

#include <gtest/gtest.h>

#include <random>

// Loads of every record.

using Every = RegressionOver<TMLRTable>;
using EveryOfAQuery = RegressionOver<TMLRQuery>;

namespace {

/// Every figure of a fit that is no single observation's, but for means and deviations.
std::vector<double> figuresOf(TRegression &regression)
{
    std::vector<double> figures{regression.GetyMax(), regression.GetyMin(), regression.GetSSE(),
                                regression.GetSSR(),  regression.GetSST(),  regression.GetRSquared(),
                                regression.GetSyx(),  regression.GetF(),    regression.GetMSE()};
    for (int i = 0; i <= regression.GetNumVars(); ++i) {
        figures.insert(figures.end(), {regression.Getb(i), regression.GetStdErr(i)});
        for (int j = 0; j <= regression.GetNumVars(); ++j)
            figures.insert(figures.end(), {regression.GetCovar(i, j), regression.GetCorr(i, j)});
        if (i > 0)
            figures.insert(figures.end(), {regression.GetxMax(i), regression.GetxMin(i), regression.GetVIF(i),
                                           regression.GetPartialSumOfSquares(i)});
    }
    return figures;
}

/// Those of the first records are added up record by record, in doubles.
std::vector<double> spreadOf(TRegression &regression)
{
    std::vector<double> figures{regression.GetyBar(), regression.GetyStdErr()};
    for (int j = 1; j <= regression.GetNumVars(); ++j)
        figures.insert(figures.end(), {regression.GetxBar(j), regression.GetxStdErr(j)});
    return figures;
}

/// A fit of all records beside one of the first 2500.
template <class Component>
void expectTheSame(Component &regression)
{
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    const std::vector<double> first = figuresOf(regression);
    const std::vector<double> spread = spreadOf(regression);
    const std::vector<nuvo::LeftOut> left = regression.LeftOut();
    std::vector<double> observations;
    const auto observe = [&] {
        std::vector<double> values;
        for (int i = 1; i <= regression.SampleSize(); ++i) {
            values.push_back(double(regression.GetRecord(i)));
            values.push_back(regression.Gety(i));
            for (int j = 1; j <= regression.GetNumVars(); ++j)
                values.push_back(regression.Getx(i, j));
        }
        return values;
    };
    const std::vector<double> observed = observe();
    const std::array<qint64, 4> counts{regression.RecordsRead(), regression.RecordsUsed(),
                                       regression.RecordsSkipped(), regression.DegreesOfFreedom()};
    const double watson = regression.GetDurbinWatson();

    regression.SetRecords(Component::AllRecords);
    EXPECT_FALSE(regression.Loaded());
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    const std::vector<double> all = figuresOf(regression);
    ASSERT_EQ(all.size(), first.size());
    for (std::size_t i = 0; i < all.size(); ++i)
        EXPECT_NEAR(all[i], first[i], std::fabs(first[i]) * 1e-14) << i;
    for (std::size_t i = 0; i < spread.size(); ++i) {
        const double mean = spread[i / 2 * 2];
        EXPECT_NEAR(spreadOf(regression)[i], spread[i], std::fabs(spread[i]) * 1e-12 + std::fabs(mean) * 1e-15) << i;
    }
    EXPECT_EQ(observe(), observed);
    EXPECT_EQ((std::array<qint64, 4>{regression.RecordsRead(), regression.RecordsUsed(), regression.RecordsSkipped(),
                                     regression.DegreesOfFreedom()}),
              counts);
    const std::vector<nuvo::LeftOut> leftOfAll = regression.LeftOut();
    for (std::size_t j = 0; j < left.size(); ++j) {
        // A null below the line is no obstacle for the first records.
        if (j == 0 || regression.GetcVar(int(j)).Transformation() != u"Quotient") {
            EXPECT_EQ(leftOfAll[j], left[j]) << j;
        }
    }
    EXPECT_NEAR(regression.GetDurbinWatson(), watson, 1e-12);
}

std::vector<Row> someRecords(int count, double nulls)
{
    std::mt19937 random(20261122);
    std::normal_distribution<double> normal;
    std::uniform_real_distribution<double> uniform;
    std::vector<Row> rows;
    for (int i = 0; i < count; ++i) {
        const double a = 5 + normal(random);
        const double b = std::fabs(normal(random)) + 0.1;
        Row row{3 + 2 * a - b + normal(random), a, b, double(i % 13) + 1, 1e8 + normal(random)};
        for (std::optional<double> &cell : row) {
            if (uniform(random) < nulls)
                cell = null;
        }
        rows.push_back(row);
    }
    return rows;
}

} // namespace

TEST_F(Every, BelowTheLimitTheFiguresAreThoseOfTheFirstRecords)
{
    for (const int count : {12, 900, 2499, 2500}) {
        SCOPED_TRACE(count);
        const QByteArray table = QByteArray("t") + QByteArray::number(count);
        makeTable(*db, table, "y a b c d", someRecords(count, count == 2500 ? 0 : 0.05));
        regression.Close();
        regression.SetRecords(TMLRTable::FirstRecords);
        bind(regression, *db, table);
        define(regression, "a b c d");
        expectTheSame(regression);
    }
}

TEST_F(Every, TransformedTermsToo)
{
    std::vector<Row> rows = someRecords(1500, 0.03);
    fill("y a b c d", rows);
    regression.SetResponse(response("Scale", "y", "3"));
    regression.SetControl(1, control("Log", "b"));
    regression.SetControl(2, control("Inverse", "a"));
    regression.SetControl(4, control("Sqrt", "c"));
    regression.SetControl(5, power("a", "3"));
    regression.SetControl(6, power("a", "2"));
    regression.SetControl(7, scaled("Scale", "d", "1000"));
    regression.SetControl(8, control("Product", "a", "b"));
    regression.SetControl(9, control("Quotient", "b", "c"));
    expectTheSame(regression);
}

TEST_F(EveryOfAQuery, OfAQueryWithAParameterToo)
{
    fill("y a b c d", someRecords(700, 0.1));
    regression.SetSQL(text("SELECT y, a, b AS beta FROM data WHERE id > :least"));
    regression.SetParam(text("least"), 20);
    regression.Open();
    define(regression, "a beta");
    expectTheSame(regression);
}

TEST_F(Every, AFilterCountsWhereItIsUsed)
{
    fill("y a b c d", someRecords(700, 0));
    define(regression, "a");
    regression.SetRecords(TMLRTable::AllRecords);
    regression.SetFilter(text("c > 5"));
    ASSERT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.RecordsUsed(), 700);
    regression.SetFiltered(true);
    regression.Open();
    ASSERT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.RecordsUsed(), db->value(text("SELECT count(*) FROM data WHERE c > 5")).toInt());
}

TEST_F(Every, LargeTablesHaveTheirExactFigures)
{
    std::mt19937_64 random(4);
    std::normal_distribution<double> normal;
    std::vector<std::vector<double>> x(2);
    std::vector<double> y;
    fill("y a b", 60000, [&](int i) {
        x[0].push_back(3 + normal(random));
        x[1].push_back(1e-4 * double(i) + x[0].back());
        y.push_back(4 - x[0].back() + 0.5 * x[1].back() + normal(random));
        return Row{y.back(), x[0].back(), x[1].back()};
    });
    define(regression, "a b");
    regression.SetRecords(TMLRTable::AllRecords);
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    expectDigits(regression, BigFit(x, y), 14.5);
}

TEST_F(Every, OffsetsAndWholeNumbersBeyondFiftyThreeBitsKeepTheirDigits)
{
    std::mt19937_64 random(4);
    std::normal_distribution<double> normal;
    std::vector<std::vector<double>> x(3);
    std::vector<double> y;
    constexpr int count = 60000;
    fill("y a b c", count, [&](int i) {
        const double a = 1e8 + normal(random);  // a deviation of 1 around 1e8
        const double b = double(random() >> 1); // whole numbers beyond 2^53
        const double c = i % 3 == 0 ? 0.1 : 1e-3 * double(i);
        const double value = 4 + 2 * a - 1e-18 * b + c + normal(random);
        Row row{value, a, b, c};
        if (i % 5 == 0)
            row[std::size_t(i / 5 % 4)] = null;
        if (i % 5 != 0) {
            y.push_back(value);
            x[0].push_back(a);
            x[1].push_back(b);
            x[2].push_back(c);
        }
        return row;
    });
    define(regression, "a b c");
    regression.SetRecords(TMLRTable::AllRecords);
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_EQ(regression.RecordsRead(), count);
    EXPECT_EQ(regression.RecordsUsed(), qint64(y.size()));
    EXPECT_EQ(regression.RecordsSkipped(), count / 5);
    EXPECT_EQ(regression.GetNumObs(), int(y.size()));
    EXPECT_EQ(regression.DegreesOfFreedom(), qint64(y.size()) - 4);
    EXPECT_EQ(regression.GetDOF(), 32767);
    EXPECT_EQ(regression.RecordsTotal(), count);
    expectDigits(regression, BigFit(x, y), 12);
    EXPECT_TRUE(messages.shown.empty());
    for (const nuvo::LeftOut &one : regression.LeftOut())
        EXPECT_EQ(one.null, count / 20) << one.term.toStdString();
}

TEST_F(Every, SingleObservationsAreASampleOfAllRecords)
{
    fill("y a", 20000, [](int i) {
        return Row{i % 10 == 0 ? Row::value_type(null) : double(i % 977), double(i % 7) + 1e-5 * double(i)};
    });
    define(regression, "a");
    regression.SetRecords(TMLRTable::AllRecords);
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_EQ(regression.RecordsUsed(), 18000);
    ASSERT_EQ(regression.SampleSize(), 2500);
    std::vector<int> tenths(10);
    for (int i = 1; i <= 2500; ++i) {
        const qint64 record = regression.GetRecord(i);
        EXPECT_TRUE(i == 1 || record > regression.GetRecord(i - 1));
        EXPECT_EQ(regression.Gety(i), double(record % 977));
        EXPECT_EQ(regression.Getx(i, 1), double(record % 7) + 1e-5 * double(record));
        EXPECT_NEAR(regression.GetyHat(i), regression.Getb(0) + regression.Getb(1) * regression.Getx(i, 1), 1e-9);
        EXPECT_EQ(regression.Gete(i), regression.Gety(i) - regression.GetyHat(i));
        ++tenths[std::size_t((record - 1) / 2000)];
    }
    for (const int tenth : tenths)
        EXPECT_NEAR(tenth, 250, 80);
    // Influence is that of each on the fit of all, the tests are those of the sample's own fit.
    EXPECT_LT(regression.GetLeverage(1), 0.001);
    EXPECT_FALSE(std::isnan(regression.GetBreuschPagan().pValue));
    EXPECT_EQ(regression.CurrentFit()->n(), 18000);
    EXPECT_EQ(regression.CurrentFit()->observations().n(), 2500);
    // The same records give the same sample.
    const qint64 first = regression.GetRecord(1);
    ASSERT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetRecord(1), first);
}

TEST_F(Every, TheDatasetStaysWhereItIs)
{
    fill("y a b c d", someRecords(100, 0));
    define(regression, "a");
    regression.SetRecords(TMLRTable::AllRecords);
    regression.MoveBy(41);
    ASSERT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.RecNo(), 42);
}

TEST_F(Every, RecordsWrittenSinceTheDatasetWasOpenedAreRead)
{
    fill("y a b c d", someRecords(100, 0));
    define(regression, "a");
    regression.SetRecords(TMLRTable::AllRecords);
    db->exec(text("INSERT INTO data (y, a) VALUES (1, 2)"));
    ASSERT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.RecordsUsed(), 101);
}

TEST_F(Every, AnEmptyTableAndOneWithoutAUsableRecordAreNotLoaded)
{
    fill("y a", std::vector<Row>{});
    define(regression, "a");
    regression.SetRecords(TMLRTable::AllRecords);
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(messages.shown, std::vector<Message>{dofMessage()});
    EXPECT_EQ(regression.RecordsRead(), 0);
    EXPECT_EQ(regression.SampleSize(), 0);

    messages.shown.clear();
    makeTable(*db, "nulls", "y a", std::vector<Row>(5000, Row{1.0, null}));
    regression.SetTableName(text("nulls"));
    regression.Open();
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(messages.shown, std::vector<Message>{dofMessage()});
    EXPECT_EQ(regression.RecordsRead(), 5000);
    EXPECT_EQ(regression.RecordsUsed(), 0);
    EXPECT_EQ(regression.LeftOut()[1].null, 5000);
}

TEST_F(Every, AColumnThatDoesNotVaryIsSaidSo)
{
    fill("y a", 6000, [](int i) { return Row{double(i), 4.0}; });
    define(regression, "a");
    regression.SetRecords(TMLRTable::AllRecords);
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(messages.shown, std::vector<Message>{invariantMessage()});
}

TEST_F(Every, ARecordFarFromTheSampleMakesAColumnVary)
{
    fill("y a", 6000, [](int i) { return Row{double(i % 5), i == 5999 ? 5.0 : 4.0}; });
    define(regression, "a");
    regression.SetRecords(TMLRTable::AllRecords);
    ASSERT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetxMax(1), 5);
    EXPECT_EQ(regression.GetxMin(1), 4);
}

TEST_F(Every, AQuotientByNullOrZeroIsLeftOut)
{
    fill("y a b", 3000, [](int i) {
        return Row{double(i % 17), double(i % 5) + 1,
                   i == 10   ? Row::value_type(null)
                   : i == 20 ? 0.0
                   : i == 30 ? 1e-21
                             : double(i % 9) + 1};
    });
    regression.SetResponse(response("None", "y"));
    regression.SetControl(1, control("Quotient", "a", "b"));
    regression.SetRecords(TMLRTable::AllRecords);
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_EQ(regression.RecordsUsed(), 2997);
    const nuvo::LeftOut left = regression.LeftOut()[1];
    EXPECT_EQ(left.null, 1);
    EXPECT_EQ(left.invalid, 2);
    EXPECT_EQ(left.first, (std::vector<qint64>{10, 20, 30}));
    EXPECT_TRUE(std::isfinite(regression.GetRSquared()));
}

TEST_F(Every, WhatALoadRaisesIsRaisedInItsWords)
{
    db->exec(text("CREATE TABLE texts (id INTEGER PRIMARY KEY, y DOUBLE PRECISION, a DOUBLE PRECISION, t TEXT)"));
    db->exec(text("INSERT INTO texts VALUES (1, 1, 2, '3'), (2, 2, NULL, 'word'), (3, 4, 7, '5.5'), (4, 3, 1, 'x')"));
    bind(regression, *db, "texts");
    regression.SetResponse(response("None", "y"));
    const std::vector<std::vector<TIndepVar>> models{{control("None", "a"), control("None", "t")},
                                                     {control("None", "t"), control("None", "a")},
                                                     {control("Log", "t"), control("None", "a")},
                                                     {control("None", "a"), control("Log", "t")},
                                                     {control("None", "nothing")},
                                                     {control("None", "a"), power("a", "much")},
                                                     {scaled("Scale", "a", "some")},
                                                     {control("Product", "a", "t")}};
    for (const std::vector<TIndepVar> &model : models) {
        QStringList errors;
        for (const auto records : {TMLRTable::FirstRecords, TMLRTable::AllRecords}) {
            regression.SetRecords(records);
            regression.SetControl(2, TIndepVar());
            for (std::size_t k = 0; k < model.size(); ++k)
                regression.SetControl(int(k) + 1, model[k]);
            errors += errorOf([&] { regression.ReLoad(); });
            EXPECT_FALSE(regression.Loaded());
        }
        EXPECT_FALSE(errors[0].isEmpty());
        EXPECT_EQ(errors[0], errors[1]);
    }
}

TEST_F(Every, ADatasetThatWasNeverToBeOpenRaises)
{
    fill("y a", 10, numbered);
    define(regression, "a");
    regression.SetRecords(TMLRTable::AllRecords);
    regression.Close();
    EXPECT_EQ(errorOf([&] { regression.ReLoad(); }), text("Table \"data\" is closed."));
}

TEST_F(Every, ARegisteredConnectionIsReadBeside)
{
    fill("y a b c d", someRecords(3000, 0));
    QSqlDatabase mine = QSqlDatabase::addDatabase(text("QSQLITE"), text("mine"));
    mine.setDatabaseName(db->name());
    ASSERT_TRUE(mine.open());
    regression.SetDatabaseName(text("mine"));
    regression.Open();
    define(regression, "a b");
    regression.SetRecords(TMLRTable::AllRecords);
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.RecordsUsed(), 3000);
    regression.Close();
    EXPECT_TRUE(QSqlDatabase::connectionNames().filter(text("nuvo-")).isEmpty());

    QSqlDatabase memory = QSqlDatabase::addDatabase(text("QSQLITE"), text("memory"));
    memory.setDatabaseName(text(":memory:"));
    ASSERT_TRUE(memory.open());
    QSqlQuery(memory).exec(text("CREATE TABLE data (y DOUBLE, a DOUBLE, b DOUBLE)"));
    regression.SetDatabaseName(text("memory"));
    regression.Open();
    EXPECT_EQ(errorOf([&] { regression.ReLoad(); }),
              text("The registered connection \"memory\" has its database in memory, which no other connection can "
                   "read beside it."));
    regression.Close();
}

TEST_F(Every, ValuesOutOfTheOrdinaryKeepTheirDigits)
{
    std::mt19937_64 random(9);
    std::normal_distribution<double> normal;
    fill("y a b", 2000, [&](int) {
        const double a = normal(random);
        const double b = normal(random);
        return Row{1e140 * (1 + a - b + normal(random)), 1e110 * a, b};
    });
    define(regression, "a b");
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    const double r = regression.GetRSquared();
    const double b1 = regression.Getb(1);
    const double error = regression.GetStdErr(2);
    regression.SetRecords(TMLRTable::AllRecords);
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_NEAR(regression.GetRSquared(), r, 1e-14);
    EXPECT_NEAR(regression.Getb(1) / b1, 1, 1e-13);
    EXPECT_NEAR(regression.GetStdErr(2) / error, 1, 1e-13);
}
