// SPDX-License-Identifier: MIT
#include "engine/kernel/Shiftedsums.h"

#include "engine/kernel/Normalequations.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace nuvo {

namespace {

// What is left of a column around its mean, squared, by its squared length.
constexpr double LeastTolerance = 1e-6;
constexpr int CoefficientBits = 20;

/// To few enough bits that its product with most values is exact: what is taken from the coefficients here comes back
/// with their correction.
double rounded(double value)
{
    int exponent = 0;
    const double fraction = std::frexp(value, &exponent);
    return std::ldexp(std::nearbyint(std::ldexp(fraction, CoefficientBits)), exponent - CoefficientBits);
}

/// The combination of some columns that comes nearest to another one; its SSE in `sse`.
Combination combinationOf(const CrossProducts &products, int column, std::span<const int> on, double &sse)
{
    std::vector<std::size_t> places{0};
    places.insert(places.end(), on.begin(), on.end());
    places.push_back(std::size_t(column));
    CrossProducts chosen{};
    for (std::size_t i = 0; i < places.size(); ++i)
        for (std::size_t j = 0; j < places.size(); ++j)
            chosen[i][j] = products[places[i]][places[j]];
    const Coefficients solved = solveCoefficients(chosen, int(on.size()));
    Combination result;
    result.column = column;
    for (std::size_t i = 0; i <= on.size(); ++i) {
        // What is far below any product's last digit only leads out of the range of doubles.
        if (std::isfinite(solved.b[i]) && std::fabs(solved.b[i]) > 0x1p-400)
            result.b[places[i]] = rounded(solved.b[i]);
    }
    sse = solved.sse;
    return result;
}

std::vector<int> independentColumns(const CrossProducts &products, int m)
{
    const std::vector<int> dependent = dependentColumns(products, m);
    std::vector<int> result;
    for (int j = 1; j <= m; ++j) {
        if (!std::binary_search(dependent.begin(), dependent.end(), j))
            result.push_back(j);
    }
    return result;
}

} // namespace

ColumnShift ColumnShift::of(double mean, ColumnRange range, ColumnRange all)
{
    ColumnShift result;
    const double largest = all.largest();
    // Room on both sides: the smallest values of a large column must not vanish, nor the squares of many leave the
    // range.
    if (largest > 0x1p200)
        result.exponent = std::ilogb(largest) - 100;
    else if (largest > 0 && largest < 0x1p-200)
        result.exponent = std::max(std::ilogb(largest), -1000);
    const double low = std::scalbn(range.min, -result.exponent);
    const double high = std::scalbn(range.max, -result.exponent);
    const double middle = std::clamp(std::scalbn(mean, -result.exponent), low, high);
    if (high == low) {
        result.shift = low;
    } else {
        const double step = std::scalbn(1.0, std::ilogb(high - low) - 10);
        result.shift = std::nearbyint(middle / step) * step;
        if (result.shift == 0)
            result.shift = step;
    }
    // Differences from this are no smaller than its last digit.
    constexpr double smallest = 0x1p-400;
    if (std::fabs(result.shift) < smallest)
        result.shift = largest > 0 ? std::scalbn(1.0, std::ilogb(largest) - result.exponent - 10) : 1;
    return result;
}

bool ColumnShift::isDispensable(double mean, ColumnRange range, ColumnRange all, bool whole)
{
    constexpr double largest = 0x1p200;
    constexpr double smallest = 0x1p-200;
    const bool notTiny = whole || all.min >= smallest || all.max <= -smallest;
    return notTiny && all.largest() <= largest && range.max > range.min && std::fabs(mean) <= range.max - range.min;
}

CrossProducts unshifted(const CrossProducts &shifted, std::span<const ColumnShift> shifts)
{
    CrossProducts products{};
    const DoubleDouble n = shifted[0][0];
    const auto shift = [&](std::size_t j) { return j == 0 ? 0.0 : shifts[j - 1].shift; };
    for (std::size_t i = 0; i <= shifts.size(); ++i) {
        for (std::size_t j = i; j <= shifts.size(); ++j) {
            // The constant is shifted by nothing: its row holds the sums of the others.
            DoubleDouble sum = shifted[i][j];
            if (i == 0 && j > 0)
                sum += n * shift(j);
            else if (i > 0)
                sum += shifted[0][j] * shift(i) + shifted[0][i] * shift(j) +
                       n * DoubleDouble::product(shift(i), shift(j));
            products[i][j] = sum;
            products[j][i] = products[i][j];
        }
    }
    return products;
}

Combination firstSolution(const CrossProducts &products, int m)
{
    double sse = 0;
    return combinationOf(products, m + 1, independentColumns(products, m), sse);
}

Combination nearlyDependent(const CrossProducts &products, int m, int from)
{
    for (int column = std::max(from, 1); column <= m; ++column) {
        const std::size_t at = std::size_t(column);
        const DoubleDouble length = products[at][at] - products[0][at] * products[0][at] / products[0][0];
        double left = 0;
        Combination result = combinationOf(products, column, independentColumns(products, column - 1), left);
        if (length.hi > 0 && !(left >= LeastTolerance * length.hi))
            return result;
    }
    return {};
}

void takeResiduals(CrossProducts &products, int m, const Combination &combination,
                   std::span<const DoubleDouble> residuals)
{
    const std::size_t column = std::size_t(combination.column);
    const std::size_t count = std::size_t(m) + 1;
    const auto combined = [&](auto value) {
        DoubleDouble sum = 0;
        for (std::size_t j = 0; j < count; ++j) {
            if (combination.b[j] != 0)
                sum += value(j) * combination.b[j];
        }
        return sum;
    };
    for (std::size_t i = 0; i <= count; ++i) {
        if (i == column)
            continue;
        products[i][column] = combined([&](std::size_t j) { return products[j][i]; }) + residuals[i];
        products[column][i] = products[i][column];
    }
    const DoubleDouble own = combined([&](std::size_t j) { return products[j][column]; });
    products[column][column] = own + combined([&](std::size_t j) { return residuals[j]; }) + residuals[column];
}

} // namespace nuvo
