// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Fit.h"
#include "engine/kernel/Diagnostics.h"
#include "engine/kernel/Inference.h"
#include "engine/kernel/Influence.h"
#include "engine/kernel/Prediction.h"
#include "engine/kernel/Robust.h"

#include <array>
#include <memory>
#include <optional>
#include <span>

namespace nuvo {

/// What a fit tells beyond its coefficients; every part is worked out when it is first asked for, from what the fit
/// keeps. Where the fit is of more records than its observations, a sample of them, influence() is that of each
/// record of the sample on the whole fit, and diagnostics() and robust() are those of a fit of the sample. Not to be
/// used from several threads at once.
class NUVO_KERNEL_EXPORT FitFigures
{
public:
    /// Of a fit, which it keeps alive. \pre not null.
    explicit FitFigures(std::shared_ptr<const Fit> fit);
    ~FitFigures();
    FitFigures(const FitFigures &) = delete;
    FitFigures &operator=(const FitFigures &) = delete;

    /// What all is worked out from.
    const std::shared_ptr<const Fit> &fit() const { return fit_; }

    /// The orthogonal form of the fit.
    const Factors &factors() const;
    /// At a level of 0.95; intervals at others are confidence()'s.
    const Inference &inference() const;
    /// Of coefficient j, 0 to m: b -+ t(level, n - m - 1) standard error. NaNs unless 0 < level < 1.
    Interval confidence(int j, double level) const;
    /// Tests and figures of the whole fit.
    const Diagnostics &diagnostics() const;
    /// Figures of each observation.
    const Influence &influence() const;
    /// Standard errors that a changing variance does not spoil.
    const Robust &robust(RobustKind kind) const;
    /// At values of the m terms, without and with their low parts.
    Prediction predict(std::span<const double> terms, double level) const;
    /// The same with low parts.
    Prediction predict(std::span<const double> terms, std::span<const double> termsLow, double level) const;

private:
    /// A fit with its observations in orthogonal form.
    struct Rows
    {
        Factors factors;
        Observed observed;
    };

    bool isSample() const { return fit_->n() != fit_->observations().n(); }
    const Observed &observed() const;
    /// The fit, or that of the sample.
    const Rows &sample() const;

    std::shared_ptr<const Fit> fit_;
    mutable std::unique_ptr<Factors> factors_;
    mutable std::unique_ptr<Observed> observed_;
    mutable std::unique_ptr<Rows> sample_;
    mutable std::optional<Inference> inference_;
    mutable std::optional<Diagnostics> diagnostics_;
    mutable std::optional<Influence> influence_;
    mutable std::array<std::optional<Robust>, 5> robust_;
};

} // namespace nuvo
