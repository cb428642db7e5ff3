// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "platform/Scan.h"

#include <QStringList>

#include <memory>
#include <optional>

namespace nuvo {

/// Reads the records of a table once, forward, in the order in which a dataset has them, each with its values as a
/// field gives them: on a connection of its own, for one thread, which need not be that of the application. Memory is
/// that of a record.
class NUVO_EXPORT RecordRows
{
public:
    /// \param table its columns are not looked at. \pre it names a table
    explicit RecordRows(ScanSource table);
    RecordRows(const RecordRows &) = delete;
    RecordRows &operator=(const RecordRows &) = delete;
    ~RecordRows();

    // \throws EDatabaseError with one sentence, also after cancel().

    /// Connects, and asks for the fields.
    void open();
    const QStringList &fields() const;
    /// The next record, or the first one; false at the end.
    bool next();
    /// What TField::AsFloat() gives of the record; nothing for a null and for a text that is no number.
    /// \throws EDatabaseError for a date, bits and bytes, which are no numbers
    std::optional<double> number(int field) const;
    /// As TField::IsNull().
    bool isNull(int field) const;
    /// As TField::AsString().
    QString text(int field) const;
    /// The same with so many digits of a floating-point number that it is read back as it is; empty where that is
    /// none (a NaN, an infinity).
    QString exactText(int field) const;

    /// Ends what is under way from another thread, and refuses what comes later. May be called again as long as it
    /// has not ended.
    void cancel();

private:
    class Private;
    std::unique_ptr<Private> d_;
};

} // namespace nuvo
