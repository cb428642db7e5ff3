// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Messages.h"
#include "platform/Modal.h"
#include "support/Print.h"

#include <QAction>
#include <QDialog>
#include <QMenu>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include <functional>
#include <utility>

/// The person in front of the screen: what is done with each modal dialog, in the order in which they open.
class Person
{
public:
    template <class... Acts>
    explicit Person(Acts... acts) : acts_{std::move(acts)...}
    {
        SetModalRunner([this](QDialog &dialog) { return meet(dialog); });
        SetMessageHandler([this](const QString &text, TMsgDlgType, unsigned, int) {
            messages += text;
            return int(mrOk);
        });
    }
    ~Person()
    {
        SetModalRunner({});
        SetMessageHandler({});
        EXPECT_EQ(met_, acts_.size()) << "not every dialog opened";
    }
    Person(const Person &) = delete;
    Person &operator=(const Person &) = delete;

    QStringList messages;

private:
    int meet(QDialog &dialog)
    {
        if (met_ == acts_.size()) {
            ADD_FAILURE() << "nobody expected the dialog " << dialog.windowTitle().toStdString();
            return QDialog::Rejected;
        }
        dialog.setModal(true);
        dialog.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&dialog));
        dialog.setResult(QDialog::Rejected);
        acts_[met_++](dialog);
        EXPECT_FALSE(dialog.isVisible()) << dialog.windowTitle().toStdString() << " was not closed";
        return dialog.result();
    }

    std::vector<std::function<void(QDialog &)>> acts_;
    std::size_t met_ = 0;
};

/// A person who does that with the window of a class that `open` opens, and closes it; with `more` further dialogs.
/// Returns the messages.
template <class Form, class... More>
QStringList showForm(const std::function<void()> &open, const std::function<void(Form &)> &act, More... more)
{
    const Person person(
        [&](QDialog &dialog) {
            auto &form = dynamic_cast<Form &>(dialog);
            form.activateWindow();
            EXPECT_TRUE(QTest::qWaitForWindowActive(&form));
            act(form);
            dialog.close();
        },
        more...);
    open();
    return person.messages;
}

template <class T = QWidget>
T *part(const QWidget &window, const char *name)
{
    T *found = window.findChild<T *>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
}

inline void click(const QWidget &window, const char *name)
{
    QTest::mouseClick(part(window, name), Qt::LeftButton);
}

/// Clicks an item of a menu that is open, through its submenu where it is in one.
inline void choose(const QWidget &window, const char *menuName, const char *itemName)
{
    QMenu *menu = part<QMenu>(window, menuName);
    QAction *item = part<QAction>(window, itemName);
    ASSERT_TRUE(menu->isVisible()) << menuName;
    for (QAction *sub : menu->actions()) {
        if (sub->menu() != nullptr && sub->menu()->actions().contains(item)) {
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(sub).center());
            ASSERT_TRUE(QTest::qWaitFor([&] { return sub->menu()->isVisible(); }));
            menu = sub->menu();
        }
    }
    const QRect place = menu->actionGeometry(item);
    ASSERT_FALSE(place.isEmpty()) << itemName;
    // In steps, as a hand does: while the mouse has hardly moved, a menu takes a click for a slip.
    for (int step = -8; step <= 0; ++step)
        QTest::mouseMove(menu, place.center() + QPoint(step, 0));
    QTest::mouseClick(menu, Qt::LeftButton, {}, place.center());
}

/// Opens a menu with the right mouse button on a control, as the window system does.
inline void rightClick(QWidget *widget, QPoint where)
{
    QContextMenuEvent event(QContextMenuEvent::Mouse, where, widget->mapToGlobal(where));
    QApplication::sendEvent(widget, &event);
}
