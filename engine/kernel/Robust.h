// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Factors.h"

#include <vector>

namespace nuvo {

/// Estimates of the coefficients' covariance that hold without a constant residual variance: (X'X)^-1 X'WX (X'X)^-1
/// with W the diagonal matrix of e^2 (Hc0; White 1980), n / (n - p) e^2 (Hc1), e^2 / (1 - h) (Hc2), e^2 / (1 - h)^2
/// (Hc3; MacKinnon and White 1985); and, without independence either, Hac (Newey and West 1987): as Hc0 with
/// neighbours up to floor(4 (n / 100)^(2/9)) observations away, weighted by Bartlett, uncorrected.
enum class RobustKind { Hc0, Hc1, Hc2, Hc3, Hac };

/// m + 1 elements, the constant's first; NaNs of dependent columns, and all without degrees of freedom; of Hc2 and
/// Hc3 also where a leverage is 1. Of an exact fit covariances and standard errors are 0, t and p-values NaNs.
struct Robust
{
    std::vector<double> standardErrors;
    std::vector<double> tValues;
    std::vector<double> pValues; ///< two-sided, Student's t with n - m - 1 degrees
    std::vector<std::vector<double>> covariance;
    int lags = 0; ///< of Hac
};

NUVO_KERNEL_EXPORT Robust robust(const Factors &factors, const Observed &observed, RobustKind kind);

} // namespace nuvo
