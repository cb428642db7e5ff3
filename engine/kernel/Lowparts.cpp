// SPDX-License-Identifier: MIT
#include "engine/kernel/Lowparts.h"

#include <algorithm>
#include <vector>

namespace nuvo {

namespace {

DataColumn lowOf(const ExtendedColumn &column, int n)
{
    return {column.low, minMax(column.low, n).largest()};
}

DoubleDouble dot(DataColumn a, DataColumn b, int n)
{
    DoubleDouble result;
    dots(a, {&b, 1}, n, &result);
    return result;
}

DoubleDouble sum(DataColumn a, int n)
{
    DoubleDouble result;
    sums({&a, 1}, n, &result);
    return result;
}

} // namespace

double lowPartOfPower(double a, double exponent, double value)
{
    constexpr double largest = 1 << 20;
    if (!(std::fabs(exponent) <= largest) || exponent != std::floor(exponent) || !std::isfinite(value))
        return 0;
    DoubleDouble power = 1;
    DoubleDouble square = a;
    for (int left = static_cast<int>(std::fabs(exponent)); left > 0; left /= 2) {
        if (left % 2 != 0)
            power *= square;
        if (left > 1)
            square *= square;
    }
    if (exponent < 0)
        power = DoubleDouble(1) / power;
    return detail::finiteOrZero((power - DoubleDouble(value)).hi);
}

bool allExact(const double *low, int n)
{
    return std::all_of(low, low + n, [](double one) { return one == 0; });
}

DoubleDouble lowSum(const ExtendedColumn &a, int n)
{
    return a.low ? sum(lowOf(a, n), n) : DoubleDouble();
}

DoubleDouble lowDot(const ExtendedColumn &a, const ExtendedColumn &b, int n)
{
    DoubleDouble result;
    if (a.low)
        result += dot(lowOf(a, n), b, n);
    if (b.low)
        result += dot(lowOf(b, n), a, n);
    return result;
}

DoubleDouble dot(const ExtendedColumn &a, const ExtendedColumn &b, int n)
{
    const DoubleDouble rounded = dot(DataColumn(a), DataColumn(b), n);
    return a.low || b.low ? rounded + lowDot(a, b, n) : rounded;
}

void crossProducts(std::span<const ExtendedColumn> columns, int n, CrossProducts &products)
{
    const std::vector<DataColumn> rounded(columns.begin(), columns.end());
    crossProducts(rounded, n, products);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].low)
            products[0][i + 1] = products[i + 1][0] = products[0][i + 1] + lowSum(columns[i], n);
        for (std::size_t j = 0; j <= i; ++j)
            if (columns[i].low || columns[j].low)
                products[i + 1][j + 1] = products[j + 1][i + 1] =
                    products[i + 1][j + 1] + lowDot(columns[i], columns[j], n);
    }
}

} // namespace nuvo
