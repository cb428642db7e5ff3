#include "app/Csv.h"

#include "platform/Errors.h"

#include <QByteArrayView>
#include <QSet>

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

namespace nuvo {
namespace {

constexpr qint64 bufferSize = 1 << 20;
constexpr size_t longestRecord = size_t(64) << 20;
/// More than any database has columns; each costs memory, even an empty one.
constexpr size_t mostCells = 100000;
constexpr qsizetype longestIntruder = 40;

enum class Kind { Null, Whole, Floating, NotFinite, Text };

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

std::string_view withoutBlanks(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
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

std::optional<qint64> toWhole(std::string_view text)
{
    text = withoutPlus(text);
    qint64 number = 0;
    const auto [behind, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || behind != text.data() + text.size())
        return std::nullopt;
    return number;
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

Kind kindOf(std::string_view cell)
{
    const std::string_view text = withoutBlanks(cell);
    if (isNull(text))
        return Kind::Null;
    const std::string_view digits = text.substr(text.front() == '-' || text.front() == '+' ? 1 : 0);
    if (digits.empty() || (!isDigit(digits.front()) && digits.front() != '.'))
        return isNotFinite(digits) ? Kind::NotFinite : Kind::Text;
    if (digits.size() > 1 && digits[0] == '0' && isDigit(digits[1]))
        return Kind::Text;
    if (toWhole(text))
        return Kind::Whole;
    const std::optional<double> number = toDouble(text);
    // What is too large for a double keeps its digits as a text.
    return number && std::isfinite(*number) ? Kind::Floating : Kind::Text;
}

/// What Windows-1252 has where Latin-1 has control characters; 0 where it has nothing.
constexpr std::array<char16_t, 32> windows1252 = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                  0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                                  0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                  0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

QString decoded(std::string_view bytes, bool utf8)
{
    if (utf8) {
        QString text = QString::fromUtf8(bytes.data(), qsizetype(bytes.size()));
        // Qt takes it for a byte-order mark, which only the start of the file can have.
        if (bytes.starts_with(byteOrderMark))
            text.prepend(QChar(QChar::ByteOrderMark));
        return text;
    }
    QString text = QString::fromLatin1(bytes.data(), qsizetype(bytes.size()));
    for (QChar &c : text) {
        if (c.unicode() >= 0x80 && c.unicode() < 0xA0 && windows1252[c.unicode() - 0x80] != 0)
            c = QChar(windows1252[c.unicode() - 0x80]);
    }
    return text;
}

bool isUtf8(std::string_view bytes)
{
    return QByteArrayView(bytes.data(), qsizetype(bytes.size())).isValidUtf8();
}

/// The position behind a quoted cell that begins at `at`; the end of the text when it is not closed there.
size_t behindQuoted(std::string_view text, size_t at)
{
    for (++at; at < text.size(); ++at) {
        if (text[at] == '"' && (++at == text.size() || text[at] != '"'))
            return at;
    }
    return text.size();
}

/// The separator of the first record. A quote opens only where a cell begins, whatever parts the cells.
char separatorOf(std::string_view text)
{
    qint64 semicolons = 0;
    qint64 tabs = 0;
    bool begins = true;
    size_t at = 0;
    while (at < text.size()) {
        const char c = text[at];
        if (c == '"' && begins) {
            at = behindQuoted(text, at);
            begins = false;
            continue;
        }
        if (c == ',')
            return ',';
        if (c == '\n' || c == '\r')
            break;
        semicolons += c == ';';
        tabs += c == '\t';
        begins = c == ';' || c == '\t' || (begins && c == ' ');
        ++at;
    }
    if (semicolons == 0 && tabs == 0)
        return ',';
    return semicolons >= tabs ? ';' : '\t';
}

} // namespace

CsvReader::CsvReader(const QString &fileName) : fileName_(fileName), file_(fileName), buffer_(bufferSize)
{
    if (!file_.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        throw EPlatformError(
            QStringLiteral("The file \"%1\" cannot be opened: %2.").arg(fileName, file_.errorString()));
    }
    if (file_.isSequential())
        throw EPlatformError(
            QStringLiteral("\"%1\" is no ordinary file: it is read twice, once to learn the types of "
                           "its columns.")
                .arg(fileName));
    rewind();
    separator_ = separatorOf({at_, size_t(end_ - at_)});
}

void CsvReader::rewind()
{
    if (!file_.seek(0))
        throw EPlatformError(QStringLiteral("\"%1\" cannot be read: %2.").arg(fileName_, file_.errorString()));
    at_ = end_ = nullptr;
    line_ = 1;
    recordLine_ = 0;
    expected_ = 0;
    fill();
    const std::string_view start(at_, size_t(end_ - at_));
    if (start.starts_with(byteOrderMark))
        at_ += byteOrderMark.size();
    else if (start.starts_with("\xFF\xFE") || start.starts_with("\xFE\xFF"))
        throw EPlatformError(QStringLiteral("\"%1\" is written in UTF-16: save it as UTF-8.").arg(fileName_));
}

bool CsvReader::fill()
{
    const qint64 read = file_.read(buffer_.data(), bufferSize);
    if (read < 0)
        throw EPlatformError(QStringLiteral("\"%1\" cannot be read: %2.").arg(fileName_, file_.errorString()));
    at_ = buffer_.data();
    end_ = at_ + read;
    return read > 0;
}

/// The next byte, or -1 at the end of the file.
int CsvReader::peek()
{
    if (at_ == end_ && !fill())
        return -1;
    return static_cast<unsigned char>(*at_);
}

void CsvReader::fail(const QString &what, qint64 line) const
{
    throw EPlatformError(QStringLiteral("\"%1\", line %2: %3.").arg(fileName_, QString::number(line), what));
}

std::string_view CsvReader::cell(size_t index) const
{
    const size_t from = index == 0 ? 0 : ends_[index - 1];
    return std::string_view(text_).substr(from, ends_[index] - from);
}

bool CsvReader::next()
{
    do {
        text_.clear();
        ends_.clear();
        recordLine_ = line_;
        if (peek() < 0)
            return false;
        while (readCell() == End::Cell) {
        }
    } while (expected_ != 1 && ends_.size() == 1 && withoutBlanks(text_).empty());
    if (expected_ == 0)
        expected_ = ends_.size();
    if (ends_.size() != expected_)
        fail(QStringLiteral("%1 where the header row has %2")
                 .arg(ends_.size() == 1 ? QStringLiteral("1 cell") : QStringLiteral("%1 cells").arg(ends_.size()))
                 .arg(expected_),
             recordLine_);
    return true;
}

CsvReader::End CsvReader::readCell()
{
    const size_t from = text_.size();
    bool closed = false; // quotes were read: nothing but blanks may follow
    End end = End::Record;
    for (int c = peek(); c >= 0; c = peek()) {
        if (c == separator_) {
            ++at_;
            end = End::Cell;
            break;
        }
        if (c == '\n' || c == '\r') {
            readLineBreak(false);
            break;
        }
        if (c == '"' && !closed && withoutBlanks(std::string_view(text_).substr(from)).empty()) {
            text_.resize(from);
            readQuoted();
            closed = true;
            continue;
        }
        const char *run = at_ + 1;
        while (run != end_ && *run != separator_ && *run != '"' && *run != '\n' && *run != '\r')
            ++run;
        if (!closed)
            append(at_, run);
        else if (!withoutBlanks({at_, size_t(run - at_)}).empty())
            fail(QStringLiteral("text behind a closing quote"), line_);
        at_ = run;
    }
    if (ends_.size() == mostCells)
        fail(QStringLiteral("the record that begins here has more than %1 cells").arg(mostCells), recordLine_);
    ends_.push_back(text_.size());
    return end;
}

void CsvReader::readQuoted()
{
    const qint64 opened = line_;
    ++at_;
    for (int c = peek(); c >= 0; c = peek()) {
        if (c == '"') {
            ++at_;
            if (peek() != '"')
                return;
        } else if (c == '\n' || c == '\r') {
            readLineBreak(true);
            continue;
        }
        const char *run = at_ + 1;
        while (run != end_ && *run != '"' && *run != '\n' && *run != '\r')
            ++run;
        append(at_, run);
        at_ = run;
    }
    fail(QStringLiteral("the quote that opens here is never closed"), opened);
}

void CsvReader::readLineBreak(bool keep)
{
    const char first = *at_;
    if (keep)
        append(at_, at_ + 1);
    ++at_;
    if (first == '\r' && peek() == '\n') {
        if (keep)
            append(at_, at_ + 1);
        ++at_;
    }
    ++line_;
}

void CsvReader::append(const char *from, const char *to)
{
    if (std::memchr(from, 0, size_t(to - from)) != nullptr)
        fail(QStringLiteral("a zero byte, which no text file has"), line_);
    text_.append(from, to);
    if (text_.size() > longestRecord)
        fail(QStringLiteral("the record that begins here is longer than 64 MiB (perhaps a quote is never closed)"),
             recordLine_);
}

CsvSurvey surveyCsv(CsvReader &reader)
{
    struct Seen
    {
        std::string name;
        bool whole = false;
        bool floating = false;
        bool notFinite = false;
        bool text = false;
        std::string intruder;
        qint64 intruderLine = 0;
    };

    reader.rewind();
    if (!reader.next())
        throw EPlatformError(QStringLiteral("The file \"%1\" is empty.").arg(reader.fileName()));
    CsvSurvey survey;
    std::vector<Seen> seen(reader.cellCount());
    for (size_t i = 0; i < seen.size(); ++i) {
        seen[i].name = withoutBlanks(reader.cell(i));
        survey.utf8 = survey.utf8 && isUtf8(seen[i].name);
    }
    while (reader.next()) {
        ++survey.rows;
        for (size_t i = 0; i < seen.size(); ++i) {
            Seen &column = seen[i];
            const std::string_view cell = reader.cell(i);
            survey.utf8 = survey.utf8 && isUtf8(cell);
            if (column.text)
                continue;
            const Kind kind = kindOf(cell);
            column.whole |= kind == Kind::Whole;
            column.floating |= kind == Kind::Floating;
            column.notFinite |= kind == Kind::NotFinite;
            column.text = kind == Kind::Text;
            if (column.text && (column.whole || column.floating)) {
                column.intruder = cell.substr(0, 4 * longestIntruder);
                column.intruderLine = reader.line();
            }
        }
    }

    QSet<QString> names;
    for (const Seen &column : seen) {
        CsvColumn told;
        told.name = decoded(column.name, survey.utf8).trimmed();
        told.intruder = decoded(column.intruder, survey.utf8).left(longestIntruder);
        told.intruderLine = column.intruderLine;
        const bool numbers = (column.whole || column.floating) && !column.text;
        if (numbers)
            told.type = column.floating || column.notFinite ? ColumnType::Floating : ColumnType::Whole;
        survey.columns.push_back(told);
        if (told.name.isEmpty())
            throw EPlatformError(QStringLiteral("Column %1 of \"%2\" has no name in the header row.")
                                     .arg(survey.columns.size())
                                     .arg(reader.fileName()));
        if (names.contains(told.name.toCaseFolded()))
            throw EPlatformError(QStringLiteral("The header row of \"%1\" has the name \"%2\" twice; upper and lower "
                                                "case are the same to a database.")
                                     .arg(reader.fileName(), told.name));
        names.insert(told.name.toCaseFolded());
    }
    return survey;
}

void failChangedCsv()
{
    throw EPlatformError(QStringLiteral("The file changed while it was read."));
}

std::optional<QString> csvText(std::string_view cell, bool utf8)
{
    if (isNull(withoutBlanks(cell)))
        return std::nullopt;
    return decoded(cell, utf8);
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

std::optional<double> csvFloating(std::string_view cell)
{
    const std::string_view text = withoutBlanks(cell);
    if (isNull(text))
        return std::nullopt;
    if (const auto number = toDouble(text))
        return std::isnan(*number) ? std::nullopt : number;
    failChangedCsv();
}

} // namespace nuvo
