// SPDX-License-Identifier: MIT
#include "design/model/Regressionmodel.h"

#include "design/model/Modelhands.h"

namespace {

const QStringList Fresh{u("Inactive"), u("Undefined"), u("Datafield1"), u("Datafield2"), u("1.00"), u("10")};

} // namespace

TEST(RegressionModels, AreThoseOfAComponent)
{
    TMLRTable table;
    table.ResponseVarY().SetField(u("TOTEMP"));
    table.ControlVar(3).SetTransformation(u("Log"));
    table.ControlVar(3).SetField1(u("GNP"));
    const RegressionModel taken = RegressionModel::of(table);
    EXPECT_EQ(terms(taken), (QStringList{u("TOTEMP"), QString(), QString(), u("Ln(GNP)")}));
    EXPECT_EQ(taken.strings(3), table.ControlVar(3).ToQStringList());
    EXPECT_EQ(taken.nextFree(), 1) << "a place before a defined one is free";
}

TEST(RegressionModels, KeepStringsThatNobodyChanges)
{
    TMLRTable table;
    const QStringList odd{u("Perhaps"), u("Cube"), u("GNP")};
    const QStringList inactive{u("Inactive"), u("Undefined"), u("POP"), u("Datafield2"), u("1.00"), u("10")};
    table.ControlVar(1).Assign(odd);
    table.ControlVar(2).Assign(inactive);
    table.ControlVar(4).Assign(QStringList());
    table.ResponseVarY().Assign(QStringList(u("short")));
    RegressionModel changed = RegressionModel::of(table);
    EXPECT_EQ(terms(changed), QStringList()) << "and none of them is asked for what it does not have";
    changed.setField(5, u("YEAR"));
    EXPECT_EQ(changed.strings(0), QStringList(u("short")));
    EXPECT_EQ(changed.strings(1), odd);
    EXPECT_EQ(changed.strings(2), inactive);
    EXPECT_EQ(changed.strings(4), QStringList());
    EXPECT_EQ(changed.differences(RegressionModel::of(table)), std::vector<int>{5});
}

TEST(RegressionModels, BringADefinitionIntoItsShapeWhenItIsChanged)
{
    RegressionModel changed;
    changed.setStrings(1, {u("Active"), u("Log")});
    changed.setStrings(2, {});
    changed.setStrings(0, {u("a"), u("None"), u("Y"), u("b"), u("c"), u("d"), u("surplus")});
    changed.setField(1, u("GNP"));
    changed.setTransformation(2, u("None"));
    changed.setField(0, u("TOTEMP"));
    EXPECT_EQ(changed.strings(1),
              (QStringList{u("Active"), u("Log"), u("GNP"), u("Datafield2"), u("1.00"), u("10")}));
    EXPECT_EQ(changed.strings(2).size(), 6);
    EXPECT_EQ(changed.strings(0), (QStringList{u("a"), u("None"), u("TOTEMP"), u("b"), u("c"), u("d")}));
}

TEST(RegressionModels, GiveAFieldToAPlaceAndKeepItsTransformation)
{
    RegressionModel changed = model({"", "GNP", "Log POP"});
    EXPECT_EQ(changed.strings(1),
              (QStringList{u("Active"), u("None"), u("GNP"), u("Datafield2"), u("1.00"), u("10")}));
    changed.setField(2, u("YEAR"));
    EXPECT_EQ(changed.term(2), u("Ln(YEAR)"));
    changed.setField(2, {});
    EXPECT_EQ(changed.field(2), QString());
    EXPECT_EQ(changed.keyword(2), u("Log"));
}

TEST(RegressionModels, MakeASquareOfAPowerThatHasNoWholeExponent)
{
    RegressionModel changed = model({"", "GNP"});
    changed.setTransformation(1, u("Power"));
    EXPECT_EQ(changed.term(1), u("GNP^2")) << "a fresh definition holds 1.00, with which no record can be used";
    changed.setNumber(1, u("3"));
    changed.setTransformation(1, u("None"));
    changed.setTransformation(1, u("Power"));
    EXPECT_EQ(changed.term(1), u("GNP^3"));
}

TEST(RegressionModels, KeepTheFieldsOfWhatIsMadeInactive)
{
    RegressionModel changed = model({"", "Product GNP POP"});
    changed.setTransformation(1, u("Undefined"));
    EXPECT_FALSE(changed.isDefined(1));
    EXPECT_FALSE(changed.isEmpty(1));
    EXPECT_EQ(changed.nextFree(), 2) << "it is not lost to the next field that is added";
    changed.setTransformation(1, u("Product"));
    EXPECT_EQ(changed.term(1), u("GNP*POP"));
    changed.clear(1);
    EXPECT_EQ(changed.strings(1), Fresh);
}

TEST(RegressionModels, ExchangeTwoPlaces)
{
    RegressionModel changed = model({"TOTEMP", "Log GNP", "Product YEAR POP"});
    changed.exchange(1, 2);
    EXPECT_EQ(terms(changed), (QStringList{u("TOTEMP"), u("YEAR*POP"), u("Ln(GNP)")}));
    changed.exchange(2, 5);
    EXPECT_EQ(changed.strings(2), Fresh);
    EXPECT_EQ(changed.term(5), u("Ln(GNP)"));
    changed.exchange(0, 5);
    EXPECT_EQ(changed.term(0), u("Ln(GNP)")) << "both kinds have logarithms";
    EXPECT_EQ(changed.term(5), u("TOTEMP"));
    changed.exchange(0, 1);
    EXPECT_EQ(changed.term(0), u("YEAR")) << "no response is a product";
    EXPECT_EQ(changed.term(1), u("Ln(GNP)"));
    changed.exchange(0, 9);
    EXPECT_EQ(changed.strings(0), TDependentVar().ToQStringList());
    EXPECT_EQ(changed.term(9), u("YEAR"));
}

TEST(RegressionModels, KnowWhereAFieldIsUsed)
{
    const RegressionModel used = model({"GNP", "Log gnp", "", "Quotient POP GNP", "Log POP"});
    EXPECT_EQ(used.placesOf(u("GNP")), (std::vector<int>{0, 1, 3}));
    EXPECT_EQ(used.placesOf(u("POP")), (std::vector<int>{3, 4}));
    EXPECT_TRUE(used.placesOf(u("Datafield1")).empty());
}
