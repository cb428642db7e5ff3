// SPDX-License-Identifier: MIT
#include "app/Interruptible.h"

#include "engine/Regression.h"

namespace nuvo {

InterruptibleLoads::InterruptibleLoads(TRegression &regression)
{
    constexpr int pace = 50; // ms
    if (regression.UseOfRecords() != RecordUse::Server)
        return;
    hold_.emplace();
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this, &regression] {
        if (hold_->hasCome())
            regression.StopLoad();
    });
    timer_.start(pace);
}

void InterruptibleLoads::check() const
{
    if (hold_)
        hold_->check();
}

} // namespace nuvo
