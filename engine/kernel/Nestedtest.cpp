// SPDX-License-Identifier: MIT
#include "engine/kernel/Nestedtest.h"

#include "engine/kernel/Distributions.h"

#include <algorithm>
#include <limits>

namespace nuvo {

NestedTest nestedTest(const ResidualSum &smaller, const ResidualSum &larger)
{
    NestedTest test;
    test.numerator = smaller.degreesOfFreedom - larger.degreesOfFreedom;
    test.denominator = larger.degreesOfFreedom;
    if (!(test.numerator > 0 && test.denominator > 0 && larger.sse > 0)) {
        test.f = test.pValue = std::numeric_limits<double>::quiet_NaN();
        return test;
    }
    // Rounding alone can make the smaller sum of the larger model the larger one.
    test.f = std::max(0.0, (smaller.sse - larger.sse) / test.numerator) / (larger.sse / test.denominator);
    test.pValue = fUpperTail(test.f, test.numerator, test.denominator);
    return test;
}

} // namespace nuvo
