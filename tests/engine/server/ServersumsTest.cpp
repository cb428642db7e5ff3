// SPDX-License-Identifier: MIT
#include "engine/kernel/Dependence.h"
#include "engine/server/Serverfit.h"

#include <QSqlQuery>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

using Rows = std::vector<std::vector<double>>; // by column, the response last

const double none = std::numeric_limits<double>::quiet_NaN();

QString literal(double value)
{
    return std::isnan(value) ? u("NULL") : u("'%1'").arg(QString::number(value, 'g', 17));
}

/// What a scan adds up of the same numbers.
nuvo::PatternSums addedUp(const Rows &columns)
{
    nuvo::PatternSums sums(int(columns.size()) - 1);
    std::vector<std::uint32_t> usable(columns[0].size());
    std::vector<const double *> values;
    for (size_t j = 0; j < columns.size(); ++j) {
        values.push_back(columns[j].data());
        for (size_t i = 0; i < usable.size(); ++i)
            usable[i] |= std::uint32_t(std::isfinite(columns[j][i])) << j;
    }
    sums.add(values, usable);
    return sums;
}

/// Expects fits of the set by both to agree to so many digits.
void expectSameFit(nuvo::RecordSums &server, nuvo::PatternSums &exact, nuvo::ControlSet set, double digits,
                   double means = 1e-14)
{
    ASSERT_EQ(server.sums.count(set), exact.count(set)) << set;
    if (exact.count(set) < 4)
        return;
    const auto ours = fitOf(server, set);
    nuvo::RecordSums other(exact.controls());
    other.sums = std::move(exact);
    const auto theirs = fitOf(other, set);
    exact = std::move(other.sums);
    const double near = std::pow(10, -digits);
    for (int j = 0; j <= ours->m(); ++j)
        EXPECT_NEAR(ours->b(j), theirs->b(j), near * std::fabs(theirs->b(j))) << set << ' ' << j;
    EXPECT_NEAR(ours->sse(), theirs->sse(), near * theirs->sse()) << set;
    EXPECT_NEAR(ours->stdErr(1), theirs->stdErr(1), near * theirs->stdErr(1)) << set;
    const auto ourColumns = server.sums.columns(set);
    const auto theirColumns = exact.columns(set);
    for (size_t k = 0; k < theirColumns.size(); ++k) {
        EXPECT_EQ(ourColumns[k].min, theirColumns[k].min);
        EXPECT_EQ(ourColumns[k].max, theirColumns[k].max);
        EXPECT_NEAR(ourColumns[k].mean, theirColumns[k].mean, means * std::fabs(theirColumns[k].mean));
        EXPECT_NEAR(ourColumns[k].deviation, theirColumns[k].deviation, 10 * means * theirColumns[k].deviation);
    }
}

class ServerSums : public testing::Test
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Postgres);

    /// The table t of x1, x2, …, y.
    void fill(const Rows &columns, const char *type = "float8")
    {
        QStringList declared;
        for (size_t j = 0; j + 1 < columns.size(); ++j)
            declared.append(u("x%1 %2").arg(j + 1).arg(u(type)));
        db->exec(u("CREATE TABLE t (%1, y %2)").arg(declared.join(u(", ")), u(type)));
        QStringList rows;
        for (size_t i = 0; i < columns[0].size(); ++i) {
            QStringList cells;
            for (const std::vector<double> &column : columns)
                cells.append(literal(column[i]));
            rows.append(u("(%1)").arg(cells.join(u(", "))));
        }
        if (!rows.isEmpty())
            db->exec(u("INSERT INTO t VALUES %1").arg(rows.join(u(", "))));
    }
    nuvo::RecordSums read(const QStringList &controls) { return readOn(requestOf(db->name(), "t", controls)); }
    QString errorWith(const char *control, const char *response = "y")
    {
        return errorOf<EDatabaseError>([&] { readOn(requestOf(db->name(), "t", {u(control)}, response)); });
    }
};

Rows randomRows(size_t rows, size_t columns, double offset = 0, unsigned seed = 1)
{
    std::mt19937 random(seed);
    Rows result(columns, std::vector<double>(rows));
    for (size_t i = 0; i < rows; ++i) {
        double y = 1;
        for (size_t j = 0; j + 1 < columns; ++j) {
            result[j][i] = offset + double(random() % 4001) / 2000 - 1;
            y += double(j + 1) * (result[j][i] - offset);
        }
        result[columns - 1][i] = offset + y + double(random() % 1001) / 1000;
    }
    return result;
}

} // namespace

TEST_F(ServerSums, GiveEachSetOfTermsItsOwnRecords)
{
    Rows columns = randomRows(3200, 4, 10);
    for (size_t i = 0; i < columns[0].size(); ++i) {
        for (size_t j = 0; j < 4; ++j) {
            if ((i >> j & 1) != 0)
                columns[j][i] = none;
        }
    }
    fill(columns);
    db->exec(u("UPDATE t SET x2 = 'NaN' WHERE x2 IS NULL AND x1 > 10"));
    db->exec(u("UPDATE t SET x3 = '-Infinity' WHERE x3 IS NULL AND x1 > 10"));
    nuvo::RecordSums records = read({u("x1"), u("x2"), u("x3")});
    nuvo::PatternSums exact = addedUp(columns);
    EXPECT_EQ(records.sums.patterns().size(), 8U);
    for (nuvo::ControlSet set = 0; set < 8; ++set) {
        if (set == 0)
            EXPECT_EQ(records.sums.count(set), 1600);
        else
            expectSameFit(records, exact, set, 12);
    }
    ASSERT_EQ(records.leftOut.size(), 4U);
    for (const nuvo::LeftOut &left : records.leftOut) {
        EXPECT_EQ(left.null, 1600);
        EXPECT_EQ(left.invalid, 0);
    }
    // The sample holds what all can use first, then what a smaller set can.
    EXPECT_EQ(records.sample.rows(7).ordinals.size(), 200U);
    EXPECT_EQ(records.sample.rows(1).ordinals.size(), 800U);
    EXPECT_EQ(records.sample.rows(7).ordinals.front(), 1);
    EXPECT_EQ(records.read, 1600);
}

TEST_F(ServerSums, KeepTheDigitsOfDeviationsFarFromZero)
{
    Rows columns = randomRows(2000, 4, 1e8);
    fill(columns);
    nuvo::RecordSums records = read({u("x1"), u("x2"), u("x3")});
    nuvo::PatternSums exact = addedUp(columns);
    expectSameFit(records, exact, 7, 12);
}

TEST_F(ServerSums, TakeWholeNumbersBeyondThoseOfADouble)
{
    db->exec(u("CREATE TABLE t (x1 bigint, y numeric)"));
    db->exec(u("INSERT INTO t SELECT 9007199254740993 * i, 9007199254740993 * (2 * i::numeric + i % 3) "
               "FROM generate_series(1, 1000) i"));
    Rows columns(2);
    for (qint64 i = 1; i <= 1000; ++i) {
        columns[0].push_back(double(Q_INT64_C(9007199254740993) * i));
        columns[1].push_back(double(9007199254740993.0L * (2 * i + i % 3)));
    }
    nuvo::RecordSums records = read({u("x1")});
    nuvo::PatternSums exact = addedUp(columns);
    expectSameFit(records, exact, 1, 12);
}

TEST_F(ServerSums, TakeNumbersOfEveryType)
{
    db->exec(
        u("CREATE TABLE t (a smallint, b bigint, c numeric(9, 3), d real, e money, f boolean, y double precision)"));
    db->exec(
        u("INSERT INTO t SELECT i % 7, i * i % 11, i % 13 + 0.125, i % 17 + 0.5, (i % 19)::money, i % 2 = 0, i % 23 "
          "FROM generate_series(1, 500) i"));
    db->exec(u("INSERT INTO t VALUES (1, 1, 'NaN', 1, 1, true, 1), (NULL, 1, 1, 'Infinity', NULL, NULL, 1)"));
    Rows columns(7);
    for (int i = 1; i <= 500; ++i) {
        const double values[] = {double(i % 7),  double(i * i % 11), i % 13 + 0.125, i % 17 + 0.5,
                                 double(i % 19), double(i % 2 == 0), double(i % 23)};
        for (size_t j = 0; j < 7; ++j)
            columns[j].push_back(values[j]);
    }
    nuvo::RecordSums records = read({u("a"), u("b"), u("c"), u("D"), u("e"), u("f")});
    nuvo::PatternSums exact = addedUp(columns);
    expectSameFit(records, exact, 63, 12);
    EXPECT_EQ(records.leftOut[1].null, 1);
    EXPECT_EQ(records.leftOut[3].null, 1);
    EXPECT_EQ(records.leftOut[6].null, 1);
}

TEST_F(ServerSums, StayInRangeWhateverTheSizeOfTheNumbers)
{
    Rows columns = randomRows(300, 4);
    for (double &value : columns[0])
        value *= 1e250;
    for (double &value : columns[1])
        value *= 1e-250;
    for (size_t i = 0; i < 300; i += 3) {
        columns[2][i] = 1e-200;
        columns[3][i] = 0;
    }
    fill(columns);
    nuvo::RecordSums records = read({u("x1"), u("x2"), u("x3")});
    nuvo::PatternSums exact = addedUp(columns);
    expectSameFit(records, exact, 7, 11);
}

TEST_F(ServerSums, TellColumnsThatDependOnOthersFromThoseThatNearlyDo)
{
    Rows columns = randomRows(1000, 5, 5);
    for (size_t i = 0; i < 1000; ++i) {
        columns[1][i] = 3 * columns[0][i] + 1e-5 * columns[1][i];
        columns[3][i] = columns[0][i] + columns[2][i];
    }
    fill(columns);
    nuvo::RecordSums records = read({u("x1"), u("x2"), u("x3"), u("x4")});
    EXPECT_EQ(fitOf(records)->dependentColumns(), std::vector<int>{4});
    nuvo::PatternSums exact = addedUp(columns);
    // Large coefficients take what rounding left of the sums of the columns into those of the response.
    expectSameFit(records, exact, 7, 9, 1e-11);
}

TEST_F(ServerSums, OfAnEmptyTableAreNone)
{
    fill(Rows(3));
    const nuvo::RecordSums records = read({u("x1"), u("x2")});
    EXPECT_EQ(records.sums.count(0), 0);
    EXPECT_TRUE(records.sums.patterns().empty());
    EXPECT_EQ(records.read, 0);
    ASSERT_EQ(records.leftOut.size(), 3U);
    EXPECT_EQ(records.leftOut[0], nuvo::LeftOut());
}

TEST_F(ServerSums, WithoutAUsableRecordAreNone)
{
    fill({{none, none, 1}, {1, 2, 3}, {1, 2, none}});
    const nuvo::RecordSums records = read({u("x1"), u("x2")});
    EXPECT_EQ(records.sums.count(3), 0);
    EXPECT_EQ(records.sums.count(2), 2);
    EXPECT_EQ(records.sample.rows(2).ordinals.size(), 2U);
    db->exec(u("UPDATE t SET y = NULL"));
    const nuvo::RecordSums nothing = read({u("x1"), u("x2")});
    EXPECT_EQ(nothing.sums.count(0), 0);
    EXPECT_EQ(nothing.leftOut[0].null, 3);
    EXPECT_EQ(nothing.leftOut[1].null, 2);
}

TEST_F(ServerSums, OfOneRecordOrOneValueAreThere)
{
    fill({{4}, {5}});
    nuvo::RecordSums records = read({u("x1")});
    EXPECT_EQ(records.sums.count(1), 1);
    EXPECT_EQ(records.sums.columns(1)[0].mean, 4);
    db->exec(u("INSERT INTO t SELECT 0, i FROM generate_series(1, 9) i; DELETE FROM t WHERE x1 = 4"));
    nuvo::RecordSums constant = read({u("x1")});
    EXPECT_EQ(constant.sums.columns(1)[0].min, 0);
    EXPECT_EQ(constant.sums.columns(1)[0].max, 0);
    EXPECT_EQ(constant.sums.columns(1)[0].deviation, 0);
    EXPECT_EQ(constant.sums.columns(1)[1].mean, 5);
}

TEST_F(ServerSums, TakeAFilterOrAStatementWithParameters)
{
    Rows columns = randomRows(2000, 3);
    fill(columns);
    nuvo::RecordRequest filtered = requestOf(db->name(), "t", {u("x1"), u("x2")});
    filtered.source.filter = u("x1 > 0 -- and no others");
    nuvo::RecordSums above = readOn(filtered);
    Rows positive(3);
    for (size_t i = 0; i < 2000; ++i) {
        for (size_t j = 0; columns[0][i] > 0 && j < 3; ++j)
            positive[j].push_back(columns[j][i]);
    }
    nuvo::PatternSums exact = addedUp(positive);
    expectSameFit(above, exact, 3, 12);

    nuvo::RecordRequest statement = requestOf(db->name(), "", {u("x1"), u("x1_1")});
    statement.source.table.clear();
    statement.source.sql = u("SELECT x1, x2 AS x1, y FROM t WHERE x1 > :least ORDER BY 1;");
    statement.source.params.insert(u("least"), 0);
    nuvo::RecordSums queried = readOn(statement);
    expectSameFit(queried, exact, 3, 12);
    EXPECT_EQ(queried.sample.rows(3).ordinals.size(), positive[0].size());
}

TEST_F(ServerSums, RefuseWhatIsNoNumber)
{
    db->exec(u("CREATE TABLE t (x1 float8, word text, da date, y float8)"));
    EXPECT_EQ(errorWith("word"),
              u("Field \"word\" of table \"t\" is of type text to the server, which adds up numbers alone; "
                "reading all records takes numbers in texts too."));
    EXPECT_TRUE(errorWith("da").contains(u("of type date")));
    EXPECT_EQ(errorWith("x9"), u("No field \"x9\" in table \"t\"; its fields: x1, word, da, y."));
    nuvo::RecordRequest wrong = requestOf(db->name(), "t", {u("x1")});
    wrong.source.filter = u("x1 >");
    EXPECT_TRUE(errorOf<EDatabaseError>([&] { readOn(wrong); }).startsWith(u("Cannot read table \"t\": ")));
}

TEST_F(ServerSums, LeaveNothingOnTheServer)
{
    fill(randomRows(10, 2));
    nuvo::RecordRequest request = requestOf(db->name(), "t", {u("x1")});
    request.source.filter = u("lo_create(0) > 0"); // writes in a transaction that only reads
    const QString error = errorOf<EDatabaseError>([&] { readOn(request); });
    const bool refuses = db->value(u("SHOW server_version_num")).toInt() >= 160000; // which older servers do not
    EXPECT_EQ(error.contains(u("in a read-only transaction")), refuses) << error.toStdString();
    EXPECT_EQ(error.isEmpty(), !refuses) << error.toStdString();
    EXPECT_EQ(db->value(u("SELECT count(*) FROM pg_largeobject_metadata")).toInt(), 0);
    request.source.filter = u("nextval('s') > 0");
    db->exec(u("CREATE SEQUENCE s"));
    EXPECT_TRUE(errorOf<EDatabaseError>([&] { readOn(request); }).contains(u("read-only")));
    EXPECT_TRUE(QSqlDatabase::connectionNames().filter(u("nuvo-")).isEmpty());
}

TEST_F(ServerSums, ReadBesideAProgramsOwnConnection)
{
    fill(randomRows(100, 2));
    db->exec(u("BEGIN"));
    db->exec(u("DELETE FROM t WHERE x1 > 0"));
    EXPECT_EQ(readOn(requestOf(db->writer().connectionName(), "t", {u("x1")})).sums.count(1), 100);
    db->exec(u("ROLLBACK"));
}
