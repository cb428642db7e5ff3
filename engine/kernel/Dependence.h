#pragma once

#include "engine/kernel/Crossproducts.h"
#include "engine/kernel/Export.h"
#include "engine/kernel/Lowparts.h"

#include <optional>
#include <span>
#include <vector>

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

/// The same for columns C of which the products are wanted as well: the regression on columns X, squares and products
/// of X (x1 x1, x1 x2, …, x2 x2, …), where X = 1 mean' + C R. So what rounding makes of products is small beside what
/// is independent in them, however far the columns of X are from 0 and however near to each other, and yet it is X
/// and its products whose dependence is judged: the answer is none where one of them has to be left out. \param root
/// R by rows, upper triangular.
NUVO_KERNEL_EXPORT std::optional<Explained> regressOnProducts(std::span<const DataColumn> columns,
                                                              std::span<const double> means,
                                                              const std::vector<std::vector<double>> &root,
                                                              DataColumn response, int n);

} // namespace nuvo
