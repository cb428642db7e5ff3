#pragma once

#include "engine/kernel/Export.h"
#include "engine/kernel/Maxdata.h"

#include <cstdint>
#include <span>
#include <vector>

namespace nuvo {

/// A sample of at most 2500 rows out of any number, each with the same chance, drawn while they pass by (algorithm R
/// in Vitter, ACM TOMS 11, 1985). The generator has a fixed seed and works with whole numbers: the same rows give the
/// same sample on every machine. All rows are in it as long as there is room.
class NUVO_KERNEL_EXPORT EvenSample
{
public:
    /// \pre columns >= 1, capacity >= 1. Two samples that are to be merged should have different seeds.
    explicit EvenSample(int columns, int capacity = MaxObservations, std::uint64_t seed = 1);

    /// Offers a row: columns[j][row] for each column. Values are read only when it is taken.
    void add(std::span<const double *const> columns, std::size_t row, std::int64_t ordinal);

    /// Makes this a sample of what both have seen, each row with the same chance.
    /// \pre the same columns and capacity.
    void merge(const EvenSample &other);

    /// How many rows were offered, and how many of them are in the sample.
    std::int64_t seen() const { return seen_; }
    int size() const { return static_cast<int>(rows_.size()); }

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
        std::int64_t ordinal;
        std::vector<double> values;
    };

    std::uint64_t below(std::uint64_t limit);

    std::size_t columns_;
    std::size_t capacity_;
    std::uint64_t state_;
    std::int64_t seen_ = 0;
    std::vector<Row> rows_;
};

} // namespace nuvo
