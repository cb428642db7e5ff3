// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Connection.h"
#include "platform/Fieldtypes.h"
#include "platform/Rowsource.h"
#include "platform/Sqltext.h"

#include <QVariantMap>

#include <vector>

/// A statement of a query, from its text to what is executed.
namespace nuvo {

/// query "first line of the text".
QString queryCaption(const QString &sql);

/// The statement with the values of its parameters, given by their names in lower case.
/// \throws EDatabaseError for a parameter without a value.
Select selectOf(const Connection &connection, const ReadingStatement &statement, const QVariantMap &params,
                const QString &caption);

/// The columns of the result with their declared types, where the engine tells; none where the statement itself has
/// to.
std::vector<Column> describeStatement(const Connection &connection, const ReadingStatement &statement);

} // namespace nuvo
