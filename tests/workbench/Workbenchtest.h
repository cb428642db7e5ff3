// SPDX-License-Identifier: MIT
#pragma once

#include "design/model/Modeleditor.h"
#include "engine/Regression.h"
#include "platform/Modal.h"
#include "support/Text.h"
#include "workbench/Livefit.h"
#include "workbench/Mainwindow.h"
#include "workbench/Pages.h"
#include "workbench/Sitting.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDragEnterEvent>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>

/// The window of a sitting of its own, in which dialogs are answered with OK unless told otherwise.
class Workbench : public testing::Test
{
protected:
    QTemporaryDir folder;
    std::unique_ptr<nuvo::MainWindow> window;
    std::function<int(QDialog &)> answer; ///< to a dialog; none: OK

    void SetUp() override
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
        QApplication::setOrganizationName(u("Nuvo"));
        QApplication::setApplicationName(u("nuvo-workbench"));
        SetModalRunner([this](QDialog &dialog) { return answer ? answer(dialog) : int(QDialog::Accepted); });
        begin();
    }
    void TearDown() override { SetModalRunner({}); }
    void begin()
    {
        window = std::make_unique<nuvo::MainWindow>(folder.path());
        window->show();
    }
    QString csv(const char *name, int rows)
    {
        QFile file(folder.filePath(u(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("y,x,z,note\n");
        for (int i = 1; i <= rows; ++i)
            file.write(qPrintable(u("%1,%2,%3,n%2\n").arg(3 + 2 * i + std::sin(i * i)).arg(i).arg(i * i % 17)));
        return file.fileName();
    }
    void drop(const QString &file)
    {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(file)});
        QDragEnterEvent enter({100, 100}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent event(QPointF(100, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &event);
    }
    void defineXY()
    {
        window->Editor().MakeResponse(u("y"));
        window->Editor().AddFields({u("x")});
    }
    /// An entry of a menu of the window, by its beginning.
    QAction &entry(const char *menu, const char *text) const
    {
        for (QAction *const action : window->findChild<QMenu *>(u(menu))->actions()) {
            if (action->text().remove(u'&').startsWith(u(text)))
                return *action;
        }
        ADD_FAILURE() << text;
        return *new QAction(window.get());
    }
    QString message() const { return window->findChild<QLabel *>(u("Message"))->text(); }
    QAction &action(const char *text) const
    {
        for (QAction *const action : window->findChildren<QAction *>()) {
            if (action->text().remove(u'&').startsWith(u(text)))
                return *action;
        }
        ADD_FAILURE() << text;
        return *new QAction(window.get());
    }
};
