// SPDX-License-Identifier: MIT
#include "platform/Snapshot.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace nuvo {

void Snapshot::clear()
{
    drop();
    store_.reset();
    known_ = 0;
    end_ = -1;
    chunk_ = limits_.firstChunk;
}

void Snapshot::drop()
{
    source_.reset();
    onRow_ = false;
}

void Snapshot::start(qint64 from)
{
    drop();
    ReadPosition position;
    position.row = from;
    position.limit = scanning_ ? -1 : chunk_;
    if (store_)
        std::tie(position.afterRow, position.after) = store_->anchorAtOrBefore(from);
    Begun begun = begin_(position);
    source_ = std::move(begun.source);
    source_->setRowBytes(rowBytes_);
    keyColumns_ = std::move(begun.keyColumns);
    sourceRow_ = from;
    sourceEnd_ = begun.limited ? from + position.limit : std::numeric_limits<qint64>::max();
}

std::vector<QVariantList> Snapshot::firstRows(int columns)
{
    std::vector<QVariantList> rows;
    qint64 bytes = 0;
    while (qint64(rows.size()) < chunk_ && bytes < limits_.windowBytes / 2) {
        if (!source_->next()) {
            source_.reset();
            break;
        }
        onRow_ = true;
        ++sourceRow_;
        QVariantList row;
        rowBytes_ = 0;
        for (int i = 0; i < columns; ++i) {
            row.append(source_->value(i));
            rowBytes_ += bytesOf(row.last());
        }
        rows.push_back(row);
        source_->setRowBytes(rowBytes_);
        bytes += rowBytes_;
    }
    return rows;
}

void Snapshot::keep(const std::vector<FieldKind> &kinds, const std::vector<QVariantList> &firstRows)
{
    store_ = std::make_unique<RecordStore>(RowLayout(kinds), limits_);
    for (const QVariantList &row : firstRows)
        store_->blockFor(known_++).append([&](int column) -> const QVariant & { return row[column]; });
    if (!source_)
        end_ = known_;
    else
        saveAnchor();
    chunk_ = std::min(2 * chunk_, limits_.lastChunk);
    if (!scanning_)
        giveUp();
}

void Snapshot::saveAnchor()
{
    if (!source_ || !store_ || !onRow_ || keyColumns_.empty())
        return;
    QVariantList key;
    for (const int column : keyColumns_) {
        const QVariant value = source_->value(column);
        // Reading cannot begin behind a null, nor behind a text that did not come through as it is stored.
        if (value.isNull() ||
            (value.typeId() == QMetaType::QString && value.toString().contains(QChar::ReplacementCharacter)))
            return;
        key.append(value);
    }
    store_->setAnchor(sourceRow_, key);
}

void Snapshot::giveUp()
{
    saveAnchor();
    drop();
}

/// Where to begin so that a row gets into memory: at the source, behind the rows kept, or at a place before the row
/// from which rows are read again.
qint64 Snapshot::startFor(qint64 row) const
{
    const qint64 reach = limits_.windowRows / 2;
    const auto near = [&](qint64 from) { return from <= row && row - from <= reach; };
    if (source_ && near(sourceRow_))
        return sourceRow_;
    if (store_->headOpen() && near(store_->headEnd()))
        return store_->headEnd();
    if (store_->windowEnd() > store_->headEnd() && near(store_->windowEnd()))
        return store_->windowEnd();
    if (row >= known_)
        return row; // the first time, and what lies before it was not asked for
    const qint64 anchor = store_->anchorAtOrBefore(row).first;
    if (anchor > 0 && near(anchor))
        return anchor;
    return std::max(store_->headOpen() ? 0 : store_->headEnd(), row - reach / 2);
}

bool Snapshot::ensure(qint64 row)
{
    if (row < 0)
        return false;
    while (!(end_ >= 0 && row >= end_)) {
        if (store_->find(row))
            return true;
        const qint64 from = startFor(row);
        if (!source_ || sourceRow_ != from)
            start(from);
        if (!readChunk(row - from + 1))
            return false;
    }
    return false;
}

/// Reads at least so many rows if there are any, and on to the end of the chunk while they are not too wide; false
/// when there was none.
bool Snapshot::readChunk(qint64 wanted)
{
    const qint64 first = sourceRow_;
    const qint64 chunk = scanning_ ? limits_.scanChunk : chunk_;
    const qint64 until = std::min({first + std::max(wanted, chunk), sourceEnd_, end_ >= 0 ? end_ : sourceEnd_});
    // A source that began behind the end says nothing of the rows before it.
    const auto learn = [&] { known_ = sourceRow_ > first ? std::max(known_, sourceRow_) : known_; };
    try {
        readRows(first, wanted, until);
    } catch (...) {
        drop();
        learn();
        throw;
    }
    const bool lost = source_ && source_->isLost();
    if (lost)
        drop();
    learn();
    if (lost)
        return true; // begun again at the row that is missing
    if (!scanning_) {
        giveUp();
        chunk_ = std::min(2 * chunk_, limits_.lastChunk);
    }
    return sourceRow_ > first;
}

void Snapshot::readRows(qint64 first, qint64 wanted, qint64 until)
{
    qint64 bytesLeft = limits_.windowBytes / 2; // more, and the rows wanted would be gone again
    Block *into = nullptr;
    while (sourceRow_ < until && (sourceRow_ < first + wanted || bytesLeft > 0)) {
        if (!source_->next()) {
            if (source_->isLost())
                return;
            drop();
            // Behind a row that is there, this is the end; behind a gap it says only that the rows became fewer.
            if (sourceRow_ == known_ || sourceRow_ > first || store_->find(sourceRow_ - 1))
                end_ = sourceRow_;
            return;
        }
        if (into == nullptr)
            into = &store_->blockFor(sourceRow_);
        const qint64 bytesBefore = into->bytes();
        into->append([&](int column) { return source_->value(column); });
        onRow_ = true;
        ++sourceRow_;
        rowBytes_ = into->bytes() - bytesBefore;
        source_->setRowBytes(rowBytes_);
        bytesLeft -= rowBytes_;
        if (store_->isFull(*into)) {
            saveAnchor();
            into = nullptr;
        }
    }
}

qint64 Snapshot::findNumbers(const std::vector<int> &columns, const std::vector<double> &values, bool &complete) const
{
    complete = end_ == store_->headEnd();
    return store_->findNumbers(columns, values);
}

} // namespace nuvo
