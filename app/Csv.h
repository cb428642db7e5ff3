#pragma once

#include "app/Columntype.h"

#include <QFile>
#include <QString>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nuvo {

/// Reads the records of a comma-separated file one by one, in memory bounded by the longest record.
///
/// Cells are parted by commas, or by semicolons or tabs when the first line has these and no comma. A cell in double
/// quotes may hold separators, line breaks and doubled quotes; blanks around the quotes are left out. Lines end with
/// LF, CR LF or CR; empty lines are left out, except where a record has one cell. A UTF-8 byte-order mark is left
/// out.
class CsvReader
{
public:
    /// Opens the file. \throws EPlatformError when it cannot be opened or is no file that can be read twice.
    explicit CsvReader(const QString &fileName);

    /// Reads the next record; false at the end of the file. From the second record on, each must have as many cells
    /// as the first. \throws EPlatformError naming file and line for a record that has not, a quote that is never
    /// closed, text behind a closing quote, a NUL byte, a record of more than 64 MiB or 100,000 cells, and when
    /// reading fails.
    bool next();
    /// Back in front of the first record.
    void rewind();

    size_t cellCount() const { return ends_.size(); }
    /// The bytes of a cell without its quotes, valid until the next call of next(). \pre index < cellCount()
    std::string_view cell(size_t index) const;
    /// The number of the line in which the record begins, from 1.
    qint64 line() const { return recordLine_; }

    const QString &fileName() const { return fileName_; }
    char separator() const { return separator_; }

private:
    enum class End { Cell, Record };

    bool fill();
    int peek();
    End readCell();
    void readQuoted();
    void readLineBreak(bool keep);
    void append(const char *from, const char *to);
    [[noreturn]] void fail(const QString &what, qint64 line) const;

    QString fileName_;
    QFile file_;
    std::vector<char> buffer_;
    const char *at_ = nullptr;
    const char *end_ = nullptr;
    char separator_ = ',';
    size_t expected_ = 0; ///< cells of the first record
    qint64 line_ = 1;
    qint64 recordLine_ = 0;
    std::string text_; ///< the record's cells, one behind the other
    std::vector<size_t> ends_;
};

struct CsvColumn
{
    QString name;
    ColumnType type = ColumnType::Text;
    /// In a column of texts that begins with numbers: the first cell that is none, and its line.
    QString intruder;
    qint64 intruderLine = 0;
};

/// What a look at the whole file tells.
struct CsvSurvey
{
    std::vector<CsvColumn> columns;
    qint64 rows = 0;
    bool utf8 = true; ///< otherwise some byte is no UTF-8 and the file is taken for Windows-1252
};

/// Reads the file from its first record, the header row, to the end.
///
/// A cell is null when it is empty or NA, quoted or not; blanks around it do not count. A column is of whole numbers
/// when every cell is one, else of floating-point numbers when every cell is a number, else of texts. Leading zeros
/// make a text of a number ("00123" is a code); a plus sign does not. A whole number outside 64 bits counts as
/// floating-point; so do "NaN" and "Inf" beside other numbers. Nulls leave the type to the other cells; a column of
/// nothing else is of texts.
/// \throws EPlatformError as CsvReader::next(), and for an empty file, a column without a name and a doubled name
/// (upper and lower case alike).
CsvSurvey surveyCsv(CsvReader &reader);

/// For a file that is no longer what it was when it was surveyed. \throws EPlatformError
[[noreturn]] void failChangedCsv();

/// A cell as text, or nothing when it is null.
std::optional<QString> csvText(std::string_view cell, bool utf8);
/// A cell as a number, or nothing when it is null. \throws EPlatformError when the cell is no number of that kind, as
/// happens when the file has changed since it was surveyed.
std::optional<qint64> csvWhole(std::string_view cell);
std::optional<double> csvFloating(std::string_view cell);

} // namespace nuvo
