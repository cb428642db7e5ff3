#pragma once

#include "engine/kernel/Crossproducts.h"
#include "engine/kernel/Export.h"

#include <array>
#include <cstdint>
#include <map>
#include <span>
#include <vector>

namespace nuvo {

class Observations;

/// All that a fit needs of its observations: their number and the cross products of the constant (number 0), m
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
    /// The sums of some of the columns, in this order, and the response.
    Sums ofColumns(std::span<const int> columns) const;
};

/// The sums over observations, to the last bit those of nuvo::crossProducts() where no column is scaled.
NUVO_KERNEL_EXPORT Sums sumsOf(const Observations &observations);

/// Sums over records of which not every one is usable for every column: those of each pattern of usable columns by
/// themselves, so that each choice of columns gets the sums over just the records that it can use, from one walk over
/// the records, or from the groups that a database makes of them. Columns are numbered from 1, at most 10; a pattern
/// has bit j - 1 set where column j is usable. Records without a usable response do not take part.
class NUVO_KERNEL_EXPORT PatternSums
{
public:
    using Pattern = std::uint32_t;

    /// Takes in the sums over records of this pattern: of its columns in ascending order, and the response.
    void add(Pattern pattern, const Sums &sums);
    /// The sums of these columns, ascending, over all records that can use them.
    Sums over(std::span<const int> columns) const;
    /// How many records these columns can use.
    std::int64_t count(std::span<const int> columns) const;
    const std::map<Pattern, Sums> &patterns() const { return patterns_; }

private:
    std::map<Pattern, Sums> patterns_;
};

} // namespace nuvo
