// SPDX-License-Identifier: MIT
#pragma once

#include "workbench/Csvorigin.h"
#include "workbench/Modelstate.h"

namespace nuvo {

/// A variable as `nuvostat` reads it: names in double quotes where they could be read as something else.
/// \pre the place is defined
QString commandTerm(const RegressionModel &model, int place);

/// The line that makes the same fit in a shell: "nuvostat fit --database … --table … --response … --control …".
/// \pre state.isFittable()
QString fitCommand(const ModelState &state);

/// The same with the CSV file that the state's table was made of in place of the database: "nuvostat fit data.csv …",
/// with what was said of the file. \pre state.isFittable(), of a table; csvHindrance() is empty
QString fitCommand(const ModelState &state, const CsvOrigin &origin);
/// Why a line cannot name the file, as half a sentence: it has changed, or the filter names the table. Empty where it
/// can.
QString csvHindrance(const ModelState &state, const CsvOrigin &origin);

} // namespace nuvo
