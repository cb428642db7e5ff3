// SPDX-License-Identifier: MIT
// What reading records costs, beside the bare driver. The table has an integer key and 11 columns of doubles.

#include "platform/Query.h"
#include "platform/Table.h"

#include <QApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int kColumns = 11;
constexpr int kRows = 2500;

QString databaseFile;

void exec(QSqlDatabase &database, const QString &sql)
{
    QSqlQuery query(database);
    if (query.exec(sql))
        return;
    std::fprintf(stderr, "%s: %s\n", qPrintable(sql), qPrintable(query.lastError().text()));
    std::exit(1);
}

void makeTables()
{
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("maker"));
        database.setDatabaseName(databaseFile);
        database.open();
        QString columns;
        QString values;
        for (int i = 0; i < kColumns; ++i) {
            columns += QStringLiteral(", x%1 REAL").arg(i);
            values += QStringLiteral(", (i * %1) %% 1009 + %2").arg(i + 3).arg(0.1 * i);
        }
        values.replace(QStringLiteral("%%"), QStringLiteral("%"));
        const QString numbers =
            QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) ");
        exec(database, QStringLiteral("CREATE TABLE numbers (id INTEGER PRIMARY KEY%1)").arg(columns));
        exec(database, numbers.arg(kRows) + QStringLiteral("INSERT INTO numbers SELECT i%1 FROM n").arg(values));
        exec(database, QStringLiteral("CREATE TABLE bare (%1)").arg(columns.mid(2)));
        exec(database, numbers.arg(kRows) + QStringLiteral("INSERT INTO bare SELECT %1 FROM n").arg(values.mid(2)));
        exec(database, QStringLiteral("CREATE TABLE f (Numerator INTEGER, Denominator INTEGER, \"95 Percent\" REAL, "
                                      "PRIMARY KEY (Numerator, Denominator))"));
        exec(database,
             numbers.arg(25000) +
                 QStringLiteral("INSERT INTO f SELECT (i - 1) / 2500 + 1, (i - 1) % 2500 + 1, 1.0 / i FROM n"));
        database.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("maker"));
}

QString columnList()
{
    QStringList names;
    for (int i = 0; i < kColumns; ++i)
        names.append(QStringLiteral("x%1").arg(i));
    return names.join(u',');
}

/// The bar: every value of the same columns through QSqlQuery.
void bareScan(benchmark::State &state, const char *table)
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bare"));
    database.setDatabaseName(databaseFile);
    database.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    database.open();
    for (auto _ : state) {
        QSqlQuery query(database);
        query.setForwardOnly(true);
        query.exec(QStringLiteral("SELECT %1 FROM %2").arg(columnList(), QString::fromLatin1(table)));
        double sum = 0;
        while (query.next()) {
            for (int i = 0; i < kColumns; ++i)
                sum += query.value(i).toDouble();
        }
        benchmark::DoNotOptimize(sum);
    }
    database.close();
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(QStringLiteral("bare"));
}

std::vector<TField *> numberFields(TDataSet &dataset)
{
    std::vector<TField *> fields;
    for (int i = 0; i < kColumns; ++i)
        fields.push_back(&dataset.FieldByName(QStringLiteral("x%1").arg(i)));
    return fields;
}

double walk(TDataSet &dataset, const std::vector<TField *> &fields)
{
    std::array<double, kColumns> sums = {}; // one sum alone would be a chain of additions
    for (dataset.First(); !dataset.Eof(); dataset.Next()) {
        for (size_t i = 0; i < fields.size(); ++i) {
            if (!fields[i]->IsNull())
                sums[i] += fields[i]->AsFloat();
        }
    }
    return sums[0] + sums[kColumns - 1];
}

void firstScan(benchmark::State &state, TDataSet &dataset)
{
    dataset.SetDatabaseName(databaseFile);
    for (auto _ : state) {
        state.PauseTiming();
        dataset.Close();
        dataset.Open();
        const std::vector<TField *> fields = numberFields(dataset);
        state.ResumeTiming();
        const nuvo::ControlsOff quiet(dataset);
        benchmark::DoNotOptimize(walk(dataset, fields));
    }
}

void firstScanOfTable(benchmark::State &state, const char *name)
{
    TTable table;
    table.SetTableName(QString::fromLatin1(name));
    firstScan(state, table);
}

void firstScanOfQuery(benchmark::State &state)
{
    TQuery query;
    query.SetSQL(QStringLiteral("SELECT %1 FROM numbers").arg(columnList()));
    firstScan(state, query);
}

void firstScanWithCount(benchmark::State &state)
{
    TTable table;
    table.SetTableName(QStringLiteral("numbers"));
    table.SetDatabaseName(databaseFile);
    for (auto _ : state) {
        state.PauseTiming();
        table.Close();
        table.Open();
        const std::vector<TField *> fields = numberFields(table);
        state.ResumeTiming();
        const nuvo::ControlsOff quiet(table);
        benchmark::DoNotOptimize(table.RecordCount());
        benchmark::DoNotOptimize(walk(table, fields));
    }
}

void scanFromMemory(benchmark::State &state)
{
    TTable table;
    table.SetDatabaseName(databaseFile);
    table.SetTableName(QStringLiteral("numbers"));
    table.Open();
    const std::vector<TField *> fields = numberFields(table);
    const nuvo::ControlsOff quiet(table);
    walk(table, fields);
    for (auto _ : state)
        benchmark::DoNotOptimize(walk(table, fields));
}

void openAndClose(benchmark::State &state)
{
    TTable table;
    table.SetDatabaseName(databaseFile);
    table.SetTableName(QStringLiteral("numbers"));
    for (auto _ : state) {
        table.Open();
        table.Close();
    }
}

/// Key searches all over a table of 25000 rows; (1, n) alone when the argument is 1.
void findKey(benchmark::State &state)
{
    TTable table;
    table.SetDatabaseName(databaseFile);
    table.SetTableName(QStringLiteral("f"));
    table.Open();
    int n = 0;
    for (auto _ : state) {
        n = (n + 997) % 2500;
        const int numerator = state.range(0) == 1 ? 1 : n % 10 + 1;
        if (!table.FindKey({numerator, n + 1}))
            state.SkipWithError("not found");
    }
}

BENCHMARK_CAPTURE(bareScan, numbers, "numbers")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(firstScanOfTable, numbers, "numbers")->Unit(benchmark::kMicrosecond);
BENCHMARK(firstScanWithCount)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(bareScan, without_key, "bare")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(firstScanOfTable, without_key, "bare")->Unit(benchmark::kMicrosecond);
BENCHMARK(firstScanOfQuery)->Unit(benchmark::kMicrosecond);
BENCHMARK(scanFromMemory)->Unit(benchmark::kMicrosecond);
BENCHMARK(openAndClose)->Unit(benchmark::kMicrosecond);
BENCHMARK(findKey)->ArgName("numerator_1_only")->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    const QTemporaryDir directory;
    databaseFile = directory.filePath(QStringLiteral("bench.db"));
    makeTables();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
