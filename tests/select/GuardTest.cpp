// SPDX-License-Identifier: MIT
#include "select/Patience.h"
#include "select/Selections.h"

#include <random>

namespace {

constexpr int Controls = 4;

/// Four variables that have nothing to do with the response, some cells null: what enters by chance goes out again,
/// each candidate has records of its own, and row and position part.
std::vector<Row> smallSet(std::mt19937 &random)
{
    const auto below = [&random](unsigned end) { return int(random() % end); };
    const int count = 6 + below(5);
    const unsigned nulls = 2U * unsigned(below(4)); // in 20 cells
    std::vector<Row> rows;
    for (int i = 0; i < count; ++i) {
        Row row{0.25 * below(80)};
        for (int j = 0; j < Controls; ++j)
            row.push_back(random() % 20 < nulls ? std::optional<double>() : 0.25 * below(80));
        rows.push_back(row);
    }
    return rows;
}

/// Stepwise searches over small sets, each with the guard and, where it acted, once more without.
class Guard : public testing::Test
{
protected:
    struct Count
    {
        int ended = 0;   ///< by themselves
        int endless = 0; ///< ended by the guard, and not without it
        int touched = 0; ///< ended by the guard, though they end by themselves
    };
    Count simulate(int sets, unsigned seed);

private:
    /// Fills the table with so many sets; the records of each are next to each other.
    std::vector<std::pair<int, int>> makeSets(int sets, std::mt19937 &random);
    TRunEnd run(bool guarded);

    std::unique_ptr<TestDatabase> db_ = TestDatabase::make(TestDatabase::Sqlite);
    Messages messages_;
    TMLRQuery regression_;
    Patient<TStepWiseMLR> search_;
};

std::vector<std::pair<int, int>> Guard::makeSets(int sets, std::mt19937 &random)
{
    db_->exec(text("DELETE FROM data"));
    QSqlDatabase writer = db_->writer();
    writer.transaction();
    QSqlQuery insert(writer);
    EXPECT_TRUE(insert.prepare(text("INSERT INTO data (id, y, a, b, c, d) VALUES (?, ?, ?, ?, ?, ?)")));
    std::vector<std::pair<int, int>> ranges;
    int id = 0;
    for (int set = 0; set < sets; ++set) {
        const int first = id + 1;
        for (const Row &row : smallSet(random)) {
            insert.bindValue(0, ++id);
            for (std::size_t i = 0; i < row.size(); ++i)
                insert.bindValue(int(i) + 1, row[i] ? QVariant(*row[i]) : QVariant());
            EXPECT_TRUE(insert.exec());
        }
        ranges.emplace_back(first, id);
    }
    EXPECT_TRUE(writer.commit());
    return ranges;
}

TRunEnd Guard::run(bool guarded)
{
    nuvo::SelectionTestAccess::setEndsRepeating(search_, guarded);
    define(regression_, "a b c d");
    regression_.ReLoad();
    regression_.Execute();
    search_.Run();
    messages_.shown.clear();
    return search_.Ended();
}

Guard::Count Guard::simulate(int sets, unsigned seed)
{
    constexpr int AtOnce = 2000;
    constexpr int Passes = 100; // of a search that is not guarded; the circles have a few
    std::mt19937 random(seed);
    makeTable(*db_, "data", "y a b c d", {});
    regression_.SetDatabaseName(db_->name());
    search_.SetQuery(&regression_);
    search_.patience = Passes * Controls;
    Count count;
    for (int done = 0; done < sets; done += AtOnce) {
        for (const auto &[first, last] : makeSets(std::min(AtOnce, sets - done), random)) {
            regression_.Close();
            regression_.SetSQL(
                text("SELECT * FROM data WHERE id BETWEEN %1 AND %2 ORDER BY id").arg(first).arg(last));
            regression_.Open();
            const double threshold = 0.25 * double(1 + random() % 16);
            search_.SetFInDefault(threshold);
            search_.SetFOutDefault(threshold * double(1 + random() % 4) / 2);
            // The guard does nothing until it ends a search, so where it ended none there is nothing to compare.
            if (run(true) == TRunEnd::Converged)
                ++count.ended;
            else if (run(false) == TRunEnd::Converged)
                ++count.touched;
            else
                ++count.endless;
        }
    }
    return count;
}

} // namespace

TEST_F(Guard, TouchesNoneOfAMillionSearchesThatEndByThemselves)
{
    const int sets = qEnvironmentVariableIntValue("NUVO_GUARD_SETS") > 0
                         ? qEnvironmentVariableIntValue("NUVO_GUARD_SETS")
                         : 1000000;
    const Count count = simulate(sets, 20261122);
    EXPECT_EQ(count.touched, 0);
    RecordProperty("ended", count.ended);
    RecordProperty("endless", count.endless);
    std::cout << count.ended << " ended by themselves, " << count.endless << " go round, " << count.touched
              << " were ended though they end by themselves\n";
}
