// SPDX-License-Identifier: MIT
#pragma once

#include "present/Figures.h"
#include "present/Pagewarnings.h"

#include <QAbstractTableModel>
#include <QChar>
#include <QCoreApplication>
#include <QHash>
#include <QStringList>

#include <vector>

namespace nuvo {

/// Every observation of a fit, a row each: its record, the response, the terms, fitted value and residual, and what
/// the observation does to the fit, with the roles of a table of figures. The last column says in words by what it
/// stands out.
class ObservationsModel : public QAbstractTableModel
{
    Q_DECLARE_TR_FUNCTIONS(TObservationsPage)

public:
    explicit ObservationsModel(QObject *parent = nullptr) : QAbstractTableModel(parent) {}

    void SetFigures(const Figures &figures);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    qint64 RecordOf(int row) const { return records_[std::size_t(row)]; }
    /// -1 when there is no such record.
    int RowOf(qint64 record) const { return rows_.value(record, -1); }
    bool StandsOut(int row) const { return !words_[row].isEmpty(); }
    int StandOutCount() const { return standOuts_; }
    /// Words or the number with as many digits as tell it from any other; empty where there is none.
    QString Exact(int row, int column, QChar point) const;
    QString Title(int column) const { return columns_[std::size_t(column)].title; }
    /// What a file calls the column, whatever language is spoken.
    QString Name(int column) const { return columns_[std::size_t(column)].name; }
    /// As Exact() with a point, and the reasons by the names of their columns.
    QString Stored(int row, int column) const;

private:
    enum Reason { None = 0, Leverage = 1, Residual = 2, Cook = 4, Dffits = 8, Any = 16 };
    struct Column
    {
        QString title;
        QString hint;
        std::vector<double> values;
        Reason reason = None;
        QString name;
    };

    bool IsRecord(int column) const { return column == 0; }
    bool IsWords(int column) const { return column == int(columns_.size()) - 1; }
    bool IsReason(int row, int column) const;
    QString Hint(int row, int column) const;

    std::vector<Column> columns_;
    std::vector<qint64> records_;
    QHash<qint64, int> rows_;
    std::vector<int> reasons_;
    QStringList words_;
    int standOuts_ = 0;
};

} // namespace nuvo
