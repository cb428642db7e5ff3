// SPDX-License-Identifier: MIT
#include "engine/kernel/Diagnostics.h"

#include "engine/kernel/Dependence.h"
#include "engine/kernel/Distributions.h"
#include "engine/kernel/Shapirowilk.h"
#include "engine/kernel/White.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace nuvo {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr TestResult noTest{none, none, none};

using Column = std::vector<double>;

DoubleDouble sumOf(const Column &column)
{
    const int n = static_cast<int>(column.size());
    const DataColumn operand{column.data(), minMax(column.data(), n).largest()};
    DoubleDouble result;
    sums({&operand, 1}, n, &result);
    return result;
}

double dot(const Column &a, const Column &b)
{
    const int n = static_cast<int>(a.size());
    const DataColumn operand{b.data(), minMax(b.data(), n).largest()};
    DoubleDouble result;
    dots({a.data(), minMax(a.data(), n).largest()}, {&operand, 1}, n, &result);
    return result.hi;
}

TestResult chiSquaredTest(double statistic, double degrees)
{
    return {statistic, degrees, chiSquaredTail(statistic, degrees)};
}

double durbinWatson(const Column &e)
{
    Column steps(e.size() - 1);
    for (std::size_t i = 0; i < steps.size(); ++i)
        steps[i] = e[i + 1] - e[i];
    return dot(steps, steps) / dot(e, e);
}

double press(const Factors &factors, const Observed &observed)
{
    Column deleted(observed.n);
    for (int i = 0; i < observed.n; ++i) {
        if (observed.rest[i] == 0)
            return none;
        deleted[i] = observed.residual[i] / observed.rest[i];
    }
    return factors.exact ? 0 : dot(deleted, deleted);
}

DataColumn operandOf(const Column &column)
{
    return {column.data(), minMax(column.data(), static_cast<int>(column.size())).largest()};
}

// The columns of Q without the constant's span what the terms do, and nothing cancels in their sums.
TestResult breuschPagan(const Factors &factors, const Observed &observed, const Column &squares)
{
    if (factors.m == 0)
        return noTest;
    std::vector<ExtendedColumn> columns;
    for (int k = 1; k < factors.rank(); ++k)
        columns.push_back({operandOf(observed.q[k]), nullptr});
    const Explained explained = regressOn(columns, operandOf(squares), observed.n);
    return chiSquaredTest(observed.n * explained.rSquared, factors.m);
}

TestResult jarqueBera(const Column &e, const Column &squares)
{
    const double n = static_cast<double>(e.size());
    const double variance = sumOf(squares).hi / n;
    const double skewness = dot(squares, e) / n / (variance * std::sqrt(variance));
    const double kurtosis = dot(squares, squares) / n / (variance * variance);
    return chiSquaredTest(n / 6 * (skewness * skewness + (kurtosis - 3) * (kurtosis - 3) / 4), 2);
}

// What orthonormal columns leave of a column, taken out twice so that it is orthogonal to them to the last digit.
void takeOut(const std::vector<DataColumn> &directions, Column &column)
{
    std::vector<DoubleDouble> along(directions.size());
    const int n = static_cast<int>(column.size());
    for (int round = 0; round < 2; ++round) {
        dots(operandOf(column), directions, n, along.data());
        for (std::size_t k = 0; k < directions.size(); ++k)
            for (int i = 0; i < n; ++i)
                column[i] -= along[k].hi * directions[k].values[i];
    }
}

void reset(const Factors &factors, const Observed &observed, Diagnostics &out)
{
    out.reset = noTest;
    const double degrees = factors.degreesOfFreedom() - 2;
    out.resetDenominator = degrees > 0 ? degrees : none;
    if (factors.m == 0 || !(degrees > 0))
        return;
    // Centred and of length 1, which leaves what squares and cubes span beside the constant and the fitted values.
    Column fitted = observed.fitted;
    const double mean = sumOf(fitted).hi / observed.n;
    for (double &value : fitted)
        value -= mean;
    const double length = std::sqrt(dot(fitted, fitted));
    if (!(length > 0))
        return;
    for (double &value : fitted)
        value *= std::sqrt(observed.n) / length;

    std::vector<DataColumn> directions;
    for (const Column &column : observed.q)
        directions.push_back(operandOf(column));
    Column powers[2];
    Column rest = observed.residual;
    for (int exponent = 2; exponent <= 3; ++exponent) {
        Column &power = powers[exponent - 2];
        power = fitted;
        for (int i = 1; i < exponent; ++i)
            std::transform(power.begin(), power.end(), fitted.begin(), power.begin(), std::multiplies<>());
        const double whole = dot(power, power);
        takeOut(directions, power);
        const double left = dot(power, power);
        constexpr double resolved = 1e-24; // what rounding leaves of a column that depends on the others
        if (!(left > resolved * whole))
            return;
        for (double &value : power)
            value /= std::sqrt(left);
        directions.push_back(operandOf(power));
        takeOut({directions.back()}, rest);
    }
    const double without = dot(rest, rest);
    const double explained = factors.sse.hi - without;
    const double statistic = std::fmax(0.0, explained) / 2 / (without / degrees);
    out.reset = {statistic, 2, fUpperTail(statistic, 2, degrees)};
}

} // namespace

Diagnostics diagnose(const Factors &factors, const Observed &observed, const ObservedColumns &columns)
{
    Diagnostics out;
    out.durbinWatson = out.press = out.predictedRSquared = out.resetDenominator = none;
    out.breuschPagan = out.white = out.jarqueBera = out.shapiroWilk = out.reset = noTest;
    if (!factors.hasVariance())
        return out;
    const double pressScaled = press(factors, observed);
    out.press = factors.unscaled(factors.unscaled(pressScaled, factors.m + 1), factors.m + 1);
    if (factors.sst.hi > 0)
        out.predictedRSquared = 1 - pressScaled / factors.sst.hi;
    if (factors.exact)
        return out;
    // Divided by s, so that their fourth powers stay in range.
    Column e = observed.residual;
    Column squares(e.size());
    const double s = std::sqrt(factors.variance());
    for (std::size_t i = 0; i < e.size(); ++i) {
        e[i] /= s;
        squares[i] = e[i] * e[i];
    }
    out.durbinWatson = durbinWatson(e);
    out.breuschPagan = breuschPagan(factors, observed, squares);
    out.white = whiteTest(factors, observed, columns, squares);
    out.jarqueBera = jarqueBera(e, squares);
    out.shapiroWilk = shapiroWilk(e);
    reset(factors, observed, out);
    return out;
}

} // namespace nuvo
