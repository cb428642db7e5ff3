// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Serverstatements.h"
#include "platform/Connection.h"
#include "platform/Fieldtypes.h"
#include "platform/Scan.h"

#include <QStringList>
#include <QVariantList>

#include <vector>

namespace nuvo {

/// The records of a table or a query as statements of sums are to name them.
struct ServerRecords
{
    QString caption;
    std::vector<Column> columns;
    QStringList expressions; ///< of these in a statement
    ServerSource whole;
    std::vector<ServerSource> parts; ///< of a table spread over servers
    QString condition;               ///< of the records; empty for all
    QVariantList values;             ///< for the "?" of a query

    /// \throws EDatabaseError for a table that is not there, a statement that does not read, a filter that is no
    /// condition.
    static ServerRecords of(const Connection &connection, const ScanSource &source);

    /// \throws EDatabaseError for an unknown field and one that is no number.
    SqlField field(const QString &name, const SqlNumbers &sql) const;

private:
    void describeTable(const Connection &connection, const ScanSource &source);
    void describeQuery(const Connection &connection, const ScanSource &source);
};

} // namespace nuvo
