// SPDX-License-Identifier: MIT
#pragma once

#include "app/Csvformat.h"

#include <QString>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nuvo {

/// What a cell holds.
enum class CellKind {
    Null,      ///< nothing, or NA
    Whole,     ///< a number of 64 bits without a decimal sign
    Floating,  ///< another number that a double can hold
    NotFinite, ///< NaN or an infinity by name
    Text,
};

/// Blanks around the cell do not count, nor whether it was quoted. Leading zeros make a text of a number ("00123" is
/// a code), a plus sign does not; so does what parts thousands.
CellKind cellKindOf(std::string_view cell, char decimal);

/// What the commas and points of a cell say about numbers of its file.
enum class DecimalSign {
    None,
    Comma,           ///< "1,5", "1.234,5"
    Point,           ///< "1.5", "1,234.5"
    CommaOrThousand, ///< "1,234"
    PointOrThousand, ///< "1.234"
};
DecimalSign decimalSignOf(std::string_view cell);

/// Counts what the cells of one column say.
class ColumnSurvey
{
public:
    /// Of a file whose decimal sign is known, or still open.
    explicit ColumnSurvey(std::optional<char> decimal) : open_(!decimal) { by_[0].decimal = decimal.value_or('.'); }

    /// \param line where the record begins, for intruder()
    void add(std::string_view cell, qint64 line);

    /// With this decimal sign: whether it is a column of numbers, and whether one of them has more than 64 bits of
    /// whole number.
    bool isNumeric(char decimal) const;
    bool isWhole(char decimal) const;
    /// Whether a number in it can have but this decimal sign; the first one, and its line.
    bool needs(char decimal) const { return of(decimal).exampleLine > 0; }
    const std::string &example(char decimal) const { return of(decimal).example; }
    qint64 exampleLine(char decimal) const { return of(decimal).exampleLine; }
    /// Whether it has commas, or points, that could be decimal or part thousands.
    bool isOpen(char decimal) const { return open_ && of(decimal).ambiguous; }
    /// Whether all its cells are null.
    bool isEmpty() const { return by_[0].isEmpty() && by_[1].isEmpty(); }
    /// The first cell that is no number in a column that has or begins with numbers, numbers with thousands
    /// separators or dates; and its line, 0 where there is none.
    const std::string &intruder(char decimal) const { return of(decimal).intruder; }
    qint64 intruderLine(char decimal) const { return of(decimal).intruderLine; }

private:
    struct Seen
    {
        char decimal = ',';
        bool whole = false;
        bool floating = false;
        bool notFinite = false;
        bool text = false;
        bool ambiguous = false; ///< its decimal sign could part thousands
        std::string intruder;
        qint64 intruderLine = 0;
        std::string example; ///< of a number that can have but this decimal sign
        qint64 exampleLine = 0;

        void add(CellKind kind, std::string_view cell, qint64 line);
        bool isEmpty() const { return !whole && !floating && !notFinite && !text; }
    };
    const Seen &of(char decimal) const { return open_ && decimal == ',' ? by_[1] : by_[0]; }

    Seen by_[2]; ///< with the point or the sign that is known; with the comma where that is open
    bool open_;
};

/// The decimal sign of a file by its columns: comma where a column of numbers needs it and none needs the point.
char decimalOf(const std::vector<ColumnSurvey> &columns);
/// Why it is that one, as half a sentence.
QString decimalReason(const std::vector<ColumnSurvey> &columns, char decimal);

/// Bytes of a cell as text.
QString decoded(std::string_view bytes, CsvEncoding encoding);
/// A cell as text, or nothing when it is null.
std::optional<QString> csvText(std::string_view cell, CsvEncoding encoding);
/// A cell as a number, or nothing when it is null. \throws EPlatformError when the cell is no number of that kind, as
/// happens when the file has changed since it was surveyed.
std::optional<qint64> csvWhole(std::string_view cell);
std::optional<double> csvFloating(std::string_view cell, char decimal = '.');

/// Without blanks and tabs at its ends.
std::string_view withoutBlanks(std::string_view text);

/// For a file that is no longer what it was when it was surveyed. \throws EPlatformError
[[noreturn]] void failChangedCsv();

} // namespace nuvo
