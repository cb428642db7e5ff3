// SPDX-License-Identifier: MIT
#include "platform/Records.h"

#include "platform/Numbervalue.h"

#include <QByteArray>

#include <algorithm>
#include <bit>
#include <cmath>

namespace nuvo {

namespace {

constexpr quint64 kNullBits = 0x7ff8000000000000U;
constexpr quint64 kAsideBits = 0x7ff8000000000001U;
constexpr qint64 kExactInteger = qint64(1) << 53;

const double kNullCell = std::bit_cast<double>(kNullBits);
const double kAside = std::bit_cast<double>(kAsideBits);

bool isAside(double cell)
{
    return std::bit_cast<quint64>(cell) == kAsideBits;
}

} // namespace

qint64 bytesOf(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
        return qint64(sizeof(QVariant)) + 2 * value.toString().size();
    case QMetaType::QByteArray:
        return qint64(sizeof(QVariant)) + value.toByteArray().size();
    default:
        return qint64(sizeof(QVariant));
    }
}

RowLayout::RowLayout(const std::vector<FieldKind> &kinds)
{
    for (const FieldKind kind : kinds) {
        const bool numeric = isNumeric(kind);
        slots.push_back({numeric, numeric ? cells++ : others++});
    }
}

qint64 Block::bytes() const
{
    return qint64(cells_.capacity() * sizeof(double)) + textBytes_;
}

void Block::reserve(qint64 rows)
{
    cells_.reserve(size_t(rows * layout_.cells));
    others_.reserve(size_t(rows * layout_.others));
}

void Block::appendCell(const QVariant &value)
{
    double cell = kNullCell;
    switch (value.typeId()) {
    case QMetaType::Double:
        cell = *static_cast<const double *>(value.constData());
        break;
    case QMetaType::LongLong: {
        const qint64 whole = *static_cast<const qint64 *>(value.constData());
        if (whole > kExactInteger || whole < -kExactInteger)
            return appendAside(value);
        cell = double(whole);
        break;
    }
    case QMetaType::ULongLong:
        if (value.toULongLong() > quint64(kExactInteger))
            return appendAside(value);
        cell = double(value.toULongLong());
        break;
    case QMetaType::QString:
        if (!value.isNull() && !numberFromText(value.toString(), cell))
            return appendAside(value);
        break;
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Float:
        cell = value.toDouble();
        break;
    case QMetaType::UnknownType:
        break;
    default:
        if (!value.isNull())
            return appendAside(value);
    }
    // A driver's null has a type too.
    cells_.push_back(std::isfinite(cell) && !value.isNull() ? cell : kNullCell);
}

void Block::appendAside(const QVariant &value)
{
    aside_.emplace_back(qint64(cells_.size()), value);
    cells_.push_back(kAside);
    textBytes_ += bytesOf(value) + qint64(sizeof(qint64));
}

void Block::appendOther(const QVariant &value)
{
    if (value.isNull())
        others_.emplace_back();
    else
        others_.push_back(value);
    textBytes_ += bytesOf(value);
}

QVariant Block::value(qint64 row, int column) const
{
    const RowLayout::Slot slot = layout_.slots[size_t(column)];
    const qint64 line = row - firstRow_;
    if (!slot.numeric)
        return others_[size_t(line * layout_.others + slot.index)];
    const qint64 at = line * layout_.cells + slot.index;
    const double cell = cells_[size_t(at)];
    if (std::isfinite(cell))
        return cell;
    if (!isAside(cell))
        return {};
    const auto found = std::lower_bound(aside_.begin(), aside_.end(), at,
                                        [](const auto &entry, qint64 key) { return entry.first < key; });
    return found->second;
}

bool Block::isNull(qint64 row, int column) const
{
    const RowLayout::Slot slot = layout_.slots[size_t(column)];
    const qint64 line = row - firstRow_;
    if (!slot.numeric)
        return !others_[size_t(line * layout_.others + slot.index)].isValid();
    const double cell = cells_[size_t(line * layout_.cells + slot.index)];
    return !std::isfinite(cell) && !isAside(cell);
}

std::shared_ptr<const Block> RecordStore::find(qint64 row) const
{
    const auto in = [row](const auto &blocks) -> std::shared_ptr<const Block> {
        const auto after = std::upper_bound(blocks.begin(), blocks.end(), row,
                                            [](qint64 key, const auto &block) { return key < block->firstRow(); });
        if (after == blocks.begin() || row >= (*std::prev(after))->endRow())
            return nullptr;
        return *std::prev(after);
    };
    if (std::shared_ptr<const Block> block = in(head_))
        return block;
    return in(window_);
}

qint64 RecordStore::findNumbers(const std::vector<int> &columns, const std::vector<double> &values) const
{
    for (const auto &block : head_) {
        const double *cells = block->cellsOf(block->firstRow());
        for (qint64 row = block->firstRow(); row < block->endRow(); ++row, cells += layout_.cells) {
            bool equal = true;
            for (size_t i = 0; equal && i < columns.size(); ++i)
                equal = cells[layout_.slots[size_t(columns[i])].index] == values[i];
            if (equal)
                return row;
        }
    }
    return -1;
}

bool RecordStore::isFull(const Block &block) const
{
    return block.rows() >= limits_.blockRows || block.bytes() >= limits_.blockBytes;
}

Block &RecordStore::blockFor(qint64 row)
{
    if (headOpen_ && row == headEnd()) {
        if (!head_.empty() && !isFull(*head_.back()))
            return *head_.back();
        if (!head_.empty())
            headBytes_ += head_.back()->bytes();
        if (row < limits_.headRows && headBytes_ < limits_.headBytes) {
            head_.push_back(std::make_shared<Block>(layout_, row));
            return *head_.back();
        }
        headOpen_ = false;
    }
    if (row != windowEnd() || window_.empty())
        window_.clear();
    else if (!isFull(*window_.back()))
        return *window_.back();
    qint64 bytes = 0;
    for (const auto &block : window_)
        bytes += block->bytes();
    while (!window_.empty() && (windowRows() >= limits_.windowRows || bytes >= limits_.windowBytes)) {
        bytes -= window_.front()->bytes();
        window_.pop_front();
    }
    window_.push_back(std::make_shared<Block>(layout_, row));
    return *window_.back();
}

void RecordStore::setAnchor(qint64 row, const QVariantList &key)
{
    anchors_[row] = key;
    // Fewer of them only make for longer ways to where reading begins again.
    constexpr size_t kMost = 4096;
    if (anchors_.size() <= kMost)
        return;
    for (auto anchor = anchors_.begin(); anchor != anchors_.end();) {
        anchor = anchors_.erase(anchor);
        if (anchor != anchors_.end())
            ++anchor;
    }
}

std::pair<qint64, QVariantList> RecordStore::anchorAtOrBefore(qint64 row) const
{
    const auto after = anchors_.upper_bound(row);
    if (after == anchors_.begin())
        return {0, {}};
    return *std::prev(after);
}

} // namespace nuvo
