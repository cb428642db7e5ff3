// SPDX-License-Identifier: MIT
#include "platform/Quietthread.h"

#include <csignal>
#include <utility>

namespace nuvo {

std::thread quietThread(std::function<void()> work)
{
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread(std::move(work));
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

} // namespace nuvo
