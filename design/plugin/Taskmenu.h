#pragma once

#include "design/plugin/Editing.h"

#include <QDesignerTaskMenuExtension>
#include <QExtensionFactory>

namespace nuvo {

/// What a component's context menu begins with, and what a double click opens.
class TaskMenu : public QObject, public QDesignerTaskMenuExtension
{
    Q_OBJECT
    Q_INTERFACES(QDesignerTaskMenuExtension)

public:
    TaskMenu(TComponent &component, const Editing &editing, QObject *parent);

    /// What is missing first: the database, the table, the response, the next control variable.
    QAction *preferredEditAction() const override;
    QList<QAction *> taskActions() const override { return actions_; }

private:
    QString NextProperty() const;

    TComponent &component_;
    QList<QAction *> actions_;
};

class TaskMenuFactory : public QExtensionFactory
{
    Q_OBJECT

public:
    TaskMenuFactory(const Editing &editing, QExtensionManager *manager)
        : QExtensionFactory(manager), editing_(editing)
    {
    }

protected:
    QObject *createExtension(QObject *object, const QString &iid, QObject *parent) const override;

private:
    const Editing &editing_;
};

} // namespace nuvo
