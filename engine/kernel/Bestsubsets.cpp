// SPDX-License-Identifier: MIT
#include "engine/kernel/Bestsubsets.h"

#include "engine/kernel/Subsetpress.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace nuvo {

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double none = std::numeric_limits<double>::quiet_NaN();

class Figures
{
public:
    explicit Figures(const SubsetSums &sums) : sums_(sums), n_(sums.count())
    {
        const double freedom = sums.degreesOfFreedom(sums.all());
        if (freedom > 0) {
            fullMeanSquare_ = sums.sse(sums.all()) / freedom;
            inverse_ = DoubleDouble(1) / fullMeanSquare_;
        }
    }

    // All but PRESS.
    SubsetFigures of(ControlSet set) const
    {
        SubsetFigures out;
        out.controls = set;
        out.size = SubsetSums::sizeOf(set);
        out.dependent = sums_.dependent(set);
        const DoubleDouble sse = sums_.sse(set);
        const DoubleDouble total = sums_.total();
        const DoubleDouble explained = total - sse;
        out.sse = sse.hi;
        out.rSquared = total > 0 ? (explained / total).hi : none;
        out.adjustedRSquared = out.sSquared = out.f = out.cp = out.aic = out.bic = out.press = none;
        const double freedom = n_ - 1 - out.size;
        if (out.dependent || freedom <= 0)
            return out;
        const DoubleDouble meanSquare = sse / freedom;
        out.sSquared = meanSquare.hi;
        if (total > 0)
            out.adjustedRSquared = (DoubleDouble(1) - meanSquare * (n_ - 1) / total).hi;
        out.cp = cp(set);
        if (sse > 0) {
            out.f = overallF(set, freedom);
            out.aic = informationCriterion(set, 2);
            out.bic = informationCriterion(set, std::log(n_));
        }
        return out;
    }

    // What the best set has the smallest of, for all criteria but PRESS; NaN for one that cannot be the best.
    double key(ControlSet set, SubsetCriterion criterion) const
    {
        const double freedom = sums_.degreesOfFreedom(set);
        if (sums_.dependent(set) || freedom <= 0)
            return none;
        if (sums_.sse(set) == 0)
            return -infinite;
        switch (criterion) {
        case SubsetCriterion::Cp:
            return cp(set);
        case SubsetCriterion::Aic:
            return informationCriterion(set, 2);
        case SubsetCriterion::Bic:
            return informationCriterion(set, std::log(n_));
        case SubsetCriterion::AdjustedRSquared:
            return (sums_.sse(set) / freedom).hi; // the same order
        case SubsetCriterion::F:
            return -overallF(set, freedom);
        case SubsetCriterion::Press:
            break;
        }
        return none;
    }

private:
    double overallF(ControlSet set, double freedom) const
    {
        const DoubleDouble explained = sums_.total() - sums_.sse(set);
        return (explained / DoubleDouble(SubsetSums::sizeOf(set)) / (sums_.sse(set) / freedom)).hi;
    }

    double cp(ControlSet set) const
    {
        if (!(fullMeanSquare_ > 0))
            return none;
        const double parameters = SubsetSums::sizeOf(set) + 1;
        return (sums_.sse(set) * inverse_ + DoubleDouble(2 * parameters - n_)).hi;
    }

    double informationCriterion(ControlSet set, double penalty) const
    {
        const double deviance = n_ * (std::log(2 * std::numbers::pi) + std::log(sums_.sse(set).hi / n_) + 1);
        return deviance + penalty * (SubsetSums::sizeOf(set) + 2);
    }

    const SubsetSums &sums_;
    double n_;
    DoubleDouble fullMeanSquare_; // 0 where there is none
    DoubleDouble inverse_;
};

// Of two sets of the same size: the one with the lowest control in which they differ.
bool comesFirst(ControlSet a, ControlSet b)
{
    const ControlSet differing = a ^ b;
    return (a & differing & -differing) != 0;
}

// The sets of each size but 0, the best `keep` of it in order.
std::vector<ControlSet> bestOfEachSize(const SubsetSums &sums, int keep)
{
    std::array<std::vector<ControlSet>, MaxControls + 1> sets;
    for (ControlSet set = 1; set <= sums.all(); ++set)
        sets[std::size_t(SubsetSums::sizeOf(set))].push_back(set);
    const auto better = [&](ControlSet a, ControlSet b) {
        if (sums.dependent(a) != sums.dependent(b))
            return sums.dependent(b);
        const double left = sums.sse(a).hi;
        const double right = sums.sse(b).hi;
        return left != right ? left < right : comesFirst(a, b);
    };
    std::vector<ControlSet> result;
    for (std::vector<ControlSet> &ofSize : sets) {
        const auto count = std::min(static_cast<std::ptrdiff_t>(ofSize.size()), static_cast<std::ptrdiff_t>(keep));
        std::partial_sort(ofSize.begin(), ofSize.begin() + count, ofSize.end(), better);
        result.insert(result.end(), ofSize.begin(), ofSize.begin() + count);
    }
    return result;
}

// Sets beside the listed ones that can have the smallest PRESS: it is never below SSE, so most cannot.
std::vector<ControlSet> rivals(const SubsetSums &sums, const std::vector<ControlSet> &listed,
                               const std::vector<double> &press)
{
    constexpr double Doubt = 1e-10; // about PRESS
    double least = infinite;
    std::vector<bool> known(std::size_t(sums.all()) + 1);
    for (const ControlSet set : listed) {
        known[set] = true;
        least = std::fmin(least, press[set - 1]);
    }
    std::vector<ControlSet> result;
    for (ControlSet set = 1; set <= sums.all(); ++set) {
        if (!known[set] && !(sums.sse(set).hi > least * (1 + Doubt)))
            result.push_back(set);
    }
    return result;
}

} // namespace

SubsetChoice chooseSubsets(const SubsetSums &sums, int keep, SubsetCriterion criterion,
                           std::span<const double *const> columns)
{
    const Figures figures(sums);
    const int n = static_cast<int>(sums.count());
    SubsetChoice choice;
    const std::vector<ControlSet> listed = bestOfEachSize(sums, keep);
    for (const ControlSet set : listed)
        choice.bySize.push_back(figures.of(set));

    std::vector<ControlSet> all(sums.all());
    for (ControlSet set = 1; set <= sums.all(); ++set) {
        all[set - 1] = set;
        if (sums.dependent(set))
            choice.dependent.push_back(set);
    }
    std::vector<double> press(all.size(), none); // of set at set - 1
    const auto findPress = [&](const std::vector<ControlSet> &wanted) {
        const std::vector<double> found = pressOf(sums, wanted, columns, n);
        for (std::size_t i = 0; i < wanted.size(); ++i)
            press[wanted[i] - 1] = found[i];
    };
    if (!columns.empty()) {
        findPress(listed);
        if (criterion == SubsetCriterion::Press)
            findPress(rivals(sums, listed, press));
    }
    for (SubsetFigures &one : choice.bySize)
        one.press = press[one.controls - 1];

    ControlSet best = 0;
    double least = none;
    for (const ControlSet set : all) {
        const double key = criterion == SubsetCriterion::Press ? press[set - 1] : figures.key(set, criterion);
        if (std::isnan(key))
            continue;
        const auto better = [&] {
            if (key != least)
                return key < least;
            const int size = SubsetSums::sizeOf(set) - SubsetSums::sizeOf(best);
            if (size != 0)
                return size < 0;
            const double sse = sums.sse(set).hi - sums.sse(best).hi;
            return sse != 0 ? sse < 0 : comesFirst(set, best);
        };
        if (best == 0 || better()) {
            best = set;
            least = key;
        }
    }
    if (best != 0) {
        choice.best = figures.of(best);
        choice.best->press = press[best - 1];
        if (!columns.empty() && criterion != SubsetCriterion::Press)
            choice.best->press = pressOf(sums, {&best, 1}, columns, n)[0];
    }
    return choice;
}

} // namespace nuvo
