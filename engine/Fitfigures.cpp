// SPDX-License-Identifier: MIT
#include "engine/Fitfigures.h"

#include <limits>
#include <utility>

namespace nuvo {

namespace {

constexpr double usualLevel = 0.95;

Factors factorsOf(const Sums &sums, const Observations &observations)
{
    // Of a sample the correction would make something else.
    return sums.n == observations.n() && sums.n > 0
               ? factorize(sums.products, columnsOf(observations), sums.exponents)
               : factorize(sums.products, sums.m, sums.exponents);
}

} // namespace

FitFigures::FitFigures(std::shared_ptr<const Fit> fit) : fit_(std::move(fit)) {}

FitFigures::~FitFigures() = default;

const Factors &FitFigures::factors() const
{
    if (const Factors *const known = fit_->factors())
        return *known;
    if (!factors_)
        factors_ = std::make_unique<Factors>(factorsOf(fit_->sums(), fit_->observations()));
    return *factors_;
}

const Observed &FitFigures::observed() const
{
    if (!observed_)
        observed_ = std::make_unique<Observed>(observe(factors(), columnsOf(fit_->observations())));
    return *observed_;
}

const FitFigures::Rows &FitFigures::sample() const
{
    if (!sample_) {
        const Observations &observations = fit_->observations();
        Factors own = factorsOf(sumsOf(observations), observations);
        Observed rows = observe(own, columnsOf(observations));
        sample_ = std::make_unique<Rows>(Rows{std::move(own), std::move(rows)});
    }
    return *sample_;
}

const Inference &FitFigures::inference() const
{
    if (!inference_)
        inference_ = infer(factors(), usualLevel);
    return *inference_;
}

Interval FitFigures::confidence(int j, double level) const
{
    const Inference &figures = inference();
    if (level == usualLevel)
        return figures.confidence[std::size_t(j)];
    const double b = figures.coefficients[std::size_t(j)];
    const double error = figures.standardErrors[std::size_t(j)];
    const double half = level > 0 && level < 1 ? halfWidth(error, level, factors().degreesOfFreedom())
                                               : std::numeric_limits<double>::quiet_NaN();
    return {b - half, b + half};
}

const Diagnostics &FitFigures::diagnostics() const
{
    if (!diagnostics_) {
        const ObservedColumns columns = columnsOf(fit_->observations());
        diagnostics_ = isSample() ? diagnose(sample().factors, sample().observed, columns)
                                  : diagnose(factors(), observed(), columns);
    }
    return *diagnostics_;
}

const Influence &FitFigures::influence() const
{
    if (!influence_)
        influence_ = nuvo::influence(factors(), observed());
    return *influence_;
}

const Robust &FitFigures::robust(RobustKind kind) const
{
    std::optional<Robust> &known = robust_[std::size_t(kind)];
    if (!known)
        known = isSample() ? nuvo::robust(sample().factors, sample().observed, kind)
                           : nuvo::robust(factors(), observed(), kind);
    return *known;
}

Prediction FitFigures::predict(std::span<const double> terms, double level) const
{
    return predict(terms, {}, level);
}

Prediction FitFigures::predict(std::span<const double> terms, std::span<const double> termsLow, double level) const
{
    return nuvo::predict(factors(), terms, termsLow, level);
}

} // namespace nuvo
