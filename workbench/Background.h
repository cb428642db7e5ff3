// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace nuvo {

/// Does work that may wait for a database, in a thread that nobody waits for but the end of the application. What it
/// has to say it says by calls in the application's event loop (sayLater). \pre called on the application's thread
void inBackground(std::function<void()> work);
/// From such work: calls on the application's thread, in its event loop.
void sayLater(std::function<void()> call);

} // namespace nuvo
