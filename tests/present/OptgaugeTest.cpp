// SPDX-License-Identifier: MIT
#include "present/Optgauge.h"

#include "platform/Formats.h"

#include "Progresstest.h"

#include <QApplication>
#include <QTest>

namespace {

constexpr double Second = 1.0 / 86400;

/// A clock that is set by hand.
class SelectionDialog : public testing::Test
{
protected:
    QString elapsed() const { return control<QLabel>(dialog.Window(), "Label5")->text(); }

    double now = 45000.75;
    TGaugeDlg dialog{[this] { return now; }};
};

} // namespace

TEST_F(SelectionDialog, HasItsControlsWhereTheyBelong)
{
    dialog.Show();
    const QDialog *window = dialog.Window();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Percentage Done"));
    EXPECT_EQ(window->size(), QSize(224, 130));
    EXPECT_EQ(window->minimumSize(), window->maximumSize());
    expectPlaces(window, {{"Image1", "TGaugeDlg", QRect(5, 2, 32, 32)},
                          {"Panel2", "TGaugeDlg", QRect(21, 49, 182, 29)},
                          {"Gauge1", "Panel2", QRect(4, 4, 175, 21)},
                          {"Label5", "TGaugeDlg", QRect(91, 84, 42, 14)},
                          {"Panel1", "TGaugeDlg", QRect(0, 111, 224, 19)}});
    expectTitle(window, "Label1", "Corvane  for MLR", QPoint(50, 14), Qt::black, 15);
    expectTitle(window, "Label2", "Corvane  for MLR", QPoint(51, 15), Qt::white, 15);
    expectTitle(window, "Label3", "TM", QPoint(110, 12), Qt::black, 7);
    expectTitle(window, "Label4", "TM", QPoint(111, 12), Qt::white, 7);
    EXPECT_EQ(elapsed(), QStringLiteral("00:00:00"));
    EXPECT_EQ(control<QLabel>(window, "Label5")->font().pixelSize(), 11);
    EXPECT_EQ(control<TGauge>(window, "Gauge1")->ForeColor(), QColor(0, 0, 128));
    EXPECT_EQ(control<TGauge>(window, "Gauge1")->BackColor(), window->palette().color(QPalette::Highlight));
    EXPECT_EQ(control<QLabel>(window, "Image1")->pixmap().deviceIndependentSize(), QSizeF(32, 32));
}

TEST_F(SelectionDialog, TheProcessingTimeIsZeroBeforeAnyProgress)
{
    EXPECT_EQ(dialog.ProcessedTime(), 0);
    now += 100 * Second;
    dialog.Show();
    dialog.SetGaugeText(QStringLiteral("x"));
    now += 100 * Second;
    EXPECT_EQ(dialog.ProcessedTime(), 0);
}

TEST_F(SelectionDialog, EveryProgressTakesTheTime)
{
    dialog.Show();
    now += 3723 * Second;
    dialog.SetGaugeProgress(10);
    EXPECT_EQ(elapsed(), QStringLiteral("01:02:03"));
    EXPECT_EQ(FormatTime(dialog.ProcessedTime()), QStringLiteral("01:02:03"));
    now += 60 * Second;
    dialog.SetGaugeText(QStringLiteral("Added Variable x1"));
    EXPECT_EQ(elapsed(), QStringLiteral("01:02:03")) << "a text takes no time";
    EXPECT_EQ(FormatTime(dialog.ProcessedTime()), QStringLiteral("01:02:03"));
    dialog.SetGaugeProgress(10);
    EXPECT_EQ(elapsed(), QStringLiteral("01:03:03"));
    EXPECT_EQ(control<TGauge>(dialog.Window(), "Gauge1")->Progress(), 10);
}

TEST_F(SelectionDialog, ShowsNoDays)
{
    dialog.Show();
    now += 1 + 5 * Second;
    dialog.SetGaugeProgress(50);
    EXPECT_EQ(elapsed(), QStringLiteral("00:00:05"));
    EXPECT_NEAR(dialog.ProcessedTime(), 1 + 5 * Second, 1e-9);
    now += 0.99999;
    dialog.SetGaugeProgress(50);
    EXPECT_EQ(elapsed(), QStringLiteral("00:00:04"));
}

TEST_F(SelectionDialog, TheClockStartsAtCreationWhenItIsNeverShown)
{
    const qsizetype before = QApplication::allWidgets().size();
    now += 42 * Second;
    dialog.SetGaugeProgress(50);
    EXPECT_EQ(FormatTime(dialog.ProcessedTime()), QStringLiteral("00:00:42"));
    EXPECT_EQ(dialog.Window(), nullptr);
    EXPECT_EQ(QApplication::allWidgets().size(), before);
}

TEST_F(SelectionDialog, TheClockStartsOnceMoreAtTheFirstShowAndThenNoMore)
{
    now += 100 * Second;
    dialog.Show();
    now += 5 * Second;
    dialog.SetGaugeProgress(10);
    EXPECT_EQ(elapsed(), QStringLiteral("00:00:05"));
    dialog.FormActivate();
    QEvent activate(QEvent::WindowActivate);
    QCoreApplication::sendEvent(dialog.Window(), &activate);
    dialog.Close();
    dialog.Show();
    now += 5 * Second;
    dialog.SetGaugeProgress(20);
    EXPECT_EQ(elapsed(), QStringLiteral("00:00:10"));
}

TEST_F(SelectionDialog, ShowsTheTimeTakenBeforeItWasShown)
{
    now += 5 * Second;
    dialog.SetGaugeProgress(10);
    dialog.Show();
    EXPECT_EQ(elapsed(), QStringLiteral("00:00:05"));
    EXPECT_EQ(control<TGauge>(dialog.Window(), "Gauge1")->Progress(), 0);
}

TEST_F(SelectionDialog, AProgressAboveAHundredMeetsTheGaugesOwnLimit)
{
    dialog.Show();
    dialog.SetGaugeProgress(300);
    EXPECT_EQ(control<TGauge>(dialog.Window(), "Gauge1")->Progress(), 100);
}

TEST_F(SelectionDialog, WithPatienceOpensOnlyForWorkThatTakesLonger)
{
    dialog.SetPatience(std::chrono::milliseconds(50));
    now += 100 * Second;
    dialog.Show();
    dialog.SetGaugeText(QStringLiteral("1 of 4"));
    EXPECT_FALSE(dialog.Shown());
    EXPECT_EQ(dialog.Window(), nullptr) << "and makes no window";
    now += 5 * Second;
    dialog.SetGaugeProgress(25);
    EXPECT_NEAR(dialog.ProcessedTime(), 5 * Second, 1e-9) << "the clock has run since Show";
    QTest::qSleep(60);
    EXPECT_FALSE(dialog.Shown()) << "nobody has told it anything";
    dialog.SetGaugeProgress(50);
    EXPECT_TRUE(dialog.Shown());
    EXPECT_EQ(control<TGauge>(dialog.Window(), "Gauge1")->Progress(), 50);
    EXPECT_EQ(control<QLabel>(dialog.Window(), "Panel1")->text(), QStringLiteral("1 of 4"));
    EXPECT_EQ(elapsed(), QStringLiteral("00:00:05"));
    dialog.Close();
    EXPECT_FALSE(dialog.Shown());
}

TEST_F(SelectionDialog, ATextOrARepaintOpensItAsWell)
{
    dialog.SetPatience(std::chrono::milliseconds(1));
    dialog.Show();
    QTest::qSleep(5);
    dialog.SetGaugeText(QStringLiteral("2 of 4"));
    EXPECT_TRUE(dialog.Shown());
    TGaugeDlg second;
    second.SetPatience(std::chrono::milliseconds(1));
    second.Show();
    QTest::qSleep(5);
    second.Repaint();
    EXPECT_TRUE(second.Shown());
}

TEST_F(SelectionDialog, ClosedBeforeItsTimeItNeverOpens)
{
    dialog.SetPatience(std::chrono::milliseconds(1));
    dialog.Show();
    dialog.Close();
    QTest::qSleep(5);
    dialog.SetGaugeProgress(50);
    EXPECT_FALSE(dialog.Shown());
    EXPECT_EQ(dialog.Window(), nullptr);
}

TEST_F(SelectionDialog, MovesWhenItIsFed)
{
    dialog.Show();
    const QImage before = dialog.Window()->grab().toImage();
    now += 7 * Second;
    dialog.SetGaugeProgress(0);
    const QImage ticked = dialog.Window()->grab().toImage();
    EXPECT_NE(before, ticked) << "the time";
    dialog.SetGaugeProgress(50);
    EXPECT_NE(ticked, dialog.Window()->grab().toImage()) << "the bar";
}

TEST_F(SelectionDialog, TheLastStateIsPaintedBeforeItCloses)
{
    dialog.Show();
    const PaintLog log(dialog.Window());
    dialog.SetGaugeProgress(97);
    dialog.SetGaugeText(QStringLiteral("(R)^2 = 0.9955,  (s)^2 = 92936.0060."));
    dialog.Close();
    ASSERT_FALSE(log.progress.empty());
    EXPECT_EQ(log.progress.back(), 97);
    EXPECT_EQ(log.texts.back(), "(R)^2 = 0.9955,  (s)^2 = 92936.0060.");
}

TEST_F(SelectionDialog, EscapeAsksTheRunToStop)
{
    dialog.Show();
    QTest::keyClick(dialog.Window(), Qt::Key_Escape);
    EXPECT_TRUE(dialog.Stopped());
    EXPECT_FALSE(dialog.Shown());
}

TEST_F(SelectionDialog, ASecondOneStandsInFrontOfTheFirst)
{
    dialog.Show();
    {
        TGaugeDlg second;
        EXPECT_EQ(GaugeDlg, &second);
        second.Show();
        QTest::keyClick(second.Window()->windowHandle(), Qt::Key_Escape);
        EXPECT_TRUE(second.Stopped());
        EXPECT_FALSE(dialog.Stopped());
    }
    EXPECT_TRUE(dialog.Shown());
    dialog.SetGaugeProgress(100);
    EXPECT_EQ(control<TGauge>(dialog.Window(), "Gauge1")->Progress(), 100);
}

TEST(SelectionClock, TheSystemsClockRunsUnlessAnotherIsGiven)
{
    TGaugeDlg dialog;
    QTest::qSleep(30);
    dialog.SetGaugeProgress(1);
    EXPECT_GE(dialog.ProcessedTime(), 0.030 * Second);
    EXPECT_LT(dialog.ProcessedTime(), 3600 * Second);
}
