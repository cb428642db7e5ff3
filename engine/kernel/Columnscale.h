// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

namespace nuvo {

/// The exponent e of a column, by its largest absolute value, that is worked on as its multiple by 2^-e, so that no
/// product leaves the range of doubles: 0, and nothing is done, between 2^-200 and 2^200 and for what is no number.
inline int columnScale(double largest)
{
    const bool ordinary = largest >= 0x1p-200 && largest <= 0x1p200;
    return ordinary || !(largest > 0) || std::isinf(largest) ? 0 : std::ilogb(largest);
}

} // namespace nuvo
