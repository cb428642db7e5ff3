// SPDX-License-Identifier: MIT
// The sums of a million rows of ten controls and a response from memory, and the sample drawn from them, beside the
// plain loop over doubles.
//
//   bench_patternsums [benchmark options]

#include "engine/kernel/Patternsums.h"
#include "engine/kernel/Evensample.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <vector>

namespace {

using namespace nuvo;

constexpr std::size_t kRows = 1000000;
constexpr std::size_t kColumns = MaxControls + 1;
constexpr std::size_t kPortion = 1024; // as a scan hands rows on
constexpr std::uint32_t kUsable = (std::uint32_t(1) << kColumns) - 1;

const std::vector<std::vector<double>> &columns()
{
    static const std::vector<std::vector<double>> result = [] {
        std::mt19937_64 random(1);
        std::normal_distribution<double> normal;
        std::vector<std::vector<double>> made(kColumns, std::vector<double>(kRows));
        for (auto &column : made)
            for (double &value : column)
                value = 100 + normal(random);
        return made;
    }();
    return result;
}

/// Usable bits: of every `nulls`-th row one control is null, 0 for none.
std::vector<std::uint32_t> usableBits(std::size_t nulls)
{
    std::vector<std::uint32_t> bits(kRows, kUsable);
    for (std::size_t i = 0; nulls > 0 && i < kRows; i += nulls)
        bits[i] &= ~(std::uint32_t(1) << (i / nulls % MaxControls));
    return bits;
}

void SumsByPattern(benchmark::State &state)
{
    const std::vector<std::uint32_t> usable = usableBits(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        PatternSums sums(MaxControls);
        for (std::size_t from = 0; from < kRows; from += kPortion) {
            const double *values[kColumns];
            for (std::size_t j = 0; j < kColumns; ++j)
                values[j] = columns()[j].data() + from;
            sums.add(values, std::span(usable).subspan(from, std::min(kPortion, kRows - from)));
        }
        benchmark::DoNotOptimize(sums.products(1023));
    }
    state.SetLabel(state.range(0) == 0 ? "no nulls" : "a null in one of " + std::to_string(state.range(0)) + " rows");
}
BENCHMARK(SumsByPattern)->Arg(0)->Arg(100)->Arg(3)->Unit(benchmark::kMillisecond);

void PlainDoubleLoop(benchmark::State &state)
{
    for (auto _ : state) {
        double products[kColumns + 1][kColumns + 1] = {};
        for (std::size_t i = 0; i < kRows; ++i) {
            double row[kColumns + 1] = {1};
            for (std::size_t j = 0; j < kColumns; ++j)
                row[j + 1] = columns()[j][i];
            for (std::size_t a = 0; a <= kColumns; ++a)
                for (std::size_t b = a; b <= kColumns; ++b)
                    products[a][b] += row[a] * row[b];
        }
        benchmark::DoNotOptimize(products);
    }
}
BENCHMARK(PlainDoubleLoop)->Unit(benchmark::kMillisecond);

void Sample(benchmark::State &state)
{
    const double *values[kColumns];
    for (std::size_t j = 0; j < kColumns; ++j)
        values[j] = columns()[j].data();
    for (auto _ : state) {
        EvenSample sample(kColumns);
        for (std::size_t i = 0; i < kRows; ++i)
            sample.add(values, i, static_cast<std::int64_t>(i) + 1);
        benchmark::DoNotOptimize(sample);
    }
}
BENCHMARK(Sample)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
