// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Doubledouble.h"
#include "engine/kernel/Export.h"
#include "engine/kernel/Maxdata.h"

#include <array>
#include <span>

/// The sums behind a fit, over data kept by columns: each column is n doubles one after the other, n >= 0.
/// Every result is a function of its column or its two columns alone: the same to the last bit whichever other
/// columns are in the call, and with or without AVX2 (engine/kernel/Instructionset.h).
namespace nuvo {

struct ColumnRange
{
    double min = 0;
    double max = 0;

    /// The largest absolute value.
    double largest() const { return std::fmax(std::fabs(min), std::fabs(max)); }
};

/// A column, and the largest absolute value in it as minMax found it.
struct DataColumn
{
    const double *values = nullptr;
    double largest = 0;
};

/// The smallest and largest value: starting from the first, a greater one becomes max, else a smaller one min. So
/// NaNs are passed over, except that a first one stays both.  \pre n >= 1.
NUVO_KERNEL_EXPORT ColumnRange minMax(const double *column, int n);

/// The sum over i in order of x(i) / n, each term divided before it is added, for each column: what the plain loop
/// gives, to the last bit.
NUVO_KERNEL_EXPORT void means(std::span<const double *const> columns, int n, double *mean);

/// The square root of the sum over i in order of (x(i) - mean)^2 / (n - 1), each term divided before it is added, for
/// each column; likewise to the last bit. n = 1 gives 0 / 0, a NaN.
NUVO_KERNEL_EXPORT void standardDeviations(std::span<const double *const> columns, const double *mean, int n,
                                           double *deviation);

/// out[k] = a . b[k], the sum of the products of two columns. The error is below 2^-90 of n * a.largest * b.largest
/// (n <= 2500), on ordinary data 2^-98; where a product is infinite or NaN the sum is, as in plain arithmetic. A sum
/// beyond the range of doubles is infinite, one below it 0.
NUVO_KERNEL_EXPORT void dots(DataColumn a, std::span<const DataColumn> b, int n, DoubleDouble *out);

/// out[k] = the sum of b[k]: the same as dots() with a column of ones.
NUVO_KERNEL_EXPORT void sums(std::span<const DataColumn> b, int n, DoubleDouble *out);

/// The cross products of the constant (number 0), up to ten control variables and the response, as a symmetric
/// matrix.
using CrossProducts = std::array<std::array<DoubleDouble, MaxParameters + 1>, MaxParameters + 1>;

/// Fills `products` for the constant followed by `columns`, all pairs; the rest is left as it is.
NUVO_KERNEL_EXPORT void crossProducts(std::span<const DataColumn> columns, int n, CrossProducts &products);

} // namespace nuvo
