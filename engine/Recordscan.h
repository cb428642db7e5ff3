#pragma once

#include "engine/Recordsums.h"
#include "platform/Export.h"

namespace nuvo {

/// Reads every record by a forward scan, in the memory of a block of records and of the sums.
class NUVO_EXPORT RecordScan : public RecordReader
{
public:
    /// \pre at most ten columns.
    explicit RecordScan(RecordRequest request);
    ~RecordScan() override;

    std::optional<RecordSums> read() override;
    void cancel() override { scan_.cancel(); }
    qint64 records() const override { return scan_.records(); }
    double share() const override { return scan_.share(); }

private:
    const RecordRequest request_;
    Scan scan_;
};

/// The first of the errors that a load of these columns would raise, all of them in the set; null where it raises
/// none.  \param controls the number of columns that were read.
NUVO_EXPORT const RecordError *errorFor(const std::vector<RecordError> &errors, ControlSet set, int controls);

} // namespace nuvo
