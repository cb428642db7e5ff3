// SPDX-License-Identifier: MIT
#include "engine/Fit.h"
#include "engine/Loading.h"
#include "platform/Errors.h"
#include "present/Loadgage.h"

#include <QPointer>
#include <QSignalSpy>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

// Once.

TYPED_TEST(LoadingForms, LoadValuesScansOnce)
{
    this->fill("y a", {{1, 2}, {2, 3}, {4, 4}});
    define(this->regression, "a");
    EXPECT_TRUE(this->regression.LoadValues());
    this->db->exec(text("INSERT INTO data (y, a) VALUES (9, 9)"));
    this->regression.Refresh();
    this->regression.First();
    EXPECT_TRUE(this->regression.LoadValues());
    EXPECT_EQ(this->regression.RecNo(), 1) << "nothing was walked";
    EXPECT_EQ(this->regression.GetNumObs(), 3);
    EXPECT_TRUE(this->regression.ReLoad());
    EXPECT_EQ(this->regression.GetNumObs(), 4);
}

TEST_F(Loading, AFailedLoadIsTriedAgainByLoadValues)
{
    fill("y a", {{1, 2}, {1, 3}});
    define(regression, "a");
    EXPECT_FALSE(regression.LoadValues());
    EXPECT_FALSE(regression.LoadValues());
    EXPECT_EQ(messages.shown, (std::vector<Message>{invariantMessage(), invariantMessage()}));
}

TEST_F(Loading, ASmallerLoadAfterALargerOneForgetsTheRest)
{
    fill("y a b", 50, [](int i) { return Row{double(i), double(i % 7), double(i % 5)}; });
    define(regression, "a b");
    EXPECT_TRUE(regression.ReLoad());
    regression.SetFilter(text("y <= 3"));
    regression.SetFiltered(true);
    regression.SetControl(2, TIndepVar());
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetNumObs(), 3);
    EXPECT_EQ(regression.GetNumVars(), 1);
    EXPECT_EQ(regression.GetDOF(), 1);
    EXPECT_EQ(regression.GetyMax(), 3);
    EXPECT_EQ(regression.RecordsRead(), 3);
}

TEST_F(Loading, ALoadThatFailsTakesTheFlagBack)
{
    fill("y a", {{1, 2}, {2, 3}, {4, 4}});
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    regression.SetFilter(text("y > 100"));
    regression.SetFiltered(true);
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_FALSE(regression.Loaded());
}

TEST_F(Loading, ADatasetThatWasNeverToBeOpenIsAnError)
{
    makeTable(*db, "data", "y a", {{1, 2}, {2, 3}});
    regression.SetDatabaseName(db->name());
    regression.SetTableName(text("data"));
    define(regression, "a");
    EXPECT_THROW(regression.ReLoad(), EDatabaseError);
    EXPECT_FALSE(regression.ControlsDisabled());
    EXPECT_EQ(MLRGaugeDlg, nullptr);
}

TEST_F(Loading, AWishToBeActiveIsCarriedOut)
{
    makeTable(*db, "data", "y a", {{1, 2}, {2, 3}, {4, 4}});
    regression.WishActive(true);
    regression.SetDatabaseName(db->name());
    regression.SetTableName(text("data"));
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_TRUE(regression.Active());
    EXPECT_EQ(regression.GetNumObs(), 3);
}

// Errors of a definition.

TYPED_TEST(LoadingForms, AnErrorPassesThroughAndLeavesTheComponentUsable)
{
    this->fill("y a", {{1, 2}, {2, 3}, {4, 4}});
    TypeParam &component = this->regression;
    for (const bool shown : {false, true}) {
        component.SetShowLoadProgress(shown);
        define(component, "a");
        EXPECT_TRUE(component.ReLoad());
        component.ControlVar(1).SetField1(text("no field"));
        const QSignalSpy ended(&component, &TypeParam::LoadEnded);
        EXPECT_THROW(component.ReLoad(), EDatabaseError);
        EXPECT_FALSE(component.Loaded());
        EXPECT_FALSE(component.ControlsDisabled());
        EXPECT_EQ(MLRGaugeDlg, nullptr);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_EQ(ended.size(), 0) << "no load has ended";
        EXPECT_THROW(component.LoadValues(), EDatabaseError) << "it is not refused as being under way";
        component.ControlVar(1).SetField1(text("a"));
        EXPECT_TRUE(component.ReLoad());
        EXPECT_EQ(component.GetNumObs(), 3);
        EXPECT_NO_THROW(component.Execute());
    }
    EXPECT_EQ(this->messages.shown, std::vector<Message>());
}

TEST_F(Loading, AnExponentThatIsNoWholeNumberPassesThrough)
{
    fill("y a", {{1, 2}, {2, 3}, {4, 4}});
    define(regression, "a");
    for (const char *exponent : {"1.00", "2,0", "two"}) {
        regression.SetControl(1, power("a", exponent));
        EXPECT_THROW(regression.ReLoad(), EConvertError) << exponent;
        EXPECT_FALSE(regression.Loaded());
        EXPECT_FALSE(regression.ControlsDisabled());
    }
    regression.SetControl(1, power("a", " 2 "));
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(column(1), (std::vector<double>{4, 9, 16}));
}

TEST_F(Loading, APowerOfZerosNeverReadsItsExponentAsAWholeNumber)
{
    fill("y a b", {{1, 0, 1}, {2, 0, 3}});
    regression.SetResponse(response("None", "y"));
    regression.SetControl(1, power("a", "1.00"));
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(messages.shown, std::vector<Message>{invariantMessage()});
}

TEST_F(Loading, ATextInANumericColumnPassesThrough)
{
    fill("y a", {{1, 2}, {2, 3}, {4, 4}});
    db->exec(text("UPDATE data SET a = 'n/a' WHERE id = 2"));
    regression.Refresh();
    define(regression, "a");
    try {
        regression.ReLoad();
        FAIL();
    } catch (const EConvertError &error) {
        EXPECT_TRUE(error.Message().contains(text("n/a"))) << error.what();
    }
    EXPECT_FALSE(regression.Loaded());
    EXPECT_FALSE(regression.ControlsDisabled());
    db->exec(text("UPDATE data SET a = 3 WHERE id = 2"));
    regression.Refresh();
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetNumObs(), 3);
}

TEST_F(Loading, ALaterDefinitionIsNotAskedAfterOneThatRefuses)
{
    fill("y a", {{1, null}, {2, null}});
    define(regression, "a");
    regression.SetControl(2, control("None", "no field"));
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(regression.RecordsRead(), 2);
    db->exec(text("UPDATE data SET a = 3 WHERE id = 2"));
    regression.Refresh();
    EXPECT_THROW(regression.ReLoad(), EDatabaseError);
}

TEST_F(Loading, TheResponseIsAskedAfterTheControls)
{
    fill("y a", {{1, null}, {2, null}});
    define(regression, "a", "no field");
    EXPECT_FALSE(regression.ReLoad());
    db->exec(text("UPDATE data SET a = 3 WHERE id = 2"));
    regression.Refresh();
    EXPECT_THROW(regression.ReLoad(), EDatabaseError);
}

TEST_F(Loading, ControlsAreNotTransformedWhereTheResponseRefuses)
{
    fill("y a", {{null, 1}, {null, 2}});
    regression.SetResponse(response("None", "y"));
    regression.SetControl(1, power("a", "1.00"));
    EXPECT_FALSE(regression.ReLoad());
}

TEST_F(Loading, TheResponseIsTransformedBeforeTheControls)
{
    fill("y a", {{1, 1}, {2, 2}});
    db->exec(text("UPDATE data SET y = 'why'"));
    regression.Refresh();
    regression.SetResponse(response("None", "y"));
    regression.SetControl(1, power("a", "1.00"));
    try {
        regression.ReLoad();
        FAIL();
    } catch (const EConvertError &error) {
        EXPECT_TRUE(error.Message().contains(text("why"))) << error.what();
    }
}

TEST_F(Loading, AnEmptyDatasetNeverAsksItsDefinitions)
{
    fill("y a", {});
    define(regression, "nothing", "nowhere");
    EXPECT_FALSE(regression.ReLoad());
}

TEST_F(Loading, AServerLostInTheMiddleLeavesTheComponentUsable)
{
    fill("y a", 2000, numbered);
    define(regression, "a");
    regression.First();
    db->exec(text("DROP TABLE data"));
    EXPECT_THROW(regression.ReLoad(), EDatabaseError);
    EXPECT_FALSE(regression.Loaded());
    EXPECT_FALSE(regression.ControlsDisabled());
    regression.Close();
    fill("y a", 30, numbered);
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetNumObs(), 30);
}

// Attached controls.

TYPED_TEST(LoadingForms, AttachedControlsAreDisabledUntilAllIsTold)
{
    this->fill("y a", {{1, 2}, {1, 3}, {1, 4}});
    define(this->regression, "a");
    EXPECT_FALSE(this->regression.ControlsDisabled());
    bool disabled = false;
    this->messages.meanwhile = [&] { disabled = this->regression.ControlsDisabled(); };
    EXPECT_FALSE(this->regression.ReLoad());
    EXPECT_TRUE(disabled) << "the invariant message comes before they are enabled";
    EXPECT_FALSE(this->regression.ControlsDisabled());
}

TEST_F(Loading, ControlsThatWereDisabledBeforeStayDisabled)
{
    fill("y a", {{1, 2}, {2, 3}, {4, 4}});
    define(regression, "a");
    regression.DisableControls();
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_TRUE(regression.ControlsDisabled());
    regression.EnableControls();
    EXPECT_FALSE(regression.ControlsDisabled());
}

// Signals.

TYPED_TEST(LoadingForms, SaysThatALoadHasEnded)
{
    this->fill("y a", {{1, 2}, {2, 3}, {4, 4}});
    define(this->regression, "a");
    QSignalSpy ended(&this->regression, &TypeParam::LoadEnded);
    this->regression.ReLoad();
    ASSERT_EQ(ended.size(), 1);
    EXPECT_EQ(ended[0][0].toBool(), true);
    this->regression.LoadValues();
    EXPECT_EQ(ended.size(), 1) << "nothing was loaded";
    this->regression.SetControl(1, control("Scale", "y"));
    this->regression.ControlVar(1).SetTransformation(text("Log"));
    this->regression.ControlVar(1).SetField1(text("a"));
    this->db->exec(text("UPDATE data SET a = NULL"));
    this->regression.Refresh();
    this->regression.ReLoad();
    ASSERT_EQ(ended.size(), 2);
    EXPECT_EQ(ended[1][0].toBool(), false);
}

TEST_F(Loading, WhoeverHearsOfTheEndFindsTheComponentReady)
{
    fill("y a", {{1, 2}, {2, 3}, {4, 4}});
    define(regression, "a");
    regression.SetShowLoadProgress(true);
    bool heard = false;
    QObject::connect(&regression, &TMLRTable::LoadEnded, [&](bool loaded) {
        heard = true;
        EXPECT_TRUE(loaded);
        EXPECT_TRUE(regression.Loaded());
        EXPECT_FALSE(regression.ControlsDisabled());
        EXPECT_EQ(MLRGaugeDlg, nullptr);
        EXPECT_NO_THROW(regression.Execute());
    });
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_TRUE(heard);
    EXPECT_TRUE(regression.Computed());
}

TEST_F(Loading, TheComponentMayGoWhenTheLoadHasEnded)
{
    makeTable(*db, "data", "y a", {{1, 2}, {2, 3}, {4, 4}});
    for (const bool shown : {false, true}) {
        QPointer<TMLRTable> mortal = new TMLRTable;
        bind(*mortal, *db, "data");
        define(*mortal, "a");
        mortal->SetShowLoadProgress(shown);
        QObject::connect(mortal, &TMLRTable::LoadEnded, [mortal] { delete mortal.data(); });
        EXPECT_NO_THROW(mortal->ReLoad());
        EXPECT_TRUE(mortal.isNull());
    }
}

// What an error leaves.

namespace {

/// Everything that says what was loaded and fitted, as the bits that it is.
std::vector<std::uint64_t> whatIsThere(TRegression &regression)
{
    std::vector<double> values = {double(regression.GetNumObs()),
                                  double(regression.GetNumVars()),
                                  double(regression.GetDOF()),
                                  double(regression.RecordsRead()),
                                  double(regression.RecordsSkipped()),
                                  regression.GetSSE(),
                                  regression.GetSSR(),
                                  regression.GetSST(),
                                  regression.GetMSE(),
                                  regression.GetSyx(),
                                  regression.GetRSquared(),
                                  regression.GetF(),
                                  regression.GetyMax(),
                                  regression.GetxMax(1)};
    for (int i = 1; i <= regression.GetNumObs(); ++i) {
        values.insert(values.end(), {regression.Gety(i), regression.Getx(i, 1), regression.Gete(i),
                                     double(regression.GetRecord(i))});
    }
    for (int j = 0; j <= regression.GetNumVars(); ++j)
        values.insert(values.end(), {regression.Getb(j), regression.GetStdErr(j), regression.GetTValue(j)});
    std::vector<std::uint64_t> bits;
    bits.reserve(values.size());
    for (const double value : values)
        bits.push_back(std::bit_cast<std::uint64_t>(value));
    return bits;
}

} // namespace

TYPED_TEST(LoadingForms, ALoadThatThrowsLeavesTheObservationsAndFiguresOfTheOneBefore)
{
    TypeParam &component = this->regression;
    this->fill("y a b", {{3, 1, 2}, {null, 2, 2}, {5, 2, 0}, {7, 4, 1}, {8, 5, 3}, {12, 7, 4}});
    define(component, "a");
    EXPECT_TRUE(component.ReLoad());
    component.Execute();
    const std::vector<std::uint64_t> before = whatIsThere(component);
    this->db->exec(text("UPDATE data SET b = 'n/a' WHERE id = 5"));
    component.Refresh();
    component.SetControl(2, control("None", "b"));
    EXPECT_THROW(component.ReLoad(), EConvertError);
    EXPECT_EQ(whatIsThere(component), before);
    EXPECT_EQ(component.GetcVar(1).Field1(), text("a"));
    EXPECT_FALSE(component.Loaded());
    EXPECT_FALSE(component.ResultsCurrent());
    EXPECT_EQ(component.CurrentFit(), nullptr);
    component.SetControl(2, control("None", "nothing"));
    EXPECT_THROW(component.ReLoad(), EDatabaseError);
    EXPECT_EQ(whatIsThere(component), before);
    component.SetControl(2, TIndepVar());
    EXPECT_TRUE(component.ReLoad());
    component.Execute();
    EXPECT_EQ(whatIsThere(component), before);
}

TEST_F(Loading, ObservationsKnowTheirRecords)
{
    fill("y a", {{3, 1}, {null, 2}, {5, null}, {7, 4}, {8, 5}, {null, 1}, {12, 7}});
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    regression.Execute();
    std::vector<qint64> records;
    for (int i = 1; i <= regression.GetNumObs(); ++i)
        records.push_back(regression.GetRecord(i));
    EXPECT_EQ(records, (std::vector<qint64>{1, 4, 5, 7}));
    EXPECT_EQ(regression.CurrentFit()->observations().record(4), 7);
}

TEST_F(Loading, AFitThatSomebodyHoldsOutlivesLoadsAndComponent)
{
    fill("y a b", {{3, 1, 2}, {5, 2, 0}, {7, 4, 1}, {8, 5, 3}, {12, 7, 4}});
    define(regression, "a");
    EXPECT_EQ(regression.CurrentFit(), nullptr);
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.CurrentFit(), nullptr);
    regression.Execute();
    const std::shared_ptr<const nuvo::Fit> fit = regression.CurrentFit();
    ASSERT_NE(fit, nullptr);
    const double residual = regression.Gete(5);
    const double covariance = regression.GetCovar(1, 1);
    define(regression, "b");
    for (int time = 0; time < 5; ++time) {
        EXPECT_TRUE(regression.ReLoad());
        EXPECT_EQ(regression.CurrentFit(), nullptr);
        regression.Execute();
        EXPECT_NE(regression.CurrentFit(), fit);
    }
    EXPECT_EQ(fit->observations().x(1).values[4], 7);
    EXPECT_EQ(fit->residuals()[4], residual);
    EXPECT_EQ(fit->covariances()[1][1], covariance);
    EXPECT_EQ(fit->degreesOfFreedom(), 3);
}

TEST_F(Loading, SyxAfterALoadAloneIsThatOfTheFitBefore)
{
    fill("y a b", {{3, 1, 2}, {5, 2, 0}, {7, 4, 1}, {8, 5, 3}, {12, 7, 4}});
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    regression.Execute();
    const double syx = regression.GetSyx();
    define(regression, "b");
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetSyx(), syx);
}
