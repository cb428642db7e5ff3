// SPDX-License-Identifier: MIT
#include "engine/kernel/Influence.h"

#include "engine/kernel/Instructionset.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace nuvo {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

void workOut(const Factors &factors, const Observed &observed, Influence &out)
{
    const std::size_t n = observed.n;
    const int p = factors.parameters();
    const double degrees = factors.degreesOfFreedom();
    const double sse = factors.sse.hi;
    const double fewer = degrees > 1 ? degrees - 1 : none;
    const double s = std::sqrt(factors.variance());
    // Without the observation nothing is left but rounding where e^2 / (1 - h) is all of SSE.
    const double nothing = 1e-20 * sse;
    std::vector<double> change(n); // e / (s(i) (1 - h)): what the dfbetas have in common
    for (std::size_t i = 0; i < n; ++i) {
        const double rest = observed.rest[i];
        const double e = observed.residual[i];
        const double root = std::sqrt(rest);
        double left = sse - e * e / rest;
        if (left < 0.1 * sse) // little of it is left, and more digits are needed
            left =
                (factors.sse - DoubleDouble(e, observed.residualLow[i]) * DoubleDouble(e, observed.residualLow[i]) /
                                   DoubleDouble(rest, observed.restLow[i]))
                    .hi;
        const double without = std::sqrt((left > nothing ? left : 0) / fewer);
        const double divisor = without > 0 ? without : none;
        const double standardized = e / (s * root);
        const double h = observed.leverage[i];
        change[i] = e / (divisor * rest);
        out.standardizedResiduals[i] = standardized;
        out.studentizedResiduals[i] = e / (divisor * root);
        out.cook[i] = standardized * standardized * h / (rest * p);
        out.dffits[i] = change[i] * std::sqrt(h);
        double power = 1;
        const double ratio = without / s * (without / s);
        for (int k = 0; k < p; ++k)
            power *= ratio;
        out.covRatio[i] = power / rest;
    }
    for (int j = 0; j <= factors.m; ++j) {
        const int k = factors.place[j];
        if (k < 0)
            continue;
        std::vector<double> &dfbetas = out.dfbetas[j];
        std::fill(dfbetas.begin(), dfbetas.end(), 0.0);
        const DoubleDouble length = sqrt(factors.inverseDiagonal(k));
        for (int i = k; i < factors.rank(); ++i) {
            const double factor = (factors.inverseRoot[i][k] / length).hi;
            const double *q = observed.q[i].data();
            for (std::size_t row = 0; row < n; ++row)
                dfbetas[row] += factor * q[row];
        }
        for (std::size_t row = 0; row < n; ++row)
            dfbetas[row] *= change[row];
    }
}

#ifdef NUVO_HAS_AVX2
[[gnu::flatten]] NUVO_AVX2 void workOutAvx2(const Factors &factors, const Observed &observed, Influence &out)
{
    workOut(factors, observed, out);
}
#endif

} // namespace

Influence influence(const Factors &factors, const Observed &observed)
{
    const std::size_t n = observed.n;
    Influence out;
    out.leverage = observed.leverage;
    for (std::vector<double> *figures :
         {&out.standardizedResiduals, &out.studentizedResiduals, &out.cook, &out.dffits, &out.covRatio})
        figures->assign(n, none);
    out.dfbetas.assign(factors.parameters(), std::vector<double>(n, none));
    if (!factors.hasVariance() || factors.exact)
        return out;
#ifdef NUVO_HAS_AVX2
    if (useAvx2())
        workOutAvx2(factors, observed, out);
    else
#endif
        workOut(factors, observed, out);
    for (std::size_t i = 0; i < n; ++i) {
        if (observed.rest[i] > 0)
            continue;
        for (std::vector<double> *figures :
             {&out.standardizedResiduals, &out.studentizedResiduals, &out.cook, &out.dffits, &out.covRatio})
            (*figures)[i] = none;
        for (std::vector<double> &dfbetas : out.dfbetas)
            dfbetas[i] = none;
    }
    return out;
}

} // namespace nuvo
