// SPDX-License-Identifier: MIT
#pragma once

#include "design/model/Modelfields.h"
#include "design/model/Regressionmodel.h"

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>

class QMimeData;

namespace nuvo {

/// A row for each field: its name, what it holds, where it is used.
class FieldsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { NameColumn, KindColumn, UseColumn, Columns };

    /// \param palette of the view; it says how quiet letters look.
    FieldsModel(const QWidget &view, QObject *parent) : QAbstractTableModel(parent), view_(view) {}

    void SetFields(const std::vector<ModelField> &fields);
    void SetModel(const RegressionModel &model);
    const ModelField &FieldAt(int row) const { return fields_[std::size_t(row)]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;

private:
    QString Hint(const ModelField &field) const;

    const QWidget &view_;
    std::vector<ModelField> fields_;
    std::vector<QString> uses_;
};

/// Keeps what has the text in its name, or in what it holds.
class FieldsFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    using QSortFilterProxyModel::QSortFilterProxyModel;
    void SetText(const QString &text);

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

private:
    QString text_;
};

} // namespace nuvo
