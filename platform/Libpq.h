// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Canceller.h"

#include <QString>

class QSqlQuery;

namespace nuvo {

/// What Qt's driver does not offer of PostgreSQL's client library, which it has loaded already. Everything here does
/// nothing where the database is not open or not behind that driver.
namespace libpq {

/// The library writes notices, and the last words of a server that goes down, to standard error, where a program has
/// lines of its own. What matters of them comes back as an error of the statement.
void silenceNotices(const QSqlDatabase &database);

/// The library's own message about the connection; empty when there is none.
QString errorMessage(const QSqlDatabase &database);

/// The number of the type of a result's column, from 0, as the server's catalogue has it; 0 where it is not known.
/// Qt's own knowledge of it went with Qt 6.8.
int columnType(const QSqlQuery &query, int column);

/// How the server is asked, over a connection of its own, to end the statement that a connection waits for; empty
/// where the driver is not PostgreSQL's own.
CancelRequest cancelRequest(const QSqlDatabase &database);

/// Whether a server refuses these parts of an address for want of a password, or of another one. Connects anew.
bool wantsPassword(const QSqlDatabase &database, int connectTimeout);

/// Makes whoever waits for an answer see a lost connection. May be called while another thread waits.
void cut(const QSqlDatabase &database);

} // namespace libpq
} // namespace nuvo
