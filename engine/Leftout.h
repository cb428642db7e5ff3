// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Mlrtypes.h"
#include "engine/Termreader.h"
#include "platform/Export.h"

#include <QString>
#include <QtGlobal>

#include <span>
#include <vector>

class TDataSet;

namespace nuvo {

struct ModelDefinitions;

/// The records that a term cannot use, among those that a load walked, whatever the other terms can.
struct NUVO_EXPORT LeftOut
{
    static constexpr std::size_t Ordinals = 10;

    QString term; ///< as reports write it
    qint64 null = 0;
    /// A value that the term cannot take, or one that cannot be read as a number.
    qint64 invalid = 0;
    std::vector<qint64> first; ///< the ordinals of the first ones in the dataset, from 1: at most 10

    /// Of the records that follow so many others.
    void append(const LeftOut &later, qint64 recordsBefore);

    bool operator==(const LeftOut &) const = default;
};

/// Counts what is left out, while somebody walks the records.
class NUVO_EXPORT LeftOutCount
{
public:
    explicit LeftOutCount(std::size_t columns) : counts_(columns + 1), unreadable_(columns + 1) {}

    /// The current record, of this ordinal. Every term is asked; an error makes the record one that the term cannot
    /// take.
    void add(std::span<TermReader> columns, TermReader &response, qint64 ordinal);
    /// The response first; the terms are not named.
    const std::vector<LeftOut> &counts() const { return counts_; }

private:
    void add(std::size_t at, TermReader &term, qint64 ordinal);

    std::vector<LeftOut> counts_;
    std::vector<bool> unreadable_; ///< a term whose field is not there, say: it is not asked again
};

/// The same from a walk of its own over the first `records` records. Stays behind the last one.
/// \throws EDatabaseError when the dataset cannot be read.
NUVO_EXPORT std::vector<LeftOut> countLeftOut(TDataSet &dataset, const ModelDefinitions &definitions, qint64 records);

} // namespace nuvo
