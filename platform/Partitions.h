// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Connection.h"

#include <QString>

#include <vector>

namespace nuvo {

/// A part of a table that is spread over several, which holds records of its own.
struct NUVO_EXPORT Partition
{
    QString source; ///< as it stands behind FROM
    QString name;   ///< with its schema
    QString server; ///< of a foreign table; else empty
    QString caption() const;
};

/// The parts of a PostgreSQL table of which some are on other servers: partitions with their own partitions, and
/// tables that inherit from it. Empty where a statement on the table itself does as well or is something else: none
/// is foreign, the user may not read one of them by itself, or the table has policies for its rows. \param source the
/// table, quoted, with its schema; conditions know the parts by its name too. \throws EDatabaseError when the
/// catalogue cannot be read.
NUVO_EXPORT std::vector<Partition> partitionsOf(const Connection &connection, const QString &source,
                                                const QString &caption);

/// Whether the records of a source come from another server, or from an engine that plans by itself: such a statement
/// is sent on whole only if it is one plain SELECT.
NUVO_EXPORT bool isPlannedElsewhere(const Connection &connection, const QString &source, const QString &caption);

} // namespace nuvo
