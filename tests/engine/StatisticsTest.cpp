// SPDX-License-Identifier: MIT
#include "engine/kernel/Leastsquares.h"
#include "support/Regressions.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace {

using Statistics = RegressionOver<TMLRTable>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// The same figures by another road.
LeastSquares secondRoad(const TRegression &regression)
{
    std::vector<std::vector<double>> columns(regression.GetNumVars() + 1);
    for (int i = 1; i <= regression.GetNumObs(); ++i) {
        for (int j = 1; j <= regression.GetNumVars(); ++j)
            columns[j - 1].push_back(regression.Getx(i, j));
        columns.back().push_back(regression.Gety(i));
    }
    return leastSquares(columns);
}

struct Shape
{
    int n;
    int m;
    unsigned seed;
};

void PrintTo(const Shape &shape, std::ostream *out)
{
    *out << shape.n << 'x' << shape.m;
}

class RandomData : public RegressionOver<TMLRTable>, public testing::WithParamInterface<Shape>
{
protected:
    RandomData()
    {
        const auto [n, m, seed] = GetParam();
        std::mt19937_64 random(seed);
        std::uniform_real_distribution<double> spread(-5, 5);
        std::normal_distribution<double> noise(0, 3);
        const char *const columns[] = {"y",
                                       "y a",
                                       "y a b",
                                       "y a b c",
                                       "y a b c d",
                                       "y a b c d e",
                                       "y a b c d e f",
                                       "y a b c d e f g",
                                       "y a b c d e f g h",
                                       "y a b c d e f g h i",
                                       "y a b c d e f g h i j"};
        fill(columns[m], n, [&, m = m](int) {
            Row row(1);
            double y = 7 + noise(random);
            for (int j = 1; j <= m; ++j) {
                const double x = spread(random) * j + 10 * j;
                y += (j % 3 - 1.25) * x;
                row.push_back(x);
            }
            row[0] = y;
            return row;
        });
        define(regression, columns[m] + 1);
        EXPECT_TRUE(regression.ReLoad());
        regression.Execute();
    }
};

INSTANTIATE_TEST_SUITE_P(Of, RandomData,
                         testing::Values(Shape{5, 1, 1}, Shape{30, 3, 2}, Shape{13, 10, 3}, Shape{200, 5, 4},
                                         Shape{1000, 2, 5}, Shape{2500, 10, 6}, Shape{20, 0, 7}),
                         [](const auto &each) {
                             return std::to_string(each.param.n) + "By" + std::to_string(each.param.m);
                         });

} // namespace

// Beside an independent computation.

TEST_P(RandomData, CoefficientsAndSumsAgreeWithAnotherRoad)
{
    const LeastSquares road = secondRoad(regression);
    for (int j = 0; j <= road.m; ++j)
        EXPECT_NEAR(regression.Getb(j) / double(road.b[j]), 1, 1e-12) << j;
    EXPECT_NEAR(regression.GetSSE() / double(road.sse), 1, 1e-13);
    EXPECT_NEAR(regression.GetSST() / double(road.sst), 1, 1e-13);
    EXPECT_NEAR(regression.GetMSE() / double(road.mse()), 1, 1e-13);
    EXPECT_NEAR(regression.GetSyx() / double(std::sqrt(road.mse())), 1, 1e-13);
    if (road.m == 0) {
        EXPECT_NEAR(regression.GetSSR() / double(road.sst), 0, 1e-13);
        EXPECT_FALSE(std::isfinite(regression.GetF()));
        return;
    }
    EXPECT_NEAR(regression.GetSSR() / double(road.ssr), 1, 1e-13);
    EXPECT_NEAR(regression.GetRSquared() / double(road.ssr / road.sst), 1, 1e-13);
    EXPECT_NEAR(regression.GetF() / double(road.ssr / road.m / road.mse()), 1, 1e-12);
}

TEST_P(RandomData, CovariancesAndCorrelationsAgreeWithAnotherRoad)
{
    const LeastSquares road = secondRoad(regression);
    for (int i = 0; i <= road.m; ++i) {
        for (int j = 0; j <= road.m; ++j) {
            const long double scale = std::sqrt(road.inverse[i][i] * road.inverse[j][j]);
            EXPECT_NEAR(regression.GetCovar(i, j) / double(scale * road.mse()), double(road.inverse[i][j] / scale),
                        1e-12)
                << i << ' ' << j;
            EXPECT_NEAR(regression.GetCorr(i, j), double(road.inverse[i][j] / scale), 1e-12) << i << ' ' << j;
            EXPECT_EQ(regression.GetCovar(i, j), regression.GetCovar(j, i));
        }
        EXPECT_NEAR(regression.GetCorr(i, i), 1, 1e-15) << i;
    }
}

TEST_P(RandomData, MeansAndDeviationsAreThoseOfTheWrittenLoopsToTheLastBit)
{
    const int n = regression.GetNumObs();
    const auto mean = [n](const std::vector<double> &values) {
        double sum = 0;
        for (const double value : values)
            sum += value / n;
        return sum;
    };
    const auto deviation = [n](const std::vector<double> &values, double center) {
        double sum = 0;
        for (const double value : values)
            sum += (value - center) * (value - center) / (n - 1);
        return std::sqrt(sum);
    };
    EXPECT_EQ(regression.GetyBar(), mean(y()));
    EXPECT_EQ(regression.GetyStdErr(), deviation(y(), regression.GetyBar()));
    for (int j = 1; j <= regression.GetNumVars(); ++j) {
        const std::vector<double> x = column(j);
        EXPECT_EQ(regression.GetxBar(j), mean(x)) << j;
        EXPECT_EQ(regression.GetxStdErr(j), deviation(x, regression.GetxBar(j))) << j;
        EXPECT_EQ(regression.GetxMax(j), *std::max_element(x.begin(), x.end())) << j;
        EXPECT_EQ(regression.GetxMin(j), *std::min_element(x.begin(), x.end())) << j;
    }
}

TEST_P(RandomData, FittedValuesArePredictionsToTheLastBit)
{
    const int m = regression.GetNumVars();
    long double sum = 0;
    for (int i = 1; i <= regression.GetNumObs(); ++i) {
        double values[MaxParameters] = {};
        for (int j = 1; j <= m; ++j)
            values[j] = regression.Getx(i, j);
        ASSERT_EQ(regression.GetyHat(i), regression.Predict(values, m)) << i;
        ASSERT_EQ(regression.Gete(i), regression.Gety(i) - regression.GetyHat(i)) << i;
        sum += static_cast<long double>(regression.Gete(i)) * regression.Gete(i);
    }
    EXPECT_NEAR(double(sum) / regression.GetSSE(), 1, 1e-10) << "SSE is the squares of the residuals";
}

TEST_P(RandomData, WhatIsDerivedFollowsFromItsParts)
{
    const int n = regression.GetNumObs();
    const int m = regression.GetNumVars();
    EXPECT_EQ(regression.GetSST(), regression.GetSSE() + regression.GetSSR());
    EXPECT_EQ(regression.GetMSE(), regression.GetSSE() / (n - (m + 1)));
    EXPECT_EQ(regression.GetSyx(), std::sqrt(regression.GetMSE()));
    EXPECT_EQ(regression.GetRSquared(), regression.GetSSR() / regression.GetSST());
    if (m > 0) {
        EXPECT_EQ(regression.GetF(), (regression.GetSSR() / m) / (regression.GetSSE() / (n - (m + 1))));
    }
    for (int i = 0; i <= m; ++i) {
        for (int j = 0; j <= m; ++j)
            EXPECT_EQ(regression.GetCorr(i, j),
                      regression.GetCovar(i, j) / std::sqrt(regression.GetCovar(i, i) * regression.GetCovar(j, j)));
    }
}

TEST_P(RandomData, TSquaredIsTheFOfLeavingTheColumnOut)
{
    const int m = regression.GetNumVars();
    const double sse = regression.GetSSE();
    const double mse = regression.GetMSE();
    std::vector<double> tSquared(1);
    for (int j = 1; j <= m; ++j)
        tSquared.push_back(regression.Getb(j) * regression.Getb(j) / regression.GetCovar(j, j));
    for (int j = 1; j <= m; ++j) {
        const TIndepVar left = regression.ControlVar(j);
        regression.SetControl(j, TIndepVar());
        ASSERT_TRUE(regression.ReLoad());
        regression.Execute();
        EXPECT_NEAR((regression.GetSSE() - sse) / mse / tSquared[j], 1, 1e-9) << j;
        regression.SetControl(j, left);
    }
}

// Figures known beforehand.

TEST_F(Statistics, APlaneIsFoundExactly)
{
    fill("y a b", {{2 + 3 - 1, 1, 1}, {2 + 6 - 5, 2, 5}, {2 + 9 - 2, 3, 2}, {2 + 15 - 4, 5, 4}, {2 + 21 - 9, 7, 9}});
    define(regression, "a b");
    EXPECT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_NEAR(regression.Getb(0), 2, 1e-14);
    EXPECT_NEAR(regression.Getb(1), 3, 1e-14);
    EXPECT_NEAR(regression.Getb(2), -1, 1e-14);
    EXPECT_NEAR(regression.GetSSE(), 0, 1e-20);
    EXPECT_GE(regression.GetSSE(), 0);
    EXPECT_NEAR(regression.GetRSquared(), 1, 1e-15);
    EXPECT_FALSE(std::isnan(regression.GetSyx()));
    for (int i = 1; i <= 5; ++i)
        EXPECT_NEAR(regression.Gete(i), 0, 1e-13) << i;
}

TEST_F(Statistics, ExactFitsNeverHaveANegativeSumOfSquares)
{
    std::mt19937_64 random(11);
    std::uniform_int_distribution<int> whole(-50, 50);
    for (int set = 0; set < 20; ++set) {
        std::vector<Row> rows;
        for (int i = 0; i < 12; ++i) {
            const double a = whole(random);
            const double b = whole(random);
            rows.push_back({7 - 0.25 * a + 1.5 * b, a, b});
        }
        db->exec(text("DROP TABLE IF EXISTS data"));
        makeTable(*db, "data", "y a b", rows);
        regression.SetTableName(QString());
        bind(regression, *db, "data");
        define(regression, "a b");
        ASSERT_TRUE(regression.ReLoad());
        regression.Execute();
        EXPECT_GE(regression.GetSSE(), 0) << set;
        EXPECT_LT(regression.GetSSE(), 1e-20) << set;
        EXPECT_NEAR(regression.GetRSquared(), 1, 1e-15) << set;
        EXPECT_FALSE(std::isnan(regression.GetSyx())) << set;
    }
}

TEST_F(Statistics, TheConstantAloneIsTheMean)
{
    fill("y", {{1.5}, {2}, {7}, {9.25}});
    regression.SetResponse(response("None", "y"));
    EXPECT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_DOUBLE_EQ(regression.Getb(0), regression.GetyBar());
    EXPECT_NEAR(regression.GetSSR(), 0, 1e-13);
    EXPECT_DOUBLE_EQ(regression.GetSST(), regression.GetSSE());
    EXPECT_NEAR(regression.GetRSquared(), 0, 1e-14);
    EXPECT_FALSE(std::isfinite(regression.GetF())) << "a division by m = 0";
    EXPECT_DOUBLE_EQ(regression.GetSyx(), regression.GetyStdErr());
    EXPECT_EQ(regression.GetCorr(0, 0), 1);
}

TEST_F(Statistics, DeviationsAreDividedByOneLessThanTheCount)
{
    fill("y a", {{1, 1}, {2, 2}, {3, 3}, {4, 5}});
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_EQ(regression.GetxBar(1), 2.75);
    EXPECT_DOUBLE_EQ(regression.GetxStdErr(1), std::sqrt(8.75 / 3));
    EXPECT_EQ(regression.GetyBar(), 2.5);
    EXPECT_DOUBLE_EQ(regression.GetyStdErr(), std::sqrt(5.0 / 3));
    EXPECT_DOUBLE_EQ(regression.Getb(1), 26.0 / 35);
    EXPECT_DOUBLE_EQ(regression.Getb(0), 16.0 / 35);
    EXPECT_DOUBLE_EQ(regression.GetSSE(), 6.0 / 35);
    EXPECT_DOUBLE_EQ(regression.GetSSR(), 169.0 / 35);
    EXPECT_DOUBLE_EQ(regression.GetF(), 169.0 / 3);
    EXPECT_DOUBLE_EQ(regression.GetCovar(0, 0), 3.0 / 35 * 39 / 35) << "the variance of the constant";
    EXPECT_DOUBLE_EQ(regression.GetCovar(1, 1), 3.0 / 35 * 4 / 35);
    EXPECT_DOUBLE_EQ(regression.GetCovar(0, 1), -3.0 / 35 * 11 / 35);
}

TEST_F(Statistics, AResponseOfZerosKeepsThePreviousRSquared)
{
    fill("y a", {{1, 1}, {2, 2}, {3, 3}, {4, 5}});
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    regression.Execute();
    const double before = regression.GetRSquared();
    EXPECT_NEAR(before, 169.0 / 175, 1e-15);
    db->exec(text("UPDATE data SET y = 0"));
    regression.Refresh();
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(regression.GetRSquared(), before);
    regression.ComputeMaxAndMinY();
    regression.ComputeMaxAndMinX();
    regression.ComputeyBar();
    regression.ComputebVector();
    EXPECT_EQ(regression.GetSST(), 0);
    EXPECT_EQ(regression.GetRSquared(), before);
    EXPECT_EQ(regression.Getb(1), 0);
}

TEST_F(Statistics, AsManyRecordsAsParametersDivideByZeroSilently)
{
    fill("y a", {{1, 3}, {2, 8}});
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_NO_THROW(regression.Execute());
    EXPECT_DOUBLE_EQ(regression.Getb(1), 0.2);
    EXPECT_DOUBLE_EQ(regression.Getb(0), 0.4);
    EXPECT_NEAR(regression.GetSSE(), 0, 1e-25);
    EXPECT_FALSE(std::isfinite(regression.GetMSE()));
    EXPECT_FALSE(std::isfinite(regression.GetSyx()));
    EXPECT_FALSE(std::isfinite(regression.GetCovar(0, 0)));
    EXPECT_FALSE(std::isfinite(regression.GetCovar(0, 1)));
    EXPECT_TRUE(std::isnan(regression.GetCorr(0, 1)));
    EXPECT_FALSE(regression.GetF() > 0 && std::isfinite(regression.GetF()));
    EXPECT_NEAR(regression.GetRSquared(), 1, 1e-15);
    EXPECT_EQ(messages.shown, std::vector<Message>());
}

TEST_F(Statistics, FewerRecordsThanParametersGiveFiguresWithoutMeaningAndNoError)
{
    fill("y a b c", {{1, 3, 5, 2}, {2, 8, 1, 1}});
    define(regression, "a b c");
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_NO_THROW(regression.Execute());
    (void)regression.GetF();
    EXPECT_FALSE(regression.DependentColumns().empty());
}

TEST_F(Statistics, OneObservationDividesByZero)
{
    fill("y a", {{3, 5}});
    define(regression, "a");
    EXPECT_FALSE(regression.ReLoad()) << "one record does not vary";
    regression.ComputexStdErr();
    regression.ComputeyBar();
    regression.ComputeyStdErr();
    EXPECT_EQ(regression.GetyBar(), 3);
    EXPECT_TRUE(std::isnan(regression.GetyStdErr())) << "0 / 0";
    EXPECT_FALSE(std::isfinite(regression.GetxStdErr(1)));
}

TEST_F(Statistics, MeansLoadWhereThatWasNotDone)
{
    fill("y a", {{1, 1}, {2, 2}, {3, 3}, {4, 5}});
    define(regression, "a");
    regression.ComputexBar();
    EXPECT_TRUE(regression.Loaded());
    EXPECT_EQ(regression.GetNumObs(), 4);
    EXPECT_EQ(regression.GetxBar(1), 2.75);
    db->exec(text("UPDATE data SET y = NULL"));
    regression.Refresh();
    regression.ComputexBar();
    EXPECT_EQ(regression.GetNumObs(), 4) << "loaded already";
    regression.SetControl(1, control("None", "a"));
    regression.ComputexBar();
    EXPECT_FALSE(regression.Loaded());
    EXPECT_EQ(regression.GetNumObs(), 0);
    EXPECT_EQ(regression.GetxBar(1), 0) << "a sum of nothing";
}

TEST_F(Statistics, ExecuteDoesNotComputeWhatTheAccessorsCompute)
{
    fill("y a", {{1, 1}, {2, 2}, {3, 3}, {4, 5}});
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    regression.Execute();
    const double f = regression.GetF();
    const double rSquared = regression.GetRSquared();
    regression.ComputeSST();
    regression.ComputeRSquared();
    regression.ComputeSyx();
    regression.ComputeF();
    EXPECT_EQ(regression.GetF(), f);
    EXPECT_EQ(regression.GetRSquared(), rSquared);
}

TEST_F(Statistics, SyxIsOfTheMeanSquareAsLastStored)
{
    fill("y a", {{1, 1}, {2, 2}, {3, 3}, {4, 5}});
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetSyx(), 0) << "nothing has been computed yet";
    regression.Execute();
    EXPECT_DOUBLE_EQ(regression.GetSyx(), std::sqrt(3.0 / 35));
}

// The ends of the range of doubles.

TEST_F(Statistics, LargeNumbersKeepTheirDigits)
{
    const double big = 1e150;
    fill("y a b", {{1 * big, 1 * big, 2}, {2 * big, 2 * big, 5}, {3 * big, 3 * big, 1}, {4 * big, 5 * big, 4}});
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_NEAR(regression.Getb(1), 26.0 / 35, 1e-13);
    EXPECT_NEAR(regression.Getb(0) / big, 16.0 / 35, 1e-13);
    EXPECT_NEAR(regression.GetxStdErr(1) / big, std::sqrt(8.75 / 3), 1e-13);
    EXPECT_NEAR(regression.GetRSquared(), 169.0 / 175, 1e-12);
    EXPECT_NEAR(regression.GetF(), 169.0 / 3, 1e-9);
    EXPECT_NEAR(regression.GetSyx() / big, std::sqrt(3.0 / 35), 1e-12);
    EXPECT_NEAR(regression.GetCorr(0, 1), -11 / std::sqrt(39.0 * 4), 1e-12);
}

TEST_F(Statistics, SmallAndLargeNumbersMix)
{
    // The response varies above the tolerance, its squares are far below it.
    const double big = 1e150;
    const double small = 1e-18;
    fill("y a", {{1 * small, 1 * big}, {2 * small, 2 * big}, {3 * small, 3 * big}, {4 * small, 5 * big}});
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_NEAR(regression.Getb(1) / small * big, 26.0 / 35, 1e-13);
    EXPECT_NEAR(regression.Getb(0) / small, 16.0 / 35, 1e-13);
    EXPECT_NEAR(regression.GetRSquared(), 169.0 / 175, 1e-12);
}

TEST_F(Statistics, NumbersTooSmallForTheToleranceDoNotVary)
{
    fill("y a b", {{1, 1e-150, 1}, {2, 2e-150, 2e-150}, {3, 3e-150, 3}});
    define(regression, "a");
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(messages.shown, std::vector<Message>{invariantMessage()});
    define(regression, "b");
    EXPECT_TRUE(regression.ReLoad());
}

TEST_F(Statistics, SquaresBeyondTheRangeOfDoublesFitLikeAnyOther)
{
    const double big = 1e200;
    fill("y a b", {{1, 1 * big, 1 * big}, {2, 2 * big, 2 * big}, {3, 3 * big, 3 * big}, {4, -5 * big, 4 * big}});
    const double rSquared = 8.5 * 8.5 / (38.75 * 5);
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_NEAR(regression.Getb(1) * big, -8.5 / 38.75, 1e-14);
    EXPECT_NEAR(regression.GetxStdErr(1) / big, std::sqrt(38.75 / 3), 1e-14);
    EXPECT_NEAR(regression.GetRSquared(), rSquared, 1e-14);
    EXPECT_NEAR(regression.GetF(), 2 * rSquared / (1 - rSquared), 1e-13);
    EXPECT_EQ(regression.GetCovar(1, 1), 0) << "too small for a double, but";
    EXPECT_NEAR(regression.GetStdErr(1) * big, std::sqrt(5 * (1 - rSquared) / 2 / 38.75), 1e-14);
    EXPECT_NEAR(regression.GetTValue(1), -std::sqrt(regression.GetF()), 1e-13);
    EXPECT_NEAR(regression.GetCorr(0, 1), -0.25 / std::sqrt(39.0 / 4), 1e-14);

    define(regression, "b", "a");
    EXPECT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_NEAR(regression.Getb(1), -8.5 / 5, 1e-14);
    EXPECT_EQ(regression.GetSSE(), kInfinity) << "too large for a double, but";
    EXPECT_NEAR(regression.GetSyx() / big, std::sqrt(38.75 * (1 - rSquared) / 2), 1e-13);
    EXPECT_NEAR(regression.GetRSquared(), rSquared, 1e-14);
    EXPECT_NEAR(regression.GetF(), 2 * rSquared / (1 - rSquared), 1e-13);
    EXPECT_NEAR(regression.Gete(1) / big, 1 - (0.25 - 1.7 * -1.5), 1e-14);
    EXPECT_EQ(messages.shown, std::vector<Message>());
}

TEST_F(Statistics, StandardErrorsAndTValuesFollowFromTheCovariances)
{
    fill("y a b", 30, [](int i) { return Row{double(i * i % 17), double(i % 7), double(i % 5)}; });
    define(regression, "a b");
    EXPECT_TRUE(regression.ReLoad());
    regression.Execute();
    for (int j = 0; j <= 2; ++j) {
        EXPECT_EQ(regression.GetStdErr(j), std::sqrt(regression.GetCovar(j, j)));
        EXPECT_EQ(regression.GetTValue(j), regression.Getb(j) / std::sqrt(regression.GetCovar(j, j)));
    }
}

TEST_F(Statistics, CorrelationsKeepTheirDigitsWhereProductsOfVariancesLeaveTheRange)
{
    for (const double scale : {1.0, 1e40, 1e60, 1e80, 1e100, 1e140, 1e200, 1e300}) {
        std::vector<Row> rows = {{3, 1, 2}, {5, 2, 0}, {7, 4, 1}, {8, 5, 3}, {12, 7, 4}, {13, 8, 2}};
        for (Row &row : rows)
            row = {row[0], *row[1] * scale, *row[2] * scale};
        db->exec(text("DROP TABLE IF EXISTS data"));
        regression.Close();
        fill("y a b", rows);
        define(regression, "a b");
        EXPECT_TRUE(regression.ReLoad());
        regression.Execute();
        // (X'X)^-1 of the unscaled columns is ((1181, -138, -153), (., 60, -66), (., ., 225)) / 1524.
        EXPECT_NEAR(regression.GetCorr(1, 2), -66 / std::sqrt(60.0 * 225), 1e-13) << scale;
        EXPECT_NEAR(regression.GetCorr(0, 1), -138 / std::sqrt(1181.0 * 60), 1e-13) << scale;
        EXPECT_NEAR(regression.GetCorr(0, 2), -153 / std::sqrt(1181.0 * 225), 1e-13) << scale;
        EXPECT_NEAR(regression.GetCorr(1, 1), 1, 1e-15) << scale;
    }
}

TEST_F(Statistics, DigitsAreFewWhereLargeValuesDifferByLittle)
{
    fill("y a b", 40, [](int i) { return Row{double(i * i % 17), 1e12 + 10 * std::sin(i), 10 * std::sin(i)}; });
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetDigits(), 16) << "of no fit";
    regression.Execute();
    EXPECT_LT(regression.GetDigits(), 6);
    EXPECT_GT(regression.GetDigits(), 2);
    EXPECT_LT(regression.GetDigits(1), 6);
    define(regression, "b");
    EXPECT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_GT(regression.GetDigits(), 14);
    EXPECT_EQ(messages.shown, std::vector<Message>()) << "nobody is disturbed by it";
}
