// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Fieldtypes.h"

#include <QVariantList>

#include <deque>
#include <map>
#include <memory>
#include <vector>

namespace nuvo {

/// How much a dataset keeps. Rows are kept in blocks; the head is the first rows, kept for good; the window is the
/// rows around the last place that was read beyond the head. Bytes count where rows are wide.
struct RecordLimits
{
    qint64 blockRows = 1024;
    qint64 blockBytes = qint64(1) << 20;
    qint64 headRows = 8192;
    qint64 headBytes = qint64(32) << 20;
    qint64 windowRows = 4096;
    qint64 windowBytes = qint64(8) << 20;
    /// Rows that are read at once while controls are enabled: so many first, then doubling up to the last.
    qint64 firstChunk = 64;
    qint64 lastChunk = 2048;
    /// Rows that are read at once from a statement that stays open.
    qint64 scanChunk = 64;
};

/// About how much memory a value takes.
qint64 bytesOf(const QVariant &value);

/// Where each column's values stand within a row: numbers as doubles side by side, the others as variants.
struct RowLayout
{
    struct Slot
    {
        bool numeric = false;
        qint64 index = 0;
    };
    std::vector<Slot> slots;
    qint64 cells = 0;
    qint64 others = 0;

    explicit RowLayout(const std::vector<FieldKind> &kinds = {});
};

/// Rows that follow one another. A number that a double holds stands in its cell; a null is a NaN; a value of a
/// numeric column that is neither (a text, an integer beyond 2^53) is marked by another NaN and kept aside.
class Block
{
public:
    Block(const RowLayout &layout, qint64 firstRow) : layout_(layout), firstRow_(firstRow) {}

    qint64 firstRow() const { return firstRow_; }
    qint64 endRow() const { return firstRow_ + rows_; }
    qint64 rows() const { return rows_; }
    qint64 bytes() const;
    const double *cellsOf(qint64 row) const { return cells_.data() + (row - firstRow_) * layout_.cells; }

    /// Invalid for a null.
    QVariant value(qint64 row, int column) const;
    bool isNull(qint64 row, int column) const;

    void reserve(qint64 rows);
    /// Appends a row whose values are valueOf(column).
    template <class ValueOf>
    void append(ValueOf valueOf)
    {
        for (int column = 0; column < int(layout_.slots.size()); ++column) {
            if (layout_.slots[size_t(column)].numeric)
                appendCell(valueOf(column));
            else
                appendOther(valueOf(column));
        }
        ++rows_;
    }

private:
    void appendCell(const QVariant &value);
    void appendOther(const QVariant &value);
    void appendAside(const QVariant &value);

    const RowLayout &layout_;
    qint64 firstRow_;
    qint64 rows_ = 0;
    qint64 textBytes_ = 0;
    std::vector<double> cells_;
    std::vector<QVariant> others_;
    std::vector<std::pair<qint64, QVariant>> aside_; // by position in cells_, ascending
};

/// The rows of a dataset that are in memory, and the places from which reading can begin again.
class RecordStore
{
public:
    RecordStore(RowLayout layout, const RecordLimits &limits) : layout_(std::move(layout)), limits_(limits) {}
    RecordStore(const RecordStore &) = delete;
    RecordStore &operator=(const RecordStore &) = delete;

    const RowLayout &layout() const { return layout_; }
    const RecordLimits &limits() const { return limits_; }

    /// The block that holds a row; null when it is not in memory. A block that is held stays readable.
    std::shared_ptr<const Block> find(qint64 row) const;
    /// The first row of the head whose numeric columns have these values; -1 when there is none.
    qint64 findNumbers(const std::vector<int> &columns, const std::vector<double> &values) const;
    /// End of the rows kept from the first one on.
    qint64 headEnd() const { return head_.empty() ? 0 : head_.back()->endRow(); }
    bool headOpen() const { return headOpen_; }
    qint64 windowEnd() const { return window_.empty() ? 0 : window_.back()->endRow(); }
    qint64 windowRows() const { return window_.empty() ? 0 : windowEnd() - window_.front()->firstRow(); }

    /// The block to which a row is appended. A row that continues neither head nor window begins a new window.
    Block &blockFor(qint64 row);
    /// Whether a block takes no more rows.
    bool isFull(const Block &block) const;

    /// Remembers the key of the row before a row.
    void setAnchor(qint64 row, const QVariantList &key);
    /// The greatest row up to this one whose predecessor's key is known; row 0 has none and needs none.
    std::pair<qint64, QVariantList> anchorAtOrBefore(qint64 row) const;

private:
    RowLayout layout_;
    RecordLimits limits_;
    std::vector<std::shared_ptr<Block>> head_;
    std::deque<std::shared_ptr<Block>> window_;
    std::map<qint64, QVariantList> anchors_;
    qint64 headBytes_ = 0; // of the blocks but the last
    bool headOpen_ = true;
};

} // namespace nuvo
