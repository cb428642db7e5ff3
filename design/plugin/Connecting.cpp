// SPDX-License-Identifier: MIT
#include "design/plugin/Connecting.h"

#include "platform/Dataset.h"
#include "platform/Formfolder.h"
#include "platform/Messages.h"
#include "present/Connectiondlg.h"
#include "present/Forms.h"

#include <QMenu>
#include <QTimer>
#include <QToolButton>

#include <optional>

namespace nuvo {

namespace {

void connectSelected(const Editing &editing)
{
    const QString property = QStringLiteral("DatabaseName");
    const QList<TComponent *> selected = editing.Selected(property);
    const auto *dataset = selected.isEmpty() ? nullptr : qobject_cast<const TDataSet *>(selected.first());
    if (dataset == nullptr)
        return;
    const std::optional<QString> name =
        askDatabaseName(windowInFront(), dataset->DatabaseName(), formFolder(*dataset));
    // The dialog runs events, and with them the form can go.
    const QList<TComponent *> left = editing.Selected(property);
    if (name && !left.isEmpty())
        editing.Set(left, property, *name);
}

} // namespace

void offerServers(QToolButton &button, QObject &owner, const Editing &editing)
{
    auto *menu = new QMenu(&button);
    menu->setObjectName(QStringLiteral("nuvoServers"));
    // What is opened may change the row, so it waits for the click to be over.
    menu->addAction(QStringLiteral("Connection…"), &owner, [&owner, &editing] {
        QTimer::singleShot(0, &owner, [&editing] { guarded([&editing] { connectSelected(editing); }); });
    });
    button.setMenu(menu);
    button.setPopupMode(QToolButton::MenuButtonPopup);
    button.setToolTip(QStringLiteral("Choose a file; the arrow: a server"));
}

} // namespace nuvo
