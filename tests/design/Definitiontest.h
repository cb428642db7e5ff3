// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "present/Windowtest.h"
#include "support/Text.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

// What a person does with the dialogs that define variables.

inline const QStringList &fieldNames()
{
    static const QStringList names{u("YEAR"), u("GNP"), u("UNEMP"), u("POP")};
    return names;
}

inline void chooseItem(const QWidget &dialog, int index)
{
    auto *item = part<QRadioButton>(dialog, qPrintable(QStringLiteral("RadioGroup1Item%1").arg(index)));
    QTest::mouseClick(item, Qt::LeftButton, {}, QPoint(8, item->height() / 2));
    EXPECT_TRUE(item->isChecked());
}

/// Goes to an entry of a list with the keys.
inline void pick(const QWidget &dialog, const char *name, const QString &entry)
{
    auto *list = part<QComboBox>(dialog, name);
    ASSERT_TRUE(list->isEnabled()) << name;
    const int index = list->findText(entry);
    ASSERT_GE(index, 0) << entry.toStdString();
    list->setFocus();
    while (list->currentIndex() != index)
        QTest::keyClick(list, list->currentIndex() < index ? Qt::Key_Down : Qt::Key_Up);
}

/// Types over what a box or an edit holds.
inline void type(const QWidget &dialog, const char *name, const char *text)
{
    auto *box = part<QWidget>(dialog, name);
    ASSERT_TRUE(box->isEnabled()) << name;
    auto *combo = qobject_cast<QComboBox *>(box);
    QLineEdit *edit = combo != nullptr ? combo->lineEdit() : qobject_cast<QLineEdit *>(box);
    box->setFocus();
    edit->selectAll();
    if (*text == '\0')
        QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, u(text));
}

/// Goes on with Tab, slowly enough for a message.
inline void leave(QDialog &dialog)
{
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    QTest::qWait(100);
}

inline QString term(const QWidget &dialog)
{
    return part<QLabel>(dialog, "Panel2")->text();
}

inline bool canConfirm(const QWidget &dialog)
{
    return part<QPushButton>(dialog, "bbtnOK")->isEnabled();
}

inline void confirm(const QWidget &dialog)
{
    ASSERT_TRUE(canConfirm(dialog));
    click(dialog, "bbtnOK");
}

inline void cancel(const QWidget &dialog)
{
    click(dialog, "bbtnCancel");
}

inline QString textOf(const QWidget &dialog, const char *label)
{
    return part<QLabel>(dialog, label)->text();
}

inline QString shown(const QWidget &dialog, const char *box)
{
    return part<QComboBox>(dialog, box)->currentText();
}

/// Whether a person sees this one of the panels that share a place.
inline bool inFront(const QWidget &dialog, const char *name)
{
    const auto *panel = part(dialog, name);
    const QWidget *seen = dialog.childAt(panel->mapTo(&dialog, QPoint(4, panel->height() / 2)));
    return seen == panel || panel->isAncestorOf(seen);
}

/// The text that the Help button shows.
inline QString helpText(const QWidget &dialog)
{
    QString shown;
    const TMessageHandler before =
        SetMessageHandler([&](const QString &text, TMsgDlgType type, unsigned buttons, int helpContext) {
            shown = text;
            EXPECT_EQ(type, TMsgDlgType::mtInformation);
            EXPECT_EQ(buttons, unsigned(mbOK));
            EXPECT_EQ(helpContext, 0);
            return int(mrOk);
        });
    click(dialog, "bbtnHelp");
    SetMessageHandler(before);
    return shown;
}

template <class Definition>
struct Edited
{
    Definition variable;
    QStringList messages;
};

/// Opens the dialog for a variable of a component, to somebody who does that and closes it.
template <class Dialog, class Definition>
Edited<Definition> openFor(const TComponent &component, const char *property, const Definition &definition,
                           const std::function<void(QDialog &)> &act, const QStringList &fields)
{
    Edited<Definition> edited{definition, {}};
    const Person person([&act](QDialog &dialog) {
        dialog.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
        act(dialog);
    });
    Dialog().OpenForm(component, u(property), fields, edited.variable);
    edited.messages = person.messages;
    return edited;
}

inline const std::array<const char *, 3> &pushButtons()
{
    static constexpr std::array<const char *, 3> names{"bbtnOK", "bbtnCancel", "bbtnHelp"};
    return names;
}

/// No label, button or box is narrower or lower than what it shows, and each lies in its parent.
inline void expectNothingIsClipped(const QDialog &dialog)
{
    // A window system may take its time to resize.
    EXPECT_TRUE(QTest::qWaitFor([&dialog] { return dialog.layout()->geometry().size() == dialog.minimumSize(); }));
    for (const QWidget *widget : dialog.findChildren<QWidget *>()) {
        const bool showsText = qobject_cast<const QLabel *>(widget) != nullptr ||
                               qobject_cast<const QAbstractButton *>(widget) != nullptr ||
                               qobject_cast<const QComboBox *>(widget) != nullptr;
        if (!widget->isVisible() || !showsText)
            continue;
        EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << widget->objectName().toStdString();
        EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << widget->objectName().toStdString();
        EXPECT_TRUE(widget->parentWidget()->rect().contains(widget->geometry()))
            << widget->objectName().toStdString();
    }
}

inline void expectAccessible(const QDialog &dialog)
{
    for (const QWidget *widget : dialog.findChildren<QWidget *>()) {
        const QString name = widget->objectName();
        const bool takesInput = qobject_cast<const QPushButton *>(widget) != nullptr ||
                                qobject_cast<const QComboBox *>(widget) != nullptr ||
                                (qobject_cast<const QLineEdit *>(widget) != nullptr && name.startsWith(u"ed"));
        if (takesInput) {
            EXPECT_FALSE(widget->accessibleName().isEmpty()) << name.toStdString();
        }
        if (takesInput || qobject_cast<const QRadioButton *>(widget) != nullptr) {
            EXPECT_FALSE(widget->accessibleDescription().isEmpty()) << name.toStdString();
            EXPECT_FALSE(widget->toolTip().isEmpty()) << name.toStdString();
        }
    }
}
