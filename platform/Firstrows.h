// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "platform/Fieldtypes.h"
#include "platform/Scan.h"

#include <QStringList>
#include <QVariantList>

#include <memory>
#include <vector>

namespace nuvo {

/// Tries a statement of a query: its columns and its first rows, on a connection of its own: for one thread, which
/// need not be that of the application. Columns are called as a TQuery calls its fields; those of which the database
/// tells no type go by these rows. Parameters without a value are taken as null, so that the columns are known before
/// the values are.
class NUVO_EXPORT FirstRows
{
public:
    /// \param source a statement; its columns are not looked at.
    FirstRows(ScanSource source, int rows);
    FirstRows(const FirstRows &) = delete;
    FirstRows &operator=(const FirstRows &) = delete;
    ~FirstRows();

    /// Reads, once; false after cancel(). \throws EDatabaseError with one sentence: no such database; a statement
    /// that does not read; what the database says is wrong with it.
    bool read();
    /// Ends the reading from another thread, now or when it begins: a statement that is under way is interrupted
    /// where the driver can. May be called again as long as it has not ended.
    void cancel();

    const std::vector<Column> &columns() const;
    /// At most as many as were asked for, a value for each column.
    const std::vector<QVariantList> &rows() const;
    /// Whether there are rows behind them.
    bool more() const;
    /// Parameters that had no value.
    const QStringList &nullParameters() const;
    /// Where in the statement the error of read() is, in characters from 0; -1 where nobody tells.
    qsizetype errorPosition() const;

private:
    class Private;
    std::unique_ptr<Private> d_;
};

} // namespace nuvo
