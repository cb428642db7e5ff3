// SPDX-License-Identifier: MIT
#include "app/Csvformat.h"

#include "app/Csvcells.h"

#include <QByteArrayView>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <set>
#include <vector>

namespace nuvo {
namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view littleMark = "\xFF\xFE";
constexpr std::string_view bigMark = "\xFE\xFF";

/// Without a character that the end of the bytes has cut.
std::string_view withoutCutCharacter(std::string_view bytes)
{
    for (size_t back = 1; back <= 3 && back <= bytes.size(); ++back) {
        const auto byte = static_cast<unsigned char>(bytes[bytes.size() - back]);
        if (byte >= 0xC0)
            return bytes.substr(0, bytes.size() - back);
        if (byte < 0x80)
            break;
    }
    return bytes;
}

/// UTF-16 without a mark: what is written in Latin letters has a zero in every second byte.
std::optional<CsvEncoding> utf16Without(std::string_view bytes)
{
    constexpr size_t enough = 4096;
    const size_t pairs = std::min(bytes.size(), enough) / 2;
    std::array<size_t, 2> zeros{};
    for (size_t i = 0; i < 2 * pairs; ++i)
        zeros[i % 2] += bytes[i] == 0;
    for (const size_t high : {1, 0}) {
        if (pairs > 0 && 2 * zeros[high] >= pairs && 8 * zeros[1 - high] <= pairs)
            return high == 1 ? CsvEncoding::Utf16LittleEndian : CsvEncoding::Utf16BigEndian;
    }
    return {};
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

/// The separators of the first record. A quote opens only where a cell begins, whatever parts the cells.
struct HeaderRow
{
    bool comma = false;
    qint64 semicolons = 0;
    qint64 tabs = 0;

    explicit HeaderRow(std::string_view text)
    {
        bool begins = true;
        size_t at = 0;
        while (at < text.size()) {
            const char c = text[at];
            if (c == '"' && begins) {
                at = behindQuoted(text, at);
                begins = false;
                continue;
            }
            comma = comma || c == ',';
            if (comma || c == '\n' || c == '\r')
                break;
            semicolons += c == ';';
            tabs += c == '\t';
            begins = c == ';' || c == '\t' || (begins && c == ' ');
            ++at;
        }
    }

    char separator() const
    {
        if (comma || (semicolons == 0 && tabs == 0))
            return ',';
        return semicolons >= tabs ? ';' : '\t';
    }
};

struct RoughRecord
{
    qint64 line = 0;
    std::vector<std::string_view> cells; ///< without their quotes, those in them doubled
    bool beginsQuoted = false;
};

/// The records of a text, as far as they are whole. Rough: what is wrong with a record is for the reader to say.
std::vector<RoughRecord> recordsOf(std::string_view text, char separator, bool whole)
{
    constexpr size_t enough = 1000;
    std::vector<RoughRecord> records;
    RoughRecord record;
    qint64 line = 1;
    size_t at = 0;
    bool quoted = false;
    const auto endRecord = [&] {
        const bool empty = record.cells.size() == 1 && withoutBlanks(record.cells[0]).empty() && !quoted;
        if (!empty || (!records.empty() && records[0].cells.size() == 1))
            records.push_back(std::move(record));
        record = {};
        quoted = false;
    };
    while (at < text.size() && records.size() < enough) {
        if (record.cells.empty())
            record.line = line;
        size_t begin = at;
        while (begin < text.size() && text[begin] != separator && (text[begin] == ' ' || text[begin] == '\t'))
            ++begin;
        std::string_view cell;
        if (begin < text.size() && text[begin] == '"') {
            at = behindQuoted(text, begin);
            if (at == text.size() && !whole)
                return records;
            cell = text.substr(begin + 1, std::max(at, begin + 2) - begin - 2);
            line += std::count(cell.begin(), cell.end(), '\n');
            quoted = true;
            record.beginsQuoted = record.beginsQuoted || record.cells.empty();
            while (at < text.size() && text[at] != separator && text[at] != '\n' && text[at] != '\r')
                ++at;
        } else {
            const size_t from = at;
            while (at < text.size() && text[at] != separator && text[at] != '\n' && text[at] != '\r')
                ++at;
            cell = text.substr(from, at - from);
        }
        record.cells.push_back(cell);
        if (at < text.size() && text[at] == separator) {
            if (++at < text.size())
                continue;
            record.cells.emplace_back();
        }
        if (at == text.size() && !whole)
            return records;
        endRecord();
        if (at < text.size() && text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n')
            ++at;
        ++at;
        ++line;
    }
    return records;
}

bool agree(const std::vector<RoughRecord> &records)
{
    return std::all_of(records.begin(), records.end(),
                       [&](const RoughRecord &one) { return one.cells.size() == records[0].cells.size(); });
}

/// Whether each record has one cell more than the header row, in front: the name of the row, which no other has. A
/// last cell that is mostly empty is a column without a name, and a comma may be a decimal sign that nobody quoted.
bool nameRows(const std::vector<RoughRecord> &records, char separator)
{
    if (records.size() < 2)
        return false;
    const size_t names = records[0].cells.size();
    size_t empty = 0;
    std::set<std::string_view> rows;
    for (size_t i = 1; i < records.size(); ++i) {
        const RoughRecord &one = records[i];
        if (one.cells.size() != names + 1)
            return false;
        const bool text = cellKindOf(one.cells[0], '.') == CellKind::Text;
        // A title above two columns looks like a header row of one name.
        if (!one.beginsQuoted && (names == 1 || (separator == ',' && !text)))
            return false;
        empty += withoutBlanks(one.cells.back()).empty();
        if (!rows.insert(one.cells[0]).second)
            return false;
    }
    return 2 * empty < records.size() - 1;
}

std::vector<ColumnSurvey> columnsOf(const std::vector<RoughRecord> &records)
{
    size_t count = 0;
    for (const RoughRecord &one : records)
        count = std::max(count, one.cells.size());
    std::vector<ColumnSurvey> columns(count, ColumnSurvey({}));
    for (size_t row = 1; row < records.size(); ++row) {
        for (size_t i = 0; i < records[row].cells.size(); ++i)
            columns[i].add(records[row].cells[i], records[row].line);
    }
    return columns;
}

QString whyNoComma(char separator, const HeaderRow &header)
{
    if (separator == ';')
        return header.semicolons == 1
                   ? CsvWords::tr("the header row has a semicolon and no comma")
                   : CsvWords::tr("the header row has %1 semicolons and no comma").arg(header.semicolons);
    return header.tabs == 1 ? CsvWords::tr("the header row has a tab and no comma")
                            : CsvWords::tr("the header row has %1 tabs and no comma").arg(header.tabs);
}

/// Why not the separator that the header row has most of; the number of cells is still to come.
QString whyOther(char refused)
{
    switch (refused) {
    case ';':
        return CsvWords::tr("every record has %1 cells with it, where a semicolon gives them different numbers");
    case '\t':
        return CsvWords::tr("every record has %1 cells with it, where a tab gives them different numbers");
    default:
        return CsvWords::tr("every record has %1 cells with it, where a comma gives them different numbers");
    }
}

} // namespace

CsvRecogniser::CsvRecogniser(std::string_view bytes, bool whole, const CsvCorrections &corrections)
    : corrections_(corrections)
{
    findEncoding(bytes, whole);
    bytes.remove_prefix(markLength_);
    QByteArray decodedBytes;
    std::string_view text = bytes;
    if (isUtf16(format_.encoding)) {
        QStringDecoder decoder(format_.encoding == CsvEncoding::Utf16LittleEndian ? QStringDecoder::Utf16LE
                                                                                  : QStringDecoder::Utf16BE,
                               QStringDecoder::Flag::ConvertInitialBom);
        decodedBytes = QString(decoder(QByteArrayView(bytes.data(), qsizetype(bytes.size())))).toUtf8();
        text = {decodedBytes.constData(), size_t(decodedBytes.size())};
    }
    const bool named = takeSeparatorLine(text);
    if (!named || corrections_.separator)
        findSeparator(text, whole);
    format_.rowNames = nameRows(recordsOf(text, format_.separator, whole), format_.separator);
    findDecimal(text, whole);
}

/// "sep=;" in the first line, which is taken off the text; not what is said otherwise.
bool CsvRecogniser::takeSeparatorLine(std::string_view &text)
{
    constexpr std::string_view name = "sep=";
    if (text.size() < name.size() + 2 || QLatin1StringView(text.data(), qsizetype(name.size()))
                                             .compare(QLatin1StringView("sep="), Qt::CaseInsensitive))
        return false;
    const char separator = text[name.size()];
    const std::string_view rest = text.substr(name.size() + 1);
    const size_t lineEnd = rest.starts_with("\r\n") ? 2 : rest[0] == '\n' || rest[0] == '\r' ? 1 : 0;
    if (lineEnd == 0 || separator == '"' || separator == '\n' || separator == '\r')
        return false;
    const size_t length = name.size() + 1 + lineEnd;
    text.remove_prefix(length);
    markLength_ += isUtf16(format_.encoding) ? 2 * length : length;
    firstLine_ = 2;
    format_.separator = separator;
    reasons_.separator = CsvWords::tr("the first line says so");
    return true;
}

void CsvRecogniser::findEncoding(std::string_view bytes, bool whole)
{
    const auto take = [&](CsvEncoding encoding, const QString &why) {
        format_.encoding = encoding;
        reasons_.encoding = why;
    };
    const QString mark = CsvWords::tr("the file begins with its byte-order mark");
    if (bytes.starts_with(utf8Mark)) {
        markLength_ = utf8Mark.size();
        take(CsvEncoding::Utf8, mark);
    } else if (bytes.starts_with(littleMark) || bytes.starts_with(bigMark)) {
        markLength_ = littleMark.size();
        take(bytes.starts_with(littleMark) ? CsvEncoding::Utf16LittleEndian : CsvEncoding::Utf16BigEndian, mark);
    } else if (const auto utf16 = utf16Without(bytes)) {
        take(*utf16, CsvWords::tr("every second byte is zero"));
    }
    if (corrections_.encoding) {
        // The mark of another encoding is text in the one that was said.
        if (format_.encoding != *corrections_.encoding && !(isUnicode(format_.encoding) && markLength_ == 3))
            markLength_ = 0;
        take(*corrections_.encoding, CsvWords::tr("as told"));
    } else if (reasons_.encoding.isEmpty()) {
        const bool utf8 = isUtf8(whole ? bytes : withoutCutCharacter(bytes));
        take(utf8 ? CsvEncoding::Utf8 : CsvEncoding::Windows1252,
             utf8 ? CsvWords::tr("every byte is part of a character") : CsvWords::tr("some byte is no UTF-8"));
    }
}

void CsvRecogniser::findSeparator(std::string_view text, bool whole)
{
    if (corrections_.separator) {
        format_.separator = *corrections_.separator;
        reasons_.separator = CsvWords::tr("as told");
        return;
    }
    const HeaderRow header(text);
    format_.separator = header.separator();
    if (header.comma)
        reasons_.separator = CsvWords::tr("the header row has a comma");
    else if (format_.separator == ',')
        reasons_.separator = CsvWords::tr("there is one column");
    else
        reasons_.separator = whyNoComma(format_.separator, header);
    const std::vector<RoughRecord> records = recordsOf(text, format_.separator, whole);
    if (format_.separator == ',' && !header.comma) {
        findBarOrBlank(text, whole);
        return;
    }
    if (records.size() < 2 || agree(records) || nameRows(records, format_.separator))
        return;
    for (const char other : {';', '\t'}) {
        const std::vector<RoughRecord> parted = recordsOf(text, other, whole);
        if (other == format_.separator || parted.size() < 2 || parted[0].cells.size() < 2 || !agree(parted))
            continue;
        reasons_.separator = whyOther(format_.separator).arg(parted[0].cells.size());
        format_.separator = other;
        return;
    }
}

/// For a header row without comma, semicolon and tab.
void CsvRecogniser::findBarOrBlank(std::string_view text, bool whole)
{
    for (const char other : {'|', ' '}) {
        const std::vector<RoughRecord> records = recordsOf(text, other, whole);
        if (records.size() < 2 || !(agree(records) || nameRows(records, other)) || records[1].cells.size() < 2)
            continue;
        const std::vector<ColumnSurvey> columns = columnsOf(records);
        const bool numbers = std::any_of(columns.begin(), columns.end(), [](const ColumnSurvey &column) {
            return column.isNumeric('.') || column.isNumeric(',');
        });
        if (other == ' ' && !numbers)
            continue;
        format_.separator = other;
        reasons_.separator = CsvWords::tr("every record has %1 cells with it, and the header row no other separator")
                                 .arg(records[1].cells.size());
        return;
    }
}

void CsvRecogniser::findDecimal(std::string_view text, bool whole)
{
    if (corrections_.decimal || format_.separator == ',') {
        format_.decimal = corrections_.decimal.value_or('.');
        reasons_.decimal = corrections_.decimal ? CsvWords::tr("as told") : QString();
        return;
    }
    const std::vector<RoughRecord> records = recordsOf(text, format_.separator, whole);
    if (records.empty())
        return;
    const std::vector<ColumnSurvey> columns = columnsOf(records);
    format_.decimal = decimalOf(columns);
    reasons_.decimal = decimalReason(columns, format_.decimal);
}

bool isUtf8(std::string_view bytes)
{
    return QByteArrayView(bytes.data(), qsizetype(bytes.size())).isValidUtf8();
}

QString encodingName(CsvEncoding encoding)
{
    switch (encoding) {
    case CsvEncoding::Utf16LittleEndian:
        return QStringLiteral("UTF-16, little-endian");
    case CsvEncoding::Utf16BigEndian:
        return QStringLiteral("UTF-16, big-endian");
    case CsvEncoding::Windows1252:
        return QStringLiteral("Windows-1252");
    case CsvEncoding::Latin1:
        return QStringLiteral("Latin-1");
    case CsvEncoding::Utf8:
        break;
    }
    return QStringLiteral("UTF-8");
}

QString separatorName(char separator)
{
    switch (separator) {
    case ',':
        return CsvWords::tr("comma");
    case ';':
        return CsvWords::tr("semicolon");
    case '\t':
        return CsvWords::tr("tab");
    case ' ':
        return CsvWords::tr("blank");
    default:
        return QStringLiteral("\"%1\"").arg(QLatin1Char(separator));
    }
}

} // namespace nuvo
