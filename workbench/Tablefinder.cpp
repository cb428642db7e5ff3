// SPDX-License-Identifier: MIT
#include "workbench/Tablefinder.h"

#include <QListWidget>
#include <QVBoxLayout>

namespace nuvo {

namespace {

constexpr int kLong = 15; // that many are seen at once

} // namespace

TableFinder::TableFinder(QListWidget &list, QWidget *parent) : QLineEdit(parent), list_(list)
{
    setObjectName(QStringLiteral("FindTable"));
    setPlaceholderText(tr("Find a table"));
    setAccessibleName(tr("Find a table"));
    setClearButtonEnabled(true);
    list_.setUniformItemSizes(true);
    hide();
    connect(this, &QLineEdit::textChanged, this, &TableFinder::Find);
}

QWidget *TableFinder::WithList()
{
    auto *const both = new QWidget(parentWidget());
    auto *const column = new QVBoxLayout(both);
    column->setContentsMargins({});
    column->setSpacing(2);
    column->addWidget(this);
    column->addWidget(&list_, 1);
    return both;
}

void TableFinder::SetNames(const QStringList &names)
{
    list_.clear();
    list_.addItems(names);
    setVisible(names.size() > kLong);
    clear();
}

void TableFinder::Find()
{
    for (int row = 0; row < list_.count(); ++row)
        list_.item(row)->setHidden(!list_.item(row)->text().contains(text().trimmed(), Qt::CaseInsensitive));
}

} // namespace nuvo
