// SPDX-License-Identifier: MIT
#include "engine/kernel/Shapirowilk.h"

#include "engine/kernel/Distributions.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

namespace nuvo {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

// The polynomial with these coefficients, the constant first.
template <std::size_t count>
double polynomial(const double (&coefficients)[count], double x)
{
    double value = 0;
    for (std::size_t i = count; i-- > 0;)
        value = value * x + coefficients[i];
    return value;
}

// The weights of the upper half of the ordered values, the largest value's first; those of the lower half are the
// same with the other sign. From expected normal order statistics (Blom), the first one or two corrected.
std::vector<double> weights(int n)
{
    std::vector<double> a(n / 2);
    if (n == 3)
        return {std::numbers::sqrt2 / 2};
    double squares = 0;
    for (int i = 0; i < n / 2; ++i) {
        a[i] = -normalQuantile((i + 1 - 0.375) / (n + 0.25));
        squares += 2 * a[i] * a[i];
    }
    constexpr double first[] = {0, 0.221157, -0.147981, -2.07119, 4.434685, -2.706056};
    constexpr double second[] = {0, 0.042981, -0.293762, -1.752461, 5.682633, -3.582633};
    const double root = 1 / std::sqrt(n);
    const double length = std::sqrt(squares);
    const double corrected[] = {a[0] / length + polynomial(first, root),
                                n > 5 ? a[1] / length + polynomial(second, root) : 0};
    const int count = n > 5 ? 2 : 1;
    double without = 1;
    for (int i = 0; i < count; ++i) {
        squares -= 2 * a[i] * a[i];
        without -= 2 * corrected[i] * corrected[i];
    }
    const double factor = std::sqrt(without / squares);
    for (int i = 0; i < n / 2; ++i)
        a[i] = i < count ? corrected[i] : a[i] * factor;
    return a;
}

double pValue(double w, int n)
{
    if (n == 3) // exactly
        return std::max(0.0, 6 / std::numbers::pi * (std::asin(std::sqrt(w)) - std::asin(std::sqrt(0.75))));
    double y = std::log1p(-w);
    double mean = 0;
    double deviation = 0;
    if (n <= 11) {
        constexpr double limit[] = {-2.273, 0.459};
        constexpr double means[] = {0.544, -0.39978, 0.025054, -6.714e-4};
        constexpr double deviations[] = {1.3822, -0.77857, 0.062767, -0.0020322};
        const double gamma = polynomial(limit, n);
        if (y >= gamma)
            return 0;
        y = -std::log(gamma - y);
        mean = polynomial(means, n);
        deviation = std::exp(polynomial(deviations, n));
    } else {
        constexpr double means[] = {-1.5861, -0.31082, -0.083751, 0.0038915};
        constexpr double deviations[] = {-0.4803, -0.082676, 0.0030302};
        const double logarithm = std::log(n);
        mean = polynomial(means, logarithm);
        deviation = std::exp(polynomial(deviations, logarithm));
    }
    return normalTail((y - mean) / deviation);
}

} // namespace

TestResult shapiroWilk(std::span<const double> values)
{
    const int n = static_cast<int>(values.size());
    if (values.size() < 3 || values.size() > 5000 ||
        std::any_of(values.begin(), values.end(), [](double value) { return !std::isfinite(value); }))
        return {none, none, none};
    std::vector<double> ordered(values.begin(), values.end());
    std::sort(ordered.begin(), ordered.end());
    long double sum = 0;
    for (const double value : ordered)
        sum += value;
    const long double mean = sum / n;
    long double squares = 0;
    for (const double value : ordered)
        squares += (value - mean) * (value - mean);
    if (!(squares > 0) || ordered.front() == ordered.back())
        return {none, none, none};
    const std::vector<double> a = weights(n);
    long double combination = 0;
    for (int i = 0; i < n / 2; ++i)
        combination += a[i] * (static_cast<long double>(ordered[n - 1 - i]) - ordered[i]);
    const double w = static_cast<double>(std::fmin(1.0L, combination * combination / squares));
    return {w, none, pValue(w, n)};
}

} // namespace nuvo
