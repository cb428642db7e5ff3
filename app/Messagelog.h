// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Messages.h"

#include <QList>
#include <QString>

#include <functional>

namespace nuvo {

struct Message
{
    QString text;
    TMsgDlgType type;
};

/// While it lives, message boxes become lines on standard error, and are kept.
class MessageLog
{
public:
    /// Tells of a box whose text is printed elsewhere; it is kept and not written.
    using Printed = std::function<bool(const Message &)>;

    explicit MessageLog(Printed printed = {});
    ~MessageLog();
    MessageLog(const MessageLog &) = delete;
    MessageLog &operator=(const MessageLog &) = delete;

    const QList<Message> &messages() const { return messages_; }

private:
    Printed printed_;
    QList<Message> messages_;
    TMessageHandler before_;
};

} // namespace nuvo
