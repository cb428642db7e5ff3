// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace nuvo {

/// What is scanned: a table, or the result of a statement, and which of its columns.
struct ScanSource
{
    QString databaseName;
    QString table;      ///< as TTable::TableName
    QString filter;     ///< an SQL condition on the table; empty for all records
    QString sql;        ///< a statement that reads, where no table is named
    QVariantMap params; ///< of the statement, names in lower case
    QStringList columns;
};

/// Records of a scan as numbers, column by column: what TField::AsFloat() and IsNull() say of them.
class NUVO_EXPORT ScanBlock
{
public:
    static constexpr int kMostRows = 1024;

    int rows() const { return rows_; }
    /// Number of the first record, from 1.
    qint64 firstRecord() const { return firstRecord_; }
    /// rows() cells; a cell without a number is a NaN.
    const double *column(int column) const { return cells_.data() + size_t(column) * kMostRows; }
    /// Forgets the others.  \pre so many rows
    void keepFirst(int rows);
    /// Whether there is nothing, or a number that is not finite.
    bool isNull(int column, int row) const;
    /// Whether there is a cell that is neither a number nor null.
    bool hasOdd() const;
    /// For such a cell. \throws EConvertError, EDatabaseError as TField::AsFloat().
    [[noreturn]] void fail(int column, int row) const;

private:
    friend class Scan;
    struct Odd;

    std::vector<double> cells_;
    std::vector<Odd> odd_; // cells that are neither number nor null, ascending by column within a row
    qint64 firstRecord_ = 1;
    int rows_ = 0;

public:
    ScanBlock();
    ScanBlock(ScanBlock &&) noexcept;
    ScanBlock &operator=(ScanBlock &&) noexcept;
    ~ScanBlock();
};

/// Numbers of rows, both ends included.
struct NUVO_EXPORT RowNumbers
{
    qint64 first = 0;
    qint64 last = 0;

    /// The lower half, which may be larger by one, and the upper one.  \pre first < last.
    std::pair<RowNumbers, RowNumbers> halves() const;
    bool operator==(const RowNumbers &) const = default;
};

/// Reads every record once, forward, in the engine's own order where nothing else is asked for, on a connection of
/// its own: for one thread, which need not be that of the application. Memory is that of a block, whatever the size
/// of the table. The statement stays open to the end, so that a writer of an SQLite file waits for it.
class NUVO_EXPORT Scan
{
public:
    explicit Scan(ScanSource source);
    Scan(const Scan &) = delete;
    Scan &operator=(const Scan &) = delete;
    ~Scan();

    /// The records of a table come in the order in which a dataset has them. \pre not open
    void keepOrder();
    /// Connects and begins; beside a registered connection, on one of its own to the same database. \throws
    /// EDatabaseError with one sentence: no such database, table, column; a statement that does not read.
    void open();
    /// Of a whole SQLite table whose rows have numbers, those of its first and last one, while the scan is open; the
    /// state of the table that they were asked of is kept until it is closed. Nothing when there are no rows.
    std::optional<RowNumbers> rowNumbers() const;
    /// Whether another scan that is opened now, and another connection in general, sees the same state of the table
    /// until this one is closed: SQLite lets nobody write then, but where it keeps a write-ahead log.
    bool isStateShared() const;
    /// Goes on with the rows of these numbers alone, instead of all or after others have been read to their end; from
    /// now on the scan stays open at an end, and share() is of these rows. records() counts on.
    /// \pre rowNumbers() has a value, and no order is asked for.  \throws EDatabaseError
    void readOnly(RowNumbers numbers);
    /// Ends the reading, in the thread that opened it.
    void close();
    /// The next records; false, and none, at the end and after cancel(). \throws EDatabaseError when the scan is cut
    /// short.
    bool next(ScanBlock &block);
    /// Ends the scan from another thread: a statement that is under way is interrupted where the driver can.
    void cancel();
    bool cancelled() const;

    /// Records read so far.
    qint64 records() const;
    /// Which share of the table is read, 0 to 1; negative where the engine does not know.
    double share() const;

private:
    class Private;
    std::unique_ptr<Private> d_;
};

} // namespace nuvo
