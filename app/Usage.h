// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <stdexcept>

namespace nuvo {

/// A wrong command line (status 2). The message is one sentence without the program's name.
class UsageError : public std::runtime_error
{
public:
    /// \param lines more to say, in lines of its own
    explicit UsageError(const QString &sentence, QString lines = {})
        : std::runtime_error(sentence.toStdString()), lines_(std::move(lines))
    {
    }
    QString Message() const { return QString::fromUtf8(what()); }
    const QString &Lines() const { return lines_; }

private:
    QString lines_;
};

} // namespace nuvo
