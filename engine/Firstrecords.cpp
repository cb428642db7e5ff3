// SPDX-License-Identifier: MIT
#include "engine/Firstrecords.h"

#include "engine/Blockterms.h"
#include "engine/Recordscan.h"

#include <memory>
#include <span>
#include <utility>

namespace nuvo {

namespace {

ScanSource firstSourceOf(const RecordRequest &request)
{
    ScanSource source = request.source;
    source.columns = BlockTerms(request.columns, request.response).fields();
    return source;
}

/// Appends the records of the last block that every term accepts, as long as there is room.
class Appending
{
public:
    explicit Appending(int controls) : controls_(controls) {}

    bool isFull() const { return n_ == MaxObservations; }
    /// Whether it can be full after so many records.
    bool hasRoomFor(int records) const { return n_ + records < MaxObservations; }
    /// How many records it walked: those up to the last one that there is room for.
    int add(const BlockTerms &terms, qint64 firstRecord)
    {
        const std::uint32_t all = (std::uint32_t(2) << controls_) - 1;
        const std::span<const std::uint32_t> usable = terms.usable();
        int row = 0;
        for (; row < int(usable.size()) && !isFull(); ++row) {
            if ((usable[std::size_t(row)] & all) == all)
                add(terms, firstRecord, row);
        }
        return row;
    }
    Observations observations() const { return Observations(buffer_, n_, controls_); }

private:
    void add(const BlockTerms &terms, qint64 firstRecord, int row)
    {
        for (int j = 0; j <= controls_; ++j) {
            const bool isResponse = j == controls_;
            const double value = terms.values()[std::size_t(j)][row];
            (isResponse ? buffer_->y[n_] : buffer_->x[j][n_]) = value;
            if (const double *const low = terms.low()[std::size_t(j)])
                (isResponse ? buffer_->yLow : buffer_->xLow[j]).push_back(low[row]);
        }
        buffer_->record[n_] = firstRecord + row;
        ++n_;
    }

    const int controls_;
    int n_ = 0;
    const std::shared_ptr<ObservationBuffer> buffer_ = std::make_shared<ObservationBuffer>();
};

} // namespace

FirstRecords::FirstRecords(RecordRequest request) : request_(std::move(request)), scan_(firstSourceOf(request_))
{
    scan_.keepOrder();
}

std::optional<LoadedRecords> FirstRecords::load(qint64 most)
{
    const int controls = int(request_.columns.size());
    BlockTerms terms(request_.columns, request_.response);
    Appending appending(controls);
    LoadedRecords loaded;
    ScanBlock block;
    scan_.open();
    loaded.more = scan_.next(block);
    while (loaded.more && !appending.isFull()) {
        if (most >= 0 && loaded.read >= most) {
            scan_.close();
            return {};
        }
        // What lies behind the last record counts for nothing: it is not asked what the terms can make of it.
        const std::optional<BlockTerms> before =
            appending.hasRoomFor(block.rows()) ? std::nullopt : std::optional(terms);
        terms.read(block);
        const int walked = appending.add(terms, block.firstRecord());
        const bool isCut = walked < block.rows();
        if (isCut) {
            block.keepFirst(walked);
            terms = *before;
            terms.read(block);
        }
        if (terms.hasErrors()) {
            const std::vector<RecordError> errors = terms.errors();
            if (const RecordError *const error = errorFor(errors, (ControlSet(1) << controls) - 1, controls)) {
                scan_.close();
                std::rethrow_exception(error->error);
            }
        }
        loaded.read += walked;
        loaded.more = isCut || scan_.next(block);
    }
    const bool isEnded = scan_.cancelled();
    scan_.close();
    if (isEnded)
        return {};
    loaded.observations = appending.observations();
    loaded.leftOut = terms.leftOut();
    return loaded;
}

} // namespace nuvo
