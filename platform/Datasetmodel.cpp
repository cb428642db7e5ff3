// SPDX-License-Identifier: MIT
#include "platform/Datasetmodel.h"

#include "platform/Dataset.h"
#include "platform/Errors.h"
#include "platform/Messages.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <limits>

namespace nuvo {

DatasetModel::DatasetModel(TDataSet &dataset) : dataset_(dataset), selection_(this)
{
    connect(&selection_, &QItemSelectionModel::currentRowChanged, this, &DatasetModel::follow);
    if (dataset_.Active())
        catchUp();
}

DatasetModel::~DatasetModel() = default;

int DatasetModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid())
        return 0;
    const_cast<DatasetModel *>(this)->wakeUp();
    return rows_;
}

int DatasetModel::columnCount(const QModelIndex &parent) const
{
    if (parent.isValid())
        return 0;
    const_cast<DatasetModel *>(this)->wakeUp();
    return opening_ == 0 || !dataset_.Active() ? 0 : dataset_.ColumnCount();
}

QVariant DatasetModel::data(const QModelIndex &index, int role) const
{
    try {
        if (!index.isValid() || !dataset_.Active() || index.column() >= dataset_.ColumnCount())
            return {};
        if (role == Qt::TextAlignmentRole)
            return QVariant(Qt::AlignVCenter |
                            (dataset_.ColumnField(index.column()).IsNumeric() ? Qt::AlignRight : Qt::AlignLeft));
        if (role != Qt::DisplayRole && role != Qt::EditRole)
            return {};
        const bool keptOnly = failed_ || dataset_.ControlsDisabled();
        return dataset_.TextAt(index.row(), index.column(), keptOnly);
    } catch (const std::exception &) {
        // A message for every cell would be no help; the next operation on the dataset says what is wrong.
        failed_ = true;
        return {};
    }
}

QVariant DatasetModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    try {
        if (orientation == Qt::Horizontal && section >= 0 && section < columnCount()) {
            if (role == Qt::DisplayRole)
                return dataset_.ColumnField(section).FieldName();
            if (role == Qt::TextAlignmentRole)
                return QVariant(Qt::AlignVCenter |
                                (dataset_.ColumnField(section).IsNumeric() ? Qt::AlignRight : Qt::AlignLeft));
        }
        return QAbstractTableModel::headerData(section, orientation, role);
    } catch (const std::exception &) {
        return {};
    }
}

bool DatasetModel::canFetchMore(const QModelIndex &parent) const
{
    return !parent.isValid() && !changing_ && opening_ != 0 && dataset_.Active() && !failed_ &&
           !dataset_.ControlsDisabled() && (rows_ < dataset_.KnownRows() || !dataset_.EndKnown()) &&
           rows_ < std::numeric_limits<int>::max();
}

void DatasetModel::fetchMore(const QModelIndex &parent)
{
    if (!canFetchMore(parent))
        return;
    try {
        dataset_.ReadOn();
        catchUp();
    } catch (const std::exception &error) {
        failed(QString::fromUtf8(error.what()));
    }
}

void DatasetModel::catchUp()
{
    if (changing_)
        return;
    const qint64 opening = dataset_.Active() ? dataset_.Opening() : 0;
    const int known = opening == 0 ? 0 : int(std::min<qint64>(dataset_.KnownRows(), std::numeric_limits<int>::max()));
    const QScopedValueRollback following(following_, true);
    // A view that is told of new rows wants more at once.
    const QScopedValueRollback changing(changing_, true);
    failed_ = false;
    if (!asked_) {
        // No view has asked yet, and the first question may be what opened the dataset: there is nothing to announce.
        opening_ = opening;
        rows_ = known;
    } else if (opening != opening_ || known < rows_) {
        beginResetModel();
        opening_ = opening;
        rows_ = known;
        endResetModel();
    } else if (known > rows_) {
        beginInsertRows({}, rows_, known - 1);
        rows_ = known;
        endInsertRows();
    }
    const int row = opening == 0 || dataset_.IsEmpty() ? -1 : int(std::min<qint64>(dataset_.RecNo() - 1, rows_ - 1));
    const QModelIndex current = selection_.currentIndex();
    if (row < 0)
        selection_.clear();
    else if (current.row() != row)
        selection_.setCurrentIndex(index(row, std::max(0, current.column())),
                                   QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

/// The first look of a view opens a dataset that is wished to be open.
void DatasetModel::wakeUp()
{
    if (asked_)
        return;
    try {
        if (!dataset_.Active() && dataset_.ActiveWished() && !dataset_.ControlsDisabled())
            dataset_.Open();
        asked_ = true;
    } catch (const std::exception &error) {
        asked_ = true;
        // Not from within a view's question.
        const QString message = QString::fromUtf8(error.what());
        QMetaObject::invokeMethod(
            this, [this, message] { failed(message); }, Qt::QueuedConnection);
    }
}

void DatasetModel::openSoon()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            try {
                if (dataset_.ActiveWished())
                    dataset_.Open();
            } catch (const std::exception &error) {
                failed(QString::fromUtf8(error.what()));
            }
        },
        Qt::QueuedConnection);
}

void DatasetModel::follow(const QModelIndex &current)
{
    if (following_ || !current.isValid() || dataset_.ControlsDisabled() || !dataset_.Active())
        return;
    try {
        dataset_.MoveToRow(current.row());
    } catch (const std::exception &error) {
        failed(QString::fromUtf8(error.what()));
        // Not from within the view's own change of row.
        QMetaObject::invokeMethod(this, &DatasetModel::catchUp, Qt::QueuedConnection);
    }
}

void DatasetModel::failed(const QString &message)
{
    if (failed_)
        return;
    failed_ = true;
    MessageDlg(message, TMsgDlgType::mtError, mbOK);
}

} // namespace nuvo
