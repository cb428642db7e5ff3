// SPDX-License-Identifier: MIT
#include "engine/Sums.h"

#include "engine/kernel/Patternsums.h"
#include "engine/kernel/Usablerecords.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>
#include <vector>

namespace nuvo {

namespace {

DoubleDouble scaled(DoubleDouble value, int exponent)
{
    return {std::scalbn(value.hi, exponent), std::scalbn(value.lo, exponent)};
}

/// The columns that need it are multiplied by their powers of two for the time of the sums.
void scaledProducts(std::array<ExtendedColumn, MaxParameters> columns, int n, Sums &sums)
{
    std::vector<std::vector<double>> multiples;
    const auto multiple = [&](const double *column, int exponent) {
        std::vector<double> &values = multiples.emplace_back(column, column + n);
        for (double &value : values)
            value = std::scalbn(value, -exponent);
        return values.data();
    };
    for (std::size_t j = 0; j <= std::size_t(sums.m); ++j) {
        const int exponent = sums.exponents[j + 1];
        if (exponent == 0)
            continue;
        columns[j] = {{multiple(columns[j].values, exponent), std::scalbn(columns[j].largest, -exponent)},
                      columns[j].low ? multiple(columns[j].low, exponent) : nullptr};
    }
    crossProducts(std::span<const ExtendedColumn>(columns.data(), std::size_t(sums.m) + 1), n, sums.products);
}

void plainProducts(const Observations &observations, CrossProducts &products)
{
    const std::size_t count = std::size_t(observations.m()) + 1;
    if (observations.hasLowParts()) {
        const auto columns = observations.extendedColumns();
        crossProducts(std::span<const ExtendedColumn>(columns.data(), count), observations.n(), products);
    } else {
        const auto columns = observations.columns();
        crossProducts(std::span<const DataColumn>(columns.data(), count), observations.n(), products);
    }
}

} // namespace

bool Sums::plain() const
{
    return std::all_of(exponents.begin(), exponents.end(), [](int exponent) { return exponent == 0; });
}

void Sums::rescale(int column, int exponent)
{
    const std::size_t at = std::size_t(column);
    const int change = exponents[at] - exponent;
    if (change == 0)
        return;
    for (std::size_t i = 0; i < std::size_t(m) + 2; ++i) {
        products[i][at] = scaled(products[i][at], change);
        products[at][i] = scaled(products[at][i], change);
    }
    exponents[at] = exponent;
}

Sums &Sums::operator+=(const Sums &other)
{
    if (other.n == 0)
        return *this;
    if (n == 0)
        return *this = other;
    Sums added = other;
    for (int i = 1; i <= m + 1; ++i) {
        const int exponent = std::max(exponents[std::size_t(i)], added.exponents[std::size_t(i)]);
        rescale(i, exponent);
        added.rescale(i, exponent);
    }
    for (std::size_t i = 0; i < std::size_t(m) + 2; ++i) {
        for (std::size_t j = 0; j < std::size_t(m) + 2; ++j)
            products[i][j] += added.products[i][j];
    }
    n += other.n;
    return *this;
}

RecordTotals RecordTotals::ofColumns(std::span<const int> columns) const
{
    RecordTotals result;
    result.sums.n = sums.n;
    result.sums.m = int(columns.size());
    result.y = y;
    result.spread.yBar = spread.yBar;
    result.spread.yStdErr = spread.yStdErr;
    // Where each column of the result stands here, the constant first and the response last; -1 for zeros.
    std::vector<int> places{0};
    for (const int column : columns)
        places.push_back(column <= sums.m ? column : -1);
    places.push_back(sums.m + 1);
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i] < 0)
            continue;
        const std::size_t from = std::size_t(places[i]);
        result.sums.exponents[i] = sums.exponents[from];
        for (std::size_t j = 0; j < places.size(); ++j) {
            if (places[j] >= 0)
                result.sums.products[i][j] = sums.products[from][std::size_t(places[j])];
        }
        if (i == 0 || i + 1 == places.size())
            continue;
        result.x[i] = x[from];
        result.spread.xBar[i] = spread.xBar[from];
        result.spread.xStdErr[i] = spread.xStdErr[from];
    }
    return result;
}

RecordTotals RecordTotals::ofColumns(int m) const
{
    std::vector<int> columns(static_cast<std::size_t>(m));
    std::iota(columns.begin(), columns.end(), 1);
    return ofColumns(columns);
}

RecordTotals totalsOf(PatternSums &sums, std::uint32_t controls)
{
    RecordTotals result;
    result.sums.n = sums.count(controls);
    result.sums.m = std::popcount(controls);
    result.sums.products = sums.products(controls);
    int j = 1;
    for (std::uint32_t left = controls; left != 0; left &= left - 1, ++j)
        result.sums.exponents[std::size_t(j)] = sums.exponent(std::countr_zero(left));
    result.sums.exponents[std::size_t(j)] = sums.exponent(sums.controls());
    const std::vector<PatternSums::Column> columns = sums.columns(controls);
    if (columns.empty())
        return result;
    for (std::size_t k = 1; k < columns.size(); ++k) {
        result.x[k] = {columns[k - 1].min, columns[k - 1].max};
        result.spread.xBar[k] = columns[k - 1].mean;
        result.spread.xStdErr[k] = columns[k - 1].deviation;
    }
    result.y = {columns.back().min, columns.back().max};
    result.spread.yBar = columns.back().mean;
    result.spread.yStdErr = columns.back().deviation;
    return result;
}

Sums sumsOf(const Observations &observations)
{
    Sums sums;
    sums.n = observations.n();
    sums.m = observations.m();
    for (int j = 1; j <= sums.m; ++j)
        sums.exponents[std::size_t(j)] = scaleOf(observations.x(j));
    sums.exponents[std::size_t(sums.m) + 1] = scaleOf(observations.y());
    if (!sums.plain())
        scaledProducts(observations.extendedColumns(), observations.n(), sums);
    else if (UsableRecords *const kept = observations.keptProducts())
        kept->crossProducts(observations.numbers(), sums.products);
    else
        plainProducts(observations, sums.products);
    return sums;
}

} // namespace nuvo
