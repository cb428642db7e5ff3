// SPDX-License-Identifier: MIT
#include "app/Ftable.h"

#include "app/Program.h"
#include "platform/Table.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QThread>

#include <array>
#include <cmath>
#include <csignal>
#include <numbers>

namespace {

/// P(F > f) for m and n degrees of freedom by the finite sums that it has for whole degrees of freedom, in long
/// double. With x = n/(n + m f) it is the incomplete beta function I_x(n/2, m/2), which is known for parameters 1/2
/// and 1 (an arc sine, a power, a root) and goes from one parameter to the next one higher by one term:
/// I_x(a, b+1) = I_x(a, b) + x^a (1-x)^b / (b B(a, b)) and I_x(a+1, b) = I_x(a, b) - x^a (1-x)^b / (a B(a, b)).
long double survival(int m, int n, long double f)
{
    const long double x = n / (n + m * f);
    const long double y = m * f / (n + m * f);
    long double a = 1;
    long double b = m % 2 == 0 ? 1 : 0.5L;
    long double sum = x;        // I_x(a, b)
    long double factor = x * y; // x^a y^b / B(a, b)
    if (n % 2 == 1) {
        a = 0.5L;
        sum = m % 2 == 0 ? std::sqrt(x) : 2 / std::numbers::pi_v<long double> * std::asin(std::sqrt(x));
        factor = m % 2 == 0 ? std::sqrt(x) * y / 2 : std::sqrt(x * y) / std::numbers::pi_v<long double>;
    } else if (m % 2 == 1) {
        sum = x / (1 + std::sqrt(y)); // 1 - sqrt(1 - x)
        factor = x * std::sqrt(y) / 2;
    }
    for (; 2 * a < n; a += 1) {
        sum -= factor / a;
        factor *= x * (a + b) / a;
    }
    for (; 2 * b < m; b += 1) {
        sum += factor / b;
        factor *= y * (a + b) / b;
    }
    return sum;
}

/// The value that F exceeds with this probability, by halving.
long double exceeded(int m, int n, long double probability)
{
    long double low = 0;
    long double high = 1e6L;
    for (int i = 0; i < 120; ++i) {
        const long double middle = (low + high) / 2;
        (survival(m, n, middle) > probability ? low : high) = middle;
    }
    return (low + high) / 2;
}

constexpr std::array levels{0.01L, 0.05L, 0.10L};

std::array<double, 3> figures(int m, int n)
{
    const nuvo::FQuantiles quantiles = nuvo::fQuantiles(m, n);
    return {quantiles.upper1, quantiles.upper5, quantiles.upper10};
}

// As tables of the F distribution in textbooks print them: one row for a number of denominators, numerators 1 to 10.
struct PublishedRow
{
    int level; ///< 0, 1, 2: 1, 5, 10 per cent
    int denominator;
    const char *values;
};

constexpr PublishedRow published[] = {
    {0, 1, "4052.2 4999.5 5403.4 5624.6 5763.6 5859.0 5928.4 5981.1 6022.5 6055.8"},
    {0, 2, "98.50 99.00 99.17 99.25 99.30 99.33 99.36 99.37 99.39 99.40"},
    {0, 5, "16.26 13.27 12.06 11.39 10.97 10.67 10.46 10.29 10.16 10.05"},
    {0, 10, "10.04 7.56 6.55 5.99 5.64 5.39 5.20 5.06 4.94 4.85"},
    {0, 30, "7.56 5.39 4.51 4.02 3.70 3.47 3.30 3.17 3.07 2.98"},
    {0, 60, "7.08 4.98 4.13 3.65 3.34 3.12 2.95 2.82 2.72 2.63"},
    {0, 120, "6.85 4.79 3.95 3.48 3.17 2.96 2.79 2.66 2.56 2.47"},
    {1, 1, "161.45 199.50 215.71 224.58 230.16 233.99 236.77 238.88 240.54 241.88"},
    {1, 2, "18.51 19.00 19.16 19.25 19.30 19.33 19.35 19.37 19.38 19.40"},
    {1, 3, "10.13 9.55 9.28 9.12 9.01 8.94 8.89 8.85 8.81 8.79"},
    {1, 5, "6.61 5.79 5.41 5.19 5.05 4.95 4.88 4.82 4.77 4.74"},
    {1, 10, "4.96 4.10 3.71 3.48 3.33 3.22 3.14 3.07 3.02 2.98"},
    {1, 20, "4.35 3.49 3.10 2.87 2.71 2.60 2.51 2.45 2.39 2.35"},
    {1, 30, "4.17 3.32 2.92 2.69 2.53 2.42 2.33 2.27 2.21 2.16"},
    {1, 60, "4.00 3.15 2.76 2.53 2.37 2.25 2.17 2.10 2.04 1.99"},
    {1, 120, "3.92 3.07 2.68 2.45 2.29 2.18 2.09 2.02 1.96 1.91"},
    {2, 1, "39.86 49.50 53.59 55.83 57.24 58.20 58.91 59.44 59.86 60.19"},
    {2, 2, "8.53 9.00 9.16 9.24 9.29 9.33 9.35 9.37 9.38 9.39"},
    {2, 5, "4.06 3.78 3.62 3.52 3.45 3.40 3.37 3.34 3.32 3.30"},
    {2, 10, "3.29 2.92 2.73 2.61 2.52 2.46 2.41 2.38 2.35 2.32"},
    {2, 30, "2.88 2.49 2.28 2.14 2.05 1.98 1.93 1.88 1.85 1.82"},
    {2, 120, "2.75 2.35 2.13 1.99 1.90 1.82 1.77 1.72 1.68 1.65"},
};

TEST(FQuantiles, AgreeWithPublishedTablesToTheLastDigitPrinted)
{
    for (const PublishedRow &row : published) {
        const QStringList values = QString::fromLatin1(row.values).split(u' ');
        ASSERT_EQ(values.size(), nuvo::FTableNumerators);
        for (int m = 1; m <= nuvo::FTableNumerators; ++m) {
            const QString &value = values[m - 1];
            const int decimals = int(value.size() - value.indexOf(u'.') - 1);
            const double ours = figures(m, row.denominator)[size_t(row.level)];
            EXPECT_EQ(QString::number(ours, 'f', decimals), value) << m << ", " << row.denominator;
        }
    }
}

TEST(FQuantiles, AgreeWithTheirClosedForms)
{
    for (size_t level = 0; level < levels.size(); ++level) {
        const long double p = levels[level];
        const auto near = [&](int m, int n, long double closed) {
            EXPECT_NEAR(double(figures(m, n)[level] / closed), 1, 1e-14) << m << ", " << n;
        };
        const long double tangent = std::tan(std::numbers::pi_v<long double> * (1 - p) / 2);
        near(1, 1, tangent * tangent);
        near(1, 2, 2 * (1 - p) * (1 - p) / (p * (2 - p)));
        for (const int n : {1, 2, 3, 4, 7, 10, 100, 999, 2500})
            near(2, n, n / 2.0L * std::expm1(-2.0L / n * std::log(p)));
        for (int m = 1; m <= nuvo::FTableNumerators; ++m)
            near(m, 2, 2.0L / m / std::expm1(-2.0L / m * std::log1p(-p)));
    }
}

TEST(FQuantiles, TheSecondRoadIsRightWhereThereAreClosedForms)
{
    for (const long double p : levels) {
        const long double tangent = std::tan(std::numbers::pi_v<long double> * (1 - p) / 2);
        EXPECT_NEAR(double(exceeded(1, 1, p) / (tangent * tangent)), 1, 1e-15);
        for (const int n : {1, 3, 100, 2500})
            EXPECT_NEAR(double(exceeded(2, n, p) / (n / 2.0L * std::expm1(-2.0L / n * std::log(p)))), 1, 1e-15);
    }
}

TEST(FQuantiles, HoldForTheLargestTable)
{
    // Towards chi-square over its degrees of freedom: the square of the normal quantile for one.
    EXPECT_NEAR(nuvo::fQuantiles(1, nuvo::MaxDenominators).upper5, 3.841458820694124, 2e-5);
    for (int m = 1; m <= nuvo::FTableNumerators; ++m)
        EXPECT_NEAR(double(survival(m, nuvo::MaxDenominators, nuvo::fQuantiles(m, nuvo::MaxDenominators).upper10)),
                    0.1, 1e-12);
}

/// Makes tables in each kind of database.
class FTable : public testing::TestWithParam<TestDatabase::Backend>
{
protected:
    Outcome make(const QStringList &more = {})
    {
        return runProgram(
            QStringList{u("ftable"), u("--database"), database_->name(), u("--table"), u("Fdistribution")} + more);
    }

    std::unique_ptr<TestDatabase> database_ = TestDatabase::make(GetParam());
};

INSTANTIATE_TEST_SUITE_P(, FTable, testing::Values(TestDatabase::Sqlite, TestDatabase::Postgres),
                         [](const auto &backend) { return backendName(backend.param); });

TEST_P(FTable, AgreesWithASecondRoadInEveryColumn)
{
    const Outcome run = make();
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.out,
              u("Made table \"Fdistribution\" with 25000 rows: numerators 1 to 10, denominators 1 to 2500.\n"));
    EXPECT_EQ(run.err, QString()); // no bar where no terminal is

    QSqlQuery query(database_->writer());
    ASSERT_TRUE(query.exec(u("SELECT \"Numerator\", \"Denominator\", \"1 Percent\", \"5 Percent\", \"10 Percent\", "
                             "\"95 Percent\" FROM \"Fdistribution\" ORDER BY \"Numerator\", \"Denominator\"")));
    double worst = 0;
    for (int m = 1; m <= 10; ++m) {
        for (int n = 1; n <= 2500; ++n) {
            ASSERT_TRUE(query.next());
            ASSERT_EQ(query.value(0).toInt(), m);
            ASSERT_EQ(query.value(1).toInt(), n);
            if (n > 12 && n % 250 != 0 && n % 353 != 0)
                continue;
            std::array<long double, 4> expected{};
            for (size_t level = 0; level < levels.size(); ++level)
                expected[level] = exceeded(m, n, levels[level]);
            expected[3] = expected[1]; // exceeded with probability 0.05: the 95th percentile
            for (size_t column = 0; column < expected.size(); ++column) {
                const double value = query.value(int(column) + 2).toDouble();
                const auto error = double(std::fabs(value / expected[column] - 1));
                EXPECT_LE(error, 1e-12) << m << ", " << n << ", column " << column;
                worst = std::max(worst, error);
            }
        }
    }
    EXPECT_FALSE(query.next());
    RecordProperty("worst relative difference", std::to_string(worst * 1e15) + "e-15");
}

TEST_P(FTable, IsFoundByItsKey)
{
    EXPECT_EQ(make({u("--denominators"), u("30")}).status, 0);
    TTable table;
    table.SetDatabaseName(database_->name());
    table.SetTableName(u("Fdistribution"));
    table.Open();
    EXPECT_EQ(table.RecordCount(), 300);
    EXPECT_EQ(table.GetFieldNames().join(u','), u("Numerator,Denominator,1 Percent,5 Percent,10 Percent,95 Percent"));
    ASSERT_TRUE(table.FindKey({1, 10}));
    EXPECT_NEAR(table.FieldByName(u("95 Percent")).AsFloat(), 4.9646, 5e-5);
    EXPECT_FALSE(table.FindKey({1, 31}));
    EXPECT_NEAR(table.FieldByName(u("1 Percent")).AsFloat(), 10.0443, 5e-5);
}

TEST_P(FTable, ATableThatIsThereIsReplacedOnlyWhenAsked)
{
    database_->exec(u("CREATE TABLE \"Fdistribution\" (precious INTEGER)"));
    const Outcome refused = make();
    EXPECT_EQ(refused.status, 3);
    EXPECT_EQ(refused.out, QString());
    EXPECT_EQ(refused.err, u("nuvostat: The table \"Fdistribution\" is there already in \"%1\"; --replace replaces a "
                             "table.\n")
                               .arg(database_->name()));
    EXPECT_EQ(database_->value(u("SELECT count(*) FROM \"Fdistribution\"")).toInt(), 0);
    EXPECT_EQ(make({u("--replace"), u("--denominators=3")}).out,
              u("Made table \"Fdistribution\" with 30 rows: numerators 1 to 10, denominators 1 to 3.\n"));
    EXPECT_EQ(database_->value(u("SELECT count(*) FROM \"Fdistribution\"")).toInt(), 30);
}

TEST_P(FTable, CtrlCLeavesTheOldTable)
{
    database_->exec(u("CREATE TABLE \"Fdistribution\" (precious INTEGER)"));
    database_->exec(u("INSERT INTO \"Fdistribution\" VALUES (7)"));
    const auto process = startProgram({u("ftable"), u("--database"), database_->name(), u("--table"),
                                       u("Fdistribution"), u("--denominators"), u("1000000"), u("--replace")});
    waitForSignalHandler(*process);
    QThread::msleep(200);
    ::kill(pid_t(process->processId()), SIGINT);
    EXPECT_EQ(finish(*process).status, 130);
    EXPECT_EQ(database_->value(u("SELECT precious FROM \"Fdistribution\"")).toInt(), 7);
}

TEST(FTableInAFile, TheFileIsMadeAndRemovedAgainWhenItCannotBeDone)
{
    const QTemporaryDir directory;
    const auto make = [&](const QStringList &more) {
        return runProgram(QStringList{u("ftable"), u("--database"), u("new.db")} + more, directory.path());
    };
    const auto files = [&] { return QDir(directory.path()).entryList(QDir::Files); };
    EXPECT_EQ(make({u("--table"), u("sqlite_f")}).err,
              u("nuvostat: Cannot make table \"sqlite_f\" in \"new.db\": object name reserved for internal use: "
                "sqlite_f.\n"));
    EXPECT_EQ(files(), QStringList());
    EXPECT_EQ(make({u("--table"), u("\"odd\" %1 name"), u("--denominators"), u("1")}).out,
              u("Made table \"\"odd\" %1 name\" with 10 rows: numerators 1 to 10, denominators 1 to 1.\n"));
    EXPECT_EQ(files(), QStringList{u("new.db")});

    ASSERT_TRUE(QFile::remove(directory.filePath(u("new.db"))));
    // A limit on the size of files stands for a full disk.
    const Outcome full =
        runShell(u("ulimit -f 100; \"$nuvostat\" ftable --database new.db --table f"), directory.path());
    EXPECT_EQ(full.status, 3);
    EXPECT_EQ(full.err.count(u'\n'), 1);
    EXPECT_EQ(files(), QStringList());
    EXPECT_EQ(runProgram({u("ftable"), u("--database"), u("mongo://h/x"), u("--table"), u("f")}).status, 3);
}

TEST(FTableOnATerminal, ABarIsDrawnWhenItTakesLongerThanAMoment)
{
    const QTemporaryDir directory;
    const QString make =
        u("script -qec '\"$nuvostat\" ftable --database a.db --table f --replace --denominators %1 >/dev/null' "
          "/dev/null");
    EXPECT_EQ(runShell(make.arg(1), directory.path()).out, QString());
    const Outcome drawn = runShell(make.arg(10000), directory.path());
    EXPECT_TRUE(drawn.out.contains(u(" %  "))) << drawn.out.toStdString();
    EXPECT_TRUE(drawn.out.endsWith(u("\r\033[K")));
}

} // namespace
