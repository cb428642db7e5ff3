// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Recordsums.h"
#include "platform/Export.h"

#include <atomic>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

namespace nuvo {

/// A reader of every record at work in a thread of its own. Used by one thread, which it does not disturb.
class NUVO_EXPORT Reading
{
public:
    /// Begins. `ended` is called in the reading's thread as the last thing that it does.
    Reading(std::unique_ptr<RecordReader> reader, std::function<void()> ended);
    Reading(const Reading &) = delete;
    Reading &operator=(const Reading &) = delete;
    /// Ends it and waits for the end.
    ~Reading();

    /// Asks for the end, which comes soon. It then counts as cancelled, whether or not everything had been read.
    void cancel();
    bool cancelled() const { return cancelled_; }
    /// Waits for the end.
    void wait();

    /// After the end: what was read; empty when it was cancelled. \throws what the reader threw.
    std::optional<RecordSums> take();

    const RecordReader &reader() const { return *reader_; }

private:
    void run();

    const std::unique_ptr<RecordReader> reader_;
    const std::function<void()> ended_;
    std::atomic<bool> cancelled_{false};
    std::optional<RecordSums> sums_;
    std::exception_ptr error_;
    std::thread thread_; ///< the last: it uses all the others
};

} // namespace nuvo
