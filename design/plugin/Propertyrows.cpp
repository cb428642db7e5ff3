#include "design/plugin/Propertyrows.h"

#include <QChildEvent>
#include <QDesignerPropertyEditorInterface>

nuvo::PropertyRows::PropertyRows(const Editing &editing, QObject *parent) : QObject(parent), editing_(editing)
{
    Watch(editing_.Core().propertyEditor());
}

void nuvo::PropertyRows::Watch(QObject *object)
{
    if (!object->isWidgetType())
        return;
    object->installEventFilter(this);
    for (QObject *child : object->children())
        Watch(child);
}

bool nuvo::PropertyRows::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ChildAdded)
        Watch(static_cast<QChildEvent *>(event)->child());
    return QObject::eventFilter(watched, event);
}
