#include "platform/Modal.h"

#include <QDialog>
#include <QGuiApplication>
#include <QPointer>

#include <utility>

namespace {

TModalRunner &currentRunner()
{
    static TModalRunner runner;
    return runner;
}

} // namespace

int ShowModal(QDialog &dialog)
{
    // A copy: the runner may be replaced while it runs.
    if (const TModalRunner runner = currentRunner())
        return runner(dialog);
    const QString platform = QGuiApplication::platformName();
    if (platform != QLatin1String("offscreen") && platform != QLatin1String("minimal"))
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
