// SPDX-License-Identifier: MIT
#include "design/plugin/Propertyrows.h"

#include "design/plugin/Connecting.h"
#include "design/plugin/Rowtexts.h"
#include "design/plugin/Sheet.h"
#include "present/Forms.h"

#include <QAction>
#include <QBoxLayout>
#include <QChildEvent>
#include <QDesignerFormWindowInterface>
#include <QDesignerPropertyEditorInterface>
#include <QDesignerTaskMenuExtension>
#include <QExtensionManager>
#include <QMenu>
#include <QPointer>
#include <QStyle>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>
#include <QUndoStack>

namespace {

const QString ButtonName = QStringLiteral("nuvoEditor");
const QString ClearButtonName = QStringLiteral("nuvoClear");

} // namespace

nuvo::PropertyRows::PropertyRows(const Editing &editing, QObject *parent) : QObject(parent), editing_(editing)
{
    for (const QTreeView *tree : editing_.Core().propertyEditor()->findChildren<QTreeView *>())
        tree->viewport()->installEventFilter(this);
}

bool nuvo::PropertyRows::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ChildAdded) {
        static_cast<QChildEvent *>(event)->child()->installEventFilter(this);
    } else if (event->type() == QEvent::Show && watched->isWidgetType()) {
        guarded([&] { AddButton(*static_cast<QWidget *>(watched)); });
    }
    return QObject::eventFilter(watched, event);
}

/// \param row the widget that edits a row.
void nuvo::PropertyRows::AddButton(QWidget &row)
{
    const QWidget *viewport = row.parentWidget();
    const auto *tree = viewport == nullptr ? nullptr : qobject_cast<const QTreeView *>(viewport->parentWidget());
    if (tree == nullptr || row.findChild<QToolButton *>(ButtonName))
        return;
    const QString property = editing_.Core().propertyEditor()->currentPropertyName();
    // The rows below a property's own (whether it is translated) say its name too.
    if (tree->currentIndex().siblingAtColumn(0).data().toString() != property)
        return;
    if (property == QLatin1String(ModelRow))
        return AddModelButton(row);
    const QList<TComponent *> components = editing_.Selected(property);
    const TPropertyAttributes attributes =
        components.isEmpty() ? TPropertyAttributes() : editing_.Attributes(*components.first(), property);
    if (!attributes)
        return;

    TComponent &first = *components.first();
    if (isDefinition(first, property)) {
        AddDefinitionButtons(row, first, property);
    } else if (attributes & paDialog) {
        const bool lines = first.property(property.toUtf8().constData()).typeId() == QMetaType::QStringList;
        QToolButton *button = Put(row, lines ? QStringLiteral("Edit…") : QStringLiteral("…"), lines);
        button->setToolTip(QStringLiteral("Edit %1").arg(property));
        connect(button, &QToolButton::clicked, this, [this, property] { EditLater(property); });
        if (property == QLatin1String("DatabaseName"))
            offerServers(*button, *this, editing_);
    } else {
        QToolButton *button = Put(row, QString(), false);
        button->setArrowType(Qt::DownArrow);
        button->setToolTip(QStringLiteral("Choose %1").arg(property));
        connect(button, &QToolButton::clicked, this, [this, button, property] { DropDown(*button, property); });
    }
}

/// A button at the right end of a row.
/// \param instead whether it stands in the place of the designer's own editor.
QToolButton *nuvo::PropertyRows::Put(QWidget &row, const QString &text, bool instead)
{
    auto *layout = qobject_cast<QBoxLayout *>(row.layout());
    if (layout == nullptr) { // the editor is a single widget, the button of a list's texts
        layout = new QHBoxLayout(&row);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
    }
    auto *button = new QToolButton(&row);
    button->setObjectName(ButtonName);
    button->setText(text);
    button->setSizePolicy(instead ? QSizePolicy::Ignored : QSizePolicy::Fixed, QSizePolicy::MinimumExpanding);
    if (instead) {
        for (int i = 0; i < layout->count(); ++i) {
            if (QWidget *widget = layout->itemAt(i)->widget())
                widget->hide();
        }
        row.setFocusProxy(button);
    }
    layout->addWidget(button);
    return button;
}

/// A definition's six texts mean something only in its dialog.
void nuvo::PropertyRows::AddDefinitionButtons(QWidget &row, TComponent &component, const QString &property)
{
    QToolButton *define = Put(row, QString(), true);
    define->setToolTip(QStringLiteral("Define %1").arg(property));
    connect(define, &QToolButton::clicked, this, [this, property] { EditLater(property); });

    QToolButton *clear = Put(row, QString(), false);
    clear->setObjectName(ClearButtonName);
    clear->setIcon(row.style()->standardIcon(QStyle::SP_LineEditClearButton));
    clear->setToolTip(QStringLiteral("Clear the definition of %1").arg(property));
    connect(clear, &QToolButton::clicked, this, [this, property] {
        QTimer::singleShot(0, this, [this, property] { editing_.Clear(editing_.Selected(property), {property}); });
    });

    const auto show = [define, clear, shown = QPointer<TComponent>(&component), property] {
        const QString term = shown.isNull() ? QString() : definitionText(*shown, property);
        define->setText(term.isEmpty() ? QStringLiteral("Define…") : term + QStringLiteral(" …"));
        clear->setEnabled(!term.isEmpty());
    };
    show();
    if (auto *form = QDesignerFormWindowInterface::findFormWindow(static_cast<QWidget *>(&component)))
        connect(form->commandHistory(), &QUndoStack::indexChanged, define, show);
}

void nuvo::PropertyRows::AddModelButton(QWidget &row)
{
    QToolButton *button = Put(row, QStringLiteral("Model…"), true);
    button->setToolTip(QStringLiteral("Define all variables of the model"));
    connect(button, &QToolButton::clicked, this, [this] {
        QTimer::singleShot(0, this, [this] {
            QDesignerFormEditorInterface &core = editing_.Core();
            const auto *menu =
                qt_extension<QDesignerTaskMenuExtension *>(core.extensionManager(), core.propertyEditor()->object());
            if (menu == nullptr)
                return;
            for (QAction *action : menu->taskActions()) {
                if (action->data().toString() == QLatin1String(ModelRow))
                    return action->trigger();
            }
        });
    });
}

/// What is opened may change the row, so it waits for the click to be over.
void nuvo::PropertyRows::EditLater(const QString &property)
{
    QTimer::singleShot(0, this, [this, property] {
        const QList<TComponent *> selected = editing_.Selected(property);
        if (!selected.isEmpty())
            editing_.Edit(selected, property);
    });
}

void nuvo::PropertyRows::DropDown(const QWidget &button, const QString &property) const
{
    const QList<TComponent *> components = editing_.Selected(property);
    if (components.isEmpty())
        return;
    const QStringList values = editing_.Values(components, property);
    if (values.isEmpty())
        return;
    QMenu menu;
    for (const QString &value : values)
        menu.addAction(value);
    if (const QAction *chosen = menu.exec(button.mapToGlobal(QPoint(0, button.height()))); chosen != nullptr)
        editing_.Set(editing_.Selected(property), property, values[menu.actions().indexOf(chosen)]);
}
