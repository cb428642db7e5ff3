// SPDX-License-Identifier: MIT
#pragma once

#include "app/Columntype.h"
#include "app/Csvcells.h"
#include "app/Csvformat.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringDecoder>

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nuvo {

/// Reads the records of a comma-separated file one by one, in memory bounded by the longest record.
///
/// How the file is written is recognised (CsvRecogniser) as far as it is not told. A cell in double quotes may hold
/// separators, line breaks and doubled quotes; blanks around the quotes are left out. Lines end with LF, CR LF or CR;
/// empty lines are left out, except where a record has one cell. A byte-order mark and a first line "sep=;" are left
/// out. Where the records name the rows and the header row does not say so (CsvFormat::rowNames), an empty cell
/// stands in front of its names. From the second record on, a cell that CsvCorrections::nulls names is empty.
class CsvReader
{
public:
    /// Opens the file. \throws EPlatformError when it cannot be opened or is no file that can be read twice.
    explicit CsvReader(const QString &fileName, const CsvCorrections &corrections = {});

    /// Reads the next record; false at the end of the file. From the second record on, each must have as many cells
    /// as the first. \throws EPlatformError naming file and line for a record that has not, a quote that is never
    /// closed, text behind a closing quote, a NUL byte, half a character of UTF-16 at the end, a record of more than
    /// 64 MiB or 100,000 cells, and when reading fails.
    bool next();
    /// Back in front of the first record.
    void rewind();
    /// From now on `told` is called with the bytes that are behind, of so many as the file has, each time that some
    /// more are read. It may throw, which passes through next().
    void follow(std::function<void(qint64 bytes)> told) { told_ = std::move(told); }

    size_t cellCount() const { return ends_.size(); }
    /// The bytes of a cell without its quotes, UTF-16 as UTF-8, valid until the next call of next(). \pre index <
    /// cellCount()
    std::string_view cell(size_t index) const;
    /// The number of the line in which the record begins, from 1.
    qint64 line() const { return recordLine_; }

    const QString &fileName() const { return fileName_; }
    /// As far as the beginning of the file tells.
    const CsvFormat &format() const { return format_; }
    const CsvReasons &reasons() const { return reasons_; }
    const CsvCorrections &corrections() const { return corrections_; }

private:
    enum class End { Cell, Record };

    void refuseForeign(std::string_view bytes) const;
    qint64 read();
    bool fill();
    int peek();
    End readCell();
    void readQuoted();
    void readLineBreak(bool keep);
    void append(const char *from, const char *to);
    void checkCells();
    [[noreturn]] void fail(const QString &what, qint64 line) const;

    const CsvCorrections corrections_;
    CsvFormat format_;
    CsvReasons reasons_;
    qint64 markLength_ = 0;
    QString fileName_;
    QFile file_;
    std::function<void(qint64)> told_;
    std::vector<char> buffer_;
    const char *at_ = nullptr;
    const char *end_ = nullptr;
    QStringDecoder decoder_;
    QByteArray decoded_;  ///< what the buffer holds of UTF-16, as UTF-8
    size_t expected_ = 0; ///< cells of the first record
    qint64 records_ = 0;
    qint64 firstLine_ = 1;
    qint64 line_ = 1;
    qint64 recordLine_ = 0;
    std::string text_; ///< the record's cells, one behind the other
    std::vector<size_t> ends_;
};

struct CsvColumn
{
    QString name;
    ColumnType type = ColumnType::Text;
    size_t cell = 0; ///< its place in a record
    /// In a column of texts that begins with numbers, with numbers whose thousands are parted, or with dates: the
    /// first cell that is no number, its line, and what it is written like (nuvo::writtenLike) where that is known.
    QString intruder;
    qint64 intruderLine = 0;
    QString intruderLike;
};

/// What the first column of several is called where the header row has no name for it: "row", or "row_2" and so on
/// where another one is called so.
QString nameOfRows(const QStringList &names);

/// What a look at the whole file tells.
struct CsvSurvey
{
    CsvFormat format; ///< UTF-8 only where every byte is
    CsvReasons reasons;
    std::vector<CsvColumn> columns;
    qint64 rows = 0;
    size_t leftOut = 0; ///< columns without a name and a value
};

/// Reads the file from its first record, the header row, to the end.
///
/// A cell is null when it is empty or NA, quoted or not; blanks around it do not count. A column is of whole numbers
/// when every cell is one, else of floating-point numbers when every cell is a number, else of texts. Leading zeros
/// make a text of a number ("00123" is a code); a plus sign does not. A whole number outside 64 bits counts as
/// floating-point; so do "NaN" and "Inf" beside other numbers. Nulls leave the type to the other cells; a column of
/// nothing else is of texts. Where the first column of several has no name it is called "row" ("row_2" and so on
/// where another one is): statistics programs write the names of the rows so. Another column without a name is left
/// out if it has no value either, as spreadsheets write what was once in use. \throws EPlatformError as
/// CsvReader::next(), and for an empty file, another column without a name and a doubled name (upper and lower case
/// alike), and for bytes that are no UTF-8 in a file that was said to be.
CsvSurvey surveyCsv(CsvReader &reader);

} // namespace nuvo
