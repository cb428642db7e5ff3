// SPDX-License-Identifier: MIT
#include "engine/kernel/Usablerecords.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace nuvo {

namespace {

constexpr std::uint32_t bitOf(int number)
{
    return std::uint32_t(1) << number;
}

} // namespace

UsableRecords::UsableRecords(std::vector<int> records, int walked, int columns, std::vector<std::int64_t> ordinals)
    : records_(std::move(records)), ordinals_(std::move(ordinals)), walked_(walked), columns_(columns),
      sums_(columns), products_(std::size_t(columns) * std::size_t(columns)), productsKnown_(columns)
{
}

UsableRecords::View UsableRecords::column(int number, const std::vector<double> &source,
                                          const std::vector<double> &low)
{
    std::unique_ptr<Values> &column = columns_[number];
    if (!column) {
        column = std::make_unique_for_overwrite<Values>();
        const auto gather = [this](const std::vector<double> &from, double *to) {
            std::transform(records_.begin(), records_.end(), to,
                           [&](int record) { return from[std::size_t(record)]; });
        };
        gather(source, column->values);
        std::fill(column->values + records_.size(), column->values + MaxObservations, 0.0);
        column->range = minMax(column->values, count());
        if (!low.empty()) {
            column->low.resize(records_.size());
            gather(low, column->low.data());
            if (allExact(column->low.data(), count()))
                column->low.clear();
        }
    }
    return this->column(number);
}

template <class Form, class Add>
void UsableRecords::fill(std::uint32_t &known, std::uint32_t wanted, DoubleDouble *row, Form form, Add add)
{
    const std::uint32_t missing = wanted & ~known;
    if (missing == 0)
        return;
    std::array<DataColumn, MaxColumns> operands;
    std::array<DoubleDouble, MaxColumns> results;
    std::size_t found = 0;
    for (std::uint32_t left = missing; left != 0; left &= left - 1)
        operands[found++] = operand(std::countr_zero(left));
    form(std::span<const DataColumn>(operands.data(), found), results.data());
    found = 0;
    for (std::uint32_t left = missing; left != 0; left &= left - 1) {
        const int number = std::countr_zero(left);
        row[number] = results[found++];
        add(number, row[number]);
    }
    known |= missing;
}

void UsableRecords::crossProducts(std::span<const int> numbers, CrossProducts &products)
{
    std::uint32_t wanted = 0;
    for (const int number : numbers)
        wanted |= bitOf(number);
    fill(
        sumsKnown_, wanted, sums_.data(),
        [&](std::span<const DataColumn> columns, DoubleDouble *out) { sums(columns, count(), out); },
        [&](int number, DoubleDouble &sum) {
            const ExtendedColumn column = extended(number);
            if (column.low)
                sum = sum + lowSum(column, count());
        });
    products[0][0] = count();
    wanted = 0;
    for (std::size_t i = numbers.size(); i-- > 0;) {
        const int number = numbers[i];
        wanted |= bitOf(number);
        DoubleDouble *const row = &products_[std::size_t(number) * columns_.size()];
        fill(
            productsKnown_[number], wanted, row,
            [&](std::span<const DataColumn> columns, DoubleDouble *out) {
                dots(operand(number), columns, count(), out);
            },
            [&](int other, DoubleDouble &product) {
                const ExtendedColumn a = extended(other);
                const ExtendedColumn b = extended(number);
                if (a.low || b.low)
                    product = product + lowDot(a, b, count());
            });
        products[0][i + 1] = products[i + 1][0] = sums_[number];
        for (std::size_t j = i; j < numbers.size(); ++j)
            products[i + 1][j + 1] = products[j + 1][i + 1] = row[numbers[j]];
    }
}

} // namespace nuvo
