// SPDX-License-Identifier: MIT
#include "workbench/Waiting.h"

#include "workbench/Background.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QLocale>
#include <QPointer>
#include <QProgressDialog>
#include <QTimer>

#include <exception>
#include <memory>
#include <utility>

namespace nuvo {

namespace {

constexpr int kShownAfter = 500;      // milliseconds
constexpr int kBetweenPaintings = 50; // milliseconds
constexpr int kPatience = 500;        // milliseconds

/// What the thread leaves behind.
struct Outcome
{
    std::atomic<bool> ended{false};
    std::exception_ptr error;
};

/// One that comes between two statements is lost, so it is repeated.
void cancelUntilEnded(const std::shared_ptr<Task> &task, const std::shared_ptr<Outcome> &outcome)
{
    if (outcome->ended)
        return;
    task->Cancel();
    QTimer::singleShot(2 * kBetweenPaintings, qApp, [task, outcome] { cancelUntilEnded(task, outcome); });
}

} // namespace

bool Task::Finish()
{
    State running = Running;
    return state_.compare_exchange_strong(running, Finishing) || running == Finishing;
}

bool Task::Stop()
{
    State running = Running;
    return state_.compare_exchange_strong(running, Stopped) || running == Stopped;
}

void Task::Cancel()
{
    const std::lock_guard lock(mutex_);
    if (cancel_)
        cancel_();
}

Task::Cancelling::Cancelling(Task &task, std::function<void()> cancel) : task_(task)
{
    const std::lock_guard lock(task_.mutex_);
    task_.cancel_ = std::move(cancel);
    if (task_.IsStopped())
        task_.cancel_();
}

Task::Cancelling::~Cancelling()
{
    const std::lock_guard lock(task_.mutex_);
    task_.cancel_ = nullptr;
}

bool waitFor(QWidget *parent, const QString &title, const QString &label, std::function<void(Task &)> work)
{
    const auto task = std::make_shared<Task>();
    const auto outcome = std::make_shared<Outcome>();
    QEventLoop loop;
    const QPointer<QEventLoop> waiting(&loop);
    inBackground([task, outcome, waiting, work = std::move(work)] {
        try {
            work(*task);
        } catch (...) {
            outcome->error = std::current_exception();
        }
        outcome->ended = true;
        sayLater([waiting] {
            if (waiting)
                waiting->quit();
        });
    });
    QProgressDialog progress(label, QCoreApplication::translate("Openfile", "Stop"), 0, 0, parent);
    progress.setWindowTitle(title);
    progress.setWindowModality(Qt::WindowModal);
    progress.setValue(0); // or the time below is not counted
    progress.setMinimumDuration(kShownAfter);
    progress.setAutoReset(false);
    progress.setAutoClose(false);
    // Escape is a shortcut while the window is active; a dialog that it closes otherwise counts as well.
    QObject::connect(&progress, &QDialog::rejected, &progress, &QProgressDialog::cancel);
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &progress, [&] {
        if (progress.wasCanceled()) {
            if (task->Stop())
                loop.quit();
            return;
        }
        if (const int percentage = task->percentage; percentage >= 0) {
            progress.setMaximum(100);
            progress.setValue(percentage);
        } else if (const qint64 records = task->records; records > 0) {
            progress.setLabelText(
                QCoreApplication::translate("Predictions", "%1 records").arg(QLocale().toString(records)));
        }
    });
    timer.start(kBetweenPaintings);
    if (!outcome->ended)
        loop.exec();
    // The program ends, or the person has ended the work, be it in the moment in which it was done: what would follow
    // it is not wanted. Most work is then undone within a moment.
    const bool stopped = (!outcome->ended || progress.wasCanceled()) && task->Stop();
    if (stopped)
        cancelUntilEnded(task, outcome);
    const QDeadlineTimer patience = stopped ? QDeadlineTimer(kPatience) : QDeadlineTimer::Forever;
    while (!outcome->ended && !patience.hasExpired())
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
    if (task->IsStopped())
        return false;
    if (outcome->error)
        std::rethrow_exception(outcome->error);
    return true;
}

} // namespace nuvo
