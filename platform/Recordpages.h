// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "platform/Scan.h"

#include <QStringList>
#include <QVariantList>

#include <memory>
#include <optional>
#include <vector>

namespace nuvo {

/// Reads any records of a table by their numbers, in the order in which a dataset has them or sorted by a column,
/// without the ones before: for a view that scrolls through millions. From where it has been, and from the end, the
/// database goes to a record by its key; elsewhere it passes over those in between. Memory is that of what is asked
/// for. On a connection of its own, for one thread, which need not be that of the application; the table is as it is
/// at the time of each call.
class NUVO_EXPORT RecordPages
{
public:
    struct Field
    {
        QString name;
        bool numeric = false;
    };

    /// \param table its columns are not looked at. \pre it names a table
    explicit RecordPages(ScanSource table);
    RecordPages(const RecordPages &) = delete;
    RecordPages &operator=(const RecordPages &) = delete;
    ~RecordPages();

    // \throws EDatabaseError with one sentence, also after cancel().

    void open();
    const std::vector<Field> &fields() const;
    /// Counted by the database.
    qint64 count();
    /// From now on by a field, nulls where the database puts them; below 0, in the table's own order. The database
    /// sorts: SQLite and PostgreSQL once, others for each call of rows().
    void sort(int field, bool descending);
    static constexpr qsizetype LongestText = 1000;

    /// What a view shows of the records from `first` on, from 0, at most so many. A cell is empty for a null, and cut
    /// off behind so many characters.
    std::vector<QStringList> rows(qint64 first, int most, qsizetype longest = LongestText);
    /// The same records as TField::Value() gives them, an invalid value for a null. \pre not sorted
    std::vector<QVariantList> values(qint64 first, int most);
    /// How many records of the table fulfil a condition, whatever the source's filter; `most` and more count as
    /// `most`. Nothing where the database does not take the condition.
    std::optional<qint64> count(const QString &condition, qint64 most);
    /// Whether each of so many records of the table that fulfil a condition has a value of its own in a field: as
    /// count(). \param field as it stands in a statement
    std::optional<bool> areTold(const QString &condition, const QString &field, qint64 records);

    /// Ends what is under way from another thread, and refuses what comes later.
    void cancel();

private:
    class Private;
    std::unique_ptr<Private> d_;
};

} // namespace nuvo
