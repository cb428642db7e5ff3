// SPDX-License-Identifier: MIT
#include "support/Cluster.h"
#include "engine/Serverstatements.h"
#include "engine/kernel/Nist.h"
#include "engine/server/Serverfit.h"
#include "platform/Partitions.h"

#include <QSqlQuery>

#include <gtest/gtest.h>

namespace {

class ServerSumsOfACluster : public testing::Test
{
protected:
    Cluster cluster;

    void SetUp() override
    {
        cluster.makeTable(u("id int, x1 float8, x2 float8, y float8"));
        // The same records in one table.
        cluster.parent->exec(u("CREATE TABLE whole AS SELECT i AS id, 1e6 + sin(i) AS x1, CASE WHEN i % 10 > 0 THEN "
                               "cos(i * i) END AS x2, sin(i) * 3 + i % 5 AS y FROM generate_series(1, 3999) i"));
        cluster.parent->exec(u("INSERT INTO t SELECT * FROM whole"));
    }

    /// The statements on the table, asked part by part as a reader asks them.
    nuvo::ServerStatements statements() const
    {
        const nuvo::SqlNumbers sql(nuvo::Dialect::Postgres);
        const auto field = [&](const QString &name) {
            return nuvo::SqlField{sql.number(name, nuvo::FieldKind::Float),
                                  sql.present(name, nuvo::FieldKind::Float)};
        };
        nuvo::Connection connection;
        connection.open(cluster.name());
        std::vector<nuvo::ServerSource> parts;
        for (const nuvo::Partition &part : nuvo::partitionsOf(connection, u("public.t"), u("t")))
            parts.push_back({part.source, part.server.isEmpty(), part.caption()});
        return {{nuvo::sqlTerm(controlOf("None", "x1"), sql, field),
                 nuvo::sqlTerm(controlOf("None", "x2"), sql, field), nuvo::sqlTerm(responseOf("y"), sql, field)},
                {u("public.t"), false, {}},
                parts,
                {},
                sql};
    }
    QStringList plan(const QString &statement) const
    {
        QSqlQuery query(cluster.parent->writer());
        EXPECT_TRUE(query.exec(u("EXPLAIN (VERBOSE, COSTS OFF) ") + statement));
        QStringList lines;
        while (query.next())
            lines.append(query.value(0).toString().trimmed());
        return lines;
    }
    qsizetype lines(const QStringList &plan, const char *beginning) const
    {
        return std::count_if(plan.begin(), plan.end(),
                             [&](const QString &line) { return line.contains(u(beginning)); });
    }
};

} // namespace

TEST_F(ServerSumsOfACluster, AreThoseOfTheWholeTable)
{
    nuvo::RecordSums parts = readOn(requestOf(cluster.name(), "t", {u("x1"), u("x2")}));
    nuvo::RecordSums whole = readOn(requestOf(cluster.name(), "whole", {u("x1"), u("x2")}));
    EXPECT_EQ(parts.sums.count(0), 3999);
    EXPECT_EQ(parts.sums.count(3), 3600);
    for (const nuvo::ControlSet set : {1U, 2U, 3U}) {
        const auto ours = fitOf(parts, set);
        const auto theirs = fitOf(whole, set);
        for (int j = 0; j <= ours->m(); ++j)
            EXPECT_NEAR(ours->b(j), theirs->b(j), 1e-12 * std::fabs(theirs->b(j)));
        EXPECT_NEAR(ours->sse(), theirs->sse(), 1e-12 * theirs->sse());
    }
    EXPECT_EQ(parts.leftOut, whole.leftOut);
    EXPECT_EQ(parts.sample.rows(3).ordinals.size(), 2500U);
}

TEST_F(ServerSumsOfACluster, AskEachServerForSumsAlone)
{
    const nuvo::ServerStatements asked = statements();
    ASSERT_EQ(asked.sources().size(), 4U);
    const nuvo::ColumnShift shift{0, 1};
    const std::vector<nuvo::ServerStatements::Column> columns{{0, shift, true}, {1, shift, false}, {2, shift, true}};
    nuvo::Combination combination;
    combination.column = 3;
    combination.b = {1, 2, 3};
    for (const QString &statement :
         {asked.counts(), asked.products(columns), asked.residuals(columns, combination)}) {
        const QStringList text = plan(statement);
        // Three foreign parts, each one's aggregates its server's work, side by side; the fourth is here.
        EXPECT_EQ(lines(text, "Async Foreign Scan"), 3) << text.join(u'\n').toStdString();
        EXPECT_EQ(lines(text, "Relations: Aggregate on (public.t"), 3) << text.join(u'\n').toStdString();
        EXPECT_EQ(lines(text, "Foreign Scan on public."), 0) << text.join(u'\n').toStdString();
    }
}

TEST_F(ServerSumsOfACluster, AreFewRowsHoweverManyRecordsThereAre)
{
    nuvo::ServerReader reader(requestOf(cluster.name(), "t", {u("x1"), u("x2")}));
    EXPECT_TRUE(reader.read().has_value());
    // Two patterns of each part, sums of both, those of the residuals, and the sample.
    EXPECT_EQ(reader.rowsReceived(), (std::vector<qint64>{8, 8, 4, 2500}));
}

TEST_F(ServerSumsOfACluster, TakeTheFilterToEachServer)
{
    nuvo::RecordRequest request = requestOf(cluster.name(), "t", {u("x1")});
    request.source.filter = u("t.id BETWEEN 900 AND 3100");
    EXPECT_EQ(readOn(request).sums.count(1), 2201);
    request.source.filter = u("id < 0");
    EXPECT_EQ(readOn(request).sums.count(1), 0);
}

TEST_F(ServerSumsOfACluster, AreAskedOfTheTableItselfWhereItsPartsAreNotTheirOwn)
{
    nuvo::Connection connection;
    connection.open(cluster.name());
    EXPECT_EQ(nuvo::partitionsOf(connection, u("public.t"), u("t")).size(), 4U);
    EXPECT_TRUE(nuvo::partitionsOf(connection, u("public.whole"), u("whole")).empty());
    // What a table's policies hide must stay hidden.
    cluster.parent->exec(u("ALTER TABLE t ENABLE ROW LEVEL SECURITY"));
    EXPECT_TRUE(nuvo::partitionsOf(connection, u("public.t"), u("t")).empty());
    EXPECT_EQ(readOn(requestOf(cluster.name(), "t", {u("x1")})).sums.count(1), 3999);
}

TEST_F(ServerSumsOfACluster, AreAskedOfAForeignTableOrAQueryInOneGoToo)
{
    EXPECT_EQ(readOn(requestOf(cluster.name(), "t1", {u("x1")})).sums.count(1), 999);
    nuvo::RecordRequest query = requestOf(cluster.name(), "", {u("x1")});
    query.source.table.clear();
    query.source.sql = u("SELECT * FROM t WHERE id > 2500");
    EXPECT_EQ(readOn(query).sums.count(1), 1499);
}

TEST_F(ServerSumsOfACluster, AreAskedOfTablesThatInheritFromOne)
{
    cluster.parent->exec(u("CREATE TABLE base (id int, x float8, y float8)"));
    cluster.parent->exec(u("CREATE TABLE near () INHERITS (base)"));
    cluster.shards[0]->exec(u("CREATE TABLE far (id int, x float8, y float8)"));
    cluster.parent->exec(u("CREATE FOREIGN TABLE far () INHERITS (base) SERVER shard1"));
    for (const char *name : {"base", "near", "far"})
        cluster.parent->exec(u("INSERT INTO %1 SELECT i, i % 3, i % 5 FROM generate_series(1, 100) i").arg(u(name)));
    EXPECT_EQ(readOn(requestOf(cluster.name(), "base", {u("x")})).sums.count(1), 300);
    EXPECT_EQ(readOn(requestOf(cluster.name(), "near", {u("x")})).sums.count(1), 100);
}

TEST(ServerSumsOfCertifiedSets, KeepTheirDigitsOnACluster)
{
    Cluster cluster;
    for (const auto &[name, bar] : {std::pair("Longley", 15.0),
                                    {"Norris", 14.0},
                                    {"Pontius", 13.5},
                                    {"Wampler1", 15.0},
                                    {"Wampler2", 13.1},
                                    {"Wampler5", 15.0}}) {
        const NistSet set = readNist(name);
        QStringList controls;
        QString declared = u("id int");
        for (int j = 1; j <= set.controls(); ++j) {
            controls.append(u("x%1").arg(j));
            declared += u(", x%1 float8").arg(j);
        }
        cluster.makeTable(declared + u(", y float8"));
        QStringList rows;
        for (int i = 0; i < set.observations(); ++i) {
            QStringList cells{QString::number(i % 4 * 1000 + i)};
            for (const std::vector<double> &column : set.columns)
                cells.append(u("'%1'").arg(QString::number(column[size_t(i)], 'g', 17)));
            rows.append(u("(%1)").arg(cells.join(u(", "))));
        }
        cluster.parent->exec(u("INSERT INTO t VALUES %1").arg(rows.join(u(", "))));
        nuvo::RecordSums records = readOn(requestOf(cluster.name(), "t", controls));
        const auto fit = fitOf(records);
        double digits = 15;
        for (int j = 0; j <= set.controls(); ++j)
            digits = std::min(digits, digitsAgreed(fit->b(j), set.coefficients[size_t(j)].certified));
        RecordProperty(name, std::to_string(digits));
        EXPECT_GE(digits, bar) << name;
        cluster.dropTable();
    }
}
