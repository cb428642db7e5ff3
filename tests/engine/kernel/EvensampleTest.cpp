// SPDX-License-Identifier: MIT
#include "engine/kernel/Evensample.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace nuvo;

namespace {

/// A sample of the rows first to last, whose single column is the ordinal doubled.
EvenSample sampled(std::int64_t first, std::int64_t last, int capacity, std::uint64_t seed)
{
    EvenSample sample(1, capacity, seed);
    for (std::int64_t i = first; i <= last; ++i) {
        const double values[] = {0, 2.0 * static_cast<double>(i)};
        const double *columns[] = {values};
        sample.add(columns, 1, i);
    }
    return sample;
}

/// Every tenth of the rows holds close to a tenth of what many samples hold.
void expectEven(const std::vector<int> &taken, int samples, int capacity)
{
    const std::size_t tenth = taken.size() / 10;
    const double wanted = samples * capacity / 10.0;
    for (std::size_t part = 0; part < 10; ++part) {
        int count = 0;
        for (std::size_t i = 0; i < tenth; ++i)
            count += taken[part * tenth + i];
        EXPECT_NEAR(count, wanted, 5 * std::sqrt(wanted)) << part;
    }
}

} // namespace

TEST(EvenSample, AllRowsAreInItWhileThereIsRoom)
{
    const EvenSample sample = sampled(1, 2500, 2500, 1);
    const EvenSample::Rows rows = sample.sorted();
    ASSERT_EQ(rows.ordinals.size(), 2500U);
    for (std::size_t i = 0; i < 2500; ++i) {
        EXPECT_EQ(rows.ordinals[i], static_cast<std::int64_t>(i) + 1);
        EXPECT_EQ(rows.columns[0][i], 2.0 * static_cast<double>(i + 1));
    }
}

TEST(EvenSample, LargerOnesAreInOrderWithTheirValuesAndTheSameEveryTime)
{
    const EvenSample sample = sampled(1, 100000, 2500, 1);
    EXPECT_EQ(sample.seen(), 100000);
    EXPECT_EQ(sample.size(), 2500);
    const EvenSample::Rows rows = sample.sorted();
    EXPECT_TRUE(std::is_sorted(rows.ordinals.begin(), rows.ordinals.end()));
    EXPECT_EQ(std::adjacent_find(rows.ordinals.begin(), rows.ordinals.end()), rows.ordinals.end());
    for (std::size_t i = 0; i < 2500; ++i)
        EXPECT_EQ(rows.columns[0][i], 2.0 * static_cast<double>(rows.ordinals[i]));
    EXPECT_EQ(sampled(1, 100000, 2500, 1).sorted().ordinals, rows.ordinals);
    EXPECT_NE(sampled(1, 100000, 2500, 2).sorted().ordinals, rows.ordinals);
}

TEST(EvenSample, EveryRowHasTheSameChance)
{
    std::vector<int> taken(1000);
    for (std::uint64_t seed = 1; seed <= 2000; ++seed)
        for (const std::int64_t ordinal : sampled(0, 999, 20, seed * 7919).sorted().ordinals)
            ++taken[static_cast<std::size_t>(ordinal)];
    expectEven(taken, 2000, 20);
}

TEST(EvenSample, MergedOnesAreEvenOverAllRowsTheyHaveSeen)
{
    std::vector<int> taken(1000);
    for (std::uint64_t seed = 1; seed <= 2000; ++seed) {
        EvenSample sample = sampled(0, 299, 20, seed * 7919);
        sample.merge(sampled(300, 999, 20, seed * 104729 + 1));
        EXPECT_EQ(sample.size(), 20);
        EXPECT_EQ(sample.seen(), 1000);
        for (const std::int64_t ordinal : sample.sorted().ordinals)
            ++taken[static_cast<std::size_t>(ordinal)];
    }
    expectEven(taken, 2000, 20);
}

TEST(EvenSample, SmallOnesMergeIntoAllTheirRows)
{
    EvenSample sample = sampled(6, 10, 20, 1);
    sample.merge(sampled(1, 5, 20, 2));
    sample.merge(EvenSample(1, 20, 3));
    EXPECT_EQ(sample.sorted().ordinals, (std::vector<std::int64_t>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(EvenSample(1, 20, 3).sorted().ordinals.size(), 0U);
}
