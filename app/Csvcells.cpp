// SPDX-License-Identifier: MIT
#include "app/Csvcells.h"

#include "platform/Errors.h"
#include "platform/Numbervalue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace nuvo {
namespace {

constexpr size_t longestKept = 160; ///< bytes of a cell that is shown

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isNull(std::string_view trimmed)
{
    return trimmed.empty() || trimmed == "NA";
}

/// "NaN", "Inf" and "Infinity", upper and lower case alike.
bool isNotFinite(std::string_view text)
{
    const QLatin1StringView name(text.data(), qsizetype(text.size()));
    return name.compare(QLatin1StringView("nan"), Qt::CaseInsensitive) == 0 ||
           name.compare(QLatin1StringView("inf"), Qt::CaseInsensitive) == 0 ||
           name.compare(QLatin1StringView("infinity"), Qt::CaseInsensitive) == 0;
}

std::string_view withoutPlus(std::string_view text)
{
    return text.front() == '+' ? text.substr(1) : text;
}

/// The whole text as a number; nothing when it is none. Too small for a double is 0, too large is infinite.
std::optional<double> toDouble(std::string_view text)
{
    text = withoutPlus(text);
    double number = 0;
    const auto [behind, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc::invalid_argument || behind != text.data() + text.size())
        return std::nullopt;
    // Out of range, std::from_chars does not say on which side.
    return error == std::errc() ? number : QString::fromLatin1(text.data(), qsizetype(text.size())).toDouble();
}

/// The same with this decimal sign.
std::optional<double> toDouble(std::string_view text, char decimal)
{
    const size_t sign = decimal == '.' ? std::string_view::npos : text.find(decimal);
    if (decimal == '.' || (sign == std::string_view::npos && text.find('.') == std::string_view::npos))
        return toDouble(text);
    if (text.find('.') != std::string_view::npos)
        return std::nullopt;
    std::string pointed(text);
    pointed[sign] = '.';
    return toDouble(pointed);
}

std::optional<qint64> toWhole(std::string_view text)
{
    text = withoutPlus(text);
    qint64 number = 0;
    const auto [behind, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || behind != text.data() + text.size())
        return std::nullopt;
    return number;
}

/// What Windows-1252 has where Latin-1 has control characters; 0 where it has nothing.
constexpr std::array<char16_t, 32> windows1252 = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                  0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                                  0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                  0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

} // namespace

std::string_view withoutBlanks(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

CellKind cellKindOf(std::string_view cell, char decimal)
{
    const std::string_view text = withoutBlanks(cell);
    if (isNull(text))
        return CellKind::Null;
    const std::string_view digits = text.substr(text.front() == '-' || text.front() == '+' ? 1 : 0);
    if (digits.empty() || (!isDigit(digits.front()) && digits.front() != decimal))
        return isNotFinite(digits) ? CellKind::NotFinite : CellKind::Text;
    if (digits.size() > 1 && digits[0] == '0' && isDigit(digits[1]))
        return CellKind::Text;
    if (toWhole(text))
        return CellKind::Whole;
    const std::optional<double> number = toDouble(text, decimal);
    // What is too large for a double keeps its digits as a text.
    return number && std::isfinite(*number) ? CellKind::Floating : CellKind::Text;
}

DecimalSign decimalSignOf(std::string_view cell)
{
    std::string_view text = withoutBlanks(cell);
    if (!text.empty() && (text.front() == '-' || text.front() == '+'))
        text.remove_prefix(1);
    const size_t sign = text.find_first_of(",.");
    if (sign == std::string_view::npos)
        return DecimalSign::None;
    const std::string_view left = text.substr(0, sign);
    const std::string_view right = text.substr(sign + 1);
    const bool group = right.size() == 3 && std::all_of(right.begin(), right.end(), isDigit) && !left.empty() &&
                       left.size() <= 3 && left.front() != '0';
    if (text[sign] == ',')
        return group ? DecimalSign::CommaOrThousand : DecimalSign::Comma;
    return group ? DecimalSign::PointOrThousand : DecimalSign::Point;
}

void ColumnSurvey::Seen::add(CellKind kind, std::string_view cell, qint64 line)
{
    switch (kind) {
    case CellKind::Null:
        return;
    case CellKind::Whole:
        whole = true;
        return;
    case CellKind::Floating:
        floating = true;
        return;
    case CellKind::NotFinite:
        notFinite = true;
        return;
    case CellKind::Text:
        break;
    }
    text = true;
    if (cell.size() > longestKept)
        cell = cell.substr(0, longestKept);
    if (!whole && !floating &&
        writtenLike(QString::fromUtf8(cell.data(), qsizetype(cell.size())), QLatin1Char(decimal)).isEmpty())
        return;
    intruder = cell;
    intruderLine = line;
}

void ColumnSurvey::add(std::string_view cell, qint64 line)
{
    if (!open_) {
        if (!by_[0].text)
            by_[0].add(cellKindOf(cell, by_[0].decimal), cell, line);
        return;
    }
    if (by_[0].text && by_[1].text)
        return;
    if (cell.find_first_of(",.") == std::string_view::npos) {
        const CellKind kind = cellKindOf(cell, '.');
        for (Seen &seen : by_) {
            if (!seen.text)
                seen.add(kind, cell, line);
        }
        return;
    }
    const DecimalSign sign = decimalSignOf(cell);
    for (Seen &seen : by_) {
        if (seen.text)
            continue;
        const CellKind kind = cellKindOf(cell, seen.decimal);
        seen.add(kind, cell, line);
        if (kind != CellKind::Floating)
            continue;
        if (sign == (seen.decimal == ',' ? DecimalSign::Comma : DecimalSign::Point)) {
            if (seen.exampleLine == 0) {
                seen.example = cell.substr(0, longestKept);
                seen.exampleLine = line;
            }
        } else {
            seen.ambiguous = true;
        }
    }
}

bool ColumnSurvey::isNumeric(char decimal) const
{
    const Seen &seen = of(decimal);
    return (seen.whole || seen.floating) && !seen.text;
}

bool ColumnSurvey::isWhole(char decimal) const
{
    const Seen &seen = of(decimal);
    return isNumeric(decimal) && !seen.floating && !seen.notFinite;
}

char decimalOf(const std::vector<ColumnSurvey> &columns)
{
    bool comma = false;
    for (const ColumnSurvey &column : columns) {
        if (column.isNumeric('.') && column.needs('.'))
            return '.';
        comma = comma || (column.isNumeric(',') && column.needs(','));
    }
    return comma ? ',' : '.';
}

QString decimalReason(const std::vector<ColumnSurvey> &columns, char decimal)
{
    for (const ColumnSurvey &column : columns) {
        if (column.isNumeric(decimal) && column.needs(decimal))
            return CsvWords::tr("line %1 has \"%2\"")
                .arg(column.exampleLine(decimal))
                .arg(QString::fromUtf8(column.example(decimal).data(), qsizetype(column.example(decimal).size())));
    }
    for (const ColumnSurvey &column : columns) {
        if (column.isOpen(',') && column.isNumeric(','))
            return CsvWords::tr("commas could be decimal or part thousands; --decimal says which");
        if (column.isOpen('.') && column.isNumeric('.'))
            return CsvWords::tr("points could be decimal or part thousands; --decimal says which");
    }
    return CsvWords::tr("no number has a decimal sign");
}

QString decoded(std::string_view bytes, CsvEncoding encoding)
{
    if (isUnicode(encoding)) {
        QString text = QString::fromUtf8(bytes.data(), qsizetype(bytes.size()));
        // Qt takes it for a byte-order mark, which only the start of the file can have.
        if (bytes.starts_with(byteOrderMark))
            text.prepend(QChar(QChar::ByteOrderMark));
        return text;
    }
    QString text = QString::fromLatin1(bytes.data(), qsizetype(bytes.size()));
    if (encoding == CsvEncoding::Latin1)
        return text;
    for (QChar &c : text) {
        if (c.unicode() >= 0x80 && c.unicode() < 0xA0 && windows1252[c.unicode() - 0x80] != 0)
            c = QChar(windows1252[c.unicode() - 0x80]);
    }
    return text;
}

std::optional<QString> csvText(std::string_view cell, CsvEncoding encoding)
{
    if (isNull(withoutBlanks(cell)))
        return std::nullopt;
    return decoded(cell, encoding);
}

std::optional<qint64> csvWhole(std::string_view cell)
{
    const std::string_view text = withoutBlanks(cell);
    if (isNull(text))
        return std::nullopt;
    if (const auto number = toWhole(text))
        return number;
    failChangedCsv();
}

std::optional<double> csvFloating(std::string_view cell, char decimal)
{
    const std::string_view text = withoutBlanks(cell);
    if (isNull(text))
        return std::nullopt;
    if (const auto number = toDouble(text, decimal))
        return std::isnan(*number) ? std::nullopt : number;
    failChangedCsv();
}

void failChangedCsv()
{
    throw EPlatformError(QStringLiteral("The file changed while it was read."));
}

} // namespace nuvo
