// SPDX-License-Identifier: MIT
#pragma once

#include "app/Console.h"

#include <QTimer>

#include <optional>

class TRegression;

namespace nuvo {

/// While one lives Ctrl-C ends the statement that a server works on for the component before it ends the program: a
/// server does not notice that nobody waits any more. Does nothing for a component that has no server add up. One at
/// a time.
class InterruptibleLoads
{
public:
    explicit InterruptibleLoads(TRegression &regression);
    InterruptibleLoads(const InterruptibleLoads &) = delete;
    InterruptibleLoads &operator=(const InterruptibleLoads &) = delete;

    /// \throws Interrupted when a signal has come.
    void check() const;

private:
    std::optional<InterruptHold> hold_;
    QTimer timer_;
};

} // namespace nuvo
