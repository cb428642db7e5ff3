// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Records.h"
#include "platform/Rowsource.h"

#include <functional>
#include <memory>
#include <vector>

namespace nuvo {

/// The rows that a dataset has read so far, and the statement that reads on: forward, in chunks, never further than
/// asked, and again from a place before a row that is not kept any more. It knows no fields and no current row.
///
/// An error of the database passes through; the statement is given up then, what was read is kept, and the next
/// reading begins a statement of its own.
class Snapshot
{
public:
    /// A statement that gives the row of the position asked for next.
    struct Begun
    {
        std::unique_ptr<RowSource> source;
        std::vector<int> keyColumns; ///< as in Select
        bool limited = false;        ///< as in Select
    };
    using Begin = std::function<Begun(const ReadPosition &)>;

    explicit Snapshot(Begin begin) : begin_(std::move(begin)) {}

    /// Set before clear().
    void setLimits(const RecordLimits &limits) { limits_ = limits; }
    /// While rows are scanned the statement stays open from chunk to chunk; without, each chunk ends it.
    void setScanning(bool scanning) { scanning_ = scanning; }

    // Opening, in this order: clear(), begin(), firstRows() where wanted, keep().

    /// Forgets all rows and gives up the statement.
    void clear();
    /// Begins the statement at the first row.
    void begin() { start(0); }
    /// The columns of the statement's result.
    std::vector<Column> columns() { return source_->columns(); }
    /// The first chunk of rows with so many columns each; taken off the statement.
    std::vector<QVariantList> firstRows(int columns);
    /// Keeps rows with columns of these kinds from now on, beginning with the first rows.
    void keep(const std::vector<FieldKind> &kinds, const std::vector<QVariantList> &firstRows);

    /// Number of the rows known to exist.
    qint64 known() const { return known_; }
    /// Number of all rows once the end was reached; -1 before.
    qint64 end() const { return end_; }
    /// Whether a row exists; it is in memory then.
    bool ensure(qint64 row);
    /// The block that holds a row; null when it is not in memory.
    std::shared_ptr<const Block> find(qint64 row) const { return store_->find(row); }
    qint64 cellsPerRow() const { return store_->layout().cells; }
    /// The first of the rows kept from the beginning on whose numeric columns have these values; -1 when there is
    /// none. complete tells whether these rows are all.
    qint64 findNumbers(const std::vector<int> &columns, const std::vector<double> &values, bool &complete) const;
    /// Ends the statement that is under way; the next reading begins behind what it gave.
    void giveUp();

private:
    void start(qint64 from);
    void drop();
    qint64 startFor(qint64 row) const;
    bool readChunk(qint64 wanted);
    void readRows(qint64 first, qint64 wanted, qint64 until);
    void saveAnchor();

    Begin begin_;
    RecordLimits limits_;
    bool scanning_ = false;
    std::unique_ptr<RecordStore> store_;
    qint64 known_ = 0;
    qint64 end_ = -1;

    std::unique_ptr<RowSource> source_;
    std::vector<int> keyColumns_;
    qint64 sourceRow_ = 0; // the row that the source gives next
    qint64 sourceEnd_ = 0; // where its own limit ends it
    bool onRow_ = false;   // whether the source stands on a row
    qint64 chunk_ = 0;
    qint64 rowBytes_ = 1; // of the row read last
};

} // namespace nuvo
