// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QChar>
#include <QString>

#include <vector>

namespace nuvo {

/// From the least to the greatest of some numbers; empty while low > high.
struct NUVO_EXPORT AxisRange
{
    double low = 1;
    double high = 0;

    /// Whether it holds no value.
    bool IsEmpty() const { return !(low <= high); }
    /// Widens the range to the value; a NaN or an infinity is left out.
    void Add(double value);
    /// Both ends are part of it; a NaN is not.
    bool Contains(double value) const { return low <= value && value <= high; }
    bool operator==(const AxisRange &) const = default;
};

struct AxisTick
{
    double value = 0;
    QString text;
};

/// An axis: the range that it covers and its ticks at round numbers, 1, 2 or 5 times a power of ten apart.
struct NUVO_EXPORT Axis
{
    AxisRange range{0, 1};
    std::vector<AxisTick> ticks; ///< ascending, all within the range
    /// What the axis title is followed by, where the ticks show what is left of a large number: " − 10000000000".
    QString less;

    /// Where a value stands, 0 at the low end and 1 at the high one; beyond these outside the range.
    double Place(double value) const;
    /// The value at a place, held within the finite doubles.
    double Value(double place) const;
};

/// The range that shows these values with some room on either side, so that no point touches the frame. A single
/// value gets a tenth of itself on either side (1 around zero), no value at all 0 to 1. Never wider than the doubles.
NUVO_EXPORT AxisRange roomyRange(const AxisRange &values);

/// An axis over that range, as given, with about `most` ticks, seldom fewer than half of them and never more. Ticks
/// are written in full from 0.0001 to 9999999 ("0.3", never 0.30000000000000004), else with a power of ten
/// ("1.5×10¹²"), with a minus sign, not a hyphen. `whole` keeps to whole numbers. \pre range is not empty, both ends
/// are finite.
NUVO_EXPORT Axis makeAxis(const AxisRange &range, int most, bool whole = false, QChar point = u'.');

/// A value as a reader is shown it: at most that many significant digits, no trailing zeros, as the ticks are
/// written.
NUVO_EXPORT QString figureNumber(double value, int digits = 7, QChar point = u'.');

} // namespace nuvo
