// SPDX-License-Identifier: MIT
// Choosing a model among ten control variables: whole runs of the methods, their dialogs included, by the written
// rule and by the textbook's, and the written rule's 1023 loads and fits alone, with the cache that a run has and
// without. bench/select.sh makes the table and sets R's leaps and step and gretl beside them.
//
//   bench_select DATABASE [benchmark options]     a table "data" with y and x1 to x10

#include "engine/Columncache.h"
#include "engine/Mlrtable.h"
#include "platform/Messages.h"
#include "select/Bkmain.h"
#include "select/Choice.h"
#include "select/Cvmain.h"
#include "select/Fwdmain.h"
#include "select/Stepmain.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <functional>
#include <optional>

namespace {

constexpr int kRepetitions = 20;

QString databaseFile;

void define(TMLRTable &table)
{
    TDependentVar response;
    response.SetField(QStringLiteral("y"));
    table.SetResponse(response);
    for (int k = 1; k <= MaxControls; ++k) {
        TIndepVar control;
        control.SetField1(QStringLiteral("x%1").arg(k));
        control.SetTransformation(QStringLiteral("None"));
        table.SetControl(k, control);
    }
}

/// A table that is open, loaded and fitted with all its variables, as a form is that has a button for the run.
class Fixture : public benchmark::Fixture
{
public:
    void SetUp(benchmark::State &state) override
    {
        table_.emplace();
        table_->SetDatabaseName(databaseFile);
        table_->SetTableName(QStringLiteral("data"));
        table_->Open();
        restore(state);
    }
    void TearDown(benchmark::State &) override { table_.reset(); }

protected:
    void restore(benchmark::State &state)
    {
        define(*table_);
        if (!table_->ReLoad())
            state.SkipWithError("not loaded");
        table_->Execute();
    }
    /// The loads and fits of a run, and the figures that it reads.
    double everySubset()
    {
        const QString texts[] = {QStringLiteral("Undefined"), QStringLiteral("None")};
        double sum = 0;
        for (unsigned subset = 1; subset < 1u << MaxControls; ++subset) {
            for (int k = 1; k <= MaxControls; ++k)
                table_->ControlVar(k).SetTransformation(texts[subset >> (MaxControls - k) & 1]);
            if (!table_->ReLoad())
                continue;
            table_->Execute();
            sum += table_->GetRSquared() + table_->GetMSE() + table_->GetF();
        }
        return sum;
    }

    std::optional<TMLRTable> table_;
};

BENCHMARK_DEFINE_F(Fixture, OptimalRun)(benchmark::State &state)
{
    TOptimizeMLR search;
    search.SetTable(&*table_);
    search.SetModelsToSave(20);
    search.SetOptCriteria(TOptimizeMLR::MinSsquared);
    search.Run(); // the first one makes fonts and pictures
    for (auto _ : state) {
        state.PauseTiming();
        restore(state);
        state.ResumeTiming();
        search.Run();
    }
    if (search.ModelCount() != 20)
        state.SkipWithError("models are missing");
}

BENCHMARK_DEFINE_F(Fixture, EverySubset)(benchmark::State &state)
{
    for (auto _ : state) {
        std::vector<TIndepVar> terms;
        for (int k = 1; k <= MaxControls; ++k)
            terms.push_back(table_->ControlVar(k));
        table_->SetColumnCache(std::make_shared<nuvo::ColumnCache>(*table_, terms));
        benchmark::DoNotOptimize(everySubset());
        table_->SetColumnCache(nullptr);
    }
}

BENCHMARK_DEFINE_F(Fixture, EverySubsetWithoutCache)(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(everySubset());
}

/// A run by the textbook's rule, its dialog included.
template <class Method, class Prepare>
void textbook(benchmark::State &state, TMLRTable &table, const std::function<void()> &restore, Prepare prepare)
{
    Method search;
    search.SetTable(&table);
    search.SetRule(TCorvane::Textbook);
    prepare(search);
    search.Run(); // the first one makes fonts and pictures
    for (auto _ : state) {
        state.PauseTiming();
        restore();
        state.ResumeTiming();
        search.Run();
    }
    if (!search.Choice() || search.Choice()->end != nuvo::Choice::End::Chosen)
        state.SkipWithError("nothing was chosen");
}

BENCHMARK_DEFINE_F(Fixture, AllSubsetsThreeOfEachSize)(benchmark::State &state)
{
    const bool press = state.range(0) != 0;
    state.SetLabel(press ? "by PRESS of all subsets" : "by Cp");
    textbook<TOptimizeMLR>(
        state, *table_, [&] { restore(state); },
        [&](TOptimizeMLR &search) {
            search.SetModelsPerSize(3);
            search.SetOptCriteria(press ? TOptimizeMLR::PRESS : TOptimizeMLR::Cp);
        });
}

BENCHMARK_DEFINE_F(Fixture, Forward)(benchmark::State &state)
{
    textbook<TFwdSelectMLR>(
        state, *table_, [&] { restore(state); },
        [](TFwdSelectMLR &search) {
            search.SetShowProgress(true);
            search.SetP(0.05);
        });
}

BENCHMARK_DEFINE_F(Fixture, Backward)(benchmark::State &state)
{
    textbook<TBackElimMLR>(
        state, *table_, [&] { restore(state); },
        [](TBackElimMLR &search) {
            search.SetShowProgress(true);
            search.SetP(0.05);
        });
}

BENCHMARK_DEFINE_F(Fixture, Stepwise)(benchmark::State &state)
{
    textbook<TStepWiseMLR>(
        state, *table_, [&] { restore(state); },
        [](TStepWiseMLR &search) {
            search.SetShowProgress(true);
            search.SetPIn(0.05);
            search.SetPOut(0.1);
        });
}

void eachOnItsOwn(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Iterations(1)->Repetitions(kRepetitions)->ReportAggregatesOnly()->Unit(benchmark::kMillisecond);
}

BENCHMARK_REGISTER_F(Fixture, OptimalRun)->Apply(eachOnItsOwn);
BENCHMARK_REGISTER_F(Fixture, AllSubsetsThreeOfEachSize)->Arg(0)->Arg(1)->Apply(eachOnItsOwn);
BENCHMARK_REGISTER_F(Fixture, Forward)->Apply(eachOnItsOwn);
BENCHMARK_REGISTER_F(Fixture, Backward)->Apply(eachOnItsOwn);
BENCHMARK_REGISTER_F(Fixture, Stepwise)->Apply(eachOnItsOwn);
BENCHMARK_REGISTER_F(Fixture, EverySubset)->Apply(eachOnItsOwn);
BENCHMARK_REGISTER_F(Fixture, EverySubsetWithoutCache)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "Usage: bench_select DATABASE [benchmark options]\n");
        return 2;
    }
    databaseFile = QString::fromLocal8Bit(argv[1]);
    SetMessageHandler([](const QString &, TMsgDlgType, unsigned, int) { return int(mrOk); });
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
