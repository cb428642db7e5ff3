// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Subsetsums.h"

#include <span>
#include <vector>

namespace nuvo {

/// PRESS, the sum over the observations of (e / (1 - h))^2 with residual e and leverage h, of some of the sets,
/// without a refit: down the tree of sets each control is freed of those before it by the factors that the sums know,
/// and its square there is what it adds to the leverage.
///
/// columns: the m controls and the response that `sums` is of, n values each. A set's PRESS is NaN when the set is
/// dependent, when there are no degrees of freedom, or when an observation has the leverage 1; 0 of an exact fit.
/// Relative error below 1e-11: sets for which doubles do not give that are worked out once more in double-double.
/// \return in the order of `sets`.
NUVO_KERNEL_EXPORT std::vector<double> pressOf(const SubsetSums &sums, std::span<const ControlSet> sets,
                                               std::span<const double *const> columns, int n);

} // namespace nuvo
