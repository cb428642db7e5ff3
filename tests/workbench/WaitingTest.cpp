// SPDX-License-Identifier: MIT
#include "workbench/Hostilewindow.h"

#include "engine/Leftout.h"
#include "engine/Mlrtable.h"
#include "workbench/Pages.h"
#include "workbench/Recordsmodel.h"
#include "workbench/Recordspage.h"
#include "workbench/Waiting.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QThread>

#include <atomic>

/// Databases that let themselves be waited for.
class WaitingWindow : public HostileWindow
{
protected:
    QString written;

    void SetUp() override
    {
        HostileWindow::SetUp();
        written = folder.filePath(u("out.csv"));
    }
    /// A file with a table t of 100 records, and a view whose first record comes when the last one was looked at.
    QString withView(const char *name, int looked)
    {
        return database(
            name,
            {u("CREATE TABLE t (x REAL, y REAL)"),
             u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100) "
               "INSERT INTO t SELECT i, 3 + 2 * i + i % 5 FROM n"),
             u("CREATE VIEW slow AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
               "SELECT i %% 1009 AS x, i * 3 %% 997 AS y FROM n WHERE i %% 1000 = 0 ORDER BY i %% 7919")
                 .arg(looked)
                 .replace(u("%%"), u("%"))});
    }
    /// Answers the dialogs of a prediction of a table.
    void predict(const QString &table)
    {
        answer = [this, table](QDialog &dialog) {
            if (auto *const choose = qobject_cast<QInputDialog *>(&dialog))
                choose->setTextValue(table);
            if (auto *const save = qobject_cast<QFileDialog *>(&dialog)) {
                save->setDirectory(folder.path());
                save->selectFile(written);
            }
            return int(QDialog::Accepted);
        };
        window->findChild<QPushButton *>(u("PredictTable"))->click();
    }
};

constexpr int kSeconds = 4000000; // that many numbers take a second or more
constexpr int kForever = 2000000000;

TEST_F(WaitingWindow, LivesWhileTheFirstRecordsOfAViewAreLookedFor)
{
    drop(withView("view.db", kSeconds));
    QElapsedTimer since;
    since.start();
    LoopGap gap;
    window->OpenTable(u("slow"));
    ASSERT_TRUE(wait([this] { return sitting().State().table == u("slow"); }, 60000)) << message().toStdString();
    const qint64 opened = since.elapsed();
    EXPECT_GT(opened, 200) << "nothing to wait for";
    EXPECT_LT(2 * gap.take(), opened);
    since.restart();
    defineModel("y", "x");
    ASSERT_TRUE(wait([this] { return fit().HasFit(); }, 60000)) << message().toStdString();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), 2500);
    EXPECT_LT(since.elapsed(), opened) << "they are at hand now";
    action("Every Record").trigger();
    ASSERT_TRUE(wait([this] { return fit().HasFit(); }, 60000)) << message().toStdString();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), kSeconds / 1000);
    ASSERT_TRUE(wait([this] { return window->ShownPages().Records().Model().IsCounted(); }, 60000));
    EXPECT_EQ(window->ShownPages().Records().Model().rowCount(), kSeconds / 1000);
}

TEST_F(WaitingWindow, EndsTheLookingByEscapeAndLeavesTheSittingAsItWas)
{
    drop(withView("view.db", kForever));
    window->OpenTable(u("t"));
    defineModel("y", "x");
    ASSERT_TRUE(fit().HasFit());
    const nuvo::ModelState before = sitting().State();
    window->OpenTable(u("slow"));
    QTest::qWait(300);
    EXPECT_TRUE(window->Near().IsFetching());
    EXPECT_TRUE(isAlive());
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_TRUE(wait([this] { return !window->Near().IsFetching(); }, 5000));
    EXPECT_EQ(sitting().State(), before);
    EXPECT_TRUE(fit().HasFit());
    EXPECT_TRUE(message().contains(u("stopped"))) << message().toStdString();
}

TEST_F(WaitingWindow, FindsTheFirstUsableRecordsOfALargeTableWithoutStandingStill)
{
    // 30 MB, of which the last records alone can be used.
    drop(database("late.db", {u("CREATE TABLE t (x REAL, y REAL, note TEXT)"),
                              u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 250000) "
                                "INSERT INTO t SELECT CASE WHEN i > 240000 THEN i END, 2 * i + i % 7, "
                                "printf('%0100d', i) FROM n")}));
    ASSERT_TRUE(wait([this] { return sitting().State().table == u("t") && !window->Near().IsFetching(); }));
    QElapsedTimer since;
    since.start();
    LoopGap gap;
    defineModel("y", "x");
    ASSERT_TRUE(wait([this] { return fit().HasFit(); }, 60000)) << message().toStdString();
    EXPECT_EQ(fit().Regression()->RecordsUsed(), 2500);
    const qint64 longest = gap.largest();
    std::printf("Found after %lld ms, longest gap %lld ms\n", since.elapsed(), longest);
    // To the bit what the component itself makes of the table, in the time that it would keep the window waiting.
    TMLRTable direct;
    nuvo::apply(sitting().State(), direct);
    direct.Open();
    since.restart();
    ASSERT_TRUE(direct.ReLoad());
    EXPECT_LT(2 * longest, since.elapsed());
    direct.Execute();
    for (int j = 0; j <= 1; ++j)
        EXPECT_EQ(fit().Regression()->Getb(j), direct.Getb(j));
    EXPECT_EQ(fit().Regression()->GetRecord(2500), direct.GetRecord(2500));
    EXPECT_EQ(fit().Regression()->RecordsRead(), direct.RecordsRead());
    EXPECT_EQ(fit().Regression()->LeftOut(), direct.LeftOut());
    // And it can be ended, after which nothing is lost.
    const nuvo::ModelState state = sitting().State();
    fit().FitAgain();
    ASSERT_TRUE(fit().IsReading()) << message().toStdString();
    EXPECT_TRUE(isAlive());
    window->findChild<QPushButton *>(u("Stop"))->click();
    EXPECT_FALSE(fit().IsReading());
    EXPECT_FALSE(window->Near().IsFetching());
    EXPECT_TRUE(message().contains(u("stopped"))) << message().toStdString();
    EXPECT_EQ(sitting().State(), state);
    fit().FitAgain();
    ASSERT_TRUE(wait([this] { return fit().HasFit(); }, 60000)) << message().toStdString();
}

TEST_F(WaitingWindow, LivesWhileRecordsAreLeftOut)
{
    drop(withView("view.db", kSeconds / 10));
    window->OpenTable(u("slow"));
    ASSERT_TRUE(wait([this] { return sitting().State().table == u("slow") && !window->Near().IsFetching(); }, 60000));
    window->ShownPages().Records().SetSelected({2, 3, 300});
    QElapsedTimer since;
    since.start();
    LoopGap gap;
    action("Leave Selected Records Out").trigger();
    EXPECT_GT(since.elapsed(), 100) << "nothing to wait for";
    EXPECT_LT(2 * gap.take(), since.elapsed());
    EXPECT_FALSE(sitting().State().filter.isEmpty()) << message().toStdString();
    ASSERT_TRUE(wait([this] { return window->ShownPages().Records().Model().IsCounted(); }, 60000));
    EXPECT_EQ(window->ShownPages().Records().Model().rowCount(), kSeconds / 10000 - 3);
}

TEST_F(WaitingWindow, LivesWhileATableIsPredicted)
{
    drop(withView("view.db", kSeconds));
    window->OpenTable(u("t"));
    defineModel("y", "x");
    ASSERT_TRUE(fit().HasFit());
    QElapsedTimer since;
    since.start();
    LoopGap gap;
    predict(u("slow"));
    EXPECT_GT(since.elapsed(), 200) << "nothing to wait for";
    EXPECT_LT(2 * gap.largest(), since.elapsed());
    QFile file(written);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << message().toStdString();
    EXPECT_EQ(file.readAll().count('\n'), kSeconds / 1000 + 1);
    EXPECT_TRUE(message().startsWith(u("Predictions for "))) << message().toStdString();
}

TEST_F(WaitingWindow, EndsAPredictionByEscapeAndLeavesNoFile)
{
    drop(withView("view.db", kForever));
    window->OpenTable(u("t"));
    defineModel("y", "x");
    ASSERT_TRUE(fit().HasFit());
    const nuvo::ModelState before = sitting().State();
    QTimer escape;
    pressEscape(escape);
    predict(u("slow"));
    EXPECT_EQ(message(), u("The predictions were stopped; no file was written."));
    EXPECT_FALSE(QFile::exists(written));
    EXPECT_EQ(sitting().State(), before);
    EXPECT_TRUE(fit().HasFit());
    EXPECT_TRUE(isAlive());
    predict(u("t"));
    EXPECT_TRUE(message().startsWith(u("Predictions for 100 records"))) << message().toStdString();
}

TEST_F(WaitingWindow, TakesAnEscapeThatComesAsTheWorkEnds)
{
    std::atomic<bool> pressed{false};
    std::atomic<bool> done{false};
    QTimer escape;
    escape.callOnTimeout([&] {
        auto *const progress = window->findChild<QProgressDialog *>();
        if (progress == nullptr || !progress->isVisible())
            return;
        escape.stop();
        QTest::keyClick(progress, Qt::Key_Escape);
        pressed = true;
        while (!done)
            QThread::msleep(1);
        QThread::msleep(20); // and the thread has said so
    });
    escape.start(10);
    EXPECT_FALSE(nuvo::waitFor(window.get(), u("Title"), u("Label"), [&](nuvo::Task &) {
        while (!pressed)
            QThread::msleep(1);
        done = true;
    }));
}
