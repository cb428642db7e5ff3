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

UsableRecords::View UsableRecords::column(int number, const std::vector<double> &source)
{
    std::unique_ptr<Values> &column = columns_[number];
    if (!column) {
        column = std::make_unique_for_overwrite<Values>();
        std::transform(records_.begin(), records_.end(), column->values,
                       [&](int record) { return source[std::size_t(record)]; });
        std::fill(column->values + records_.size(), column->values + MaxObservations, 0.0);
        column->range = minMax(column->values, count());
    }
    return {column->values, &column->range};
}

template <class Form>
void UsableRecords::fill(std::uint32_t &known, std::uint32_t wanted, DoubleDouble *row, Form form)
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
    for (std::uint32_t left = missing; left != 0; left &= left - 1)
        row[std::countr_zero(left)] = results[found++];
    known |= missing;
}

void UsableRecords::crossProducts(std::span<const int> numbers, CrossProducts &products)
{
    std::uint32_t wanted = 0;
    for (const int number : numbers)
        wanted |= bitOf(number);
    fill(sumsKnown_, wanted, sums_.data(),
         [&](std::span<const DataColumn> columns, DoubleDouble *out) { sums(columns, count(), out); });
    products[0][0] = count();
    wanted = 0;
    for (std::size_t i = numbers.size(); i-- > 0;) {
        const int number = numbers[i];
        wanted |= bitOf(number);
        DoubleDouble *const row = &products_[std::size_t(number) * columns_.size()];
        fill(productsKnown_[number], wanted, row, [&](std::span<const DataColumn> columns, DoubleDouble *out) {
            dots(operand(number), columns, count(), out);
        });
        products[0][i + 1] = products[i + 1][0] = sums_[number];
        for (std::size_t j = i; j < numbers.size(); ++j)
            products[i + 1][j + 1] = products[j + 1][i + 1] = row[numbers[j]];
    }
}

} // namespace nuvo
