// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Subsetsums.h"

#include <optional>
#include <span>
#include <vector>

namespace nuvo {

/// What models are compared by; the smallest is the best, of the adjusted R2 and of F the largest.
enum class SubsetCriterion { Cp, Aic, Bic, AdjustedRSquared, Press, F };

/// A model: a set of k controls with the constant, p = k + 1, fitted to n observations.
///
/// A figure that does not exist is a NaN: without degrees of freedom (n <= p) the mean square and all that needs one;
/// F, Cp, AIC and BIC of an exact fit or beside one, as it comes; PRESS see pressOf(); all from adjustedRSquared on
/// for a dependent set.
struct SubsetFigures
{
    ControlSet controls = 0;
    int size = 0; ///< k
    bool dependent = false;
    double sse = 0;              ///< of a dependent set, that of its independent controls
    double rSquared = 0;         ///< SSR / SST, SSR = SST - SSE; a NaN where SST is 0
    double adjustedRSquared = 0; ///< 1 - (SSE / (n - p)) / (SST / (n - 1))
    double sSquared = 0;         ///< SSE / (n - p)
    double f = 0;                ///< (SSR / k) / s2
    /// SSE / (s2 of all controls) - n + 2 p (Mallows, Technometrics 15, 1973). When some of all controls are
    /// dependent, the s2 is that of the independent ones, with the degrees of freedom that these leave.
    double cp = 0;
    double aic = 0; ///< -2 L + 2 (k + 2), L = -n/2 (ln 2 pi + ln(SSE / n) + 1): the variance is a parameter too
    double bic = 0; ///< -2 L + (k + 2) ln n
    double press = 0;
};

struct SubsetChoice
{
    /// The best of each size, from size 1: the smallest SSE first, among equal ones that with the lowest control in
    /// which they differ. Dependent sets fill the places of a size that independent ones leave, and come last in it.
    std::vector<SubsetFigures> bySize;
    /// The best of all sets but the empty one by the criterion. A dependent set never is, nor one without degrees of
    /// freedom. An exact fit is better than all that are not; among equal ones the smallest set, then as in bySize.
    /// Nothing when no set has the figure.
    std::optional<SubsetFigures> best;
    /// All sets that are dependent, in ascending order.
    std::vector<ControlSet> dependent;
};

/// Compares all sets of the controls on one sample and keeps the `keep` best of each size.
///
/// columns: the m controls and the response that the sums are of, n values each; without them there is no PRESS.
/// SSE has the digits of SubsetSums, the figures are worked out from it and rounded last.
NUVO_KERNEL_EXPORT SubsetChoice chooseSubsets(const SubsetSums &sums, int keep, SubsetCriterion criterion,
                                              std::span<const double *const> columns = {});

} // namespace nuvo
