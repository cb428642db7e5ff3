#include "engine/kernel/Distributions.h"

#include <boost/math/distributions/fisher_f.hpp>

#include <cmath>
#include <limits>

namespace nuvo {

namespace {

// Every odd argument is settled before the library is asked; what is left overflows or underflows at worst.
using Policy =
    boost::math::policies::policy<boost::math::policies::domain_error<boost::math::policies::ignore_error>,
                                  boost::math::policies::overflow_error<boost::math::policies::ignore_error>,
                                  boost::math::policies::evaluation_error<boost::math::policies::ignore_error>>;
using FDistribution = boost::math::fisher_f_distribution<double, Policy>;

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double none = std::numeric_limits<double>::quiet_NaN();

} // namespace

double fUpperTail(double f, double numerator, double denominator)
{
    if (std::isnan(f) || !(numerator > 0) || !(denominator > 0))
        return none;
    if (f <= 0)
        return 1;
    if (f == infinite)
        return 0;
    return cdf(complement(FDistribution(numerator, denominator), f));
}

double fUpperQuantile(double probability, double numerator, double denominator)
{
    if (!(probability >= 0 && probability <= 1) || !(numerator > 0) || !(denominator > 0))
        return none;
    if (probability == 0)
        return infinite;
    if (probability == 1)
        return 0;
    return quantile(complement(FDistribution(numerator, denominator), probability));
}

} // namespace nuvo
