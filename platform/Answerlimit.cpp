// SPDX-License-Identifier: MIT
#include "platform/Answerlimit.h"

#include "platform/Quietthread.h"

#include <chrono>
#include <utility>

namespace nuvo {

AnswerLimit::AnswerLimit(int seconds, std::function<void()> cut, int grace)
    : seconds_(seconds), grace_(grace), cut_(std::move(cut))
{
    thread_ = quietThread([this] { watch(); });
}

AnswerLimit::~AnswerLimit()
{
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

bool AnswerLimit::passed() const
{
    const std::lock_guard lock(mutex_);
    return passed_;
}

void AnswerLimit::watch()
{
    std::unique_lock lock(mutex_);
    while (!ended_) {
        changed_.wait(lock, [&] { return ended_ || waiting_ > 0; });
        const long wait = wait_;
        const bool answered = changed_.wait_for(lock, std::chrono::seconds(seconds_ + grace_),
                                                [&] { return ended_ || waiting_ == 0 || wait_ != wait; });
        if (answered)
            continue;
        passed_ = true;
        // The thread that waits cannot go on, and close the connection, before this is done.
        cut_();
        changed_.wait(lock, [&] { return ended_ || waiting_ == 0; });
    }
}

AnswerLimit::Wait::Wait(AnswerLimit *limit) : limit_(limit)
{
    if (limit_ == nullptr)
        return;
    const std::lock_guard lock(limit_->mutex_);
    if (limit_->waiting_++ > 0)
        return;
    ++limit_->wait_;
    limit_->changed_.notify_all();
}

AnswerLimit::Wait::~Wait()
{
    if (limit_ == nullptr)
        return;
    const std::lock_guard lock(limit_->mutex_);
    if (--limit_->waiting_ == 0)
        limit_->changed_.notify_all();
}

} // namespace nuvo
