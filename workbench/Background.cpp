// SPDX-License-Identifier: MIT
#include "workbench/Background.h"

#include "platform/Quietthread.h"

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace nuvo {

namespace {

struct Work
{
    std::thread thread;
    std::shared_ptr<std::atomic<bool>> ended;
};

std::vector<Work> &underWay()
{
    static std::vector<Work> list;
    return list;
}

/// Drivers go with the application.
void waitForAll()
{
    for (Work &work : underWay())
        work.thread.join();
    underWay().clear();
}

} // namespace

void inBackground(std::function<void()> work)
{
    static bool waited = false;
    if (!std::exchange(waited, true))
        qAddPostRoutine(waitForAll);
    std::erase_if(underWay(), [](Work &one) {
        if (!*one.ended)
            return false;
        one.thread.join();
        return true;
    });
    const auto ended = std::make_shared<std::atomic<bool>>(false);
    underWay().push_back({quietThread([work = std::move(work), ended] {
                              work();
                              *ended = true;
                          }),
                          ended});
}

void sayLater(std::function<void()> call)
{
    QMetaObject::invokeMethod(qApp, std::move(call), Qt::QueuedConnection);
}

} // namespace nuvo
