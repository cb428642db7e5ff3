// SPDX-License-Identifier: MIT
#include "engine/Mlrquery.h"
#include "platform/Modal.h"
#include "present/Mlroutpt.h"
#include "present/Mlrplot.h"
#include "present/Plotfile.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

// The windows of the largest fit, 2500 observations of ten control variables, drawn off screen.

namespace {

/// A database with nothing in it; the query makes its own records.
QString emptyDatabase()
{
    static const QTemporaryDir directory;
    const QString name = directory.filePath(QStringLiteral("empty.db"));
    if (!QFile(name).open(QIODevice::WriteOnly))
        std::abort();
    return name;
}

TMLRQuery &largestFit()
{
    static auto *const query = [] {
        auto *made = new TMLRQuery;
        QString sql = QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 2500) "
                                     "SELECT (i * 7919) % 1009 + i / 10.0 AS y");
        for (int j = 1; j <= MaxControls; ++j)
            sql += QStringLiteral(", (i * %1) % %2 / 3.0 AS x%3").arg(101 + 13 * j).arg(499 + 2 * j).arg(j);
        made->SetDatabaseName(emptyDatabase());
        made->SetSQL(sql + QStringLiteral(" FROM n"));
        made->ResponseVarY().SetField(QStringLiteral("y"));
        for (int j = 1; j <= MaxControls; ++j) {
            made->ControlVar(j).SetField1(QStringLiteral("x%1").arg(j));
            made->ControlVar(j).SetTransformation(QStringLiteral("None"));
        }
        made->Open();
        if (!made->ReLoad() || made->GetNumObs() != MaxObservations)
            std::abort();
        made->Execute();
        return made;
    }();
    return *query;
}

void paint(QDialog &dialog)
{
    dialog.show();
    QApplication::processEvents();
    benchmark::DoNotOptimize(dialog.grab());
}

/// From the call of Output() until the window is painted, and closing it again.
void openReport(benchmark::State &state)
{
    TMLRQuery &fit = largestFit();
    SetModalRunner([](QDialog &dialog) {
        paint(dialog);
        return 0;
    });
    for (auto _ : state)
        fit.Output();
    SetModalRunner({});
}

void openPlots(benchmark::State &state)
{
    TMLRQuery &fit = largestFit();
    SetModalRunner([](QDialog &dialog) {
        paint(dialog);
        return 0;
    });
    for (auto _ : state)
        fit.ShowPlots();
    SetModalRunner({});
}

/// A click on a plot's button until the plot is painted.
void drawPlot(benchmark::State &state, void (TMLRPlotForm::*draw)())
{
    TMLRPlotForm form;
    form.Load(largestFit());
    paint(form);
    for (auto _ : state) {
        (form.*draw)();
        benchmark::DoNotOptimize(form.grab());
    }
}

void drawCanvas(benchmark::State &state, int code)
{
    const nuvo::PlotData data = nuvo::plotData(largestFit());
    for (auto _ : state) {
        nuvo::PlotCanvas canvas;
        canvas.DrawDots(nuvo::makePlot(data, code));
        benchmark::DoNotOptimize(canvas.Image().constBits());
    }
}

void savePdf(benchmark::State &state)
{
    const QTemporaryDir directory;
    for (auto _ : state)
        nuvo::saveReport(largestFit(), directory.filePath(QStringLiteral("report.pdf")));
}

} // namespace

BENCHMARK(openReport)->Unit(benchmark::kMillisecond);
BENCHMARK(openPlots)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawPlot, Ecdf, &TMLRPlotForm::ECDFPlotBtnClick)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawPlot, Scatter, &TMLRPlotForm::ScatterPlot)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawCanvas, Ecdf, nuvo::EcdfPlot)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawCanvas, Scatter, nuvo::scatterPlot(1))->Unit(benchmark::kMillisecond);
BENCHMARK(savePdf)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
