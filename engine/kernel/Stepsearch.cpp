// SPDX-License-Identifier: MIT
#include "engine/kernel/Stepsearch.h"

#include "engine/kernel/Distributions.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace nuvo {

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double none = std::numeric_limits<double>::quiet_NaN();

constexpr ControlSet bitOf(int control)
{
    return ControlSet(1) << (control - 1);
}

class Searcher
{
public:
    Searcher(const SubsetSums &sums, StepMethod method, const StepThreshold &enter, const StepThreshold &remove)
        : sums_(sums), method_(method), enter_(enter), remove_(remove), seen_(std::size_t(sums.all()) + 1)
    {
    }

    StepSearch run()
    {
        if (method_ == StepMethod::Backward) {
            for (int control = 1; control <= sums_.controls(); ++control) {
                if (sums_.dependent(model_ | bitOf(control)))
                    result_.leftOut |= bitOf(control);
                else
                    model_ |= bitOf(control);
            }
        }
        seen_[model_] = true;
        if (method_ == StepMethod::Backward) {
            while (takeOut()) {
            }
        } else {
            while (add()) {
                while (method_ == StepMethod::Stepwise && takeOut()) {
                }
            }
        }
        end();
        result_.selected = model_;
        return std::move(result_);
    }

private:
    StepCandidate compare(ControlSet without, int control) const
    {
        StepCandidate candidate{control, none, none, false};
        const ControlSet with = without | bitOf(control);
        candidate.dependent = sums_.dependent(with) && !sums_.dependent(without);
        const double freedom = sums_.degreesOfFreedom(with);
        if (sums_.dependent(with) || freedom <= 0)
            return candidate;
        const DoubleDouble larger = sums_.sse(with);
        const DoubleDouble smaller = sums_.sse(without);
        if (larger == 0) {
            candidate.f = smaller == 0 ? none : infinite;
            return candidate;
        }
        candidate.f = std::max(0.0, ((smaller - larger) / (larger / freedom)).hi);
        candidate.pValue = fUpperTail(candidate.f, 1, freedom);
        return candidate;
    }

    std::vector<StepCandidate> thatCouldEnter() const
    {
        std::vector<StepCandidate> candidates;
        for (int control = 1; control <= sums_.controls(); ++control) {
            if ((model_ & bitOf(control)) == 0)
                candidates.push_back(compare(model_, control));
        }
        return candidates;
    }

    std::vector<StepCandidate> thatCouldLeave() const
    {
        std::vector<StepCandidate> candidates;
        for (int control = 1; control <= sums_.controls(); ++control) {
            if ((model_ & bitOf(control)) != 0)
                candidates.push_back(compare(model_ & ~bitOf(control), control));
        }
        return candidates;
    }

    double thresholdOfEntry() const { return enter_(sums_.count() - 2 - SubsetSums::sizeOf(model_)); }

    double thresholdOfRemoval() const
    {
        const double freedom = sums_.degreesOfFreedom(model_);
        const double threshold = remove_(freedom);
        return method_ == StepMethod::Stepwise ? std::min(threshold, enter_(freedom)) : threshold;
    }

    // What F counts as when a control is to leave: 0 where the fit is exact with it and without.
    double toKeep(const StepCandidate &candidate) const
    {
        const bool exactBoth =
            sums_.degreesOfFreedom(model_) > 0 && sums_.sse(model_ & ~bitOf(candidate.control)) == 0;
        return exactBoth ? 0 : candidate.f;
    }

    bool add()
    {
        std::vector<StepCandidate> candidates = thatCouldEnter();
        const StepCandidate *best = nullptr;
        for (const StepCandidate &candidate : candidates) {
            if (!std::isnan(candidate.f) && (!best || candidate.f > best->f))
                best = &candidate;
        }
        if (!best)
            return false;
        const double threshold = thresholdOfEntry();
        if (!(best->f > threshold))
            return false;
        return go(SearchStep::Action::Add, *best, model_ | bitOf(best->control), threshold, std::move(candidates));
    }

    bool takeOut()
    {
        std::vector<StepCandidate> candidates = thatCouldLeave();
        const StepCandidate *worst = nullptr;
        for (const StepCandidate &candidate : candidates) {
            if (!std::isnan(toKeep(candidate)) && (!worst || toKeep(candidate) < toKeep(*worst)))
                worst = &candidate;
        }
        if (!worst)
            return false;
        const double threshold = thresholdOfRemoval();
        if (!(toKeep(*worst) < threshold))
            return false;
        return go(SearchStep::Action::Remove, *worst, model_ & ~bitOf(worst->control), threshold,
                  std::move(candidates));
    }

    bool go(SearchStep::Action action, StepCandidate chosen, ControlSet next, double threshold,
            std::vector<StepCandidate> candidates)
    {
        if (seen_[next])
            return false;
        seen_[next] = true;
        model_ = next;
        result_.path.push_back({action, chosen.control, chosen.f, chosen.pValue, model_, sums_.sse(model_).hi,
                                threshold, std::move(candidates), 0});
        return true;
    }

    void end()
    {
        SearchStep step;
        step.model = model_;
        step.sse = sums_.sse(model_).hi;
        step.f = step.pValue = step.threshold = none;
        if (method_ != StepMethod::Backward) {
            step.candidates = thatCouldEnter();
            step.entering = static_cast<int>(step.candidates.size());
        }
        if (method_ != StepMethod::Forward) {
            const std::vector<StepCandidate> leaving = thatCouldLeave();
            step.candidates.insert(step.candidates.end(), leaving.begin(), leaving.end());
        }
        if (step.entering > 0)
            step.threshold = thresholdOfEntry();
        else if (method_ != StepMethod::Forward && model_ != 0)
            step.threshold = thresholdOfRemoval();
        result_.path.push_back(std::move(step));
    }

    const SubsetSums &sums_;
    StepMethod method_;
    const StepThreshold &enter_;
    const StepThreshold &remove_;
    ControlSet model_ = 0;
    std::vector<bool> seen_;
    StepSearch result_;
};

} // namespace

StepThreshold fixedThreshold(double f)
{
    return [f](double) { return f; };
}

StepThreshold probabilityThreshold(double probability)
{
    return [probability](double degreesOfFreedom) { return fUpperQuantile(probability, 1, degreesOfFreedom); };
}

StepSearch searchSteps(const SubsetSums &sums, StepMethod method, const StepThreshold &enter,
                       const StepThreshold &remove)
{
    return Searcher(sums, method, enter, remove).run();
}

} // namespace nuvo
