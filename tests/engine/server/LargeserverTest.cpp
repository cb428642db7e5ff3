// SPDX-License-Identifier: MIT
#include "engine/Recordscan.h"
#include "engine/server/Serverfit.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(ServerSumsOfAMillionRecords, AreThoseOfAScan)
{
    const auto db = TestDatabase::make(TestDatabase::Postgres);
    db->exec(u(
        "CREATE TABLE t AS SELECT 1e8 + sin(i) AS x1, CASE WHEN i % 9 > 0 THEN cos(i * 7) END AS x2, i % 1009 AS x3, "
        "sin(i) * 3 + i % 5 AS y FROM generate_series(1, 1000000) i"));
    const nuvo::RecordRequest request = requestOf(db->name(), "t", {u("x1"), u("x2"), u("x3")});
    nuvo::ServerReader reader(request);
    std::optional<nuvo::RecordSums> server = reader.read();
    std::optional<nuvo::RecordSums> all = nuvo::RecordScan(request).read();
    ASSERT_TRUE(server && all);
    EXPECT_EQ(reader.rowsReceived(), (std::vector<qint64>{2, 2, 1, 2500}));
    EXPECT_EQ(server->total, 1000000);
    for (nuvo::ControlSet set = 1; set < 8; ++set) {
        const auto ours = fitOf(*server, set);
        const auto theirs = fitOf(*all, set);
        ASSERT_EQ(ours->n(), theirs->n());
        for (int j = 0; j <= ours->m(); ++j)
            EXPECT_NEAR(ours->b(j), theirs->b(j), 1e-7 * theirs->stdErr(j)) << set << ' ' << j;
        EXPECT_NEAR(ours->sse() / theirs->sse(), 1, 1e-11) << set;
    }
}
