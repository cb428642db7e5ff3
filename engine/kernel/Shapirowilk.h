// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Diagnostics.h"

#include <span>

namespace nuvo {

/// The test of Shapiro and Wilk for normality by Royston's approximation (algorithm AS R94, Appl. Statist. 44, 1995):
/// W and its p-value, for 3 to 5000 values that are not all the same; else NaNs, as the degrees are.
NUVO_KERNEL_EXPORT TestResult shapiroWilk(std::span<const double> values);

} // namespace nuvo
