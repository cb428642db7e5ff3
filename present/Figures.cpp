// SPDX-License-Identifier: MIT
#include "present/Figures.h"

#include "engine/Fit.h"
#include "engine/Fitfigures.h"
#include "engine/Leftout.h"
#include "engine/Regression.h"
#include "engine/kernel/Factors.h"
#include "engine/kernel/Maxdata.h"
#include "platform/Dataset.h"
#include "platform/Errors.h"

#include <algorithm>
#include <cmath>

namespace nuvo {

namespace {

bool isFinite(const Figures::Numbers &values)
{
    return std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); });
}

void takeObservations(const TRegression &regression, Figures &figures)
{
    const int n = regression.SampleSize();
    const auto numbers = [n](const auto &at) {
        Figures::Numbers values;
        values.reserve(n);
        for (int i = 1; i <= n; ++i)
            values.push_back(at(i));
        return values;
    };
    figures.observed = numbers([&](int i) { return regression.Gety(i); });
    figures.fitted = numbers([&](int i) { return regression.GetyHat(i); });
    figures.residuals = numbers([&](int i) { return regression.Gete(i); });
    for (int j = 1; j <= figures.controls; ++j)
        figures.x.push_back(numbers([&](int i) { return regression.Getx(i, j); }));
    for (int i = 1; i <= n; ++i)
        figures.record.push_back(regression.GetRecord(i));
    // A quotient by zero or by a null, say.
    if (!isFinite(figures.observed))
        figures.infiniteTerms.append(figures.response.term);
    for (std::size_t j = 0; j < figures.x.size(); ++j) {
        if (!isFinite(figures.x[j]))
            figures.infiniteTerms.append(figures.columns[j].term);
    }
    for (const int j : regression.DependentColumns())
        figures.dependentTerms.append(figures.columns[j - 1].term);
    figures.digits = regression.GetDigits();
}

/// Records in the dataset: as many as a load walked that went to the end; else they are counted where warnings ask
/// for that, as it can take as long as reading them all.
std::optional<long long> recordTotal(TRegression &regression)
{
    if (const std::optional<qint64> total = regression.RecordsTotal())
        return *total;
    if (!regression.DataSet().Active())
        return {};
    if (regression.UseOfRecords() != RecordUse::First && !regression.ShowWarnings())
        return {};
    const bool walked = regression.GetNumObs() < MaxObservations && !regression.LoadStopped();
    if (walked && regression.RecordsRead() > 0)
        return regression.RecordsRead();
    if (regression.ShowWarnings() || walked)
        return regression.DataSet().RecordCount();
    return {};
}

/// None where the records cannot be read any more.
std::vector<Figures::LeftOut> leftOutOf(TRegression &regression)
{
    std::vector<Figures::LeftOut> result;
    try {
        for (const LeftOut &one : regression.LeftOut())
            result.push_back({one.term, one.null, one.invalid});
    } catch (const EPlatformError &) {
        result.clear();
    }
    return result;
}

Figures::Matrix correlationsOf(const Figures::Matrix &covariance)
{
    Figures::Matrix correlation = covariance;
    for (std::size_t i = 0; i < covariance.size(); ++i) {
        for (std::size_t j = 0; j < covariance.size(); ++j)
            correlation[i][j] = covariance[i][j] / std::sqrt(covariance[i][i]) / std::sqrt(covariance[j][j]);
    }
    return correlation;
}

/// s^2 (X'X)^-1 of the columns that do not depend on others, NaNs of the others.
Figures::Matrix classicalCovariance(const Factors &factors)
{
    const std::size_t p = std::size_t(factors.m) + 1;
    Figures::Matrix covariance(p, Figures::Numbers(p, Figures::None));
    const int response = 2 * factors.exponent[p];
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t j = 0; j < p; ++j) {
            if (factors.place[i] < 0 || factors.place[j] < 0)
                continue;
            DoubleDouble element;
            for (int k = std::max(factors.place[i], factors.place[j]); k < factors.rank(); ++k) {
                const auto &row = factors.inverseRoot[std::size_t(k)];
                element += row[std::size_t(factors.place[i])] * row[std::size_t(factors.place[j])];
            }
            covariance[i][j] =
                std::scalbn(element.hi * factors.variance(), response - factors.exponent[i] - factors.exponent[j]);
        }
    }
    return covariance;
}

} // namespace

Figures figures(TRegression &regression)
{
    Figures figures;
    figures.time = QDateTime::currentDateTime();
    figures.query = regression.DataSetForm() == TRegression::Form::Query;
    figures.source = regression.DataSourceName();
    figures.description = regression.Description();
    figures.message = regression.ReportMessage();
    figures.loaded = regression.Loaded();
    figures.current = regression.ResultsCurrent();
    figures.observations = regression.RecordsUsed();
    figures.controls = regression.GetNumVars();
    figures.degreesOfFreedom = regression.DegreesOfFreedom();
    if (regression.UseOfRecords() != RecordUse::First)
        figures.sample = {regression.SampleSize(), regression.UseOfRecords() == RecordUse::All,
                          regression.SampleSize() == regression.RecordsUsed()};
    figures.records.total = recordTotal(regression);
    figures.records.read = regression.RecordsRead();
    figures.records.used = regression.RecordsUsed();
    figures.records.skipped = regression.RecordsSkipped();
    figures.records.more = regression.MoreRecords() && regression.RecordsUsed() == MaxObservations;

    // MSE first: it is what the last computation left, and working out SSE would overwrite it.
    Figures::SumsOfSquares &sums = figures.sums;
    sums.mse = regression.GetMSE();
    sums.residual = regression.GetSSE();
    sums.regression = regression.GetSSR();
    sums.f = regression.GetF();
    if (figures.current) {
        sums.total = regression.GetSST();
        sums.syx = regression.GetSyx();
        sums.rSquared = regression.GetRSquared();
    }

    const int m = figures.controls;
    figures.response = {regression.ResponseVarY().OutputTerm(),
                        true,
                        regression.GetyBar(),
                        regression.GetyStdErr(),
                        regression.GetyMin(),
                        regression.GetyMax()};
    for (int j = 1; j <= m; ++j) {
        const TIndepVar &variable = regression.GetcVar(j);
        figures.columns.push_back({variable.OutputTerm(), variable.Transformation() != u"Inactive",
                                   regression.GetxBar(j), regression.GetxStdErr(j), regression.GetxMin(j),
                                   regression.GetxMax(j)});
    }
    for (int i = 0; i <= m; ++i) {
        Figures::Numbers covariances;
        Figures::Numbers correlations;
        for (int j = 0; j <= m; ++j) {
            covariances.push_back(regression.GetCovar(i, j));
            correlations.push_back(regression.GetCorr(i, j));
        }
        figures.coefficients.push_back({regression.Getb(i), regression.GetStdErr(i), regression.GetTValue(i)});
        figures.covariance.push_back(std::move(covariances));
        figures.correlation.push_back(std::move(correlations));
    }
    if (figures.current)
        takeObservations(regression, figures);
    return figures;
}

Figures figures(TRegression &regression, const Asked &asked)
{
    Figures taken = figures(regression);
    taken.leftOut = leftOutOf(regression);
    const std::shared_ptr<const Fit> fit = regression.CurrentFit();
    if (fit == nullptr)
        return taken;
    const std::shared_ptr<const FitFigures> kept = regression.Figures();
    const FitFigures &told = *kept;
    taken.exact = told.factors().exact;
    taken.classical = classicalCovariance(told.factors());
    taken.inference = infer(told.factors(), asked.level);
    taken.diagnostics = told.diagnostics();
    if (asked.influence)
        taken.influence = told.influence();
    if (asked.robust) {
        static const QString kinds[] = {QStringLiteral("hc0"), QStringLiteral("hc1"), QStringLiteral("hc2"),
                                        QStringLiteral("hc3"), QStringLiteral("hac")};
        taken.robust = Figures::Robust{kinds[int(*asked.robust)], told.robust(*asked.robust)};
    }
    return taken;
}

Figures figuresThatExist(Figures figures)
{
    if (!figures.inference)
        return figures;
    const Inference &inference = *figures.inference;
    const bool free = figures.observations > figures.controls + 1; // degrees of freedom are left
    const auto at = [](const Figures::Numbers &numbers, std::size_t i) {
        return i < numbers.size() ? numbers[i] : Figures::None;
    };
    if (!free || figures.exact || !figures.dependentTerms.isEmpty()) {
        for (std::size_t i = 0; i < figures.coefficients.size(); ++i) {
            Figures::Coefficient &one = figures.coefficients[i];
            if (!figures.dependentTerms.isEmpty())
                one.estimate = at(inference.coefficients, i);
            one.standardError = at(inference.standardErrors, i);
            one.t = at(inference.tValues, i);
        }
        if (!figures.classical.empty())
            figures.covariance = figures.classical;
        if (!figures.classical.empty() && !figures.exact)
            figures.correlation = correlationsOf(figures.classical);
    }
    // Of the squares of the response: what rounding to doubles leaves, squared, not what a small error can leave.
    constexpr double nothing = 0x1p-98;
    const double mean = figures.response.mean;
    const double squares = figures.sums.total + double(figures.observations) * mean * mean;
    if (figures.exact && figures.sums.residual <= nothing * squares)
        figures.sums.residual = figures.sums.mse = figures.sums.syx = 0;
    if (!free)
        figures.sums.mse = figures.sums.syx = Figures::None;
    if (!free || figures.exact)
        figures.sums.f = Figures::None;
    return figures;
}

QString leftOut(const Figures &figures)
{
    const Figures::Records &records = figures.records;
    QString text = QStringLiteral("Records: %1%2 read, %3 used, %4 skipped.")
                       .arg(records.total ? QStringLiteral("%1 in the dataset, ").arg(*records.total) : QString())
                       .arg(records.read)
                       .arg(records.used)
                       .arg(records.skipped);
    if (!figures.infiniteTerms.isEmpty())
        text +=
            QStringLiteral("\nInfinite or no number in some of the records used, so that no figure can be had: %1.")
                .arg(figures.infiniteTerms.join(QStringLiteral(", ")));
    if (!figures.dependentTerms.isEmpty())
        text += QStringLiteral(
                    "\nLinear combinations of the columns before them: %1.\nStandard errors and t values of all "
                    "columns mean nothing then, nor do the coefficients\nof those combined: leave some out.")
                    .arg(figures.dependentTerms.join(QStringLiteral(", ")));
    constexpr double enough = 6;
    if (figures.infiniteTerms.isEmpty() && figures.dependentTerms.isEmpty() && figures.digits < enough)
        text +=
            QStringLiteral("\nThe data leave about %1 digits of the coefficients: values that differ by so little "
                           "of what they are\nlose the rest when they are rounded. Subtract from a column what its "
                           "values have in common.")
                .arg(int(figures.digits));
    return text;
}

} // namespace nuvo
