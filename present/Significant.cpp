// SPDX-License-Identifier: MIT
#include "present/Significant.h"

#include <array>
#include <charconv>
#include <cmath>

namespace nuvo {

namespace {

constexpr int LeastExponent = -4;
constexpr int MostExponent = 14;
constexpr double LeastProbability = 1e-300;

/// A positive number as its digits and the place of the first of them: 0.0251 is "251" and -2.
struct Decimal
{
    QString digits;
    int exponent = 0;
};

/// From "2.51e-02".
Decimal parted(const char *begin, const char *end)
{
    const QString text = QString::fromLatin1(begin, end - begin);
    const qsizetype e = text.indexOf(u'e');
    return {text.left(e).remove(u'.'), text.mid(e + 1).toInt()};
}

template <class... Precision>
Decimal decimal(double value, Precision... precision)
{
    std::array<char, 64> buffer;
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                       std::chars_format::scientific, precision...);
    return parted(buffer.data(), written.ptr);
}

QString withExponent(const Decimal &number, QChar point)
{
    QString text = number.digits.left(1);
    if (number.digits.size() > 1)
        text += point + number.digits.mid(1);
    return text + u'e' + (number.exponent < 0 ? u'-' : u'+') +
           QStringLiteral("%1").arg(std::abs(number.exponent), 2, 10, QChar(u'0'));
}

QString withoutExponent(const Decimal &number, QChar point)
{
    const QString &digits = number.digits;
    if (number.exponent < 0)
        return u'0' + (point + QString(-number.exponent - 1, u'0') + digits);
    const qsizetype before = number.exponent + 1;
    if (digits.size() <= before)
        return digits + QString(before - digits.size(), u'0');
    return digits.left(before) + point + digits.mid(before);
}

} // namespace

QString significant(double value, int digits, QChar point)
{
    if (std::isnan(value))
        return kNoFigure.toString();
    const QString sign = value < 0 ? QStringLiteral("-") : QString();
    const double size = std::fabs(value);
    if (std::isinf(size))
        return sign + QStringLiteral("inf");
    if (size == 0)
        return QStringLiteral("0");
    Decimal number = decimal(size); // the fewest digits that tell it from every other double
    if (number.digits.size() > digits) {
        const bool longInteger = number.exponent >= digits && number.exponent <= MostExponent;
        number = decimal(size, longInteger ? number.exponent : digits - 1);
    }
    const bool small = number.exponent < LeastExponent || number.exponent > MostExponent;
    return sign + (small ? withExponent(number, point) : withoutExponent(number, point));
}

QString probability(double value, int digits, QChar point)
{
    return value < LeastProbability ? QStringLiteral("<1e-300") : significant(value, digits, point);
}

} // namespace nuvo
