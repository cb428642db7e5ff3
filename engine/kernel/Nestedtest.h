// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Export.h"

namespace nuvo {

/// A fit as the test of two nested ones takes it.
struct ResidualSum
{
    double sse = 0;              ///< sum of squared residuals
    double degreesOfFreedom = 0; ///< n - m - 1
};

/// Whether the further terms of the larger of two nested models are needed.
struct NestedTest
{
    double f = 0;           ///< a NaN where it does not exist
    double pValue = 0;      ///< the same
    double numerator = 0;   ///< degrees of freedom: number of further terms
    double denominator = 0; ///< those of the larger model
};

/// F = ((SSE0 - SSE1) / (df0 - df1)) / (SSE1 / df1), of fits to the same observations of which the terms of the
/// smaller one (0) are among those of the larger one (1); with one further term t squared. NaNs without further
/// terms, without degrees of freedom, and where the larger fit is exact.
NUVO_KERNEL_EXPORT NestedTest nestedTest(const ResidualSum &smaller, const ResidualSum &larger);

} // namespace nuvo
