// SPDX-License-Identifier: MIT
#include "engine/Serverstatements.h"
#include "engine/server/Serverfit.h"

#include <QSqlQuery>

#include <gtest/gtest.h>

namespace {

/// How a server that has workers to spare goes about the statements over a table.
class PlansOfServers : public testing::Test
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Postgres);
    std::unique_ptr<nuvo::ServerStatements> statements;

    void SetUp() override
    {
        db->exec(u("CREATE TABLE t AS SELECT 100 + sin(i) AS x, cos(i) AS y FROM generate_series(1, 20000) i"));
        db->exec(u("ANALYZE t"));
        for (const char *setting : {"parallel_setup_cost", "parallel_tuple_cost", "min_parallel_table_scan_size"})
            db->exec(u("SET %1 = 0").arg(u(setting)));
        const nuvo::SqlNumbers sql(nuvo::Dialect::Postgres);
        const auto field = [&](const QString &name) {
            return nuvo::SqlField{sql.number(name, nuvo::FieldKind::Float),
                                  sql.present(name, nuvo::FieldKind::Float)};
        };
        statements = std::make_unique<nuvo::ServerStatements>(
            std::vector{nuvo::sqlTerm(controlOf("None", "x"), sql, field),
                        nuvo::sqlTerm(responseOf("y"), sql, field)},
            nuvo::ServerSource{u("t"), true, {}}, std::vector<nuvo::ServerSource>(), QString(), sql);
    }
    QString plan(const QString &statement) const
    {
        QSqlQuery query(db->writer());
        EXPECT_TRUE(query.exec(u("EXPLAIN (VERBOSE, COSTS OFF) ") + statement));
        QString text;
        while (query.next())
            text += query.value(0).toString() + u'\n';
        return text;
    }
};

} // namespace

TEST_F(PlansOfServers, HaveWorkersAddUpSideBySideAndWorkEachDifferenceOutOnce)
{
    nuvo::ColumnShift shift;
    shift.shift = 100;
    const std::vector<nuvo::ServerStatements::Column> columns{{0, shift, true}, {1, {}, true}};
    nuvo::Combination combination;
    combination.column = 2;
    combination.b = {0.5, 2};
    for (const QString &statement :
         {statements->counts(), statements->products(columns), statements->residuals(columns, combination)}) {
        const QString text = plan(statement);
        EXPECT_TRUE(text.contains(u("Gather"))) << text.toStdString();
        EXPECT_TRUE(text.contains(u("Parallel Seq Scan"))) << text.toStdString();
    }
    // The scan hands the difference on; the products are of that.
    const QString text = plan(statements->products(columns));
    const QString scan = text.section(u("Parallel Seq Scan"), 1).section(u("Output: "), 1).section(u'\n', 0, 0);
    EXPECT_TRUE(scan.contains(u("(t.x - '100'"))) << text.toStdString();
}
