// SPDX-License-Identifier: MIT
#include "engine/kernel/Shiftedsums.h"

#include "engine/kernel/Normalequations.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using Columns = std::vector<std::vector<double>>; // the response last

/// Sums in plain doubles, as a database adds them up.
nuvo::CrossProducts plainSums(const Columns &columns)
{
    nuvo::CrossProducts sums{};
    for (size_t row = 0; row < columns[0].size(); ++row) {
        const auto value = [&](size_t j) { return j == 0 ? 1.0 : columns[j - 1][row]; };
        for (size_t i = 0; i <= columns.size(); ++i)
            for (size_t j = 0; j <= columns.size(); ++j)
                sums[i][j].hi += value(i) * value(j);
    }
    return sums;
}

Columns shifted(Columns columns, const std::vector<nuvo::ColumnShift> &shifts)
{
    for (size_t j = 0; j < columns.size(); ++j) {
        for (double &value : columns[j])
            value = std::scalbn(value, -shifts[j].exponent) - shifts[j].shift;
    }
    return columns;
}

std::vector<nuvo::ColumnShift> shiftsOf(const Columns &columns)
{
    std::vector<nuvo::ColumnShift> shifts;
    for (const std::vector<double> &column : columns) {
        double sum = 0;
        for (const double value : column)
            sum += value;
        const nuvo::ColumnRange range = nuvo::minMax(column.data(), int(column.size()));
        shifts.push_back(nuvo::ColumnShift::of(sum / double(column.size()), range, range));
    }
    return shifts;
}

std::vector<nuvo::DoubleDouble> residuals(const Columns &columns, const nuvo::Combination &combination)
{
    std::vector<nuvo::DoubleDouble> sums(columns.size() + 1);
    const size_t own = size_t(combination.column) - 1;
    for (size_t row = 0; row < columns[0].size(); ++row) {
        double r = columns[own][row] - combination.b[0];
        for (size_t j = 0; j < columns.size(); ++j) {
            if (j != own && j + 1 < combination.b.size())
                r -= combination.b[j + 1] * columns[j][row];
        }
        sums[0].hi += r;
        for (size_t j = 0; j < columns.size(); ++j)
            sums[j + 1].hi += r * (j == own ? r : columns[j][row]);
    }
    return sums;
}

/// y = 3 + 2 x1 - x2 with a little noise, x around an offset.
Columns around(double offset)
{
    Columns columns(3);
    for (int i = 0; i < 500; ++i) {
        const double x1 = double(i * 7 % 101) / 64;
        const double x2 = double(i * 13 % 97) / 32;
        columns[0].push_back(offset + x1);
        columns[1].push_back(offset + x2);
        columns[2].push_back(3 + 2 * x1 - x2 + double(i % 2) / 1024);
    }
    return columns;
}

} // namespace

TEST(ColumnShifts, LieNearTheMeanHaveFewDigitsAndAreNever0)
{
    const nuvo::ColumnShift far = nuvo::ColumnShift::of(1e8 + 0.1234567, {1e8 - 1, 1e8 + 1}, {1e8 - 1, 1e8 + 1});
    EXPECT_NEAR(far.shift, 1e8 + 0.1234567, 0.01);
    EXPECT_EQ(std::fmod(far.shift * 1024, 1), 0);
    EXPECT_EQ(far.exponent, 0);
    const nuvo::ColumnShift none = nuvo::ColumnShift::of(0, {-1, 1}, {-1, 1});
    EXPECT_NE(none.shift, 0);
    EXPECT_LT(std::fabs(none.shift), 0.01);
    EXPECT_EQ(nuvo::ColumnShift::of(7.5, {7.5, 7.5}, {7.5, 7.5}).shift, 7.5);
    EXPECT_NE(nuvo::ColumnShift::of(0, {0, 0}, {0, 0}).shift, 0);
    // An outlier elsewhere leaves the digits of these alone, as far as the range goes.
    EXPECT_NEAR(nuvo::ColumnShift::of(5, {4, 6}, {4, 1e50}).shift, 5, 0.01);
    const nuvo::ColumnShift huge = nuvo::ColumnShift::of(5, {4, 6}, {4, 1e300});
    EXPECT_GT(std::fabs(huge.shift), 0x1p-450);
    // A mean that is worked out roughly can lie outside.
    EXPECT_LE(nuvo::ColumnShift::of(3, {1, 2}, {1, 2}).shift, 2.01);
}

TEST(ColumnShifts, KeepTheSquaresOfTheLargestNumbersInRange)
{
    for (const double largest : {1e300, 1e100, 1e-100, 1e-300}) {
        const nuvo::ColumnShift shift = nuvo::ColumnShift::of(largest / 3, {-largest, largest}, {-largest, largest});
        const double value = std::scalbn(largest, -shift.exponent) - shift.shift;
        EXPECT_TRUE(std::isnormal(value * value * 1e9)) << largest;
        EXPECT_TRUE(std::isnormal(value * value * 1e-30)) << largest;
    }
}

TEST(ColumnShifts, CanBeSparedWhereDigitsAndRangeAllow)
{
    EXPECT_TRUE(nuvo::ColumnShift::isDispensable(60, {10, 110}, {10, 110}, false));
    EXPECT_TRUE(nuvo::ColumnShift::isDispensable(-60, {-110, -10}, {-110, -10}, false));
    EXPECT_FALSE(nuvo::ColumnShift::isDispensable(105, {100, 110}, {100, 110}, true)); // digits
    EXPECT_FALSE(nuvo::ColumnShift::isDispensable(0.1, {-1, 1}, {-1, 1}, false));      // there may be 1e-200 in it
    EXPECT_TRUE(nuvo::ColumnShift::isDispensable(0.1, {-1, 1}, {-1, 1}, true));
    EXPECT_FALSE(nuvo::ColumnShift::isDispensable(1e90, {1e-9, 3e90}, {1e-9, 3e90}, false));
    EXPECT_FALSE(nuvo::ColumnShift::isDispensable(0, {0, 0}, {0, 0}, true));
}

TEST(ShiftedSums, AreThoseOfTheColumnsWhenShiftedBack)
{
    const Columns columns = around(64);
    const auto shifts = shiftsOf(columns);
    const nuvo::CrossProducts back = nuvo::unshifted(plainSums(shifted(columns, shifts)), shifts);
    std::vector<nuvo::DataColumn> plain;
    for (const std::vector<double> &column : columns)
        plain.push_back({column.data(), nuvo::minMax(column.data(), 500).largest()});
    nuvo::CrossProducts exact;
    nuvo::crossProducts(plain, 500, exact);
    for (size_t i = 0; i <= 3; ++i)
        for (size_t j = 0; j <= 3; ++j)
            EXPECT_EQ(back[i][j].hi, exact[i][j].hi) << i << ' ' << j;
}

TEST(ShiftedSums, CorrectedByTheResidualsGiveBackTheDigitsThatPlainOnesLose)
{
    const Columns columns = around(1e6);
    std::vector<nuvo::DataColumn> operands;
    for (const std::vector<double> &column : columns)
        operands.push_back({column.data(), nuvo::minMax(column.data(), 500).largest()});
    nuvo::CrossProducts exact;
    nuvo::crossProducts(operands, 500, exact);
    const nuvo::Coefficients right = nuvo::solveCoefficients(exact, 2);
    const nuvo::Coefficients plain = nuvo::solveCoefficients(plainSums(columns), 2);
    EXPECT_GT(std::fabs(plain.b[1] - right.b[1]), 1e-7);

    const auto shifts = shiftsOf(columns);
    const Columns ours = shifted(columns, shifts);
    nuvo::CrossProducts sums = plainSums(ours);
    // What is lost in these would be seen: a thousandth of each.
    for (size_t j = 1; j <= 2; ++j)
        sums[j][3].hi = sums[3][j].hi *= 1.001;
    const nuvo::Combination first = nuvo::firstSolution(sums, 2);
    EXPECT_GT(std::fabs(first.b[1] - right.b[1]), 1e-4);
    nuvo::takeResiduals(sums, 2, first, residuals(ours, first));
    const nuvo::Coefficients corrected = nuvo::solveCoefficients(nuvo::unshifted(sums, shifts), 2);
    for (size_t j = 1; j <= 2; ++j)
        EXPECT_NEAR(corrected.b[j], right.b[j], 1e-14 * std::fabs(right.b[j]));
    EXPECT_NEAR(corrected.sse, right.sse, 1e-12 * right.sse);
}

TEST(ShiftedSums, OfAColumnThatDependsOnOthersShowIt)
{
    Columns columns = around(0);
    columns.insert(columns.begin() + 2, std::vector<double>());
    for (size_t i = 0; i < 500; ++i)
        columns[2].push_back(columns[0][i] / 3 + columns[1][i] * 0.7);
    const auto shifts = shiftsOf(columns);
    const Columns ours = shifted(columns, shifts);
    nuvo::CrossProducts sums = plainSums(ours);
    const nuvo::Combination near = nuvo::nearlyDependent(sums, 3, 1);
    ASSERT_EQ(near.column, 3);
    EXPECT_NEAR(near.b[1], 1 / 3.0, 1e-5);
    nuvo::takeResiduals(sums, 3, near, residuals(ours, near));
    EXPECT_EQ(nuvo::dependentColumns(nuvo::unshifted(sums, shifts), 3), std::vector<int>{3});
    EXPECT_EQ(nuvo::nearlyDependent(sums, 3, 4).column, 0);
    const nuvo::Combination first = nuvo::firstSolution(sums, 3);
    EXPECT_EQ(first.column, 4);
    EXPECT_EQ(first.b[3], 0);
}
