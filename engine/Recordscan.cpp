#include "engine/Recordscan.h"

#include "engine/Blockterms.h"

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

RecordScan::RecordScan(RecordRequest request) : request_(std::move(request)), scan_(sourceOf(request_)) {}

RecordScan::~RecordScan() = default;

std::optional<RecordSums> RecordScan::read()
{
    const int m = int(request_.columns.size());
    const ControlSet all = (ControlSet(1) << m) - 1;
    BlockTerms terms(request_.columns, request_.response);
    RecordSums sums(m, terms.withLow());
    ScanBlock block;
    scan_.open();
    while (scan_.next(block)) {
        terms.read(block);
        sums.sums.add(terms.values(), terms.low(), terms.usable());
        sums.sample.add(terms.values(), terms.low(), terms.usable(), block.firstRecord());
        if (!request_.onlyAllColumns || !terms.hasErrors())
            continue;
        // The load of the one fit that is wanted fails; what is left of the table need not be read.
        const std::vector<RecordError> errors = terms.errors();
        if (const RecordError *const error = errorFor(errors, all, m))
            std::rethrow_exception(error->error);
    }
    if (scan_.cancelled())
        return {};
    sums.read = scan_.records();
    sums.total = sums.read;
    sums.leftOut = terms.leftOut();
    sums.errors = terms.errors();
    return sums;
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
