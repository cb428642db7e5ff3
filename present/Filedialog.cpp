// SPDX-License-Identifier: MIT
#include "present/Filedialog.h"

#include "platform/Modal.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>
#include <QRegularExpression>
#include <QScopeGuard>

namespace nuvo {

QString askFileName(QWidget *parent, const QString &title, const QStringList &kinds, const QString &proposed)
{
    static const QRegularExpression pattern(QStringLiteral("\\*\\.(\\w+)"));
    const auto endingOf = [](const QString &kind) { return pattern.match(kind).captured(1); };

    const QPointer<QFileDialog> dialog = new QFileDialog(parent, title);
    const auto gone = qScopeGuard([&dialog] { delete dialog; });
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilters(kinds);
    dialog->setDefaultSuffix(endingOf(kinds.first()));
    QObject::connect(dialog, &QFileDialog::filterSelected, dialog,
                     [&](const QString &kind) { dialog->setDefaultSuffix(endingOf(kind)); });
    if (!proposed.isEmpty())
        dialog->selectFile(proposed);
    if (ShowModal(*dialog) != QDialog::Accepted || dialog.isNull())
        return {};
    return dialog->selectedFiles().value(0);
}

QString askExistingFile(QWidget *parent, const QString &title, const QStringList &kinds, const QString &current)
{
    const QPointer<QFileDialog> dialog = new QFileDialog(parent, title);
    const auto gone = qScopeGuard([&dialog] { delete dialog; });
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilters(kinds);
    if (QFileInfo(current).isFile())
        dialog->selectFile(QFileInfo(current).absoluteFilePath());
    if (ShowModal(*dialog) != QDialog::Accepted || dialog.isNull())
        return {};
    return dialog->selectedFiles().value(0);
}

} // namespace nuvo
