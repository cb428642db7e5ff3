// SPDX-License-Identifier: MIT
#include "workbench/Modelstable.h"

#include "present/Significant.h"
#include "present/controls/Tablecopy.h"
#include "workbench/Comparison.h"
#include "workbench/Sitting.h"

#include <QAction>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QSortFilterProxyModel>

#include <algorithm>
#include <cmath>

namespace nuvo {

namespace {

double figureAt(const KeptModel &model, int column)
{
    switch (column) {
    case KeptModelsModel::Records:
        return double(model.n);
    case KeptModelsModel::RSquared:
        return model.rSquared;
    case KeptModelsModel::Adjusted:
        return model.adjustedRSquared;
    case KeptModelsModel::Deviation:
        return model.s;
    case KeptModelsModel::Aic:
        return model.aic;
    default:
        return 0;
    }
}

QString shown(const KeptModel &model, int column)
{
    const QLocale locale;
    if (column == KeptModelsModel::Records)
        return locale.toString(model.n);
    const double figure = figureAt(model, column);
    return std::isfinite(figure) ? significant(figure, 6, locale.decimalPoint().front()) : kNoFigure.toString();
}

} // namespace

KeptModelsModel::KeptModelsModel(Sitting &sitting, QObject *parent) : QAbstractTableModel(parent), sitting_(sitting)
{
    connect(&sitting, &Sitting::ModelsChanged, this, [this] {
        beginResetModel();
        endResetModel();
    });
    connect(&sitting, &Sitting::StateChanged, this, [this] {
        if (rowCount() > 0)
            Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, Columns - 1), {Qt::FontRole});
    });
}

int KeptModelsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(sitting_.Models().size());
}

int KeptModelsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : Columns;
}

QVariant KeptModelsModel::data(const QModelIndex &index, int role) const
{
    const KeptModel &model = sitting_.Models()[size_t(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return index.column() == Name ? model.title() : shown(model, index.column());
    case Qt::EditRole:
        return model.name;
    case Qt::UserRole: // to sort by
        return index.column() == Name ? QVariant(model.title()) : QVariant(figureAt(model, index.column()));
    case Qt::ToolTipRole:
        return index.column() == Name ? QVariant(model.state.title()) : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() == Name ? QVariant() : QVariant(int(Qt::AlignRight | Qt::AlignVCenter));
    case Qt::FontRole:
        if (index.row() == sitting_.Current()) {
            QFont bold;
            bold.setBold(true);
            return bold;
        }
        return {};
    default:
        return {};
    }
}

bool KeptModelsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || index.column() != Name)
        return false;
    sitting_.Rename(index.row(), value.toString().simplified());
    return true;
}

QVariant KeptModelsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    const QString titles[] = {tr("Model"), tr("Records"), tr("R²"), tr("Adjusted R²"), tr("s"), tr("AIC")};
    const QString hints[] = {tr("Its name, or its terms. F2 names it."),
                             tr("Records that the fit is of"),
                             tr("Share of the sum of squares that the model explains"),
                             tr("The same with variances instead of sums of squares"),
                             tr("Standard error of the estimate"),
                             tr("Akaike's criterion: smaller is better, of fits to the same records")};
    if (role == Qt::DisplayRole)
        return titles[section];
    if (role == Qt::ToolTipRole)
        return hints[section];
    if (role == Qt::TextAlignmentRole && section != Name)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

Qt::ItemFlags KeptModelsModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags usual = QAbstractTableModel::flags(index);
    return index.column() == Name ? usual | Qt::ItemIsEditable : usual;
}

ModelsTable::ModelsTable(Sitting &sitting, QWidget *parent) : QTreeView(parent), sitting_(sitting)
{
    auto *const order = new QSortFilterProxyModel(this);
    order->setSortRole(Qt::UserRole);
    order->setSourceModel(new KeptModelsModel(sitting, this));
    setModel(order);
    setObjectName(QStringLiteral("Models"));
    setAccessibleName(tr("Models tried"));
    setRootIsDecorated(false);
    setAllColumnsShowFocus(true);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(EditKeyPressed);
    setSortingEnabled(true);
    sortByColumn(-1, Qt::AscendingOrder);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setSectionResizeMode(KeptModelsModel::Name, QHeaderView::Stretch);
    header()->setStretchLastSection(false);
    // What the keys of the list do, for who opens its menu.
    const auto add = [this](const QString &text, Qt::Key key, const auto &handler) {
        const QString keys = QKeySequence(key).toString(QKeySequence::NativeText);
        auto *const action = new QAction(text + u'\t' + keys, this);
        connect(action, &QAction::triggered, this, handler);
        addAction(action);
    };
    add(tr("&Bring Back"), Qt::Key_Return, [this] { BringBack(); });
    add(tr("&Name"), Qt::Key_F2, [this] {
        if (currentIndex().isValid())
            edit(currentIndex().siblingAtColumn(KeptModelsModel::Name));
    });
    add(tr("Throw A&way"), Qt::Key_Delete, [this] { sitting_.Remove(Selected()); });
    addCopyMenu(*this);
    KeepPlace();
    connect(this, &QTreeView::doubleClicked, this,
            [this, order](const QModelIndex &index) { sitting_.BringBack(order->mapToSource(index).row()); });
    // A new model is the last one, and the list is short.
    connect(&sitting, &Sitting::ModelsChanged, this, &ModelsTable::ShowCurrent);
    connect(&sitting, &Sitting::StateChanged, this, &ModelsTable::ShowCurrent);
}

void ModelsTable::ShowCurrent()
{
    const auto *const order = static_cast<const QSortFilterProxyModel *>(model());
    if (const int current = sitting_.Current(); current >= 0)
        scrollTo(order->mapFromSource(order->sourceModel()->index(current, KeptModelsModel::Name)));
}

/// A sitting is there before the window has its size.
void ModelsTable::resizeEvent(QResizeEvent *event)
{
    QTreeView::resizeEvent(event);
    ShowCurrent();
}

/// Who goes through the list with keys stays where the list is made anew.
void ModelsTable::KeepPlace()
{
    connect(model(), &QAbstractItemModel::modelAboutToBeReset, this, [this] {
        row_ = currentIndex().row();
        wasSelected_ = Selected().size() == 1;
    });
    connect(model(), &QAbstractItemModel::modelReset, this, [this] {
        if (row_ < 0 || model()->rowCount() == 0)
            return;
        const QModelIndex index = model()->index(std::min(row_, model()->rowCount() - 1), KeptModelsModel::Name);
        selectionModel()->setCurrentIndex(index, wasSelected_
                                                     ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
                                                     : QItemSelectionModel::NoUpdate);
    });
}

std::vector<int> ModelsTable::Selected() const
{
    const auto *const order = static_cast<const QSortFilterProxyModel *>(model());
    std::vector<int> rows;
    for (const QModelIndex &index : selectionModel()->selectedRows())
        rows.push_back(order->mapToSource(index).row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

QString ModelsTable::Comparison() const
{
    const std::vector<int> rows = Selected();
    if (rows.size() != 2)
        return {};
    return comparisonText(sitting_.Models()[size_t(rows[0])], sitting_.Models()[size_t(rows[1])]);
}

void ModelsTable::BringBack()
{
    if (const std::vector<int> rows = Selected(); rows.size() == 1)
        sitting_.BringBack(rows[0]);
}

void ModelsTable::keyPressEvent(QKeyEvent *event)
{
    const std::vector<int> rows = Selected();
    if (event->matches(QKeySequence::Delete) && state() != EditingState) {
        sitting_.Remove(rows);
    } else if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && rows.size() == 1 &&
               state() != EditingState) {
        BringBack();
    } else {
        QTreeView::keyPressEvent(event);
        return;
    }
    event->accept();
}

} // namespace nuvo
