// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Export.h"

/// Tail probabilities and quantiles, each worked out on the side of the distribution where it is small: a probability
/// of 1e-200 is that, not a rounded difference from 1, and one below the smallest double is 0. An argument outside of
/// its range (a NaN, no degrees of freedom) gives a NaN. By the incomplete beta and gamma functions of Boost.Math in
/// long double.
namespace nuvo {

/// P(|T| > |t|) of Student's t with `degrees` > 0 degrees of freedom: the two-sided p-value of t.
NUVO_KERNEL_EXPORT double studentTail(double t, double degrees);

/// The t >= 0 with P(|T| <= t) = level, 0 < level < 1: half the width of a two-sided confidence interval in standard
/// errors.
NUVO_KERNEL_EXPORT double studentQuantile(double level, double degrees);

/// The probability that F with these degrees of freedom is f or larger: the p-value of a statistic f. 1 for f <= 0, 0
/// for an infinite f.
NUVO_KERNEL_EXPORT double fUpperTail(double f, double numerator, double denominator);

/// The f with fUpperTail(f) = probability: 0 for a probability of 1, infinite for 0.
NUVO_KERNEL_EXPORT double fUpperQuantile(double probability, double numerator, double denominator);

/// P(X > x) of the chi-squared distribution, x >= 0.
NUVO_KERNEL_EXPORT double chiSquaredTail(double x, double degrees);

/// P(Z > z) of the standard normal distribution.
NUVO_KERNEL_EXPORT double normalTail(double z);

/// The z with P(Z <= z) = p, 0 < p < 1.
NUVO_KERNEL_EXPORT double normalQuantile(double p);

} // namespace nuvo
