// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nuvo {

/// Texts about CSV files, in the language of the translator that a program installs, else English.
struct CsvWords
{
    Q_DECLARE_TR_FUNCTIONS(CsvWords)
};

enum class CsvEncoding { Utf8, Utf16LittleEndian, Utf16BigEndian, Windows1252, Latin1 };
/// What each is called on a command line and in files.
inline constexpr std::initializer_list<std::pair<const char *, CsvEncoding>> csvEncodings{
    {"utf-8", CsvEncoding::Utf8},
    {"utf-16le", CsvEncoding::Utf16LittleEndian},
    {"utf-16be", CsvEncoding::Utf16BigEndian},
    {"windows-1252", CsvEncoding::Windows1252},
    {"latin-1", CsvEncoding::Latin1}};

/// How a CSV file is written.
struct CsvFormat
{
    CsvEncoding encoding = CsvEncoding::Utf8;
    char separator = ','; ///< of the cells
    char decimal = '.';   ///< or ','
    /// Each record begins with a cell for which the header row has no name, the name of the row: so R's write.table
    /// writes a table.
    bool rowNames = false;

    bool operator==(const CsvFormat &) const = default;
};

/// What somebody says of a file; what is left open is recognised.
struct CsvCorrections
{
    std::optional<CsvEncoding> encoding;
    std::optional<char> separator;
    std::optional<char> decimal;
    std::vector<std::string> nulls; ///< cells that stand for a missing value, beside nothing and NA
};

/// Why a format was taken, each as half a sentence.
struct CsvReasons
{
    QString encoding;
    QString separator;
    QString decimal;
};

/// Finds out from the first bytes of a file how it is written.
///
/// A byte-order mark names UTF-8 and UTF-16; without one, zero bytes at every second place mean UTF-16, and bytes
/// that are no UTF-8 Windows-1252. Cells are parted by commas where the header row has one, else by its semicolons or
/// tabs, whichever are more; but where commas would part the records into different numbers of cells, and semicolons
/// or tabs into the same, by these. Where the header row has none of the three, vertical bars or blanks part the
/// cells if every record has as many of them and, of blanks, some column is one of numbers. A first line "sep=;", as
/// spreadsheets write it, names the separator and is no record. Numbers have a decimal comma where cells are not
/// parted by commas, a column is one of numbers if commas are decimal and has one that cannot part thousands ("1,5",
/// not "1,234"), and no column of numbers has such a point.
class CsvRecogniser
{
public:
    /// \param bytes the first ones of the file; some hundred kilobytes are enough
    /// \param whole whether that is all of it
    CsvRecogniser(std::string_view bytes, bool whole, const CsvCorrections &corrections = {});

    const CsvFormat &format() const { return format_; }
    const CsvReasons &reasons() const { return reasons_; }
    /// Bytes of the byte-order mark, and of the line that names the separator.
    size_t markLength() const { return markLength_; }
    /// The number of the line in which the records begin, from 1.
    qint64 firstLine() const { return firstLine_; }

private:
    void findEncoding(std::string_view bytes, bool whole);
    void findSeparator(std::string_view text, bool whole);
    bool takeSeparatorLine(std::string_view &text);
    void findBarOrBlank(std::string_view text, bool whole);
    void findDecimal(std::string_view text, bool whole);

    const CsvCorrections corrections_;
    CsvFormat format_;
    CsvReasons reasons_;
    size_t markLength_ = 0;
    qint64 firstLine_ = 1;
};

bool isUtf8(std::string_view bytes);
/// "UTF-8", "Windows-1252"
QString encodingName(CsvEncoding encoding);
/// "comma", "semicolon", "tab", or the character itself in quotes.
QString separatorName(char separator);
inline bool isUtf16(CsvEncoding encoding)
{
    return encoding == CsvEncoding::Utf16LittleEndian || encoding == CsvEncoding::Utf16BigEndian;
}
/// Whether the cells are read as UTF-8 once the file's encoding is taken away: of UTF-16 too.
inline bool isUnicode(CsvEncoding encoding)
{
    return encoding != CsvEncoding::Windows1252 && encoding != CsvEncoding::Latin1;
}

} // namespace nuvo
