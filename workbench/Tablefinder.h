// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

class QListWidget;

namespace nuvo {

/// A line above a list that leaves in it what holds the text that is typed; it shows itself where the list is long.
class TableFinder : public QLineEdit
{
    Q_OBJECT

public:
    explicit TableFinder(QListWidget &list, QWidget *parent = nullptr);

    /// The line and the list in one widget.
    QWidget *WithList();
    /// Replaces what is in the list.
    void SetNames(const QStringList &names);

private:
    void Find();

    QListWidget &list_;
};

} // namespace nuvo
