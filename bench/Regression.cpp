// SPDX-License-Identifier: MIT
// What a regression costs, beside other ways to the same figures: 2500 observations of 10 control variables in
// SQLite.

#include "bench/Eigenfit.h"
#include "engine/Mlrtable.h"

#include <QApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

namespace {

constexpr int kRows = MaxObservations;
constexpr int kControls = MaxControls;

QString databaseFile;
std::vector<double> xByColumns(size_t{kRows} * kControls);
std::vector<double> yValues(kRows);

[[noreturn]] void stop(const QString &what)
{
    std::fprintf(stderr, "%s\n", qPrintable(what));
    std::exit(1);
}

void makeTable()
{
    std::mt19937 random(20240607);
    std::normal_distribution<double> normal;
    for (int i = 0; i < kRows; ++i) {
        double y = 3 + normal(random);
        for (int j = 0; j < kControls; ++j) {
            const double x = 10 + j + normal(random);
            xByColumns[size_t(j) * kRows + size_t(i)] = x;
            y += (j % 3 - 1) * x;
        }
        yValues[size_t(i)] = y;
    }
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("maker"));
        database.setDatabaseName(databaseFile);
        if (!database.open() || !database.transaction())
            stop(database.lastError().text());
        QString columns = QStringLiteral("y REAL");
        QString marks = QStringLiteral("?");
        for (int j = 1; j <= kControls; ++j) {
            columns += QStringLiteral(", x%1 REAL").arg(j);
            marks += QStringLiteral(", ?");
        }
        QSqlQuery query(database);
        if (!query.exec(QStringLiteral("CREATE TABLE data (%1)").arg(columns)) ||
            !query.prepare(QStringLiteral("INSERT INTO data VALUES (%1)").arg(marks)))
            stop(query.lastError().text());
        for (int i = 0; i < kRows; ++i) {
            query.bindValue(0, yValues[size_t(i)]);
            for (int j = 0; j < kControls; ++j)
                query.bindValue(j + 1, xByColumns[size_t(j) * kRows + size_t(i)]);
            if (!query.exec())
                stop(query.lastError().text());
        }
        if (!database.commit())
            stop(database.lastError().text());
    }
    QSqlDatabase::removeDatabase(QStringLiteral("maker"));
}

void define(TMLRTable &table)
{
    table.SetDatabaseName(databaseFile);
    table.SetTableName(QStringLiteral("data"));
    TDependentVar response;
    response.SetField(QStringLiteral("y"));
    table.SetResponse(response);
    for (int k = 1; k <= kControls; ++k) {
        TIndepVar control;
        control.SetField1(QStringLiteral("x%1").arg(k));
        control.SetTransformation(QStringLiteral("None"));
        table.SetControl(k, control);
    }
}

void ExecuteAlone(benchmark::State &state)
{
    TMLRTable table;
    define(table);
    table.Open();
    if (!table.ReLoad())
        stop(QStringLiteral("not loaded"));
    for (auto _ : state) {
        table.Execute();
        benchmark::DoNotOptimize(table.Getb(0));
    }
}
BENCHMARK(ExecuteAlone)->Unit(benchmark::kMicrosecond);

/// Every number that the command line's JSON shows.
void ExecuteAndAllFigures(benchmark::State &state)
{
    TMLRTable table;
    define(table);
    table.Open();
    if (!table.ReLoad())
        stop(QStringLiteral("not loaded"));
    for (auto _ : state) {
        table.Execute();
        double sum = table.GetSSE() + table.GetSSR() + table.GetSST() + table.GetMSE() + table.GetSyx() +
                     table.GetRSquared() + table.GetF() + table.GetyBar() + table.GetyStdErr() + table.GetyMin() +
                     table.GetyMax();
        for (int i = 0; i <= kControls; ++i) {
            sum += table.Getb(i) / std::sqrt(table.GetCovar(i, i));
            for (int j = 0; j <= kControls; ++j)
                sum += table.GetCovar(i, j) + table.GetCorr(i, j);
        }
        for (int j = 1; j <= kControls; ++j)
            sum += table.GetxBar(j) + table.GetxStdErr(j) + table.GetxMin(j) + table.GetxMax(j);
        for (int i = 1; i <= kRows; ++i)
            sum += table.GetyHat(i) + table.Gete(i);
        sum += double(table.DependentColumns().size());
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(ExecuteAndAllFigures)->Unit(benchmark::kMicrosecond);

/// The design matrix is made beforehand: Eigen gets what Execute has, observations in memory.
void EigenHouseholderQr(benchmark::State &state)
{
    std::vector<double> design(size_t{kRows}, 1.0);
    design.insert(design.end(), xByColumns.begin(), xByColumns.end());
    double coefficients[kControls + 1];
    for (auto _ : state) {
        eigenHouseholderQr(design.data(), yValues.data(), kRows, kControls + 1, coefficients);
        benchmark::DoNotOptimize(coefficients);
    }
}
BENCHMARK(EigenHouseholderQr)->Unit(benchmark::kMicrosecond);

void ReLoadFromRowsAlreadyRead(benchmark::State &state)
{
    TMLRTable table;
    define(table);
    table.Open();
    table.ReLoad();
    for (auto _ : state)
        benchmark::DoNotOptimize(table.ReLoad());
}
BENCHMARK(ReLoadFromRowsAlreadyRead)->Unit(benchmark::kMicrosecond);

void OpenAndFirstReLoad(benchmark::State &state)
{
    TMLRTable table;
    define(table);
    for (auto _ : state) {
        table.Open();
        benchmark::DoNotOptimize(table.ReLoad());
        table.Close();
    }
}
BENCHMARK(OpenAndFirstReLoad)->Unit(benchmark::kMicrosecond);

/// The first load alone, the dataset being open.
void FirstReLoadAfterOpen(benchmark::State &state)
{
    TMLRTable table;
    define(table);
    for (auto _ : state) {
        state.PauseTiming();
        table.Close();
        table.Open();
        state.ResumeTiming();
        benchmark::DoNotOptimize(table.ReLoad());
    }
}
BENCHMARK(FirstReLoadAfterOpen)->Unit(benchmark::kMicrosecond);

/// What the same columns cost with the bare driver, on a connection that is open.
void BareForwardOnlyScan(benchmark::State &state)
{
    const QString name = QStringLiteral("bare");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        database.setDatabaseName(databaseFile);
        database.open();
        for (auto _ : state) {
            QSqlQuery query(database);
            query.setForwardOnly(true);
            query.exec(QStringLiteral("SELECT y, x1, x2, x3, x4, x5, x6, x7, x8, x9, x10 FROM data"));
            double sum = 0;
            while (query.next()) {
                for (int column = 0; column <= kControls; ++column) {
                    if (!query.isNull(column))
                        sum += query.value(column).toDouble();
                }
            }
            benchmark::DoNotOptimize(sum);
        }
    }
    QSqlDatabase::removeDatabase(name);
}
BENCHMARK(BareForwardOnlyScan)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QTemporaryDir folder;
    databaseFile = folder.filePath(QStringLiteral("bench.db"));
    makeTable();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
