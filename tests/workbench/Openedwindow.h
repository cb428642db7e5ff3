// SPDX-License-Identifier: MIT
#pragma once

#include "design/model/Modeleditor.h"
#include "support/Text.h"
#include "workbench/Language.h"
#include "workbench/Mainwindow.h"
#include "workbench/Pages.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <cmath>
#include <memory>

/// The window of the workbench in a folder of its own, in a language.
class OpenedWindow
{
public:
    explicit OpenedWindow(const QString &code = {}) : language_(code.isEmpty() ? nullptr : new nuvo::Language(code))
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
        QApplication::setOrganizationName(QStringLiteral("Nuvo"));
        QApplication::setApplicationName(QStringLiteral("nuvo-workbench"));
        begin();
    }

    /// As the program does at its start; the window before that is closed.
    void begin()
    {
        if (window)
            window->close();
        window.reset();
        window = std::make_unique<nuvo::MainWindow>(folder.path());
        window->show();
        QApplication::processEvents();
    }
    /// Makes an SQLite database of some records by way of the samples, opens a table and fits TOTEMP on two terms.
    void fitLongley()
    {
        window->findChild<QAbstractButton *>(QStringLiteral("WelcomeSamples"))->click();
        window->OpenTable(QStringLiteral("Longley"));
        window->Editor().MakeResponse(QStringLiteral("TOTEMP"));
        window->Editor().AddFields({QStringLiteral("GNP"), QStringLiteral("UNEMP")});
        QApplication::processEvents();
    }
    nuvo::Pages &pages() const { return window->ShownPages(); }

    QTemporaryDir folder;
    std::unique_ptr<nuvo::Language> language_; ///< goes after the window
    std::unique_ptr<nuvo::MainWindow> window;
};
