#pragma once

#include "engine/kernel/Export.h"

/// Probabilities and quantiles of the distributions that statistics of a fit are held against.
namespace nuvo {

/// The probability that F with these degrees of freedom is f or larger: the p-value of a statistic f. 1 for f <= 0, 0
/// for an infinite f or one whose probability is below the smallest double. Good to 13 digits, at the far end of the
/// tail too. NaN when f is, or when a number of degrees of freedom is not above 0.
NUVO_KERNEL_EXPORT double fUpperTail(double f, double numerator, double denominator);

/// The f with fUpperTail(f) = probability: 0 for a probability of 1, infinite for 0. NaN for one outside 0 to 1, or
/// when a number of degrees of freedom is not above 0.
NUVO_KERNEL_EXPORT double fUpperQuantile(double probability, double numerator, double denominator);

} // namespace nuvo
