// SPDX-License-Identifier: MIT
#include "platform/Formats.h"

#include "platform/Errors.h"

#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

/// The longest expansion of a double has 767 significant digits.
constexpr int LongestExpansion = 767;

/// A magnitude as 0.d1d2d3... * 10^point, without trailing zeros; zero has no digits.
class Decimal
{
public:
    /// The exact decimal expansion of a finite value's magnitude: half is then told by one digit.
    static Decimal exact(double value)
    {
        // One decimal for every bit behind the point, and before the point at most one digit for every bit.
        int exponent = 0;
        std::frexp(value, &exponent);
        const int digits = std::min(
            std::max(std::numeric_limits<double>::digits - exponent, 0) + std::max(exponent, 1), LongestExpansion);
        std::array<char, LongestExpansion + 8> text;
        const auto end = std::to_chars(text.data(), text.data() + text.size(), std::fabs(value),
                                       std::chars_format::scientific, digits - 1);
        return Decimal(text.data(), end.ptr);
    }

    /// To the nearest of so many digits, which takes a fraction of the time of all of them.
    static Decimal nearest(double value, int digits)
    {
        std::array<char, 40> text;
        const auto end = std::to_chars(text.data(), text.data() + text.size(), std::fabs(value),
                                       std::chars_format::scientific, digits - 1);
        return Decimal(text.data(), end.ptr);
    }

    /// The fewest digits that read back as the same double.
    static Decimal shortest(double value)
    {
        std::array<char, 32> text;
        const auto end =
            std::to_chars(text.data(), text.data() + text.size(), std::fabs(value), std::chars_format::scientific);
        return Decimal(text.data(), end.ptr);
    }

    bool isZero() const { return size_ == 0; }
    int size() const { return size_; }
    int point() const { return point_; }
    /// The digit at 10^position, '0' where the number has none.
    QChar at(int position) const
    {
        const int index = point_ - 1 - position;
        return QLatin1Char(index >= 0 && index < size_ ? digits_[std::size_t(index)] : '0');
    }

    /// Whether what round(count) would cut off is a half, as far as the digits tell.
    bool isHalfBehind(int count) const
    {
        return count >= 0 && count == size_ - 1 && digits_[std::size_t(count)] == '5';
    }

    /// Keeps the first `count` digits (also 0 or less), rounded half away from zero.
    void round(int count)
    {
        if (count >= size_)
            return;
        const bool up = count >= 0 && digits_[std::size_t(count)] >= '5';
        size_ = std::max(count, 0);
        if (up) {
            while (size_ > 0 && digits_[std::size_t(size_) - 1] == '9')
                --size_;
            if (size_ > 0) {
                ++digits_[std::size_t(size_) - 1];
            } else {
                digits_[0] = '1';
                size_ = 1;
                ++point_;
            }
        }
        trim();
    }

private:
    /// From "d.ddde-xx".
    Decimal(const char *text, const char *end)
    {
        const char *exponent = std::find(text, end, 'e');
        for (const char *c = text; c != exponent; ++c) {
            if (*c != '.')
                digits_[std::size_t(size_++)] = *c;
        }
        ++exponent;
        std::from_chars(*exponent == '+' ? exponent + 1 : exponent, end, point_);
        ++point_;
        trim();
    }

    void trim()
    {
        while (size_ > 0 && digits_[std::size_t(size_) - 1] == '0')
            --size_;
        if (size_ == 0)
            point_ = 0;
    }

    std::array<char, LongestExpansion> digits_;
    int size_ = 0;
    int point_ = 0;
};

/// "NAN", "INF" or "-INF"; empty for a finite value.
QString nonFinite(double value)
{
    if (std::isnan(value))
        return QStringLiteral("NAN");
    if (std::isinf(value))
        return value > 0 ? QStringLiteral("INF") : QStringLiteral("-INF");
    return {};
}

/// "1.2345679E8": no trailing zeros, no plus sign.
QString scientific(const Decimal &number, QChar point)
{
    QString text;
    const int first = number.point() - 1;
    text += number.at(first);
    if (number.size() > 1)
        text += point;
    for (int i = 1; i < number.size(); ++i)
        text += number.at(first - i);
    return text + u'E' + QString::number(first);
}

QString fixed(const Decimal &number, int decimals, QChar point)
{
    const int before = std::max(number.point(), 1);
    QString text(before + (decimals > 0 ? decimals + 1 : 0), Qt::Uninitialized);
    QChar *to = text.data();
    for (int position = before - 1; position >= 0; --position)
        *to++ = number.at(position);
    if (decimals > 0)
        *to++ = point;
    for (int position = -1; position >= -decimals; --position)
        *to++ = number.at(position);
    return text;
}

QString withSign(double value, const QString &magnitude)
{
    return std::signbit(value) ? u'-' + magnitude : magnitude;
}

/// One section of a number mask, taken to pieces.
class Section
{
public:
    explicit Section(QStringView mask)
    {
        bool fraction = false;
        bool zeroSeen = false;
        for (qsizetype i = 0; i < mask.size();) {
            const QChar c = mask[i];
            qsizetype length = 1;
            if (c == u'0' || c == u'#') {
                zeroSeen = zeroSeen || c == u'0';
                if (fraction) {
                    ++decimals_;
                    if (c == u'0')
                        fewestDecimals_ = decimals_;
                } else {
                    ++places_;
                    if (zeroSeen)
                        ++fewestPlaces_;
                }
                add(Digit);
            } else if (c == u'.') {
                if (!fraction)
                    add(Point);
                fraction = true;
            } else if (c == u',') {
                thousands_ = true;
            } else if (const qsizetype exponent = exponentLength(mask.mid(i)); exponent > 0 && !hasExponent_) {
                hasExponent_ = true;
                add(Exponent, mask.mid(i, exponent));
                length = exponent;
            } else if (c == u'"' || c == u'\'') {
                const qsizetype close = mask.indexOf(c, i + 1);
                add(Literal, close < 0 ? mask.mid(i + 1) : mask.mid(i + 1, close - i - 1));
                length = close < 0 ? mask.size() - i : close - i + 1;
            } else {
                add(Literal, mask.mid(i, 1));
            }
            i += length;
        }
    }

    /// Rounds to the digits that the section shows.
    void round(Decimal &number) const { number.round((hasExponent_ ? places_ : number.point()) + decimals_); }

    /// A magnitude that has gone through round().
    QString text(const Decimal &number, QChar point) const
    {
        const bool shifted = hasExponent_ && !number.isZero();
        const int exponent = shifted ? number.point() - places_ : 0;
        const int before = std::max(shifted ? places_ : number.point(), fewestPlaces_);
        const int after = std::max(fewestDecimals_, number.size() - number.point() + exponent);
        const QChar separator = point == u',' ? u'.' : u',';

        QString text;
        int position = before - 1;
        const auto addDigitsDownTo = [&](int last) {
            for (; position >= last; --position) {
                text += number.at(position + exponent);
                if (thousands_ && position > 0 && position % 3 == 0)
                    text += separator;
            }
        };
        int place = places_;
        int decimal = 0;
        for (const Piece &piece : pieces_) {
            switch (piece.kind) {
            case Digit:
                if (place > 0)
                    addDigitsDownTo(--place); // digits beyond the mask's places come out at the first one
                else if (decimal++ < after)
                    text += number.at(-decimal + exponent);
                break;
            case Point:
                addDigitsDownTo(0);
                if (after > 0)
                    text += point;
                break;
            case Exponent:
                addExponent(text, piece.text, exponent);
                break;
            case Literal:
                text += piece.text;
                break;
            }
        }
        return text;
    }

private:
    enum Kind { Digit, Point, Exponent, Literal };
    struct Piece
    {
        Kind kind;
        QStringView text;
    };

    void add(Kind kind, QStringView text = {}) { pieces_.append({kind, text}); }

    /// How much of the mask is an exponent ("E+00"); 0 when it does not begin with one.
    static qsizetype exponentLength(QStringView mask)
    {
        if (mask.size() < 3 || mask[0].toUpper() != u'E' || (mask[1] != u'+' && mask[1] != u'-') || mask[2] != u'0')
            return 0;
        qsizetype length = 3;
        while (length < mask.size() && mask[length] == u'0')
            ++length;
        return length;
    }

    static void addExponent(QString &text, QStringView mask, int exponent)
    {
        text += mask[0];
        if (exponent < 0)
            text += u'-';
        else if (mask[1] == u'+')
            text += u'+';
        text += QString::number(std::abs(exponent)).rightJustified(mask.size() - 2, u'0');
    }

    QVarLengthArray<Piece, 16> pieces_;
    int places_ = 0;
    int fewestPlaces_ = 0;
    int decimals_ = 0;
    int fewestDecimals_ = 0;
    bool thousands_ = false;
    bool hasExponent_ = false;
};

/// The sections of a mask, parted by the ';' that stand outside quotes: positive, negative, zero.
std::array<QStringView, 3> sectionsOf(QStringView mask)
{
    std::array<QStringView, 3> sections;
    std::size_t section = 0;
    qsizetype start = 0;
    QChar quote;
    for (qsizetype i = 0; i <= mask.size() && section < sections.size(); ++i) {
        if (i == mask.size() || (quote.isNull() && mask[i] == u';')) {
            sections[section++] = mask.mid(start, i - start);
            start = i + 1;
        } else if (!quote.isNull()) {
            if (mask[i] == quote)
                quote = QChar();
        } else if (mask[i] == u'"' || mask[i] == u'\'') {
            quote = mask[i];
        }
    }
    return sections;
}

/// The characters of a number without its plus sign, ready for the standard library; false for any other character.
bool collectNumber(QStringView text, QVarLengthArray<char, 64> &number)
{
    for (const QChar c : text.trimmed()) {
        const char16_t u = c.unicode();
        if ((u >= u'0' && u <= u'9') || u == u'.' || u == u'+' || u == u'-' || u == u'e' || u == u'E')
            number.append(char(u));
        else if (u == u',')
            number.append('.');
        else
            return false;
    }
    if (number.size() > 1 && number[0] == '+' && number[1] != '-')
        number.remove(0);
    return true;
}

} // namespace

QString FloatToStrFixed(double value, int precision, int decimals, QChar point)
{
    if (!std::isfinite(value))
        return nonFinite(value);
    // A few digits more than are kept tell which way to round, unless they look like a half.
    constexpr int More = 4;
    Decimal number = Decimal::nearest(value, precision + More);
    const auto kept = [&] { return std::min(precision, number.point() + decimals); };
    if (number.isHalfBehind(kept()))
        number = Decimal::exact(value);
    number.round(kept());
    if (number.isZero())
        return fixed(number, decimals, point);
    return withSign(value, number.point() > precision ? scientific(number, point) : fixed(number, decimals, point));
}

QString FormatFloat(QStringView mask, double value, QChar point)
{
    if (!std::isfinite(value))
        return nonFinite(value);
    const auto [positive, negative, zero] = sectionsOf(mask);
    if (positive.isEmpty() && negative.isEmpty() && zero.isEmpty())
        return FloatToStr(value, point);

    Decimal number = Decimal::exact(value);
    const bool below = value < 0;
    const Section section(below && !negative.isEmpty() ? negative : positive);
    section.round(number);
    if (number.isZero())
        return Section(zero.isEmpty() ? positive : zero).text(number, point);
    const QString text = section.text(number, point);
    return below && negative.isEmpty() ? u'-' + text : text;
}

QString FloatToStr(double value, QChar point)
{
    if (!std::isfinite(value))
        return nonFinite(value);
    const Decimal number = Decimal::shortest(value);
    // Plain where a person would write it plain; 15 digits are what every double keeps.
    const bool plain = number.point() > -4 && number.point() <= 15;
    return withSign(value, plain ? fixed(number, std::max(number.size() - number.point(), 0), point)
                                 : scientific(number, point));
}

bool TryStrToFloat(QStringView text, double &value)
{
    QVarLengthArray<char, 64> number;
    if (collectNumber(text, number)) {
        double parsed = 0;
        const auto [end, error] = std::from_chars(number.cbegin(), number.cend(), parsed);
        if (error != std::errc() || end != number.cend())
            return false;
        value = parsed;
        return true;
    }
    const QStringView word = text.trimmed();
    if (word.compare(u"NAN", Qt::CaseInsensitive) == 0)
        value = std::numeric_limits<double>::quiet_NaN();
    else if (word.compare(u"INF", Qt::CaseInsensitive) == 0)
        value = std::numeric_limits<double>::infinity();
    else if (word.compare(u"-INF", Qt::CaseInsensitive) == 0)
        value = -std::numeric_limits<double>::infinity();
    else
        return false;
    return true;
}

double StrToFloat(const QString &text)
{
    double value = 0;
    if (!TryStrToFloat(text, value))
        throw EConvertError(QStringLiteral("\"%1\" is not a number").arg(text));
    return value;
}

int StrToInt(const QString &text)
{
    QVarLengthArray<char, 64> number;
    int value = 0;
    if (collectNumber(text, number)) {
        const auto [end, error] = std::from_chars(number.cbegin(), number.cend(), value);
        if (error == std::errc() && end == number.cend())
            return value;
    }
    throw EConvertError(QStringLiteral("\"%1\" is not an integer").arg(text));
}

QString FormatTime(double days)
{
    constexpr double MillisecondsPerDay = 86400000;
    if (!std::isfinite(days))
        days = 0;
    // To the millisecond first: a difference of two clock readings can lie a hair below the full second.
    const auto milliseconds = qint64(std::round(std::fmod(std::fabs(days), 1.0) * MillisecondsPerDay));
    const qint64 seconds = milliseconds / 1000 % 86400;
    QString text(8, u':');
    QChar *const to = text.data();
    int at = 0;
    for (const qint64 part : {seconds / 3600, seconds / 60 % 60, seconds % 60}) {
        to[at] = QChar(char16_t(u'0' + part / 10));
        to[at + 1] = QChar(char16_t(u'0' + part % 10));
        at += 3;
    }
    return text;
}
