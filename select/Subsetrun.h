// SPDX-License-Identifier: MIT
#pragma once

#include "select/Choicerun.h"
#include "select/Cvtools.h"

#include <vector>

namespace nuvo {

/// The search for the best subset on the sample that all candidates share.
class SubsetRun : public ChoiceRun
{
public:
    SubsetRun(SelectionRun &run, SubsetCriterion criterion, int perSize);

protected:
    bool choose(const SubsetSums &sums) override;
    QStringList steps() const override;
};

/// The models of the list as records of candidates.
std::vector<TMLRModel> listedModels(const Choice &choice);

} // namespace nuvo
