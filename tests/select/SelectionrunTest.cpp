// SPDX-License-Identifier: MIT
#include "select/Selections.h"
#include "select/Told.h"

#include "platform/Formats.h"
#include "present/Optgauge.h"

#include <QApplication>
#include <QDialog>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

namespace {

/// The table is an object of its own here, as some of the tests destroy it, and the search too.
template <class Search>
class Run : public testing::Test
{
protected:
    Run()
    {
        makeTable(*db, "data", "y a b c d", cement());
        table->SetName(text("Fit"));
        bind(*table, *db, "data");
        define(*table, "a b c d");
        table->ReLoad();
        table->Execute();
        search->SetTable(table.get());
        if constexpr (!std::is_same_v<Search, TOptimizeMLR>)
            search->SetShowProgress(true);
        QObject::connect(table.get(), &TMLRTable::Fitted, table.get(), [this] {
            if (++fits == atFit)
                then();
        });
        fits = 0;
    }

    /// Does something when so many models were fitted.
    void whenFitted(int count, std::function<void()> what)
    {
        atFit = count;
        then = std::move(what);
    }
    static void pressEscape()
    {
        QWidget *const dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        QTest::keyClick(dialog, Qt::Key_Escape);
    }
    void expectAsBefore()
    {
        for (int k = 1; k <= MaxControls; ++k)
            EXPECT_EQ(table->ControlVar(k).ToQStringList(), controls[std::size_t(k - 1)]);
        EXPECT_FALSE(table->ShowLoadProgress());
        EXPECT_TRUE(table->ShowWarnings());
        EXPECT_FALSE(table->ControlsDisabled());
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
        EXPECT_EQ(GaugeDlg, nullptr);
        EXPECT_FALSE(search->Running());
        EXPECT_NO_THROW(table->RefuseWhileBusy());
    }
    void SetUp() override
    {
        table->SetShowWarnings(true);
        for (int k = 1; k <= MaxControls; ++k)
            controls.push_back(table->ControlVar(k).ToQStringList());
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    Messages messages;
    std::unique_ptr<TMLRTable> table = std::make_unique<TMLRTable>();
    std::unique_ptr<Search> search = std::make_unique<Search>();
    std::vector<QStringList> controls;
    int fits = 0;
    int atFit = -1;
    std::function<void()> then;
};

using AllSearches = testing::Types<TOptimizeMLR, TStepWiseMLR, TBackElimMLR, TFwdSelectMLR>;
TYPED_TEST_SUITE(Run, AllSearches);

} // namespace

TYPED_TEST(Run, LeavesFlagsCursorAndControlsAsTheyWere)
{
    this->search->Run();
    EXPECT_FALSE(this->table->ShowLoadProgress());
    EXPECT_TRUE(this->table->ShowWarnings());
    EXPECT_FALSE(this->table->ControlsDisabled());
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(GaugeDlg, nullptr);
    EXPECT_FALSE(this->search->Running());
}

TYPED_TEST(Run, ShowsNothingOfTheLoadsAndDisablesTheControls)
{
    this->table->SetShowLoadProgress(true);
    bool seen = false;
    this->whenFitted(3, [&] {
        seen = true;
        EXPECT_FALSE(this->table->ShowLoadProgress());
        EXPECT_FALSE(this->table->ShowWarnings());
        EXPECT_TRUE(this->table->ControlsDisabled());
        EXPECT_TRUE(this->search->Running());
        EXPECT_TRUE(GaugeDlg->Shown());
        EXPECT_TRUE(GaugeDlg->Window()->isModal());
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    });
    this->search->Run();
    EXPECT_TRUE(seen);
    EXPECT_TRUE(this->table->ShowLoadProgress());
}

TYPED_TEST(Run, TellsThatItHasEndedWhenAllIsBackInPlace)
{
    int finished = 0;
    QObject::connect(this->search.get(), &TCorvane::Finished, [&] {
        ++finished;
        EXPECT_FALSE(this->search->Running());
        EXPECT_TRUE(this->table->ShowWarnings());
        EXPECT_FALSE(this->table->ControlsDisabled());
        EXPECT_FALSE(this->search->Report().isEmpty());
    });
    this->search->Run();
    EXPECT_EQ(finished, 1);
}

TYPED_TEST(Run, EscapeEndsItAtTheNextCandidate)
{
    this->whenFitted(2, &Run<TypeParam>::pressEscape);
    Trace trace;
    int finished = 0;
    QObject::connect(this->search.get(), &TCorvane::Finished, [&] { ++finished; });
    this->table->SetDescription(text("Cement"));
    this->search->Run();
    EXPECT_EQ(this->fits, 3) << "two candidates, and the model as it was before";
    EXPECT_EQ(this->search->Ended(), TRunEnd::Stopped);
    EXPECT_EQ(this->search->Report(), text("CORVANE OUTPUT REPORT\n\rCement\n\r\n\rStopped by the user."));
    EXPECT_EQ(trace.lines.last(), text("end reason=stopped passes=1 controls=4"));
    EXPECT_EQ(finished, 1);
    this->expectAsBefore();
    EXPECT_TRUE(this->table->ResultsCurrent());
    EXPECT_EQ(this->table->GetNumVars(), 4);
    if constexpr (std::is_same_v<TypeParam, TOptimizeMLR>) {
        ASSERT_EQ(this->messages.shown.size(), 1U);
        EXPECT_EQ(this->messages.shown[0].text, this->search->Report());
    } else {
        EXPECT_TRUE(this->messages.shown.empty()) << "ShowReport is off";
    }
}

TYPED_TEST(Run, CanBeRunAgainAfterAStop)
{
    this->whenFitted(2, &Run<TypeParam>::pressEscape);
    this->search->Run();
    this->search->Run();
    EXPECT_EQ(this->search->Ended(), TRunEnd::Converged);
    EXPECT_TRUE(this->search->Report().contains(text("Processing Time: ")));
}

TYPED_TEST(Run, NothingElseMayTouchTheTwoMeanwhile)
{
    TFwdSelectMLR other;
    other.SetTable(this->table.get());
    int refused = 0;
    const auto refuses = [&](const std::function<void()> &what) {
        try {
            what();
            ADD_FAILURE() << "done";
        } catch (const EDatabaseError &) {
            ++refused;
        }
    };
    this->whenFitted(3, [&] {
        const QStringList definition = this->table->ControlVar(1).ToQStringList();
        refuses([&] { this->search->Run(); });
        refuses([&] { other.Run(); });
        refuses([&] { this->table->ReLoad(); });
        refuses([&] { this->table->Execute(); });
        refuses([&] { this->table->Close(); });
        refuses([&] { this->table->Refresh(); });
        refuses([&] { this->table->SetTableName(text("other")); });
        refuses([&] { this->table->SetControl(1, TIndepVar()); });
        refuses([&] { this->table->SetResponse(TDependentVar()); });
        refuses([&] { this->table->SetShowWarnings(true); });
        refuses([&] { this->table->SetShowLoadProgress(true); });
        refuses([&] { this->search->SetDataset(text("Fit")); });
        refuses([&] { this->search->SetTable(nullptr); });
        refuses([&] { this->search->SetQuery(nullptr); });
        EXPECT_EQ(this->table->ControlVar(1).ToQStringList(), definition);
        if constexpr (std::is_same_v<TypeParam, TOptimizeMLR>) {
            refuses([&] { this->search->SetModelsToSave(3); });
            refuses([&] { this->search->SetOptCriteria(TOptimizationType::MaxFValue); });
            refuses([&] { this->search->SetModel(1); });
            refuses([&] { this->search->SetModelList(1, {}); });
        } else {
            refuses([&] { this->search->SetFDistTable(nullptr); });
            refuses([&] { this->search->SetFDistTableName({}); });
            refuses([&] { this->search->SetShowReport(true); });
            refuses([&] { this->search->SetShowProgress(true); });
        }
    });
    this->search->Run();
    EXPECT_EQ(refused, 18);
    EXPECT_EQ(this->search->Ended(), TRunEnd::Converged);
}

TYPED_TEST(Run, OfATableThatIsBeingLoadedIsRefused)
{
    TRegression::Series series(*this->table);
    EXPECT_THROW(this->search->Run(), EDatabaseError);
    EXPECT_FALSE(this->search->Running());
}

TYPED_TEST(Run, AnErrorThatPassesThroughLeavesEverythingAsItWas)
{
    // The field is gone when the definition is next used.
    this->table->ControlVar(4).SetField1(text("gone"));
    this->controls[3] = this->table->ControlVar(4).ToQStringList();
    int finished = 0;
    QObject::connect(this->search.get(), &TCorvane::Finished, [&] { ++finished; });
    EXPECT_THROW(this->search->Run(), EDatabaseError);
    this->expectAsBefore();
    EXPECT_EQ(finished, 0);
    EXPECT_EQ(this->search->Report(), QString());
    EXPECT_FALSE(this->table->Loaded()) << "the model as it was cannot be loaded either";
    EXPECT_FALSE(this->table->Computed());
}

TYPED_TEST(Run, AnErrorOfAHandlerLeavesTheModelOfBeforeFitted)
{
    this->whenFitted(3, [] { throw EConvertError(QStringLiteral("a handler's own")); });
    EXPECT_THROW(this->search->Run(), EConvertError);
    this->expectAsBefore();
    EXPECT_TRUE(this->table->ResultsCurrent());
    EXPECT_EQ(this->table->GetNumVars(), 4);
}

TYPED_TEST(Run, DestroyingTheRegressionEndsIt)
{
    this->whenFitted(3, [&] { this->table.reset(); });
    this->search->Run();
    EXPECT_EQ(this->table, nullptr);
    EXPECT_FALSE(this->search->Running());
    EXPECT_EQ(this->search->Regression(), nullptr);
    EXPECT_EQ(this->search->Ended(), TRunEnd::Stopped);
    EXPECT_EQ(GaugeDlg, nullptr);
    EXPECT_THROW(this->search->Run(), EDatabaseError);
}

TYPED_TEST(Run, DestroyingTheSearchEndsItAndGivesTheModelBack)
{
    this->whenFitted(3, [&] { this->search.reset(); });
    this->search->Run();
    EXPECT_EQ(GaugeDlg, nullptr);
    for (int k = 1; k <= 4; ++k)
        EXPECT_EQ(this->table->ControlVar(k).Transformation(), text("None"));
    EXPECT_TRUE(this->table->ResultsCurrent());
    EXPECT_EQ(this->table->GetNumVars(), 4);
    EXPECT_TRUE(this->table->ShowWarnings());
    EXPECT_FALSE(this->table->ControlsDisabled());
    EXPECT_NO_THROW(this->table->RefuseWhileBusy());
}

TYPED_TEST(Run, ATimerMayDestroyEitherWhileTheDialogComes)
{
    // Timers run while the dialog opens and paints.
    QTimer::singleShot(0, [&] { this->table.reset(); });
    this->search->Run();
    EXPECT_EQ(this->table, nullptr);
    EXPECT_FALSE(this->search->Running());

    TMLRTable again;
    bind(again, *this->db, "data");
    define(again, "a b c d");
    again.ReLoad();
    this->search->SetTable(&again);
    QTimer::singleShot(0, [&] { this->search.reset(); });
    this->search->Run();
    EXPECT_EQ(this->search, nullptr);
    EXPECT_EQ(again.GetNumVars(), 4);
    EXPECT_TRUE(again.ResultsCurrent());
}

TYPED_TEST(Run, MayOpenTheTable)
{
    this->table->Close();
    this->table->WishActive(true);
    this->search->Run();
    EXPECT_TRUE(this->table->Active());
    EXPECT_FALSE(this->table->ControlsDisabled());
    EXPECT_EQ(this->search->Ended(), TRunEnd::Converged);
}

TYPED_TEST(Run, OnAClosedTableIsAnErrorAndLeavesTheDefinitions)
{
    this->table->Close();
    this->table->WishActive(false);
    EXPECT_THROW(this->search->Run(), EDatabaseError);
    this->expectAsBefore();
    EXPECT_FALSE(this->table->Loaded());
}

TYPED_TEST(Run, BesideItsReportOthersCanWriteTheDatabase)
{
    // More records than a regression takes, so the scan does not come to its end.
    this->db->exec(text("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 4000) "
                        "INSERT INTO data (y, a, b, c, d) SELECT i % 7, i % 11, i % 13, i % 17, i % 19 FROM n"));
    this->table->Refresh();
    bool written = false;
    this->messages.meanwhile = [&] {
        written = true;
        this->db->exec(text("UPDATE data SET a = a + 1 WHERE id = 3"));
    };
    if constexpr (!std::is_same_v<TypeParam, TOptimizeMLR>)
        this->search->SetShowReport(true);
    this->search->Run();
    EXPECT_TRUE(written);
}

namespace {

using OptimalRun = Run<TOptimizeMLR>;
using StepwiseRun = Run<TStepWiseMLR>;
using ForwardRun = Run<TFwdSelectMLR>;

} // namespace

TEST_F(OptimalRun, TellsItsProgressInWholeSubsets)
{
    define(*table, "a b");
    table->SetControl(3, TIndepVar());
    table->SetControl(4, TIndepVar());
    table->ReLoad();
    Told<TOptimizeMLR> told;
    EXPECT_EQ(
        toldBy(told, *table),
        QStringList({text("show"), text("repaint"), text("(R)^2 = 0.6663,  (s)^2 = 82.3942."), text("50"), text("75"),
                     text("(R)^2 = 0.9787,  (s)^2 = 5.7904."), text("100"), text("close"), text("gone")}));
    EXPECT_TRUE(told.Report().endsWith(text("Processing Time: 01:02:03")));
}

TEST_F(ForwardRun, TellsItsProgressRoundedAndOnlyIfItIsToBeShown)
{
    define(*table, "a b c");
    table->SetControl(4, TIndepVar());
    table->ReLoad();
    Told<TFwdSelectMLR> told;
    const QStringList log = toldBy(told, *table);
    EXPECT_EQ(log.first(4),
              QStringList({text("33"), text("67"), text("100"), text("Adding b Partial F = 21.9606.")}));
    EXPECT_EQ(log.last(2), QStringList({text("close"), text("gone")}));
    EXPECT_TRUE(told.Report().endsWith(text("Processing Time: 01:02:03")));
}

TEST_F(StepwiseRun, CutsItsProgressAndTellsTheReCheckInADialogOfItsOwn)
{
    define(*table, "d a b");
    table->SetControl(4, TIndepVar());
    table->ReLoad();
    Told<TStepWiseMLR> told;
    told.SetFInDefault(3.5);
    told.SetFOutDefault(3);
    told.SetShowProgress(true);
    EXPECT_EQ(toldBy(told, *table), QStringList({text("show"),
                                                 text("repaint"),
                                                 text("33"),
                                                 text("66"),
                                                 text("100"),
                                                 text("Added Variable d"),
                                                 text("33"),
                                                 text("66"),
                                                 text("100"),
                                                 text("Added Variable a"),
                                                 text("show"),
                                                 text("repaint"),
                                                 text("Checking included variables..."),
                                                 text("0"),
                                                 text("50"),
                                                 text("close"),
                                                 text("gone"),
                                                 text("33"),
                                                 text("66"),
                                                 text("100"),
                                                 text("Added Variable b"),
                                                 text("show"),
                                                 text("repaint"),
                                                 text("Checking included variables..."),
                                                 text("0"),
                                                 text("33"),
                                                 text("Removed d."),
                                                 text("50"),
                                                 text("close"),
                                                 text("gone"),
                                                 text("33"),
                                                 text("66"),
                                                 text("100"),
                                                 text("close"),
                                                 text("gone")}));
    EXPECT_EQ(told.Steps(),
              QStringList({text("Added Variable d"), text("Added Variable a"), text("Checking included variables..."),
                           text("Added Variable b"), text("Checking included variables..."), text("Removed d.")}));
    EXPECT_TRUE(told.Report().endsWith(text("Processing Time: 00:00:00"))) << "its own clock";
}

TEST_F(StepwiseRun, ShowsTheReCheckInFrontOfTheFirstDialogAndTakesItAway)
{
    QPointer<QWidget> first;
    int alone = 0;
    int inFront = 0;
    QObject::connect(table.get(), &TMLRTable::Fitted, table.get(), [&] {
        QList<QWidget *> dialogs;
        for (QWidget *shown : QApplication::topLevelWidgets()) {
            if (shown->isVisible())
                dialogs.append(shown);
        }
        if (first.isNull() && dialogs.size() == 1)
            first = dialogs.first();
        if (dialogs.isEmpty())
            return; // the last fit, with the dialog closed
        EXPECT_TRUE(dialogs.contains(first)) << "the first one stays from beginning to end";
        const bool checking = QApplication::activeModalWidget() != first;
        ++(checking ? inFront : alone);
        EXPECT_EQ(dialogs.size(), checking ? 2 : 1);
    });
    search->Run();
    EXPECT_GT(alone, 6);
    EXPECT_EQ(inFront, 1) << "d, then a: one check, which removes nothing";
}

TEST_F(StepwiseRun, EscapeWorksWithinTheReCheckToo)
{
    bool pressed = false;
    whenFitted(9, [&] {
        ASSERT_EQ(search->Steps().last(), text("Checking included variables..."));
        pressEscape();
        pressed = true;
    });
    search->Run();
    EXPECT_TRUE(pressed);
    EXPECT_EQ(search->Ended(), TRunEnd::Stopped);
    expectAsBefore();
}

TEST_F(ForwardRun, WithoutADialogTheCursorIsAnHourglass)
{
    search->SetShowProgress(false);
    bool seen = false;
    whenFitted(2, [&] {
        seen = true;
        ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
        EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
        EXPECT_EQ(GaugeDlg->Window(), nullptr) << "no window is built";
    });
    search->Run();
    EXPECT_TRUE(seen);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(ForwardRun, AMessageBoxMayDestroyTheRegression)
{
    // b is constant where a is not null; the message of the load that fails runs events.
    db->exec(text("UPDATE data SET b = 5"));
    table->Refresh();
    messages.meanwhile = [&] { table.reset(); };
    search->Run();
    EXPECT_EQ(table, nullptr);
    EXPECT_EQ(search->Ended(), TRunEnd::Stopped);
}

TEST_F(ForwardRun, ABoxOfASingularMatrixMayDestroyTheRegression)
{
    db->exec(text("UPDATE data SET a = c, b = c, d = 1e-160 * c"));
    table->Refresh();
    messages.meanwhile = [&] { table.reset(); };
    search->SetFDefault(0);
    search->Run();
    EXPECT_FALSE(search->Running());
}

TEST_F(OptimalRun, TheReportsBoxMayDestroyEitherAndTheModelStays)
{
    search->SetModelsToSave(2);
    search->SetOptCriteria(TOptimizationType::MaxFValue);
    messages.meanwhile = [&] { search.reset(); };
    search->Run();
    EXPECT_EQ(search, nullptr);
    EXPECT_EQ(table->GetNumVars(), 2) << "the model chosen, not the one of before";
    EXPECT_TRUE(table->ShowWarnings());
    EXPECT_NO_THROW(table->ReLoad());
}

TEST_F(OptimalRun, TwoFormsAtOnceKeepToThemselves)
{
    // Another search on another table runs within a handler of the first.
    TMLRTable second;
    bind(second, *db, "data");
    define(second, "a b c");
    second.ReLoad();
    TFwdSelectMLR inner;
    inner.SetTable(&second);
    whenFitted(5, [&] { inner.Run(); });
    search->SetModelsToSave(3);
    search->SetOptCriteria(TOptimizationType::MinSsquared);
    search->Run();
    EXPECT_EQ(inner.Steps().size(), 2);
    EXPECT_EQ(search->ModelCount(), 3);
    EXPECT_EQ(table->GetNumVars(), 3);
}
