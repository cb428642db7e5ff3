// SPDX-License-Identifier: MIT
#pragma once

#include "design/plugin/Editing.h"

#include <QObject>

class QToolButton;
class QWidget;

namespace nuvo {

/// Gives the rows of the property editor a button where the catalogue has an editor for the property: "…" opens its
/// dialog, an arrow drops down its values; a definition's row can be cleared as well. The designer has no interface
/// for that, so this watches the editors that it opens in the rows; where it puts them together in another way, the
/// components' context menus still do it all.
class PropertyRows : public QObject
{
    Q_OBJECT

public:
    PropertyRows(const Editing &editing, QObject *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void AddButton(QWidget &row);
    QToolButton *Put(QWidget &row, const QString &text, bool instead);
    void AddDefinitionButtons(QWidget &row, TComponent &component, const QString &property);
    void AddModelButton(QWidget &row);
    void EditLater(const QString &property);
    void DropDown(const QWidget &button, const QString &property) const;

    const Editing &editing_;
};

} // namespace nuvo
