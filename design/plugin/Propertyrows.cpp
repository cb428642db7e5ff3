#include "design/plugin/Propertyrows.h"

#include "present/Forms.h"

#include <QBoxLayout>
#include <QChildEvent>
#include <QDesignerPropertyEditorInterface>
#include <QMenu>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>

namespace {

const QString ButtonName = QStringLiteral("nuvoEditor");

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

/// \param row the widget that edits a row: the editor itself and, last, the arrow that resets.
void nuvo::PropertyRows::AddButton(QWidget &row)
{
    const QWidget *viewport = row.parentWidget();
    const auto *tree = viewport == nullptr ? nullptr : qobject_cast<const QTreeView *>(viewport->parentWidget());
    auto *layout = qobject_cast<QBoxLayout *>(row.layout());
    if (tree == nullptr || layout == nullptr || layout->count() == 0 || row.findChild<QToolButton *>(ButtonName))
        return;
    const QString property = editing_.Core().propertyEditor()->currentPropertyName();
    // The rows below a property's own (whether it is translated) say its name too.
    if (tree->currentIndex().siblingAtColumn(0).data().toString() != property)
        return;
    const QList<TComponent *> components = editing_.Selected(property);
    const TPropertyAttributes attributes =
        components.isEmpty() ? TPropertyAttributes() : editing_.Attributes(*components.first(), property);
    if (!attributes)
        return;

    auto *button = new QToolButton(&row);
    button->setObjectName(ButtonName);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::MinimumExpanding);
    // What is opened may change the row, so it waits for the click to be over.
    if (attributes & paDialog) {
        button->setText(QStringLiteral("…"));
        button->setToolTip(QStringLiteral("Edit %1").arg(property));
        connect(button, &QToolButton::clicked, this, [this, property] {
            QTimer::singleShot(0, this, [this, property] {
                const QList<TComponent *> selected = editing_.Selected(property);
                if (!selected.isEmpty())
                    editing_.Edit(selected, property);
            });
        });
    } else {
        button->setArrowType(Qt::DownArrow);
        button->setToolTip(QStringLiteral("Choose %1").arg(property));
        connect(button, &QToolButton::clicked, this, [this, button, property] { DropDown(*button, property); });
    }
    if (components.first()->property(property.toUtf8().constData()).typeId() == QMetaType::QStringList) {
        // The list's lines mean something only in the dialog.
        layout->itemAt(0)->widget()->hide();
        button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::MinimumExpanding);
        button->setText(QStringLiteral("Define…"));
    }
    layout->insertWidget(layout->count() - 1, button);
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
