// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Recordload.h"
#include "engine/Recordsums.h"
#include "platform/Export.h"
#include "platform/Scan.h"

#include <optional>

namespace nuvo {

/// The load of the first 2500 usable records by a scan of its own, where the first ones may lie far back: what
/// RecordLoad makes of them and throws, to the last bit. For one thread, which need not be that of the application.
class NUVO_EXPORT FirstRecords
{
public:
    /// \pre at most ten columns
    explicit FirstRecords(RecordRequest request);

    /// Once. \param most how many records are walked at most, by and large; below 0, all of them.
    /// \return nothing where these were too few, and after cancel(). \throws EPlatformError with one sentence
    std::optional<LoadedRecords> load(qint64 most = -1);

    // From another thread.

    /// Ends it, now or when it begins.
    void cancel() { scan_.cancel(); }
    /// Which share of all records was read, 0 to 1; negative where that is not known.
    double share() const { return scan_.share(); }

private:
    const RecordRequest request_;
    Scan scan_;
};

} // namespace nuvo
