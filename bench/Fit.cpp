// SPDX-License-Identifier: MIT
#include "bench/Eigenfit.h"
#include "engine/kernel/Instructionset.h"
#include "engine/kernel/Normalequations.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

// A fit of the largest size, 2500 observations of ten control variables, in its parts and as a whole, beside the same
// least squares by Eigen in plain doubles.

using namespace nuvo;

namespace {

constexpr int observations = MaxObservations;
constexpr int controls = MaxControls;

std::vector<std::vector<double>> makeData()
{
    std::mt19937_64 random(1);
    std::normal_distribution<double> normal(5, 2);
    std::vector<std::vector<double>> data(controls + 1, std::vector<double>(observations));
    for (std::vector<double> &column : data)
        for (double &value : column)
            value = normal(random);
    return data;
}

/// The controls and the response as the last one.
const std::vector<std::vector<double>> &data()
{
    static const std::vector<std::vector<double>> all = makeData();
    return all;
}

struct Fit
{
    std::vector<const double *> values;
    std::vector<DataColumn> columns;
    std::vector<double> mean = std::vector<double>(controls + 1);
    std::vector<double> deviation = std::vector<double>(controls + 1);
    CrossProducts products;
    NormalEquations equations;
    std::vector<int> dependent;

    Fit()
    {
        for (const std::vector<double> &column : data()) {
            values.push_back(column.data());
            columns.push_back({column.data(), 0});
        }
        all();
    }

    void extremes()
    {
        for (DataColumn &column : columns)
            column.largest = minMax(column.values, observations).largest();
    }
    void findMeans() { means(values, observations, mean.data()); }
    void findDeviations() { standardDeviations(values, mean.data(), observations, deviation.data()); }
    void multiply() { crossProducts(columns, observations, products); }
    void solve() { equations = solveNormalEquations(products, controls); }
    void findDependent() { dependent = dependentColumns(products, controls); }

    void all()
    {
        extremes();
        findMeans();
        findDeviations();
        multiply();
        solve();
        findDependent();
    }
};

void run(benchmark::State &state, void (Fit::*part)())
{
    Fit fit;
    for (auto _ : state) {
        (fit.*part)();
        benchmark::DoNotOptimize(&fit);
        benchmark::ClobberMemory();
    }
}

void runWithoutAvx2(benchmark::State &state)
{
    allowAvx2(false);
    run(state, &Fit::all);
    allowAvx2(true);
}

void runEigen(benchmark::State &state, void (*method)(const double *, const double *, int, int, double *))
{
    std::vector<double> design(observations, 1.0);
    for (int j = 0; j < controls; ++j)
        design.insert(design.end(), data()[j].begin(), data()[j].end());
    double coefficients[MaxParameters];
    for (auto _ : state) {
        method(design.data(), data().back().data(), observations, controls + 1, coefficients);
        benchmark::DoNotOptimize(coefficients);
    }
}

} // namespace

BENCHMARK_CAPTURE(run, Extremes, &Fit::extremes)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, Means, &Fit::findMeans)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, Deviations, &Fit::findDeviations)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, CrossProducts, &Fit::multiply)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, NormalEquations, &Fit::solve)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, DependentColumns, &Fit::findDependent)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, All, &Fit::all)->Unit(benchmark::kMicrosecond);
BENCHMARK(runWithoutAvx2)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(runEigen, HouseholderQr, eigenHouseholderQr)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(runEigen, Ldlt, eigenLdlt)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
