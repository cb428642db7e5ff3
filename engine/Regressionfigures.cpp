// SPDX-License-Identifier: MIT
#include "engine/Fitfigures.h"
#include "engine/Regressionprivate.h"
#include "engine/Termvalue.h"

#include <limits>

// The accessors of what a fit tells beyond the report: each hands on a figure of nuvo::FitFigures.

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

/// Element `index` of a figure, or NaN.
double at(const std::vector<double> &figures, int index)
{
    return index >= 0 && std::size_t(index) < figures.size() ? figures[std::size_t(index)] : none;
}

/// What `figure` makes of the figures, or a NaN where there are none.
template <class Figure>
double of(const std::shared_ptr<const nuvo::FitFigures> &figures, Figure figure)
{
    return figures ? figure(*figures) : none;
}

template <class Test>
nuvo::TestResult testOf(const std::shared_ptr<const nuvo::FitFigures> &figures, Test nuvo::Diagnostics::*test)
{
    return figures ? figures->diagnostics().*test : nuvo::TestResult{none, none, none};
}

} // namespace

std::shared_ptr<const nuvo::FitFigures> TRegression::Figures() const
{
    if (d->lastFit && (!d->figures || d->figures->fit() != d->lastFit))
        d->figures = std::make_shared<const nuvo::FitFigures>(d->lastFit);
    return d->lastFit ? d->figures : nullptr;
}

std::array<double, 2> TRegression::GetConfidence(int j, double level) const
{
    const auto figures = Figures();
    return figures && j >= 0 && j <= figures->fit()->m() ? figures->confidence(j, level)
                                                         : std::array<double, 2>{none, none};
}

double TRegression::GetPValue(int j) const
{
    return of(Figures(), [=](const nuvo::FitFigures &figures) { return at(figures.inference().pValues, j); });
}

double TRegression::GetFPValue() const
{
    return of(Figures(), [](const nuvo::FitFigures &figures) { return figures.inference().fPValue; });
}

double TRegression::GetAdjustedRSquared() const
{
    return of(Figures(), [](const nuvo::FitFigures &figures) { return figures.inference().adjustedRSquared; });
}

double TRegression::GetLogLikelihood() const
{
    return of(Figures(), [](const nuvo::FitFigures &figures) { return figures.inference().logLikelihood; });
}

double TRegression::GetAIC() const
{
    return of(Figures(), [](const nuvo::FitFigures &figures) { return figures.inference().aic; });
}

double TRegression::GetAICc() const
{
    return of(Figures(), [](const nuvo::FitFigures &figures) { return figures.inference().aicc; });
}

double TRegression::GetBIC() const
{
    return of(Figures(), [](const nuvo::FitFigures &figures) { return figures.inference().bic; });
}

double TRegression::GetHQC() const
{
    return of(Figures(), [](const nuvo::FitFigures &figures) { return figures.inference().hqc; });
}

double TRegression::GetStandardized(int j) const
{
    return of(Figures(),
              [=](const nuvo::FitFigures &figures) { return at(figures.inference().standardized, j - 1); });
}

double TRegression::GetTolerance(int j) const
{
    return of(Figures(), [=](const nuvo::FitFigures &figures) { return at(figures.inference().tolerance, j - 1); });
}

double TRegression::GetVIF(int j) const
{
    return of(Figures(), [=](const nuvo::FitFigures &figures) { return at(figures.inference().vif, j - 1); });
}

double TRegression::GetPartialCorrelation(int j) const
{
    return of(Figures(),
              [=](const nuvo::FitFigures &figures) { return at(figures.inference().partialCorrelations, j - 1); });
}

double TRegression::GetSemipartialCorrelation(int j) const
{
    return of(Figures(), [=](const nuvo::FitFigures &figures) {
        return at(figures.inference().semipartialCorrelations, j - 1);
    });
}

double TRegression::GetSequentialSumOfSquares(int j) const
{
    return of(Figures(), [=](const nuvo::FitFigures &figures) {
        return at(figures.inference().sequentialSumsOfSquares, j - 1);
    });
}

double TRegression::GetPartialSumOfSquares(int j) const
{
    return of(Figures(),
              [=](const nuvo::FitFigures &figures) { return at(figures.inference().partialSumsOfSquares, j - 1); });
}

double TRegression::GetConditionIndex(int k) const
{
    return of(Figures(),
              [=](const nuvo::FitFigures &figures) { return at(figures.inference().conditionIndices, k - 1); });
}

double TRegression::GetDurbinWatson() const
{
    return of(Figures(), [](const nuvo::FitFigures &figures) { return figures.diagnostics().durbinWatson; });
}

double TRegression::GetPRESS() const
{
    return of(Figures(), [](const nuvo::FitFigures &figures) { return figures.diagnostics().press; });
}

double TRegression::GetPredictedRSquared() const
{
    return of(Figures(), [](const nuvo::FitFigures &figures) { return figures.diagnostics().predictedRSquared; });
}

nuvo::TestResult TRegression::GetBreuschPagan() const
{
    return testOf(Figures(), &nuvo::Diagnostics::breuschPagan);
}

nuvo::TestResult TRegression::GetWhite() const
{
    return testOf(Figures(), &nuvo::Diagnostics::white);
}

nuvo::TestResult TRegression::GetJarqueBera() const
{
    return testOf(Figures(), &nuvo::Diagnostics::jarqueBera);
}

nuvo::TestResult TRegression::GetShapiroWilk() const
{
    return testOf(Figures(), &nuvo::Diagnostics::shapiroWilk);
}

nuvo::TestResult TRegression::GetRESET() const
{
    return testOf(Figures(), &nuvo::Diagnostics::reset);
}

double TRegression::GetLeverage(int i) const
{
    return of(Figures(), [=](const nuvo::FitFigures &figures) { return at(figures.influence().leverage, i - 1); });
}

double TRegression::GetStandardizedResidual(int i) const
{
    return of(Figures(),
              [=](const nuvo::FitFigures &figures) { return at(figures.influence().standardizedResiduals, i - 1); });
}

double TRegression::GetStudentizedResidual(int i) const
{
    return of(Figures(),
              [=](const nuvo::FitFigures &figures) { return at(figures.influence().studentizedResiduals, i - 1); });
}

double TRegression::GetCook(int i) const
{
    return of(Figures(), [=](const nuvo::FitFigures &figures) { return at(figures.influence().cook, i - 1); });
}

double TRegression::GetDFFITS(int i) const
{
    return of(Figures(), [=](const nuvo::FitFigures &figures) { return at(figures.influence().dffits, i - 1); });
}

double TRegression::GetCovRatio(int i) const
{
    return of(Figures(), [=](const nuvo::FitFigures &figures) { return at(figures.influence().covRatio, i - 1); });
}

double TRegression::GetDFBETAS(int i, int j) const
{
    return of(Figures(), [=](const nuvo::FitFigures &figures) {
        const auto &columns = figures.influence().dfbetas;
        return j >= 0 && std::size_t(j) < columns.size() ? at(columns[std::size_t(j)], i - 1) : none;
    });
}

double TRegression::GetRobustStdErr(nuvo::RobustKind kind, int j) const
{
    return of(Figures(), [=](const nuvo::FitFigures &figures) { return at(figures.robust(kind).standardErrors, j); });
}

double TRegression::GetRobustCovar(nuvo::RobustKind kind, int i, int j) const
{
    return of(Figures(), [=](const nuvo::FitFigures &figures) {
        const auto &rows = figures.robust(kind).covariance;
        return i >= 0 && std::size_t(i) < rows.size() ? at(rows[std::size_t(i)], j) : none;
    });
}

double TRegression::GetRobustPValue(nuvo::RobustKind kind, int j) const
{
    return of(Figures(), [=](const nuvo::FitFigures &figures) { return at(figures.robust(kind).pValues, j); });
}

nuvo::Prediction TRegression::PredictInterval(const double *values, double level) const
{
    const auto figures = Figures();
    if (!figures)
        return {none, none, {none, none}, {none, none}};
    return figures->predict({values + 1, std::size_t(figures->fit()->m())}, level);
}

nuvo::Prediction TRegression::PredictAt(const std::vector<std::pair<QString, double>> &fields, double level) const
{
    const nuvo::TermValues terms = nuvo::termValues({d->columns.data(), std::size_t(d->m)}, fields);
    const auto figures = Figures();
    if (!ResultsCurrent() || !figures)
        return {none, none, {none, none}, {none, none}};
    return figures->predict(terms.values, terms.low, level);
}
