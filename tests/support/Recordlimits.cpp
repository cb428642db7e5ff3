// SPDX-License-Identifier: MIT
#include "support/Recordlimits.h"

#include "platform/Datasetprivate.h"

struct nuvo::DatasetTestAccess
{
    static void setLimits(TDataSet &dataset, const RecordLimits &limits) { dataset.d_->rows.setLimits(limits); }
};

void setRecordLimits(TDataSet &dataset, const nuvo::RecordLimits &limits)
{
    nuvo::DatasetTestAccess::setLimits(dataset, limits);
}
