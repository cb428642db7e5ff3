// SPDX-License-Identifier: MIT
#include "select/Told.h"

#include <random>

namespace {

class SearchProgress : public testing::Test
{
protected:
    /// `columns` columns of noise, and a response that is noise too.
    void makeNoise(int columns)
    {
        std::mt19937 random(21);
        std::normal_distribution<double> normal;
        std::vector<Row> rows;
        for (int i = 0; i < 40; ++i) {
            Row row;
            for (int j = 0; j <= columns; ++j)
                row.push_back(normal(random));
            rows.push_back(row);
        }
        makeTable(*db, "data", QByteArray("y a b c d e f g h").first(1 + 2 * columns).constData(), rows);
        bind(table, *db, "data");
    }
    void fit(const char *controls)
    {
        define(table, controls);
        table.ReLoad();
        table.Execute();
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    Messages messages;
    TMLRTable table;
};

} // namespace

TEST_F(SearchProgress, OfForwardAndBackwardIsRoundedWithTiesToEven)
{
    makeNoise(8);
    const QStringList eighths{text("12"), text("25"), text("38"), text("50"),
                              text("62"), text("75"), text("88"), text("100")};
    fit("a b c d e f g h");
    Told<TFwdSelectMLR> forward;
    forward.SetFDefault(1e9);
    EXPECT_EQ(toldBy(forward, table).first(8), eighths);

    fit("a b c d e f g h");
    Told<TBackElimMLR> backward;
    backward.SetFDefault(-1e9);
    EXPECT_EQ(toldBy(backward, table).first(8), eighths);
}

TEST_F(SearchProgress, OfTheReCheckIsHeldAtZeroAndShows100WhereItCannotBeWorkedOut)
{
    makeTable(*db, "data", "y a b c d", cement());
    bind(table, *db, "data");
    fit("d a b");
    Told<TStepWiseMLR> told;
    told.SetFInDefault(3.5);
    told.SetFOutDefault(1e9); // takes everything out again
    const QStringList log = toldBy(told, table);
    const qsizetype check = log.indexOf(text("Checking included variables..."));
    ASSERT_GT(check, 0);
    // One variable is left: (1 - 2) / 1 is below 0. None is left: (0 - 1) / 0 is no number of per cents.
    EXPECT_EQ(log.mid(check + 1, 4), QStringList({text("Removed a."), text("0"), text("Removed d."), text("100")}));
}
