// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Connection.h"
#include "platform/Fieldtypes.h"

#include <QSqlQuery>
#include <QVariantList>

#include <memory>
#include <vector>

namespace nuvo {

/// From where a dataset wants to read.
struct ReadPosition
{
    qint64 row = 0;      ///< the first row wanted, from 0
    qint64 limit = -1;   ///< how many rows; -1 for all
    qint64 afterRow = 0; ///< the row that follows the one with the key `after`; 0 without a key
    QVariantList after;
};

/// A statement that reads rows.
struct Select
{
    QString sql;
    QVariantList values;   ///< for its "?"
    qint64 skip = 0;       ///< rows to pass over before the first one wanted
    bool limited = false;  ///< whether it ends at the position's limit
    bool optional = false; ///< whether there is another way when it fails
    bool cursor = true;    ///< whether a server's cursor can be declared for it
    std::vector<int>
        keyColumns; ///< result columns that hold the key of a row; empty when reading cannot begin at a key
};

/// A statement under way, read forward. The statement ends with the object.
class RowSource
{
public:
    /// Executes the statement. \throws EDatabaseError "Cannot read <caption>: …".
    static std::unique_ptr<RowSource> open(const Connection &connection, const Select &select,
                                           const QString &caption);
    virtual ~RowSource();

    /// Goes to the next row; false at the end of the data. \throws EDatabaseError when the scan is cut short.
    virtual bool next() = 0;
    /// Whether the statement was ended from outside (its transaction is over) and has to be begun again.
    virtual bool isLost() const { return false; }
    /// Tells how many bytes a row takes, so that not too many are fetched at once.
    void setRowBytes(qint64 bytes) { rowBytes_ = bytes; }

    QVariant value(int column) const { return ofOneIntegerType(query_.value(column)); }
    /// The columns of the result; asked before the first row.
    virtual std::vector<Column> columns();

protected:
    RowSource(const Connection &connection, const QString &caption);

    const Connection &connection_;
    QString caption_;
    QSqlQuery query_;
    qint64 rowBytes_ = 1;
};

} // namespace nuvo
