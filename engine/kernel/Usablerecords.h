// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Crossproducts.h"
#include "engine/kernel/Export.h"
#include "engine/kernel/Lowparts.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace nuvo {

/// The records that a load found usable, with the columns that stand over them and the cross products of these, each
/// worked out when it is first asked for. Columns have numbers, 0 to 31.
class NUVO_KERNEL_EXPORT UsableRecords
{
public:
    static constexpr int MaxColumns = 32;

    /// The records chosen, by their position in the columns' sources, at most 2500; how many records the load walks
    /// to find them; the number of columns; the records' numbers in the dataset, where somebody is to ask.
    UsableRecords(std::vector<int> records, int walked, int columns, std::vector<std::int64_t> ordinals = {});

    const std::vector<int> &records() const { return records_; }
    const std::vector<std::int64_t> &ordinals() const { return ordinals_; }
    int count() const { return int(records_.size()); }
    int walked() const { return walked_; }

    struct View
    {
        const double *values; ///< count() of them, in memory that reaches to 2500
        const ColumnRange *range;
        const double *low; ///< their low parts (engine/kernel/Lowparts.h); null where all of them are 0
    };
    /// The values of a column at these records, with the low parts of its source, if it has any. \pre count() >= 1.
    View column(int number, const std::vector<double> &source, const std::vector<double> &low = {});
    /// The same of a column that was asked for before.
    View column(int number) const
    {
        const Values &column = *columns_[number];
        return {column.values, &column.range, column.low.empty() ? nullptr : column.low.data()};
    }

    /// As nuvo::crossProducts() for columns of these numbers, to the last bit.  \pre They were asked for by column().
    void crossProducts(std::span<const int> numbers, CrossProducts &products);

private:
    struct Values
    {
        double values[MaxObservations];
        ColumnRange range;
        std::vector<double> low;
    };

    DataColumn operand(int number) const { return {columns_[number]->values, columns_[number]->range.largest()}; }
    ExtendedColumn extended(int number) const { return {operand(number), column(number).low}; }
    /// Puts into a row what form() makes of the columns that are wanted and not yet known, then add() what low parts
    /// add.
    template <class Form, class Add>
    void fill(std::uint32_t &known, std::uint32_t wanted, DoubleDouble *row, Form form, Add add);

    std::vector<int> records_;
    std::vector<std::int64_t> ordinals_;
    int walked_;
    std::vector<std::unique_ptr<Values>> columns_;
    std::vector<DoubleDouble> sums_;
    std::uint32_t sumsKnown_ = 0;
    std::vector<DoubleDouble> products_;       ///< of columns i and j, in this order, at i * columns + j
    std::vector<std::uint32_t> productsKnown_; ///< of column i, a bit for each j
};

} // namespace nuvo
