// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

namespace nuvo {

/// Items that have something true in this role are shown paler, in the colours of the palette of the moment.
constexpr int QuietRole = Qt::UserRole + 50;

class QuietCells : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (index.data(QuietRole).toBool())
            option->palette.setColor(QPalette::Text, option->palette.color(QPalette::PlaceholderText));
    }
};

} // namespace nuvo
