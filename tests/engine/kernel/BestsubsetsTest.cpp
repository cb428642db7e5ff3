// SPDX-License-Identifier: MIT
#include "engine/kernel/Bestsubsets.h"
#include "engine/kernel/Exact.h"
#include "engine/kernel/Normalequations.h"
#include "engine/kernel/Subsetpress.h"
#include "engine/kernel/Subsets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

using namespace nuvo;

namespace {

using Columns = std::vector<std::vector<double>>;

struct Criterion
{
    const char *name;
    SubsetCriterion criterion;
};

constexpr Criterion criteria[] = {{"cp", SubsetCriterion::Cp},
                                  {"aic", SubsetCriterion::Aic},
                                  {"bic", SubsetCriterion::Bic},
                                  {"adjustedRSquared", SubsetCriterion::AdjustedRSquared},
                                  {"press", SubsetCriterion::Press}};

SubsetChoice choose(const SubsetReference &data, int keep, SubsetCriterion criterion)
{
    const std::vector<const double *> columns = data.pointers();
    return chooseSubsets(data.sums(), keep, criterion, columns);
}

class Reference : public testing::TestWithParam<std::string>
{
protected:
    const SubsetReference &data_ = subsetReference(GetParam());
};

std::vector<std::string> names()
{
    std::vector<std::string> result;
    for (const SubsetReference &one : subsetReferences())
        result.push_back(one.name);
    return result;
}

/// Columns of ten controls and a response, n rows.
Columns randomColumns(int n, unsigned seed, double offset)
{
    std::mt19937_64 random(seed);
    std::normal_distribution<double> normal;
    Columns columns(11, std::vector<double>(std::size_t(n)));
    for (int i = 0; i < n; ++i) {
        double y = normal(random);
        for (std::size_t j = 0; j < 10; ++j) {
            columns[j][std::size_t(i)] = offset + normal(random);
            y += double(j % 3) * columns[j][std::size_t(i)];
        }
        columns[10][std::size_t(i)] = y;
    }
    return columns;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Sets, Reference, testing::ValuesIn(names()), [](const auto &test) {
    std::string name = test.param;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
    return name;
});

TEST_P(Reference, EveryFigureOfEverySubsetIsThatOfExactArithmetic)
{
    const SubsetChoice choice = choose(data_, 1000, SubsetCriterion::Press);
    ASSERT_EQ(choice.bySize.size(), data_.figures["subsets"].size());
    double worst = 0;
    double worstPress = 0;
    for (const auto &wanted : data_.figures["subsets"]) {
        const ControlSet set = setOf(wanted["controls"]);
        const auto found = std::find_if(choice.bySize.begin(), choice.bySize.end(),
                                        [&](const SubsetFigures &one) { return one.controls == set; });
        ASSERT_NE(found, choice.bySize.end()) << wanted["controls"];
        EXPECT_EQ(found->dependent, wanted["dependent"]) << wanted["controls"];
        EXPECT_EQ(std::count(choice.dependent.begin(), choice.dependent.end(), set), found->dependent ? 1 : 0);
        const auto compare = [&](double got, const char *name) {
            const double error = errorOf(got, wanted.value(name, nlohmann::json()));
            EXPECT_LE(error, std::string(name) == "press" ? 1e-11 : 1e-13)
                << wanted["controls"] << ' ' << name << ' ' << got;
            double &most = std::string(name) == "press" ? worstPress : worst;
            most = std::max(most, error);
        };
        compare(found->sse, "sse");
        compare(found->rSquared, "rSquared");
        compare(found->adjustedRSquared, "adjustedRSquared");
        compare(found->sSquared, "sSquared");
        compare(found->f, "f");
        compare(found->cp, "cp");
        compare(found->aic, "aic");
        compare(found->bic, "bic");
        compare(found->press, "press");
    }
    std::printf("%-30s worst relative error %.1e, of PRESS %.1e\n", GetParam().c_str(), worst, worstPress);
}

TEST_P(Reference, TheBestByEachCriterionIsThatOfExactArithmetic)
{
    for (const Criterion &one : criteria) {
        const SubsetChoice choice = choose(data_, 1, one.criterion);
        const auto &wanted = data_.figures["best"][one.name];
        ASSERT_EQ(choice.best.has_value(), !wanted.is_null()) << one.name;
        if (choice.best) {
            EXPECT_EQ(choice.best->controls, setOf(wanted)) << one.name;
            EXPECT_FALSE(choice.best->dependent);
        }
    }
}

TEST_P(Reference, TheListIsTheBestOfEachSizeInOrder)
{
    const SubsetChoice all = choose(data_, 1000, SubsetCriterion::Cp);
    for (const int keep : {1, 2, 3}) {
        const SubsetChoice some = choose(data_, keep, SubsetCriterion::Cp);
        std::size_t at = 0;
        for (int size = 1; size <= data_.controls(); ++size) {
            int place = 0;
            for (const SubsetFigures &one : all.bySize) {
                if (one.size == size && place++ < keep) {
                    ASSERT_LT(at, some.bySize.size());
                    EXPECT_EQ(some.bySize[at++].controls, one.controls);
                }
            }
        }
        EXPECT_EQ(at, some.bySize.size());
    }
    for (std::size_t i = 1; i < all.bySize.size(); ++i) {
        const SubsetFigures &before = all.bySize[i - 1];
        const SubsetFigures &after = all.bySize[i];
        EXPECT_LE(before.size, after.size);
        if (before.size == after.size && before.dependent == after.dependent) {
            EXPECT_LE(before.sse, after.sse);
        }
        if (before.size == after.size && before.dependent) {
            EXPECT_TRUE(after.dependent);
        }
    }
}

TEST_P(Reference, WithoutAvx2EveryBitIsTheSame)
{
    const SubsetChoice with = choose(data_, 1000, SubsetCriterion::Press);
    const WithoutAvx2 guard;
    const SubsetChoice without = choose(data_, 1000, SubsetCriterion::Press);
    ASSERT_EQ(with.bySize.size(), without.bySize.size());
    for (std::size_t i = 0; i < with.bySize.size(); ++i) {
        EXPECT_EQ(with.bySize[i].controls, without.bySize[i].controls);
        EXPECT_TRUE(same(with.bySize[i].sse, without.bySize[i].sse));
        EXPECT_TRUE(same(with.bySize[i].press, without.bySize[i].press));
        EXPECT_TRUE(same(with.bySize[i].cp, without.bySize[i].cp));
    }
}

TEST(BestSubsets, SseIsThatOfAFitOfItsOwnForAllSubsetsOfTen)
{
    const Columns data = randomColumns(300, 5, 1000);
    const SubsetSums sums = subsetSums(data);
    for (ControlSet set = 1; set <= sums.all(); ++set) {
        std::vector<int> index{0};
        for (int j = 1; j <= 10; ++j) {
            if ((set >> (j - 1) & 1) != 0)
                index.push_back(j);
        }
        index.push_back(11);
        CrossProducts products;
        for (std::size_t i = 0; i < index.size(); ++i)
            for (std::size_t j = 0; j < index.size(); ++j)
                products[i][j] = sums.products()[std::size_t(index[i])][std::size_t(index[j])];
        const int m = static_cast<int>(index.size()) - 2;
        EXPECT_NEAR(sums.sse(set).hi / solveCoefficients(products, m).sse, 1, 1e-15);
        EXPECT_EQ(sums.dependent(set), !dependentColumns(products, m).empty());
    }
}

TEST(BestSubsets, PressIsThatOfLeavingEachRecordOut)
{
    for (const double offset : {0.0, 1e8}) {
        Columns data = randomColumns(40, 6, offset);
        const SubsetSums sums = subsetSums(data);
        std::vector<const double *> columns;
        for (const auto &column : data)
            columns.push_back(column.data());
        for (const ControlSet set : {ControlSet(1), ControlSet(0x2a5), sums.all()}) {
            double press = 0;
            for (std::size_t out = 0; out < 40; ++out) {
                Columns rest;
                std::vector<double> record;
                for (std::size_t j = 0; j < 11; ++j) {
                    if (j == 10 || (set >> j & 1) != 0) {
                        rest.push_back(data[j]);
                        record.push_back(data[j][out]);
                        rest.back().erase(rest.back().begin() + static_cast<std::ptrdiff_t>(out));
                    }
                }
                std::vector<DataColumn> kept;
                for (const auto &column : rest)
                    kept.push_back({column.data(), minMax(column.data(), 39).largest()});
                CrossProducts products;
                crossProducts(kept, 39, products);
                const Coefficients fit = solveCoefficients(products, static_cast<int>(rest.size()) - 1);
                double error = record.back() - fit.b[0];
                for (std::size_t j = 0; j + 1 < record.size(); ++j)
                    error -= fit.b[j + 1] * record[j];
                press += error * error;
            }
            const double got = pressOf(sums, {&set, 1}, columns, 40)[0];
            EXPECT_NEAR(got / press, 1, offset == 0 ? 1e-12 : 1e-6)
                << set; // the coefficients' rounding, far from zero
        }
    }
}

TEST(BestSubsets, AmongEqualSumsTheLowestControlsComeFirst)
{
    // Four controls of which two each explain the same.
    const Columns data = {{1, -1, 1, -1, 1, -1, 1, -1},
                          {1, 1, -1, -1, 1, 1, -1, -1},
                          {1, -1, -1, 1, 1, -1, -1, 1},
                          {1, 1, 1, 1, -1, -1, -1, -1},
                          {3, 1, 1, -1, 1, -1, -1, -3}};
    const SubsetChoice choice = chooseSubsets(subsetSums(data), 6, SubsetCriterion::Bic);
    std::vector<ControlSet> ofTwo;
    for (const SubsetFigures &one : choice.bySize) {
        if (one.size == 2)
            ofTwo.push_back(one.controls);
    }
    EXPECT_EQ(ofTwo, (std::vector<ControlSet>{0b0011, 0b1001, 0b1010, 0b0101, 0b0110, 0b1100}));
    EXPECT_EQ(choice.best->controls, ControlSet(0b1011));
}

TEST(BestSubsets, TheBestByOverallFHasTheLargestOfAll)
{
    const SubsetChoice choice = chooseSubsets(subsetSums(randomColumns(40, 7, 0)), 252, SubsetCriterion::F);
    ASSERT_EQ(choice.bySize.size(), 1023U);
    ASSERT_TRUE(choice.best);
    for (const SubsetFigures &one : choice.bySize)
        EXPECT_LE(one.f, choice.best->f);
    const SubsetChoice cement = choose(subsetReference("cement"), 1, SubsetCriterion::F);
    EXPECT_NEAR(cement.best->f, 229.5037, 1e-4);
}

TEST(BestSubsets, WithoutObservationsThereIsNoPress)
{
    const SubsetReference &data = subsetReference("cement");
    const SubsetChoice byPress = chooseSubsets(data.sums(), 1, SubsetCriterion::Press);
    EXPECT_FALSE(byPress.best);
    const SubsetChoice byCp = chooseSubsets(data.sums(), 1, SubsetCriterion::Cp);
    ASSERT_TRUE(byCp.best);
    EXPECT_TRUE(std::isnan(byCp.best->press));
    EXPECT_EQ(byCp.best->controls, ControlSet(0b0011));
}

TEST(BestSubsets, NoControlsAreNoSubsets)
{
    const SubsetChoice choice = chooseSubsets(subsetSums({{1, 2, 4, 7}}), 3, SubsetCriterion::Cp);
    EXPECT_TRUE(choice.bySize.empty());
    EXPECT_FALSE(choice.best);
}
