#pragma once

#include <QString>

#include <stdexcept>

namespace nuvo {

/// A wrong command line (status 2). The message is one sentence without the program's name.
class UsageError : public std::runtime_error
{
public:
    explicit UsageError(const QString &sentence) : std::runtime_error(sentence.toStdString()) {}
    QString Message() const { return QString::fromUtf8(what()); }
};

} // namespace nuvo
