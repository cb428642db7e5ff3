// SPDX-License-Identifier: MIT
#pragma once

#include "support/Databases.h"
#include "support/Postgres.h"

#include <memory>

/// Three PostgreSQL servers as one: a database with a partitioned table, and two on other servers, which it knows as
/// the servers "shard1" and "shard2".
class Cluster
{
public:
    /// \param secondShard the URL of the server to take as the second one.
    explicit Cluster(const QString &secondShard = PostgresServer::sharedShardUrl(2));

    /// What a dataset's DatabaseName is set to.
    QString name() const { return parent->name(); }

    /// Makes the table t, partitioned by id, of these columns ("id int, x float8"), with the partitions t1 on shard1
    /// for ids below 1000, t2 on shard2 for those from 1000 to 1999 and, on the first server itself, t3, which is
    /// parted in turn: t3a for ids below 3000 and t3b, again on shard2, for the rest.
    void makeTable(const QString &columns);
    void dropTable();

    std::unique_ptr<TestDatabase> parent;
    std::unique_ptr<TestDatabase> shards[2];

private:
    void makeForeign(int shard, const QString &name, const QString &of, const QString &columns, const QString &range);
};
