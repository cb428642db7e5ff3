// SPDX-License-Identifier: MIT
#include "engine/Loading.h"

#include "present/Loadgage.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWindow>

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
        EXPECT_THROW(regression.SetDescription(text("other")), EDatabaseError);
        EXPECT_THROW(regression.SetReportMessage(text("other")), EDatabaseError);
        EXPECT_THROW(regression.SetShowWarnings(true), EDatabaseError);
        EXPECT_THROW(regression.setProperty("ResponseVarY", QStringList()), EDatabaseError);
    };
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(regression.Description(), QString());
    EXPECT_EQ(regression.ReportMessage(), QString());
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
    std::unique_ptr<nuvo::Progress> MakeLoadProgress() override
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
