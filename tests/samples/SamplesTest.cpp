// SPDX-License-Identifier: MIT
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

#include <gtest/gtest.h>

namespace {

/// The sample database that the build made, opened for reading.
class Samples : public testing::Test
{
protected:
    void SetUp() override
    {
        database_ = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("samples"));
        database_.setDatabaseName(QStringLiteral(SAMPLES_DB));
        database_.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        ASSERT_TRUE(database_.open()) << qPrintable(database_.lastError().text());
    }

    void TearDown() override
    {
        database_ = {};
        QSqlDatabase::removeDatabase(QStringLiteral("samples"));
    }

    /// The one record of a statement, as numbers.
    std::vector<double> Numbers(const char *statement) const
    {
        QSqlQuery query(database_);
        if (!query.exec(QString::fromLatin1(statement)) || !query.next()) {
            ADD_FAILURE() << statement << ": " << qPrintable(query.lastError().text());
            return {};
        }
        std::vector<double> numbers;
        for (int column = 0; column < query.record().count(); ++column)
            numbers.push_back(query.value(column).toDouble());
        return numbers;
    }

    QSqlDatabase database_;
};

using Figures = std::vector<double>;

} // namespace

TEST_F(Samples, HoldFourTables)
{
    QStringList tables = database_.tables();
    tables.sort();
    EXPECT_EQ(tables.join(u' '), QStringLiteral("Airquality Fdistribution Longley States"));
}

TEST_F(Samples, LongleyHasSixteenYearsAndTheSumsOfThePublishedColumns)
{
    const Figures sums =
        Numbers("SELECT count(*), round(sum(GNPDEFL), 9), sum(GNP), sum(UNEMP), sum(ARMED), sum(POP), "
                "sum(YEAR), sum(TOTEMP) FROM Longley");
    EXPECT_EQ(sums, Figures({16, 1626.9, 6203175, 51093, 41707, 1878784, 31272, 1045072}));
}

TEST_F(Samples, AirqualityMissesOzoneOn37DaysAndRadiationOn7)
{
    const Figures sums = Numbers("SELECT count(*), sum(Ozone IS NULL), sum(Radiation IS NULL), sum(Ozone), "
                                 "sum(Radiation), round(sum(Wind), 9), sum(Temp) FROM Airquality");
    EXPECT_EQ(sums, Figures({153, 37, 7, 4887, 27146, 1523.5, 11916}));
}

TEST_F(Samples, AirqualityRunsFromTheFirstOfMayToTheLastOfSeptember)
{
    const Figures days = Numbers("SELECT min(Day) = '1973-05-01', max(Day) = '1973-09-30', "
                                 "julianday(max(Day)) - julianday(min(Day)) + 1 FROM Airquality");
    EXPECT_EQ(days, Figures({1, 1, 153}));
}

TEST_F(Samples, StatesHaveTheirSumsAndTwoColumnsOfText)
{
    const Figures sums = Numbers(
        "SELECT count(*), sum(Population), sum(Income), round(sum(Illiteracy), 9), round(sum(\"Life expectancy\"), "
        "9), "
        "round(sum(Murder), 9), round(sum(\"High school\"), 9), sum(Frost), sum(Area), count(DISTINCT Region), "
        "count(DISTINCT Division) FROM States");
    EXPECT_EQ(sums, Figures({50, 212321, 221790, 58.5, 3543.93, 368.9, 2655.4, 5223, 3536794, 4, 9}));
}

TEST_F(Samples, TheFDistributionHasItsPublishedValuesForOneAndTenDegreesOfFreedom)
{
    EXPECT_EQ(Numbers("SELECT count(*), max(Numerator), max(Denominator) FROM Fdistribution"),
              Figures({25000, 10, 2500}));
    EXPECT_EQ(Numbers("SELECT round(\"1 Percent\", 2), round(\"5 Percent\", 2), round(\"10 Percent\", 2), "
                      "round(\"95 Percent\", 2) FROM Fdistribution WHERE Numerator = 1 AND Denominator = 10"),
              Figures({10.04, 4.96, 3.29, 4.96}));
}
