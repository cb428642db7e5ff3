// SPDX-License-Identifier: MIT
#include "app/Messagelog.h"

#include "app/Console.h"

#include <utility>

namespace nuvo {

MessageLog::MessageLog(Printed printed)
    : printed_(std::move(printed)),
      before_(SetMessageHandler([this](const QString &text, TMsgDlgType type, unsigned, int) -> int {
          const Message message{text, type};
          if (!printed_ || !printed_(message))
              writeErrorLine(messageLine(text, type));
          messages_.append(message);
          return mrOk;
      }))
{
}

MessageLog::~MessageLog()
{
    SetMessageHandler(before_);
}

} // namespace nuvo
