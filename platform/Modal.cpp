// SPDX-License-Identifier: MIT
#include "platform/Modal.h"

#include <QApplication>
#include <QDialog>
#include <QPointer>

#include <utility>

namespace {

TModalRunner &currentRunner()
{
    static TModalRunner runner;
    return runner;
}

} // namespace

bool nuvo::somebodyCanAnswer()
{
    if (qobject_cast<QApplication *>(QCoreApplication::instance()) == nullptr)
        return false;
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

int ShowModal(QDialog &dialog)
{
    // A copy: the runner may be replaced while it runs.
    if (const TModalRunner runner = currentRunner())
        return runner(dialog);
    if (nuvo::somebodyCanAnswer())
        return dialog.exec();
    const QPointer<QDialog> shown = &dialog;
    dialog.show();
    if (!shown.isNull())
        dialog.reject();
    return QDialog::Rejected;
}

TModalRunner SetModalRunner(TModalRunner runner)
{
    return std::exchange(currentRunner(), std::move(runner));
}
