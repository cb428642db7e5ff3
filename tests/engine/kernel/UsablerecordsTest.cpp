// SPDX-License-Identifier: MIT
#include "engine/kernel/Usablerecords.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace {

std::uint64_t bits(double value)
{
    return std::bit_cast<std::uint64_t>(value);
}

} // namespace

TEST(UsableRecords, CrossProductsAreThoseOfAllColumnsAtOnce)
{
    std::mt19937 random(15);
    std::normal_distribution<double> normal;
    for (const int n : {1, 3, 130, 2500}) {
        std::vector<std::vector<double>> sources;
        for (int j = 0; j < 8; ++j) {
            std::vector<double> source(3000);
            for (double &value : source)
                value = std::ldexp(normal(random), j == 5 ? -300 : j == 6 ? 700 : 8 * j);
            sources.push_back(source);
        }
        std::vector<int> records;
        records.reserve(n);
        for (int i = 0; i < n; ++i)
            records.push_back(i + i / 7);
        nuvo::UsableRecords set(records, 3000, 8);
        EXPECT_EQ(set.count(), n);
        EXPECT_EQ(set.walked(), 3000);
        for (int round = 0; round < 60; ++round) {
            std::vector<int> numbers;
            for (int j = 1; j < 8; ++j) {
                if (random() % 2 == 0)
                    numbers.push_back(j);
            }
            if (round % 3 == 0)
                std::shuffle(numbers.begin(), numbers.end(), random);
            numbers.push_back(0);
            std::vector<nuvo::DataColumn> columns;
            std::vector<std::vector<double>> gathered;
            for (const int number : numbers) {
                const auto view = set.column(number, sources[std::size_t(number)]);
                std::vector<double> values;
                values.reserve(records.size());
                for (const int record : records)
                    values.push_back(sources[std::size_t(number)][std::size_t(record)]);
                EXPECT_EQ(std::vector<double>(view.values, view.values + n), values);
                gathered.push_back(values);
            }
            columns.reserve(gathered.size());
            for (const std::vector<double> &values : gathered)
                columns.push_back({values.data(), nuvo::minMax(values.data(), n).largest()});
            nuvo::CrossProducts expected{};
            nuvo::CrossProducts got{};
            nuvo::crossProducts(columns, n, expected);
            set.crossProducts(numbers, got);
            for (std::size_t i = 0; i <= columns.size(); ++i) {
                for (std::size_t j = 0; j <= columns.size(); ++j) {
                    ASSERT_EQ(bits(got[i][j].hi), bits(expected[i][j].hi)) << i << ' ' << j;
                    ASSERT_EQ(bits(got[i][j].lo), bits(expected[i][j].lo)) << i << ' ' << j;
                }
            }
        }
    }
}

TEST(UsableRecords, LowPartsAreInTheCrossProductsAsInThoseOfAllColumnsAtOnce)
{
    std::mt19937 random(16);
    std::normal_distribution<double> normal;
    const int n = 300;
    std::vector<std::vector<double>> sources(5);
    std::vector<std::vector<double>> low(5);
    for (std::size_t j = 0; j < 5; ++j) {
        for (int i = 0; i < n; ++i) {
            sources[j].push_back(normal(random));
            if (j % 2 == 0)
                low[j].push_back(j == 2 ? 0 : std::ldexp(sources[j].back() * normal(random), -54));
        }
    }
    std::vector<int> records;
    for (int i = 0; i < n; i += 2)
        records.push_back(i);
    const auto gathered = [&](const std::vector<double> &source) {
        std::vector<double> values;
        values.reserve(records.size());
        for (const int record : records)
            values.push_back(source[std::size_t(record)]);
        return values;
    };
    std::vector<std::vector<double>> values;
    std::vector<std::vector<double>> lows;
    for (std::size_t j = 0; j < 5; ++j) {
        values.push_back(gathered(sources[j]));
        lows.push_back(low[j].empty() ? low[j] : gathered(low[j]));
    }
    nuvo::UsableRecords set(records, n, 5);
    for (const std::vector<int> &numbers : {std::vector<int>{3, 4, 0}, {1, 2, 3, 4, 0}, {4, 2, 0}, {4, 3, 1, 0}}) {
        std::vector<nuvo::ExtendedColumn> columns;
        for (const int number : numbers) {
            const std::size_t at = std::size_t(number);
            EXPECT_EQ(set.column(number, sources[at], low[at]).low != nullptr, number % 4 == 0)
                << "where all are 0 there are none";
            columns.push_back({{values[at].data(), nuvo::minMax(values[at].data(), set.count()).largest()},
                               number % 4 == 0 ? lows[at].data() : nullptr});
        }
        nuvo::CrossProducts expected{};
        nuvo::CrossProducts got{};
        nuvo::crossProducts(std::span<const nuvo::ExtendedColumn>(columns), set.count(), expected);
        set.crossProducts(numbers, got);
        for (std::size_t i = 0; i <= columns.size(); ++i) {
            for (std::size_t j = 0; j <= columns.size(); ++j) {
                ASSERT_EQ(bits(got[i][j].hi), bits(expected[i][j].hi)) << i << ' ' << j;
                ASSERT_EQ(bits(got[i][j].lo), bits(expected[i][j].lo)) << i << ' ' << j;
            }
        }
    }
}
