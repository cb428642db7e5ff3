// SPDX-License-Identifier: MIT
#pragma once

#include "select/Cvmain.h"

#include <memory>

class TCorvane;

namespace nuvo {

/// How to choose among control variables, by textbooks' rules: what the page of choices lets a person say.
struct ChoiceSettings
{
    enum Method { Optimal, Stepwise, Forward, Backward };

    Method method = Optimal;
    TOptimizeMLR::TOptimizationType criterion = TOptimizeMLR::Cp; ///< of all subsets
    int perSize = 3;                                              ///< models of each size that are told, from 1
    double enter = 0.05;                                          ///< p below which a term enters
    double remove = 0.1;                                          ///< p above which one leaves

    friend bool operator==(const ChoiceSettings &, const ChoiceSettings &) = default;
};

/// A component that chooses so, without a report.
std::unique_ptr<TCorvane> selectorFor(const ChoiceSettings &settings);

/// What a component says of it, as far as it does; the rest as in new settings.
ChoiceSettings settingsOf(const TCorvane &selector);

} // namespace nuvo
