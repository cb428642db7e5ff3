// SPDX-License-Identifier: MIT
#include "design/sql/Tabletree.h"

#include "design/model/Modelfields.h"
#include "design/sql/Quietcells.h"
#include "platform/Connection.h"
#include "platform/Errors.h"
#include "platform/Messages.h"
#include "platform/Tabledescription.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>

namespace nuvo {

namespace {

enum Roles { NameRole = Qt::UserRole, QuotedRole, ReadRole };

} // namespace

TableTree::TableTree(QWidget *parent) : QTreeWidget(parent)
{
    setObjectName(QStringLiteral("SqlTables"));
    setAccessibleName(tr("Tables and their fields"));
    setAccessibleDescription(tr("Enter puts the name into the statement"));
    setToolTip(tr("A double click or Enter puts the name into the statement; it can be dragged, too"));
    setHeaderLabels({tr("Tables and fields"), tr("Holds")});
    setExpandsOnDoubleClick(false);
    setUniformRowHeights(true);
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    setTextElideMode(Qt::ElideMiddle);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    constexpr int lettersSeen = 34;
    setMinimumWidth(fontMetrics().averageCharWidth() * lettersSeen);
    connect(this, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem *item) { ReadFields(*item); });
    setItemDelegate(new QuietCells(this));
    connect(this, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem *item) {
        if (const QString name = Quoted(*item); !name.isEmpty())
            Q_EMIT Chosen(name);
    });
}

void TableTree::SetDatabase(const QString &databaseName)
{
    databaseName_ = databaseName;
    dialect_ = Dialect::Other;
    ReadTables();
}

void TableTree::AddNote(QTreeWidgetItem *parent, const QString &text)
{
    auto *note = new QTreeWidgetItem({withoutControls(text)});
    note->setFlags(Qt::ItemIsEnabled);
    note->setToolTip(0, withoutControls(text));
    note->setData(0, QuietRole, true);
    if (parent != nullptr)
        parent->addChild(note);
    else
        addTopLevelItem(note);
    note->setFirstColumnSpanned(true);
}

void TableTree::ReadTables()
{
    clear();
    try {
        Connection connection;
        connection.open(databaseName_);
        dialect_ = connection.dialect();
        for (const QString &name : tableNames(connection)) {
            auto *item = new QTreeWidgetItem(this, {withoutControls(name)});
            item->setData(0, NameRole, name);
            item->setToolTip(0, withoutControls(name));
            item->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
        }
        if (topLevelItemCount() == 0)
            AddNote(nullptr, tr("There are no tables."));
        else if (topLevelItemCount() == 1)
            topLevelItem(0)->setExpanded(true);
    } catch (const EPlatformError &error) {
        AddNote(nullptr, error.Message());
    }
}

void TableTree::ReadFields(QTreeWidgetItem &table)
{
    const QString name = table.data(0, NameRole).toString();
    if (name.isEmpty() || table.data(0, ReadRole).toBool())
        return;
    table.setData(0, ReadRole, true);
    try {
        Connection connection;
        connection.open(databaseName_);
        const TableDescription description = TableDescription::of(connection, name);
        table.setData(0, QuotedRole, description.source);
        for (const Column &column : description.columns) {
            auto *field = new QTreeWidgetItem(&table, {withoutControls(column.name), fieldKind(column.kind)});
            field->setData(0, QuotedRole, quotedName(column.name, dialect_));
            field->setToolTip(0, withoutControls(column.name));
        }
    } catch (const EPlatformError &error) {
        AddNote(&table, error.Message());
    }
}

QString TableTree::Quoted(QTreeWidgetItem &item)
{
    ReadFields(item);
    return item.data(0, QuotedRole).toString();
}

void TableTree::keyPressEvent(QKeyEvent *event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && currentItem() != nullptr) {
        if (const QString name = Quoted(*currentItem()); !name.isEmpty())
            Q_EMIT Chosen(name);
        return;
    }
    QTreeWidget::keyPressEvent(event);
}

QMimeData *TableTree::mimeData(const QList<QTreeWidgetItem *> &items) const
{
    QStringList names;
    for (QTreeWidgetItem *item : items)
        names += const_cast<TableTree *>(this)->Quoted(*item);
    auto *mime = new QMimeData;
    mime->setText(names.join(QStringLiteral(", ")));
    return mime;
}

} // namespace nuvo
