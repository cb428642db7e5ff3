// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Crossproducts.h"
#include "engine/kernel/Export.h"
#include "engine/kernel/Lowparts.h"

#include <span>

namespace nuvo {

/// What a regression of a response on columns beside the constant explains.
struct Explained
{
    int columns = 0;     ///< those that do not depend on the ones before
    double rSquared = 0; ///< about the mean; a NaN where the response does not vary
};

/// For any number of columns, n values each, as auxiliary regressions have them; they have a length of about 1.
/// Columns that depend on the constant and those before are left out.
NUVO_KERNEL_EXPORT Explained regressOn(std::span<const ExtendedColumn> columns, DataColumn response, int n);

} // namespace nuvo
