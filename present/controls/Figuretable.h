// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QSortFilterProxyModel>

class QTableView;

namespace nuvo {

/// What a model of a table of figures tells beyond what is shown.
enum TableRole {
    NumberRole = Qt::UserRole, ///< double, to sort by, NaN where there is none; or the words of a column of words
    MarkedRole,                ///< bool: the cell stands out
};

/// Sorts by numbers, not by what is shown of them; what does not exist stays at the end either way.
class NUVO_EXPORT NumberOrder : public QSortFilterProxyModel
{
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

protected:
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;
};

/// Whole rows are selected, a click on a heading sorts, cells keep to one line, and what is marked has a ground that
/// is mixed from the palette's own, so that it suits light and dark; a context menu copies. The model has been set.
NUVO_EXPORT void setUpFigureTable(QTableView &view);

} // namespace nuvo
