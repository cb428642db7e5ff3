// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Regression.h"
#include "select/Cvtools.h"

// The work of the routines in Cvtools.h, on either kind of component, as a run uses it: nothing is refused and
// nothing is loaded.

namespace nuvo {

void writeModel(const TMLRModel &model, TRegression &component);
void saveModel(TMLRModel &model, TRegression &component);
void writeControls(TRegression &component, const TTermRow &row, int count);
void writeControl(TRegression &component, const TTermRow &row, int which);
void writeControlByIndex(TRegression &component, int index, const QString &transformation);
int indexOf(const TRegression &component, const QString &name);

} // namespace nuvo
