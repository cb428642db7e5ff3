// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QString>
#include <QStringList>

#include <functional>

class QObject;

namespace nuvo {

/// What came of opening a database: the tables and views that a user sees in it, or why it cannot be opened.
struct ConnectionAnswer
{
    QStringList tables;
    QString error;               ///< one sentence; empty where it was opened
    bool passwordWanted = false; ///< whether the server might open with a password, or another one
};

/// Opens a database as a DatabaseName leads to it, in a thread of its own, lists its tables and closes it again.
/// `answered` is called on the thread of the application, from its event loop, unless `receiver` is gone by then. A
/// password is for this one connection and kept nowhere. Connections that a program has registered belong to the
/// thread that made them, so that they are an error here.  \pre called on the application's thread.
NUVO_EXPORT void tryConnection(const QString &databaseName, const QString &password, const QObject *receiver,
                               std::function<void(const ConnectionAnswer &)> answered);

} // namespace nuvo
