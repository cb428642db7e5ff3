// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Connection.h"
#include "platform/Fieldtypes.h"

#include <QStringList>

#include <vector>

namespace nuvo {

/// A column by which records are ordered.
struct KeyPart
{
    QString expression; // as it stands in a statement
    int field = -1;     // position among the fields; -1 for the engine's own row number
    bool nullable = false;
};

/// A table or view as its database describes it.
struct TableDescription
{
    QString source; ///< the table, quoted, with its schema where there is one
    std::vector<Column> columns;
    QStringList expressions;    ///< of the columns, as selected
    std::vector<bool> nullable; ///< by column
    std::vector<KeyPart> primaryKey;
    bool keyIsUnique = true;
    QString rowNumber;            ///< the engine's own row number where there is one, quoted
    bool rowNumberIsScan = false; ///< whether rows come in its order anyway

    /// \throws EDatabaseError "No table …" with the tables there are, and where the catalogue cannot be read.
    static TableDescription of(const Connection &connection, const QString &name);

    KeyPart keyPart(int field, Dialect dialect) const;

private:
    bool describeSqlite(const Connection &connection, const QString &name);
    bool describePostgres(const Connection &connection, const QString &name);
    bool describeMysql(const Connection &connection, const QString &name);
    bool describeOther(const Connection &connection, const QString &name);
    void addColumn(const Column &column, bool canBeNull, Dialect dialect);
};

/// A filter as it stands behind WHERE, between parentheses; empty for an empty one.
/// \throws EDatabaseError for a text that is not one condition.
QString filterCondition(const QString &filter, Dialect dialect);

} // namespace nuvo
