// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Leftout.h"
#include "engine/Mlrtypes.h"
#include "engine/Observations.h"
#include "engine/Progress.h"
#include "engine/Sums.h"
#include "platform/Export.h"

#include <QtGlobal>

#include <memory>
#include <optional>
#include <span>
#include <vector>

class TDataSet;

namespace nuvo {

/// What the observations are to be: the control variables that become columns, in their order, and the response. Both
/// must outlive the load.
struct ModelDefinitions
{
    std::span<const TIndepVar> columns;
    const TDependentVar &response;
};

/// What a load made of the records.
struct LoadedRecords
{
    Observations observations;
    qint64 read = 0;      ///< records walked
    bool stopped = false; ///< the person ended it, after so many records
    bool more = false;    ///< there are records behind those walked
    /// What the terms could not use, the response first, without their names; empty where that was not counted.
    std::vector<LeftOut> leftOut{};
    /// Of all records, where the observations are a sample; null for most loads.
    std::shared_ptr<const RecordTotals> totals{};
    std::optional<qint64> total{}; ///< records in the dataset, where every one was read
};

/// Whom a load tells how far it is.
struct LoadWatch
{
    Progress &progress;
    bool show = false; ///< show it, and tell it of every observation
    /// Whatever shows a window runs events, and one of these can be the end of the load's owner.
    std::weak_ptr<const void> owner;
};

/// Walks the records of a dataset from the first one and transforms each that every definition accepts, up to 2500.
class NUVO_EXPORT RecordLoad
{
public:
    explicit RecordLoad(TDataSet &dataset) : dataset_(dataset) {}

    /// Stays on the record after the last one walked. Empty when the owner is gone, and perhaps this object with it.
    /// \throws what dataset and definitions throw; nothing else comes of the load then.
    std::optional<LoadedRecords> load(const ModelDefinitions &definitions, const LoadWatch &watch);
    /// The same unwatched.
    LoadedRecords load(const ModelDefinitions &definitions);

private:
    std::shared_ptr<ObservationBuffer> freeBuffer();

    TDataSet &dataset_;
    /// Those of the last loads, used again when nobody holds their observations any more.
    std::vector<std::shared_ptr<ObservationBuffer>> buffers_;
};

} // namespace nuvo
