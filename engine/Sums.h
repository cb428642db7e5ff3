// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Observations.h"
#include "engine/kernel/Crossproducts.h"
#include "engine/kernel/Export.h"

#include <array>
#include <cstdint>
#include <span>

namespace nuvo {

/// All that a fit needs of its observations, wherever it comes from (observations, nuvo::PatternSums over a scan, the
/// aggregates of a database): their number and the cross products of the constant (number 0), m
/// columns and, as number m + 1, the response.
///
/// A column whose values are out of the ordinary is kept as its multiple by a power of two, 2^-exponent, so that its
/// products stay within the range of doubles; see nuvo::scaleOf(). The exponent of all others is 0.
struct NUVO_KERNEL_EXPORT Sums
{
    std::int64_t n = 0;
    int m = 0;
    CrossProducts products{};
    std::array<int, MaxParameters + 1> exponents{};

    /// Whether every exponent is 0.
    bool plain() const;
    /// The same with the column (or the response) kept with another exponent: exactly, as far as the range goes.
    void rescale(int column, int exponent);
    /// Takes the observations behind `other` in: sums of the same columns over other records.
    Sums &operator+=(const Sums &other);
};

class PatternSums;

/// What is known of all the records of a fit where only a sample of them is kept.
struct NUVO_KERNEL_EXPORT RecordTotals
{
    Sums sums;
    Spread spread;
    std::array<ColumnRange, MaxParameters> x{}; ///< of column j at j
    ColumnRange y;

    /// The same of some of the columns, by their numbers in this order; a number beyond m is a column of zeros.
    RecordTotals ofColumns(std::span<const int> columns) const;
    /// Of another number of columns: the first ones, or with columns of zeros added.
    RecordTotals ofColumns(int m) const;
};

/// Those of a fit of these controls.
NUVO_KERNEL_EXPORT RecordTotals totalsOf(PatternSums &sums, std::uint32_t controls);

/// The sums over observations, to the last bit those of nuvo::crossProducts() where no column is scaled.
NUVO_KERNEL_EXPORT Sums sumsOf(const Observations &observations);

} // namespace nuvo
