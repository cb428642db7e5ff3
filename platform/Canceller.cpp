// SPDX-License-Identifier: MIT
#include "platform/Canceller.h"

#include "platform/Libmysql.h"
#include "platform/Libpq.h"
#include "platform/Libsqlite.h"
#include "platform/Quietthread.h"

#include <QSqlDatabase>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

#include <sys/socket.h>

namespace nuvo {

namespace {

CancelRequest requestFor(const QSqlDatabase &database)
{
    if (const Libsqlite *const library = Libsqlite::of(database))
        return {[library, handle = Libsqlite::handleOf(database)] { library->interrupt(handle); }, false};
    CancelRequest request = libpq::cancelRequest(database);
    return request.ask ? request : libmysql::cancelRequest(database);
}

} // namespace

struct Canceller::Order
{
    explicit Order(CancelRequest what) : request(std::move(what)) {}

    const CancelRequest request;
    std::mutex mutex;
    std::condition_variable changed;
    bool asking = false;
    bool watched = false;
    bool forgotten = false;
};

void Canceller::use(const QSqlDatabase &database)
{
    forget();
    CancelRequest request = requestFor(database);
    if (request.ask)
        order_ = std::make_shared<Order>(std::move(request));
}

void Canceller::forget()
{
    if (!order_)
        return;
    {
        const std::lock_guard lock(order_->mutex);
        order_->forgotten = true;
    }
    order_->changed.notify_all();
    order_.reset();
}

void Canceller::cancel() const
{
    constexpr std::chrono::milliseconds moment(200);
    static constexpr std::chrono::seconds patience(3);
    const std::shared_ptr<Order> order = order_;
    if (!order)
        return;
    if (!order->request.takesTime) {
        order->request.ask();
        return;
    }
    std::unique_lock lock(order->mutex);
    if (std::exchange(order->asking, true))
        return;
    // The libraries wait for a server that is silent as long as that is.
    quietThread([order] {
        order->request.ask();
        {
            const std::lock_guard asked(order->mutex);
            order->asking = false;
        }
        order->changed.notify_all();
    }).detach();
    if (!std::exchange(order->watched, true))
        quietThread([order] {
            std::unique_lock watch(order->mutex);
            const int socket = order->request.socket;
            if (!order->changed.wait_for(watch, patience, [&] { return order->forgotten; }) && socket >= 0)
                ::shutdown(socket, SHUT_RDWR);
        }).detach();
    order->changed.wait_for(lock, moment, [&] { return !order->asking; });
}

} // namespace nuvo
