// SPDX-License-Identifier: MIT
#include "engine/Mlrtable.h"
#include "platform/Messages.h"
#include "select/Bkmain.h"
#include "select/Choice.h"
#include "select/Cvmain.h"
#include "select/Fwdmain.h"
#include "select/Stepmain.h"

#include <gtest/gtest.h>

namespace {

/// Life expectancy by seven figures of the states.
class States : public TMLRTable
{
public:
    States()
    {
        SetDatabaseName("samples.db");
        SetTableName("States");
        ResponseVarY().SetField("Life expectancy");
        int k = 0;
        for (const char *field : {"Population", "Income", "Illiteracy", "Murder", "High school", "Frost", "Area"}) {
            ControlVar(++k).SetField1(field);
            ControlVar(k).SetTransformation("None");
        }
        Open();
    }
};

QString termsOf(TRegression &regression)
{
    QStringList terms;
    for (int j = 1; j <= regression.GetNumVars(); ++j)
        terms.append(regression.GetcVar(j).OutputTerm());
    return terms.join(", ");
}

class ChoosingExamples : public testing::Test
{
protected:
    ChoosingExamples()
    {
        SetMessageHandler([](const QString &, TMsgDlgType, unsigned, int) { return int(mrOk); });
    }
    ~ChoosingExamples() override { SetMessageHandler({}); }

    States states_;
};

} // namespace

TEST_F(ChoosingExamples, AllSubsets)
{
    TMLRTable &states = states_;
    //! [TOptimizeMLR]
    TOptimizeMLR search;
    search.SetTable(&states);
    search.SetRule(TCorvane::Textbook);
    search.SetOptCriteria(TOptimizeMLR::BIC);
    search.SetModelsPerSize(2);
    search.Run(); // the best model is on the component, loaded and fitted
    //! [TOptimizeMLR]
    EXPECT_EQ(termsOf(states), "Population, Murder, High school, Frost");
    //! [Choice]
    const std::shared_ptr<const nuvo::Choice> choice = search.Choice(); // all that was compared, as numbers
    const double bic = choice->subsets.best->bic;
    search.SelectModel(5); // another one of the list in its place
    //! [Choice]
    EXPECT_NEAR(bic, 127.205, 1e-3);
    EXPECT_EQ(termsOf(states), "Murder, High school, Frost");
    //! [TMLRModel]
    TMLRModel kept;
    search.SaveModel(kept); // the texts of the ten transformations, with F, R2 and s2
    search.SelectModel(7);
    search.AssignModel(kept);
    states.ReLoad();
    states.Execute();
    //! [TMLRModel]
    EXPECT_EQ(termsOf(states), "Murder, High school, Frost");
    EXPECT_EQ(kept.Transformations[3], "None");
}

TEST_F(ChoosingExamples, Stepwise)
{
    TMLRTable &states = states_;
    //! [TStepWiseMLR]
    TStepWiseMLR search;
    search.SetTable(&states);
    search.SetRule(TCorvane::Textbook);
    search.SetPIn(0.05);
    search.SetPOut(0.1);
    search.Run();
    //! [TStepWiseMLR]
    EXPECT_EQ(termsOf(states), "Murder, High school, Frost");
    EXPECT_EQ(search.Choice()->search.path.size(), 4U);
}

TEST_F(ChoosingExamples, Backward)
{
    TMLRTable &states = states_;
    //! [TBackElimMLR]
    TBackElimMLR search;
    search.SetTable(&states);
    search.SetRule(TCorvane::Textbook);
    search.SetP(0.05);
    search.Run();
    //! [TBackElimMLR]
    EXPECT_EQ(termsOf(states), "Murder, High school, Frost");
}

TEST_F(ChoosingExamples, Forward)
{
    TMLRTable &states = states_;
    //! [TFwdSelectMLR]
    TFwdSelectMLR search;
    search.SetTable(&states);
    search.SetRule(TCorvane::Textbook);
    search.SetP(0.05);
    search.Run();
    const QString report = search.Report();
    //! [TFwdSelectMLR]
    EXPECT_EQ(termsOf(states), "Murder, High school, Frost");
    EXPECT_TRUE(report.contains("Adding Murder"));
}
