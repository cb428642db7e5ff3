#pragma once

#include "design/plugin/Editing.h"

#include <QObject>

class QWidget;

namespace nuvo {

/// Gives the rows of the property editor a button where the catalogue has an editor for the property: "…" opens its
/// dialog, an arrow drops down its values. The designer has no interface for that, so this watches the editors that
/// it opens in the rows; where it puts them together in another way, the components' context menus still do it all.
class PropertyRows : public QObject
{
    Q_OBJECT

public:
    PropertyRows(const Editing &editing, QObject *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void AddButton(QWidget &row);
    void DropDown(const QWidget &button, const QString &property) const;

    const Editing &editing_;
};

} // namespace nuvo
