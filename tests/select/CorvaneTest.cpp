// SPDX-License-Identifier: MIT
#include "select/Forms.h"
#include "support/Regressions.h"

#include <QMetaProperty>

namespace {

/// What a class publishes of its own and its bases' above TComponent, in order.
QStringList published(const QMetaObject &kind)
{
    QStringList names;
    for (int i = TComponent::staticMetaObject.propertyCount(); i < kind.propertyCount(); ++i)
        names.append(QString::fromLatin1(kind.property(i).name()));
    return names;
}

QString doubleProperty(const char *name, const char *value)
{
    return ComponentLoader::property(name, QStringLiteral("<double>%1</double>").arg(text(value)));
}

QString boolProperty(const char *name, bool value)
{
    return ComponentLoader::property(name,
                                     QStringLiteral("<bool>%1</bool>").arg(value ? text("true") : text("false")));
}

} // namespace

TEST(Properties, OfTheOptimalSearch)
{
    EXPECT_EQ(published(TOptimizeMLR::staticMetaObject),
              QStringList(
                  {text("Dataset"), text("Rule"), text("OptCriteria"), text("ModelsToSave"), text("ModelsPerSize")}));
    const TOptimizeMLR search;
    EXPECT_EQ(search.Dataset(), QString());
    EXPECT_EQ(search.OptCriteria(), TOptimizationType::Nondominated);
    EXPECT_EQ(search.ModelsToSave(), 1);
    EXPECT_EQ(search.ModelsPerSize(), 0);
    EXPECT_EQ(search.Rule(), TCorvane::Written);
    EXPECT_FALSE(search.SharesSample());
    EXPECT_EQ(search.ModelCount(), 0);
    EXPECT_EQ(search.Regression(), nullptr);
}

TEST(Properties, OfStepwiseRegression)
{
    EXPECT_EQ(published(TStepWiseMLR::staticMetaObject),
              QStringList({text("Dataset"), text("Rule"), text("FDistTable"), text("FInDefault"), text("FOutDefault"),
                           text("FPercent"), text("ShowReport"), text("ShowProgress"), text("PIn"), text("POut")}));
    const TStepWiseMLR search;
    EXPECT_EQ(search.FDistTable(), nullptr);
    EXPECT_EQ(search.FInDefault(), 4.0);
    EXPECT_EQ(search.FOutDefault(), 4.0);
    EXPECT_EQ(search.FPercent(), QString());
    EXPECT_EQ(search.Rule(), TCorvane::Written);
    EXPECT_EQ(search.PIn(), 0);
    EXPECT_EQ(search.POut(), 0);
    EXPECT_FALSE(search.ShowReport());
    EXPECT_FALSE(search.ShowProgress());
}

TEST(Properties, OfBackwardElimination)
{
    EXPECT_EQ(published(TBackElimMLR::staticMetaObject),
              QStringList({text("Dataset"), text("Rule"), text("FDistTable"), text("FDefault"), text("ShowReport"),
                           text("ShowProgress"), text("P")}));
    const TBackElimMLR search;
    EXPECT_EQ(search.P(), 0);
    EXPECT_EQ(search.FDistTable(), nullptr);
    EXPECT_EQ(search.FDefault(), 4.0);
    EXPECT_FALSE(search.ShowReport());
    EXPECT_FALSE(search.ShowProgress());
}

TEST(Properties, OfForwardSelection)
{
    EXPECT_EQ(published(TFwdSelectMLR::staticMetaObject),
              QStringList({text("Dataset"), text("Rule"), text("FDefault"), text("FDistTable"), text("ShowReport"),
                           text("ShowProgress"), text("P")}));
    const TFwdSelectMLR search;
    EXPECT_EQ(search.P(), 0);
    EXPECT_EQ(search.FDistTable(), nullptr);
    EXPECT_EQ(search.FDefault(), 4.0);
    EXPECT_FALSE(search.ShowReport());
    EXPECT_FALSE(search.ShowProgress());
}

TEST(Properties, ThresholdsKeepTheirAbsoluteValue)
{
    TStepWiseMLR stepwise;
    stepwise.SetFInDefault(-60);
    stepwise.SetFOutDefault(-2.5);
    EXPECT_EQ(stepwise.FInDefault(), 60);
    EXPECT_EQ(stepwise.FOutDefault(), 2.5);
    TBackElimMLR backward;
    backward.SetFDefault(-3);
    EXPECT_EQ(backward.FDefault(), 3);
    TFwdSelectMLR forward;
    forward.SetFDefault(-6);
    EXPECT_EQ(forward.FDefault(), 6);
}

TEST(Properties, ModelsToSaveIgnoresZeroAndStaysWithinSixteenBits)
{
    TOptimizeMLR search;
    search.SetModelsToSave(3);
    search.SetModelsToSave(0);
    EXPECT_EQ(search.ModelsToSave(), 3);
    search.SetModelsToSave(-1);
    EXPECT_EQ(search.ModelsToSave(), 3);
    search.SetModelsToSave(21);
    EXPECT_EQ(search.ModelsToSave(), 21);
    search.SetModelsToSave(70000);
    EXPECT_EQ(search.ModelsToSave(), 65535);
}

TEST(Streaming, EveryPropertyComesFromTheForm)
{
    ComponentLoader loader;
    const auto form = loader.form(
        ComponentLoader::widget("TTable", "Levels") + ComponentLoader::widget("TMLRTable", "Fit") +
        ComponentLoader::widget(
            "TOptimizeMLR", "Optimal",
            ComponentLoader::stringProperty("Dataset", "Fit") +
                ComponentLoader::property("OptCriteria", text("<enum>TOptimizeMLR::MaxFValue</enum>")) +
                ComponentLoader::property("ModelsToSave", text("<number>5</number>"))) +
        ComponentLoader::widget("TStepWiseMLR", "Stepwise",
                                ComponentLoader::stringProperty("FDistTable", "Levels") +
                                    doubleProperty("FInDefault", "-3.5") + doubleProperty("FOutDefault", "2.25") +
                                    ComponentLoader::stringProperty("FPercent", "5 Percent") +
                                    boolProperty("ShowReport", true) + boolProperty("ShowProgress", true)) +
        ComponentLoader::widget("TBackElimMLR", "Backward",
                                ComponentLoader::stringProperty("FDistTable", "Levels") +
                                    doubleProperty("FDefault", "3.5") + boolProperty("ShowReport", true)) +
        ComponentLoader::widget("TFwdSelectMLR", "Forward",
                                doubleProperty("FDefault", "2.5") +
                                    ComponentLoader::stringProperty("FDistTable", "Levels") +
                                    boolProperty("ShowProgress", true)));
    ASSERT_NE(form, nullptr);
    const auto *levels = form->findChild<TTable *>(text("Levels"));

    const auto *optimal = form->findChild<TOptimizeMLR *>();
    ASSERT_NE(optimal, nullptr);
    EXPECT_EQ(optimal->Dataset(), text("Fit"));
    EXPECT_EQ(optimal->Table(), form->findChild<TMLRTable *>());
    EXPECT_EQ(optimal->OptCriteria(), TOptimizationType::MaxFValue);
    EXPECT_EQ(optimal->ModelsToSave(), 5);

    const auto *stepwise = form->findChild<TStepWiseMLR *>();
    ASSERT_NE(stepwise, nullptr);
    EXPECT_EQ(stepwise->FDistTableName(), text("Levels"));
    EXPECT_EQ(stepwise->FDistTable(), levels);
    EXPECT_EQ(stepwise->FInDefault(), 3.5);
    EXPECT_EQ(stepwise->FOutDefault(), 2.25);
    EXPECT_EQ(stepwise->FPercent(), text("5 Percent"));
    EXPECT_TRUE(stepwise->ShowReport());
    EXPECT_TRUE(stepwise->ShowProgress());

    const auto *backward = form->findChild<TBackElimMLR *>();
    ASSERT_NE(backward, nullptr);
    EXPECT_EQ(backward->FDistTable(), levels);
    EXPECT_EQ(backward->FDefault(), 3.5);
    EXPECT_TRUE(backward->ShowReport());
    EXPECT_FALSE(backward->ShowProgress());

    const auto *forward = form->findChild<TFwdSelectMLR *>();
    ASSERT_NE(forward, nullptr);
    EXPECT_EQ(forward->FDistTable(), levels);
    EXPECT_EQ(forward->FDefault(), 2.5);
    EXPECT_FALSE(forward->ShowReport());
    EXPECT_TRUE(forward->ShowProgress());
}

namespace {

/// A form with regression components "Table" and "Query" and one search.
class Binding : public testing::Test
{
protected:
    Binding()
    {
        table->SetName(text("Table"));
        query->SetName(text("Query"));
    }

    QWidget form;
    TMLRTable *table = new TMLRTable(&form);
    TMLRQuery *query = new TMLRQuery(&form);
    TFwdSelectMLR *search = new TFwdSelectMLR(&form);
};

void expectRunThrows(TCorvane &search, const char *message)
{
    try {
        search.Run();
        ADD_FAILURE() << "runs";
    } catch (const EDatabaseError &error) {
        EXPECT_EQ(error.Message(), text(message));
    }
}

} // namespace

TEST_F(Binding, ByTheNameOfATableAndThenOfAQuery)
{
    search->SetDataset(text("Table"));
    EXPECT_EQ(search->Table(), table);
    EXPECT_EQ(search->Query(), nullptr);
    EXPECT_EQ(search->Regression(), table);
    search->SetDataset(text("Query"));
    EXPECT_EQ(search->Table(), nullptr);
    EXPECT_EQ(search->Query(), query);
    EXPECT_EQ(search->Regression(), query);
}

TEST_F(Binding, ANameThatFindsNothingKeepsTheBindingAndIsStored)
{
    search->SetDataset(text("Table"));
    for (const char *name : {"Nobody", "", "table"}) {
        search->SetDataset(text(name));
        EXPECT_EQ(search->Table(), table) << name;
        EXPECT_EQ(search->Dataset(), text(name));
    }
}

TEST_F(Binding, ANameOfAnotherClassKeepsTheBinding)
{
    auto *plain = new TTable(&form);
    plain->SetName(text("Plain"));
    search->SetDataset(text("Query"));
    search->SetDataset(text("Plain"));
    EXPECT_EQ(search->Query(), query);
    EXPECT_EQ(search->Dataset(), text("Plain"));
}

TEST_F(Binding, DirectlyReplacesOneKindByTheOtherAndKeepsTheName)
{
    search->SetDataset(text("Query"));
    search->SetTable(table);
    EXPECT_EQ(search->Table(), table);
    EXPECT_EQ(search->Query(), nullptr);
    EXPECT_EQ(search->Dataset(), text("Query"));
    search->SetQuery(query);
    EXPECT_EQ(search->Table(), nullptr);
    EXPECT_EQ(search->Query(), query);
}

TEST_F(Binding, AComponentThatComesLaterIsFoundWhenItIsNeeded)
{
    search->SetDataset(text("Later"));
    EXPECT_EQ(search->Regression(), nullptr);
    auto *later = new TMLRTable(&form);
    later->SetName(text("Later"));
    EXPECT_EQ(search->Regression(), later);
}

TEST_F(Binding, OnceBoundAStoredNameIsNotLookedUpAgain)
{
    search->SetDataset(text("Table"));
    search->SetDataset(text("Later"));
    auto *later = new TMLRTable(&form);
    later->SetName(text("Later"));
    EXPECT_EQ(search->Regression(), table);
}

TEST_F(Binding, OfADestroyedComponentIsNoneUntilTheNextAssignment)
{
    search->SetDataset(text("Table"));
    delete table;
    EXPECT_EQ(search->Regression(), nullptr);
    auto *other = new TMLRTable(&form);
    other->SetName(text("Table"));
    EXPECT_EQ(search->Regression(), nullptr);
    expectRunThrows(*search, "The regression component of TFwdSelectMLR is gone; its Dataset is \"Table\".");
    search->SetDataset(text("Table"));
    EXPECT_EQ(search->Regression(), other);
}

TEST_F(Binding, FindsTheNearestOfTheRightClass)
{
    // As two copies of a form in one window have the same names.
    auto *inner = new QWidget(&form);
    auto *wrong = new TTable(inner);
    wrong->SetName(text("Table"));
    auto *innerSearch = new TFwdSelectMLR(inner);
    innerSearch->SetDataset(text("Table"));
    EXPECT_EQ(innerSearch->Table(), table) << "the plain table that is nearer is of another class";
    auto *nearer = new TMLRQuery(inner);
    nearer->SetName(text("Table"));
    innerSearch->SetDataset(text("Table"));
    EXPECT_EQ(innerSearch->Query(), nearer);
    search->SetDataset(text("Table"));
    EXPECT_NE(search->Regression(), nullptr);
}

TEST_F(Binding, ARunWithoutAComponentSaysWhose)
{
    search->SetName(text("Chooser"));
    expectRunThrows(*search, "Chooser has no regression component: its Dataset is empty.");
    search->SetDataset(text("Nobody"));
    expectRunThrows(*search, "Chooser finds no regression component called \"Nobody\", its Dataset.");
    TMLRModel model;
    EXPECT_THROW(search->SaveModel(model), EDatabaseError);
    EXPECT_THROW(search->SetModel(model), EDatabaseError);
    EXPECT_THROW(search->SetControls({}, 0, 0), EDatabaseError);
}

TEST_F(Binding, OfTheFTableByNameNowOrLater)
{
    search->SetFDistTableName(text("Levels"));
    EXPECT_EQ(search->FDistTable(), nullptr);
    EXPECT_EQ(search->FDistTableName(), text("Levels"));
    auto *levels = new TTable(&form);
    levels->SetName(text("Levels"));
    EXPECT_EQ(search->FDistTable(), levels);
    search->SetFDistTableName(QString());
    EXPECT_EQ(search->FDistTable(), nullptr);
}

TEST_F(Binding, OfTheFTableDirectlyTellsItsName)
{
    auto *levels = new TTable(&form);
    levels->SetName(text("Levels"));
    search->SetFDistTable(levels);
    EXPECT_EQ(search->FDistTable(), levels);
    EXPECT_EQ(search->FDistTableName(), text("Levels"));
    delete levels;
    EXPECT_EQ(search->FDistTable(), nullptr);
    auto *other = new TTable(&form);
    other->SetName(text("Levels"));
    EXPECT_EQ(search->FDistTable(), nullptr) << "only an assignment binds again";
    search->SetFDistTable(nullptr);
    EXPECT_EQ(search->FDistTableName(), QString());
}

TEST(Streaming, ASearchMayStandBeforeWhatItNames)
{
    ComponentLoader loader;
    const auto form =
        loader.form(ComponentLoader::widget("TStepWiseMLR", "Stepwise",
                                            ComponentLoader::stringProperty("FDistTable", "Levels") +
                                                ComponentLoader::stringProperty("Dataset", "Fit")) +
                    ComponentLoader::widget("TMLRQuery", "Fit") + ComponentLoader::widget("TTable", "Levels"));
    ASSERT_NE(form, nullptr);
    const auto *search = form->findChild<TStepWiseMLR *>();
    EXPECT_EQ(search->Query(), form->findChild<TMLRQuery *>());
    EXPECT_EQ(search->FDistTable(), form->findChild<TTable *>(text("Levels")));
}

TEST(Streaming, TwoCopiesOfAFormKeepToThemselves)
{
    ComponentLoader loader;
    const QString widgets =
        ComponentLoader::widget("TOptimizeMLR", "Optimal", ComponentLoader::stringProperty("Dataset", "Fit")) +
        ComponentLoader::widget("TMLRTable", "Fit");
    QWidget window;
    QWidget *const first = loader.form(widgets).release();
    QWidget *const second = loader.form(widgets).release();
    first->setParent(&window);
    second->setParent(&window);
    EXPECT_EQ(second->findChild<TOptimizeMLR *>()->Table(), second->findChild<TMLRTable *>());
    EXPECT_EQ(first->findChild<TOptimizeMLR *>()->Table(), first->findChild<TMLRTable *>());
}
