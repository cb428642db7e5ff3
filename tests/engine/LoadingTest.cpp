// SPDX-License-Identifier: MIT
#include "engine/Loading.h"

#include <QSignalSpy>

#include <cmath>
#include <limits>

// The limit.

TYPED_TEST(LoadingForms, ThreeThousandRecordsGiveTheFirst2500)
{
    this->fill("y a", 3000, numbered);
    define(this->regression, "a");
    EXPECT_TRUE(this->regression.ReLoad());
    EXPECT_EQ(this->regression.GetNumObs(), 2500);
    EXPECT_EQ(this->regression.Gety(1), 1);
    EXPECT_EQ(this->regression.Gety(2500), 2500);
    EXPECT_EQ(this->regression.Getx(2500, 1), 2500 % 7);
    EXPECT_EQ(this->regression.GetDOF(), 2498);
    EXPECT_EQ(this->messages.shown, std::vector<Message>()) << "ShowWarnings is off";
}

TYPED_TEST(LoadingForms, MoreThan2500RecordsAreWarnedAboutWhereWarningsAreOn)
{
    this->fill("y a", 2501, numbered);
    define(this->regression, "a");
    this->regression.SetShowWarnings(true);
    EXPECT_TRUE(this->regression.ReLoad());
    const bool table = std::is_same_v<TypeParam, TMLRTable>;
    EXPECT_EQ(this->messages.shown, std::vector<Message>{overLimit(table, 2501)});
    EXPECT_EQ(this->regression.GetNumObs(), 2500);
}

TYPED_TEST(LoadingForms, Exactly2500RecordsLoadWithoutAWarning)
{
    this->fill("y a", 2500, numbered);
    define(this->regression, "a");
    this->regression.SetShowWarnings(true);
    EXPECT_TRUE(this->regression.ReLoad());
    EXPECT_EQ(this->regression.GetNumObs(), 2500);
    EXPECT_EQ(this->messages.shown, std::vector<Message>());
}

TEST_F(Loading, TheWarningCountsTheRecordsAfterFiltering)
{
    fill("y a", 2700, numbered);
    define(regression, "a");
    regression.SetShowWarnings(true);
    regression.SetFilter(text("y <= 2600"));
    regression.SetFiltered(true);
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(messages.shown, std::vector<Message>{overLimit(true, 2600)});
    messages.shown.clear();
    regression.SetFilter(text("y <= 2500"));
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(messages.shown, std::vector<Message>());
    EXPECT_EQ(regression.GetNumObs(), 2500);
}

TEST_F(Loading, TheWarningCountsUnusableRecordsToo)
{
    fill("y a", 2600, [](int i) { return Row{i <= 2000 ? null : std::optional<double>(i), double(i % 7)}; });
    define(regression, "a");
    regression.SetShowWarnings(true);
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(messages.shown, std::vector<Message>{overLimit(true, 2600)});
    EXPECT_EQ(regression.GetNumObs(), 600);
}

TEST_F(Loading, CheckDataCountAloneWarns)
{
    fill("y a", 2501, numbered);
    regression.CheckDataCount();
    EXPECT_EQ(messages.shown, std::vector<Message>());
    regression.SetShowWarnings(true);
    regression.CheckDataCount();
    EXPECT_EQ(messages.shown, std::vector<Message>{overLimit(true, 2501)});
}

TEST_F(Loading, UnusableRecordsDoNotCountTowardsTheLimit)
{
    fill("y a", 2600, [](int i) { return Row{double(i), i <= 100 ? null : std::optional<double>(i % 7)}; });
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetNumObs(), 2500);
    EXPECT_EQ(regression.Gety(1), 101);
    EXPECT_EQ(regression.Gety(2500), 2600);
}

TEST_F(Loading, StopsBeforeTheEndOnTheRecordAfterThe2500th)
{
    fill("y a", 2700, [](int i) { return Row{double(i), i <= 100 ? null : std::optional<double>(i % 7)}; });
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetNumObs(), 2500);
    EXPECT_FALSE(regression.Eof());
    EXPECT_EQ(regression.RecNo(), 2601);
    EXPECT_EQ(regression.RecordsRead(), 2600);
    EXPECT_EQ(regression.RecordsUsed(), 2500);
    EXPECT_EQ(regression.RecordsSkipped(), 100);
}

TEST_F(Loading, LeavesAShorterDatasetAtItsEnd)
{
    fill("y a", 20, numbered);
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_TRUE(regression.Eof());
    EXPECT_EQ(regression.RecNo(), 20);
}

TEST_F(Loading, StartsAtTheFirstRecordWhereverTheDatasetStands)
{
    fill("y a", 20, numbered);
    define(regression, "a");
    regression.MoveBy(12);
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetNumObs(), 20);
    EXPECT_EQ(regression.Gety(1), 1);
}

// Which records.

TEST_F(Loading, RecordsThatCannotBeTransformedAreSkippedSilently)
{
    fill("y a b",
         {{3, 1, 2}, {5, 2, null}, {7, 4, 1}, {null, 5, 3}, {12, null, 3}, {13, 8, 0}, {14, 9, -1}, {15, 1, 6}});
    regression.SetResponse(response("None", "y"));
    regression.SetControl(1, control("None", "a"));
    regression.SetControl(2, control("Log", "b"));
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(y(), (std::vector<double>{3, 7, 15}));
    EXPECT_EQ(column(1), (std::vector<double>{1, 4, 1}));
    EXPECT_EQ(column(2), (std::vector<double>{std::log(2.0), std::log(1.0), std::log(6.0)}));
    EXPECT_EQ(messages.shown, std::vector<Message>());
    EXPECT_EQ(regression.RecordsRead(), 8);
    EXPECT_EQ(regression.RecordsUsed(), 3);
    EXPECT_EQ(regression.RecordsSkipped(), 5);
}

TEST_F(Loading, AResponseThatCannotBeTransformedSkipsTheRecord)
{
    fill("y a", {{1, 1}, {0, 2}, {-1, 3}, {4, 4}});
    regression.SetResponse(response("Log", "y"));
    regression.SetControl(1, control("None", "a"));
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(y(), (std::vector<double>{0, std::log(4.0)}));
    EXPECT_EQ(column(1), (std::vector<double>{1, 4}));
}

TEST_F(Loading, EveryTransformationGivesWhatTheDefinitionGives)
{
    fill("y a b", 40, [](int i) {
        const auto cell = [i](int k) -> std::optional<double> {
            const int n = (i * k) % 11 - 3;
            return n == 7 ? null : std::optional<double>(n * 0.75);
        };
        return Row{cell(5), cell(3), cell(7)};
    });
    std::vector<TIndepVar> controls = {control("None", "a"),
                                       control("Log", "a"),
                                       control("Inverse", "b"),
                                       control("Sqrt", "b"),
                                       power("a", "2"),
                                       power("a", "3"),
                                       scaled("Scale", "a", "2,5"),
                                       scaled("Scaled", "a", "2"),
                                       control("Product", "a", "b"),
                                       control("Quotient", "a", "b"),
                                       control("Inactive", "a"),
                                       control("Anything", "b"),
                                       scaled("Scaled", "a", "1e-21")};
    const std::vector<TDependentVar> responses = {response("None", "y"), response("Log", "y"),
                                                  response("Inverse", "y"), response("Scale", "y", "4"),
                                                  response("Anything", "y")};
    for (const TIndepVar &definition : controls) {
        for (const TDependentVar &asked : responses) {
            regression.SetControl(1, definition);
            regression.SetResponse(asked);
            std::vector<double> xs;
            std::vector<double> ys;
            for (regression.First(); !regression.Eof(); regression.Next()) {
                if (definition.ValidTransformation(regression) && asked.ValidTransformation(regression)) {
                    xs.push_back(definition.Process(regression));
                    ys.push_back(asked.Process(regression));
                }
            }
            regression.ReLoad();
            EXPECT_EQ(column(1), xs) << definition.ToQStringList().join(u' ').toStdString();
            EXPECT_EQ(y(), ys) << asked.ToQStringList().join(u' ').toStdString();
        }
    }
}

TEST_F(Loading, AQuotientByZeroOrNullLoadsWhatTheDivisionGives)
{
    fill("y a b", {{1, 1, 0}, {2, 1, 2}, {3, -1, null}, {4, 0, 0}});
    regression.SetResponse(response("None", "y"));
    regression.SetControl(1, control("Quotient", "a", "b"));
    EXPECT_TRUE(regression.ReLoad());
    ASSERT_EQ(regression.GetNumObs(), 4);
    EXPECT_EQ(regression.Getx(1, 1), std::numeric_limits<double>::infinity());
    EXPECT_EQ(regression.Getx(2, 1), 0.5);
    EXPECT_EQ(regression.Getx(3, 1), -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(regression.Getx(4, 1)));
    EXPECT_NO_THROW(regression.Execute());
}

// Columns.

TEST_F(Loading, ColumnsFollowThePropertiesWithUndefinedOnesSkipped)
{
    fill("y a b c", {{1, 10, 20, 30}, {2, 11, 22, 33}, {3, 12, 25, 37}});
    regression.SetResponse(response("None", "y"));
    regression.SetControl(5, control("None", "a"));
    regression.SetControl(2, control("None", "c"));
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetNumVars(), 2);
    EXPECT_EQ(column(1), (std::vector<double>{30, 33, 37}));
    EXPECT_EQ(column(2), (std::vector<double>{10, 11, 12}));
    EXPECT_EQ(regression.GetcVar(1).Field1(), text("c"));
    EXPECT_EQ(regression.GetcVar(2).Field1(), text("a"));
}

TEST_F(Loading, AllTenControlsCanBeColumns)
{
    fill("y a b c d e f g h i j", 15, [](int i) {
        Row row = {double(i * i)};
        for (int j = 1; j <= 10; ++j)
            row.push_back(double((i * (j + 2)) % (11 + j)));
        return row;
    });
    define(regression, "a b c d e f g h i j");
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetNumVars(), 10);
    EXPECT_EQ(regression.GetDOF(), 4);
    for (int j = 1; j <= 10; ++j)
        EXPECT_EQ(regression.Getx(3, j), (3 * (j + 2)) % (11 + j)) << j;
}

TEST_F(Loading, UsageIsNotConsulted)
{
    fill("y a b", {{1, 10, 20}, {2, 11, 22}, {3, 12, 25}});
    define(regression, "a b");
    regression.ControlVar(1).SetParameters(0, text("Inactive"));
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetNumVars(), 2);
}

TEST_F(Loading, ATransformationCalledInactiveIsAColumn)
{
    fill("y a b", {{1, 10, 20}, {2, 11, 22}, {3, 12, 25}});
    define(regression, "a b");
    regression.SetControl(1, control("Inactive", "a"));
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetNumVars(), 2);
    EXPECT_EQ(column(1), (std::vector<double>{10, 11, 12}));
}

TEST_F(Loading, ColumnsAreCopiesOfTheDefinitionsAsTheyWere)
{
    fill("y a b", {{1, 10, 20}, {2, 11, 22}, {3, 12, 25}});
    define(regression, "a b");
    TIndepVar all;
    for (int i = 0; i < 6; ++i)
        all.SetParameters(i, QStringLiteral("s%1").arg(i));
    all.SetParameters(2, text("b"));
    regression.SetControl(2, all);
    EXPECT_TRUE(regression.ReLoad());
    regression.ControlVar(1).SetField1(text("b"));
    regression.ControlVar(2).SetUsage(text("Inactive"));
    EXPECT_EQ(regression.GetcVar(1).Field1(), text("a"));
    EXPECT_EQ(regression.GetcVar(2).ToQStringList(), all.ToQStringList());
    EXPECT_EQ(regression.GetNumVars(), 2);
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetcVar(1).Field1(), text("b"));
    EXPECT_EQ(regression.GetNumVars(), 1);
}

TEST_F(Loading, SetcVarArraysAppendsDefinedOnesAlone)
{
    fill("y a b", {{1, 10, 20}, {2, 11, null}});
    regression.SetcVarArrays(TIndepVar());
    EXPECT_EQ(regression.GetNumVars(), 0);
    regression.SetcVarArrays(control("None", "b"));
    regression.SetcVarArrays(control("Log", "a"));
    EXPECT_EQ(regression.GetNumVars(), 2);
    EXPECT_EQ(regression.GetcVar(2).Transformation(), text("Log"));
    EXPECT_TRUE(regression.ValidRecord(2));
    regression.Next();
    EXPECT_FALSE(regression.ValidRecord(2));
    EXPECT_TRUE(regression.ValidRecord(0)) << "nothing is asked then";
}

TEST_F(Loading, ValidRecordStopsAtTheFirstThatRefuses)
{
    fill("y a", {{1, null}, {2, 3}});
    regression.SetcVarArrays(control("None", "a"));
    regression.SetcVarArrays(control("None", "no field"));
    EXPECT_FALSE(regression.ValidRecord(2));
    regression.Next();
    EXPECT_THROW((void)regression.ValidRecord(2), EDatabaseError);
    EXPECT_TRUE(regression.ValidRecord(1)) << "only the first one is asked";
}

// No control variable, too few records, data that does not vary.

TYPED_TEST(LoadingForms, WithoutControlsOnlyTheResponseIsRead)
{
    this->fill("y a", {{3, 1}, {null, 2}, {5, null}, {8, 4}});
    this->regression.SetResponse(response("None", "y"));
    EXPECT_TRUE(this->regression.ReLoad());
    EXPECT_EQ(this->regression.GetNumVars(), 0);
    EXPECT_EQ(this->y(), (std::vector<double>{3, 5, 8}));
    EXPECT_EQ(this->regression.GetDOF(), 2);
    EXPECT_TRUE(this->regression.ValidRecord(0));
}

TYPED_TEST(LoadingForms, FewerRecordsThanParametersAreToldAndLoadedAllTheSame)
{
    this->fill("y a b c", {{1, 2, 3, 4}, {5, 6, 8, 9}, {4, 4, 2, 1}});
    define(this->regression, "a b c");
    EXPECT_TRUE(this->regression.ReLoad());
    EXPECT_EQ(this->messages.shown, std::vector<Message>{dofMessage()}) << "whatever ShowWarnings says";
    EXPECT_EQ(this->regression.GetDOF(), 0);
    EXPECT_EQ(this->regression.GetNumObs(), 3);
}

TEST_F(Loading, AsManyRecordsAsParametersLeaveNoDegreesOfFreedomSilently)
{
    fill("y a b c", {{1, 2, 3, 4}, {5, 6, 8, 9}, {4, 4, 2, 1}, {6, 5, 5, 2}});
    define(regression, "a b c");
    regression.SetShowWarnings(true);
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(messages.shown, std::vector<Message>());
    EXPECT_EQ(regression.GetDOF(), 0);
}

TEST_F(Loading, OneRecordMoreGivesOneDegreeOfFreedom)
{
    fill("y a b c", {{1, 2, 3, 4}, {5, 6, 8, 9}, {4, 4, 2, 1}, {6, 5, 5, 2}, {7, 7, 7, 3}});
    define(regression, "a b c");
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetDOF(), 1);
}

TEST_F(Loading, WithoutAUsableRecordNothingIsLoaded)
{
    fill("y a", {{null, 1}, {2, null}});
    define(regression, "a");
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_FALSE(regression.Loaded());
    EXPECT_EQ(regression.GetNumObs(), 0);
    EXPECT_EQ(regression.GetDOF(), 0);
    EXPECT_EQ(regression.RecordsRead(), 2);
    EXPECT_EQ(messages.shown, std::vector<Message>{dofMessage()}) << "the columns are not looked at";
}

TEST_F(Loading, AnEmptyDatasetIsNotLoaded)
{
    fill("y a", {});
    define(regression, "a");
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(regression.RecordsRead(), 0);
    EXPECT_EQ(messages.shown, std::vector<Message>{dofMessage()});
    EXPECT_FALSE(regression.ControlsDisabled());
}

TEST_F(Loading, ASingleRecordDoesNotVary)
{
    fill("y a", {{3, 5}});
    define(regression, "a");
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(messages.shown, (std::vector<Message>{dofMessage(), invariantMessage()}));
    EXPECT_EQ(regression.GetNumObs(), 1);
    messages.shown.clear();
    regression.SetControl(1, TIndepVar());
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(messages.shown, std::vector<Message>{invariantMessage()}) << "n = m + 1";
}

TYPED_TEST(LoadingForms, AConstantResponseIsRefusedHoweverTheColumnsVary)
{
    this->fill("y a", {{4, 2}, {4, 3}, {4, 6}});
    define(this->regression, "a");
    EXPECT_FALSE(this->regression.ReLoad());
    EXPECT_FALSE(this->regression.Loaded());
    EXPECT_EQ(this->messages.shown, std::vector<Message>{invariantMessage()}) << "whatever ShowWarnings says";
    EXPECT_EQ(this->regression.GetNumObs(), 3);
    EXPECT_EQ(this->regression.GetDOF(), 1);
}

TEST_F(Loading, AConstantResponseKeepsTheColumnsFromBeingExamined)
{
    fill("y a", {{4, 2}, {4, 3}, {4, 6}});
    define(regression, "a");
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(regression.GetyMax(), 4);
    EXPECT_EQ(regression.GetxMax(1), 0) << "as it was constructed";
}

TEST_F(Loading, AConstantColumnIsRefusedWithOneMessage)
{
    fill("y a b c", {{1, 2, 5, 7}, {2, 3, 5, 7}, {3, 6, 5, 7}, {4, 6, 5, 7}});
    define(regression, "a b c");
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(messages.shown, std::vector<Message>{invariantMessage()});
    messages.shown.clear();
    define(regression, "a");
    regression.SetControl(2, TIndepVar());
    regression.SetControl(3, TIndepVar());
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(messages.shown, std::vector<Message>());
}

TEST_F(Loading, ARangeBelowTheToleranceDoesNotVary)
{
    fill("y a b c d", {{0, 0, 0, 0, 0}, {2e-20, 9.9e-21, 1.01e-20, -9.9e-21, 1}});
    define(regression, "b");
    EXPECT_TRUE(regression.ReLoad());
    define(regression, "a");
    EXPECT_FALSE(regression.ReLoad());
    define(regression, "c");
    EXPECT_FALSE(regression.ReLoad());
    define(regression, "d", "a");
    EXPECT_FALSE(regression.ReLoad());
    define(regression, "d", "b");
    EXPECT_TRUE(regression.ReLoad());
}

TEST_F(Loading, ARangeOfTheToleranceVaries)
{
    fill("y a", {{0, 0}, {1e-20, 1e-20}});
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
}

TEST_F(Loading, TheWarningComesBeforeTheOtherMessages)
{
    fill("y a", 2501, [](int) { return Row{null, 1}; });
    define(regression, "a");
    regression.SetShowWarnings(true);
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(messages.shown, (std::vector<Message>{overLimit(true, 2501), dofMessage()}));
}

TEST_F(Loading, ExtremesAreThoseOfTheObservations)
{
    fill("y a b", {{3, -1, 5}, {9, -7, 2}, {null, 100, 100}, {-2, -3, 8}, {4, -1, 8}});
    define(regression, "a b");
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetyMax(), 9);
    EXPECT_EQ(regression.GetyMin(), -2);
    EXPECT_EQ(regression.GetxMax(1), -1);
    EXPECT_EQ(regression.GetxMin(1), -7);
    EXPECT_EQ(regression.GetxMax(2), 8);
    EXPECT_EQ(regression.GetxMin(2), 2);
}

TEST_F(Loading, ANaNIsPassedOverByTheExtremesUnlessItIsTheFirst)
{
    fill("y a b c d", {{1, 1, 1, 0, 0}, {2, 0, 0, 3, 1}, {3, 4, 1, 9, 3}});
    regression.SetResponse(response("None", "y"));
    regression.SetControl(1, control("Quotient", "a", "b"));
    regression.SetControl(2, control("Quotient", "c", "d"));
    EXPECT_TRUE(regression.ReLoad()) << "a NaN is not below the tolerance";
    EXPECT_EQ(regression.GetxMax(1), 4);
    EXPECT_EQ(regression.GetxMin(1), 1);
    EXPECT_TRUE(std::isnan(regression.GetxMax(2)));
    EXPECT_TRUE(std::isnan(regression.GetxMin(2)));
}
