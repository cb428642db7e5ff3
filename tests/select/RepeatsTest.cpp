// SPDX-License-Identifier: MIT
#include "select/Patience.h"
#include "select/Selections.h"

#include <random>

namespace {

/// Runs of one kind of search, with the guard and without.
template <class Search>
class Endless : public SelectionOver<TMLRTable, Patient<Search>>
{
protected:
    struct Outcome
    {
        QStringList trace;
        QString report;
        TRunEnd ended;
        QStringList transformations;
    };
    Outcome run(bool guarded, const char *controls) { return run(guarded, controls, this->regression); }
    Outcome run(bool guarded, const char *controls, TMLRTable &component)
    {
        nuvo::SelectionTestAccess::setEndsRepeating(this->search, guarded);
        define(component, controls);
        component.ReLoad();
        component.Execute();
        this->messages.shown.clear();
        this->search.SetTable(&component);
        const Trace trace;
        this->search.Run();
        Outcome outcome{trace.lines, this->search.Report(), this->search.Ended(), {}};
        for (int k = 1; k <= MaxControls; ++k)
            outcome.transformations.append(component.ControlVar(k).Transformation());
        return outcome;
    }
    /// On a component without a past.
    Outcome runAnew(bool guarded, const char *controls)
    {
        TMLRTable component;
        bind(component, *this->db, "data");
        return run(guarded, controls, component);
    }
};

using Searches = testing::Types<TStepWiseMLR, TBackElimMLR, TFwdSelectMLR>;
TYPED_TEST_SUITE(Endless, Searches);

Message repeatsMessage()
{
    return {text("The search came back to a model that it had already been at and was ended."),
            TMsgDlgType::mtWarning, mbOK, 0};
}

/// Five correlated variables with nulls, so that each candidate has records of its own.
std::vector<Row> randomRows(std::mt19937 &random)
{
    const auto uniform = [&random] { return double(random() % 10000) / 10000; };
    std::vector<Row> rows;
    const int count = 12 + int(random() % 14);
    const double nulls = 0.25 * uniform();
    for (int i = 0; i < count; ++i) {
        const double base = uniform();
        Row row;
        double y = uniform();
        for (int j = 0; j < 5; ++j) {
            const double x = base + 1.5 * uniform();
            y += x * double(j % 3);
            row.push_back(uniform() < nulls ? std::optional<double>() : x);
        }
        row.insert(row.begin(), y);
        rows.push_back(row);
    }
    return rows;
}

} // namespace

TYPED_TEST(Endless, TheGuardChangesNoSearchThatEndsByItselfAndEndsTheOthers)
{
    std::mt19937 random(20261121);
    int ended = 0;
    int endless = 0;
    constexpr int Wanted = 200;
    makeTable(*this->db, "data", "y a b c d e", {});
    for (int set = 0; set < 20 * Wanted && (ended < Wanted || endless < Wanted); ++set) {
        this->db->exec(text("DELETE FROM data"));
        QSqlDatabase writer = this->db->writer();
        writer.transaction();
        QSqlQuery insert(writer);
        ASSERT_TRUE(insert.prepare(text("INSERT INTO data (y, a, b, c, d, e) VALUES (?, ?, ?, ?, ?, ?)")));
        for (const Row &row : randomRows(random)) {
            for (int i = 0; i < 6; ++i)
                insert.bindValue(i, row[std::size_t(i)] ? QVariant(*row[std::size_t(i)]) : QVariant());
            ASSERT_TRUE(insert.exec());
        }
        ASSERT_TRUE(writer.commit());
        // Some thresholds that let a search go round.
        const double threshold = set % 4 == 0 ? 0 : 0.5 * double(set % 7);
        if constexpr (std::is_base_of_v<TStepWiseMLR, TypeParam>) {
            this->search.SetFInDefault(threshold);
            this->search.SetFOutDefault(set % 3 == 0 ? 2 * threshold : threshold);
        } else {
            this->search.SetFDefault(threshold);
        }

        const auto unguarded = this->runAnew(false, "a b c d e");
        const bool endsByItself = unguarded.ended == TRunEnd::Converged;
        if ((endsByItself ? ended : endless) >= Wanted)
            continue;
        const auto guarded = this->runAnew(true, "a b c d e");
        if (endsByItself) {
            ++ended;
            EXPECT_EQ(guarded.ended, TRunEnd::Converged);
            EXPECT_EQ(guarded.trace, unguarded.trace);
            EXPECT_EQ(guarded.report, unguarded.report);
            EXPECT_EQ(guarded.transformations, unguarded.transformations);
            EXPECT_TRUE(std::none_of(this->messages.shown.begin(), this->messages.shown.end(),
                                     [](const Message &message) { return message == repeatsMessage(); }));
        } else {
            ++endless;
            EXPECT_EQ(unguarded.ended, TRunEnd::Stopped);
            EXPECT_EQ(guarded.ended, TRunEnd::Repeats);
            ASSERT_FALSE(this->messages.shown.empty());
            EXPECT_EQ(this->messages.shown.back(), repeatsMessage());
            // What it did until then is what the other did, and the other went on in a circle.
            const qsizetype passes = guarded.trace.size() - 1;
            EXPECT_EQ(guarded.trace.first(passes), unguarded.trace.first(passes));
        }
        ASSERT_FALSE(this->HasFailure()) << "data set " << set;
    }
    EXPECT_GE(ended, Wanted);
    EXPECT_GE(endless, Wanted);
}

namespace {

using EndlessBackward = Endless<TBackElimMLR>;
using EndlessStepwise = Endless<TStepWiseMLR>;

} // namespace

TEST_F(EndlessBackward, AThresholdOfZeroGoesRoundAndIsEndedBeforeTheReport)
{
    fill("y a b c d", cement());
    search.SetFDefault(0);
    search.SetShowReport(true);
    const auto outcome = run(true, "a b c d");
    EXPECT_EQ(outcome.ended, TRunEnd::Repeats);
    ASSERT_EQ(messages.shown.size(), 2U);
    EXPECT_EQ(messages.shown[0], repeatsMessage());
    EXPECT_EQ(messages.shown[1].text, outcome.report);
    EXPECT_TRUE(outcome.trace.last().startsWith(text("end reason=repeats passes=")));
    EXPECT_TRUE(regression.ResultsCurrent());
}

TEST_F(EndlessStepwise, AStatisticAtTheThresholdNeitherAddsNorStops)
{
    fill("y a b c d", cement());
    search.SetFInDefault(traced(run(true, "a b c d").trace.filter(text("decision"))[0], "f").toDouble());
    const auto outcome = run(true, "a b c d");
    EXPECT_EQ(outcome.ended, TRunEnd::Repeats);
    EXPECT_EQ(regression.GetNumVars(), 0);
    EXPECT_EQ(outcome.trace.last(), text("end reason=repeats passes=1 controls=0"));
}

TEST_F(EndlessStepwise, TheDefinitionsBelongToTheState)
{
    // The re-check takes variables out by their term and marks them by their position, so the marks come back while
    // other variables are in the model; the search ends by itself two passes later.
    fill("y a b c d", {{-6, -9, -3, null, -6},
                       {-4, 6, 7, -2, 8},
                       {-2, 5, 3, 8, -3},
                       {-6, 6, 4, -3, 5},
                       {5, 8, null, -6, -5},
                       {0, -3, 8, 4, -7},
                       {1, -2, 8, -7, null},
                       {-3, 9, 4, 5, null},
                       {-1, 5, 9, 0, 3}});
    search.SetFInDefault(1);
    search.SetFOutDefault(1);
    const auto unguarded = run(false, "a b c d");
    ASSERT_EQ(unguarded.ended, TRunEnd::Converged);
    const auto outcome = run(true, "a b c d");
    EXPECT_EQ(outcome.ended, TRunEnd::Converged);
    EXPECT_EQ(outcome.trace, unguarded.trace);
    EXPECT_EQ(outcome.transformations, unguarded.transformations);
}

TEST_F(EndlessStepwise, TheRecordOfTheFTableBelongsToTheState)
{
    // The threshold is the statistic itself. The first look-up moves the table from its second record to its first,
    // so the second pass does not begin as the first one did, and the third begins as the second.
    fill("y a b c d", cement());
    db->exec(text("CREATE TABLE levels (n INTEGER, d INTEGER, \"5 Percent\" DOUBLE, PRIMARY KEY (n, d))"));
    db->exec(text("INSERT INTO levels VALUES (1, 11, ?), (1, 12, 0)"),
             {traced(run(true, "a b c d").trace.filter(text("decision"))[0], "f").toDouble()});
    TTable levels;
    bind(levels, *db, "levels");
    levels.Last();
    search.SetFDistTable(&levels);
    search.SetFPercent(text("5 Percent"));
    EXPECT_EQ(run(true, "a b c d").trace.last(), text("end reason=repeats passes=2 controls=0"));
    EXPECT_EQ(run(true, "a b c d").trace.last(), text("end reason=repeats passes=1 controls=0"));
}
