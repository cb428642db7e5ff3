// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Recordload.h"
#include "platform/Export.h"

#include <memory>
#include <optional>
#include <span>

namespace nuvo {

/// Makes many loads of one dataset quick, with other definitions among the same ones each time, as choosing a model
/// does: a term is transformed once over the records, and a cross product of two columns is formed once for all loads
/// that have the same usable records. What a load gives and throws is what RecordLoad gives and throws, to the last
/// bit.
///
/// It holds as long as the rows are the same snapshot, and begins anew when the dataset was opened or read anew, when
/// the response changed or a new term came up. Where a term raises, and where a load has to go beyond the first 32768
/// records with a valid response, the records have to be asked. At most 31 terms and the 32 sets of usable records
/// asked for last are kept: 10 MB with ten terms, 30 MB at most.
class NUVO_EXPORT ColumnCache
{
public:
    /// The terms that loads will be of, as far as they are known; undefined ones are passed over.
    ColumnCache(TDataSet &dataset, std::span<const TIndepVar> terms);
    ColumnCache(const ColumnCache &) = delete;
    ColumnCache &operator=(const ColumnCache &) = delete;
    /// The dataset may be gone. What was loaded stays.
    ~ColumnCache();

    /// Empty, with nothing done, where the records have to be asked. The dataset stays wherever the records were read
    /// to.  \throws EDatabaseError when fetching fails.
    std::optional<LoadedRecords> load(const ModelDefinitions &definitions);
    /// What another reader has made of the same rows: the next load gives it, whose definitions have to be its own.
    void put(LoadedRecords loaded);
    /// Puts the dataset where a RecordLoad in place of the last load would have left it: behind the last record that
    /// it walked.  \throws EDatabaseError when fetching fails.
    void standBehind();
    /// The dataset was moved by another load since.
    void forgetPlace();

private:
    class Private;

    std::unique_ptr<Private> d_;
};

} // namespace nuvo
