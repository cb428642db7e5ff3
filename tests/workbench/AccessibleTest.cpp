// SPDX-License-Identifier: MIT
#include "Openedwindow.h"

#include "present/figures/Figurespage.h"
#include "workbench/Choicepage.h"
#include "workbench/Sitting.h"

#include <QAccessible>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTreeView>

#include <gtest/gtest.h>

#include <map>

namespace {

/// Newer versions of Qt shrink a window that comes back to its screen, and the one off screen is small.
[[maybe_unused]] const bool hasALargeScreen =
    (qEnvironmentVariable("QT_QPA_PLATFORM", u("offscreen")) == u"offscreen") &&
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" SCREEN);

/// Visible widgets that can have the focus.
std::vector<QWidget *> focusable(QWidget &root)
{
    std::vector<QWidget *> found;
    for (QWidget *const widget : root.findChildren<QWidget *>()) {
        if (widget->isVisible() && widget->focusPolicy() != Qt::NoFocus && widget->focusProxy() == nullptr &&
            !widget->isWindow())
            found.push_back(widget);
    }
    return found;
}

void expectNames(QWidget &root, const std::string &where)
{
    for (QWidget *const widget : focusable(root)) {
        // The field within a spin box or an editable list is that one's.
        if (qobject_cast<QLineEdit *>(widget) != nullptr &&
            (widget->parentWidget()->inherits("QAbstractSpinBox") || widget->parentWidget()->inherits("QComboBox")))
            continue;
        const QAccessibleInterface *const spoken = QAccessible::queryAccessibleInterface(widget);
        ASSERT_NE(spoken, nullptr);
        EXPECT_FALSE(spoken->text(QAccessible::Name).trimmed().isEmpty())
            << where << ": " << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
    }
}

/// Every letter of a key that is in force, with what it is for.
std::multimap<QString, QString> keysOf(const QWidget &window, const QMenuBar &menus)
{
    std::multimap<QString, QString> keys;
    const auto add = [&keys](const QString &text) {
        const QKeySequence key = QKeySequence::mnemonic(text);
        if (!key.isEmpty())
            keys.emplace(key.toString(), text);
    };
    for (const QAction *const action : menus.actions())
        add(action->text());
    for (const QLabel *const label : window.findChildren<QLabel *>()) {
        if (label->isVisible() && label->buddy() != nullptr)
            add(label->text());
    }
    for (const QAbstractButton *const button : window.findChildren<QAbstractButton *>()) {
        if (button->isVisible())
            add(button->text());
    }
    return keys;
}

void expectKeysOnce(const OpenedWindow &opened, const std::string &where)
{
    const auto keys = keysOf(*opened.window, *opened.window->menuBar());
    for (const auto &[key, text] : keys)
        EXPECT_EQ(keys.count(key), 1U) << where << ": " << key.toStdString() << " of " << text.toStdString();
}

/// What Tab goes through on a page does not jump up.
void expectTabOrder(QWidget &page, const std::string &where)
{
    const QWidget *before = nullptr;
    for (QWidget *widget = page.nextInFocusChain(); widget != &page; widget = widget->nextInFocusChain()) {
        if (!page.isAncestorOf(widget) || !widget->isVisible() || (widget->focusPolicy() & Qt::TabFocus) == 0 ||
            widget->focusProxy() != nullptr)
            continue;
        if (before != nullptr) {
            const QRect last(before->mapTo(&page, QPoint()), before->size());
            const QRect now(widget->mapTo(&page, QPoint()), widget->size());
            EXPECT_GE(now.bottom(), last.top()) << where << ": " << before->objectName().toStdString() << " to "
                                                << widget->objectName().toStdString();
        }
        before = widget;
    }
}

/// What the parts of the window need.
std::string widths(const OpenedWindow &opened)
{
    QStringList all{u("editor %1").arg(opened.window->Editor().minimumSizeHint().width())};
    for (int page = 0; page < opened.pages().count(); ++page)
        all.append(
            u("%1 %2").arg(opened.pages().tabText(page)).arg(opened.pages().widget(page)->minimumSizeHint().width()));
    return all.join(u", ").toStdString();
}

template <class Check>
void onEveryPage(OpenedWindow &opened, const Check &check)
{
    check("welcome");
    opened.fitLongley();
    for (int page = 0; page < opened.pages().count(); ++page) {
        opened.pages().setCurrentIndex(page);
        auto *const method = opened.pages().currentWidget()->findChild<QComboBox *>(u("Method"));
        for (int way = 0; way < (method != nullptr ? method->count() : 1); ++way) {
            if (method != nullptr) {
                method->setCurrentIndex(way);
                opened.pages().Choosing().Choose();
            }
            QApplication::processEvents();
            check((opened.pages().tabText(page) + u(", %1").arg(way)).toStdString());
        }
    }
}

} // namespace

TEST(Accessible, EverythingThatCanHaveTheFocusHasAName)
{
    for (const char *const code : {"en", "de"}) {
        OpenedWindow opened(u(code));
        onEveryPage(opened, [&](const std::string &where) { expectNames(*opened.window, where); });
    }
}

TEST(Accessible, NoLetterOfAKeyIsThereTwice)
{
    for (const char *const code : {"en", "de"}) {
        OpenedWindow opened(u(code));
        onEveryPage(opened, [&](const std::string &where) { expectKeysOnce(opened, std::string(code) + where); });
    }
}

TEST(Accessible, TabGoesThroughAPageDownwards)
{
    OpenedWindow opened;
    onEveryPage(opened, [&](const std::string &where) { expectTabOrder(*opened.pages().currentWidget(), where); });
}

TEST(RecentFiles, AreInTheMenuAndOnTheFirstPage)
{
    OpenedWindow opened;
    const QString database = opened.folder.filePath(u("a & b.db"));
    opened.window->findChild<QAbstractButton *>(u("WelcomeSamples"))->click();
    ASSERT_TRUE(QFile::copy(opened.window->CurrentSitting().State().database, database));
    opened.window->OpenDatabase(database);
    QApplication::processEvents();
    auto *const menu = opened.window->findChild<QMenu *>(u("RecentMenu"));
    ASSERT_TRUE(menu->isEnabled());
    ASSERT_EQ(menu->actions().size(), 2);
    EXPECT_EQ(menu->actions()[0]->text(), u("&1 ") + QString(database).replace(u'&', u("&&")));
    menu->actions()[1]->trigger();
    EXPECT_TRUE(opened.window->CurrentSitting().State().database.endsWith(u("samples.db")));
    opened.window->CurrentSitting().Change({}, u("close"));
    const auto links = opened.window->findChildren<QAbstractButton *>(u("WelcomeRecent"));
    ASSERT_EQ(links.size(), 2);
    for (QAbstractButton *const link : links) {
        if (link->text() == u("a && b.db"))
            link->click();
    }
    EXPECT_EQ(opened.window->CurrentSitting().State().database, database);
}

TEST(Accessible, F6GoesFromPartToPart)
{
    OpenedWindow opened;
    opened.fitLongley();
    opened.pages().setCurrentIndex(1);
    opened.window->activateWindow();
    auto *const tables = opened.window->findChild<QListWidget *>(u("Tables"));
    tables->setFocus();
    const auto has = [&](const QWidget &part) {
        const QWidget *const focus = opened.window->focusWidget();
        return focus != nullptr && (focus == &part || part.isAncestorOf(focus));
    };
    QTest::keyClick(opened.window.get(), Qt::Key_F6);
    EXPECT_TRUE(has(opened.window->Editor()));
    QTest::keyClick(opened.window.get(), Qt::Key_F6);
    EXPECT_TRUE(has(*opened.pages().currentWidget()));
    QTest::keyClick(opened.window.get(), Qt::Key_F6);
    EXPECT_TRUE(has(*opened.window->findChild<QTreeView *>(u("Models"))));
    QTest::keyClick(opened.window.get(), Qt::Key_F6);
    EXPECT_TRUE(has(*tables));
    QTest::keyClick(opened.window.get(), Qt::Key_F6, Qt::ShiftModifier);
    EXPECT_TRUE(has(*opened.window->findChild<QTreeView *>(u("Models"))));
}

TEST(WindowLayout, IsThereAgainAtTheNextStart)
{
    OpenedWindow opened;
    opened.fitLongley();
    opened.window->resize(1200, 700);
    auto *dock = opened.window->findChild<QDockWidget *>(u("TablesDock"));
    EXPECT_LT(dock->width(), 200) << "narrow from the start";
    opened.window->resizeDocks({dock}, {220}, Qt::Horizontal);
    opened.window->findChild<QDockWidget *>(u("ModelsDock"))->hide();
    QApplication::processEvents();
    EXPECT_NEAR(dock->width(), 220, 2);
    const int editor = opened.window->Editor().width();
    opened.begin();
    EXPECT_EQ(opened.window->size(), QSize(1200, 700));
    dock = opened.window->findChild<QDockWidget *>(u("TablesDock"));
    EXPECT_NEAR(dock->width(), 220, 2);
    EXPECT_TRUE(opened.window->findChild<QDockWidget *>(u("ModelsDock"))->isHidden());
    EXPECT_NEAR(opened.window->Editor().width(), editor, 4);
}

TEST(WindowLayout, HasNoDocksWhereNothingIsOpen)
{
    OpenedWindow opened;
    const auto dock = [&](const char *name) { return opened.window->findChild<QDockWidget *>(u(name)); };
    const auto expectDocks = [&](bool tables, bool models) {
        QApplication::processEvents();
        EXPECT_EQ(dock("TablesDock")->isVisible(), tables);
        EXPECT_EQ(dock("ModelsDock")->isVisible(), models);
    };
    expectDocks(false, false);
    EXPECT_FALSE(dock("ModelsDock")->toggleViewAction()->isEnabled());
    opened.fitLongley();
    expectDocks(true, true);
    EXPECT_LT(dock("TablesDock")->width(), 200) << "narrow from the start";
    opened.window->resizeDocks({dock("TablesDock")}, {230}, Qt::Horizontal);
    dock("ModelsDock")->toggleViewAction()->trigger();
    expectDocks(true, false);
    const nuvo::ModelState state = opened.window->CurrentSitting().State();
    opened.window->CurrentSitting().Change({}, u("close"));
    expectDocks(false, false);
    opened.begin();
    expectDocks(false, false);
    opened.window->CurrentSitting().Change(state, u("open"));
    expectDocks(true, false);
    EXPECT_NEAR(dock("TablesDock")->width(), 230, 2) << "as the person has left them";
}

TEST(WindowLayout, FitsOnASmallScreen)
{
    for (const char *const code : {"en", "de"}) {
        OpenedWindow opened(u(code));
        onEveryPage(opened, [&](const std::string &where) {
            const QSize least = opened.window->minimumSizeHint();
            EXPECT_LE(least.width(), 1024) << where << ": " << widths(opened);
            EXPECT_LE(least.height(), 720) << where;
        });
    }
}

TEST(WindowLayout, OfAScreenThatIsGoneComesBackWhereItCanBeSeen)
{
    OpenedWindow opened;
    opened.window->resize(700, 500);
    opened.window->move(9000, 5000);
    opened.begin();
    EXPECT_TRUE(opened.window->screen()->availableGeometry().intersects(opened.window->frameGeometry()));
}
