// SPDX-License-Identifier: MIT
#include "engine/kernel/Distributions.h"

#include <boost/math/distributions/fisher_f.hpp>
#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/erf.hpp>
#include <boost/math/special_functions/gamma.hpp>

#include <cmath>
#include <limits>
#include <numbers>

namespace nuvo {

namespace {

namespace policies = boost::math::policies;

// A probability that underflows is 0, and no error is an exception.
using Quiet = policies::policy<
    policies::domain_error<policies::ignore_error>, policies::pole_error<policies::ignore_error>,
    policies::overflow_error<policies::ignore_error>, policies::underflow_error<policies::ignore_error>,
    policies::denorm_error<policies::ignore_error>, policies::evaluation_error<policies::ignore_error>>;
using FDistribution = boost::math::fisher_f_distribution<double, Quiet>;
using QuietDouble = policies::normalise<Quiet, policies::promote_double<false>>::type;

constexpr double none = std::numeric_limits<double>::quiet_NaN();

// P(B > a / (a + b)) for B of the beta distribution with parameters (p, q), from the smaller of the two fractions, so
// that neither is a difference.
long double betaTail(long double p, long double q, long double a, long double b)
{
    if (std::isinf(a))
        return 0;
    return a <= b ? boost::math::ibetac(p, q, a / (a + b), Quiet()) : boost::math::ibeta(q, p, b / (a + b), Quiet());
}

} // namespace

double studentTail(double t, double degrees)
{
    if (std::isnan(t) || !(degrees > 0))
        return none;
    const long double square = static_cast<long double>(t) * t;
    return static_cast<double>(betaTail(0.5L, degrees / 2.0L, square, degrees));
}

double studentQuantile(double level, double degrees)
{
    if (!(level > 0 && level < 1 && degrees > 0))
        return none;
    // T^2 / (degrees + T^2) is of the beta distribution; the root is asked for on the side that has the digits.
    long double rest = 0;
    const long double half = degrees / 2.0L;
    const long double fraction =
        level < 0.5 ? boost::math::ibeta_inv(0.5L, half, static_cast<long double>(level), &rest, Quiet())
                    : boost::math::ibetac_inv(0.5L, half, 1.0L - level, &rest, Quiet());
    return static_cast<double>(std::sqrt(degrees * fraction / rest));
}

double fUpperTail(double f, double numerator, double denominator)
{
    if (std::isnan(f) || !(numerator > 0 && denominator > 0))
        return none;
    if (f <= 0)
        return 1;
    return static_cast<double>(
        betaTail(numerator / 2.0L, denominator / 2.0L, static_cast<long double>(numerator) * f, denominator));
}

double fUpperQuantile(double probability, double numerator, double denominator)
{
    if (!(probability >= 0 && probability <= 1 && numerator > 0 && denominator > 0))
        return none;
    if (probability == 0)
        return std::numeric_limits<double>::infinity();
    if (probability == 1)
        return 0;
    return quantile(complement(FDistribution(numerator, denominator), probability));
}

double chiSquaredTail(double x, double degrees)
{
    if (!(x >= 0 && degrees > 0))
        return none;
    if (std::isinf(x))
        return 0;
    return static_cast<double>(boost::math::gamma_q(degrees / 2.0L, x / 2.0L, Quiet()));
}

double normalTail(double z)
{
    return static_cast<double>(std::erfc(z * std::numbers::sqrt2_v<long double> / 2) / 2);
}

double normalQuantile(double p)
{
    if (!(p > 0 && p < 1))
        return none;
    return -std::numbers::sqrt2 * boost::math::erfc_inv(2 * p, QuietDouble());
}

} // namespace nuvo
