// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Factors.h"

namespace nuvo {

/// A test's statistic, its degrees of freedom and its p-value; NaNs where the test does not exist.
struct TestResult
{
    double statistic = 0;
    double degrees = 0;
    double pValue = 0;
};

/// Whether the residuals e of a fit look like what the model takes them for. A figure is a NaN where it does not
/// exist; without degrees of freedom none does, and of an exact fit only PRESS (0) and predicted R squared (1).
struct Diagnostics
{
    /// The sum of (e(i) - e(i-1))^2 over the sum of e(i)^2 (Durbin and Watson 1950), in the order of the
    /// observations.
    double durbinWatson = 0;
    double press = 0;             ///< the sum of (e / (1 - h))^2 (Allen 1974); a NaN where an h is 1
    double predictedRSquared = 0; ///< 1 - PRESS / SST
    /// Constant variance, by n R^2 of e^2 on the terms (Breusch and Pagan 1979, studentized by Koenker 1981);
    /// chi-squared with m degrees of freedom. None without terms.
    TestResult breuschPagan;
    /// n R^2 of e^2 on terms, their squares and products, without those that depend on the ones before (White 1980);
    /// chi-squared with as many degrees as are left. None without terms, or unless n > degrees + 1.
    TestResult white;
    /// Normality, by n/6 (S^2 + (K - 3)^2 / 4) with skewness S and kurtosis K from moments with the divisor n (Jarque
    /// and Bera 1980); chi-squared with 2 degrees.
    TestResult jarqueBera;
    TestResult shapiroWilk; ///< of 3 to 5000 residuals, see shapiroWilk()
    /// The form of the model: F of the squares and cubes of the fitted values as further terms (Ramsey 1969), with 2
    /// and n - m - 3 degrees. None where these depend on the terms, or without degrees.
    TestResult reset;
    double resetDenominator = 0; ///< n - m - 3
};

NUVO_KERNEL_EXPORT Diagnostics diagnose(const Factors &factors, const Observed &observed,
                                        const ObservedColumns &columns);

} // namespace nuvo
