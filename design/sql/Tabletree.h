// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Sqltext.h"

#include <QTreeWidget>

namespace nuvo {

/// The tables of a database and, below each, its fields with what they hold. Names are quoted as its statements want
/// them.
class TableTree : public QTreeWidget
{
    Q_OBJECT

public:
    explicit TableTree(QWidget *parent);

    /// Reads the tables' names; an error is a line in the tree.
    void SetDatabase(const QString &databaseName);
    Dialect DatabaseDialect() const { return dialect_; }

Q_SIGNALS:
    /// A name was chosen; it is quoted.
    void Chosen(const QString &name);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    QMimeData *mimeData(const QList<QTreeWidgetItem *> &items) const override;

private:
    void ReadTables();
    void ReadFields(QTreeWidgetItem &table);
    QString Quoted(QTreeWidgetItem &item);
    void AddNote(QTreeWidgetItem *parent, const QString &text);

    QString databaseName_;
    Dialect dialect_ = Dialect::Other;
};

} // namespace nuvo
