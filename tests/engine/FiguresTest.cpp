// SPDX-License-Identifier: MIT
#include "engine/kernel/Nist.h"
#include "support/Regressions.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>

// What a fit gives to the last bit, and what the accessors give between a load and the next fit.

namespace {

using Figures = RegressionOver<TMLRTable>;

/// A number that reads back as itself.
std::string written(double value)
{
    if (std::isnan(value))
        return "nan";
    char text[40];
    std::snprintf(text, sizeof text, "%a", value);
    return text;
}

/// Every figure of a load and a fit, one a line.
std::string allFigures(TRegression &regression)
{
    std::ostringstream out;
    const auto line = [&](const std::string &name, double value) { out << name << ' ' << written(value) << '\n'; };
    const auto indexed = [](const char *name, int i) { return name + std::to_string(i); };
    const int n = regression.GetNumObs();
    const int m = regression.GetNumVars();
    line("n", n);
    line("m", m);
    line("dof", regression.GetDOF());
    line("read", double(regression.RecordsRead()));
    line("yBar", regression.GetyBar());
    line("yStdErr", regression.GetyStdErr());
    line("yMax", regression.GetyMax());
    line("yMin", regression.GetyMin());
    for (int j = 1; j <= m; ++j) {
        line(indexed("xBar", j), regression.GetxBar(j));
        line(indexed("xStdErr", j), regression.GetxStdErr(j));
        line(indexed("xMax", j), regression.GetxMax(j));
        line(indexed("xMin", j), regression.GetxMin(j));
    }
    for (int i = 0; i <= m; ++i) {
        line(indexed("b", i), regression.Getb(i));
        for (int j = 0; j <= m; ++j) {
            line(indexed("covar", i) + '_' + std::to_string(j), regression.GetCovar(i, j));
            line(indexed("corr", i) + '_' + std::to_string(j), regression.GetCorr(i, j));
        }
    }
    line("mse", regression.GetMSE());
    line("sse", regression.GetSSE());
    line("ssr", regression.GetSSR());
    line("sst", regression.GetSST());
    line("rSquared", regression.GetRSquared());
    line("syx", regression.GetSyx());
    line("f", regression.GetF());
    for (int i = 1; i <= n; ++i) {
        line(indexed("yHat", i), regression.GetyHat(i));
        line(indexed("e", i), regression.Gete(i));
    }
    for (const int column : regression.DependentColumns())
        line("dependent", column);
    return out.str();
}

void expectStored(TRegression &regression, const std::string &name)
{
    const std::string file = std::string(NUVO_TEST_DATA) + "/figures/" + name + ".txt";
    std::ifstream stream(file);
    ASSERT_TRUE(stream) << file;
    const std::string stored{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_GT(std::count(stored.begin(), stored.end(), '\n'), 40);
    EXPECT_EQ(allFigures(regression), stored);
    EXPECT_EQ(allFigures(regression), stored) << "a second time";
}

/// What an accessor gives for each observation, 1 to n.
template <class Accessor>
std::vector<double> each(int n, Accessor accessor)
{
    std::vector<double> values;
    for (int i = 1; i <= n; ++i)
        values.push_back(accessor(i));
    return values;
}

/// What Execute() leaves beyond the coefficients, up to so many observations and columns.
struct Leftovers
{
    Leftovers(const TRegression &regression, int n, int m)
        : e(each(n, [&](int i) { return regression.Gete(i); })),
          yHat(each(n, [&](int i) { return regression.GetyHat(i); })),
          xBar(each(m, [&](int j) { return regression.GetxBar(j); })),
          xStdErr(each(m, [&](int j) { return regression.GetxStdErr(j); })), yBar(regression.GetyBar()),
          yStdErr(regression.GetyStdErr())
    {
        for (int i = 0; i <= m; ++i) {
            for (int j = 0; j <= m; ++j) {
                covariances.push_back(regression.GetCovar(i, j));
                correlations.push_back(regression.GetCorr(i, j));
            }
        }
    }
    std::vector<double> e, yHat, xBar, xStdErr, covariances, correlations;
    double yBar, yStdErr;

    std::string toString() const
    {
        std::string out = written(yBar) + ' ' + written(yStdErr);
        for (const auto *values : {&e, &yHat, &xBar, &xStdErr, &covariances, &correlations}) {
            out += " |";
            for (const double value : *values)
                out += ' ' + written(value);
        }
        return out;
    }
    /// NaNs are equal.
    bool operator==(const Leftovers &other) const { return toString() == other.toString(); }
};

void PrintTo(const Leftovers &leftovers, std::ostream *out)
{
    *out << leftovers.toString();
}

const std::vector<Row> kEightRecords = {{3, 1, 2, 0},  {5, 2, 0, 1},  {7, 4, 1, 1},     {8, 5, 3, 5},
                                        {12, 7, 4, 2}, {13, 8, 2, 9}, {11, 9, null, 4}, {20, 3, null, 7}};

/// Eight records, of which six have all four numbers. Filters choose among them.
class BetweenLoadAndFit : public RegressionOver<TMLRTable>
{
protected:
    void SetUp() override { fill("y a b c", kEightRecords); }

    void load(const char *controls, const char *filter = "")
    {
        regression.SetFilter(text(filter));
        regression.SetFiltered(*filter != '\0');
        for (int k = 1; k <= MaxControls; ++k)
            regression.SetControl(k, TIndepVar());
        define(regression, controls);
        ASSERT_TRUE(regression.ReLoad());
    }
    void loadAndFit(const char *controls, const char *filter = "")
    {
        load(controls, filter);
        regression.Execute();
    }
    Leftovers leftovers(int n, int m) const { return {regression, n, m}; }
};

} // namespace

TEST_F(Figures, LongleyIsTheStoredOneToTheLastBit)
{
    const NistSet set = readNist("Longley");
    std::vector<Row> rows;
    for (std::size_t i = 0; i < std::size_t(set.observations()); ++i) {
        Row row;
        for (const std::vector<double> &column : set.columns)
            row.emplace_back(column[i]);
        rows.push_back(row);
    }
    fill("a b c d e f y", rows);
    define(regression, "a b c d e f");
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    expectStored(regression, "Longley");
}

TEST_F(Figures, FilipIsTheStoredOneToTheLastBit)
{
    const NistSet set = readNist("Filip");
    std::vector<Row> rows;
    for (std::size_t i = 0; i < std::size_t(set.observations()); ++i) {
        Row row;
        for (const std::vector<double> &column : set.columns)
            row.emplace_back(column[i]);
        rows.push_back(row);
    }
    fill("a b c d e f g h i j y", rows);
    define(regression, "a b c d e f g h i j");
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    expectStored(regression, "Filip");
}

TEST_F(Figures, TransformedColumnsWithNullsAreTheStoredOnesToTheLastBit)
{
    // Functions that are rounded right on every machine: no logarithm, no large power.
    unsigned seed = 20240607;
    const auto next = [&] { return double((seed = seed * 1664525u + 1013904223u) >> 8) / 0x1p24; };
    std::vector<Row> rows;
    for (int i = 0; i < 120; ++i) {
        Row row = {10 * next() - 2, next() - 0.5, 100 + next(), std::floor(9 * next()) - 3, 1e6 * next()};
        if (i % 7 == 3)
            row[std::size_t(i % 5)] = null;
        rows.push_back(row);
    }
    fill("y a b c d", rows);
    regression.SetResponse(response("Scale", "y", "3"));
    regression.SetControl(1, control("None", "a"));
    regression.SetControl(2, control("Inverse", "b"));
    regression.SetControl(4, control("Sqrt", "d"));
    regression.SetControl(5, power("c", "3"));
    regression.SetControl(6, scaled("Scale", "b", "7"));
    regression.SetControl(8, control("Product", "a", "b"));
    regression.SetControl(10, control("Quotient", "a", "d"));
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_GT(regression.RecordsSkipped(), 10);
    expectStored(regression, "transformed");
}

TEST_F(Figures, AnExactFitWithoutDegreesOfFreedomIsTheStoredOne)
{
    fill("y a b c", {{3, 1, 2, 0}, {5, 2, 0, 1}, {7, 4, 1, 1}, {8, 5, 3, 5}});
    define(regression, "a b c");
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    expectStored(regression, "exact");
}

TEST_F(BetweenLoadAndFit, ALoadBringsItsObservationsAndLeavesTheFit)
{
    loadAndFit("a b c");
    const Leftovers fit = leftovers(6, 3);
    const double b2 = regression.Getb(2);
    const double mse = regression.GetMSE();
    load("c", "c > 1");
    EXPECT_EQ(regression.GetNumObs(), 5);
    EXPECT_EQ(regression.Getx(1, 1), 5);
    EXPECT_EQ(regression.Gety(1), 8);
    EXPECT_EQ(regression.GetxMax(1), 9);
    EXPECT_EQ(regression.GetyMin(), 8);
    EXPECT_EQ(regression.GetDOF(), 3);
    EXPECT_EQ(leftovers(6, 3), fit);
    EXPECT_EQ(regression.Getb(2), b2);
    EXPECT_EQ(regression.GetMSE(), mse);
    const double sse = regression.GetSSE();
    EXPECT_EQ(regression.GetMSE(), sse / 3) << "by the degrees of freedom of the load";
    EXPECT_EQ(leftovers(6, 3), fit) << "a new mean square does not reach the covariances";
}

TEST_F(BetweenLoadAndFit, ResultsThatNobodyAskedForAreThoseOfTheirFit)
{
    loadAndFit("a b c");
    const Leftovers fit = leftovers(6, 3);
    loadAndFit("c", "c > 1");
    loadAndFit("a b c");
    load("c", "c > 1");
    (void)regression.GetSSE();
    EXPECT_EQ(leftovers(6, 3), fit);
}

TEST_F(BetweenLoadAndFit, ASmallerFitLeavesTheRestOfTheOneBefore)
{
    loadAndFit("a b c", "b >= 0");
    const Leftovers large = leftovers(6, 3);
    loadAndFit("c", "c > 4");
    const Leftovers small = leftovers(3, 1);
    ASSERT_EQ(regression.GetNumObs(), 3);
    load("a b c");
    const Leftovers mixed = leftovers(6, 3);
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(mixed.e[i], i < 3 ? small.e[i] : large.e[i]) << i;
        EXPECT_EQ(mixed.yHat[i], i < 3 ? small.yHat[i] : large.yHat[i]) << i;
    }
    for (std::size_t j = 0; j < 3; ++j) {
        EXPECT_EQ(mixed.xBar[j], j < 1 ? small.xBar[j] : large.xBar[j]) << j;
        EXPECT_EQ(mixed.xStdErr[j], j < 1 ? small.xStdErr[j] : large.xStdErr[j]) << j;
    }
    for (int i = 0; i <= 3; ++i) {
        for (int j = 0; j <= 3; ++j) {
            const bool inside = i <= 1 && j <= 1;
            const std::size_t at = std::size_t(inside ? 2 * i + j : 4 * i + j);
            EXPECT_EQ(regression.GetCovar(i, j), (inside ? small : large).covariances[at]) << i << j;
            EXPECT_EQ(regression.GetCorr(i, j), (inside ? small : large).correlations[at]) << i << j;
        }
    }
    EXPECT_EQ(regression.GetyBar(), small.yBar);
    EXPECT_EQ(regression.Getb(3), 0) << "of the coefficients nothing is left";
}

TEST_F(BetweenLoadAndFit, TheSameHoldsWhenNobodyLookedMeanwhile)
{
    // Asked for at once, and at the end.
    std::vector<Leftovers> ends;
    for (const bool look : {true, false}) {
        TMLRTable other;
        bind(other, *db, "data");
        const auto run = [&](const char *controls, const char *filter) {
            other.SetFilter(text(filter));
            other.SetFiltered(*filter != '\0');
            for (int k = 1; k <= MaxControls; ++k)
                other.SetControl(k, TIndepVar());
            define(other, controls);
            EXPECT_TRUE(other.ReLoad());
            other.Execute();
            if (look)
                (void)Leftovers(other, other.GetNumObs(), other.GetNumVars());
        };
        run("a", "");
        run("a b c", "");
        run("a c", "");
        run("c", "c > 1");
        run("b", "");
        run("b c", "c > 2");
        run("c", "c > 4");
        other.SetControl(1, control("None", "a"));
        other.SetFilter(text("a < 9"));
        EXPECT_TRUE(other.ReLoad());
        ends.emplace_back(other, 8, 3);
    }
    EXPECT_EQ(ends[0], ends[1]);
}

TEST_F(BetweenLoadAndFit, ALoadThatFailsLeavesTheFit)
{
    loadAndFit("a b c");
    const Leftovers fit = leftovers(6, 3);
    regression.SetFilter(text("c = 1"));
    regression.SetFiltered(true);
    EXPECT_FALSE(regression.ReLoad()) << "c does not vary";
    EXPECT_EQ(regression.GetNumObs(), 2);
    EXPECT_EQ(regression.Getx(2, 1), 4);
    EXPECT_EQ(leftovers(6, 3), fit);
    regression.SetFilter(text("c = 100"));
    EXPECT_FALSE(regression.ReLoad()) << "there are no records";
    EXPECT_EQ(leftovers(6, 3), fit);
    regression.SetControl(1, control("None", "nothing"));
    regression.SetFiltered(false);
    EXPECT_THROW(regression.ReLoad(), EDatabaseError);
    EXPECT_EQ(leftovers(6, 3), fit);
}

TEST_F(BetweenLoadAndFit, TheStepsWorkOnTheObservationsOfTheMoment)
{
    loadAndFit("a b c");
    const Leftovers fit = leftovers(6, 3);
    load("c", "c > 4");
    regression.ComputexBar();
    regression.ComputeyBar();
    EXPECT_EQ(regression.GetxBar(1), (5.0 / 3 + 9.0 / 3) + 7.0 / 3);
    EXPECT_EQ(regression.GetxBar(2), fit.xBar[1]);
    EXPECT_EQ(regression.GetyBar(), (8.0 / 3 + 13.0 / 3) + 20.0 / 3);
    EXPECT_EQ(regression.GetxStdErr(1), fit.xStdErr[0]);
    regression.ComputexStdErr();
    regression.ComputeyStdErr();
    EXPECT_EQ(regression.GetxStdErr(1), std::sqrt((4.0 / 2 + 4.0 / 2) + 0.0));
    EXPECT_EQ(regression.GetxStdErr(2), fit.xStdErr[1]);
    EXPECT_EQ(regression.GetyHat(1), fit.yHat[0]);
    regression.ComputeyHat();
    EXPECT_EQ(regression.GetyHat(1), regression.Getb(0) + regression.Getb(1) * 5) << "the last fit's coefficients";
    EXPECT_EQ(regression.GetyHat(4), fit.yHat[3]);
    EXPECT_EQ(regression.Gete(1), fit.e[0]);
    regression.ComputeResiduals();
    EXPECT_EQ(regression.Gete(1), 8 - regression.GetyHat(1));
    EXPECT_EQ(regression.Gete(4), fit.e[3]);
    const double mse = regression.GetMSE();
    regression.ComputeSSE();
    const double changed = regression.GetMSE();
    EXPECT_NE(changed, mse);
    regression.ComputeCovarMatrix();
    EXPECT_NEAR(regression.GetCovar(1, 1), fit.covariances[5] / mse * changed, 1e-12);
    EXPECT_EQ(regression.GetCovar(2, 2), fit.covariances[10]);
    EXPECT_EQ(regression.GetCorr(1, 0), fit.correlations[4]);
    regression.ComputeCorrMatrix();
    EXPECT_NEAR(regression.GetCorr(1, 0), fit.correlations[4], 1e-12);
}

TEST_F(BetweenLoadAndFit, StepsBeforeAnyFitGiveNothing)
{
    load("a b");
    regression.ComputeCovarMatrix();
    EXPECT_EQ(regression.GetCovar(0, 0), 0);
    EXPECT_EQ(regression.GetCovar(2, 2), 0);
    regression.ComputeResiduals();
    EXPECT_EQ(regression.GetyHat(1), 0);
    EXPECT_EQ(regression.Gete(1), 3);
}

TEST_F(BetweenLoadAndFit, AFitAloneLeavesNothingToALaterLoad)
{
    loadAndFit("a b c");
    const Leftovers fit = leftovers(6, 3);
    regression.Execute();
    regression.SetFilter(text("c > 4"));
    regression.SetFiltered(true);
    regression.SetControl(1, control("None", "c"));
    regression.Close();
    EXPECT_EQ(leftovers(6, 3), fit);
    EXPECT_EQ(regression.Getx(6, 1), 8) << "nor do the observations go with the dataset's records";
}
