// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Factors.h"

#include <vector>

namespace nuvo {

/// How single observations bear on a fit, n elements each (Belsley, Kuh and Welsch, Regression Diagnostics,
/// 1980, 2.1). e is the residual, h the leverage, p = m + 1, s the residual standard deviation with n - p degrees of
/// freedom, s(i) that of the fit without the observation, s(i)^2 = (SSE - e^2 / (1 - h)) / (n - p - 1).
///
/// A NaN where a figure does not exist: all of them where h = 1 (but h) or the fit is exact; all but h without
/// degrees of freedom; what needs s(i) with one degree alone, and what is divided by s(i) where that is 0.
struct Influence
{
    std::vector<double> leverage;              ///< h, diagonal of X (X'X)^-1 X'
    std::vector<double> standardizedResiduals; ///< e / (s sqrt(1 - h))
    std::vector<double> studentizedResiduals;  ///< e / (s(i) sqrt(1 - h))
    std::vector<double> cook;                  ///< (e / (s (1 - h)))^2 h / p (Cook 1977)
    std::vector<double> dffits;                ///< e sqrt(h) / (s(i) (1 - h))
    std::vector<double> covRatio;              ///< (s(i) / s)^(2 p) / (1 - h)
    /// (b - b(i)) / (s(i) sqrt((X'X)^-1 jj)) for each coefficient j, m + 1 columns of n; NaNs of a dependent one.
    std::vector<std::vector<double>> dfbetas;
};

NUVO_KERNEL_EXPORT Influence influence(const Factors &factors, const Observed &observed);

} // namespace nuvo
