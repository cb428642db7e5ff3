// SPDX-License-Identifier: MIT
#include "support/Badserver.h"

#include <QUrl>

#include <gtest/gtest.h>

#include <array>
#include <limits>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

sockaddr_in loopback(int port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(uint16_t(port));
    return address;
}

} // namespace

BadServer::BadServer(const QString &url, Behaviour behaviour, int after) : behaviour_(behaviour), after_(after)
{
    const QUrl upstream(url);
    upstreamPort_ = upstream.port();
    listen(upstream.userName() + QStringLiteral("@127.0.0.1:%1") + upstream.path());
}

BadServer::BadServer(const QByteArray &answer) : answer_(answer), after_(std::numeric_limits<int>::max())
{
    listen(QStringLiteral("nuvo@127.0.0.1:%1/db"));
}

BadServer::~BadServer()
{
    ended_ = true;
    thread_.join();
    for (std::thread &client : clients_)
        client.join();
    ::close(listener_);
}

void BadServer::listen(const QString &path)
{
    listener_ = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    const bool ready = ::bind(listener_, reinterpret_cast<const sockaddr *>(&address), size) == 0 &&
                       ::listen(listener_, 8) == 0 &&
                       ::getsockname(listener_, reinterpret_cast<sockaddr *>(&address), &size) == 0;
    EXPECT_TRUE(ready);
    url_ = QStringLiteral("postgresql://") + path.arg(ntohs(address.sin_port));
    thread_ = std::thread([this] { serve(); });
}

void BadServer::serve()
{
    while (!ended_) {
        pollfd waiting = {listener_, POLLIN, 0};
        if (::poll(&waiting, 1, 20) <= 0)
            continue;
        const int client = ::accept(listener_, nullptr, nullptr);
        if (client >= 0)
            clients_.emplace_back([this, client] { serveClient(client); });
    }
}

/// False where the client is to be served on; true where there is nothing more to do for it.
bool BadServer::behavesBadly(int client)
{
    if (messages_ < after_)
        return false;
    // Whoever falls silent keeps the connection.
    while (behaviour_ == FallSilent && !ended_) {
        pollfd gone = {client, POLLRDHUP, 0};
        if (::poll(&gone, 1, 20) > 0)
            break;
    }
    return true;
}

void BadServer::serveClient(int client)
{
    messages_ = 0;
    int upstream = -1;
    if (upstreamPort_ > 0) {
        const sockaddr_in address = loopback(upstreamPort_);
        upstream = ::socket(AF_INET, SOCK_STREAM, 0);
        EXPECT_EQ(::connect(upstream, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    }
    std::array<char, 65536> bytes;
    while (!ended_ && !behavesBadly(client)) {
        std::array<pollfd, 2> ends = {{{client, POLLIN, 0}, {upstream, POLLIN, 0}}};
        if (::poll(ends.data(), 2, 20) <= 0)
            continue;
        if (ends[1].revents != 0) {
            const ssize_t count = ::recv(upstream, bytes.data(), bytes.size(), 0);
            if (count <= 0 || ::send(client, bytes.data(), size_t(count), MSG_NOSIGNAL) != count)
                break;
        }
        if (ends[0].revents != 0) {
            const ssize_t count = ::recv(client, bytes.data(), bytes.size(), 0);
            if (count <= 0)
                break;
            ++messages_;
            if (behavesBadly(client))
                break;
            if (upstream >= 0) {
                if (::send(upstream, bytes.data(), size_t(count), MSG_NOSIGNAL) != count)
                    break;
            } else if (messages_ == 1) {
                ::send(client, "N", 1, MSG_NOSIGNAL); // no encryption
            } else {
                ::send(client, answer_.constData(), size_t(answer_.size()), MSG_NOSIGNAL);
                break;
            }
        }
    }
    ::close(client);
    if (upstream >= 0)
        ::close(upstream);
}
