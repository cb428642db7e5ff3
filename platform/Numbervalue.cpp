// SPDX-License-Identifier: MIT
#include "platform/Numbervalue.h"

#include "platform/Errors.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

namespace nuvo {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// Decimal exponent of the first digit that is not 0: 3 for "1234", -2 for "0.012"; far below 0 where all are 0.
long magnitude(const char *text, const char *end)
{
    const char *exponentAt = std::find_if(text, end, [](char c) { return c == 'e' || c == 'E'; });
    long exponent = 0;
    if (exponentAt != end) {
        const char *digits = exponentAt + 1;
        const bool plus = *digits == '+';
        const auto [rest, error] = std::from_chars(digits + (plus ? 1 : 0), end, exponent);
        if (error == std::errc::result_out_of_range)
            return digits[0] == '-' ? -1'000'000'000L : 1'000'000'000L;
    }
    const char *point = std::find(text, exponentAt, '.');
    const char *first = std::find_if(text, exponentAt, [](char c) { return c >= '1' && c <= '9'; });
    if (first == exponentAt)
        return -1'000'000'000L;
    return exponent + (first < point ? point - first - 1 : point - first);
}

/// A number with a decimal point and perhaps an exponent, ASCII only, the whole text.
bool plainNumber(QStringView text, double &value)
{
    constexpr qsizetype kShort = 64;
    std::array<char, kShort> onStack;
    std::string onHeap;
    char *begin = onStack.data();
    if (text.size() > kShort) {
        onHeap.resize(size_t(text.size()));
        begin = onHeap.data();
    }
    char *end = begin;
    for (const QChar c : text) {
        const bool taken = (c >= u'0' && c <= u'9') || c == u'.' || c == u'+' || c == u'-' || c == u'e' || c == u'E';
        if (!taken)
            return false;
        *end++ = char(c.unicode());
    }
    const char *from = begin;
    if (from != end && *from == '+')
        ++from;
    const char *digits = from + (from == begin && from != end && *from == '-' ? 1 : 0);
    if (digits == end || ((*digits < '0' || *digits > '9') && *digits != '.'))
        return false;
    double number = 0;
    const auto [rest, error] = std::from_chars(from, end, number);
    if (rest != end || error == std::errc::invalid_argument)
        return false;
    if (error == std::errc::result_out_of_range)
        number = magnitude(digits, end) < 0 ? 0 : kNaN;
    value = std::isfinite(number) ? number : kNaN;
    return true;
}

bool namesNoFiniteNumber(QStringView text)
{
    if (text.startsWith(u'-') || text.startsWith(u'+'))
        text = text.mid(1);
    return text.compare(u"nan", Qt::CaseInsensitive) == 0 || text.compare(u"inf", Qt::CaseInsensitive) == 0 ||
           text.compare(u"infinity", Qt::CaseInsensitive) == 0;
}

/// Takes the commas out of "1,234,567.5"; false where they part anything but groups of three digits.
bool withoutGrouping(QStringView text, QString &digits)
{
    const qsizetype point = text.indexOf(u'.');
    const QStringView whole = point < 0 ? text : text.left(point);
    if (text.mid(whole.size()).contains(u','))
        return false;
    const auto groups = whole.split(u',');
    if (groups.size() > 1 && groups[0].startsWith(u'0')) // "0,125" is a fraction
        return false;
    for (qsizetype i = 0; i < groups.size() && groups.size() > 1; ++i) {
        const bool size = i == 0 ? !groups[i].isEmpty() && groups[i].size() <= 3 : groups[i].size() == 3;
        if (!size || !std::all_of(groups[i].begin(), groups[i].end(), [](QChar c) { return c >= u'0' && c <= u'9'; }))
            return false;
    }
    digits = text.toString().remove(u',');
    return true;
}

/// A sign or parentheses, one currency sign on either side, thousands parted by commas.
bool money(QStringView text, double &value)
{
    bool negative = false;
    if (text.startsWith(u'(') && text.endsWith(u')')) {
        negative = true;
        text = text.mid(1, text.size() - 2).trimmed();
    }
    const auto dropSign = [&] {
        if (!negative && (text.startsWith(u'-') || text.startsWith(QChar(0x2212)))) {
            negative = true;
            text = text.mid(1).trimmed();
        }
    };
    dropSign();
    bool currency = false;
    if (!text.isEmpty() && text.front().category() == QChar::Symbol_Currency) {
        currency = true;
        text = text.mid(1).trimmed();
        dropSign();
    } else if (!text.isEmpty() && text.back().category() == QChar::Symbol_Currency) {
        currency = true;
        text = text.chopped(1).trimmed();
    }
    QString digits;
    if (!currency || text.isEmpty() || !text.front().isDigit() || !withoutGrouping(text, digits))
        return false;
    double amount = 0;
    if (!plainNumber(digits, amount))
        return false;
    value = negative ? -amount : amount;
    return true;
}

} // namespace

bool numberFromText(QStringView text, double &value)
{
    text = text.trimmed();
    if (plainNumber(text, value))
        return true;
    if (namesNoFiniteNumber(text)) {
        value = kNaN;
        return true;
    }
    return money(text, value);
}

QString writtenLike(QStringView text, QChar decimal)
{
    // What is longer is a text; and these are for messages, which come seldom.
    constexpr qsizetype longest = 64;
    text = text.trimmed();
    if (text.isEmpty() || text.size() > longest)
        return {};
    const QString subject = text.toString();
    static const QRegularExpression date(
        QStringLiteral("^(\\d{4}[-/.](0?[1-9]|1[0-2])[-/.]([0-2]?\\d|3[01])|"
                       "(([0-2]?\\d|3[01])[-/.](0?[1-9]|1[0-2])|(0?[1-9]|1[0-2])[-/.]([0-2]?\\d|3[01]))"
                       "[-/.](\\d{4}|\\d{2}))([ T]+\\d{1,2}:\\d{2}.*)?$"));
    static const QRegularExpression time(QStringLiteral("^\\d{1,2}:[0-5]\\d(:[0-5]\\d([.,]\\d+)?)?$"));
    if (date.match(subject).hasMatch())
        return QStringLiteral("is a date");
    if (time.match(subject).hasMatch())
        return QStringLiteral("is a time of day");
    static const QRegularExpression percentage(QStringLiteral("^[-+]?\\d+([.,]\\d+)?[ \\x{a0}\\x{202f}]?%$"));
    if (percentage.match(subject).hasMatch())
        return QStringLiteral("is a percentage");
    // Points, commas, apostrophes and blanks, of all widths.
    static const QRegularExpression grouped(QStringLiteral(
        "^[-+]?([1-9]\\d{0,2})(([.,' \\x{a0}\\x{2009}\\x{202f}\\x{2019}])\\d{3}(\\3\\d{3})*)([.,]\\d+)?$"));
    if (const QRegularExpressionMatch match = grouped.match(subject);
        match.hasMatch() && match.capturedView(3) != match.capturedView(5).left(1)) {
        const bool one = match.capturedView(2).size() == 4 && match.capturedView(5).isEmpty();
        const QChar sign = match.capturedView(3).front();
        if (one && sign == decimal)
            return {};
        if (one && sign == u',')
            return QStringLiteral("has thousands separators or a decimal comma");
        return QStringLiteral("has thousands separators");
    }
    static const QRegularExpression fraction(QStringLiteral("^[-+]?\\d*([.,])\\d+([eE][-+]?\\d+)?$"));
    const QRegularExpressionMatch match = fraction.match(subject);
    if (!match.hasMatch() || match.capturedView(1).front() == decimal)
        return {};
    return decimal == u'.' ? QStringLiteral("has a decimal comma") : QStringLiteral("has a decimal point");
}

NumberReading readNumber(const QVariant &value, FieldKind kind, double &number)
{
    if (value.isNull())
        return NumberReading::Null;
    if (kind == FieldKind::Date || kind == FieldKind::Time || kind == FieldKind::DateTime)
        return NumberReading::Date;
    double read = 0;
    switch (value.typeId()) {
    case QMetaType::Double:
        read = *static_cast<const double *>(value.constData());
        break;
    case QMetaType::LongLong:
        read = double(*static_cast<const qlonglong *>(value.constData()));
        break;
    case QMetaType::QDate:
    case QMetaType::QTime:
    case QMetaType::QDateTime:
        return NumberReading::Date;
    case QMetaType::QByteArray:
        return NumberReading::Binary;
    case QMetaType::QString:
        if (kind == FieldKind::Bits)
            return NumberReading::Bits;
        if (!numberFromText(*static_cast<const QString *>(value.constData()), read))
            return NumberReading::Text;
        break;
    default:
        read = value.toDouble();
    }
    if (!std::isfinite(read))
        return NumberReading::Null;
    number = read;
    return NumberReading::Number;
}

void requireNumber(NumberReading reading, const QVariant &value, const QString &place)
{
    switch (reading) {
    case NumberReading::Number:
    case NumberReading::Null:
        return;
    case NumberReading::Text:
        if (const QString like = writtenLike(value.toString()); !like.isEmpty())
            throw EConvertError(
                QStringLiteral("\"%1\" %2, so it is not read as a number (%3).").arg(value.toString(), like, place));
        throw EConvertError(QStringLiteral("\"%1\" is not a number (%2).").arg(value.toString(), place));
    case NumberReading::Date:
        throw EDatabaseError(QStringLiteral("A date is not a number (%1).").arg(place));
    case NumberReading::Binary:
        throw EDatabaseError(QStringLiteral("Binary data is not a number (%1).").arg(place));
    case NumberReading::Bits:
        throw EDatabaseError(QStringLiteral("A string of bits is not a number (%1).").arg(place));
    }
}

} // namespace nuvo
