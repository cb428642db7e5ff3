// SPDX-License-Identifier: MIT
#include "select/Selections.h"

#include <cmath>

namespace {

class TableTools : public RegressionOver<TMLRTable>
{
protected:
    void fillThree()
    {
        fill("y a b c", 9, [](int i) { return Row{i * i % 7, i, i % 4, i % 3}; });
        define(regression, "a b c");
    }
    QStringList transformations()
    {
        QStringList list;
        for (int k = 1; k <= MaxControls; ++k)
            list.append(regression.ControlVar(k).Transformation());
        return list;
    }
};

std::vector<int> row(const TSubsetTable &table, int r, int bits)
{
    return {table[r].begin(), table[r].begin() + bits};
}

} // namespace

TEST(BinaryTable, HoldsTheDigitsOfTheRowHighestFirst)
{
    TSubsetTable table{};
    BinaryTable(table, 8, 3);
    EXPECT_EQ(row(table, 0, 3), std::vector<int>({0, 0, 0}));
    EXPECT_EQ(row(table, 1, 3), std::vector<int>({0, 0, 1}));
    EXPECT_EQ(row(table, 5, 3), std::vector<int>({1, 0, 1}));
    EXPECT_EQ(row(table, 7, 3), std::vector<int>({1, 1, 1}));
}

TEST(BinaryTable, HasRoomForTenControls)
{
    TSubsetTable table{};
    BinaryTable(table, 1024, 10);
    EXPECT_EQ(row(table, 1023, 10), std::vector<int>(10, 1));
    EXPECT_EQ(row(table, 513, 10), std::vector<int>({1, 0, 0, 0, 0, 0, 0, 0, 0, 1}));
}

TEST(NearestInt, PositiveHalvesGoUpAndNegativeNumbersAreCut)
{
    EXPECT_EQ(nearestInt(2.5), 3);
    EXPECT_EQ(nearestInt(2.4999), 2);
    EXPECT_EQ(nearestInt(1024.0), 1024);
    EXPECT_EQ(nearestInt(0), 0);
    EXPECT_EQ(nearestInt(-2.5), -2);
    EXPECT_EQ(nearestInt(-2.7), -2);
    for (int n = 0; n <= 10; ++n)
        EXPECT_EQ(nearestInt(std::exp(std::log(2.0) * n)), 1 << n);
}

TEST(Intmin, IsTheSmaller)
{
    EXPECT_EQ(intmin(3, 2), 2);
    EXPECT_EQ(intmin(-3, 2), -3);
}

TEST(ModelList, ClearingTakesTheFiguresAndLeavesTheTexts)
{
    TMLRModels models;
    models[20].Transformations[9] = text("Log");
    models[20].F = 3;
    models[20].RSquared = 0.5;
    models[20].SSquared = 2;
    ClearModelList(models);
    for (int i = 1; i <= 20; ++i) {
        EXPECT_EQ(models[i].F, 0);
        EXPECT_EQ(models[i].RSquared, 0);
        EXPECT_EQ(models[i].SSquared, 1.0e40);
    }
    EXPECT_EQ(models[20].Transformations[9], text("Log"));
}

TEST(ModelList, AnIndexOutsideIsAnError)
{
    TMLRModels models;
    for (const int index : {-1, 0, 21, 70000})
        EXPECT_THROW(models[index], EStringListError) << index;
    try {
        models[21].F = 0;
    } catch (const EStringListError &error) {
        EXPECT_EQ(error.Message(), text("There is no model 21 in the list: its models are 1 to 20."));
    }
}

TEST_F(TableTools, AModelIsSavedWithItsFiguresAndPutBackWithoutALoad)
{
    fillThree();
    TMLRModel model;
    model.F = 7;
    model.RSquared = 8;
    model.SSquared = 9;
    SaveTableModel(model, regression);
    EXPECT_EQ(model.Transformations[2], text("None"));
    EXPECT_EQ(model.Transformations[3], text("Undefined"));
    EXPECT_EQ(model.F, 7) << "not computed: the figures stay";
    EXPECT_EQ(model.RSquared, 8);
    EXPECT_EQ(model.SSquared, 9);
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    SaveTableModel(model, regression);
    EXPECT_EQ(model.F, regression.GetF());
    EXPECT_EQ(model.RSquared, regression.GetRSquared());
    EXPECT_EQ(model.SSquared, regression.GetMSE());

    regression.ControlVar(1).SetTransformation(text("Undefined"));
    regression.ControlVar(5).SetTransformation(text("Log"));
    SetTableModel(model, regression);
    EXPECT_EQ(transformations().first(5),
              QStringList({text("None"), text("None"), text("None"), text("Undefined"), text("Undefined")}));
    EXPECT_TRUE(regression.Loaded());
    EXPECT_TRUE(regression.Computed());
}

TEST_F(TableTools, ControlsAreSetUpToACountAndLoaded)
{
    fillThree();
    std::array<TTermRow, 2> table;
    table[1].fill(text("Undefined"));
    table[1][0] = text("Sqrt");
    EXPECT_TRUE(SetTableControls(regression, table, 1, 2));
    EXPECT_EQ(transformations().first(3), QStringList({text("Sqrt"), text("Undefined"), text("None")}));
    EXPECT_EQ(regression.GetNumVars(), 2);
    EXPECT_TRUE(SetTableControls(regression, table, 1, 11));
    EXPECT_EQ(regression.GetNumVars(), 1);
}

TEST_F(TableTools, ControlsThatCannotBeUsedMakeTheReloadFail)
{
    fill("y a b", 5, [](int i) { return Row{i * i, i, 3}; });
    define(regression, "a");
    std::array<TTermRow, 1> table;
    table[0].fill(text("Undefined"));
    table[0][1] = text("None");
    regression.ControlVar(2).SetField1(text("b"));
    EXPECT_FALSE(SetTableControls(regression, table, 0, 10));
    EXPECT_EQ(messages.shown, std::vector<Message>({invariantMessage()}));
}

TEST_F(TableTools, OneControlIsSetAndLoadedAndNoneOutside)
{
    fillThree();
    std::array<TTermRow, 1> table;
    table[0].fill(text("Undefined"));
    EXPECT_TRUE(SetTableControl(regression, table, 2, 0));
    EXPECT_EQ(transformations().first(3), QStringList({text("None"), text("Undefined"), text("None")}));
    EXPECT_EQ(regression.GetNumVars(), 2);
    int records = 9;
    for (const int which : {0, 11, -1, 1000}) {
        db->exec(text("DELETE FROM data WHERE id = ?"), {records--});
        regression.Refresh();
        EXPECT_TRUE(SetTableControl(regression, table, which, 0));
        EXPECT_EQ(transformations().first(3), QStringList({text("None"), text("Undefined"), text("None")}));
        EXPECT_EQ(regression.GetNumObs(), records) << "loaded all the same";
    }
}

TEST_F(TableTools, AControlByItsIndexTakesAllOfTheSameTermAlong)
{
    fillThree();
    regression.SetControl(4, control("None", "b"));
    regression.SetControl(5, control("None", "B"));
    ASSERT_TRUE(regression.ReLoad());
    SetTableControlByIndex(regression, 2, text("Undefined"));
    EXPECT_EQ(transformations().first(5),
              QStringList({text("None"), text("Undefined"), text("None"), text("Undefined"), text("None")}))
        << "capitals are told apart";
    EXPECT_EQ(regression.GetNumVars(), 5) << "nothing was loaded";
    for (const int index : {-1, 0, 6, 11, 1000})
        SetTableControlByIndex(regression, index, text("Log"));
    EXPECT_EQ(transformations().first(1), QStringList({text("None")}));
    EXPECT_EQ(transformations().last(), text("Undefined"));
}

TEST_F(TableTools, PositionsAreThoseOfTheActiveColumns)
{
    fillThree();
    regression.ControlVar(1).SetTransformation(text("Undefined"));
    ASSERT_TRUE(regression.ReLoad());
    EXPECT_EQ(indexOfTable(regression, text("b")), 1);
    EXPECT_EQ(indexOfTable(regression, text("c")), 2);
    EXPECT_EQ(indexOfTable(regression, text("C")), 0);
    EXPECT_EQ(indexOfTable(regression, text("a")), 0);
}

TEST_F(TableTools, TheQueryFormsDoTheSame)
{
    fillThree();
    TMLRQuery query;
    bind(query, *db, "data");
    define(query, "a b c");
    std::array<TTermRow, 1> table;
    table[0].fill(text("Undefined"));
    EXPECT_TRUE(SetQueryControl(query, table, 1, 0));
    EXPECT_EQ(indexOfQuery(query, text("c")), 2);
    query.Execute();
    TMLRModel model;
    SaveQueryModel(model, query);
    EXPECT_EQ(model.F, query.GetF());
    SetQueryControlByIndex(query, 1, text("Undefined"));
    EXPECT_EQ(query.ControlVar(2).Transformation(), text("Undefined"));
    SetQueryModel(model, query);
    EXPECT_EQ(query.ControlVar(2).Transformation(), text("None"));
    EXPECT_TRUE(SetQueryControls(query, table, 0, 2));
    EXPECT_EQ(query.GetNumVars(), 1);
}

TEST_F(TableTools, AllThatChangesIsRefusedWhileSomebodyElseIsAtWork)
{
    fillThree();
    ASSERT_TRUE(regression.ReLoad());
    const std::array<TTermRow, 1> table;
    {
        TRegression::Series series(regression);
        EXPECT_THROW(SetTableModel({}, regression), EDatabaseError);
        EXPECT_THROW(SetTableControls(regression, table, 0, 3), EDatabaseError);
        EXPECT_THROW(SetTableControl(regression, table, 1, 0), EDatabaseError);
        EXPECT_THROW(SetTableControlByIndex(regression, 1, text("Undefined")), EDatabaseError);
        EXPECT_EQ(transformations().first(3), QStringList({text("None"), text("None"), text("None")}));
    }
    EXPECT_TRUE(SetTableControls(regression, table, 0, 0));
}
