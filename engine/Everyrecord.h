// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Recordload.h"
#include "engine/Recordsums.h"
#include "platform/Export.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace nuvo {

/// Where columns stand among terms, from 0, in ascending order; none where they do not.
NUVO_EXPORT std::optional<std::vector<int>> placesAmong(std::span<const TIndepVar> terms,
                                                        std::span<const TIndepVar> columns);

/// Loads from what a read of every record has left: any of its terms, each load with its own usable records, or all
/// of them with those that every term can use. Nothing is read again.
class NUVO_EXPORT EveryRecord
{
public:
    EveryRecord(RecordRequest request, RecordSums sums);
    EveryRecord(const EveryRecord &) = delete;
    EveryRecord &operator=(const EveryRecord &) = delete;
    ~EveryRecord();

    /// Whether these records were read, with this response and these terms in their order.
    bool knows(const ScanSource &source, const ModelDefinitions &definitions) const;

    /// Totals of all records of the load, with a sample of them as its observations. The numbers of controls and the
    /// records are those of RecordSums.  \pre knows() the definitions.
    /// \throws what the values of the records raise for these terms.
    LoadedRecords load(const ModelDefinitions &definitions);
    /// The same of the records that all terms read can use.
    LoadedRecords loadShared(const ModelDefinitions &definitions);

    /// The sums of products that all these loads come from, for what compares models by them: of all terms over the
    /// records that all can use, `products` of which are scaled as PatternSums::exponent() says.
    const std::vector<TIndepVar> &terms() const { return request_.columns; }
    PatternSums &sums() { return sums_.sums; }

private:
    struct Sample
    {
        std::vector<ControlSet> patterns;
        std::shared_ptr<const ObservationBuffer> rows;
        int n = 0;
    };

    LoadedRecords load(const std::vector<int> &places, ControlSet records);
    const Sample &sampleOf(ControlSet records);

    const RecordRequest request_;
    RecordSums sums_;
    std::vector<Sample> samples_; ///< asked for last at the end
};

} // namespace nuvo
