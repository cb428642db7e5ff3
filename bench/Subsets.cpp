// SPDX-License-Identifier: MIT
// All subsets of ten control variables from observations in memory: cross products, sums of all subsets, the three
// best of each size with every criterion, and searches by partial F. bench/subsets.sh sets R beside it.
//
//   bench_subsets FILE.csv [benchmark options]     y and x1 to x10 with a header line

#include "engine/kernel/Bestsubsets.h"
#include "engine/kernel/Stepsearch.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace nuvo;

std::vector<std::vector<double>> columns; // the controls, then the response

int rows()
{
    return static_cast<int>(columns[0].size());
}

SubsetSums sumsOfColumns()
{
    std::vector<DataColumn> operands;
    for (const auto &column : columns)
        operands.push_back({column.data(), minMax(column.data(), rows()).largest()});
    CrossProducts products;
    crossProducts(operands, rows(), products);
    return {products, static_cast<int>(columns.size()) - 1};
}

std::vector<const double *> pointers()
{
    std::vector<const double *> result;
    for (const auto &column : columns)
        result.push_back(column.data());
    return result;
}

void read(const char *name)
{
    std::ifstream file(name);
    std::string line;
    if (!std::getline(file, line)) {
        std::fprintf(stderr, "No data in %s.\n", name);
        std::exit(1);
    }
    while (std::getline(file, line)) {
        std::istringstream cells(line);
        std::string cell;
        for (std::size_t j = 0; std::getline(cells, cell, ','); ++j) {
            if (columns.size() <= j)
                columns.emplace_back();
            columns[j].push_back(std::stod(cell));
        }
    }
    columns.push_back(columns.front());
    columns.erase(columns.begin());
}

/// What R's regsubsets with its summary does: everything from the observations on.
void ThreeBestOfEachSize(benchmark::State &state)
{
    const std::vector<const double *> data = pointers();
    for (auto _ : state)
        benchmark::DoNotOptimize(
            chooseSubsets(sumsOfColumns(), 3, static_cast<SubsetCriterion>(state.range(0)), data));
    state.SetLabel(state.range(0) == int(SubsetCriterion::Press) ? "by PRESS, of all subsets" : "by Cp");
}
BENCHMARK(ThreeBestOfEachSize)
    ->Arg(int(SubsetCriterion::Cp))
    ->Arg(int(SubsetCriterion::Press))
    ->Unit(benchmark::kMicrosecond);

void CrossProductsAlone(benchmark::State &state)
{
    std::vector<DataColumn> operands;
    for (const auto &column : columns)
        operands.push_back({column.data(), minMax(column.data(), rows()).largest()});
    CrossProducts products;
    for (auto _ : state) {
        crossProducts(operands, rows(), products);
        benchmark::DoNotOptimize(products);
    }
}
BENCHMARK(CrossProductsAlone)->Unit(benchmark::kMicrosecond);

void SumsOfAllSubsets(benchmark::State &state)
{
    const CrossProducts products = sumsOfColumns().products();
    const int m = static_cast<int>(columns.size()) - 1;
    for (auto _ : state)
        benchmark::DoNotOptimize(SubsetSums(products, m));
}
BENCHMARK(SumsOfAllSubsets)->Unit(benchmark::kMicrosecond);

void Search(benchmark::State &state)
{
    const auto method = static_cast<StepMethod>(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(
            searchSteps(sumsOfColumns(), method, probabilityThreshold(0.05), probabilityThreshold(0.1)));
    state.SetLabel(method == StepMethod::Forward    ? "forward"
                   : method == StepMethod::Backward ? "backward"
                                                    : "stepwise");
}
BENCHMARK(Search)->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "Usage: bench_subsets FILE.csv\n");
        return 2;
    }
    read(argv[1]);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
