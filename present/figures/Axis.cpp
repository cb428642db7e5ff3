// SPDX-License-Identifier: MIT
#include "present/figures/Axis.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace nuvo {

namespace {

// Differences of doubles leave the doubles' range (-1e308 to 1e308), and tick distances their precision (1e-320).
using Wide = long double;

constexpr double Greatest = std::numeric_limits<double>::max();
constexpr QChar Minus(0x2212);
/// Ticks are written in full up to that many digits before the point, and after it for numbers below 1.
constexpr int PlainDigits = 7;
constexpr int PlainPlaces = 4;
/// Ticks with more digits than that show what is left of a number that is taken off them all.
constexpr int MostDigits = 8;

double held(Wide value)
{
    return double(std::clamp(value, Wide(-Greatest), Wide(Greatest)));
}

Wide tenTo(int exponent)
{
    return std::pow(Wide(10), Wide(exponent));
}

QString superscript(int number)
{
    static const QString digits = QStringLiteral("⁰¹²³⁴⁵⁶⁷⁸⁹");
    QString text = number < 0 ? QStringLiteral("⁻") : QString();
    for (const QChar digit : QString::number(std::abs(number)))
        text += digits[digit.digitValue()];
    return text;
}

/// Digits as a whole number, the point so many places from the right: 15, 1 is "1.5".
QString withPoint(qint64 digits, int places, QChar point)
{
    QString text = QString::number(std::abs(digits));
    if (places > 0) {
        text = text.rightJustified(places + 1, u'0');
        text.insert(text.size() - places, point);
    } else if (digits != 0) {
        text += QString(-places, u'0');
    }
    return digits < 0 ? Minus + text : text;
}

int digitsOf(qint64 number)
{
    return int(QString::number(std::abs(number)).size());
}

/// A whole number times a power of ten, written in full or with a power; `largest` decides for all ticks of an axis.
QString numberText(qint64 number, int exponent, qint64 largest, QChar point)
{
    const int lead = digitsOf(largest) - 1 + exponent; // the power of ten that the largest one has
    if (number == 0 || largest == 0)
        return QStringLiteral("0");
    if (lead < PlainDigits && lead >= -PlainPlaces && exponent >= -PlainPlaces - PlainDigits)
        return withPoint(number, -exponent, point);
    return withPoint(number, lead - exponent, point) + QStringLiteral("×10") + superscript(lead);
}

struct Step
{
    int digit = 1;    ///< 1, 2 or 5
    int exponent = 0; ///< times ten to that power
    Wide Size() const { return digit * tenTo(exponent); }
};

/// The smallest round distance that is not below this.
Step roundStep(Wide least, bool whole)
{
    Step step;
    step.exponent = int(std::floor(std::log10(least)));
    // The logarithm may be off by a rounding.
    while (step.Size() >= least)
        --step.exponent;
    for (;;) {
        for (const int digit : {1, 2, 5}) {
            step.digit = digit;
            if (step.Size() >= least * (1 - 1e-12L) && (!whole || step.exponent >= 0))
                return step;
        }
        ++step.exponent;
    }
}

} // namespace

void AxisRange::Add(double value)
{
    if (!std::isfinite(value))
        return;
    const bool first = IsEmpty();
    low = first ? value : std::min(low, value);
    high = first ? value : std::max(high, value);
}

double Axis::Place(double value) const
{
    return double((Wide(value) - range.low) / (Wide(range.high) - range.low));
}

double Axis::Value(double place) const
{
    return held(range.low + (Wide(range.high) - range.low) * place);
}

AxisRange roomyRange(const AxisRange &values)
{
    if (values.IsEmpty())
        return {0, 1};
    constexpr Wide Room = 0.04L;
    Wide room = (Wide(values.high) - values.low) * Room;
    const Wide size = std::max(std::abs(Wide(values.low)), std::abs(Wide(values.high)));
    // Nothing varies, or by so little that ends next to each other would part no ticks.
    const Wide least = size * 1e-13L;
    if (values.low == values.high)
        room = size > 0 ? size / 10 : 1;
    else if (room < least)
        room = least;
    return {held(values.low - room), held(values.high + room)};
}

QString figureNumber(double value, int digits, QChar point)
{
    if (!std::isfinite(value))
        return std::isnan(value) ? QStringLiteral("NaN")
               : value > 0       ? QStringLiteral("∞")
                                 : Minus + QStringLiteral("∞");
    // "d.ddde±x", correctly rounded: the digits as a whole number and the power of the last of them.
    const QString text = QString::number(value, 'e', std::clamp(digits, 1, 17) - 1);
    const qsizetype e = text.indexOf(u'e');
    qint64 number = QString(text.left(e)).remove(u'.').toLongLong();
    int exponent = QStringView(text).mid(e + 1).toInt() - (std::clamp(digits, 1, 17) - 1);
    while (number != 0 && number % 10 == 0) {
        number /= 10;
        ++exponent;
    }
    return numberText(number, exponent, number, point);
}

Axis makeAxis(const AxisRange &range, int most, bool whole, QChar point)
{
    Axis axis;
    axis.range = range;
    const Wide low = range.low;
    const Wide span = Wide(range.high) - low;
    if (span <= 0)
        return axis;
    const Step step = roundStep(span / std::max(most, 1), whole);
    const Wide size = step.Size();
    // Ticks closer than the doubles themselves would repeat.
    if (size < std::max(std::abs(low), std::abs(low + span)) * 1e-16L)
        return axis;
    const auto first = qint64(std::ceil(low / size - 1e-9L));
    const auto last = qint64(std::floor(Wide(range.high) / size + 1e-9L));

    const qint64 largest = std::max(std::abs(first), std::abs(last)) * step.digit;
    qint64 less = 0;
    // Digits that the ticks have in common say nothing on each of them.
    if (digitsOf(largest) > MostDigits && (first > 0 || last < 0)) {
        constexpr qint64 Left = 1000;
        less = first * step.digit / Left * Left;
        QString taken = figureNumber(double(std::abs(less) * tenTo(step.exponent)), 17, point);
        // In full where that is not too long: what has to be added in the head.
        if (const int zeros = step.exponent; zeros >= 0 && digitsOf(less) + zeros <= 15)
            taken = withPoint(std::abs(less), -zeros, point);
        axis.less = (less < 0 ? QStringLiteral(" + ") : QStringLiteral(" − ")) + taken;
    }
    qint64 shown = 0;
    for (qint64 k = first; k <= last; ++k)
        shown = std::max(shown, std::abs(k * step.digit - less));
    for (qint64 k = first; k <= last; ++k) {
        AxisTick tick;
        tick.value = std::clamp(held(Wide(k) * step.digit * tenTo(step.exponent)), range.low, range.high);
        tick.text = numberText(k * step.digit - less, step.exponent, shown, point);
        axis.ticks.push_back(tick);
    }
    return axis;
}

} // namespace nuvo
