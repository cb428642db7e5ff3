// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Records.h"

class TDataSet;

/// Replaces how much a dataset keeps and reads at once; takes effect when it opens.
void setRecordLimits(TDataSet &dataset, const nuvo::RecordLimits &limits);
