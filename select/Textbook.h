// SPDX-License-Identifier: MIT
#pragma once

#include "select/Choice.h"
#include "select/Partialf.h"
#include "select/Selectionrun.h"

// The searches by partial F under the rule Textbook.

namespace nuvo {

/// A threshold as a component holds it.
struct ToldThreshold
{
    const char *property;   ///< that holds the probability
    double probability = 0; ///< 0: none
    double f = 0;           ///< where there is no probability and no F table
    QString column;         ///< of the F table, where there is one
};

/// What comes of the three, in their order of precedence.
/// \throws EDatabaseError for a probability that is none, for one beside an F table, and where the F table is named
/// and not there.
ChoiceThreshold thresholdOf(const TPartialFSearch &selector, const ToldThreshold &told);

/// The search, to its end. Of forward selection `remove` counts nothing, of backward elimination `enter`.
void searchAsTextbook(SelectionRun &run, const TPartialFSearch &selector, Choice::Method method,
                      const ChoiceThreshold &enter, const ChoiceThreshold &remove);

} // namespace nuvo
