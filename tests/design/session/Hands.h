// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Component.h"
#include "platform/Messages.h"
#include "platform/Modal.h"
#include "support/Text.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <QtDesigner/QtDesigner>
#include <QtTest>

#include <functional>
#include <utility>

inline void settle(int milliseconds = 50)
{
    QTest::qWait(milliseconds);
}

/// What a user of Qt Designer has at hand: selecting, clicking, typing, looking; and the notes of what was seen.
class Hands
{
public:
    const QJsonObject &seen() const { return seen_; }

protected:
    explicit Hands(QDesignerFormEditorInterface &core) : core_(core)
    {
        SetMessageHandler([this](const QString &text, TMsgDlgType, unsigned, int) {
            messages_.append(text);
            return int(mrOk);
        });
        SetModalRunner([](QDialog &dialog) { return dialog.exec(); });
    }

    template <class T>
    T *component(const char *name) const
    {
        T *found = form_->mainContainer()->findChild<T *>(u(name));
        if (found == nullptr)
            qFatal("no component %s on the form", name);
        return found;
    }

    void select(QWidget *widget)
    {
        form_->clearSelection();
        settle();
        form_->selectWidget(widget, true);
        settle();
        if (core_.propertyEditor()->object() != widget)
            qFatal("%s cannot be selected", qPrintable(widget->objectName()));
    }

    /// Does something that opens a window or a menu, and uses that.
    void during(const std::function<void()> &open, const std::function<void(QWidget *)> &use)
    {
        QTimer timer;
        int rounds = 0;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            QWidget *window = QApplication::activePopupWidget();
            if (window == nullptr)
                window = QApplication::activeModalWidget();
            // On a slow machine work that takes its time shows its progress before what it was asked for.
            if (window == nullptr || window->objectName() == u("TMLRGaugeDlg")) {
                if (++rounds > 500)
                    qFatal("nothing was opened");
                return;
            }
            timer.stop();
            use(window);
        });
        timer.start(20);
        open();
        while (timer.isActive())
            settle(20);
        settle();
    }

    QTreeWidget *propertyTree() const { return core_.propertyEditor()->findChild<QTreeWidget *>(); }

    /// Clicks on a property's value, so that its editor opens.
    QWidget *openRow(const char *property)
    {
        QTreeWidget *tree = propertyTree();
        const QList<QTreeWidgetItem *> items = tree->findItems(u(property), Qt::MatchExactly | Qt::MatchRecursive);
        if (items.isEmpty())
            qFatal("no row %s among %s", property, qPrintable(rows().join(u(" "))));
        tree->scrollToItem(items[0]);
        tree->setCurrentItem(items[0]);
        const QPoint value(tree->columnViewportPosition(1) + 20, tree->visualItemRect(items[0]).center().y());
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, value);
        settle();
        QWidget *row = tree->viewport()->childAt(value);
        while (row != nullptr && row->parentWidget() != tree->viewport())
            row = row->parentWidget();
        if (row == nullptr)
            qFatal("the row %s has no editor", property);
        return row;
    }

    QString rowText(const char *property) const
    {
        const QList<QTreeWidgetItem *> items =
            propertyTree()->findItems(u(property), Qt::MatchExactly | Qt::MatchRecursive);
        return items.isEmpty() ? QString() : items[0]->text(1);
    }

    QToolButton *rowButton(const char *property)
    {
        auto *button = openRow(property)->findChild<QToolButton *>(u("nuvoEditor"));
        if (button == nullptr || !button->isVisible())
            qFatal("the row %s has no button", property);
        return button;
    }

    void type(const char *property, const QString &text)
    {
        auto *edit = openRow(property)->findChild<QLineEdit *>();
        edit->selectAll();
        QTest::keyClicks(edit, text);
        QTest::keyClick(edit, Qt::Key_Return);
        settle();
    }

    QStringList choose(const char *property, const char *value)
    {
        QStringList values;
        QToolButton *button = rowButton(property);
        during([&] { QTest::mouseClick(button, Qt::LeftButton); },
               [&](QWidget *menu) {
                   for (QAction *action : menu->actions()) {
                       values += action->text();
                       if (action->text() == u(value))
                           QTest::mouseClick(menu, Qt::LeftButton, {},
                                             static_cast<QMenu *>(menu)->actionGeometry(action).center());
                   }
                   if (menu->isVisible())
                       QTest::keyClick(menu, Qt::Key_Escape);
               });
        return values;
    }

    QList<QAction *> contextActions(QObject *object) const
    {
        return qt_extension<QDesignerTaskMenuExtension *>(core_.extensionManager(), object)->taskActions();
    }

    QAction *contextAction(QObject *object, const char *text) const
    {
        for (QAction *action : contextActions(object)) {
            if (action->text() == u(text))
                return action;
        }
        qFatal("no action %s", text);
        return nullptr;
    }

    /// In a definition's dialog: a form, a field, OK.
    void define(QWidget *dialog, int form, const char *field, const char *picture = nullptr)
    {
        auto *item = dialog->findChild<QAbstractButton *>(QStringLiteral("RadioGroup1Item%1").arg(form));
        QTest::mouseClick(item, Qt::LeftButton, {}, QPoint(8, item->height() / 2));
        auto *list = dialog->findChild<QComboBox *>(u("cboxTableX"));
        QStringList fields;
        for (int i = 0; i < list->count(); ++i)
            fields += list->itemText(i);
        seen_[u("fields")] = QJsonArray::fromStringList(fields);
        const int wanted = int(fields.indexOf(u(field)));
        list->setFocus();
        while (list->currentIndex() != wanted)
            QTest::keyClick(list, list->currentIndex() < wanted ? Qt::Key_Down : Qt::Key_Up);
        if (picture != nullptr)
            take(dialog, picture);
        QTest::mouseClick(dialog->findChild<QPushButton *>(u("bbtnOK")), Qt::LeftButton);
    }

    /// For the documents.
    static void take(QWidget *window, const char *name) { window->grab().save(u(name)); }

    /// Said too, so that the log tells how far a walk came that broke off.
    void see(const char *what, const QJsonValue &value)
    {
        seen_[u(what)] = value;
        const QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
        qInfo("%s: %s", what, text.left(2000).constData());
    }
    void see(const char *what, const QStringList &list) { see(what, QJsonValue(QJsonArray::fromStringList(list))); }
    QStringList strings(const char *name, const char *property) const
    {
        return component<TComponent>(name)->property(property).toStringList();
    }
    QString contents() const { return form_->contents(); }
    QStringList takeMessages() { return std::exchange(messages_, {}); }

    /// For what should open nothing; where it does, that is closed.
    void duringNothing(const std::function<void()> &open)
    {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [] {
            if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget()))
                dialog->reject();
        });
        timer.start(200);
        open();
        settle();
    }

    QStringList rows() const
    {
        QStringList names;
        const QTreeWidget *tree = propertyTree();
        for (int i = 0; i < tree->topLevelItemCount(); ++i) {
            const QTreeWidgetItem *group = tree->topLevelItem(i);
            names += u("[") + group->text(0) + u("]");
            for (int j = 0; j < group->childCount(); ++j)
                names += group->child(j)->text(0);
        }
        return names;
    }

    /// Puts an entry of the palette onto the form, by the clipboard: without a display nothing can be dragged.
    void put(const char *name, const QPoint &position)
    {
        QDesignerWidgetBoxInterface *box = core_.widgetBox();
        QString xml;
        for (int i = 0; i < box->categoryCount(); ++i) {
            for (int j = 0; j < box->widgetCount(i); ++j) {
                if (box->widget(i, j).name() == u(name))
                    xml = box->widget(i, j).domXml();
            }
        }
        const QString end = u("</widget>");
        const auto from = xml.indexOf(u("<widget"));
        const auto until = xml.lastIndexOf(end) + end.size();
        if (from < 0)
            qFatal("no %s on the palette", name);
        QApplication::clipboard()->setText(
            u("<ui version=\"4.0\"><widget class=\"QWidget\" name=\"__qt_fake_top_level\">") +
            xml.mid(from, until - from) + u("</widget></ui>"));
        select(form_->mainContainer());
        core_.formWindowManager()->actionPaste()->trigger();
        settle();
        QWidget *added = form_->cursor()->selectedWidget(0);
        form_->cursor()->setWidgetProperty(added, u("geometry"), QRect(position, added->size()));
        settle();
    }

    void switchOn()
    {
        auto *check = openRow("Active")->findChild<QCheckBox *>();
        if (!check->isChecked())
            QTest::mouseClick(check, Qt::LeftButton, {}, QPoint(8, check->height() / 2));
        settle(100);
    }

    QDesignerFormWindowInterface *open(const QString &text)
    {
        QDesignerFormWindowManagerInterface *manager = core_.formWindowManager();
        QDesignerFormWindowInterface *form = manager->createFormWindow(core_.topLevel());
        form->setContents(text);
        manager->addFormWindow(form);
        manager->setActiveFormWindow(form);
        form->show();
        settle(100);
        return form;
    }

    QDesignerFormEditorInterface &core_;
    QDesignerFormWindowInterface *form_ = nullptr;

private:
    QStringList messages_;
    QJsonObject seen_;
};
