// SPDX-License-Identifier: MIT
#pragma once

#include "workbench/Modelstate.h"

#include <QWidget>

#include <memory>
#include <set>

class QLabel;
class QLineEdit;
class QTableView;
class TDataSet;

namespace nuvo {

/// The records of a table or a query in a grid that reads on while it is scrolled, and the filter of a table above.
class RecordsPage : public QWidget
{
    Q_OBJECT

public:
    explicit RecordsPage(QWidget *parent = nullptr);
    ~RecordsPage() override;

    /// Shows the records that a state is of; an error of the database stands in their place.
    void SetState(const ModelState &state);
    /// Selects records by their ordinals, and reads and scrolls as far as the first of them. Sends no signal.
    void SetSelected(const std::set<qint64> &records);
    std::set<qint64> Selected() const;
    QTableView &View() { return *view_; }
    /// The dataset behind the grid; null when there is none.
    TDataSet *DataSet() const { return dataset_.get(); }

Q_SIGNALS:
    /// The person wants another filter.
    void FilterTyped(const QString &filter);
    /// The person selected other records; read Selected().
    void SelectionChanged();

private:
    void Show(std::unique_ptr<TDataSet> dataset, const QString &error);

    ModelState state_;
    std::unique_ptr<TDataSet> dataset_;
    QLineEdit *filter_;
    QTableView *view_;
    QLabel *error_;
    bool quiet_ = false;
};

} // namespace nuvo
