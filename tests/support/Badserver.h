// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <thread>
#include <vector>

/// A server on loopback that does not do what it should. It stands before a PostgreSQL server, hands on what the two
/// sides say, and from a moment on closes the connection or falls silent.
class BadServer
{
public:
    enum Behaviour { Close, FallSilent };

    /// \param behaviour from the client's message number `after` (from 1, the request for encryption and the start-up
    /// among them) on, which is not handed on any more; 0 for a client that has only connected.
    BadServer(const QString &url, Behaviour behaviour, int after);
    /// One that answers the start-up with these bytes and closes.
    explicit BadServer(const QByteArray &answer);
    BadServer(const BadServer &) = delete;
    BadServer &operator=(const BadServer &) = delete;
    ~BadServer();

    /// Its address with the database and the user of the server behind it.
    QString url() const { return url_; }
    /// How many messages the last client has sent so far.
    int messages() const { return messages_; }
    /// Does it from now on.
    void behaveBadly() { after_ = 0; }

private:
    void listen(const QString &path);
    void serve();
    void serveClient(int client);
    bool behavesBadly(int client);

    QString url_;
    int upstreamPort_ = 0;
    Behaviour behaviour_ = Close;
    QByteArray answer_;
    std::atomic<int> after_;
    std::atomic<int> messages_{0};
    std::atomic<bool> ended_{false};
    int listener_ = -1;
    std::vector<std::thread> clients_;
    std::thread thread_;
};
