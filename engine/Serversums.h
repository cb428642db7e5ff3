// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Recordsums.h"
#include "platform/Export.h"

#include <memory>

namespace nuvo {

/// Has the server add up every record: it evaluates the terms, their conditions and the aggregates, and what travels
/// is a row for each pattern of usable terms, and the sample, which is the first records that are usable. Of a table
/// spread over several servers each part is asked by itself. Sums of doubles are corrected once by the residuals of
/// their first solution, of the records that all terms can use: see engine/kernel/Shiftedsums.h for what that is good
/// to.
///
/// Nothing is created on the server and nothing written. All statements see the same records where the engine can
/// (PostgreSQL, MySQL's transactional tables); where it cannot, records that come and go meanwhile are an error.
/// Left out are numbered of nothing: LeftOut::first stays empty. A column of PostgreSQL's type real counts with the
/// value that is stored, not with the decimal number that it is shown as.
class NUVO_EXPORT ServerReader : public RecordReader
{
public:
    explicit ServerReader(RecordRequest request);
    ~ServerReader() override;

    /// \throws EDatabaseError: what a scan would throw; a field that is no number to the database; a lost server, or
    /// a lost part of the table, by its name.
    std::optional<RecordSums> read() override;
    void cancel() override;
    qint64 records() const override;
    /// By the statements that are done.
    double share() const override;

    /// What travelled: the rows that each statement returned, in their order; the sample's last. After read().
    const std::vector<qint64> &rowsReceived() const;

private:
    class Private;
    std::unique_ptr<Private> d_;
};

/// Whether the database can be asked: not an SQLite file, which is read faster than it adds up.
/// \throws EDatabaseError when it cannot be opened.
NUVO_EXPORT bool addsUp(const QString &databaseName);

} // namespace nuvo
