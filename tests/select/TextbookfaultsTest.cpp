// SPDX-License-Identifier: MIT
#include "select/Choices.h"
#include "select/Told.h"
#include "support/Text.h"

#include <QApplication>
#include <QDialog>

// What stands in the way of a choice under the rule Textbook: thresholds at fault, tables of F values without the
// value, Escape, the end of a component.

namespace {

using Forward = SelectionOver<TMLRTable, TFwdSelectMLR>;
using Stepwise = SelectionOver<TMLRTable, TStepWiseMLR>;
using Optimal = SelectionOver<TMLRTable, TOptimizeMLR>;

/// Asks to be stopped after so many texts.
struct Impatient : Progress
{
    Impatient(QStringList &log, int texts) : Progress(log), left(texts) {}
    void SetGaugeText(const QString &words) override
    {
        Progress::SetGaugeText(words);
        --left;
    }
    bool Stopped() const override { return left <= 0; }
    int left;
};

template <class Search>
class StoppedAfter : public Search
{
public:
    QStringList log;
    int texts = 0;

protected:
    std::unique_ptr<nuvo::Progress> MakeProgress() override { return std::make_unique<Impatient>(log, texts); }
};

class FTableOfForward : public Forward
{
protected:
    void SetUp() override
    {
        fillCement();
        db->exec(text("CREATE TABLE levels (n INTEGER, d INTEGER, \"95 Percent\" DOUBLE, PRIMARY KEY (n, d))"));
        db->exec(text("INSERT INTO levels VALUES (1, 11, 4.84), (1, 10, 4.96)"));
        bind(levels, *db, "levels");
        search.SetFDistTable(&levels);
        search.SetRule(TCorvane::Textbook);
    }
    void put(const char *values)
    {
        db->exec(text("INSERT INTO levels VALUES ") + text(values));
        levels.Refresh();
    }

    TTable levels;
};

} // namespace

TEST_F(Forward, WhatIsNoProbabilityIsRefusedBeforeTheRun)
{
    fillCement();
    search.SetRule(TCorvane::Textbook);
    for (const double p : {1.0, 1.5, -0.1, std::nan("")}) {
        search.SetP(p);
        EXPECT_THROW(search.Run(), EDatabaseError) << p;
    }
    search.SetP(1.5);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { search.Run(); }),
              text("P is 1.5; a probability is more than 0 and less than 1."));
    EXPECT_EQ(selected(regression), text("a b c d"));
    EXPECT_FALSE(search.Running());
}

TEST_F(Stepwise, EachOfTheProbabilitiesIsLookedAt)
{
    fillCement();
    search.SetRule(TCorvane::Textbook);
    search.SetPIn(2);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { search.Run(); }),
              text("PIn is 2; a probability is more than 0 and less than 1."));
    search.SetPIn(0.05);
    search.SetPOut(1);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { search.Run(); }),
              text("POut is 1; a probability is more than 0 and less than 1."));
}

TEST_F(Forward, AProbabilityBesideAnFTableIsRefused)
{
    fillCement();
    search.SetRule(TCorvane::Textbook);
    TTable levels;
    search.SetFDistTable(&levels);
    search.SetP(0.05);
    EXPECT_EQ(errorOf<EDatabaseError>([&] { search.Run(); }),
              text("P and FDistTable are both given; thresholds come from one of them."));
}

TEST_F(Forward, AnFTableThatIsNotThereIsRefused)
{
    fillCement();
    search.SetRule(TCorvane::Textbook);
    search.SetFDistTableName(text("levels"));
    EXPECT_EQ(errorOf<EDatabaseError>([&] { search.Run(); }),
              text("There is no table component called \"levels\", the FDistTable."));
}

TEST_F(FTableOfForward, MustHaveTheValueOfEveryStep)
{
    EXPECT_EQ(errorOf<EDatabaseError>([&] { search.Run(); }),
              text("table \"levels\" has no value \"95 Percent\" for 1 and 9 degrees of freedom."));
    EXPECT_EQ(selected(regression), text("a b c d")) << "all is as it was";
    EXPECT_TRUE(regression.ResultsCurrent());
    EXPECT_EQ(search.Choice(), nullptr);
    put("(1, 9, NULL)");
    EXPECT_THROW(search.Run(), EDatabaseError) << "a null is no value";
    db->exec(text("DELETE FROM levels WHERE d = 9"));
    put("(1, 9, 5.12)");
    search.Run();
    EXPECT_EQ(walk(search), text("+d +a ."));
    EXPECT_EQ(search.Choice()->enter.column, text("95 Percent"));
}

TEST_F(Stepwise, TheFTablesColumnToEnterIsTheOneThatIsNamedOr5Percent)
{
    fillCement();
    db->exec(text("CREATE TABLE levels (n INTEGER, d INTEGER, \"5 Percent\" DOUBLE, \"10 Percent\" DOUBLE, "
                  "\"95 Percent\" DOUBLE, PRIMARY KEY (n, d))"));
    for (int d = 1; d <= 11; ++d)
        db->exec(text("INSERT INTO levels VALUES (1, ?, 5.1, 3, 3)"), {d});
    TTable levels;
    bind(levels, *db, "levels");
    search.SetFDistTable(&levels);
    search.SetRule(TCorvane::Textbook);
    search.Run();
    EXPECT_EQ(walk(search), text("+d +a ."));
    search.SetFPercent(text("10 Percent"));
    prepare("a b c d");
    search.Run();
    EXPECT_EQ(walk(search), text("+d +a +b -d ."));
    search.SetFPercent(text("7 Percent"));
    prepare("a b c d");
    EXPECT_THROW(search.Run(), EDatabaseError) << "nothing stands in under this rule";
    EXPECT_EQ(selected(regression), text("a b c d"));
}

TEST_F(Forward, EscapeLeavesTheDefinitionsAsTheyWere)
{
    fillCement();
    for (int texts = 0; texts < 4; ++texts) {
        StoppedAfter<TFwdSelectMLR> told;
        told.SetTable(&regression);
        told.SetRule(TCorvane::Textbook);
        told.texts = texts;
        told.Run();
        EXPECT_EQ(told.Ended(), TRunEnd::Stopped) << texts;
        EXPECT_EQ(told.Choice(), nullptr);
        EXPECT_EQ(told.Report(), text("CORVANE OUTPUT REPORT\n\r\n\r\n\rStopped by the user."));
        EXPECT_EQ(selected(regression), text("a b c d"));
        EXPECT_TRUE(regression.ResultsCurrent());
    }
}

TEST_F(Optimal, EscapeLeavesTheDefinitionsAsTheyWereAndAnEmptyList)
{
    fillCement();
    StoppedAfter<TOptimizeMLR> told;
    told.SetTable(&regression);
    told.SetOptCriteria(TOptimizeMLR::BIC);
    told.texts = 2;
    told.Run();
    EXPECT_EQ(told.Ended(), TRunEnd::Stopped);
    EXPECT_EQ(told.ModelCount(), 0);
    EXPECT_EQ(selected(regression), text("a b c d"));
    EXPECT_THROW(told.SelectModel(1), EStringListError);
}

TEST_F(Forward, TheProgressIsToldEachStepAndItsShare)
{
    fillCement();
    Told<TFwdSelectMLR> told;
    told.SetRule(TCorvane::Textbook);
    told.SetShowProgress(true);
    EXPECT_EQ(toldBy(told, regression),
              QStringList({text("show"), text("repaint"), text("Adding d: F = 22.7985, p = 0.000576232."), text("25"),
                           text("Adding a: F = 108.224, p = 1.10528e-06."), text("50"),
                           text("Adding b: F = 5.02586, p = 0.0516873."), text("75"),
                           text("No variable above the threshold."), text("100"), text("close"), text("gone")}));
}

TEST_F(Optimal, TheEndOfAComponentWhileItFitsEndsTheRun)
{
    auto table = std::make_unique<TMLRTable>();
    fill("y a b c d", cement());
    bind(*table, *db, "data");
    define(*table, "a b c d");
    search.SetTable(table.get());
    search.SetRule(TCorvane::Textbook);
    int finished = 0;
    QObject::connect(&search, &TCorvane::Finished, [&] { ++finished; });
    QObject::connect(table.get(), &TMLRTable::Fitted, [&] { table.reset(); });
    search.Run();
    EXPECT_EQ(table, nullptr);
    EXPECT_FALSE(search.Running());
    EXPECT_EQ(search.Choice(), nullptr);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(Optimal, TheEndOfTheSelectionItselfWhileItFitsEndsTheRun)
{
    fillCement();
    auto gone = std::make_unique<TOptimizeMLR>();
    gone->SetTable(&regression);
    gone->SetRule(TCorvane::Textbook);
    QObject::connect(&regression, &TMLRTable::Fitted, [&] { gone.reset(); });
    gone->Run();
    EXPECT_EQ(gone, nullptr);
    EXPECT_FALSE(regression.ControlsDisabled());
}
