// SPDX-License-Identifier: MIT
#include "present/Loadgage.h"

#include "Progresstest.h"
#include "support/Darkpalette.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPushButton>
#include <QScopeGuard>
#include <QScreen>
#include <QShortcut>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <cstdlib>
#include <optional>

namespace {

QString loaded(int records)
{
    return QStringLiteral("Records Loaded: %1").arg(records);
}

QImage seen(const TMLRGaugeDlg &dialog)
{
    return dialog.Window()->grab().toImage();
}

} // namespace

TEST(LoadDialog, HasItsControlsWhereTheyBelong)
{
    TMLRGaugeDlg dialog;
    dialog.Show();
    const QDialog *window = dialog.Window();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Percentage Loaded"));
    EXPECT_EQ(window->size(), QSize(224, 130));
    EXPECT_EQ(window->minimumSize(), window->maximumSize());
    expectPlaces(window, {{"Image1", "TMLRGaugeDlg", QRect(5, 2, 28, 28)},
                          {"Image2", "TMLRGaugeDlg", QRect(192, 2, 28, 28)},
                          {"Panel2", "TMLRGaugeDlg", QRect(21, 59, 182, 29)},
                          {"Gauge1", "Panel2", QRect(4, 4, 175, 21)},
                          {"Panel1", "TMLRGaugeDlg", QRect(0, 111, 224, 19)}});
    expectTitle(window, "Label1", "MLR Dataset Load", QPoint(50, 28), Qt::black, 15);
    expectTitle(window, "Label2", "MLR Dataset Load", QPoint(49, 29), Qt::white, 15);
    EXPECT_EQ(control<TGauge>(window, "Gauge1")->ForeColor(), QColor(0, 0, 128));
    EXPECT_EQ(control<TGauge>(window, "Gauge1")->BackColor(), window->palette().color(QPalette::Highlight));
    for (const char *picture : {"Image1", "Image2"})
        EXPECT_EQ(control<QLabel>(window, picture)->pixmap().deviceIndependentSize(), QSizeF(28, 28));
    const Qt::WindowFlags flags = window->windowFlags();
    EXPECT_TRUE(flags & Qt::WindowSystemMenuHint);
    EXPECT_FALSE(flags & (Qt::WindowMinMaxButtonsHint | Qt::WindowContextHelpButtonHint));
}

TEST(LoadDialog, StandsInTheMiddleOfTheScreen)
{
    TMLRGaugeDlg dialog;
    dialog.Show();
    const QRect screen = dialog.Window()->screen()->availableGeometry();
    EXPECT_EQ(dialog.Window()->pos(), screen.topLeft() + QPoint(screen.width() - 224, screen.height() - 130) / 2);
}

TEST(LoadDialog, BuildsNoWindowUntilItIsShown)
{
    const qsizetype before = QApplication::allWidgets().size();
    TMLRGaugeDlg dialog;
    for (int record = 1; record <= 2500; ++record) {
        dialog.SetGaugeProgress(static_cast<unsigned short>(record / 25));
        dialog.SetGaugeText(loaded(record));
    }
    dialog.Repaint();
    dialog.Close();
    EXPECT_FALSE(dialog.Shown());
    EXPECT_FALSE(dialog.Stopped());
    EXPECT_EQ(dialog.Window(), nullptr);
    EXPECT_EQ(QApplication::allWidgets().size(), before);
}

TEST(LoadDialog, IsOnTheScreenAndPaintedWhenShowReturns)
{
    TMLRGaugeDlg dialog;
    dialog.SetGaugeText(loaded(0));
    dialog.Show();
    EXPECT_TRUE(dialog.Shown());
    EXPECT_TRUE(dialog.Window()->windowHandle()->isExposed());
    EXPECT_EQ(control<QLabel>(dialog.Window(), "Panel1")->text(), loaded(0));
}

TEST(LoadDialog, TheFirstShowTakesTheProgressBackToZeroAndKeepsTheText)
{
    TMLRGaugeDlg dialog;
    dialog.SetGaugeProgress(40);
    dialog.SetGaugeText(loaded(1000));
    dialog.Show();
    EXPECT_EQ(control<TGauge>(dialog.Window(), "Gauge1")->Progress(), 0);
    EXPECT_EQ(control<QLabel>(dialog.Window(), "Panel1")->text(), loaded(1000));
}

TEST(LoadDialog, LaterActivationsChangeNothing)
{
    TMLRGaugeDlg dialog;
    dialog.Show();
    dialog.SetGaugeProgress(40);
    dialog.FormActivate();
    QEvent activate(QEvent::WindowActivate);
    QCoreApplication::sendEvent(dialog.Window(), &activate);
    EXPECT_EQ(control<TGauge>(dialog.Window(), "Gauge1")->Progress(), 40);
    dialog.Close();
    dialog.Show();
    EXPECT_EQ(control<TGauge>(dialog.Window(), "Gauge1")->Progress(), 40);
}

TEST(LoadDialog, ValuesAndTextsAreInTheControlsAtOnce)
{
    TMLRGaugeDlg dialog;
    dialog.Show();
    for (int percent = 0; percent <= 100; ++percent) {
        dialog.SetGaugeText(loaded(percent * 25));
        dialog.SetGaugeProgress(static_cast<unsigned short>(percent));
        ASSERT_EQ(control<TGauge>(dialog.Window(), "Gauge1")->Progress(), percent);
        ASSERT_EQ(control<QLabel>(dialog.Window(), "Panel1")->text(), loaded(percent * 25));
    }
}

TEST(LoadDialog, AProgressAboveAHundredMeetsTheGaugesOwnLimit)
{
    TMLRGaugeDlg dialog;
    dialog.Show();
    for (const int progress : {101, 65535}) {
        dialog.SetGaugeProgress(static_cast<unsigned short>(progress));
        EXPECT_EQ(control<TGauge>(dialog.Window(), "Gauge1")->Progress(), 100);
    }
}

TEST(LoadDialog, MovesWhenItIsFed)
{
    TMLRGaugeDlg dialog;
    dialog.Show();
    const QImage before = seen(dialog);
    dialog.SetGaugeProgress(37);
    const QImage moved = seen(dialog);
    EXPECT_NE(before, moved);
    dialog.SetGaugeText(loaded(925));
    EXPECT_NE(moved, seen(dialog));
}

TEST(LoadDialog, PaintsNoFasterThanTheEyeCanFollow)
{
    TMLRGaugeDlg dialog;
    dialog.Show();
    const PaintLog log(dialog.Window());
    QElapsedTimer timer;
    timer.start();
    int fed = 0;
    while (timer.elapsed() < 400) {
        dialog.SetGaugeText(loaded(fed));
        dialog.SetGaugeProgress(static_cast<unsigned short>(fed++ % 100));
    }
    // Without a pace there is a paint for each of the calls.
    EXPECT_GT(fed, 200);
    EXPECT_LE(int(log.progress.size()), timer.elapsed() / 33 + 2);
    EXPECT_GE(int(log.progress.size()), 3) << "it has to move";
}

TEST(LoadDialog, TheLastStateIsPaintedBeforeItCloses)
{
    TMLRGaugeDlg dialog;
    dialog.Show();
    const PaintLog log(dialog.Window());
    dialog.SetGaugeProgress(99);
    dialog.SetGaugeText(loaded(2500));
    dialog.Close();
    ASSERT_FALSE(log.progress.empty());
    EXPECT_EQ(log.progress.back(), 99);
    EXPECT_EQ(log.texts.back(), loaded(2500).toStdString());
    EXPECT_FALSE(dialog.Shown());
    EXPECT_FALSE(dialog.Stopped()) << "closed by the run, not by the person";
}

TEST(LoadDialog, TheLastStateIsPaintedWhenItIsFreedWithoutClosing)
{
    std::optional<PaintLog> log;
    {
        TMLRGaugeDlg dialog;
        dialog.Show();
        log.emplace(dialog.Window());
        dialog.SetGaugeProgress(73);
    }
    ASSERT_FALSE(log->progress.empty());
    EXPECT_EQ(log->progress.back(), 73);
}

TEST(LoadDialog, AHundredPercentIsPaintedAtOnce)
{
    TMLRGaugeDlg dialog;
    dialog.Show();
    const PaintLog log(dialog.Window());
    dialog.SetGaugeProgress(100);
    ASSERT_FALSE(log.progress.empty());
    EXPECT_EQ(log.progress.back(), 100);
}

TEST(LoadDialog, RepaintPaintsWhateverThePace)
{
    TMLRGaugeDlg dialog;
    dialog.Show();
    const PaintLog log(dialog.Window());
    dialog.SetGaugeText(QStringLiteral("a long step"));
    dialog.Repaint();
    ASSERT_FALSE(log.texts.empty());
    EXPECT_EQ(log.texts.back(), "a long step");
}

TEST(LoadDialog, PaintsNoStateTwice)
{
    TMLRGaugeDlg dialog;
    dialog.SetGaugeText(QStringLiteral("from the start"));
    dialog.Show();
    const PaintLog log(dialog.Window());
    dialog.Repaint();
    EXPECT_TRUE(log.texts.empty()) << "Show has painted it";
    dialog.SetGaugeProgress(100);
    EXPECT_EQ(log.progress, std::vector<int>({100}));
    dialog.Close();
    EXPECT_EQ(log.progress, std::vector<int>({100}));
}

TEST(LoadDialog, EscapeAsksTheRunToStop)
{
    TMLRGaugeDlg dialog;
    dialog.Show();
    EXPECT_FALSE(dialog.Stopped());
    QTest::keyClick(dialog.Window(), Qt::Key_A);
    QTest::keyClick(dialog.Window(), Qt::Key_Return);
    EXPECT_FALSE(dialog.Stopped());
    // Pressed while the run feeds the dialog: the key waits for the next paint.
    QTimer::singleShot(0, [&dialog] { QTest::keyClick(dialog.Window()->windowHandle(), Qt::Key_Escape); });
    dialog.SetGaugeProgress(100);
    EXPECT_TRUE(dialog.Stopped());
    EXPECT_FALSE(dialog.Shown());
    dialog.SetGaugeProgress(50);
    dialog.SetGaugeText(loaded(1));
    EXPECT_TRUE(dialog.Stopped());
}

TEST(LoadDialog, ClosingItsWindowAsksTheRunToStop)
{
    TMLRGaugeDlg dialog;
    dialog.Show();
    QTimer::singleShot(0, [&dialog] { dialog.Window()->close(); });
    dialog.Repaint();
    EXPECT_TRUE(dialog.Stopped());
    EXPECT_FALSE(dialog.Shown());
}

TEST(LoadDialog, WindowsBehindItGetNoInputWhileItIsFed)
{
    QWidget form;
    QPushButton button(&form);
    button.setGeometry(0, 0, 100, 30);
    QShortcut shortcut(QKeySequence(Qt::Key_F5), &form);
    form.resize(300, 200);
    form.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&form));
    int answers = 0;
    QObject::connect(&button, &QPushButton::clicked, [&answers] { ++answers; });
    QObject::connect(&shortcut, &QShortcut::activated, [&answers] { ++answers; });
    const auto useTheForm = [&form] {
        QTest::mouseClick(form.windowHandle(), Qt::LeftButton, {}, QPoint(50, 15));
        QTest::keyClick(form.windowHandle(), Qt::Key_F5);
    };
    useTheForm();
    ASSERT_EQ(answers, 2);

    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        ++ticks;
        useTheForm();
    });
    timer.start(1);
    {
        TMLRGaugeDlg dialog;
        dialog.Show();
        while (ticks < 5)
            dialog.Repaint();
        EXPECT_EQ(answers, 2);
        EXPECT_FALSE(dialog.Stopped());
    }
    timer.stop();
    form.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    useTheForm();
    EXPECT_EQ(answers, 4) << "free again afterwards";
}

TEST(LoadDialog, ClicksWaitingBehindEscapeAreDropped)
{
    QPushButton button;
    int clicks = 0;
    QObject::connect(&button, &QPushButton::clicked, [&clicks] { ++clicks; });
    button.resize(100, 30);
    button.show();
    const auto postClick = [&button] {
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
            QCoreApplication::postEvent(&button,
                                        new QMouseEvent(type, QPointF(5, 5), button.mapToGlobal(QPointF(5, 5)),
                                                        Qt::LeftButton, Qt::LeftButton, {}));
    };
    TMLRGaugeDlg dialog;
    dialog.Show();
    QCoreApplication::postEvent(dialog.Window(), new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, {}));
    postClick();
    dialog.Repaint();
    EXPECT_TRUE(dialog.Stopped());
    EXPECT_EQ(clicks, 0);
    postClick();
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, 1) << "only those of that moment";
}

TEST(LoadDialog, AHiddenDialogRunsNoEvents)
{
    bool ran = false;
    QTimer::singleShot(0, [&ran] { ran = true; });
    TMLRGaugeDlg dialog;
    dialog.SetGaugeProgress(100);
    dialog.Repaint();
    EXPECT_FALSE(ran);
    dialog.Show();
    EXPECT_TRUE(ran);
    ran = false;
    dialog.Close();
    QTimer::singleShot(0, [&ran] { ran = true; });
    dialog.SetGaugeProgress(100);
    dialog.SetGaugeText(loaded(2500));
    dialog.Repaint();
    EXPECT_FALSE(ran);
    QCoreApplication::processEvents();
    EXPECT_TRUE(ran) << "it only waited";
}

TEST(LoadDialog, SurvivesTheWindowItStandsInFrontOf)
{
    auto *form = new QWidget;
    form->show();
    form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    TMLRGaugeDlg dialog;
    dialog.Show();
    ASSERT_EQ(dialog.Window()->parentWidget(), form);
    QTimer::singleShot(0, [form] { delete form; });
    dialog.Repaint();
    EXPECT_FALSE(dialog.Shown());
    EXPECT_EQ(dialog.Window(), nullptr);
    dialog.SetGaugeProgress(60);
    dialog.SetGaugeText(loaded(1));
    dialog.Show();
    EXPECT_EQ(control<TGauge>(dialog.Window(), "Gauge1")->Progress(), 60);
}

TEST(LoadDialog, ATextTooLongEndsInAnEllipsisAndMarkUpIsText)
{
    TMLRGaugeDlg dialog;
    dialog.Show();
    const QLabel *status = control<QLabel>(dialog.Window(), "Panel1");
    dialog.SetGaugeText(QStringLiteral("<b>&x</b>"));
    EXPECT_EQ(status->text(), QStringLiteral("<b>&x</b>"));
    EXPECT_EQ(status->textFormat(), Qt::PlainText);
    dialog.SetGaugeText(QString(500, u'W'));
    EXPECT_TRUE(status->text().endsWith(u'…'));
    EXPECT_LE(status->fontMetrics().horizontalAdvance(status->text()), status->contentsRect().width());
}

TEST(LoadDialog, HasTheDesktopsColoursAndABarThatIsSeenOnThem)
{
    const QPalette before = QApplication::palette();
    const auto restore = qScopeGuard([&before] { QApplication::setPalette(before); });
    QPalette navy(QColor(50, 50, 50));
    navy.setColor(QPalette::Highlight, QColor(0, 0, 128));
    for (const QPalette &desktop : {before, darkPalette(), navy}) {
        QApplication::setPalette(desktop);
        TMLRGaugeDlg dialog;
        dialog.Show();
        const QDialog *window = dialog.Window();
        EXPECT_EQ(window->palette().color(QPalette::Window), desktop.color(QPalette::Window));
        const QLabel *status = control<QLabel>(window, "Panel1");
        EXPECT_GT(std::abs(status->palette().color(status->foregroundRole()).lightness() -
                           status->palette().color(QPalette::Window).lightness()),
                  100);
        const TGauge *gauge = control<TGauge>(window, "Gauge1");
        EXPECT_EQ(gauge->ForeColor(), QColor(0, 0, 128));
        EXPECT_GT(gauge->BackColor().lightness() - gauge->ForeColor().lightness(), 100);
    }
}

TEST(LoadDialog, TheInstanceIsTheOneMadeLast)
{
    EXPECT_EQ(MLRGaugeDlg, nullptr);
    {
        TMLRGaugeDlg first;
        EXPECT_EQ(MLRGaugeDlg, &first);
        {
            const TMLRGaugeDlg second;
            EXPECT_EQ(MLRGaugeDlg, &second);
        }
        EXPECT_EQ(MLRGaugeDlg, nullptr);
    }
    EXPECT_EQ(MLRGaugeDlg, nullptr);
}

TEST(LoadDialog, ServesALoadThroughItsInterface)
{
    TMLRGaugeDlg dialog;
    nuvo::Progress &progress = dialog;
    progress.SetGaugeProgress(0);
    progress.SetGaugeText(loaded(0));
    EXPECT_FALSE(progress.Shown());
    progress.Show();
    EXPECT_TRUE(progress.Shown());
    progress.SetGaugeProgress(12);
    progress.SetGaugeText(loaded(300));
    EXPECT_EQ(control<TGauge>(dialog.Window(), "Gauge1")->Progress(), 12);
    EXPECT_EQ(control<QLabel>(dialog.Window(), "Panel1")->text(), loaded(300));
    EXPECT_FALSE(progress.Stopped());
    QTest::keyClick(dialog.Window(), Qt::Key_Escape);
    EXPECT_TRUE(progress.Stopped());
}
