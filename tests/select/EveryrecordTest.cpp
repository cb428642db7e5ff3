// SPDX-License-Identifier: MIT
#include "select/Selections.h"

#include <cmath>
#include <random>

// Choosing a model over every record: one read of the table serves every candidate.

namespace {

/// Nulls in every control and in the response, so that every candidate has records of its own.
std::vector<Row> records(int count)
{
    std::mt19937 random(12);
    std::normal_distribution<double> normal;
    std::uniform_real_distribution<double> uniform;
    std::vector<Row> rows;
    for (int i = 0; i < count; ++i) {
        const double a = normal(random);
        const double b = 0.6 * a + normal(random);
        const double c = 2 + normal(random);
        Row row{1 + a - 0.4 * b + normal(random), a, b, c, normal(random)};
        for (std::optional<double> &cell : row) {
            if (uniform(random) < 0.08)
                cell = null;
        }
        rows.push_back(row);
    }
    return rows;
}

template <class Selection>
class EveryRecordChosen : public testing::Test
{
protected:
    /// What a run says and leaves.
    QStringList chosen(int count, TMLRTable::TRecords use, TCorvane::TSelectionRule rule, bool emptied = false)
    {
        const std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
        makeTable(*db, "data", "y a b c d", records(count));
        TMLRTable regression;
        bind(regression, *db, "data");
        define(regression, "a b c d");
        regression.SetRecords(use);
        EXPECT_TRUE(regression.ReLoad());
        regression.Execute();
        if (emptied)
            db->exec(text("DELETE FROM data"));
        Selection selection;
        selection.SetTable(&regression);
        selection.SetRule(rule);
        selection.Run();
        used = regression.RecordsUsed();
        QStringList told = selection.Steps();
        for (int k = 1; k <= 4; ++k)
            told += regression.ControlVar(k).Transformation();
        for (int j = 0; j <= regression.GetNumVars(); ++j)
            told += QString::number(regression.Getb(j), 'g', 12);
        return told;
    }

    Messages messages;
    qint64 used = 0;
};
using Methods = testing::Types<TOptimizeMLR, TStepWiseMLR, TBackElimMLR, TFwdSelectMLR>;
TYPED_TEST_SUITE(EveryRecordChosen, Methods);

} // namespace

TYPED_TEST(EveryRecordChosen, BelowTheLimitTheChoiceIsThatOfTheFirstRecords)
{
    for (const auto rule : {TCorvane::Written, TCorvane::Textbook}) {
        const QStringList first = this->chosen(1500, TMLRTable::FirstRecords, rule);
        EXPECT_EQ(this->chosen(1500, TMLRTable::AllRecords, rule), first);
    }
}

TYPED_TEST(EveryRecordChosen, TheTableIsReadOnce)
{
    for (const auto rule : {TCorvane::Written, TCorvane::Textbook}) {
        const QStringList wanted = this->chosen(4000, TMLRTable::AllRecords, rule);
        EXPECT_GT(this->used, 2500);
        EXPECT_EQ(this->chosen(4000, TMLRTable::AllRecords, rule, true), wanted) << "the table was empty meanwhile";
    }
}

TEST(EveryRecordOfASelection, RowsReadAnewAreReadOnceForAllCandidates)
{
    Messages messages;
    const std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    makeTable(*db, "data", "y a b c d", records(4000));
    TMLRTable regression;
    bind(regression, *db, "data");
    define(regression, "a b c d");
    regression.SetRecords(TMLRTable::AllRecords);
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    regression.Refresh();
    int loads = 0;
    QObject::connect(&regression, &TMLRTable::LoadEnded, &regression, [&] {
        if (++loads == 1)
            db->exec(text("DELETE FROM data"));
    });
    TOptimizeMLR search;
    search.SetTable(&regression);
    search.Run();
    EXPECT_GT(loads, 15);
    EXPECT_TRUE(regression.Loaded());
    // Behind the run a load reads again.
    EXPECT_FALSE(regression.ReLoad());
}
