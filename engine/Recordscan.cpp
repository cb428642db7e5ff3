// SPDX-License-Identifier: MIT
#include "engine/Recordscan.h"

#include "platform/Errors.h"
#include "platform/Quietthread.h"

#include <algorithm>
#include <utility>

namespace nuvo {

namespace {

ScanSource sourceOf(const RecordRequest &request)
{
    ScanSource source = request.source;
    source.columns = BlockTerms(request.columns, request.response).fields();
    return source;
}

} // namespace

RecordScan::RecordScan(RecordRequest request)
    : request_(std::move(request)), scan_(sourceOf(request_)), second_(sourceOf(request_))
{
}

RecordScan::~RecordScan() = default;

RecordSums RecordScan::newSums(const BlockTerms &terms, std::uint64_t seed) const
{
    return RecordSums(int(request_.columns.size()), terms.withLow(), seed);
}

std::optional<RecordSums> RecordScan::read()
{
    BlockTerms terms(request_.columns, request_.response);
    RecordSums sums = newSums(terms, 1);
    scan_.open();
    const std::optional<RowNumbers> numbers = scan_.rowNumbers();
    if (numbers && quint64(numbers->last) - quint64(numbers->first) >= quint64(kLeastToHalve))
        addHalves(*numbers, terms, sums);
    else
        add(scan_, terms, sums);
    scan_.close();
    if (scan_.cancelled())
        return {};
    sums.total = sums.read;
    sums.errors = terms.errors();
    return sums;
}

void RecordScan::add(Scan &scan, BlockTerms &terms, RecordSums &sums) const
{
    const int m = int(request_.columns.size());
    const ControlSet all = (ControlSet(1) << m) - 1;
    const qint64 before = scan.records();
    ScanBlock block;
    while (scan.next(block)) {
        terms.read(block);
        sums.sums.add(terms.values(), terms.low(), terms.usable());
        sums.sample.add(terms.values(), terms.low(), terms.usable(), block.firstRecord() - before);
        if (!request_.onlyAllColumns || !terms.hasErrors())
            continue;
        // The load of the one fit that is wanted fails; what is left of the table need not be read.
        const std::vector<RecordError> errors = terms.errors();
        if (const RecordError *const error = errorFor(errors, all, m))
            std::rethrow_exception(error->error);
    }
    sums.read = scan.records() - before;
    sums.leftOut = terms.leftOut();
}

/// The upper half on a connection of its own. False where it cannot be, or where something is met that an error would
/// tell of: its record has no number yet.
bool RecordScan::addBeside(RowNumbers all, BlockTerms &terms, RecordSums &sums)
{
    try {
        second_.open();
        if (second_.rowNumbers() != all)
            return false;
        second_.readOnly(all.halves().second);
        ScanBlock block;
        while (second_.next(block) && !block.hasOdd() && !terms.hasErrors()) {
            terms.read(block);
            sums.sums.add(terms.values(), terms.low(), terms.usable());
            sums.sample.add(terms.values(), terms.low(), terms.usable(), block.firstRecord());
        }
        sums.read = second_.records();
        sums.leftOut = terms.leftOut();
        const bool complete = block.rows() == 0 && !terms.hasErrors() && !second_.cancelled();
        second_.close();
        return complete;
    } catch (const EPlatformError &) {
        // The first connection reads the half then, and tells what is wrong with it.
        second_.close();
        return false;
    }
}

void RecordScan::addHalves(RowNumbers all, BlockTerms &terms, RecordSums &sums)
{
    const auto [lower, upper] = all.halves();
    BlockTerms otherTerms(request_.columns, request_.response);
    RecordSums other = newSums(otherTerms, 2);
    bool beside = false;
    std::thread thread;
    state_ = scan_.isStateShared() ? State::SideBySide : State::Lower;
    if (state_ == State::SideBySide)
        thread = quietThread([&] { beside = addBeside(all, otherTerms, other); });
    try {
        scan_.readOnly(lower);
        add(scan_, terms, sums);
    } catch (...) {
        second_.cancel();
        if (thread.joinable())
            thread.join();
        throw;
    }
    if (thread.joinable())
        thread.join();
    if (beside) {
        for (size_t term = 0; term < sums.leftOut.size(); ++term)
            sums.leftOut[term].append(other.leftOut[term], sums.read);
    } else {
        state_ = State::Upper;
        other = newSums(terms, 2);
        scan_.readOnly(upper);
        add(scan_, terms, other);
        sums.leftOut = other.leftOut; // of both halves: the terms are the same
    }
    other.sample.shift(sums.read);
    sums.sample.merge(other.sample);
    sums.sums.merge(std::move(other.sums));
    sums.read += other.read;
}

void RecordScan::cancel()
{
    scan_.cancel();
    second_.cancel();
}

qint64 RecordScan::records() const
{
    return scan_.records() + (state_ == State::SideBySide ? second_.records() : 0);
}

double RecordScan::share() const
{
    const double first = scan_.share();
    switch (state_.load()) {
    case State::Whole:
        return first;
    case State::SideBySide:
        return (std::max(0.0, first) + std::max(0.0, second_.share())) / 2;
    case State::Lower:
        return first / 2;
    case State::Upper:
        break;
    }
    return (1 + first) / 2;
}

const RecordError *errorFor(const std::vector<RecordError> &errors, ControlSet set, int controls)
{
    const ControlSet response = ControlSet(1) << controls;
    for (const RecordError &one : errors) {
        const ControlSet own = ControlSet(1) << one.term;
        if (own != response && (set & own) == 0)
            continue;
        // Terms are asked in their order, the response last, and no further than the first that does not accept the
        // record; then come the values.
        const ControlSet needed = one.atValue ? set | response : set & (own - 1);
        if ((one.accepted & needed) == needed)
            return &one;
    }
    return nullptr;
}

} // namespace nuvo
