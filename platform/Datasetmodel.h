// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QItemSelectionModel>

class TDataSet;

namespace nuvo {

/// The records of a dataset for any Qt view, as far as they were read; a view that scrolls to the end reads on. While
/// controls are disabled, and where a record cannot be read, it shows what is in memory.
class DatasetModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit DatasetModel(TDataSet &dataset);
    ~DatasetModel() override;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;

    /// Makes views see what became of the dataset, and its current record their current row.
    void catchUp();
    /// Opens a dataset whose wish to be active is not carried out by the time control is back in the event loop.
    void openSoon();

    QItemSelectionModel *selection() { return &selection_; }

private:
    void wakeUp();
    void follow(const QModelIndex &current);
    void failed(const QString &message);

    TDataSet &dataset_;
    QItemSelectionModel selection_;
    int rows_ = 0;           // that views know of
    qint64 opening_ = 0;     // of the dataset that views know; 0 closed
    bool following_ = false; // while one of selection and cursor moves the other
    bool changing_ = false;  // while views are told of new rows
    mutable bool failed_ = false;
    bool asked_ = false; // whether a view has asked for rows yet
};

} // namespace nuvo
