// SPDX-License-Identifier: MIT
#include "engine/kernel/Prediction.h"

#include <cmath>
#include <limits>

namespace nuvo {

Prediction predict(const Factors &factors, std::span<const double> terms, std::span<const double> termsLow,
                   double level)
{
    const int p = factors.rank();
    std::array<DoubleDouble, MaxParameters> x;
    for (int i = 0; i < p; ++i) {
        const int j = factors.kept[i];
        DoubleDouble value = 1;
        if (j > 0)
            value = termsLow.empty() ? DoubleDouble(terms[j - 1]) : DoubleDouble::sum(terms[j - 1], termsLow[j - 1]);
        x[i] = {std::ldexp(value.hi, -factors.exponent[j]), std::ldexp(value.lo, -factors.exponent[j])};
    }
    DoubleDouble value;
    DoubleDouble leverage;
    double size = 0;
    for (int k = 0; k < p; ++k) {
        const DoubleDouble part = factors.coefficients[k] * x[k];
        value += part;
        size += std::fabs(part.hi);
        DoubleDouble q;
        for (int i = 0; i <= k; ++i)
            q += factors.inverseRoot[k][i] * x[i];
        leverage += q * q;
    }
    // What rounding leaves of a sum that is 0.
    constexpr double nothing = 0x1p-96;
    if (std::fabs(value.hi) <= nothing * size)
        value = 0;
    Prediction out;
    const int response = factors.m + 1;
    out.value = factors.unscaled(value.hi, response);
    const double s = factors.hasVariance() ? std::sqrt(factors.variance()) : std::numeric_limits<double>::quiet_NaN();
    out.standardError = factors.unscaled(s * std::sqrt(leverage.hi), response);
    const double degrees = factors.degreesOfFreedom();
    const double ofMean = halfWidth(out.standardError, level, degrees);
    const double ofNew = halfWidth(factors.unscaled(s * std::sqrt(1 + leverage.hi), response), level, degrees);
    out.confidence = {out.value - ofMean, out.value + ofMean};
    out.prediction = {out.value - ofNew, out.value + ofNew};
    return out;
}

} // namespace nuvo
