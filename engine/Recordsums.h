// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Leftout.h"
#include "engine/Mlrtypes.h"
#include "engine/kernel/Patternsample.h"
#include "engine/kernel/Patternsums.h"
#include "platform/Scan.h"

#include <cstdint>
#include <exception>
#include <optional>
#include <vector>

namespace nuvo {

/// What a regression wants to know of every record: which records, and the terms, control k in bit k - 1 of a
/// nuvo::ControlSet.
struct RecordRequest
{
    ScanSource source; ///< its columns are for the reader to fill in
    std::vector<TIndepVar> columns;
    TDependentVar response;
    /// Only the fit of all columns is wanted: an error that its load raises can end the reading.
    bool onlyAllColumns = false;
};

/// A field that could not be read as a number, or a number of a definition that is none: what a load of fewer terms
/// would raise, or pass over.
struct RecordError
{
    int term = 0;            ///< 0 to m - 1, m for the response
    bool atValue = false;    ///< raised by the value of a record that every term accepts, not by asking whether
    ControlSet accepted = 0; ///< the terms that accept the record, bit m for the response
    std::int64_t record = 0;
    std::exception_ptr error;
};

/// What a read of every record leaves, whether a scan added it up or the database: the sums behind the fit of any of
/// the controls, each of its own usable records.
///
/// A term cannot use a null, a value out of its range, and what would make it infinite; a quotient cannot use a null
/// or a zero (below 1e-20) under the line either.
struct RecordSums
{
    /// Bit j of lowParts says that term j, m for the response, has low parts. The seed is the sample's.
    explicit RecordSums(int controls, std::uint32_t lowParts = 0, std::uint64_t seed = 1)
        : sums(controls), sample(controls, lowParts, seed), withLow(lowParts)
    {
    }

    PatternSums sums;
    /// At most 2500 records for any fit, with their ordinals among those read.
    PatternSample sample;
    std::uint32_t withLow;
    /// Records read; where the database added up, those that came for the sample.
    std::int64_t read = 0;
    /// Records there are, usable or not, where that is known.
    std::optional<std::int64_t> total;
    /// The response first, then each control; without their names.
    std::vector<LeftOut> leftOut;
    std::vector<RecordError> errors; ///< in the order of the records, one of each kind
};

/// Whoever reads every record, in a thread of its own and on a connection of its own.
class RecordReader
{
public:
    virtual ~RecordReader() = default;

    /// Once, in the thread that it is to work in. Empty after cancel().
    /// \throws EPlatformError with one sentence; nothing else comes of it then.
    virtual std::optional<RecordSums> read() = 0;
    /// Ends it, from any thread and at any time, also before it has begun.
    virtual void cancel() = 0;

    // From any thread.

    /// Records read so far.
    virtual qint64 records() const = 0;
    /// Which share of them all that is, 0 to 1; negative where it is not known.
    virtual double share() const = 0;
};

} // namespace nuvo
