// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Crossproducts.h"
#include "engine/kernel/Export.h"

#include <array>
#include <cstdint>
#include <span>

/// Sums of products that somebody adds up in plain doubles, a database say, and how the digits that this costs are
/// got back. Of columns less a value in their midst the sums lose little (the error of a coefficient goes by the
/// condition of centred columns). What that leaves of the solution is taken out by iterative refinement on the normal
/// equations (Bjoerck, Numerical Methods for Least Squares Problems, 1996, 2.4 and 2.9): the residuals of a first
/// solution are added up with the columns anew, and the coefficients are corrected by what they still explain.
///
/// Column numbers are those of a fit's sums: 0 the constant, 1 to m, and m + 1 the response.
namespace nuvo {

/// How a column is to be added up: as value * 2^-exponent - shift.
struct ColumnShift
{
    int exponent = 0;
    double shift = 0;

    /// From the mean, or a number near it, and the range of those values whose digits matter most, and the range of
    /// all values; all finite. The shift is a number with few digits near the mean, so that differences of most data
    /// are exact. It is never 0: otherwise differences could be so small that their products are below the range of
    /// doubles, an error in some databases.
    NUVO_KERNEL_EXPORT static ColumnShift of(double mean, ColumnRange range, ColumnRange all);

    /// Whether a column can as well be added up as it is, where a shift costs much: its mean is not far from zero
    /// beside its range, so that a digit is lost at most, and no product of its values is too small for a double.
    /// \param whole whether all values are whole numbers.
    NUVO_KERNEL_EXPORT static bool isDispensable(double mean, ColumnRange range, ColumnRange all, bool whole);
};

/// The cross products of the columns, as their multiples by 2^-exponent, from those of the shifted ones.
/// \pre shifts[j - 1] is of column j, the response last.
NUVO_KERNEL_EXPORT CrossProducts unshifted(const CrossProducts &shifted, std::span<const ColumnShift> shifts);

/// A column (the response, or a control) as a linear combination of the constant and some controls, and a rest.
struct Combination
{
    int column = 0;
    std::array<double, MaxParameters> b{}; ///< by column; 0 for those that are not in it, and what is not finite
};

/// The response by all controls that are not combinations of those before.
NUVO_KERNEL_EXPORT Combination firstSolution(const CrossProducts &products, int m);

/// The first control from `from` on that is nearly a linear combination of independent ones before it, so that its
/// own part is lost in sums of doubles: less than 1e-3 of its length around the mean is left. Its column is 0 when
/// there is none.
NUVO_KERNEL_EXPORT Combination nearlyDependent(const CrossProducts &products, int m, int from);

/// Takes in the sums of products of the combination's residuals r = column - b(0) - sum of b(j) x(j): residuals[0] is
/// the sum of r, residuals[j] of r x(j), residuals[combination.column] of r r. What `products` are then is
/// consistent: a fit of the response is the first solution corrected once, with the SSE of the residuals.
NUVO_KERNEL_EXPORT void takeResiduals(CrossProducts &products, int m, const Combination &combination,
                                      std::span<const DoubleDouble> residuals);

} // namespace nuvo
