// SPDX-License-Identifier: MIT
#include "workbench/Mainwindow.h"

#include "design/model/Modeleditor.h"
#include "platform/Modal.h"
#include "platform/Version.h"
#include "workbench/Guide.h"
#include "workbench/Modelstable.h"
#include "workbench/Pages.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QStackedWidget>

namespace nuvo {

namespace {

bool takesFocus(const QWidget &widget)
{
    return widget.isEnabled() && widget.isVisible() && (widget.focusPolicy() & Qt::TabFocus) != 0;
}

/// What gets the focus of a pane: itself or the first of what is in it.
QWidget *firstOf(QWidget &pane)
{
    if (takesFocus(pane))
        return &pane;
    for (QWidget *widget = pane.nextInFocusChain(); widget != &pane; widget = widget->nextInFocusChain()) {
        if (pane.isAncestorOf(widget) && takesFocus(*widget))
            return widget;
    }
    return nullptr;
}

/// "Open…	Ctrl+O", a line for each action of a menu and of those below it that has keys.
void addKeys(const QMenu &menu, QStringList &lines)
{
    for (const QAction *const action : menu.actions()) {
        if (action->menu() != nullptr)
            addKeys(*action->menu(), lines);
        else if (!action->shortcut().isEmpty())
            lines.append(QStringLiteral("<tr><td>%1</td><td>&nbsp;&nbsp;&nbsp;%2</td></tr>")
                             .arg(action->text().remove(u'&').remove(u'…').toHtmlEscaped(),
                                  action->shortcut().toString(QKeySequence::NativeText).toHtmlEscaped()));
    }
}

/// What is typed into: itself, or the line of a box that has the keys.
QLineEdit *lineOf(QObject *watched)
{
    if (auto *const box = qobject_cast<QAbstractSpinBox *>(watched))
        return box->findChild<QLineEdit *>();
    return qobject_cast<QLineEdit *>(watched);
}

} // namespace

/// Undo and redo are the line's that is typed into as long as it has something to undo or redo, then the model's.
bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ShortcutOverride)
        return QMainWindow::eventFilter(watched, event);
    const auto *const keys = static_cast<QKeyEvent *>(event);
    const bool undo = keys->matches(QKeySequence::Undo);
    if (!undo && !keys->matches(QKeySequence::Redo))
        return QMainWindow::eventFilter(watched, event);
    const QLineEdit *const line = lineOf(watched);
    if (line == nullptr || line->window() != this)
        return QMainWindow::eventFilter(watched, event);
    // A name is the model's when it is whole, a number with every digit.
    const bool isName = line->objectName() == QLatin1String("FieldEdit") || models_->isAncestorOf(line);
    const bool isNumber = editor_->isAncestorOf(line) && line->objectName().startsWith(QLatin1String("Number"));
    event->setAccepted(isName || (!isNumber && (undo ? line->isUndoAvailable() : line->isRedoAvailable())));
    return true;
}

void MainWindow::MakeHelpMenu()
{
    QMenu *const menu = menuBar()->addMenu(tr("&Help"));
    menu->setObjectName(QStringLiteral("HelpMenu"));
    QAction *const guide = menu->addAction(tr("&Guide"), this, &MainWindow::ShowGuide);
    guide->setShortcut(QKeySequence::HelpContents);
    guide->setStatusTip(tr("Open the guide where it is about what is shown"));
    QAction *const keys = menu->addAction(tr("&Keys…"), this, &MainWindow::ShowKeys);
    keys->setStatusTip(tr("Show the keys of all menus"));
    menu->addSeparator();
    QAction *const about = menu->addAction(tr("&About Nuvo Workbench…"), this, &MainWindow::ShowAbout);
    about->setMenuRole(QAction::AboutRole);
    about->setStatusTip(tr("Show version and licence"));
}

void MainWindow::ShowGuide()
{
    QString place = pages_->GuidePlace();
    if (centre_->currentIndex() == 0)
        place = QStringLiteral("README.md");
    else if (editor_->isAncestorOf(focusWidget()))
        place = QStringLiteral("words.md");
    else if (models_->hasFocus())
        place = QStringLiteral("selection.md");
    if (guide_ == nullptr) {
        guide_ = new Guide(this);
        guide_->setAttribute(Qt::WA_DeleteOnClose, false);
    }
    guide_->ShowPlace(place);
    guide_->show();
    guide_->raise();
    guide_->activateWindow();
}

void MainWindow::ShowKeys()
{
    QStringList lines;
    for (const QAction *const action : menuBar()->actions()) {
        if (action->menu() != nullptr)
            addKeys(*action->menu(), lines);
    }
    QMessageBox box(QMessageBox::NoIcon, tr("Keys"), QString(), QMessageBox::Close, this);
    box.setTextFormat(Qt::RichText);
    box.setText(QLatin1String("<table>") + lines.join(QString()) + QLatin1String("</table>"));
    box.setInformativeText(tr("Alt and the underlined letter opens a menu or goes to a field. F6 goes on to the next "
                              "part of the window, Tab to the next field. In the list of fields Y makes the marked "
                              "field the response, Enter takes it as a control variable."));
    ShowModal(box);
}

void MainWindow::ShowAbout()
{
    QMessageBox box(QMessageBox::NoIcon, tr("About Nuvo Workbench"),
                    tr("Nuvo Workbench %1").arg(QString::fromLatin1(libraryVersion())), QMessageBox::Close, this);
    box.setIconPixmap(QIcon(QStringLiteral(":/icons/nuvo-workbench.svg")).pixmap(64, 64));
    box.setInformativeText(tr("Linear regression for people with a table and a question. An application of Nuvo "
                              "Statistics. Free software under the MIT licence, with Qt %1 under the LGPL.")
                               .arg(QString::fromLatin1(qVersion())));
    ShowModal(box);
}

void MainWindow::GoToPane(int step)
{
    const std::vector<QWidget *> panes{tables_, editor_, pages_->currentWidget(), models_};
    const int count = int(panes.size());
    int now = step > 0 ? -1 : count;
    for (int i = 0; i < count; ++i) {
        QWidget *const focus = focusWidget();
        if (focus != nullptr && (panes[std::size_t(i)] == focus || panes[std::size_t(i)]->isAncestorOf(focus)))
            now = i;
    }
    for (int i = 1; i <= count; ++i) {
        if (QWidget *const widget = firstOf(*panes[std::size_t(((now + i * step) % count + count) % count)])) {
            widget->setFocus(step > 0 ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return;
        }
    }
}

} // namespace nuvo
