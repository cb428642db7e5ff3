// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Export.h"
#include "engine/kernel/Maxdata.h"

#include <cstdint>
#include <span>
#include <vector>

namespace nuvo {

/// A sample of at most 2500 rows out of any number, each with the same chance, drawn while they pass by: a row has a
/// random number that goes by its ordinal, and those with the smallest are kept (the bottom-k sketch of Cohen and
/// Kaplan, PODC 2007). The generator has a fixed seed and works with whole numbers: the same rows give the same
/// sample on every machine, in whatever order they come. All rows are in it as long as there is room.
class NUVO_KERNEL_EXPORT EvenSample
{
public:
    /// \pre columns >= 1, capacity >= 1. Of samples that are to be merged, those in which the same ordinal stands for
    /// different rows should have different seeds.
    explicit EvenSample(int columns, int capacity = MaxObservations, std::uint64_t seed = 1);

    /// Offers a row: columns[j][row] for each column. Values are read only when it is taken.
    void add(std::span<const double *const> columns, std::size_t row, std::int64_t ordinal);

    /// Makes this a sample of what both have seen, each row with the same chance. Of samples of different capacities
    /// this keeps its own; it is filled as far as the other one goes, which may be less.
    /// \pre the same columns.
    void merge(const EvenSample &other);
    /// Goes on with less room: a sample of the sample.  \pre 1 <= capacity <= the present one.
    void shrink(int capacity);
    /// Adds to every ordinal.
    void shift(std::int64_t ordinals);

    /// How many rows were offered, and how many of them are in the sample.
    std::int64_t seen() const { return seen_; }
    int size() const { return static_cast<int>(rows_.size()); }

    /// The rows of a sample, ascending by their ordinals.
    struct Rows
    {
        std::vector<std::int64_t> ordinals;
        std::vector<std::vector<double>> columns;
    };
    /// The sample in the order of the ordinals.
    Rows sorted() const;

private:
    struct Row
    {
        std::uint64_t number; ///< by which it is kept
        std::int64_t ordinal;
        std::size_t place; ///< of its values
    };

    static bool isLess(const Row &a, const Row &b) { return a.number < b.number; }
    /// Where the values of a row with this number are to go; null where it is not taken.
    double *take(std::uint64_t number, std::int64_t ordinal);
    void dropLargest();

    std::size_t columns_;
    std::size_t capacity_;
    std::uint64_t seed_;
    std::int64_t seen_ = 0;
    /// Rows with this number or a larger one were seen and are not here.
    std::uint64_t limit_;
    std::vector<Row> rows_; ///< a heap, the largest number first
    std::vector<double> values_;
};

} // namespace nuvo
