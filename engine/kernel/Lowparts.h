// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Crossproducts.h"
#include "engine/kernel/Doubledouble.h"

#include <cmath>
#include <span>

/// What rounding to a double cuts off a value that is worked out from others: value + low part is good to about 32
/// digits. The cross products take low parts in, so that a fit on powers of a column is a fit on these powers and not
/// on their rounded values. A low part is 0 where the value is not finite, and without meaning where the value or a
/// product on the way to it is below about 1e-290.
namespace nuvo {

namespace detail {

inline double finiteOrZero(double low)
{
    return std::isfinite(low) ? low : 0;
}

} // namespace detail

/// Of a * b as rounded.
inline double lowPartOfProduct(double a, double b)
{
    return detail::finiteOrZero(std::fma(a, b, -(a * b)));
}

/// Of a / b as rounded; b may be a divisor N, a may be 1.
inline double lowPartOfQuotient(double a, double b)
{
    const double quotient = a / b;
    return detail::finiteOrZero(std::fma(-quotient, b, a) / b);
}

/// Of sqrt(a) as rounded, a >= 0.
inline double lowPartOfRoot(double a)
{
    const double root = std::sqrt(a);
    return root > 0 ? detail::finiteOrZero(std::fma(-root, root, a) / (2 * root)) : 0;
}

/// a^exponent minus `value`, which is that power as a double, rounded in whatever way. 0 unless the exponent is a
/// whole number of at most 2^20. By repeated squaring in double-double.
NUVO_KERNEL_EXPORT double lowPartOfPower(double a, double exponent, double value);

/// A column with the low parts of its values, or null where there are none: every value is exact.
struct ExtendedColumn : DataColumn
{
    const double *low = nullptr;
};

/// Whether all of n low parts are 0.
NUVO_KERNEL_EXPORT bool allExact(const double *low, int n);

/// What the low parts add to the sum of a column, and to a . b.
NUVO_KERNEL_EXPORT DoubleDouble lowSum(const ExtendedColumn &a, int n);
NUVO_KERNEL_EXPORT DoubleDouble lowDot(const ExtendedColumn &a, const ExtendedColumn &b, int n);

/// As dots() of columns: a . b with the low parts of both in it (but for low . low, which is below the last digit).
NUVO_KERNEL_EXPORT DoubleDouble dot(const ExtendedColumn &a, const ExtendedColumn &b, int n);

/// As crossProducts() of columns. Products of columns without low parts are the same to the last bit.
NUVO_KERNEL_EXPORT void crossProducts(std::span<const ExtendedColumn> columns, int n, CrossProducts &products);

} // namespace nuvo
