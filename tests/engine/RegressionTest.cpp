// SPDX-License-Identifier: MIT
#include "engine/Regressionforms.h"

#include <QApplication>
#include <QMetaProperty>
#include <QPointer>
#include <QSignalSpy>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace {

/// Every figure that a component holds, as the bits that it is.
std::vector<std::uint64_t> figures(TRegression &regression)
{
    std::vector<double> values = {regression.GetyBar(), regression.GetyStdErr(), regression.GetyMax(),
                                  regression.GetyMin(), regression.GetMSE(),     double(regression.GetDOF())};
    for (int i = 0; i <= MaxControls; ++i) {
        values.insert(values.end(), {regression.Getb(i), regression.GetxBar(i), regression.GetxStdErr(i),
                                     regression.GetxMax(i), regression.GetxMin(i)});
        for (int j = 0; j <= MaxControls; ++j)
            values.insert(values.end(), {regression.GetCovar(i, j), regression.GetCorr(i, j)});
    }
    for (int i = 1; i <= regression.GetNumObs(); ++i) {
        values.insert(values.end(), {regression.Gety(i), regression.Gete(i), regression.GetyHat(i)});
        for (int j = 1; j <= regression.GetNumVars(); ++j)
            values.push_back(regression.Getx(i, j));
    }
    std::vector<std::uint64_t> bits;
    bits.reserve(values.size());
    for (const double value : values)
        bits.push_back(std::bit_cast<std::uint64_t>(value));
    return bits;
}

Message notLoaded(const TRegression &regression)
{
    return {regression.DataSetForm() == TRegression::Form::Table ? text("Table values NOT loaded.")
                                                                 : text("Query dataset values NOT loaded."),
            TMsgDlgType::mtInformation, mbOK, 0};
}

} // namespace

// Messages that ShowWarnings governs.

TEST(MlrMessage, ShowsNothingWhereItIsSwitchedOff)
{
    const Messages messages;
    EXPECT_EQ(MlrMessageDlg(false, text("text"), TMsgDlgType::mtWarning, mbOK | mbCancel, 7), 0);
    EXPECT_EQ(messages.shown, std::vector<Message>());
}

TEST(MlrMessage, HandsOnWhatItIsGivenAndReturnsTheButton)
{
    Message seen;
    const TMessageHandler before =
        SetMessageHandler([&](const QString &words, TMsgDlgType type, unsigned buttons, int helpContext) {
            seen = {words, type, buttons, helpContext};
            return int(mrNo);
        });
    EXPECT_EQ(MlrMessageDlg(true, text("line\n\rline"), TMsgDlgType::mtConfirmation, mbYes | mbNo, 7), mrNo);
    SetMessageHandler(before);
    EXPECT_EQ(seen, (Message{text("line\n\rline"), TMsgDlgType::mtConfirmation, mbYes | mbNo, 7}));
}

// What a fresh component is.

TYPED_TEST(RegressionForms, AFreshOneHasItsDefaults)
{
    TypeParam &fresh = this->regression;
    for (int k = 1; k <= MaxControls; ++k)
        EXPECT_EQ(fresh.ControlVar(k).ToQStringList(), TIndepVar().ToQStringList()) << k;
    EXPECT_EQ(fresh.ResponseVarY().ToQStringList(), TDependentVar().ToQStringList());
    EXPECT_EQ(fresh.Description(), QString());
    EXPECT_EQ(fresh.ReportMessage(), QString());
    EXPECT_FALSE(fresh.ShowLoadProgress());
    EXPECT_FALSE(fresh.ShowWarnings());
    EXPECT_FALSE(fresh.Loaded());
    EXPECT_FALSE(fresh.Computed());
    EXPECT_FALSE(fresh.ResultsCurrent());
    EXPECT_FALSE(fresh.LoadStopped());
    EXPECT_EQ(fresh.GetNumObs(), 0);
    EXPECT_EQ(fresh.GetNumVars(), 0);
    for (const std::uint64_t bits : figures(fresh))
        EXPECT_EQ(bits, 0u);
    EXPECT_EQ(fresh.RecordsRead(), 0);
    EXPECT_EQ(fresh.RecordsUsed(), 0);
    EXPECT_EQ(fresh.RecordsSkipped(), 0);
    EXPECT_EQ(fresh.GetSSE(), 0);
    EXPECT_EQ(fresh.GetSSR(), 0);
    EXPECT_EQ(fresh.GetSST(), 0);
    EXPECT_EQ(fresh.GetRSquared(), 0);
    EXPECT_EQ(fresh.DependentColumns(), std::vector<int>());
}

TYPED_TEST(RegressionForms, WithoutControlsTheConstantAloneIsFitted)
{
    this->fill("y", {{1}, {2}, {6}, {7}});
    this->regression.SetResponse(response("None", "y"));
    EXPECT_TRUE(this->regression.ReLoad());
    EXPECT_EQ(this->regression.GetNumVars(), 0);
    this->regression.Execute();
    EXPECT_TRUE(this->regression.Computed());
    EXPECT_EQ(this->regression.Getb(0), 4);
    EXPECT_EQ(this->regression.GetyHat(1), 4);
    EXPECT_EQ(this->regression.Gete(4), 3);
    EXPECT_EQ(this->regression.GetSSE(), 26);
    EXPECT_EQ(this->regression.GetCovar(0, 0), 26.0 / 3 / 4);
    EXPECT_EQ(this->messages.shown, std::vector<Message>());
}

// The run and its flags.

TYPED_TEST(RegressionForms, ExecuteBeforeALoadOnlySaysSo)
{
    TypeParam &fresh = this->regression;
    const std::vector<std::uint64_t> before = figures(fresh);
    QSignalSpy fitted(&fresh, &TypeParam::Fitted);
    fresh.Execute();
    EXPECT_EQ(this->messages.shown, std::vector<Message>()) << "ShowWarnings is off";
    fresh.SetShowWarnings(true);
    fresh.Execute();
    EXPECT_EQ(this->messages.shown, std::vector<Message>{notLoaded(fresh)});
    EXPECT_EQ(figures(fresh), before);
    EXPECT_FALSE(fresh.Computed());
    EXPECT_FALSE(fresh.Loaded());
    EXPECT_EQ(fitted.size(), 0);
}

TYPED_TEST(RegressionForms, ExecuteAfterALoadThatFailedLeavesResultsAndFlag)
{
    TypeParam &component = this->regression;
    this->fill("y a b c", kRecords);
    define(component, "a b");
    component.SetShowWarnings(true);
    component.ReLoad();
    component.Execute();
    this->db->exec(text("UPDATE data SET y = NULL"));
    component.Refresh();
    EXPECT_FALSE(component.ReLoad());
    EXPECT_TRUE(component.Computed()) << "a load alone does not take it back";
    EXPECT_FALSE(component.ResultsCurrent());
    this->messages.shown.clear();
    const std::vector<std::uint64_t> before = figures(component);
    component.Execute();
    EXPECT_EQ(this->messages.shown, std::vector<Message>{notLoaded(component)});
    EXPECT_EQ(figures(component), before);
    EXPECT_TRUE(component.Computed()) << "it keeps its value";
    EXPECT_FALSE(component.Loaded());
}

TYPED_TEST(RegressionForms, ASuccessfulRunShowsNothing)
{
    TypeParam &component = this->regression;
    this->fill("y a b c", kRecords);
    define(component, "a b");
    component.SetShowWarnings(true);
    const qsizetype windows = QApplication::topLevelWidgets().size();
    QSignalSpy fitted(&component, &TypeParam::Fitted);
    EXPECT_TRUE(component.ReLoad());
    EXPECT_FALSE(component.Computed());
    EXPECT_FALSE(component.ResultsCurrent());
    component.Execute();
    EXPECT_TRUE(component.Computed());
    EXPECT_TRUE(component.ResultsCurrent());
    EXPECT_EQ(fitted.size(), 1);
    EXPECT_EQ(this->messages.shown, std::vector<Message>());
    EXPECT_EQ(QApplication::topLevelWidgets().size(), windows);
    EXPECT_TRUE(component.Eof()) << "it does not walk the records";
}

TYPED_TEST(RegressionForms, AWrittenControlAsksForANewLoad)
{
    TypeParam &component = this->regression;
    this->fill("y a b c", kRecords);
    define(component, "a b");
    component.SetShowWarnings(true);
    component.ReLoad();
    component.Execute();
    const std::vector<std::uint64_t> before = figures(component);
    component.SetControl3(control("None", "c"));
    EXPECT_FALSE(component.Loaded());
    EXPECT_FALSE(component.Computed());
    EXPECT_FALSE(component.ResultsCurrent());
    component.Execute();
    EXPECT_EQ(this->messages.shown, std::vector<Message>{notLoaded(component)});
    EXPECT_EQ(figures(component), before) << "stale results stay";
    EXPECT_EQ(component.GetNumVars(), 2);
    EXPECT_TRUE(component.ReLoad());
    component.Execute();
    EXPECT_EQ(component.GetNumVars(), 3);
    EXPECT_TRUE(component.Computed());
}

TEST_F(Regressions, EveryWriterOfADefinitionTakesBothFlagsBack)
{
    fill("y a b c", kRecords);
    define(regression, "a b");
    const auto run = [this] {
        EXPECT_TRUE(regression.ReLoad());
        regression.Execute();
        EXPECT_TRUE(regression.Loaded());
        EXPECT_TRUE(regression.Computed());
    };
    for (int k = 1; k <= MaxControls; ++k) {
        run();
        const TIndepVar same = regression.ControlVar(k);
        regression.SetControl(k, same);
        EXPECT_FALSE(regression.Loaded()) << k;
        EXPECT_FALSE(regression.Computed()) << k;
    }
    run();
    const TDependentVar same = regression.ResponseVarY();
    regression.SetResponse(same);
    EXPECT_FALSE(regression.Loaded());
    EXPECT_FALSE(regression.Computed());
    run();
    regression.setProperty("ControlVar07", regression.property("ControlVar07"));
    EXPECT_FALSE(regression.Loaded());
    EXPECT_FALSE(regression.Computed());
    run();
    regression.setProperty("ResponseVarY", regression.property("ResponseVarY"));
    EXPECT_FALSE(regression.Loaded());
    EXPECT_FALSE(regression.Computed());
}

TEST_F(Regressions, OtherPropertiesAreStoredAlone)
{
    fill("y a b c", kRecords);
    define(regression, "a b");
    regression.ReLoad();
    regression.Execute();
    regression.SetDescription(text("employment"));
    regression.SetReportMessage(text("a\n\rb"));
    regression.SetShowLoadProgress(true);
    regression.SetShowWarnings(true);
    EXPECT_TRUE(regression.Loaded());
    EXPECT_TRUE(regression.Computed());
    EXPECT_EQ(regression.Description(), text("employment"));
    EXPECT_EQ(regression.ReportMessage(), text("a\n\rb"));
    EXPECT_TRUE(regression.ShowLoadProgress());
    EXPECT_TRUE(regression.ShowWarnings());
}

TEST_F(Regressions, ADefinitionChangedInPlaceTakesNoFlagBack)
{
    fill("y a b c", kRecords);
    define(regression, "a b");
    regression.ReLoad();
    regression.Execute();
    const double slope = regression.Getb(1);
    regression.ControlVar(1).SetField1(text("c"));
    regression.ResponseVarY().SetField(text("c"));
    EXPECT_TRUE(regression.Loaded());
    EXPECT_TRUE(regression.Computed());
    regression.Execute();
    EXPECT_EQ(regression.Getb(1), slope) << "the observations are those of the load";
    regression.ResponseVarY().SetField(text("y"));
    EXPECT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_NE(regression.Getb(1), slope);
}

TEST_F(Regressions, AWriterCopiesIntoTheOwnedDefinition)
{
    const TIndepVar *owned = &regression.ControlVar04();
    EXPECT_EQ(owned, &regression.ControlVar(4));
    TIndepVar given = control("Log", "a");
    regression.SetControl4(given);
    EXPECT_EQ(&regression.ControlVar04(), owned);
    EXPECT_EQ(owned->ToQStringList(), given.ToQStringList());
    given.SetField1(text("b"));
    EXPECT_EQ(owned->Field1(), text("a"));
    regression.SetControl4(regression.ControlVar04());
    EXPECT_EQ(owned->Field1(), text("a"));

    const TDependentVar *response = &regression.ResponseVarY();
    TDependentVar asked = ::response("Log", "y");
    regression.SetResponse(asked);
    EXPECT_EQ(&regression.ResponseVarY(), response);
    asked.SetField(text("b"));
    EXPECT_EQ(response->FieldName(), text("y"));
}

TEST_F(Regressions, TheNumberedWritersReachTheirControls)
{
    const auto names = [](int k) { return control("None", qPrintable(QStringLiteral("f%1").arg(k))); };
    regression.SetControl1(names(1));
    regression.SetControl2(names(2));
    regression.SetControl3(names(3));
    regression.SetControl4(names(4));
    regression.SetControl5(names(5));
    regression.SetControl6(names(6));
    regression.SetControl7(names(7));
    regression.SetControl8(names(8));
    regression.SetControl9(names(9));
    regression.SetControl10(names(10));
    for (int k = 1; k <= MaxControls; ++k)
        EXPECT_EQ(regression.ControlVar(k).Field1(), QStringLiteral("f%1").arg(k));
    EXPECT_EQ(regression.ControlVar01().Field1(), text("f1"));
    EXPECT_EQ(regression.ControlVar10().Field1(), text("f10"));
}

// Results.

TYPED_TEST(RegressionForms, FitsItsOwnRecords)
{
    // The quotients are worked out by hand.
    TypeParam &component = this->regression;
    this->fill("y a b", {{3, 1, 2}, {7, 4, 1}, {8, 5, 3}, {12, 7, 4}, {13, 8, 2}});
    define(component, "a b");
    EXPECT_TRUE(component.ReLoad());
    component.Execute();
    EXPECT_DOUBLE_EQ(component.Getb(0), 144.0 / 131);
    EXPECT_DOUBLE_EQ(component.Getb(1), 949.0 / 655);
    EXPECT_DOUBLE_EQ(component.Getb(2), 14.0 / 131);
    EXPECT_DOUBLE_EQ(component.GetSSE(), 404.0 / 655);
    EXPECT_DOUBLE_EQ(component.GetSST(), 326.0 / 5);
    EXPECT_DOUBLE_EQ(component.GetMSE(), 202.0 / 655);
    EXPECT_DOUBLE_EQ(component.GetRSquared(), 21151.0 / 21353);
    EXPECT_EQ(component.GetDOF(), 2);
}

TEST_F(Regressions, CoefficientOneBelongsToTheFirstDefinedControl)
{
    fill("y a b c", {{5, 1, 9, 2}, {7, 2, 4, 1}, {9, 3, 7, 7}, {11, 4, 1, 3}});
    regression.SetResponse(response("None", "y"));
    regression.SetControl4(control("None", "a"));
    regression.ReLoad();
    regression.Execute();
    EXPECT_NEAR(regression.Getb(0), 3, 1e-14);
    EXPECT_NEAR(regression.Getb(1), 2, 1e-14);
    regression.SetControl9(control("None", "b"));
    regression.ReLoad();
    regression.Execute();
    EXPECT_NEAR(regression.Getb(0), 3, 1e-13);
    EXPECT_NEAR(regression.Getb(1), 2, 1e-14);
    EXPECT_NEAR(regression.Getb(2), 0, 1e-14);
}

TEST_F(Regressions, AccessorsThatComputeAnswerTheSameTwice)
{
    fill("y a b c", kRecords);
    define(regression, "a b");
    regression.ReLoad();
    regression.Execute();
    EXPECT_EQ(regression.GetSSR(), regression.GetSSR());
    EXPECT_EQ(regression.GetSSE(), regression.GetSSE());
    EXPECT_EQ(regression.GetSST(), regression.GetSST());
    EXPECT_EQ(regression.GetSyx(), regression.GetSyx());
    EXPECT_EQ(regression.GetRSquared(), regression.GetRSquared());
    EXPECT_EQ(regression.GetF(), regression.GetF());
    EXPECT_EQ(regression.GetRSquared(), regression.GetSSR() / regression.GetSST());
}

TEST_F(Regressions, RSquaredIsThatOfTheMoment)
{
    fill("y a b c", kRecords);
    define(regression, "a b");
    regression.ReLoad();
    regression.Execute();
    const double first = regression.GetRSquared();
    define(regression, "c");
    regression.SetControl2(TIndepVar());
    regression.ReLoad();
    regression.Execute();
    EXPECT_NE(regression.GetRSquared(), first);
    EXPECT_EQ(regression.GetRSquared(), regression.GetSSR() / regression.GetSST());
}

TEST_F(Regressions, PlainAccessorsGiveWhatIsLeftAfterADefinitionWasChanged)
{
    fill("y a b c", kRecords);
    define(regression, "a b");
    regression.ReLoad();
    regression.Execute();
    const std::vector<std::uint64_t> before = figures(regression);
    define(regression, "c");
    EXPECT_EQ(figures(regression), before);
    EXPECT_EQ(regression.GetcVar(1).Field1(), text("a"));
    EXPECT_EQ(regression.GetNumVars(), 2);
}

TEST_F(Regressions, AccessorsBetweenALoadAndAFitDoNoHarm)
{
    fill("y a b c", 400, [](int i) { return Row{double(i), double(i % 7), double(i % 5), double(i % 11)}; });
    define(regression, "a");
    regression.SetFilter(text("y < 10"));
    regression.SetFiltered(true);
    EXPECT_TRUE(regression.ReLoad());
    regression.Execute();
    regression.SetFiltered(false);
    define(regression, "a b c");
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_FALSE(regression.ResultsCurrent());
    (void)figures(regression);
    (void)regression.GetSSE();
    (void)regression.GetSSR();
    (void)regression.GetSST();
    (void)regression.GetSyx();
    (void)regression.GetRSquared();
    (void)regression.GetF();
    (void)regression.DependentColumns();
    regression.Execute();
    EXPECT_TRUE(regression.ResultsCurrent());
}

TEST_F(Regressions, PredictsFromValuesNumberedFromOne)
{
    fill("y a b", {{5, 1, 9}, {7, 2, 4}, {9, 3, 7}, {12, 4, 1}, {13, 6, 2}});
    define(regression, "a b");
    regression.ReLoad();
    regression.Execute();
    const double b0 = regression.Getb(0);
    const double b1 = regression.Getb(1);
    const double b2 = regression.Getb(2);
    const double values[] = {std::numeric_limits<double>::quiet_NaN(), 10, -3};
    EXPECT_EQ(regression.Predict(values, 0), b0);
    EXPECT_DOUBLE_EQ(regression.Predict(values, 1), b0 + b1 * 10);
    EXPECT_DOUBLE_EQ(regression.Predict(values, 2), b0 + b1 * 10 - b2 * 3);
}

TEST_F(Regressions, ALoadAndAFitCanBeRepeated)
{
    fill("y a b c", kRecords);
    define(regression, "a b");
    regression.ReLoad();
    regression.Execute();
    const std::vector<std::uint64_t> before = figures(regression);
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(regression.ReLoad());
        regression.Execute();
        EXPECT_EQ(figures(regression), before);
    }
    regression.Execute();
    EXPECT_EQ(figures(regression), before);
}

TYPED_TEST(RegressionForms, TableAndQueryFitAlike)
{
    makeTable(*this->db, "data", "y a b c", kRecords);
    TMLRTable table;
    TMLRQuery query;
    std::vector<std::uint64_t> results[2];
    TRegression *components[] = {&table, &query};
    bind(table, *this->db, "data");
    bind(query, *this->db, "data");
    for (int i = 0; i < 2; ++i) {
        define(*components[i], "a b c");
        EXPECT_TRUE(components[i]->ReLoad());
        components[i]->Execute();
        results[i] = figures(*components[i]);
    }
    EXPECT_EQ(results[0], results[1]);
    EXPECT_EQ(table.DataSourceName(), text("data"));
    EXPECT_EQ(query.DataSourceName(), text("SELECT * FROM data ORDER BY id"));
    EXPECT_EQ(table.DataSetForm(), TRegression::Form::Table);
    EXPECT_EQ(query.DataSetForm(), TRegression::Form::Query);
    EXPECT_EQ(&table.DataSet(), static_cast<TDataSet *>(&table));
    query.SetSQL(text("SELECT *\nFROM data"));
    EXPECT_EQ(query.DataSourceName(), text("SELECT *")) << "the first line";
}

TEST_F(Regressions, DependentColumnsAreNamed)
{
    fill("y a b c", 12, [](int i) {
        return Row{double(i * i % 13), double(i % 5), 3.0 * (i % 5) + 1, double(i % 7)};
    });
    define(regression, "a c");
    regression.ReLoad();
    regression.Execute();
    EXPECT_EQ(regression.DependentColumns(), std::vector<int>());
    define(regression, "a b c");
    EXPECT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_EQ(regression.DependentColumns(), std::vector<int>{2});
    EXPECT_EQ(messages.shown, std::vector<Message>());
    define(regression, "c b a");
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.DependentColumns(), std::vector<int>{2}) << "of the last fit";
    regression.Execute();
    EXPECT_EQ(regression.DependentColumns(), std::vector<int>{3});
}

TYPED_TEST(RegressionForms, TheComponentMayGoWhenItIsFittedOrTellsThatItIsNotLoaded)
{
    makeTable(*this->db, "data", "y a b c", kRecords);
    QPointer<TypeParam> mortal = new TypeParam;
    bind(*mortal, *this->db, "data");
    define(*mortal, "a b");
    EXPECT_TRUE(mortal->ReLoad());
    QObject::connect(mortal, &TypeParam::Fitted, [mortal] { delete mortal.data(); });
    mortal->Execute();
    EXPECT_TRUE(mortal.isNull());
    mortal = new TypeParam;
    mortal->SetShowWarnings(true);
    this->messages.meanwhile = [mortal] { delete mortal.data(); };
    mortal->Execute();
    EXPECT_TRUE(mortal.isNull());
}

TEST_F(Regressions, FittingKeepsControlsAsTheyAre)
{
    fill("y a b c", kRecords);
    define(regression, "a b");
    regression.ReLoad();
    QObject::connect(&regression, &TMLRTable::Fitted, [this] {
        EXPECT_TRUE(regression.Computed());
        EXPECT_FALSE(regression.ControlsDisabled());
    });
    regression.Execute();
}
