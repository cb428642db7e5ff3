// SPDX-License-Identifier: MIT
#include "engine/kernel/Nist.h"
#include "engine/server/Serverfit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

/// How many digits, to one decimal, the worst coefficient and the residuals' deviation are to reach.
struct Bar
{
    const char *set;
    double coefficients;
    double deviation;
};

void PrintTo(const Bar &bar, std::ostream *out)
{
    *out << bar.set;
}

/// A certified set in a table of the server.
class ServerDigits : public testing::TestWithParam<Bar>
{
protected:
    ServerDigits() : set(readNist(GetParam().set))
    {
        QString declared;
        for (int j = 1; j <= set.controls(); ++j) {
            controls.append(u("x%1").arg(j));
            declared += u("x%1 double precision, ").arg(j);
        }
        db->exec(u("CREATE TABLE t (%1y double precision)").arg(declared));
        QString rows;
        for (int i = 0; i < set.observations(); ++i) {
            QStringList cells;
            for (const std::vector<double> &column : set.columns)
                cells.append(u("'%1'").arg(QString::number(column[size_t(i)], 'g', 17)));
            rows += (i == 0 ? u("(") : u(", (")) + cells.join(u(", ")) + u(")");
        }
        db->exec(u("INSERT INTO t VALUES %1").arg(rows));
    }

    double worst(const nuvo::Fit &fit) const
    {
        double digits = 15;
        for (int j = 0; j <= set.controls(); ++j)
            digits = std::min(digits, digitsAgreed(fit.b(j), set.coefficients[size_t(j)].certified));
        return digits;
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Postgres);
    NistSet set;
    QStringList controls;
};

bool reaches(double digits, double bar)
{
    return std::round(digits * 10) >= std::round(bar * 10);
}

INSTANTIATE_TEST_SUITE_P(Nist, ServerDigits,
                         testing::Values(Bar{"Longley", 15, 15}, Bar{"Norris", 13.5, 13.9},
                                         Bar{"Pontius", 14.3, 14.2}, Bar{"Wampler1", 15, 15},
                                         Bar{"Wampler2", 13.1, 15}, Bar{"Wampler3", 15, 15}, Bar{"Wampler4", 15, 15},
                                         Bar{"Wampler5", 15, 15}),
                         [](const auto &each) { return std::string(each.param.set); });

} // namespace

TEST_P(ServerDigits, ReachTheirBar)
{
    nuvo::RecordSums records = readOn(requestOf(db->name(), "t", controls));
    const auto fit = fitOf(records);
    ASSERT_EQ(fit->n(), set.observations());
    RecordProperty("coefficients", std::to_string(worst(*fit)));
    EXPECT_TRUE(reaches(worst(*fit), GetParam().coefficients)) << worst(*fit);
    const double deviation = digitsAgreed(fit->syx(), set.residualDeviation.certified);
    RecordProperty("deviation", std::to_string(deviation));
    EXPECT_TRUE(reaches(deviation, GetParam().deviation)) << deviation;
}
