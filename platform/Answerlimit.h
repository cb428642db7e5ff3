// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace nuvo {

/// Ends a connection whose server does not answer in time: a client library that waits for an answer waits for ever.
/// Used by one thread; the connection is cut on a thread of its own, which does nothing else.
class AnswerLimit
{
public:
    /// \param cut makes the wait end with an error; called on another thread, while this one waits.
    /// \param grace seconds more than these that are waited, for an answer that says so itself.
    AnswerLimit(int seconds, std::function<void()> cut, int grace = 0);
    AnswerLimit(const AnswerLimit &) = delete;
    AnswerLimit &operator=(const AnswerLimit &) = delete;
    ~AnswerLimit();

    int seconds() const { return seconds_; }
    /// Whether an answer did not come in time; the connection is of no use then.
    bool passed() const;

    /// While one lives, an answer is waited for. None is needed for a null limit. Calls nest; the first counts.
    class Wait
    {
    public:
        explicit Wait(AnswerLimit *limit);
        Wait(const Wait &) = delete;
        Wait &operator=(const Wait &) = delete;
        ~Wait();

    private:
        AnswerLimit *limit_;
    };

private:
    void watch();

    const int seconds_;
    const int grace_;
    const std::function<void()> cut_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    int waiting_ = 0;
    long wait_ = 0; // number of the wait under way
    bool passed_ = false;
    bool ended_ = false;
    std::thread thread_;
};

} // namespace nuvo
