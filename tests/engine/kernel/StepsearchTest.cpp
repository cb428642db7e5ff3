// SPDX-License-Identifier: MIT
#include "engine/kernel/Stepsearch.h"
#include "engine/kernel/Exact.h"
#include "engine/kernel/Subsets.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace nuvo;

namespace {

StepMethod methodOf(const std::string &name)
{
    return name == "forward" ? StepMethod::Forward : name == "backward" ? StepMethod::Backward : StepMethod::Stepwise;
}

const char *nameOf(SearchStep::Action action)
{
    return action == SearchStep::Action::Add ? "add" : action == SearchStep::Action::Remove ? "remove" : "end";
}

StepThreshold thresholdOf(const nlohmann::json &search, const char *which)
{
    const double value = search[which];
    return search["kind"] == "f" ? fixedThreshold(value) : probabilityThreshold(value);
}

void expectSameCandidates(const std::vector<StepCandidate> &got, const nlohmann::json &wanted, double &worst)
{
    ASSERT_EQ(got.size(), wanted.size());
    for (std::size_t i = 0; i < got.size(); ++i) {
        EXPECT_EQ(got[i].control, wanted[i]["control"]);
        worst = std::max({worst, errorOf(got[i].f, wanted[i]["f"]), errorOf(got[i].pValue, wanted[i]["pValue"])});
        EXPECT_LE(errorOf(got[i].f, wanted[i]["f"]), 1e-13) << got[i].f << ' ' << wanted[i];
        EXPECT_LE(errorOf(got[i].pValue, wanted[i]["pValue"]), 1e-12) << got[i].pValue << ' ' << wanted[i];
    }
}

} // namespace

TEST(StepSearch, EveryStepWithItsCandidatesIsThatOfExactArithmetic)
{
    for (const SubsetReference &data : subsetReferences()) {
        const SubsetSums sums = data.sums();
        double worst = 0;
        for (const auto &wanted : data.figures["searches"]) {
            SCOPED_TRACE(data.name + ' ' + wanted["method"].get<std::string>() + ' ' + wanted["enter"].dump() + ' ' +
                         wanted["remove"].dump());
            const StepSearch search = searchSteps(sums, methodOf(wanted["method"]), thresholdOf(wanted, "enter"),
                                                  thresholdOf(wanted, "remove"));
            EXPECT_EQ(search.selected, setOf(wanted["selected"]));
            ASSERT_EQ(search.path.size(), wanted["path"].size());
            for (std::size_t i = 0; i < search.path.size(); ++i) {
                const SearchStep &step = search.path[i];
                const auto &expected = wanted["path"][i];
                EXPECT_EQ(nameOf(step.action), expected["action"]);
                EXPECT_EQ(step.control, expected["control"]);
                EXPECT_LE(errorOf(step.sse, expected["sse"]), 1e-14);
                EXPECT_LE(errorOf(step.f, expected["f"]), 1e-13);
                expectSameCandidates(step.candidates, expected["candidates"], worst);
            }
        }
        std::printf("%-30s worst relative error of F and p %.1e\n", data.name.c_str(), worst);
    }
}

TEST(StepSearch, ADependentControlIsToldAndNeverEnters)
{
    const StepSearch search =
        searchSteps(subsetReference("dependent").sums(), StepMethod::Forward, fixedThreshold(-1), fixedThreshold(-1));
    EXPECT_EQ(search.selected, ControlSet(0b01011));
    const SearchStep &end = search.path.back();
    ASSERT_EQ(end.candidates.size(), 2U);
    EXPECT_EQ(end.entering, 2);
    for (const StepCandidate &candidate : end.candidates) {
        EXPECT_TRUE(candidate.dependent);
        EXPECT_TRUE(std::isnan(candidate.f));
    }
    const StepSearch backward =
        searchSteps(subsetReference("dependent").sums(), StepMethod::Backward, fixedThreshold(4), fixedThreshold(0));
    EXPECT_EQ(backward.leftOut, ControlSet(0b10100));
    EXPECT_EQ(backward.selected, ControlSet(0b01011));
}

TEST(StepSearch, AControlThatExplainsNothingNeitherEntersAtZeroNorLeaves)
{
    // F is 0 to the last bit: not above 0, not below it.
    const SubsetSums sums = subsetSums({{1, -1, 1, -1}, {1, 1, -1, -1}, {3, 1, 3, 2}});
    const SubsetSums none = subsetSums({{1, -1, 1, -1}, {1, 2, 2, 1}});
    EXPECT_EQ(searchSteps(none, StepMethod::Forward, fixedThreshold(0), fixedThreshold(0)).selected, ControlSet(0));
    EXPECT_EQ(searchSteps(none, StepMethod::Backward, fixedThreshold(0), fixedThreshold(0)).selected, ControlSet(1));
    EXPECT_EQ(searchSteps(sums, StepMethod::Forward, fixedThreshold(0), fixedThreshold(0)).path.size(), 3U);
}

TEST(StepSearch, AThresholdThatIsNoneLetsNothingInOrOut)
{
    const SubsetSums sums = subsetReference("cement").sums();
    const StepThreshold none = fixedThreshold(notANumber);
    EXPECT_EQ(searchSteps(sums, StepMethod::Forward, none, none).selected, ControlSet(0));
    EXPECT_EQ(searchSteps(sums, StepMethod::Backward, none, none).selected, sums.all());
    EXPECT_EQ(searchSteps(sums, StepMethod::Forward, probabilityThreshold(0), none).selected, ControlSet(0));
    EXPECT_EQ(searchSteps(sums, StepMethod::Forward, probabilityThreshold(1), none).selected, sums.all());
}

TEST(StepSearch, StepwiseNeverComesBackToAModelAndEnds)
{
    // Few rows of small integers: many equal F, also ones that equal the thresholds. The first control is nearly the
    // sum of the two that the response hangs on: it enters first and is not needed in the end.
    std::mt19937 random(7);
    int removals = 0;
    for (int round = 0; round < 3000; ++round) {
        const std::size_t n = 6 + random() % 8;
        std::vector<std::vector<double>> columns(4 + random() % 6, std::vector<double>(n));
        for (auto &column : columns)
            for (double &value : column)
                value = static_cast<double>(random() % 3);
        for (std::size_t i = 0; i < n; ++i) {
            columns[0][i] += 4 * (columns[1][i] + columns[2][i]);
            columns.back()[i] += 3 * (columns[1][i] + columns[2][i]);
        }
        const double enter = static_cast<double>(random() % 5) - 1;
        const SubsetSums sums = subsetSums(columns);
        const StepSearch search =
            searchSteps(sums, StepMethod::Stepwise, fixedThreshold(enter), fixedThreshold(enter + 5));
        std::vector<bool> seen(std::size_t(sums.all()) + 1);
        seen[0] = true;
        for (const SearchStep &step : search.path) {
            if (step.action == SearchStep::Action::End)
                continue;
            EXPECT_FALSE(seen[step.model]);
            seen[step.model] = true;
            removals += step.action == SearchStep::Action::Remove ? 1 : 0;
        }
        // The end is by the rule, not because a model came back.
        for (int i = 0; i < search.path.back().entering; ++i) {
            EXPECT_FALSE(search.path.back().candidates[std::size_t(i)].f > search.path.back().threshold);
        }
    }
    EXPECT_GT(removals, 100);
}
