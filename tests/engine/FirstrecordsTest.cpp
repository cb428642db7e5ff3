// SPDX-License-Identifier: MIT
#include "engine/Firstrecords.h"

#include "engine/Columncache.h"
#include "support/Regressions.h"
#include "support/Text.h"

namespace {

/// A table with a key that is no number, in another order than that in which its rows were made.
class FirstRecordsOf : public RegressionOver<TMLRTable>
{
protected:
    /// \param y, a, b, t of the record that was made as number i
    void make(const char *values, int rows)
    {
        db->exec(u("CREATE TABLE data (name TEXT PRIMARY KEY, y REAL, a REAL, b INTEGER, t TEXT)"));
        db->exec(u("CREATE INDEX of_b ON data (b)"));
        db->exec(u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
                   "INSERT INTO data SELECT printf('%05d', 99999 - i), ")
                     .replace(u("%1"), QString::number(rows)) +
                 u(values) + u(" FROM n"));
        bind(regression, *db, "data");
        define(regression, "a b");
        regression.SetControl(1, control("Log", "a"));
        regression.SetControl(2, control("Product", "b", "y"));
        regression.SetControl(3, control("None", "t"));
    }
    nuvo::RecordRequest request()
    {
        nuvo::RecordRequest request;
        request.source = regression.Source();
        for (int k = 1; k <= 3; ++k)
            request.columns.push_back(regression.ControlVar(k));
        request.response = regression.ResponseVarY();
        return request;
    }
    /// All that the load and a fit made of it.
    std::vector<double> figures(bool loaded)
    {
        std::vector<double> all{double(loaded), double(regression.SampleSize()), double(regression.RecordsRead()),
                                double(regression.MoreRecords())};
        for (int i = 1; i <= regression.SampleSize(); ++i) {
            all.insert(all.end(), {double(regression.GetRecord(i)), regression.Gety(i)});
            for (int j = 1; j <= 3; ++j)
                all.push_back(regression.Getx(i, j));
        }
        for (const nuvo::LeftOut &left : regression.LeftOut()) {
            all.insert(all.end(), {double(left.null), double(left.invalid)});
            all.insert(all.end(), left.first.begin(), left.first.end());
        }
        if (loaded) {
            regression.Execute();
            for (int j = 0; j <= 3; ++j)
                all.insert(all.end(), {regression.Getb(j), regression.GetStdErr(j)});
        }
        return all;
    }
    /// Loads by the records, and by a scan.
    void expectTheSame(qint64 walked)
    {
        const std::vector<double> wanted = figures(regression.ReLoad());
        EXPECT_EQ(regression.RecordsRead(), walked);
        std::optional<nuvo::LoadedRecords> loaded = nuvo::FirstRecords(request()).load();
        ASSERT_TRUE(loaded);
        const auto cache = std::make_shared<nuvo::ColumnCache>(regression, std::span<const TIndepVar>());
        cache->put(std::move(*loaded));
        regression.SetColumnCache(cache);
        const std::vector<double> got = figures(regression.ReLoad());
        regression.SetColumnCache(nullptr);
        EXPECT_EQ(got, wanted);
    }
};

} // namespace

TEST_F(FirstRecordsOf, AreThoseOfALoadWhereverTheyLie)
{
    // From the end of the rows on, so that the last 4000 lie far back.
    make(
        "CASE WHEN i < 5001 THEN 2 * i + i % 7 END, i % 11 - 1, i * 3 % 17, CASE i % 5 WHEN 0 THEN 'NaN' ELSE i % 13 "
        "END",
        9000);
    expectTheSame(4000 + 3819);
    EXPECT_EQ(regression.SampleSize(), 2500);
    EXPECT_TRUE(regression.MoreRecords());
}

TEST_F(FirstRecordsOf, EndWithTheTable)
{
    make("2 * i + i % 7, 1 + i % 11, i * 3 % 17, i % 13", 2500);
    expectTheSame(2500);
    EXPECT_EQ(regression.SampleSize(), 2500);
    EXPECT_FALSE(regression.MoreRecords());
    regression.SetFilter(u("b > 3 AND b < 9"));
    regression.SetFiltered(true);
    expectTheSame(735);
    EXPECT_LT(regression.SampleSize(), 2500);
    regression.SetFilter(u("b > 99"));
    expectTheSame(0);
}

TEST_F(FirstRecordsOf, RaiseWhatALoadRaises)
{
    // Of two texts that are no numbers one lies behind the last record that is wanted.
    make("2 * i + i % 7, 1 + i % 11, i * 3 % 17, CASE i WHEN 200 THEN 'many' WHEN 1800 THEN 'few' ELSE i % 13 END",
         3000);
    const QString few = errorOf([&] { regression.ReLoad(); });
    EXPECT_TRUE(few.contains(u("few"))) << few.toStdString();
    EXPECT_EQ(errorOf([&] { nuvo::FirstRecords(request()).load(); }), few);
    regression.Close();
    db->exec(u("UPDATE data SET t = '1' WHERE t = 'few'"));
    regression.Open();
    expectTheSame(2500);
    regression.SetControl(3, control("None", "nobody"));
    EXPECT_EQ(errorOf([&] { nuvo::FirstRecords(request()).load(); }), errorOf([&] { regression.ReLoad(); }));
}

TEST_F(FirstRecordsOf, AreNotLookedForFurtherThanIsWanted)
{
    make("CASE WHEN i < 5001 THEN 2 * i + i % 7 END, 1 + i % 11, i * 3 % 17, i % 13", 9000);
    EXPECT_FALSE(nuvo::FirstRecords(request()).load(2000));
    EXPECT_TRUE(nuvo::FirstRecords(request()).load(7000));
    nuvo::FirstRecords ended(request());
    ended.cancel();
    EXPECT_FALSE(ended.load());
}
