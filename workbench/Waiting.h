// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <atomic>
#include <functional>
#include <mutex>

class QString;
class QWidget;

namespace nuvo {

/// What work in a thread, and the window that shows how far it is, tell each other.
class Task
{
public:
    /// How much is done, in percent; below 0 where nobody knows.
    std::atomic<int> percentage{-1};
    /// That were read so far.
    std::atomic<qint64> records{0};

    /// Whether the person has ended it: what it has not finished is to be left undone.
    bool IsStopped() const { return state_ == Stopped; }
    /// The work is at its last step, which cannot be taken back. False where it was ended before.
    bool Finish();
    /// Ends it; false where it is at its last step.
    bool Stop();

    /// As long as this lives, `cancel` is called, from another thread and perhaps again and again, once the work was
    /// ended: it ends a statement that is waited for.
    class Cancelling
    {
    public:
        Cancelling(Task &task, std::function<void()> cancel);
        Cancelling(const Cancelling &) = delete;
        Cancelling &operator=(const Cancelling &) = delete;
        ~Cancelling();

    private:
        Task &task_;
    };
    void Cancel();

private:
    enum State { Running, Stopped, Finishing };

    std::atomic<State> state_{Running};
    std::mutex mutex_;
    std::function<void()> cancel_;
};

/// Does work in a thread. Meanwhile the window lives and shows how far that is, and Escape ends it, at once: a thread
/// that a database does not let go is not waited for, and what comes of it counts no more. So the work has to own
/// what it uses. \return whether it was not ended. \throws what the work throws.
bool waitFor(QWidget *parent, const QString &title, const QString &label, std::function<void(Task &)> work);

} // namespace nuvo
