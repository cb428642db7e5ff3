// SPDX-License-Identifier: MIT
#include "engine/Reading.h"

#include "platform/Quietthread.h"

#include <utility>

namespace nuvo {

Reading::Reading(std::unique_ptr<RecordReader> reader, std::function<void()> ended)
    : reader_(std::move(reader)), ended_(std::move(ended))
{
    thread_ = quietThread([this] { run(); });
}

Reading::~Reading()
{
    cancel();
    wait();
}

void Reading::run()
{
    try {
        sums_ = reader_->read();
    } catch (...) {
        error_ = std::current_exception();
    }
    ended_();
}

void Reading::cancel()
{
    if (!cancelled_.exchange(true))
        reader_->cancel();
}

void Reading::wait()
{
    if (thread_.joinable())
        thread_.join();
}

std::optional<RecordSums> Reading::take()
{
    wait();
    if (cancelled_)
        return {};
    if (error_)
        std::rethrow_exception(std::exchange(error_, nullptr));
    return std::exchange(sums_, std::nullopt);
}

} // namespace nuvo
