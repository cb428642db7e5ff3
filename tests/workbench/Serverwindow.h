// SPDX-License-Identifier: MIT
#pragma once

#include "workbench/Hostilewindow.h"
#include "workbench/Pages.h"
#include "workbench/Recordspage.h"

#include <QDirIterator>
#include <QFile>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

/// In front of servers.
class ServerWindow : public HostileWindow
{
protected:
    QListWidget &tables() const { return *window->findChild<QListWidget *>(u("Tables")); }
    nuvo::RecordsPage &page() const { return window->ShownPages().Records(); }
    bool opened(const QString &table)
    {
        window->OpenTable(table);
        return wait([&] { return sitting().State().table == table && !window->Near().IsFetching(); });
    }
    bool listed(const QString &name)
    {
        window->OpenDatabase(name);
        return wait([&] { return sitting().State().database == name && tables().count() > 0; });
    }
    void click(const char *button) const
    {
        QTest::mouseClick(window->findChild<QPushButton *>(u(button)), Qt::LeftButton);
    }
    /// Whether a text stands in any file of the folder.
    bool isStored(const QString &text) const
    {
        QDirIterator files(folder.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.open(QIODevice::ReadOnly) && file.readAll().contains(text.toUtf8()))
                return true;
        }
        return false;
    }
};
