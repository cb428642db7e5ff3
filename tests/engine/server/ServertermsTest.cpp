// SPDX-License-Identifier: MIT
#include "engine/Recordscan.h"
#include "engine/server/Serverfit.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

/// Terms of a table with every kind of value, added up by the server and read record by record.
class ServerTerms : public testing::Test
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Postgres);
    nuvo::RecordRequest request;

    void SetUp() override
    {
        request = requestOf(db->name(), "t", {});
        db->exec(u("CREATE TABLE t (a float8, b float8, n bigint, d numeric, y float8)"));
        db->exec(u("INSERT INTO t SELECT sin(i) * 10 + 3, cos(i) * 5, i % 7 - 2, i % 11 + 0.25, sin(i) + i % 5 - 1 "
                   "FROM generate_series(1, 1000) i"));
        db->exec(u("INSERT INTO t VALUES (0, 0, 0, 0, 0), (NULL, 1, 1, 1, 1), (1, NULL, NULL, NULL, 1), (1, 1, 1, 1, "
                   "NULL), ('NaN', 1, 1, 'NaN', 1), (1, 'Infinity', 1, 1, 1), (1e-20, 1e-20, 1, 1, 1e-20), "
                   "(-1e-20, -1e-20, 1, 1, 2), (1e-21, 1e-21, 1, 1, 3), (0, 1, 0, 0, 1), (1, 0, 1, 1, 1), "
                   "(-5, 3, 9007199254740993, 1, 1)"));
    }

    void expectSame(bool figures = true)
    {
        nuvo::RecordSums server = readOn(request);
        std::optional<nuvo::RecordSums> all = nuvo::RecordScan(request).read();
        ASSERT_TRUE(all);
        const auto ours = server.sums.patterns();
        const auto theirs = all->sums.patterns();
        ASSERT_EQ(ours.size(), theirs.size());
        for (size_t i = 0; i < ours.size(); ++i) {
            EXPECT_EQ(ours[i].usable, theirs[i].usable);
            EXPECT_EQ(ours[i].rows, theirs[i].rows) << ours[i].usable;
        }
        ASSERT_EQ(server.leftOut.size(), all->leftOut.size());
        for (size_t i = 0; i < server.leftOut.size(); ++i) {
            EXPECT_EQ(server.leftOut[i].null, all->leftOut[i].null) << i;
            EXPECT_EQ(server.leftOut[i].invalid, all->leftOut[i].invalid) << i;
        }
        for (nuvo::ControlSet set = 0; figures && set < nuvo::ControlSet(1) << request.columns.size(); ++set) {
            const auto our = server.sums.columns(set);
            const auto their = all->sums.columns(set);
            ASSERT_EQ(our.size(), their.size()) << set;
            for (size_t k = 0; k < our.size(); ++k) {
                EXPECT_NEAR(our[k].min, their[k].min, 1e-15 * std::fabs(their[k].min)) << set << ' ' << k;
                EXPECT_NEAR(our[k].max, their[k].max, 1e-15 * std::fabs(their[k].max)) << set << ' ' << k;
                EXPECT_NEAR(our[k].mean, their[k].mean, 1e-13 * their[k].deviation) << set << ' ' << k;
                if (their[k].deviation > 0) {
                    EXPECT_NEAR(our[k].deviation / their[k].deviation, 1, 1e-12) << set << ' ' << k;
                }
            }
        }
    }
};

} // namespace

TEST_F(ServerTerms, OfOneFieldAreThoseOfAScan)
{
    request.columns = {controlOf("Log", "a"), controlOf("Inverse", "b"), controlOf("Sqrt", "a"),
                       controlOf("None", "n"), controlOf("Scale", "d", "2.5")};
    expectSame();
}

TEST_F(ServerTerms, WithAPowerOrANumberAreThoseOfAScan)
{
    request.columns = {controlOf("Power", "b", "2"), controlOf("Power", "b", "3"),  controlOf("Power", "a", "1"),
                       controlOf("Scale", "a", "0"), controlOf("Scaled", "b", "3"), controlOf("Scale", "a", "1e-10")};
    expectSame();
}

TEST_F(ServerTerms, OfTwoFieldsAreThoseOfAScan)
{
    request.columns = {controlOf("Product", "a", "b"), controlOf("Quotient", "a", "b"),
                       controlOf("Quotient", "n", "d")};
    expectSame();
}

TEST_F(ServerTerms, OfTheResponseAreThoseOfAScan)
{
    request.columns = {controlOf("None", "n")};
    for (const char *const transformation : {"None", "Log", "Inverse"}) {
        request.response = responseOf("y", transformation);
        expectSame();
    }
    request.response = responseOf("y", "Scale", "4");
    expectSame();
    request.response = responseOf("y", "Scale", "1e-21");
    expectSame();
}

TEST_F(ServerTerms, ThatWouldBeInfiniteLeaveTheSameRecordsOut)
{
    db->exec(u("INSERT INTO t VALUES (1e200, 1e200, 1, 1, 1), (1e200, 1e-19, 1, 1, 1), (1e308, 0.01, 1, 1, 1), "
               "(-1e300, 3, 1, 1, 1), (1.7e308, 1, 1, 1, 1), (1e154, -1e154, 1, 1, 1)"));
    request.columns = {controlOf("Power", "a", "2"), controlOf("Power", "b", "3"), controlOf("Scale", "a", "1e-10"),
                       controlOf("Product", "a", "b"), controlOf("Quotient", "a", "b")};
    expectSame(false);
}

TEST_F(ServerTerms, RefuseANumberOfADefinitionThatIsNone)
{
    request.columns = {controlOf("Power", "a", "two")};
    EXPECT_TRUE(errorOf<EConvertError>([&] { readOn(request); }).contains(u("exponent of a term of field \"a\"")));
    request.columns = {controlOf("Scale", "a", "ten")};
    EXPECT_TRUE(
        errorOf<EConvertError>([&] { readOn(request); }).contains(u("scale factor of a term of field \"a\"")));
}
