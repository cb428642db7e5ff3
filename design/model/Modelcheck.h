// SPDX-License-Identifier: MIT
#pragma once

#include "design/model/Modelfields.h"
#include "design/model/Regressionmodel.h"

namespace nuvo {

/// What is wrong with the definition at a place.
struct ModelProblem
{
    int place = 0;
    /// Whether the definition is unfinished (no field, no second field, a number that is none). What is doubtful only
    /// (a field that is not there, the same term twice) may be meant: fields can come later.
    bool unfinished = false;
    QString text; ///< a sentence
};

/// At most one for each place, the gravest; places ascending. Fields that are not known are not missed.
NUVO_EXPORT std::vector<ModelProblem> modelProblems(const RegressionModel &model, const ModelFields &fields);

} // namespace nuvo
