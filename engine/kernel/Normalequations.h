// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Crossproducts.h"

#include <array>
#include <vector>

namespace nuvo {

/// The coefficients of a least-squares fit of the response on the constant and m control variables. Index 0 is the
/// constant, 1 to m are the columns; what lies beyond m is 0.
struct Coefficients
{
    std::array<double, MaxParameters> b{};
    double sse = 0;   ///< y'y - b'X'y
    double ssr = 0;   ///< b'X'y - (sum of y)^2 / n; 0 without controls
    int zeroRows = 0; ///< rows of X'X that are all 0: each is a "singular matrix"
};

/// A fit with its matrices, indexed likewise.
struct NormalEquations : Coefficients
{
    using Matrix = std::array<std::array<double, MaxParameters>, MaxParameters>;

    Matrix factors{}; ///< the LU factors of X'X, rows exchanged as ludecomp exchanges them
    Matrix inverse{}; ///< (X'X)^-1
};

/// Solves (X'X) b = X'y, 0 <= m <= 10, from the cross products of the constant, m columns and, as number m + 1, the
/// response. All of it is carried in double-double and rounded once: LU factors by ludecomp.h, the inverse and the
/// coefficients by substitution, SSE and SSR from the coefficients before they are rounded.
///
/// The figures are good to about 2^-100 times the condition number of X'X with columns of length 1: to the last bit
/// of the doubles for all but the worst data, 11 digits for powers up to the tenth. SSE is the squared length of the
/// combination of columns with coefficients (b, -1); negative but within rounding of 0, as dependentColumns() has it,
/// it is 0.
///
/// A singular X'X gives figures without meaning (infinities and NaNs among them) and no error; see
/// dependentColumns().
NUVO_KERNEL_EXPORT NormalEquations solveNormalEquations(const CrossProducts &products, int m);

/// The same without the matrices, in a third of the time: what choosing among models asks of each of them. The
/// figures are those of solveNormalEquations() to the last bit.
NUVO_KERNEL_EXPORT Coefficients solveCoefficients(const CrossProducts &products, int m);

/// Which of the columns 1 to m are, to working precision, linear combinations of the constant and the columns before
/// them (those that are not so themselves), in ascending order: what is left of the column is shorter than 2.2e-13
/// times the lengths of the combination's terms together. So multiples and sums of columns worked out in doubles are,
/// also far from zero and where large columns cancel, and columns with three independent digits are not. A column
/// with NaNs or infinities is not either, and the others are judged without it.
NUVO_KERNEL_EXPORT std::vector<int> dependentColumns(const CrossProducts &products, int m);

} // namespace nuvo
