// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Canceller.h"

namespace nuvo::libmysql {

/// How a server is asked, over a second connection with the same account, to end the statement of one behind Qt's
/// driver for MySQL, with the client library that the driver has loaded; empty where that is not what it is.
CancelRequest cancelRequest(const QSqlDatabase &database);

} // namespace nuvo::libmysql
