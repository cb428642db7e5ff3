// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Subsetsums.h"

#include <functional>
#include <vector>

namespace nuvo {

enum class StepMethod { Forward, Backward, Stepwise };

/// The value that a partial F is compared with, from the degrees of freedom of the larger of the two models. A NaN is
/// no threshold: nothing is above it, nothing below.
using StepThreshold = std::function<double(double degreesOfFreedom)>;

/// The same number at each step.
NUVO_KERNEL_EXPORT StepThreshold fixedThreshold(double f);
/// The F whose upper tail with 1 and these degrees of freedom is the probability; see fUpperQuantile().
NUVO_KERNEL_EXPORT StepThreshold probabilityThreshold(double probability);

/// A control that a step could add or take out.
struct StepCandidate
{
    int control = 0;
    /// (SSE without - SSE with) / (SSE with / DOF with), with and without the control. Infinite where the model with
    /// it is an exact fit and the one without is not; a NaN where both are, where the control depends on those in the
    /// model, and without degrees of freedom.
    double f = 0;
    double pValue = 0;      ///< the upper tail of F(1, DOF with); a NaN where f is a NaN or infinite
    bool dependent = false; ///< on the controls in the model: it cannot enter
};

struct SearchStep
{
    enum class Action { Add, Remove, End };

    Action action = Action::End;
    int control = 0; ///< the one added or taken out; 0 at the end
    double f = 0;    ///< its partial F, as in the candidates
    double pValue = 0;
    ControlSet model = 0; ///< after the step
    double sse = 0;       ///< of that model
    double threshold = 0; ///< what the choice was held against; at the end as for entry if something could enter,
                          ///< else as for removal
    /// In the order of their numbers, the one chosen among them. At the end those that could enter (forward,
    /// stepwise), then those that could leave (backward, stepwise).
    std::vector<StepCandidate> candidates;
    int entering = 0; ///< at the end: how many of the candidates could enter
};

struct StepSearch
{
    std::vector<SearchStep> path; ///< the last one is the end
    ControlSet selected = 0;
    /// Backward elimination begins with the controls that do not depend on those before them; these are the others.
    ControlSet leftOut = 0;
};

/// The search as textbooks have it, on one sample for all models, with the partial F of one control.
///
/// Forward, from no control: adds the control with the largest F while that is above enter(DOF of the larger model).
/// Backward, from all independent controls: takes out the control with the smallest F while that is below
/// remove(DOF of the present model). Stepwise, from no control: adds one as forward does, then takes out as backward
/// does until nothing is below, and so on until nothing enters; its threshold of removal is the smaller one of
/// remove(DOF) and enter(DOF). Among equal F the lowest number is chosen.
///
/// A control cannot enter when it depends on those in the model, when the larger model would have no degrees of
/// freedom, or when the model is an exact fit already. From an exact fit a control leaves without which it is one
/// still (F counts as 0), and no other. With n <= m + 1 records backward elimination may begin without degrees of
/// freedom: no F exists and nothing leaves.
///
/// Stepwise selection ends. Let d(k) be the degrees of freedom with k controls and Phi = SSE(model) times the product
/// over j = 1 to its size of (1 + max(0, enter(d(j))) / d(j)). An addition from k - 1 to k controls divides SSE by
/// 1 + F / d(k) with F > enter(d(k)), so it does not raise Phi, and lowers it where enter(d(k)) >= 0. A removal from
/// k controls multiplies SSE by 1 + F / d(k) with 0 <= F < enter(d(k)) and takes the factor 1 + enter(d(k)) / d(k)
/// away, so it lowers Phi. A walk back to a model would hold at least one removal, and so none leads back; there are
/// 2^m models. Rounding does not change that: SSE is a function of the model alone, F is worked out in double-double
/// and compared as a double, and where it is above a threshold in doubles it is above it in real numbers, as long as
/// SSE has more digits than a double. Should X'X leave it fewer, a model that comes back ends the search.
NUVO_KERNEL_EXPORT StepSearch searchSteps(const SubsetSums &sums, StepMethod method, const StepThreshold &enter,
                                          const StepThreshold &remove);

} // namespace nuvo
