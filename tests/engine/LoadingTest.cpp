#include "present/Loadgage.h"
#include "support/Regressions.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <cmath>
#include <limits>

namespace {

/// What a load tells about its progress, call by call, instead of a window.
struct ProgressLog
{
    QStringList calls;
    bool shown = false;
    bool stopped = false;
    int made = 0;
    int alive = 0;
    /// What happens when it is shown ("show") and at every text from then on.
    std::function<void(const QString &)> meanwhile;
};

class RecordedProgress : public LoadProgress
{
public:
    explicit RecordedProgress(ProgressLog &log) : log_(log)
    {
        ++log_.made;
        ++log_.alive;
        log_.shown = false;
    }
    ~RecordedProgress() override { --log_.alive; }

    void Show() override
    {
        log_.shown = true;
        Call(text("show"));
    }
    bool Shown() const override { return log_.shown; }
    void SetGaugeProgress(unsigned short progress) override { log_.calls.append(QString::number(progress)); }
    void SetGaugeText(const QString &status) override { Call(status); }
    bool Stopped() const override { return log_.stopped; }

private:
    void Call(const QString &call)
    {
        log_.calls.append(call);
        if (log_.meanwhile && log_.shown)
            log_.meanwhile(call);
    }

    ProgressLog &log_;
};

template <class Component>
class Watched : public Component
{
public:
    ProgressLog log;

protected:
    std::unique_ptr<LoadProgress> MakeLoadProgress() override { return std::make_unique<RecordedProgress>(log); }
};

template <class Component>
class LoadingForms : public RegressionOver<Component>
{
};
using Components = testing::Types<TMLRTable, TMLRQuery>;
struct ComponentNames
{
    template <class Component>
    static std::string GetName(int)
    {
        return std::is_same_v<Component, TMLRTable> ? "Table" : "Query";
    }
};
TYPED_TEST_SUITE(LoadingForms, Components, ComponentNames);

using Loading = RegressionOver<TMLRTable>;
using LoadProgressTold = RegressionOver<Watched<TMLRTable>>;
using LoadProgressShown = RegressionOver<TMLRTable>;
using DuringALoad = RegressionOver<Watched<TMLRTable>>;

Row numbered(int i)
{
    return {double(i), double(i % 7)};
}

Message overLimit(bool table, int records)
{
    const QString count = QString::number(records);
    return {table ? text("Brevant analyzes a maximum of 2500\n\rrecords. There are ") + count +
                        text(" records in\n\rin your dataset. You can use table filters\n\rto limit the number of "
                             "eligible records.\n\r\n\rLoading the first 2500 records...")
                  : text("Brevant analyzes a maximum of 2500\n\rRecords. There are ") + count +
                        text(" records\n\rrecords in your dataset. You can make\n\ryour query more specific to limit "
                             "the\n\rnumber of records returned.\n\r\n\rLoading the first 2500 records..."),
            TMsgDlgType::mtWarning, mbOK, 0};
}

QString recordsLoaded(int n)
{
    return QStringLiteral("Records Loaded: %1").arg(n);
}

} // namespace

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

// Progress.

TEST_F(LoadProgressTold, IsFedRecordByRecordWhereItIsShown)
{
    fill("y a", {{1, 2}, {null, 3}, {4, 4}, {5, 1}, {5, null}, {6, 2}});
    define(regression, "a");
    regression.SetShowLoadProgress(true);
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(
        regression.log.calls.join(u'|'),
        text("0|Records Loaded: 0|show|16|Records Loaded: 1|33|Records Loaded: 2|50|Records Loaded: 3|66|Records "
             "Loaded: 4"));
    EXPECT_EQ(regression.log.made, 1);
    EXPECT_EQ(regression.log.alive, 0);
}

TEST_F(LoadProgressTold, IsMadeButNotShownWhereProgressIsOff)
{
    fill("y a", {{1, 2}, {2, 3}, {4, 4}});
    define(regression, "a");
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.log.made, 1);
    EXPECT_EQ(regression.log.alive, 0);
    EXPECT_FALSE(regression.log.calls.contains(text("show")));
}

TEST_F(LoadProgressTold, ReachesAHundredOfTheDatasetNotOfTheLimit)
{
    fill("y a", 3000, numbered);
    define(regression, "a");
    regression.SetShowLoadProgress(true);
    EXPECT_TRUE(regression.ReLoad());
    ASSERT_GE(regression.log.calls.size(), 2);
    EXPECT_EQ(regression.log.calls[regression.log.calls.size() - 2], text("83"));
    EXPECT_EQ(regression.log.calls.last(), recordsLoaded(2500));
}

TEST_F(LoadProgressTold, IsMadeBeforeTheWarningAndThereAtTheMessages)
{
    fill("y a", 2501, [](int) { return Row{1, 1}; });
    define(regression, "a");
    regression.SetShowWarnings(true);
    std::vector<int> alive;
    messages.meanwhile = [&] { alive.push_back(regression.log.alive); };
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(alive, (std::vector<int>{1, 1}));
    EXPECT_EQ(regression.log.alive, 0);
}

TEST_F(LoadProgressTold, IsFreedWhenAnErrorPassesThrough)
{
    fill("y a", {{1, 2}, {2, 3}});
    define(regression, "b");
    EXPECT_THROW(regression.ReLoad(), EDatabaseError);
    EXPECT_EQ(regression.log.made, 1);
    EXPECT_EQ(regression.log.alive, 0);
}

TEST_F(LoadProgressTold, StoppingEndsTheLoadAsNotLoaded)
{
    fill("y a", 100, numbered);
    define(regression, "a");
    regression.SetShowLoadProgress(true);
    regression.log.meanwhile = [&](const QString &status) {
        if (status == recordsLoaded(40))
            regression.log.stopped = true;
    };
    QSignalSpy ended(&regression, &TMLRTable::LoadEnded);
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_FALSE(regression.Loaded());
    EXPECT_TRUE(regression.LoadStopped());
    EXPECT_LT(regression.RecordsRead(), 100);
    EXPECT_FALSE(regression.log.calls.contains(recordsLoaded(42))) << "ends at once";
    EXPECT_FALSE(regression.ControlsDisabled());
    EXPECT_EQ(regression.log.alive, 0);
    EXPECT_EQ(messages.shown, std::vector<Message>());
    ASSERT_EQ(ended.size(), 1);
    EXPECT_FALSE(ended[0][0].toBool());
    regression.Execute();
    EXPECT_FALSE(regression.Computed());

    regression.log.stopped = false;
    regression.log.meanwhile = nullptr;
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_FALSE(regression.LoadStopped());
    EXPECT_EQ(regression.GetNumObs(), 100);
}

TEST_F(LoadProgressShown, NoWindowIsMadeWhereProgressIsOff)
{
    fill("y a", 2501, [](int) { return Row{1, 1}; });
    define(regression, "a");
    const qsizetype before = QApplication::allWidgets().size();
    regression.SetShowWarnings(true);
    bool checked = false;
    messages.meanwhile = [&] {
        checked = true;
        ASSERT_NE(MLRGaugeDlg, nullptr) << "created in any case";
        EXPECT_EQ(MLRGaugeDlg->Window(), nullptr);
    };
    regression.ReLoad();
    EXPECT_TRUE(checked);
    EXPECT_EQ(QApplication::allWidgets().size(), before);
    EXPECT_EQ(MLRGaugeDlg, nullptr);
}

TEST_F(LoadProgressShown, NoEventsRunWhereProgressIsOff)
{
    fill("y a", 2500, numbered);
    define(regression, "a");
    bool ran = false;
    QTimer::singleShot(0, [&] { ran = true; });
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_FALSE(ran);
}

TEST_F(LoadProgressShown, TheDialogIsOnTheScreenAndGoneAfterwards)
{
    fill("y a", 300, [](int i) { return Row{1, double(i)}; });
    define(regression, "a");
    regression.SetShowLoadProgress(true);
    QString status;
    bool visible = false;
    QTimer::singleShot(0, [&] {
        visible = MLRGaugeDlg != nullptr && MLRGaugeDlg->Window() != nullptr && MLRGaugeDlg->Window()->isVisible();
        if (visible)
            status = MLRGaugeDlg->Window()->findChild<QLabel *>(text("Panel1"))->text();
    });
    QString last;
    messages.meanwhile = [&] { last = MLRGaugeDlg->Window()->findChild<QLabel *>(text("Panel1"))->text(); };
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_TRUE(visible);
    EXPECT_EQ(status, recordsLoaded(0)) << "its text stands when it appears";
    EXPECT_EQ(last, recordsLoaded(300));
    EXPECT_EQ(MLRGaugeDlg, nullptr);
    for (const QWidget *window : QApplication::topLevelWidgets())
        EXPECT_FALSE(window->isVisible());
}

TEST_F(LoadProgressShown, EscapeAtTheLastRecordEndsTheLoadAsNotLoaded)
{
    fill("y a", 3, numbered);
    define(regression, "a");
    regression.SetShowLoadProgress(true);
    QTimer shown;
    QObject::connect(&shown, &QTimer::timeout, [] {
        if (MLRGaugeDlg != nullptr && MLRGaugeDlg->Window() != nullptr &&
            MLRGaugeDlg->Window()->findChild<QLabel *>(text("Panel1"))->text() == recordsLoaded(2))
            QTest::keyClick(MLRGaugeDlg->Window(), Qt::Key_Escape);
    });
    shown.start(0);
    EXPECT_FALSE(regression.ReLoad()) << "100 percent are painted, and events run";
    EXPECT_TRUE(regression.LoadStopped());
}

TEST_F(LoadProgressShown, EscapeEndsTheLoadAsNotLoaded)
{
    fill("y a", 2500, numbered);
    define(regression, "a");
    regression.SetShowLoadProgress(true);
    QTimer::singleShot(0, [] { QTest::keyClick(MLRGaugeDlg->Window(), Qt::Key_Escape); });
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_FALSE(regression.Loaded());
    EXPECT_TRUE(regression.LoadStopped());
    EXPECT_EQ(regression.RecordsRead(), 0);
    EXPECT_FALSE(regression.ControlsDisabled());
    EXPECT_EQ(MLRGaugeDlg, nullptr);
    EXPECT_EQ(messages.shown, std::vector<Message>());
    regression.SetShowLoadProgress(false);
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_FALSE(regression.LoadStopped());
    EXPECT_EQ(regression.GetNumObs(), 2500);
}

// What the application does while a load shows its progress.

TEST_F(DuringALoad, CallsFromElsewhereAreRefused)
{
    fill("y a", 20, numbered);
    define(regression, "a");
    regression.SetShowLoadProgress(true);
    int asked = 0;
    regression.log.meanwhile = [&](const QString &status) {
        if (status != recordsLoaded(10))
            return;
        ++asked;
        EXPECT_THROW(regression.ReLoad(), EDatabaseError);
        EXPECT_THROW(regression.LoadValues(), EDatabaseError);
        EXPECT_THROW(regression.ComputexBar(), EDatabaseError) << "it would load";
        EXPECT_THROW(regression.Execute(), EDatabaseError);
        EXPECT_THROW(regression.SetControl(1, TIndepVar()), EDatabaseError);
        EXPECT_THROW(regression.SetControl3(TIndepVar()), EDatabaseError);
        EXPECT_THROW(regression.SetResponse(TDependentVar()), EDatabaseError);
        EXPECT_THROW(regression.SetControlVar01Strings({}), EDatabaseError);
        EXPECT_THROW(regression.setProperty("ResponseVarY", QStringList()), EDatabaseError);
    };
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(regression.GetNumObs(), 20);
    EXPECT_EQ(regression.ControlVar(1).Field1(), text("a"));
    EXPECT_NO_THROW(regression.SetControl(1, control("None", "a")));
    EXPECT_TRUE(regression.ReLoad()) << "free again";
}

TEST_F(DuringALoad, WhatIsRefusedSaysWhy)
{
    fill("y a", 20, numbered);
    define(regression, "a");
    regression.SetShowLoadProgress(true);
    QString message;
    regression.log.meanwhile = [&](const QString &) {
        try {
            regression.ReLoad();
        } catch (const EDatabaseError &error) {
            message = error.Message();
        }
    };
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_TRUE(message.contains(text("data"))) << message.toStdString();
}

TEST_F(DuringALoad, APropertyWriteThroughTheMetaObjectIsRefused)
{
    fill("y a", 20, numbered);
    define(regression, "a");
    regression.SetShowLoadProgress(true);
    int written = 0;
    regression.log.meanwhile = [&](const QString &) {
        try {
            regression.setProperty("ControlVar01", QStringList());
        } catch (const EDatabaseError &) {
            ++written;
        }
    };
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(written, 21);
    EXPECT_EQ(regression.ControlVar(1).Field1(), text("a"));
}

TEST_F(DuringALoad, ATimerThatLoadsAgainIsRefused)
{
    fill("y a", 2500, numbered);
    TMLRTable real;
    bind(real, *db, "data");
    define(real, "a");
    real.SetShowLoadProgress(true);
    int refused = 0;
    QTimer::singleShot(0, [&] {
        try {
            real.ReLoad();
        } catch (const EDatabaseError &) {
            ++refused;
        }
        try {
            real.Execute();
        } catch (const EDatabaseError &) {
            ++refused;
        }
        try {
            real.SetControl(1, TIndepVar());
        } catch (const EDatabaseError &) {
            ++refused;
        }
    });
    EXPECT_TRUE(real.ReLoad());
    EXPECT_EQ(refused, 3);
    EXPECT_EQ(real.GetNumObs(), 2500);
}

TEST_F(DuringALoad, AnotherComponentCanLoad)
{
    fill("y a", 20, numbered);
    define(regression, "a");
    regression.SetShowLoadProgress(true);
    TMLRTable other;
    bind(other, *db, "data");
    define(other, "a");
    regression.log.meanwhile = [&](const QString &status) {
        if (status == recordsLoaded(5)) {
            EXPECT_TRUE(other.ReLoad());
            other.Execute();
        }
    };
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetNumObs(), 20);
    EXPECT_EQ(other.GetNumObs(), 20);
    EXPECT_TRUE(other.Computed());
}

TEST_F(DuringALoad, ClosingAndReadingAnewAreRefused)
{
    fill("y a", 20, numbered);
    define(regression, "a");
    regression.SetShowLoadProgress(true);
    const std::function<void()> changes[] = {[this] { regression.Close(); }, [this] { regression.Refresh(); },
                                             [this] { regression.SetFilter(text("y > 3")); },
                                             [this] { regression.SetTableName(text("other")); },
                                             [this] { regression.SetDatabaseName(text("other.db")); }};
    for (const std::function<void()> &change : changes) {
        for (const QString &when : {text("show"), recordsLoaded(5), recordsLoaded(20)}) {
            int refused = 0;
            regression.log.meanwhile = [&](const QString &status) {
                if (status != when)
                    return;
                EXPECT_THROW(change(), EDatabaseError);
                ++refused;
            };
            EXPECT_TRUE(regression.ReLoad()) << when.toStdString();
            EXPECT_EQ(refused, 1);
            EXPECT_EQ(regression.GetNumObs(), 20);
            EXPECT_EQ(regression.TableName(), text("data"));
            EXPECT_TRUE(regression.Filter().isEmpty());
            EXPECT_FALSE(regression.ControlsDisabled());
        }
    }
    regression.log.meanwhile = nullptr;
    regression.Close();
    EXPECT_FALSE(regression.Active()) << "afterwards it can be closed";
}

TEST_F(DuringALoad, DestroyingTheComponentEndsTheLoad)
{
    makeTable(*db, "data", "y a", std::vector<Row>(50, Row{1, 2}));
    TMLRTable *mortal = new TMLRTable;
    bind(*mortal, *db, "data");
    define(*mortal, "a");
    mortal->SetShowLoadProgress(true);
    QPointer<TMLRTable> alive = mortal;
    // The real dialog runs the application's events while it is shown.
    QTimer::singleShot(0, [mortal] { delete mortal; });
    EXPECT_FALSE(mortal->ReLoad());
    EXPECT_TRUE(alive.isNull());
    EXPECT_EQ(MLRGaugeDlg, nullptr);
    EXPECT_EQ(messages.shown, std::vector<Message>()) << "a load that has no component tells nothing";
}

namespace {

/// A progress that outlives its component: what a real dialog does, at any record that the test chooses.
class Watching : public TMLRTable
{
public:
    explicit Watching(std::shared_ptr<ProgressLog> log) : log_(std::move(log)) {}

protected:
    std::unique_ptr<LoadProgress> MakeLoadProgress() override
    {
        struct Shared : RecordedProgress
        {
            explicit Shared(std::shared_ptr<ProgressLog> log) : RecordedProgress(*log), log_(std::move(log)) {}
            std::shared_ptr<ProgressLog> log_;
        };
        return std::make_unique<Shared>(log_);
    }

private:
    std::shared_ptr<ProgressLog> log_;
};

} // namespace

TEST_F(DuringALoad, DestroyingTheComponentAtAnyRecordEndsTheLoad)
{
    makeTable(*db, "data", "y a", {{1, 2}, {2, 3}, {4, 4}, {5, 1}});
    for (const QString &when : {text("show"), recordsLoaded(1), recordsLoaded(2), recordsLoaded(4)}) {
        auto log = std::make_shared<ProgressLog>();
        Watching *mortal = new Watching(log);
        bind(*mortal, *db, "data");
        define(*mortal, "a");
        mortal->SetShowLoadProgress(true);
        log->meanwhile = [mortal, when](const QString &status) {
            if (status == when)
                delete mortal;
        };
        EXPECT_FALSE(mortal->ReLoad()) << when.toStdString();
        EXPECT_EQ(log->calls.last(), when);
        EXPECT_EQ(log->alive, 0);
    }
}

TEST_F(DuringALoad, DestroyingTheComponentEndsAStepThatLoads)
{
    makeTable(*db, "data", "y a", {{1, 2}, {2, 3}, {4, 4}, {5, 1}});
    auto log = std::make_shared<ProgressLog>();
    Watching *mortal = new Watching(log);
    bind(*mortal, *db, "data");
    define(*mortal, "a");
    mortal->SetShowLoadProgress(true);
    log->meanwhile = [mortal](const QString &status) {
        if (status == recordsLoaded(2))
            delete mortal;
    };
    EXPECT_NO_THROW(mortal->ComputexBar());
    EXPECT_EQ(log->alive, 0);
}

TEST_F(DuringALoad, DestroyingTheComponentInsideAMessageEndsTheLoad)
{
    makeTable(*db, "many", "y a", std::vector<Row>(2501, Row{1, 2}));
    makeTable(*db, "few", "y a", {{1, 2}});
    makeTable(*db, "constant", "y a", {{1, 2}, {1, 3}, {1, 4}});
    for (const char *table : {"many", "few", "constant"}) {
        for (const bool shown : {false, true}) {
            TMLRTable *mortal = new TMLRTable;
            bind(*mortal, *db, table);
            define(*mortal, "a");
            mortal->SetShowWarnings(true);
            mortal->SetShowLoadProgress(shown);
            messages.shown.clear();
            messages.meanwhile = [mortal] { delete mortal; };
            EXPECT_FALSE(mortal->ReLoad()) << table;
            EXPECT_EQ(messages.shown.size(), 1u) << table;
            EXPECT_EQ(MLRGaugeDlg, nullptr);
        }
    }
}

TEST_F(DuringALoad, DestroyingTheComponentInsideAMessageEndsAStep)
{
    makeTable(*db, "many", "y a", std::vector<Row>(2501, Row{1, 2}));
    TMLRTable *mortal = new TMLRTable;
    bind(*mortal, *db, "many");
    define(*mortal, "a");
    mortal->SetShowWarnings(true);
    messages.meanwhile = [&mortal] { delete mortal; };
    EXPECT_NO_THROW(mortal->CheckDataCount());

    mortal = new TMLRTable;
    mortal->SetShowWarnings(true);
    EXPECT_NO_THROW(mortal->Execute());
    mortal = new TMLRTable;
    EXPECT_TRUE(mortal->InvariantCol());
    EXPECT_EQ(messages.shown.size(), 3u);
}

TEST_F(DuringALoad, AMessageDuringALoadRefusesCallsToo)
{
    fill("y a", {{1, 2}, {1, 3}, {1, 4}});
    define(regression, "a");
    int asked = 0;
    messages.meanwhile = [&] {
        ++asked;
        EXPECT_THROW(regression.ReLoad(), EDatabaseError);
        EXPECT_THROW(regression.Execute(), EDatabaseError);
        EXPECT_THROW(regression.SetControl(1, TIndepVar()), EDatabaseError);
    };
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(asked, 1);
}

TEST_F(DuringALoad, AnErrorOfAnEventHandlerPassesThroughAndFreesTheComponent)
{
    fill("y a", 20, numbered);
    define(regression, "a");
    regression.SetShowLoadProgress(true);
    regression.log.meanwhile = [&](const QString &) { throw EDatabaseError(text("asked, and there")); };
    EXPECT_THROW(regression.ReLoad(), EDatabaseError);
    EXPECT_EQ(regression.log.alive, 0);
    EXPECT_FALSE(regression.ControlsDisabled());
    regression.log.meanwhile = nullptr;
    EXPECT_TRUE(regression.ReLoad());
}
