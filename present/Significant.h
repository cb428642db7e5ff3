// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QString>

namespace nuvo {

/// What a page shows where a figure does not exist.
inline constexpr QStringView kNoFigure = u"-";

/// A number with that many significant digits (1 to 17), correctly rounded. What needs fewer has fewer ("2.5"), what
/// was rounded keeps its last zeros ("0.9954790" of 0.995479005). Digits before the point are never rounded away to
/// zeros: 184172401.94 is "184172402" with any number of digits. Below 0.0001 and from 1E15 on with an exponent
/// ("4.984031e-10"). NaN is "-".
NUVO_EXPORT QString significant(double value, int digits = 7, QChar point = u'.');

/// A p-value: the same, and "<1e-300" for what is smaller, 0 too.
NUVO_EXPORT QString probability(double value, int digits = 7, QChar point = u'.');

} // namespace nuvo
