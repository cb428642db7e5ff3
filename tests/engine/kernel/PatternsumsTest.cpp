// SPDX-License-Identifier: MIT
#include "engine/kernel/Patternsums.h"
#include "engine/kernel/Exact.h"
#include "engine/kernel/Normalequations.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <utility>
#include <vector>

using namespace nuvo;

namespace {

/// Rows as a scan hands them on, with the sums that they have in rational arithmetic.
class Rows
{
public:
    explicit Rows(int controls) : m(controls), columns(std::size_t(controls) + 1) {}

    void add(const std::vector<double> &row, std::uint32_t bits)
    {
        for (std::size_t j = 0; j < columns.size(); ++j)
            columns[j].push_back((bits >> j & 1) != 0 ? row[j] : notANumber);
        usable.push_back(bits);
    }

    std::size_t size() const { return usable.size(); }

    void feed(PatternSums &sums, std::size_t from, std::size_t to) const
    {
        std::vector<const double *> pointers;
        for (const auto &column : columns)
            pointers.push_back(column.data() + from);
        sums.add(pointers, std::span(usable).subspan(from, to - from));
    }

    PatternSums fed(std::size_t portion) const
    {
        PatternSums sums(m);
        for (std::size_t from = 0; from < size(); from += portion)
            feed(sums, from, std::min(size(), from + portion));
        return sums;
    }

    /// The rows that a fit of these controls uses.
    std::vector<std::size_t> used(ControlSet set) const
    {
        const std::uint32_t needed = set | std::uint32_t(1) << m;
        std::vector<std::size_t> result;
        for (std::size_t i = 0; i < size(); ++i) {
            if ((usable[i] & needed) == needed)
                result.push_back(i);
        }
        return result;
    }

    std::vector<int> columnsOf(ControlSet set) const
    {
        std::vector<int> result;
        for (int j = 0; j < m; ++j) {
            if ((set >> j & 1) != 0)
                result.push_back(j);
        }
        result.push_back(m);
        return result;
    }

    int m;
    std::vector<std::vector<double>> columns;
    std::vector<std::uint32_t> usable;
};

/// Every sum for the set is within `bits` of n |a| |b|.
void expectExact(PatternSums &sums, const Rows &rows, ControlSet set, double bound = 0x1p-91)
{
    const std::vector<std::size_t> used = rows.used(set);
    const std::vector<int> index = rows.columnsOf(set);
    EXPECT_EQ(sums.count(set), static_cast<std::int64_t>(used.size()));
    const CrossProducts products = sums.products(set);
    EXPECT_EQ(products[0][0], DoubleDouble(static_cast<double>(used.size())));
    for (std::size_t a = 0; a <= index.size(); ++a) {
        for (std::size_t b = a; b <= index.size(); ++b) {
            Exact wanted = 0;
            double most = 0;
            double largest[2] = {};
            for (const std::size_t i : used) {
                const double left = a == 0 ? 1 : rows.columns[std::size_t(index[a - 1])][i];
                const double right = b == 0 ? 1 : rows.columns[std::size_t(index[b - 1])][i];
                wanted += exact(left) * exact(right);
                largest[0] = std::max(largest[0], std::fabs(left));
                largest[1] = std::max(largest[1], std::fabs(right));
            }
            most = static_cast<double>(used.size()) * largest[0] * largest[1];
            EXPECT_LE(abs(exact(products[a][b]) - wanted), exact(bound) * exact(most)) << set << ' ' << a << ' ' << b;
            EXPECT_TRUE(same(products[a][b], products[b][a]));
        }
    }
}

bool sameProducts(const CrossProducts &a, const CrossProducts &b)
{
    for (std::size_t i = 0; i < a.size(); ++i)
        for (std::size_t j = 0; j < a.size(); ++j)
            if (!same(a[i][j], b[i][j]))
                return false;
    return true;
}

class PatternSumsTest : public testing::Test
{
protected:
    double normal() { return std::normal_distribution<double>()(random_); }

    Rows rows(int m, std::size_t n, const std::function<double()> &value, const std::function<std::uint32_t()> &bits)
    {
        Rows result(m);
        std::vector<double> row(std::size_t(m) + 1);
        for (std::size_t i = 0; i < n; ++i) {
            for (double &one : row)
                one = value();
            result.add(row, bits());
        }
        return result;
    }

    std::mt19937_64 random_{20241123};
};

} // namespace

TEST_F(PatternSumsTest, EveryFitHasTheSumsOfItsOwnRows)
{
    // Nulls in every pattern, the response's among them.
    Rows data = rows(
        4, 3000, [&] { return normal(); }, [&] { return static_cast<std::uint32_t>(random_() % 32); });
    PatternSums sums = data.fed(700);
    EXPECT_EQ(sums.patterns().size(), 16U);
    for (ControlSet set = 0; set < 16; ++set)
        expectExact(sums, data, set);
}

TEST_F(PatternSumsTest, DeviationsOfOneAroundAHundredMillionKeepTheirDigits)
{
    Rows data = rows(
        2, 5000, [&] { return 1e8 + normal(); }, [] { return 7U; });
    PatternSums sums = data.fed(999);
    expectExact(sums, data, 3);
    const std::vector<PatternSums::Column> columns = sums.columns(3);
    for (std::size_t j = 0; j < 3; ++j) {
        Exact total = 0;
        Exact squares = 0;
        double min = infinity;
        double max = -infinity;
        for (const double value : data.columns[j]) {
            total += exact(value);
            min = std::min(min, value);
            max = std::max(max, value);
        }
        const Exact mean = total / 5000;
        for (const double value : data.columns[j])
            squares += (exact(value) - mean) * (exact(value) - mean);
        EXPECT_LT(relativeError(exact(columns[j].mean), mean), 0x1p-52);
        const Exact variance = squares / 4999;
        EXPECT_LT(relativeError(exact(columns[j].deviation) * exact(columns[j].deviation), variance), 1e-14);
        EXPECT_EQ(columns[j].min, min);
        EXPECT_EQ(columns[j].max, max);
    }
}

TEST_F(PatternSumsTest, IntegersBeyondFiftyThreeBits)
{
    Rows data = rows(
        3, 4000, [&] { return static_cast<double>(random_()); }, [&] { return random_() % 9 == 0 ? 13U : 15U; });
    PatternSums sums = data.fed(4000);
    for (const ControlSet set : {0U, 2U, 5U, 7U})
        expectExact(sums, data, set);
}

TEST_F(PatternSumsTest, SmallIntegersAreSummedExactly)
{
    Rows data = rows(
        2, 10000, [&] { return static_cast<double>(random_() % 1000000); },
        [&] { return random_() % 3 == 0 ? 5U : 7U; });
    PatternSums sums = data.fed(333);
    expectExact(sums, data, 0, 0);
    expectExact(sums, data, 1, 0);
    expectExact(sums, data, 3, 0);
}

TEST_F(PatternSumsTest, ValuesOfVeryDifferentSizesInDifferentBlocks)
{
    double scale = 1;
    int count = 0;
    Rows data = rows(
        1, 6000,
        [&] {
            if (++count % 2048 == 0)
                scale *= 1e9;
            return scale * normal();
        },
        [] { return 3U; });
    PatternSums sums = data.fed(100);
    expectExact(sums, data, 1);
}

TEST_F(PatternSumsTest, PortionsMakeNoDifferenceToTheLastBit)
{
    int left = 0;
    std::uint32_t bits = 0;
    // Runs of one pattern of up to 3000 rows, as well as single rows.
    Rows data = rows(
        3, 20000, [&] { return normal(); },
        [&] {
            if (left-- <= 0) {
                left = random_() % 2 == 0 ? 0 : static_cast<int>(random_() % 3000);
                bits = static_cast<std::uint32_t>(8 + random_() % 8);
            }
            return bits;
        });
    PatternSums whole = data.fed(data.size());
    for (const std::size_t portion : {1U, 7U, 1024U, 1500U}) {
        PatternSums other = data.fed(portion);
        for (ControlSet set = 0; set < 8; ++set)
            EXPECT_TRUE(sameProducts(whole.products(set), other.products(set))) << portion << ' ' << set;
    }
}

TEST_F(PatternSumsTest, MorePatternsThanBuffersAreSummedAsWell)
{
    // 2^10 patterns, in which 70000 rows wait for their block.
    Rows data = rows(
        10, 70000, [&] { return normal(); }, [&] { return static_cast<std::uint32_t>(1024 + random_() % 1024); });
    PatternSums sums = data.fed(1000);
    EXPECT_EQ(sums.patterns().size(), 1024U);
    PatternSums single = data.fed(1);
    for (const ControlSet set : {ControlSet(0x3ff), ControlSet(0x155)}) {
        expectExact(sums, data, set);
        EXPECT_TRUE(sameProducts(sums.products(set), single.products(set)));
    }
    EXPECT_EQ(sums.count(0), 70000);
}

TEST_F(PatternSumsTest, MergingGivesTheSameEitherWayRound)
{
    Rows data = rows(
        3, 9000, [&] { return 1000 + normal(); }, [&] { return static_cast<std::uint32_t>(8 + random_() % 8); });
    const auto part = [&](std::size_t from, std::size_t to) {
        PatternSums sums(3);
        data.feed(sums, from, to);
        return sums;
    };
    PatternSums ab = part(0, 4000);
    ab.merge(part(4000, 9000));
    PatternSums ba = part(4000, 9000);
    PatternSums a = part(0, 4000);
    ba.merge(std::move(a));
    for (ControlSet set = 0; set < 8; ++set) {
        expectExact(ab, data, set);
        EXPECT_TRUE(sameProducts(ab.products(set), ba.products(set)));
        const auto left = ab.columns(set);
        const auto right = ba.columns(set);
        for (std::size_t j = 0; j < left.size(); ++j) {
            EXPECT_EQ(left[j].min, right[j].min);
            EXPECT_EQ(left[j].max, right[j].max);
            EXPECT_EQ(left[j].deviation, right[j].deviation);
        }
    }
    ab.merge(PatternSums(3));
    PatternSums empty(3);
    empty.merge(std::move(ab));
    EXPECT_TRUE(sameProducts(empty.products(5), ba.products(5)));
    EXPECT_EQ(empty.count(0), 9000);
}

TEST_F(PatternSumsTest, FewRowsHaveTheCrossProductsOfALoadToTheLastBit)
{
    Rows data = rows(
        3, 1000, [&] { return normal(); }, [] { return 15U; });
    std::vector<DataColumn> columns;
    for (const auto &column : data.columns)
        columns.push_back({column.data(), minMax(column.data(), 1000).largest()});
    CrossProducts wanted{};
    crossProducts(columns, 1000, wanted);
    PatternSums sums = data.fed(10);
    EXPECT_TRUE(sameProducts(sums.products(7), wanted));
}

TEST_F(PatternSumsTest, ColumnsOutOfTheOrdinaryKeepTheirDigits)
{
    // Sizes change from block to block; a pattern of one control has tiny values alone.
    std::size_t row = 0;
    Rows data = rows(
        2, 6000, [&] { return normal() * std::pow(10, row < 3000 ? -150 : 150); },
        [&] { return ++row % 3 == 0 ? 5U : 7U; });
    for (double &value : data.columns[1])
        value *= 1e-140;
    Rows ordinary = data;
    for (std::size_t j = 0; j < 3; ++j)
        for (double &value : ordinary.columns[j])
            value = std::scalbn(value, j == 1 ? -30 : -498);
    PatternSums sums = data.fed(500);
    EXPECT_EQ(sums.exponent(1), 0);
    EXPECT_GT(sums.exponent(0), 490);
    for (std::size_t part = 0; part < 2; ++part) {
        PatternSums first(2);
        data.feed(first, part * 3000, (part + 1) * 3000);
        PatternSums second(2);
        data.feed(second, (1 - part) * 3000, (2 - part) * 3000);
        first.merge(std::move(second));
        EXPECT_EQ(first.exponent(0), sums.exponent(0));
        EXPECT_EQ(first.count(1), 6000);
        EXPECT_NEAR(first.products(1)[1][1].hi / sums.products(1)[1][1].hi, 1, 1e-15);
    }
    const CrossProducts products = sums.products(1);
    Exact wanted = 0;
    for (const double value : data.columns[0])
        wanted += exact(value) * exact(value);
    const Exact scale = exact(std::scalbn(1.0, sums.exponent(0)));
    EXPECT_LT(relativeError(exact(products[1][1]) * scale * scale, wanted), 0x1p-90);
    EXPECT_GT(sums.columns(1)[0].deviation, 1e148);
}

TEST_F(PatternSumsTest, SumsThatOthersHaveAddedUpCountLikeRows)
{
    Rows data = rows(
        2, 3000, [&] { return normal(); }, [&] { return random_() % 2 == 0 ? 7U : 5U; });
    PatternSums rowByRow = data.fed(500);
    PatternSums added(2);
    for (const auto &[pattern, count] : rowByRow.patterns()) {
        PatternSums::Totals totals;
        Rows own(2);
        for (std::size_t i = 0; i < data.size(); ++i) {
            if ((data.usable[i] & 3) == pattern)
                own.add({data.columns[0][i], data.columns[1][i], data.columns[2][i]}, data.usable[i]);
        }
        PatternSums alone = own.fed(1024);
        totals.rows = count;
        totals.products = alone.products(pattern);
        for (const PatternSums::Column &column : alone.columns(pattern))
            totals.ranges.push_back({column.min, column.max});
        added.addTotals(pattern, totals);
        added.addTotals(pattern, {});
    }
    for (ControlSet set = 0; set < 4; ++set)
        expectExact(added, data, set);
    EXPECT_EQ(added.columns(1)[0].min, rowByRow.columns(1)[0].min);
}

TEST_F(PatternSumsTest, NothingAddedIsNothing)
{
    PatternSums sums(2);
    sums.add(std::vector<const double *>{nullptr, nullptr, nullptr}, {});
    EXPECT_EQ(sums.count(0), 0);
    EXPECT_EQ(sums.products(3)[0][0], DoubleDouble(0));
    EXPECT_TRUE(sums.columns(3).empty());
    EXPECT_TRUE(sums.patterns().empty());

    // Rows that no fit of both controls can use.
    Rows data(2);
    for (int i = 0; i < 100; ++i)
        data.add({1.0 * i, 2.0 * i, 3.0 * i}, i % 3 == 0 ? 5 : i % 3 == 1 ? 6 : 3);
    PatternSums some = data.fed(100);
    EXPECT_EQ(some.count(3), 0);
    EXPECT_EQ(some.products(3)[0][0], DoubleDouble(0));
    EXPECT_TRUE(some.columns(3).empty());
    EXPECT_EQ(some.count(1), 34);
    EXPECT_EQ(some.count(0), 67);
}
