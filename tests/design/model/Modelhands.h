// SPDX-License-Identifier: MIT
#pragma once

#include "design/model/Modeldialog.h"
#include "design/model/Modeleditor.h"
#include "design/model/Modelmime.h"
#include "engine/Mlrtable.h"
#include "present/Windowtest.h"
#include "support/Databases.h"
#include "support/Text.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QTreeView>

// What a person does with the model editor.

using nuvo::RegressionModel;

/// A model of texts: "TOTEMP", "Log GNP", "Product GNP POP"; "" leaves a place as it is.
inline RegressionModel model(std::initializer_list<const char *> places)
{
    RegressionModel made;
    int next = 0;
    for (const char *text : places) {
        const int place = next++;
        const QStringList words = u(text).split(u' ', Qt::SkipEmptyParts);
        if (words.isEmpty())
            continue;
        made.setField(place, words.size() > 1 ? words[1] : words[0]);
        if (words.size() > 1)
            made.setTransformation(place, words[0]);
        if (words.size() > 2) {
            made.setSecondField(place, words[2]);
            made.setNumber(place, words[2]);
        }
    }
    return made;
}

/// The terms of all places up to the last one that is defined.
inline QStringList terms(const RegressionModel &shown)
{
    QStringList list;
    for (int place = 0; place < RegressionModel::Places; ++place)
        list += shown.term(place);
    while (!list.isEmpty() && list.last().isEmpty())
        list.removeLast();
    return list;
}

/// Ten fields, of which two hold no numbers.
inline nuvo::ModelFields fewFields()
{
    nuvo::ModelFields fields;
    fields.known = true;
    for (const char *name : {"YEAR", "GNP", "UNEMP", "ARMED", "POP", "TOTEMP", "GNPDEFL", "HOURS"})
        fields.fields.push_back({u(name), u("number"), true});
    fields.fields.push_back({u("NAME"), u("text"), false});
    fields.fields.push_back({u("BORN"), u("date"), false});
    return fields;
}

inline void drop(QWidget *where, QMimeData *mime, bool *taken = nullptr)
{
    const std::unique_ptr<QMimeData> owned(mime);
    const QPoint middle = where->rect().center();
    const Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(middle, actions, mime, Qt::LeftButton, {});
    QApplication::sendEvent(where, &enter);
    if (taken != nullptr)
        *taken = enter.isAccepted();
    if (!enter.isAccepted())
        return;
    QDropEvent dropped(middle, actions, mime, Qt::LeftButton, {});
    QApplication::sendEvent(where, &dropped);
}

class ModelHands : public testing::Test
{
protected:
    ModelHands()
    {
        editor.SetFields(fewFields());
        editor.resize(860, 520);
    }

    void open()
    {
        editor.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&editor));
        editor.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&editor));
        list()->setFocus();
    }

    QTreeView *list() { return part<QTreeView>(editor, "FieldsView"); }
    QWidget *field(const char *place) { return part(editor, qPrintable(u("Field") + u(place))); }
    QWidget *second(const char *place) { return part(editor, qPrintable(u("SecondField") + u(place))); }
    QComboBox *transformation(const char *place)
    {
        return part<QComboBox>(editor, qPrintable(u("Transformation") + u(place)));
    }
    QLineEdit *number(const char *place) { return part<QLineEdit>(editor, qPrintable(u("Number") + u(place))); }
    QString shownField(const char *place) { return static_cast<QAbstractButton *>(field(place))->text(); }
    QString shownTerm(const char *place) { return part<QLabel>(editor, qPrintable(u("Term") + u(place)))->text(); }
    /// Empty where nothing is wrong.
    QString trouble(const char *place)
    {
        auto *label = part<QLabel>(editor, qPrintable(u("Problem") + u(place)));
        return label->isVisibleTo(&editor) ? label->text() : QString();
    }
    QString said() { return part<QLabel>(editor, "Said")->text(); }

    QModelIndex row(const char *name)
    {
        const QAbstractItemModel &fields = *list()->model();
        for (int i = 0; i < fields.rowCount(); ++i) {
            if (fields.index(i, 0).data().toString() == u(name))
                return fields.index(i, 0);
        }
        ADD_FAILURE() << "no field " << name;
        return {};
    }
    void mark(const char *name)
    {
        list()->setFocus();
        list()->setCurrentIndex(row(name));
    }
    void doubleClick(const char *name)
    {
        const QPoint place = list()->visualRect(row(name)).center();
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, place);
    }
    void press(const char *name, Qt::Key key)
    {
        mark(name);
        QTest::keyClick(list(), key);
    }
    /// Picks a transformation with the keys.
    void transform(const char *place, const char *name)
    {
        QComboBox *box = transformation(place);
        const int index = box->findText(u(name));
        ASSERT_GE(index, 0) << name;
        box->setFocus();
        while (box->currentIndex() != index)
            QTest::keyClick(box, box->currentIndex() < index ? Qt::Key_Down : Qt::Key_Up);
    }

    TModelEditor editor;
};
