// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Errors.h"
#include "platform/Export.h"

#include <QString>

namespace nuvo {

/// A server that lets nobody in without a password, or not with the one that it was given.
class NUVO_EXPORT EPasswordError : public EDatabaseError
{
public:
    using EDatabaseError::EDatabaseError;
    ~EPasswordError() override;
};

/// The password that every connection of this program to a server is made with from now on, where none is given to
/// it; an empty one is forgotten. Kept in memory alone and until the program ends. Whoever connects to the server as
/// another user, or to another of its databases, is not given it. Can be called on any thread.
NUVO_EXPORT void setPassword(const QString &databaseName, const QString &password);
/// Empty where none was set.
NUVO_EXPORT QString passwordOf(const QString &databaseName);

} // namespace nuvo
