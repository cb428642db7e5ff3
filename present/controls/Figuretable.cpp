// SPDX-License-Identifier: MIT
#include "present/controls/Figuretable.h"

#include "present/controls/Tablecopy.h"
#include "present/figures/Figuretheme.h"

#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTableView>

#include <cmath>

namespace nuvo {

namespace {

class Marks : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (!index.data(MarkedRole).toBool())
            return;
        constexpr double share = 0.3;
        const QColor base = option->palette.color(QPalette::Base);
        const QColor mark = FigureTheme::of(option->palette).selected;
        const auto mixed = [](int a, int b) { return int(std::lround(a + share * (b - a))); };
        option->backgroundBrush =
            QColor(mixed(base.red(), mark.red()), mixed(base.green(), mark.green()), mixed(base.blue(), mark.blue()));
    }
};

} // namespace

bool NumberOrder::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const QVariant a = left.data(NumberRole);
    const QVariant b = right.data(NumberRole);
    const bool ascending = sortOrder() == Qt::AscendingOrder;
    const auto ordered = [ascending](const auto &one, const auto &other, bool oneLacks, bool otherLacks) {
        if (oneLacks || otherLacks)
            return ascending ? !oneLacks && otherLacks : oneLacks && !otherLacks;
        return one < other;
    };
    if (a.userType() == QMetaType::QString) {
        const QString one = a.toString();
        const QString other = b.toString();
        return ordered(one, other, one.isEmpty(), other.isEmpty());
    }
    const double one = a.toDouble();
    const double other = b.toDouble();
    return ordered(one, other, std::isnan(one), std::isnan(other));
}

void setUpFigureTable(QTableView &view)
{
    view.setItemDelegate(new Marks(&view));
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.setTabKeyNavigation(false);
    view.setWordWrap(false);
    view.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    view.verticalHeader()->hide();
    view.verticalHeader()->setDefaultSectionSize(view.fontMetrics().height() + 6);
    view.horizontalHeader()->setHighlightSections(false);
    view.horizontalHeader()->setResizeContentsPrecision(100);
    view.setSortingEnabled(true);
    view.sortByColumn(0, Qt::AscendingOrder);
    addCopyMenu(view);
}

} // namespace nuvo
