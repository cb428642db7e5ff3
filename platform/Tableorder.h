// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Rowsource.h"
#include "platform/Tabledescription.h"

namespace nuvo {

struct ScanSource;

/// A table with the order that its records are read in, and the statements that read them in it.
struct TableOrder : TableDescription
{
    QString filter; ///< an SQL condition
    bool filtered = false;
    QString indexFieldNames;

    // What makeOrder() finds.
    std::vector<KeyPart> order;
    size_t indexParts = 0; ///< how many parts of it indexFieldNames named
    bool orderIsUnique = false;
    QStringList selected; ///< expressions, and what is selected beyond them to begin again behind a row
    std::vector<int> keyColumns;

    /// A table as it is scanned, its order made.
    static TableOrder of(const Connection &connection, const ScanSource &table, const QString &caption);
    /// The order of the records, made unique where the table allows, and what a row's key is read from.
    void makeOrder(const Connection &connection, const QString &caption);
    /// The filter as it stands behind WHERE; empty for none.
    QString condition(Dialect dialect) const;
    /// " ORDER BY …"; empty where the records come so anyway.
    QString orderBy() const;
    /// The records from a position on.
    Select select(const Connection &connection, const ReadPosition &position) const;
    /// Whether selectBackwards() can be used.
    bool isReversible(Dialect dialect) const;
    /// The records that come before the one with a key, or before the end where no key is given, the last one first:
    /// `limit` of them after `skip` others.
    Select selectBackwards(const Connection &connection, const QVariantList &before, qint64 limit, qint64 skip) const;

private:
    Select selectBeside(const Connection &connection, QChar side, const QVariantList &key) const;
    std::vector<int> indexFields(const QString &caption) const;
    QStringList keyExpressions() const;
};

} // namespace nuvo
