// SPDX-License-Identifier: MIT
#include "app/Csv.h"

#include "platform/Errors.h"
#include "platform/Nearestname.h"
#include "platform/Numbervalue.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <cstring>

namespace nuvo {
namespace {

constexpr qint64 bufferSize = 1 << 20;
constexpr size_t longestRecord = size_t(64) << 20;
/// More than any database has columns; each costs memory, even an empty one.
constexpr size_t mostCells = 100000;
constexpr qsizetype longestIntruder = 40;

/// What there is where a file is not.
QString filesBeside(const QString &fileName)
{
    const QFileInfo missing(fileName);
    if (!missing.dir().exists())
        return QStringLiteral("; there is no folder \"%1\"").arg(missing.path());
    constexpr qsizetype most = 10;
    const QStringList there = missing.dir().entryList(
        {QStringLiteral("*.csv"), QStringLiteral("*.tsv"), QStringLiteral("*.txt")}, QDir::Files);
    if (there.isEmpty())
        return QStringLiteral("; its folder has no CSV file");
    const QString more = there.size() > most ? QStringLiteral(" and %1 more").arg(there.size() - most) : QString();
    return QStringLiteral("; its folder has %1")
               .arg(there.first(std::min(most, there.size())).join(QStringLiteral(", "))) +
           more + perhaps(missing.fileName(), there);
}

} // namespace

CsvReader::CsvReader(const QString &fileName, const CsvCorrections &corrections)
    : corrections_(corrections), fileName_(fileName), file_(fileName), buffer_(bufferSize)
{
    if (!file_.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        throw EPlatformError(
            QStringLiteral("The file \"%1\" cannot be opened: %2%3.")
                .arg(fileName, file_.errorString(), file_.exists() ? QString() : filesBeside(fileName)));
    }
    if (file_.isSequential())
        throw EPlatformError(
            QStringLiteral("\"%1\" is no ordinary file: it is read twice, once to learn the types of "
                           "its columns.")
                .arg(fileName));
    const qint64 size = read();
    refuseForeign({buffer_.data(), size_t(size)});
    const CsvRecogniser recogniser({buffer_.data(), size_t(size)}, size < bufferSize, corrections);
    format_ = recogniser.format();
    reasons_ = recogniser.reasons();
    markLength_ = qint64(recogniser.markLength());
    firstLine_ = recogniser.firstLine();
    rewind();
}

/// Files that are often taken for one.
void CsvReader::refuseForeign(std::string_view bytes) const
{
    if (bytes.starts_with("SQLite format 3"))
        throw EPlatformError(
            QStringLiteral("\"%1\" is an SQLite database, no CSV file; --database %1 --table NAME reads it.")
                .arg(fileName_));
    if (bytes.starts_with("PK\x03\x04"))
        throw EPlatformError(
            QStringLiteral("\"%1\" is an archive or a spreadsheet, no CSV file; save the sheet as CSV.")
                .arg(fileName_));
}

void CsvReader::rewind()
{
    if (!file_.seek(markLength_))
        throw EPlatformError(QStringLiteral("\"%1\" cannot be read: %2.").arg(fileName_, file_.errorString()));
    if (isUtf16(format_.encoding))
        decoder_ = QStringDecoder(format_.encoding == CsvEncoding::Utf16LittleEndian ? QStringDecoder::Utf16LE
                                                                                     : QStringDecoder::Utf16BE,
                                  QStringDecoder::Flag::ConvertInitialBom);
    at_ = end_ = nullptr;
    line_ = firstLine_;
    recordLine_ = 0;
    expected_ = 0;
    records_ = 0;
}

qint64 CsvReader::read()
{
    if (told_)
        told_(file_.pos());
    const qint64 size = file_.read(buffer_.data(), bufferSize);
    if (size < 0)
        throw EPlatformError(QStringLiteral("\"%1\" cannot be read: %2.").arg(fileName_, file_.errorString()));
    return size;
}

bool CsvReader::fill()
{
    const qint64 size = read();
    at_ = buffer_.data();
    end_ = at_ + size;
    if (!isUtf16(format_.encoding))
        return size > 0;
    if (size == 0) {
        if ((file_.pos() - markLength_) % 2 != 0)
            fail(QStringLiteral("the file ends within a character of %1").arg(encodingName(format_.encoding)), line_);
        return false;
    }
    decoded_ = QString(decoder_(QByteArrayView(buffer_.data(), size))).toUtf8();
    at_ = decoded_.constData();
    end_ = at_ + decoded_.size();
    return decoded_.isEmpty() ? fill() : true; // half a character
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
    const std::string_view bytes = std::string_view(text_).substr(from, ends_[index] - from);
    if (corrections_.nulls.empty() || records_ == 1)
        return bytes;
    const bool null = std::find(corrections_.nulls.begin(), corrections_.nulls.end(), withoutBlanks(bytes)) !=
                      corrections_.nulls.end();
    return null ? std::string_view() : bytes;
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
    if (records_ == 0 && format_.rowNames)
        ends_.insert(ends_.begin(), 0);
    if (expected_ == 0)
        expected_ = ends_.size();
    checkCells();
    ++records_;
    return true;
}

void CsvReader::checkCells()
{
    if (ends_.size() == expected_)
        return;
    QString what =
        QStringLiteral("%1 where the header row has %2")
            .arg(ends_.size() == 1 ? QStringLiteral("1 cell") : QStringLiteral("%1 cells").arg(ends_.size()))
            .arg(expected_);
    if (ends_.size() > expected_ && (records_ == 1 || expected_ == 1))
        what += QStringLiteral("; a title or a comment above the header row has to be taken out");
    fail(what, recordLine_);
}

CsvReader::End CsvReader::readCell()
{
    const size_t from = text_.size();
    bool closed = false; // quotes were read: nothing but blanks may follow
    End end = End::Record;
    for (int c = peek(); c >= 0; c = peek()) {
        if (c == format_.separator) {
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
        while (run != end_ && *run != format_.separator && *run != '"' && *run != '\n' && *run != '\r')
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

QString nameOfRows(const QStringList &names)
{
    QString row = QStringLiteral("row");
    for (int number = 2; names.contains(row, Qt::CaseInsensitive); ++number)
        row = QStringLiteral("row_%1").arg(number);
    return row;
}

namespace {

void takeColumns(CsvSurvey &survey, const std::vector<std::string> &names, const std::vector<ColumnSurvey> &columns,
                 const QString &fileName)
{
    const char decimal = survey.format.decimal;
    QSet<QString> there;
    for (size_t i = 0; i < columns.size(); ++i) {
        const ColumnSurvey &column = columns[i];
        CsvColumn told;
        told.name = decoded(names[i], survey.format.encoding).trimmed();
        told.cell = i;
        if (told.name.isEmpty() && column.isEmpty() && columns.size() > 1 && (i > 0 || survey.rows > 0)) {
            ++survey.leftOut;
            continue;
        }
        told.intruder = decoded(column.intruder(decimal), survey.format.encoding).left(longestIntruder);
        told.intruderLine = column.intruderLine(decimal);
        told.intruderLike = writtenLike(told.intruder, QLatin1Char(decimal));
        if (column.isNumeric(decimal))
            told.type = column.isWhole(decimal) ? ColumnType::Whole : ColumnType::Floating;
        // What R and pandas write begins with the names of the rows, below nothing.
        if (told.name.isEmpty() && i == 0 && columns.size() > 1) {
            QStringList taken;
            for (const std::string &name : names)
                taken.append(decoded(name, survey.format.encoding).trimmed());
            told.name = nameOfRows(taken);
        }
        survey.columns.push_back(told);
        if (told.name.isEmpty())
            throw EPlatformError(QStringLiteral("Column %1 of \"%2\" has no name in the header row; give it one, or "
                                                "take out what stands above the header row.")
                                     .arg(i + 1)
                                     .arg(fileName));
        if (there.contains(told.name.toCaseFolded()))
            throw EPlatformError(QStringLiteral("The header row of \"%1\" has the name \"%2\" twice; upper and lower "
                                                "case are the same to a database. Give each a name of its own.")
                                     .arg(fileName, told.name));
        there.insert(told.name.toCaseFolded());
    }
    if (survey.columns.empty())
        throw EPlatformError(QStringLiteral("No column of \"%1\" has a name or a value.").arg(fileName));
}

} // namespace

CsvSurvey surveyCsv(CsvReader &reader)
{
    reader.rewind();
    if (!reader.next())
        throw EPlatformError(QStringLiteral("The file \"%1\" is empty.").arg(reader.fileName()));
    CsvSurvey survey;
    survey.format = reader.format();
    survey.reasons = reader.reasons();
    // Where nothing is said the whole file says what the beginning could not.
    const bool checked = survey.format.encoding == CsvEncoding::Utf8;
    qint64 foreignLine = 0;
    const auto check = [&](std::string_view cell) {
        if (checked && foreignLine == 0 && !isUtf8(cell))
            foreignLine = reader.line();
    };
    std::optional<char> decimal = reader.corrections().decimal;
    if (!decimal && survey.format.separator == ',')
        decimal = '.';
    std::vector<std::string> names(reader.cellCount());
    std::vector<ColumnSurvey> columns(reader.cellCount(), ColumnSurvey(decimal));
    for (size_t i = 0; i < names.size(); ++i) {
        names[i] = withoutBlanks(reader.cell(i));
        check(names[i]);
    }
    while (reader.next()) {
        ++survey.rows;
        for (size_t i = 0; i < columns.size(); ++i) {
            check(reader.cell(i));
            columns[i].add(reader.cell(i), reader.line());
        }
    }

    if (foreignLine > 0 && reader.corrections().encoding)
        throw EPlatformError(QStringLiteral("\"%1\", line %2: some byte is no UTF-8, which the file was said to be.")
                                 .arg(reader.fileName())
                                 .arg(foreignLine));
    if (foreignLine > 0) {
        survey.format.encoding = CsvEncoding::Windows1252;
        survey.reasons.encoding = QStringLiteral("some byte in line %1 is no UTF-8").arg(foreignLine);
    }
    if (!decimal) {
        survey.format.decimal = decimalOf(columns);
        survey.reasons.decimal = decimalReason(columns, survey.format.decimal);
    }
    takeColumns(survey, names, columns, reader.fileName());
    return survey;
}

} // namespace nuvo
