// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Inference.h"

#include <span>

namespace nuvo {

/// The response's term at given values of the terms.
struct Prediction
{
    double value = 0;         ///< b0 + b1 x1 + … + bm xm, without dependent columns
    double standardError = 0; ///< of the mean there, s sqrt(x' (X'X)^-1 x); 0 of an exact fit
    Interval confidence{};    ///< of the mean: value -+ t(level, n - m - 1) standardError
    Interval prediction{};    ///< of a new observation: value -+ t(level, n - m - 1) s sqrt(1 + x' (X'X)^-1 x)
};

/// terms[j - 1] is the value of column j; termsLow its low part, or empty. Errors and intervals are NaNs without
/// degrees of freedom. Where columns depend on others, the values have to do so in the same way.
NUVO_KERNEL_EXPORT Prediction predict(const Factors &factors, std::span<const double> terms,
                                      std::span<const double> termsLow, double level);

} // namespace nuvo
