#include "engine/Sums.h"

#include "engine/Observations.h"
#include "engine/kernel/Usablerecords.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace nuvo {

namespace {

DoubleDouble scaled(DoubleDouble value, int exponent)
{
    return {std::scalbn(value.hi, exponent), std::scalbn(value.lo, exponent)};
}

/// The columns that need it are multiplied by their powers of two for the time of the sums.
void scaledProducts(std::array<DataColumn, MaxParameters> columns, int n, Sums &sums)
{
    std::vector<std::vector<double>> multiples;
    for (std::size_t j = 0; j <= std::size_t(sums.m); ++j) {
        const int exponent = sums.exponents[j + 1];
        if (exponent == 0)
            continue;
        std::vector<double> &values = multiples.emplace_back(columns[j].values, columns[j].values + n);
        for (double &value : values)
            value = std::scalbn(value, -exponent);
        columns[j] = {values.data(), std::scalbn(columns[j].largest, -exponent)};
    }
    crossProducts({columns.data(), std::size_t(sums.m) + 1}, n, sums.products);
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

Sums sumsOf(const Observations &observations)
{
    Sums sums;
    sums.n = observations.n();
    sums.m = observations.m();
    for (int j = 1; j <= sums.m; ++j)
        sums.exponents[std::size_t(j)] = scaleOf(observations.x(j));
    sums.exponents[std::size_t(sums.m) + 1] = scaleOf(observations.y());
    if (!sums.plain())
        scaledProducts(observations.columns(), observations.n(), sums);
    else if (UsableRecords *const kept = observations.keptProducts())
        kept->crossProducts(observations.numbers(), sums.products);
    else
        crossProducts({observations.columns().data(), std::size_t(sums.m) + 1}, observations.n(), sums.products);
    return sums;
}

} // namespace nuvo
