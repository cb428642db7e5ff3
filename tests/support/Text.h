// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Errors.h"

#include <QString>

/// A text of a test, which is UTF-8 in its source.
inline QString u(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// The message of the error that a call throws; empty when it throws none. An error of another class passes through.
template <class Error = EPlatformError, class Call>
QString errorOf(const Call &call)
{
    try {
        call();
    } catch (const Error &error) {
        return error.Message();
    }
    return {};
}
