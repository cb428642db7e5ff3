#pragma once

#include "design/plugin/Editing.h"

#include <QObject>

class QToolButton;

namespace nuvo {

/// Gives the rows of the property editor a button where the catalogue has an editor for the property: "…" opens its
/// dialog, an arrow drops down its values. There is no interface for that, so the editor's widgets are watched; the
/// components' context menus do the same without it.
class PropertyRows : public QObject
{
    Q_OBJECT

public:
    PropertyRows(const Editing &editing, QObject *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Watch(QObject *object);

    const Editing &editing_;
};

} // namespace nuvo
