// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Scan.h"
#include "present/Page.h"
#include "workbench/Modelstate.h"

#include <QWidget>

#include <optional>
#include <set>

class QLabel;
class QLineEdit;
class QTableView;

namespace nuvo {

class RecordsModel;

/// The records of a table in a grid that scrolls through millions, and the filter of a table above. A click on a
/// heading sorts them, once more the other way round, and a third one takes that back.
class RecordsPage : public QWidget
{
    Q_OBJECT

public:
    explicit RecordsPage(QWidget *parent = nullptr);
    ~RecordsPage() override;

    /// Shows the filter of a state and the records of a table; an error of the database stands above them.
    /// \param atOnce whether the table is so small and near that nobody waits for it
    void SetState(const ModelState &state, const std::optional<ScanSource> &table, bool atOnce);
    /// Reads them again.
    void ReadAgain();
    /// Selects records by their ordinals, in the table's own order, and scrolls to the first of them. Sends no
    /// signal.
    void SetSelected(const std::set<qint64> &records);
    /// Nothing while the records are sorted.
    std::set<qint64> Selected() const;
    /// Scrolls to a record and makes it the current one.
    void GoTo(qint64 record);
    /// The selected records, or all where none is selected, with their values as the database has them, also of those
    /// that were not read yet; nothing where the person ended the reading. \throws EPlatformError for too many of
    /// them, and where they cannot be read.
    std::optional<Page::Table> Table();
    QTableView &View() { return *view_; }
    RecordsModel &Model() { return *model_; }

Q_SIGNALS:
    /// The person wants another filter.
    void FilterTyped(const QString &filter);
    /// The person selected other records; read Selected().
    void SelectionChanged();

private:
    void Sort(int column);
    void ShowSelected();
    void ShowCount();
    void FitColumns();
    void ShowError(const QString &error);

    ModelState state_;
    std::optional<ScanSource> table_;
    bool atOnce_ = false;
    std::set<qint64> selected_; ///< that others have
    RecordsModel *model_;
    QLineEdit *filter_;
    QLineEdit *goTo_;
    QTableView *view_;
    QLabel *error_;
    bool downwards_ = false; ///< the order of what is sorted
    bool quiet_ = false;
    QStringList fitted_; ///< names of the columns whose widths were fitted
    QList<int> widths_;  ///< that the columns had before the records were read again
};

} // namespace nuvo
