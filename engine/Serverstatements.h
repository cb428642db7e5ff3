// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Termsql.h"
#include "engine/kernel/Shiftedsums.h"
#include "engine/kernel/Subsetsums.h"
#include "platform/Sqlnumbers.h"

#include <QString>

#include <vector>

namespace nuvo {

/// From where the records of a statement come: a table, a subquery, or a partition by itself.
struct ServerSource
{
    QString from; ///< as it stands behind FROM
    /// Whether the database works a subquery out once for each row; where it sends the statement on to another
    /// server, it can do so only if it is one plain SELECT.
    bool nested = false;
    QString caption; ///< of a partition; else empty
};

/// The statements with which a database adds up a regression's records. Terms have numbers: the controls from 0 to
/// m - 1, the response m; in a pattern bit j stands for term j.
///
/// A statement asks every source by itself, put together with UNION ALL, so that each one's aggregates are its own
/// server's work; whoever reads adds up the rows of the same pattern.
class NUVO_EXPORT ServerStatements
{
public:
    /// \param parts of the whole, each to be asked by itself; none where it is asked as it is.
    ServerStatements(std::vector<SqlTerm> terms, ServerSource whole, std::vector<ServerSource> parts,
                     QString condition, SqlNumbers sql);

    /// The number of the response.
    int response() const { return int(terms_.size()) - 1; }
    const std::vector<SqlTerm> &terms() const { return terms_; }
    /// What is asked: the parts, or the whole.
    const std::vector<ServerSource> &sources() const { return sources_; }

    /// Columns: pattern, count, for each term sum, least, greatest and how many records lack a field of it.
    QString counts() const;
    static constexpr int kCountsBefore = 2;
    static constexpr int kCountsPerTerm = 4;

    /// A term as a column of sums.
    struct Column
    {
        int term = 0;
        ColumnShift shift;
        bool always = false; ///< whether every record can use the term
    };
    /// Of the records that the response can use. Columns: the pattern of those of
    /// `columns` that are not always usable, count, the sum of each column, the sums of products of columns i and j,
    /// j >= i, row by row.
    QString products(const std::vector<Column> &columns) const;
    /// Of the records that all columns can use, r being column combination.column - 1 less the combination of the
    /// others. Columns: count, sum of r, sums of r times each column but that one, where it is r r.
    QString residuals(const std::vector<Column> &columns, const Combination &combination) const;

    /// The terms of the first records that every one of them can use, or, with `partly`, that the response and not
    /// all of the others can use. Columns: pattern, each term.
    QString sample(int rows, bool partly) const;

    /// What shows whether a source can be read at all.
    QString probe(const ServerSource &source) const;

private:
    template <class OfSource>
    QString ofAll(OfSource statement) const;
    QString from(const ServerSource &source, const QStringList &conditions) const;
    QString bit(int term) const;
    QString shifted(const Column &column) const;
    QStringList usable(const std::vector<Column> &columns) const;

    std::vector<SqlTerm> terms_;
    ServerSource whole_;
    std::vector<ServerSource> sources_;
    QString condition_;
    SqlNumbers sql_;
};

} // namespace nuvo
