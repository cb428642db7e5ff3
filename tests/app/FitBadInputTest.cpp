// SPDX-License-Identifier: MIT
#include "app/Fitting.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <cmath>

// What a fit says of data and options that leave it little to say: a null, a dash or a sentence, never a figure that
// rounding made up.

namespace {

/// Table t with columns y, a, b, c.
class FitBadInput : public testing::Test
{
protected:
    void fill(int n, const std::function<QString(int)> &row)
    {
        database_->exec(u("CREATE TABLE t (y DOUBLE PRECISION, a DOUBLE PRECISION, b DOUBLE PRECISION, "
                          "c DOUBLE PRECISION)"));
        QStringList rows;
        for (int i = 0; i < n; ++i)
            rows += u("(%1)").arg(row(i));
        if (n > 0)
            database_->exec(u("INSERT INTO t VALUES ") + rows.join(u", "));
    }
    /// Numbers without a pattern, from -1 to 1.
    static double scattered(int i, int j) { return std::sin(12.9898 * (i + 1) + 78.233 * (j + 1) * (i % 7 + 1)); }
    void fillScattered(int n, double yScale = 1, double aScale = 1, double bScale = 1)
    {
        fill(n, [=](int i) {
            const double a = scattered(i, 1);
            const double b = scattered(i, 2);
            return numbers({(1 + 2 * a - b + 0.3 * scattered(i, 0)) * yScale, a * aScale, b * bScale, 0});
        });
    }
    static QString numbers(const std::vector<double> &values)
    {
        QStringList texts;
        for (const double value : values)
            texts += QString::number(value, 'g', 17);
        return texts.join(u", ");
    }
    Outcome run(const QString &controls, const QStringList &more = {})
    {
        QStringList arguments{u("--table"), u("t"), u("--response"), u("y")};
        for (const QString &control : controls.split(u' ', Qt::SkipEmptyParts))
            arguments += {u("--control"), control};
        return runProgram(fitArguments(database_->name(), arguments + more));
    }
    Json json(const QString &controls, const QStringList &more = {})
    {
        return parsed(run(controls, QStringList{u("--format=json"), u("--influence"), u("--robust=hc3")} + more));
    }
    /// The page, which never shows an infinity or something that is no number.
    QString page(const QString &controls, const QStringList &more = {})
    {
        const QString text = run(controls, QStringList{u("--influence"), u("--robust=hc3")} + more).out;
        for (const char *never : {"inf ", "nan", "0.0000 "})
            EXPECT_FALSE(text.contains(u(never))) << text.toStdString();
        return text;
    }

    std::unique_ptr<TestDatabase> database_ = TestDatabase::make(TestDatabase::Sqlite);
};

std::string nulls(int count)
{
    std::string text = "[";
    for (int i = 0; i < count; ++i)
        text += i == 0 ? "null" : ",null";
    return text + "]";
}

} // namespace

TEST_F(FitBadInput, ThreeObservationsForThreeCoefficientsHaveNoErrors)
{
    fillScattered(3);
    const Json fit = json(u("a b"), {u("--at=a=1,b=1")});
    EXPECT_EQ(fit["computed"], true);
    for (const char *figures : {"standardErrors", "tValues"})
        EXPECT_EQ(fit[figures].dump(), nulls(3)) << figures;
    for (const char *figure : {"mse", "syx", "f"})
        EXPECT_TRUE(fit[figure].is_null()) << figure;
    EXPECT_EQ(fit["sse"], 0) << "the fit goes through them";
    EXPECT_EQ(fit["inference"]["pValues"].dump(), nulls(3));
    EXPECT_EQ(fit["covariance"][1].dump(), nulls(3));
    EXPECT_TRUE(fit["predictions"][0]["standardError"].is_null());
    const QString text = page(u("a b"));
    EXPECT_TRUE(text.contains(u("3 observations for 3 coefficients leave no degrees of freedom")))
        << text.toStdString();
    EXPECT_TRUE(text.contains(u("\nR² = 1\n"))) << text.toStdString();
}

TEST_F(FitBadInput, FewerObservationsThanCoefficientsHaveNoErrorsEither)
{
    fillScattered(2);
    const Json fit = json(u("a b"));
    EXPECT_EQ(fit["dependentTerms"].dump(), R"(["b"])");
    EXPECT_TRUE(fit["coefficients"][2].is_null());
    EXPECT_FALSE(fit["coefficients"][1].is_null());
    for (const char *figures : {"standardErrors", "tValues"})
        EXPECT_EQ(fit[figures].dump(), nulls(3)) << figures;
    for (const char *figure : {"mse", "syx", "f"})
        EXPECT_TRUE(fit[figure].is_null()) << figure;
    EXPECT_TRUE(page(u("a b")).contains(u("leave no degrees of freedom")));
}

TEST_F(FitBadInput, AnExactFitHasErrorsOfZeroAndNoT)
{
    fill(20, [](int i) { return u("%1, %2, %3, 0").arg(3 + 2 * i - 5 * (i * 7 % 11)).arg(i).arg(i * 7 % 11); });
    const Json fit = json(u("a b"), {u("--at=a=1,b=1")});
    EXPECT_EQ(fit["coefficients"].dump(), "[3.0,2.0,-5.0]");
    EXPECT_EQ(fit["standardErrors"].dump(), "[0.0,0.0,0.0]");
    EXPECT_EQ(fit["tValues"].dump(), nulls(3));
    EXPECT_TRUE(fit["f"].is_null());
    for (const char *figure : {"sse", "mse", "syx"})
        EXPECT_EQ(fit[figure], 0) << figure;
    EXPECT_EQ(fit["predictions"][0]["value"], 0) << "3 + 2 - 5, not what rounding leaves of it";
    EXPECT_EQ(fit["diagnostics"]["press"], 0);
    EXPECT_TRUE(fit["inference"]["aic"].is_null());
    const QString text = page(u("a b"));
    EXPECT_TRUE(text.contains(u("The fit is exact"))) << text.toStdString();
    EXPECT_TRUE(text.contains(u("\ns = 0   R² = 1   adjusted R² = 1\n"))) << text.toStdString();
}

TEST_F(FitBadInput, AnErrorThatIsSmallBesideTheResponseIsNoZero)
{
    fill(20, [](int i) { return numbers({1e6 + i + 1e-8 * scattered(i, 0), double(i), 0, 0}); });
    const Json fit = json(u("a"));
    EXPECT_GT(fit["sse"], 1e-17);
    EXPECT_LT(fit["sse"], 1e-14);
    EXPECT_GT(fit["syx"], 0);
}

TEST_F(FitBadInput, ALeverageOfOneIsNamedAndTakesWhatDividesByIt)
{
    fill(30, [](int i) {
        return numbers({1 + 2 * scattered(i, 1) + scattered(i, 0), scattered(i, 1), double(i == 4), 0});
    });
    const Json fit = json(u("a b"));
    EXPECT_EQ(fit["influence"]["leverage"][4], 1);
    for (const char *figure : {"cook", "dffits", "studentizedResiduals", "covRatio"})
        EXPECT_TRUE(fit["influence"][figure][4].is_null()) << figure;
    EXPECT_FALSE(fit["influence"]["cook"][3].is_null());
    EXPECT_TRUE(fit["diagnostics"]["press"].is_null());
    EXPECT_EQ(fit["robust"]["standardErrors"].dump(), nulls(3));
    EXPECT_TRUE(page(u("a b")).simplified().contains(u("A leverage of 1: record 5. The fit goes through it")));
}

TEST_F(FitBadInput, ResidualsOfOneSizeHaveNoTestOfTheirVariance)
{
    fill(16, [](int i) { return u("%1, %2, 0, 0").arg(i % 4 + (i / 4 % 2 == 0 ? -1 : 1)).arg(i % 4); });
    const Json fit = json(u("a"));
    EXPECT_EQ(fit["inference"]["pValues"][0], 1) << "the constant is 0";
    EXPECT_EQ(fit["coefficients"].dump(), "[0.0,1.0]");
    EXPECT_EQ(fit["robust"]["tValues"][0], 0);
    for (const char *test : {"breuschPagan", "white"})
        EXPECT_TRUE(fit["diagnostics"][test].is_null()) << test;
    EXPECT_FALSE(fit["diagnostics"]["jarqueBera"].is_null());
    page(u("a"));
}

TEST_F(FitBadInput, DependentTermsHaveNoFiguresOfTheirOwnAndTheRestHolds)
{
    fill(30, [](int i) {
        const double a = std::round(scattered(i, 1) * 64);
        const double b = std::round(scattered(i, 2) * 64);
        return numbers({a - 2 * b + 10 * scattered(i, 0), a, b, 2 * a - 3 * b + 1});
    });
    const Json fit = json(u("a b c"));
    const Json without = json(u("a b"));
    EXPECT_EQ(fit["dependentTerms"].dump(), R"(["c"])");
    for (const char *figures : {"coefficients", "standardErrors", "tValues"})
        EXPECT_TRUE(fit[figures][3].is_null()) << figures;
    EXPECT_TRUE(fit["covariance"][3][3].is_null());
    EXPECT_TRUE(fit["correlation"][0][3].is_null());
    const double s = fit["syx"].get<double>() / without["syx"].get<double>(); // a term counts, dependent or not
    for (std::size_t j = 0; j < 3; ++j) {
        EXPECT_NEAR(fit["coefficients"][j].get<double>() / without["coefficients"][j].get<double>(), 1, 1e-12);
        EXPECT_NEAR(fit["standardErrors"][j].get<double>() / without["standardErrors"][j].get<double>(), s, 1e-12);
        EXPECT_NEAR(fit["tValues"][j].get<double>() * s / without["tValues"][j].get<double>(), 1, 1e-12);
        EXPECT_NEAR(fit["covariance"][0][j].get<double>() / without["covariance"][0][j].get<double>(), s * s, 1e-12);
        EXPECT_NEAR(fit["correlation"][1][j].get<double>(), without["correlation"][1][j].get<double>(), 1e-12);
    }
    EXPECT_TRUE(page(u("a b c")).contains(u("Linear combinations of the terms before them: c.")));
}

TEST_F(FitBadInput, NoControlLeavesTheMean)
{
    fillScattered(30);
    const Json fit = json(QString(), {u("--at=")});
    EXPECT_EQ(fit["controls"], 0);
    EXPECT_EQ(fit["inference"]["adjustedRSquared"], 0);
    EXPECT_TRUE(fit["f"].is_null());
    for (const char *test : {"breuschPagan", "white", "reset"})
        EXPECT_TRUE(fit["diagnostics"][test].is_null()) << test;
    EXPECT_NEAR(fit["predictions"][0]["value"].get<double>(), fit["yBar"].get<double>(), 1e-14);
    EXPECT_TRUE(page(QString()).contains(u("(constant)")));
}

TEST_F(FitBadInput, ValuesNearTheEndsOfTheRangeGiveTheFiguresOfOrdinaryOnes)
{
    fillScattered(30);
    const Json usual = json(u("a b"));
    for (const auto &[y, a, b] : {std::tuple(1e150, 1e150, 1e150), std::tuple(1e150, 1e-18, 1e150)}) {
        database_->exec(u("DROP TABLE t"));
        fillScattered(30, y, a, b);
        const Json fit = json(u("a b"));
        for (const char *figures : {"tValues"})
            for (std::size_t j = 0; j < 3; ++j)
                EXPECT_NEAR(fit[figures][j].get<double>() / usual[figures][j].get<double>(), 1, 1e-12) << y << a;
        EXPECT_NEAR(fit["coefficients"][2].get<double>() / usual["coefficients"][2].get<double>() / (y / b), 1,
                    1e-12);
        EXPECT_NEAR(fit["inference"]["fPValue"].get<double>() / usual["inference"]["fPValue"].get<double>(), 1, 1e-9);
        EXPECT_NEAR(fit["diagnostics"]["white"]["statistic"].get<double>() /
                        usual["diagnostics"]["white"]["statistic"].get<double>(),
                    1, 1e-10);
        EXPECT_NEAR(fit["influence"]["cook"][7].get<double>() / usual["influence"]["cook"][7].get<double>(), 1,
                    1e-10);
        page(u("a b"));
    }
    database_->exec(u("DROP TABLE t"));
    fillScattered(30, 1e-150, 1e-150, 1);
    const Outcome tiny = run(u("a b"));
    EXPECT_EQ(tiny.status, 1);
    EXPECT_EQ(tiny.err, u("error: The dataset has an invariant column. Matrix is singular!\n"))
        << "below 1e-20 all is one";
    EXPECT_TRUE(tiny.out.endsWith(u("\nNo result.\n"))) << tiny.out.toStdString();
}

TEST_F(FitBadInput, TwoThousandFiveHundredObservationsAreAllUsed)
{
    fillScattered(2500);
    const Json fit = json(u("a b"));
    EXPECT_EQ(fit["observations"], 2500);
    EXPECT_EQ(fit["influence"]["record"][2499], 2500);
    EXPECT_EQ(fit["inference"]["fPValue"], 0) << "below the smallest double, never null";
    EXPECT_FALSE(fit["diagnostics"]["shapiroWilk"].is_null());
    EXPECT_TRUE(page(u("a b")).contains(u("<1e-300")));
}

TEST_F(FitBadInput, ALevelThatIsNoneIsAWrongCommandLine)
{
    fillScattered(10);
    for (const char *level : {"0", "1", "2", "abc", "", "nan", "-0.5"}) {
        const Outcome outcome = run(u("a b"), {u("--level"), u(level)});
        EXPECT_EQ(outcome.status, 2) << level;
        EXPECT_EQ(outcome.out, QString());
        EXPECT_TRUE(outcome.err.startsWith(u("nuvostat: --level "))) << outcome.err.toStdString();
        EXPECT_EQ(outcome.err.count(u'\n'), 1);
    }
}

TEST_F(FitBadInput, ValuesOfWrongFieldsAreAWrongCommandLine)
{
    fillScattered(10);
    for (const auto &[at, told] : {std::pair("a=1,b=2,z=3", "\"z\""), std::pair("a=1,b=2,a=3", "twice"),
                                   std::pair("a=1", "\"b\""), std::pair("a=1,b=two", "\"two\"")}) {
        const Outcome outcome = run(u("a b"), {u("--at"), u(at)});
        EXPECT_EQ(outcome.status, 2) << at;
        EXPECT_EQ(outcome.out, QString());
        EXPECT_TRUE(outcome.err.contains(u(told))) << outcome.err.toStdString();
    }
}
