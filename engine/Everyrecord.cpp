// SPDX-License-Identifier: MIT
#include "engine/Everyrecord.h"

#include "engine/Recordscan.h"
#include "engine/Sums.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace nuvo {

namespace {

bool sameDefinition(const TVariableDefinition &a, const TVariableDefinition &b)
{
    return a.ToQStringList() == b.ToQStringList();
}

bool sameSource(const ScanSource &a, const ScanSource &b)
{
    return a.databaseName == b.databaseName && a.table == b.table && a.filter == b.filter && a.sql == b.sql &&
           a.params == b.params;
}

} // namespace

std::optional<std::vector<int>> placesAmong(std::span<const TIndepVar> terms, std::span<const TIndepVar> columns)
{
    std::vector<int> places;
    std::size_t next = 0;
    for (const TIndepVar &column : columns) {
        while (next < terms.size() && !sameDefinition(terms[next], column))
            ++next;
        if (next == terms.size())
            return {};
        places.push_back(int(next++));
    }
    return places;
}

EveryRecord::EveryRecord(RecordRequest request, RecordSums sums)
    : request_(std::move(request)), sums_(std::move(sums))
{
}

EveryRecord::~EveryRecord() = default;

bool EveryRecord::knows(const ScanSource &source, const ModelDefinitions &definitions) const
{
    return sameSource(source, request_.source) && sameDefinition(definitions.response, request_.response) &&
           placesAmong(request_.columns, definitions.columns);
}

LoadedRecords EveryRecord::load(const ModelDefinitions &definitions)
{
    const std::vector<int> places = *placesAmong(request_.columns, definitions.columns);
    ControlSet own = 0;
    for (const int place : places)
        own |= ControlSet(1) << place;
    return load(places, own);
}

LoadedRecords EveryRecord::loadShared(const ModelDefinitions &definitions)
{
    return load(*placesAmong(request_.columns, definitions.columns), (ControlSet(1) << request_.columns.size()) - 1);
}

LoadedRecords EveryRecord::load(const std::vector<int> &places, ControlSet records)
{
    if (const RecordError *const error = errorFor(sums_.errors, records, int(request_.columns.size())))
        std::rethrow_exception(error->error);
    std::vector<int> columns; // of the totals, from 1
    columns.reserve(places.size());
    for (const int place : places)
        columns.push_back(1 + std::popcount(records & ((ControlSet(1) << place) - 1)));
    const Sample &sample = sampleOf(records);
    LoadedRecords loaded;
    loaded.totals = std::make_shared<const RecordTotals>(totalsOf(sums_.sums, records).ofColumns(columns));
    loaded.observations = Observations(sample.rows, sample.n, places)
                              .withRanges(std::span(loaded.totals->x).subspan(1), loaded.totals->y);
    loaded.read = sums_.read;
    loaded.total = sums_.total;
    loaded.leftOut.push_back(sums_.leftOut[0]);
    for (const int place : places)
        loaded.leftOut.push_back(sums_.leftOut[std::size_t(place) + 1]);
    return loaded;
}

/// Fits that use the same patterns have the same sample.
const EveryRecord::Sample &EveryRecord::sampleOf(ControlSet records)
{
    constexpr std::size_t kept = 4;
    std::vector<ControlSet> patterns;
    for (const PatternSums::Pattern &pattern : sums_.sums.patterns()) {
        if ((pattern.usable & records) == records)
            patterns.push_back(pattern.usable);
    }
    const auto found =
        std::find_if(samples_.begin(), samples_.end(), [&](const Sample &one) { return one.patterns == patterns; });
    if (found != samples_.end()) {
        std::rotate(found, found + 1, samples_.end());
        return samples_.back();
    }
    const EvenSample::Rows rows = sums_.sample.rows(records);
    auto buffer = std::make_shared<ObservationBuffer>();
    const std::size_t m = request_.columns.size();
    for (std::size_t j = 0; j < m; ++j)
        std::copy(rows.columns[j].begin(), rows.columns[j].end(), buffer->x[j]);
    std::copy(rows.columns[m].begin(), rows.columns[m].end(), buffer->y);
    std::size_t next = m + 1;
    for (std::size_t j = 0; j <= m; ++j) {
        if ((sums_.withLow >> j & 1) != 0)
            (j < m ? buffer->xLow[j] : buffer->yLow) = rows.columns[next++];
    }
    std::copy(rows.ordinals.begin(), rows.ordinals.end(), buffer->record);
    if (samples_.size() == kept)
        samples_.erase(samples_.begin());
    return samples_.emplace_back(Sample{std::move(patterns), std::move(buffer), int(rows.ordinals.size())});
}

} // namespace nuvo
