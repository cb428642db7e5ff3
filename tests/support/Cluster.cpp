// SPDX-License-Identifier: MIT
#include "support/Cluster.h"

#include <QUrl>

Cluster::Cluster(const QString &secondShard)
    : parent(TestDatabase::make(TestDatabase::Postgres)), shards{
                                                              TestDatabase::makeOn(PostgresServer::sharedShardUrl(1)),
                                                              TestDatabase::makeOn(secondShard)}
{
    parent->exec(QStringLiteral("CREATE EXTENSION postgres_fdw"));
    for (int shard = 0; shard < 2; ++shard) {
        const QUrl url(shards[shard]->name());
        parent->exec(QStringLiteral("CREATE SERVER shard%1 FOREIGN DATA WRAPPER postgres_fdw OPTIONS (host '%2', "
                                    "port '%3', dbname '%4', async_capable 'true', fetch_size '1000')")
                         .arg(shard + 1)
                         .arg(url.host())
                         .arg(url.port())
                         .arg(url.path().mid(1)));
        parent->exec(QStringLiteral("CREATE USER MAPPING FOR CURRENT_USER SERVER shard%1 OPTIONS (user '%2')")
                         .arg(shard + 1)
                         .arg(url.userName()));
    }
}

void Cluster::makeTable(const QString &columns)
{
    const auto values = [](const char *from, const char *to) {
        return QStringLiteral("FOR VALUES FROM (%1) TO (%2)").arg(QLatin1String(from), QLatin1String(to));
    };
    parent->exec(QStringLiteral("CREATE TABLE t (%1) PARTITION BY RANGE (id)").arg(columns));
    makeForeign(0, QStringLiteral("t1"), QStringLiteral("t"), columns, values("MINVALUE", "1000"));
    makeForeign(1, QStringLiteral("t2"), QStringLiteral("t"), columns, values("1000", "2000"));
    parent->exec(
        QStringLiteral("CREATE TABLE t3 PARTITION OF t %1 PARTITION BY RANGE (id)").arg(values("2000", "MAXVALUE")));
    parent->exec(QStringLiteral("CREATE TABLE t3a PARTITION OF t3 %1").arg(values("2000", "3000")));
    makeForeign(1, QStringLiteral("t3b"), QStringLiteral("t3"), columns, values("3000", "MAXVALUE"));
}

void Cluster::dropTable()
{
    parent->exec(QStringLiteral("DROP TABLE t"));
    shards[0]->exec(QStringLiteral("DROP TABLE t1"));
    shards[1]->exec(QStringLiteral("DROP TABLE t2, t3b"));
}

void Cluster::makeForeign(int shard, const QString &name, const QString &of, const QString &columns,
                          const QString &range)
{
    shards[shard]->exec(QStringLiteral("CREATE TABLE %1 (%2)").arg(name, columns));
    parent->exec(QStringLiteral("CREATE FOREIGN TABLE %1 PARTITION OF %2 %3 SERVER shard%4")
                     .arg(name, of, range)
                     .arg(shard + 1));
}
