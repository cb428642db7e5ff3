// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "platform/Scan.h"

#include <atomic>
#include <memory>

namespace nuvo {

/// Copies records of a table or the result of a statement into a table of an SQLite file of its own, in the order in
/// which a dataset has them and with fields of the same kinds and the same values: who cannot wait for a database
/// reads there. On a connection of its own, for one thread, which need not be that of the application.
class NUVO_EXPORT RecordCopy
{
public:
    /// \param source its columns are not looked at
    /// \param file is made; it must not be there
    RecordCopy(ScanSource source, QString file, QString table);
    RecordCopy(const RecordCopy &) = delete;
    RecordCopy &operator=(const RecordCopy &) = delete;
    ~RecordCopy();

    /// Copies, once. Of a table, its first `most` records; but where its first record takes more than a second to
    /// come, and of a statement, all of them, so that nobody has to ask again.
    /// \return false after cancel(); no file is left then, nor after an error.
    /// \throws EDatabaseError with one sentence.
    bool run(qint64 most);
    /// Ends the copying from another thread, now or when it begins: the statement is ended on the server. May be
    /// called again as long as it has not ended.
    void cancel();
    /// So far.
    qint64 records() const;
    /// Whether the copy has every record.
    bool isWhole() const;

private:
    class Private;
    std::unique_ptr<Private> d_;
};

} // namespace nuvo
