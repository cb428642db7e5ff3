// SPDX-License-Identifier: MIT
#include "engine/kernel/Inference.h"
#include "engine/kernel/Diagnostics.h"
#include "engine/kernel/Influence.h"
#include "engine/kernel/Instructionset.h"
#include "engine/kernel/Robust.h"
#include "engine/kernel/Shapirowilk.h"
#include "engine/kernel/White.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

// What a fit of the largest size, 2500 observations of ten control variables, tells beyond its coefficients: in parts
// and together. bench/inference.R times the same figures in R, on data of the same kind.

using namespace nuvo;

namespace {

struct Data
{
    std::vector<std::vector<double>> columns;
    ObservedColumns observed;
    CrossProducts products;

    Data() : columns(MaxControls + 1, std::vector<double>(MaxObservations))
    {
        std::mt19937_64 random(1);
        std::normal_distribution<double> normal(5, 2);
        for (std::vector<double> &column : columns)
            for (double &value : column)
                value = normal(random);
        observed.n = MaxObservations;
        observed.m = MaxControls;
        std::vector<DataColumn> operands;
        for (int j = 0; j < MaxControls; ++j)
            observed.x[j + 1] = columns[j].data();
        observed.y = columns.back().data();
        for (const std::vector<double> &column : columns)
            operands.push_back({column.data(), minMax(column.data(), MaxObservations).largest()});
        crossProducts(operands, MaxObservations, products);
    }
};

const Data &data()
{
    static const Data all;
    return all;
}

const Factors &factors()
{
    static const Factors result = factorize(data().products, data().observed);
    return result;
}

const Observed &observed()
{
    static const Observed result = observe(factors(), data().observed);
    return result;
}

template <class Work>
void run(benchmark::State &state, Work work)
{
    data();
    factors();
    observed();
    for (auto _ : state) {
        auto result = work();
        benchmark::DoNotOptimize(&result);
        benchmark::ClobberMemory();
    }
}

void everything(benchmark::State &state)
{
    run(state, [] {
        const Factors fit = factorize(data().products, data().observed);
        const Observed rows = observe(fit, data().observed);
        const Inference inference = infer(fit, 0.95);
        const Diagnostics diagnostics = diagnose(fit, rows, data().observed);
        const Influence single = influence(fit, rows);
        return inference.aic + diagnostics.press + single.cook[0];
    });
}

void everythingWithoutAvx2(benchmark::State &state)
{
    allowAvx2(false);
    everything(state);
    allowAvx2(true);
}

std::vector<double> residuals()
{
    return observed().residual;
}

std::vector<double> squares()
{
    std::vector<double> result = observed().residual;
    for (double &value : result)
        value *= value;
    return result;
}

} // namespace

BENCHMARK(everything)->Unit(benchmark::kMicrosecond);
BENCHMARK(everythingWithoutAvx2)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, factorize, [] {
    return factorize(data().products, data().observed);
})->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, observe, [] { return observe(factors(), data().observed); })->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, inference, [] { return infer(factors(), 0.95); })->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, influence, [] { return influence(factors(), observed()); })->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, diagnostics, [] {
    return diagnose(factors(), observed(), data().observed);
})->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, white, [e = squares()] {
    return whiteTest(factors(), observed(), data().observed, e);
})->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, shapiroWilk, [e = residuals()] { return shapiroWilk(e); })->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, hc3, [] {
    return robust(factors(), observed(), RobustKind::Hc3);
})->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, hac, [] {
    return robust(factors(), observed(), RobustKind::Hac);
})->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
