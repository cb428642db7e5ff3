// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QString>

namespace nuvo {

/// The parts of scheme://user@host:port/name?connect_timeout=S&read_timeout=S, percent-decoded. Each part but the
/// scheme may be missing.
struct ServerAddress
{
    QString scheme; ///< in lower case
    QString user;
    QString host;
    QString port;
    QString name;
    int connectTimeout = 5; ///< seconds, at least 1
    int readTimeout = 0;    ///< seconds that one answer may take; 0 for as long as it takes
};

/// \throws EDatabaseError with one sentence for a URL that is not of this form, and for one that holds a password,
/// which is never repeated.
NUVO_EXPORT ServerAddress serverAddress(const QString &url);

/// The URL of these parts, percent-encoded where need be and without options that say what goes without saying.
NUVO_EXPORT QString databaseName(const ServerAddress &address);

/// \throws EDatabaseError where what follows "odbc:" holds a password, in whatever form and case.
void refuseOdbcPassword(const QString &connectionString);

/// Whether a DatabaseName is the address of a server or of an ODBC source, not the path of a file.
NUVO_EXPORT bool isServerName(const QString &databaseName);

/// Whether it is the path of a file that is looked for beside a form or in the working folder.
bool isRelativeFile(const QString &databaseName);

/// Why the file of a DatabaseName cannot be opened that databasePlace() has not found: half a sentence that names the
/// folders it was looked for in.
/// \param folder the form's; empty for none.
QString noSuchDatabase(const QString &databaseName, const QString &folder);

/// The name of a database as a message may show it: what is or may be a password in it is "…".
NUVO_EXPORT QString withoutPasswords(const QString &databaseName);

} // namespace nuvo
