// SPDX-License-Identifier: MIT
#include "engine/kernel/Robust.h"

#include "engine/kernel/Distributions.h"

#include <cmath>
#include <limits>

namespace nuvo {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

using Column = std::vector<double>;
using Middle = Factors::Matrix;

int bartlettLags(double n)
{
    // A power that is whole is not to be rounded below it.
    return static_cast<int>(std::floor(4 * std::pow(n / 100, 2.0L / 9) * (1 + 1e-15L)));
}

// What one observation contributes to the estimating equations: q times the weighted residual, by columns.
std::vector<Column> scores(const Observed &observed, RobustKind kind)
{
    std::vector<Column> result = observed.q;
    for (int i = 0; i < observed.n; ++i) {
        double e = observed.residual[i];
        if (kind == RobustKind::Hc2)
            e /= std::sqrt(observed.rest[i]);
        else if (kind == RobustKind::Hc3)
            e /= observed.rest[i];
        for (Column &column : result)
            column[i] *= e;
    }
    return result;
}

// The sum of scores(i)' scores(i - lag) for all pairs of columns.
Middle products(const std::vector<Column> &scores, const std::vector<double> &largest, int lag)
{
    const int p = static_cast<int>(scores.size());
    const int n = static_cast<int>(scores[0].size()) - lag;
    Middle result{};
    std::vector<DataColumn> columns;
    columns.reserve(scores.size());
    for (int k = 0; k < p; ++k)
        columns.push_back({scores[k].data(), largest[k]});
    for (int k = 0; k < p; ++k) {
        const int first = lag == 0 ? k : 0; // symmetric
        dots({scores[k].data() + lag, largest[k]}, std::span(columns).subspan(first), n, &result[k][first]);
        for (int j = 0; j < first; ++j)
            result[k][j] = result[j][k];
    }
    return result;
}

Middle middle(const Factors &factors, const Observed &observed, RobustKind kind, int lags)
{
    const std::vector<Column> all = scores(observed, kind);
    std::vector<double> largest;
    largest.reserve(all.size());
    for (const Column &column : all)
        largest.push_back(minMax(column.data(), observed.n).largest());
    Middle sum = products(all, largest, 0);
    for (int lag = 1; lag <= lags && lag < observed.n; ++lag) {
        const double weight = 1 - static_cast<double>(lag) / (lags + 1);
        const Middle further = products(all, largest, lag);
        for (int i = 0; i < factors.rank(); ++i)
            for (int j = 0; j < factors.rank(); ++j)
                sum[i][j] += weight * (further[i][j] + further[j][i]);
    }
    return sum;
}

bool exists(const Factors &factors, const Observed &observed, RobustKind kind)
{
    if (!factors.hasVariance())
        return false;
    if (kind == RobustKind::Hc2 || kind == RobustKind::Hc3)
        for (const double rest : observed.rest)
            if (rest == 0)
                return false;
    return true;
}

} // namespace

Robust robust(const Factors &factors, const Observed &observed, RobustKind kind)
{
    const int parameters = factors.parameters();
    Robust out;
    out.standardErrors.assign(parameters, none);
    out.tValues = out.pValues = out.standardErrors;
    out.covariance.assign(parameters, out.standardErrors);
    if (!exists(factors, observed, kind))
        return out;
    const int p = factors.rank();
    const double n = observed.n;
    out.lags = kind == RobustKind::Hac ? bartlettLags(n) : 0;
    const Middle sum = middle(factors, observed, kind, out.lags);
    const DoubleDouble correction = kind == RobustKind::Hc1 ? DoubleDouble(n) / (n - parameters) : DoubleDouble(1);
    // The coefficients are R^-1 Q'y, so their covariance is R^-1 (the sum) R^-T.
    Middle left{};
    for (int i = 0; i < p; ++i)
        for (int j = 0; j < p; ++j)
            for (int k = i; k < p; ++k)
                left[i][j] += factors.inverseRoot[k][i] * sum[k][j];
    for (int i = 0; i < p; ++i) {
        for (int j = 0; j < p; ++j) {
            DoubleDouble value;
            for (int k = j; k < p; ++k)
                value += left[i][k] * factors.inverseRoot[k][j];
            const int row = factors.kept[i];
            const int column = factors.kept[j];
            const int unit = factors.exponent[factors.m + 1];
            value *= correction;
            out.covariance[row][column] =
                std::ldexp(value.hi, 2 * unit - factors.exponent[row] - factors.exponent[column]);
            if (i != j)
                continue;
            const double error = std::sqrt(value.hi);
            out.standardErrors[row] = std::ldexp(error, unit - factors.exponent[row]);
            if (!factors.exact) {
                out.tValues[row] = factors.coefficients[i].hi / error;
                out.pValues[row] = studentTail(out.tValues[row], factors.degreesOfFreedom());
            }
        }
    }
    return out;
}

} // namespace nuvo
