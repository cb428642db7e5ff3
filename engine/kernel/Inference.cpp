// SPDX-License-Identifier: MIT
#include "engine/kernel/Inference.h"

#include "engine/kernel/Distributions.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace nuvo {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

void coefficientFigures(const Factors &factors, Inference &out)
{
    const int response = factors.m + 1;
    const bool exists = factors.hasVariance();
    const double s = exists ? std::sqrt(factors.variance()) : none;
    const double degrees = factors.degreesOfFreedom();
    const double quantile = halfWidth(1, out.level, degrees);
    for (int j = 0; j <= factors.m; ++j) {
        const int k = factors.place[j];
        const double b = factors.coefficient(j);
        out.coefficients.push_back(b);
        if (k < 0 || !exists) {
            out.standardErrors.push_back(none);
            out.tValues.push_back(none);
            out.pValues.push_back(none);
            out.confidence.push_back({none, none});
            continue;
        }
        const double scaledError = s * sqrt(factors.inverseDiagonal(k)).hi;
        const double error = std::ldexp(scaledError, factors.exponent[response] - factors.exponent[j]);
        const double t = factors.exact ? none : factors.coefficients[k].hi / scaledError;
        const double half = factors.exact ? 0 : error * quantile;
        out.standardErrors.push_back(error);
        out.tValues.push_back(t);
        out.pValues.push_back(studentTail(t, degrees));
        out.confidence.push_back({b - half, b + half});
    }
}

void fitFigures(const Factors &factors, Inference &out)
{
    const double n = static_cast<double>(factors.n);
    const double degrees = factors.degreesOfFreedom();
    const bool exists = factors.hasVariance();
    const double sse = factors.sse.hi;
    const double sst = factors.sst.hi;
    const bool varies = sst > 0;
    out.rSquared = !varies ? none : factors.m == 0 ? 0 : ((factors.sst - factors.sse) / factors.sst).hi;
    out.f = out.fPValue = none;
    if (exists && factors.m > 0 && !factors.exact) {
        out.f = (factors.sst - factors.sse).hi / factors.m / factors.variance();
        out.fPValue = fUpperTail(out.f, factors.m, degrees);
    }
    out.adjustedRSquared = none;
    if (exists && varies)
        out.adjustedRSquared = factors.m == 0 ? 0 : 1 - (sse / degrees) / (sst / (n - 1));

    out.logLikelihood = out.aic = out.aicc = out.bic = out.hqc = none;
    if (exists && !factors.exact) {
        const double scale = 2.0 * factors.exponent[factors.m + 1] * std::numbers::ln2;
        const double l = -n / 2 * (std::log(2 * std::numbers::pi) + std::log(sse / n) + scale + 1);
        const double k = factors.parameters() + 1;
        out.logLikelihood = l;
        out.aic = 2 * k - 2 * l;
        if (n > k + 1)
            out.aicc = out.aic + 2 * k * (k + 1) / (n - k - 1);
        out.bic = k * std::log(n) - 2 * l;
        out.hqc = 2 * k * std::log(std::log(n)) - 2 * l;
    }
}

void termFigures(const Factors &factors, Inference &out)
{
    const int response = factors.m + 1;
    const int unit = 2 * factors.exponent[response];
    const bool varies = factors.sst.hi > 0;
    for (int j = 1; j <= factors.m; ++j) {
        const int k = factors.place[j];
        if (k < 0) {
            for (std::vector<double> *figures :
                 {&out.standardized, &out.tolerance, &out.vif, &out.partialCorrelations, &out.semipartialCorrelations,
                  &out.partialSumsOfSquares})
                figures->push_back(none);
            out.sequentialSumsOfSquares.push_back(0);
            continue;
        }
        const DoubleDouble b = factors.coefficients[k];
        const DoubleDouble inverse = factors.inverseDiagonal(k);
        const DoubleDouble squares = factors.centredSquares(j);
        const DoubleDouble partial = b * b / inverse;
        const double sign = b.hi < 0 ? -1 : 1;
        out.standardized.push_back(varies ? (b * sqrt(squares / factors.sst)).hi : none);
        out.vif.push_back((inverse * squares).hi);
        out.tolerance.push_back((DoubleDouble(1) / (inverse * squares)).hi);
        // Neither is more than 1, but for rounding.
        const auto correlation = [&](DoubleDouble part, DoubleDouble whole) {
            return whole.hi > 0 ? sign * std::fmin(1.0, sqrt(part / whole).hi) : none;
        };
        out.partialCorrelations.push_back(correlation(partial, partial + factors.sse));
        out.semipartialCorrelations.push_back(varies ? correlation(partial, factors.sst) : none);
        const DoubleDouble sequential = factors.projected[k] * factors.projected[k];
        out.sequentialSumsOfSquares.push_back(std::ldexp(sequential.hi, unit));
        out.partialSumsOfSquares.push_back(std::ldexp(partial.hi, unit));
    }
}

} // namespace

double halfWidth(double standardError, double level, double degreesOfFreedom)
{
    return standardError == 0 ? 0 : standardError * studentQuantile(level, degreesOfFreedom);
}

Inference infer(const Factors &factors, double level)
{
    Inference out;
    out.level = level;
    coefficientFigures(factors, out);
    fitFigures(factors, out);
    termFigures(factors, out);
    out.conditionIndices = conditionIndices(factors);
    return out;
}

} // namespace nuvo
