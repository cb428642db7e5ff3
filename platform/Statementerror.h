// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace nuvo {

class Connection;

/// Where in a statement the error is that the database finds in it, in characters from 0; -1 where it finds none, or
/// does not tell. The statement is prepared for that, and not executed.
qsizetype statementErrorPosition(const Connection &connection, const QString &sql);

/// The same from what a server says: the rest of the line from the error on (PostgreSQL's "LINE 1: …" with a "^"
/// below), or the words "near '…'".
qsizetype positionInMessage(const QString &message, const QString &sql);

} // namespace nuvo
