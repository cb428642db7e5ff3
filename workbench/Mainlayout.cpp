// SPDX-License-Identifier: MIT
#include "workbench/Mainwindow.h"

#include "design/model/Modeleditor.h"
#include "workbench/Sitting.h"

#include <QDockWidget>
#include <QLayout>
#include <QListWidget>
#include <QSettings>
#include <QShowEvent>
#include <QSplitter>

#include <algorithm>

// Where the parts of the window are, and how much room each has.

namespace nuvo {

namespace {

constexpr int kLettersOfAPage = 132; // a table of coefficients in one piece

} // namespace

void MainWindow::RestoreLayout()
{
    const QSettings settings;
    resize(1360, 820);
    restoreGeometry(settings.value(QStringLiteral("geometry")).toByteArray());
    layout_ = settings.value(QStringLiteral("layout")).toByteArray();
    restoreState(layout_);
    middle_->restoreState(settings.value(QStringLiteral("middle")).toByteArray());
    editor_->findChild<QSplitter *>(QStringLiteral("Halves"))
        ->restoreState(settings.value(QStringLiteral("editor")).toByteArray());
}

void MainWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (!event->spontaneous() && !std::exchange(wasShown_, true) && docksShown_ && layout_.isEmpty())
        SizeParts();
}

void MainWindow::ShowDocks(bool shown)
{
    if (shown == docksShown_)
        return;
    if (!shown && wasShown_)
        layout_ = saveState();
    docksShown_ = shown;
    for (QDockWidget *const dock : findChildren<QDockWidget *>()) {
        dock->toggleViewAction()->setEnabled(shown);
        dock->setVisible(shown);
    }
    if (!shown)
        return;
    restoreState(layout_);
    if (wasShown_ && layout_.isEmpty())
        SizeParts();
    if (!sitting_->State().hasData())
        tables_->setFocus();
}

void MainWindow::SizeParts()
{
    layout()->activate(); // before there is a layout, docks take no sizes
    resizeDocks({findChild<QDockWidget *>(QStringLiteral("TablesDock"))}, {fontMetrics().averageCharWidth() * 20},
                Qt::Horizontal);
    resizeDocks({findChild<QDockWidget *>(QStringLiteral("ModelsDock"))}, {fontMetrics().height() * 9}, Qt::Vertical);
    layout()->activate();
    const int page = fontMetrics().averageCharWidth() * kLettersOfAPage;
    const int least = editor_->minimumSizeHint().width();
    middle_->setSizes({std::clamp(middle_->width() - page, least, least * 3 / 2), middle_->width()});
    editor_->findChild<QSplitter *>(QStringLiteral("Halves"))->setSizes({1000, 1000});
}

} // namespace nuvo
