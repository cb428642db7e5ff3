// SPDX-License-Identifier: MIT
#pragma once

#include "workbench/Modelstate.h"

namespace nuvo {

/// A variable as `nuvostat` reads it: names in double quotes where they could be read as something else.
/// \pre the place is defined
QString commandTerm(const RegressionModel &model, int place);

/// The line that makes the same fit in a shell: "nuvostat fit --database … --table … --response … --control …".
/// \pre state.isFittable()
QString fitCommand(const ModelState &state);

} // namespace nuvo
