// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Recordpages.h"
#include "present/Page.h"

#include <QAbstractTableModel>
#include <QCache>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace nuvo {

/// The records of a table for a view that scrolls through millions: of all that it does not show it keeps nothing but
/// how many they are. Records are read by pages in a thread; a cell shows "…" until its page is there.
class RecordsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit RecordsModel(QObject *parent = nullptr);
    ~RecordsModel() override;

    /// \param atOnce whether the table is so small and near that it is read without a thread, on this call.
    void SetSource(const std::optional<ScanSource> &table, bool atOnce);
    /// Sorted by a column; below 0, in the table's own order.
    void SortBy(int column, Qt::SortOrder order);
    /// The column that records are sorted by; -1 for none.
    int SortedBy() const { return sortedBy_; }
    /// Whether the number of records is known.
    bool IsCounted() const { return counted_; }

    /// Rows, first and last, as a table with whole cells: read now, in the order that is shown, while the window
    /// lives. Nothing where the person ended that. \throws EPlatformError where they cannot be read, and where their
    /// texts are too long together.
    std::optional<Page::Table> Rows(const std::vector<std::pair<int, int>> &ranges, QWidget &window) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

Q_SIGNALS:
    /// The database cannot be read: why. What was read stays.
    void Failed(const QString &why);
    /// How many records there are is known now.
    void Counted();

private:
    class Reader;
    using Records = std::vector<QStringList>;

    void ShowFields(std::vector<RecordPages::Field> fields, Records first);
    void ShowCount(qint64 count);
    void Grow();
    void ShowPage(qint64 page, Records rows);
    void Fail(const QString &why);

    std::shared_ptr<Reader> reader_;
    std::vector<RecordPages::Field> fields_;
    bool atOnce_ = false;
    int rows_ = 0;
    int toShow_ = 0; ///< rows that there are to be
    bool counted_ = false;
    int sortedBy_ = -1;
    int order_ = 0; ///< counts the orders; pages of one before are not shown
    mutable QCache<qint64, Records> pages_;
    mutable bool asking_ = false; ///< while a view asks for a cell
};

} // namespace nuvo
