// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Diagnostics.h"

#include <span>

namespace nuvo {

/// White's test as Diagnostics has it: `squares` are the squared residuals, in any units.
NUVO_KERNEL_EXPORT TestResult whiteTest(const Factors &factors, const Observed &observed,
                                        const ObservedColumns &columns, std::span<const double> squares);

} // namespace nuvo
