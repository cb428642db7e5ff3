// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <functional>
#include <thread>

namespace nuvo {

/// Starts a thread that no signal is delivered to: signals are the program's business.
NUVO_EXPORT std::thread quietThread(std::function<void()> work);

} // namespace nuvo
