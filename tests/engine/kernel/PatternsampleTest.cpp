// SPDX-License-Identifier: MIT
#include "engine/kernel/Patternsample.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

using namespace nuvo;

namespace {

/// Rows whose columns are multiples of their ordinals; which of the columns are usable goes by the ordinal.
template <class Bits>
void feed(PatternSample &sample, int controls, std::int64_t first, std::int64_t last, Bits bits)
{
    std::vector<std::vector<double>> values(std::size_t(controls) + 1);
    std::vector<std::uint32_t> usable;
    for (std::int64_t i = first; i <= last; ++i) {
        for (std::size_t j = 0; j < values.size(); ++j)
            values[j].push_back(double(j + 1) * double(i));
        usable.push_back(bits(i));
    }
    std::vector<const double *> columns;
    for (const std::vector<double> &column : values)
        columns.push_back(column.data());
    sample.add(columns, usable, first);
}

/// In ascending order, each of them one that every column of the set and the response can use, with its values.
template <class Bits>
void expectUsable(const EvenSample::Rows &rows, ControlSet set, int controls, Bits bits)
{
    const std::uint32_t needed = set | std::uint32_t(1) << controls;
    EXPECT_TRUE(std::is_sorted(rows.ordinals.begin(), rows.ordinals.end()));
    for (std::size_t i = 0; i < rows.ordinals.size(); ++i) {
        EXPECT_EQ(bits(rows.ordinals[i]) & needed, needed);
        for (std::size_t j = 0; j < rows.columns.size(); ++j) {
            EXPECT_EQ(rows.columns[j][i], double(j + 1) * double(rows.ordinals[i]));
        }
    }
}

/// Every tenth of the rows holds close to a tenth of the sample.
void expectEven(const std::vector<std::int64_t> &ordinals, std::int64_t rows)
{
    std::vector<int> parts(10);
    for (const std::int64_t ordinal : ordinals)
        ++parts[std::size_t((ordinal - 1) * 10 / rows)];
    const double wanted = double(ordinals.size()) / 10;
    for (const int part : parts)
        EXPECT_NEAR(part, wanted, 5 * std::sqrt(wanted));
}

} // namespace

TEST(PatternSample, AFitOfFewRowsHasThemAll)
{
    const auto bits = [](std::int64_t i) { return std::uint32_t(i % 8); };
    PatternSample sample(2);
    feed(sample, 2, 1, 2000, bits);
    for (ControlSet set = 0; set < 4; ++set) {
        const EvenSample::Rows rows = sample.rows(set);
        std::int64_t wanted = 0;
        for (std::int64_t i = 1; i <= 2000; ++i)
            wanted += (bits(i) & (set | 4)) == (set | 4);
        EXPECT_EQ(std::int64_t(rows.ordinals.size()), wanted);
        expectUsable(rows, set, 2, bits);
    }
}

TEST(PatternSample, EveryFitHasAnEvenSampleOfItsOwnRows)
{
    // The two controls are usable in different halves of the table, and together in a fifth of it.
    const auto bits = [](std::int64_t i) { return 4U | (i <= 60000 ? 1U : 0U) | (i > 40000 ? 2U : 0U); };
    PatternSample sample(2);
    for (std::int64_t first = 1; first <= 100000; first += 1000)
        feed(sample, 2, first, first + 999, bits);
    for (ControlSet set = 0; set < 4; ++set) {
        const EvenSample::Rows rows = sample.rows(set);
        EXPECT_EQ(rows.ordinals.size(), 2500U);
        expectUsable(rows, set, 2, bits);
    }
    expectEven(sample.rows(0).ordinals, 100000);
    expectEven(sample.rows(1).ordinals, 60000);
}

TEST(PatternSample, ManyPatternsShareTheRoomAndTheFitOfAllControlsKeepsItsOwn)
{
    const auto bits = [](std::int64_t i) { return 1024U | std::uint32_t(i * 2654435761 >> 7 & 1023); };
    PatternSample sample(10);
    for (std::int64_t first = 1; first <= 400000; first += 1000) {
        feed(sample, 10, first, first + 999, bits);
        feed(sample, 10, 400000 + first, 400000 + first + 999, [](std::int64_t) { return 2047U; });
    }
    EXPECT_EQ(sample.rows(1023).ordinals.size(), 2500U);
    EXPECT_EQ(sample.rows(0).ordinals.size(), 2500U);
    expectEven(sample.rows(0).ordinals, 800000);
    std::size_t kept = 0;
    for (ControlSet set = 0; set < 1024; ++set) {
        const EvenSample::Rows rows = sample.rows(set);
        EXPECT_GT(rows.ordinals.size(), 0U);
        expectUsable(rows, set, 10, [&](std::int64_t i) { return i > 400000 ? 2047U : bits(i); });
        kept = std::max(kept, rows.ordinals.size());
    }
    EXPECT_EQ(kept, 2500U);
}

TEST(PatternSample, PartsOfATableMergeIntoTheSampleOfTheWhole)
{
    const auto bits = [](std::int64_t i) { return i % 5 == 0 ? 6U : 7U; };
    PatternSample whole(2);
    feed(whole, 2, 1, 20000, bits);
    PatternSample first(2);
    feed(first, 2, 1, 7000, bits);
    PatternSample second(2);
    feed(second, 2, 7001, 20000, bits);
    first.merge(second);
    for (const ControlSet set : {0U, 1U, 2U, 3U})
        EXPECT_EQ(first.rows(set).ordinals, whole.rows(set).ordinals);
}

TEST(PatternSample, OrdinalsCanBeCountedFromElsewhere)
{
    PatternSample sample(1);
    feed(sample, 1, 1, 5, [](std::int64_t) { return 3U; });
    sample.shift(1000);
    EXPECT_EQ(sample.rows(1).ordinals, (std::vector<std::int64_t>{1001, 1002, 1003, 1004, 1005}));
}
