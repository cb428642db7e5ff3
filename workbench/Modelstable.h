// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QTreeView>

namespace nuvo {

class Sitting;

/// The models of a sitting, a row each: name, n, R², adjusted R², s, AIC. The one that is shown is in bold letters.
class KeptModelsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Name, Records, RSquared, Adjusted, Deviation, Aic, Columns };

    explicit KeptModelsModel(Sitting &sitting, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    Sitting &sitting_;
};

/// These in a table. Enter or a double click brings a model back, F2 names it, Delete throws the selected ones away.
class ModelsTable : public QTreeView
{
    Q_OBJECT

public:
    explicit ModelsTable(Sitting &sitting, QWidget *parent = nullptr);

    /// Indexes of the selected models, ascending.
    std::vector<int> Selected() const;
    /// The two that are selected, in words and figures; empty unless there are two.
    QString Comparison() const;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void BringBack();
    /// Scrolls to the model that is shown.
    void ShowCurrent();
    void KeepPlace();

    Sitting &sitting_;
    int row_ = -1; ///< that was the current one
    bool wasSelected_ = false;
};

} // namespace nuvo
