// SPDX-License-Identifier: MIT
// The dialogs of the workbench, for who has no mouse.

#include "Openedwindow.h"

#include "design/sql/Sqldialog.h"
#include "platform/Modal.h"
#include "present/Connectiondlg.h"
#include "workbench/Asking.h"
#include "workbench/Csvpreview.h"
#include "workbench/Sitting.h"

#include <QAccessible>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>

namespace {

/// What can have the focus and is seen.
std::set<QWidget *> places(QWidget &root)
{
    std::set<QWidget *> found;
    for (QWidget *const widget : root.findChildren<QWidget *>()) {
        if (widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus) != 0 &&
            widget->focusProxy() == nullptr && !widget->isWindow())
            found.insert(widget);
    }
    return found;
}

/// Goes on with Tab until nothing new comes.
void expectReachedByTab(QWidget &window, const std::string &where)
{
    std::set<QWidget *> wanted = places(window);
    if (wanted.empty())
        return;
    (*wanted.begin())->setFocus(Qt::TabFocusReason);
    for (std::size_t step = 0; step < 3 * places(window).size() + 40 && !wanted.empty(); ++step) {
        QWidget *const now = window.focusWidget();
        ASSERT_NE(now, nullptr) << where;
        wanted.erase(now);
        // What is within is the business of what it is in, and some buttons are only for some places.
        for (auto other = wanted.begin(); other != wanted.end();)
            other = now->isAncestorOf(*other) || !(*other)->isEnabled() ? wanted.erase(other) : std::next(other);
        QTest::keyClick(now, Qt::Key_Tab);
    }
    for (const QWidget *const widget : wanted)
        ADD_FAILURE() << where << ": Tab does not reach " << widget->metaObject()->className() << ' '
                      << widget->objectName().toStdString();
}

void expectKeysOnce(const QWidget &dialog, const std::string &where)
{
    std::map<QString, QString> keys;
    const auto add = [&](const QString &text) {
        const QKeySequence key = QKeySequence::mnemonic(text);
        if (key.isEmpty())
            return;
        EXPECT_EQ(keys.count(key.toString()), 0U)
            << where << ": " << text.toStdString() << " and " << keys[key.toString()].toStdString();
        keys[key.toString()] = text;
    };
    for (const QLabel *const label : dialog.findChildren<QLabel *>()) {
        if (label->isVisible() && label->buddy() != nullptr)
            add(label->text());
    }
    for (const QAbstractButton *const button : dialog.findChildren<QAbstractButton *>()) {
        if (button->isVisible())
            add(button->text());
    }
}

void expectNames(const QWidget &dialog, const std::string &where)
{
    for (QWidget *const widget : places(const_cast<QWidget &>(dialog))) {
        if (qobject_cast<QLineEdit *>(widget) != nullptr && widget->parentWidget()->inherits("QAbstractSpinBox"))
            continue;
        const QAccessibleInterface *const spoken = QAccessible::queryAccessibleInterface(widget);
        EXPECT_FALSE(spoken->text(QAccessible::Name).trimmed().isEmpty())
            << where << ": " << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
    }
}

/// Every dialog of ours, shown.
void onEveryDialog(OpenedWindow &opened, const std::function<void(QWidget &, const std::string &)> &check)
{
    const auto show = [&check](QWidget &dialog, const std::string &name) {
        dialog.show();
        dialog.activateWindow();
        QApplication::processEvents();
        check(dialog, name);
        dialog.hide();
    };
    QFile file(opened.folder.filePath(u("some.csv")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("a,b\n1,2\n3,4\n");
    file.close();
    nuvo::CsvPreview preview(file.fileName());
    show(preview, "preview");
    nuvo::ConnectionDialog server;
    server.KeepPassword();
    auto *const kind = server.findChild<QComboBox *>(u("kind"));
    for (int i = 0; i < kind->count(); ++i) {
        kind->setCurrentIndex(i);
        show(server, "server " + std::to_string(i));
    }
    std::string name;
    SetModalRunner([&](QDialog &dialog) {
        show(dialog, name);
        return int(QDialog::Rejected);
    });
    name = "password";
    nuvo::askPassword(opened.window.get(), u("postgresql://host/db"), u("Why."));
    name = "parameters";
    nuvo::askParameters(opened.window.get(), {u("from"), u("until")}, {});
    opened.fitLongley();
    name = "statement";
    for (const QAction *const action : opened.window->findChild<QMenu *>(u("FileMenu"))->actions()) {
        if (action->shortcut() == QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Q))
            const_cast<QAction *>(action)->trigger();
    }
    name = "table";
    opened.pages().setCurrentIndex(6);
    opened.window->findChild<QPushButton *>(u("PredictTable"))->click();
    const QList<QAction *> help = opened.window->findChild<QMenu *>(u("HelpMenu"))->actions();
    name = "keys";
    help[1]->trigger();
    name = "about";
    help[3]->trigger();
    SetModalRunner({});
    help[0]->trigger();
    show(*opened.window->findChild<QWidget *>(u("Guide")), "guide");
}

} // namespace

TEST(Dialogs, HaveNoLetterOfAKeyTwice)
{
    for (const char *const code : {"en", "de"}) {
        OpenedWindow opened(u(code));
        onEveryDialog(opened,
                      [&](QWidget &dialog, const std::string &name) { expectKeysOnce(dialog, code + (' ' + name)); });
    }
}

TEST(Dialogs, AreNamedAndGoneThroughWithTab)
{
    OpenedWindow opened;
    onEveryDialog(opened, [](QWidget &dialog, const std::string &name) {
        expectNames(dialog, name);
        expectReachedByTab(dialog, name);
    });
}

TEST(Dialogs, AndPagesAreReachedByTab)
{
    OpenedWindow opened;
    expectReachedByTab(*opened.window, "first page");
    opened.fitLongley();
    for (int page = 0; page < opened.pages().count(); ++page) {
        opened.pages().setCurrentIndex(page);
        QApplication::processEvents();
        expectReachedByTab(*opened.window, opened.pages().tabText(page).toStdString());
    }
}
