// SPDX-License-Identifier: MIT
#pragma once

#include "design/plugin/Editing.h"

#include <QDesignerTaskMenuExtension>
#include <QExtensionFactory>
#include <QMenu>

#include <memory>

namespace nuvo {

/// What a component's context menu begins with, and what a double click opens.
class TaskMenu : public QObject, public QDesignerTaskMenuExtension
{
    Q_OBJECT
    Q_INTERFACES(QDesignerTaskMenuExtension)

public:
    TaskMenu(TComponent &component, const Editing &editing, QObject *parent);

    /// What is missing first: the database, the table or the statement, the response, the next control variable.
    QAction *preferredEditAction() const override;
    QList<QAction *> taskActions() const override;

private:
    QAction *Add(const QString &text, const std::function<void()> &action);
    void AddModel();
    void AddEditors();
    void AddClear();
    void AddFigures();
    QString NextProperty() const;

    TComponent &component_;
    const Editing &editing_;
    QList<QAction *> actions_;
    std::unique_ptr<QMenu> clearMenu_; ///< what is defined; null where nothing can be
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
