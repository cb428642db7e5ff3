// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Factors.h"

#include <array>
#include <vector>

namespace nuvo {

/// [low, high]
using Interval = std::array<double, 2>;

/// What a fit tells beyond its coefficients, from its factors alone. Vectors over parameters have m + 1 elements, the
/// constant's first, those over terms m. A figure that does not exist is a NaN: without degrees of freedom all that
/// needs the residual variance, of dependent columns all that belongs to them alone (the other columns' figures are
/// those of the fit without them, with the degrees of freedom n - m - 1 all the same), of an exact fit t, F, their
/// p-values and the likelihoods.
struct Inference
{
    double level = 0;
    std::vector<double> coefficients;   ///< m + 1
    std::vector<double> standardErrors; ///< m + 1; 0 of an exact fit
    std::vector<double> tValues;        ///< m + 1
    std::vector<double> pValues;        ///< m + 1, two-sided
    std::vector<Interval> confidence;   ///< m + 1, b -+ t(level, n - m - 1) standard error
    double f = 0;                       ///< (SST - SSE) / m over SSE / (n - m - 1); a NaN without terms
    double fPValue = 0;
    double rSquared = 0;         ///< 1 - SSE / SST; a NaN where the response does not vary
    double adjustedRSquared = 0; ///< 1 - (SSE / (n - m - 1)) / (SST / (n - 1)); 1 of an exact fit, 0 without terms
    double logLikelihood = 0;    ///< L = -n/2 (ln 2 pi + ln(SSE / n) + 1), of normal errors at its maximum
    double aic = 0;              ///< 2 k - 2 L, k = m + 2 parameters with the variance (Akaike 1974)
    double aicc = 0;             ///< AIC + 2 k (k + 1) / (n - k - 1) (Hurvich and Tsai 1989); a NaN unless n > k + 1
    double bic = 0;              ///< k ln n - 2 L (Schwarz 1978)
    double hqc = 0;              ///< 2 k ln ln n - 2 L (Hannan and Quinn 1979)
    std::vector<double> standardized; ///< m, b s(x) / s(y)
    std::vector<double> tolerance;    ///< m, 1 - R squared of the term on the others
    std::vector<double> vif;          ///< m, 1 / tolerance
    /// m, sign(b) sqrt(P / (P + SSE)) and sign(b) sqrt(P / SST), P the term's partial sum of squares
    std::vector<double> partialCorrelations;
    std::vector<double> semipartialCorrelations;
    std::vector<double> sequentialSumsOfSquares; ///< m, added in the order of the terms; 0 of a dependent one
    std::vector<double> partialSumsOfSquares;    ///< m, of each term as the last one
    /// m + 1, ascending from 1: the largest singular value of constant and columns, each scaled to length 1, over
    /// each singular value (Belsley, Kuh and Welsch, Regression Diagnostics, 1980, 3.2)
    std::vector<double> conditionIndices;
};

/// \pre 0 < level < 1; else the intervals are NaNs.
NUVO_KERNEL_EXPORT Inference infer(const Factors &factors, double level);

/// Half the width of the interval for coefficient standard errors at this level: 0 where `standardError` is 0, a NaN
/// without degrees of freedom.
NUVO_KERNEL_EXPORT double halfWidth(double standardError, double level, double degreesOfFreedom);

/// The condition indices alone.
NUVO_KERNEL_EXPORT std::vector<double> conditionIndices(const Factors &factors);

} // namespace nuvo
