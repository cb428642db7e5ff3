// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Blockterms.h"
#include "engine/Recordsums.h"
#include "platform/Export.h"

#include <atomic>
#include <cstdint>

namespace nuvo {

/// Reads every record by a forward scan, in the memory of a block of records and of the sums. A large SQLite table is
/// read in two halves of its row numbers, side by side on two connections where nobody can write between them, else
/// one after the other: the sums and the sample are the same.
class NUVO_EXPORT RecordScan : public RecordReader
{
public:
    /// \pre at most ten columns.
    explicit RecordScan(RecordRequest request);
    ~RecordScan() override;

    std::optional<RecordSums> read() override;
    void cancel() override;
    qint64 records() const override;
    double share() const override;

    /// Tables whose row numbers span fewer are read in one go.
    static constexpr qint64 kLeastToHalve = 100000;

private:
    enum class State { Whole, SideBySide, Lower, Upper };

    /// Adds everything that the scan has to read; ordinals count from its first record here.
    void add(Scan &scan, BlockTerms &terms, RecordSums &sums) const;
    void addHalves(RowNumbers all, BlockTerms &terms, RecordSums &sums);
    bool addBeside(RowNumbers all, BlockTerms &terms, RecordSums &sums);
    RecordSums newSums(const BlockTerms &terms, std::uint64_t seed) const;

    const RecordRequest request_;
    Scan scan_;
    Scan second_; ///< of the upper half
    std::atomic<State> state_{State::Whole};
};

/// The first of the errors that a load of these columns would raise, all of them in the set; null where it raises
/// none.  \param controls the number of columns that were read.
NUVO_EXPORT const RecordError *errorFor(const std::vector<RecordError> &errors, ControlSet set, int controls);

} // namespace nuvo
