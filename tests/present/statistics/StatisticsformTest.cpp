// SPDX-License-Identifier: MIT
#include "present/statistics/Statisticsform.h"

#include "present/Reportwindow.h"
#include "present/figures/Figurespage.h"
#include "present/statistics/Observationspage.h"
#include "present/statistics/Pageview.h"
#include "support/Text.h"

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QMimeData>
#include <QPdfWriter>
#include <QPrinter>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>

#include <cmath>

namespace {

/// Shows the statistics of a regression to somebody who does that and closes the window; with `more` further dialogs.
template <class Regression, class... More>
QStringList showTo(Regression &regression, const std::function<void(TStatisticsForm &)> &act, More... more)
{
    return showForm<TStatisticsForm>([&] { regression.ShowStatistics(); }, act, more...);
}

/// Where the focus is.
QWidget *reader(const TStatisticsForm &form)
{
    return form.focusWidget();
}

void press(const TStatisticsForm &form, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier)
{
    QTest::keyClick(reader(form), key, modifiers);
}

QString summary(TStatisticsForm &form)
{
    return form.Summary().toPlainText();
}

} // namespace

TEST(StatisticsWindow, HasPagesForSummaryDiagnosticsObservationsAndFigures)
{
    Fitted fitted = scatteredFit(20, 2);
    showTo(fitted.table, [](TStatisticsForm &form) {
        const auto *pages = part<QTabWidget>(form, "StatisticsPages");
        QStringList titles;
        for (int page = 0; page < pages->count(); ++page)
            titles += pages->tabText(page);
        EXPECT_EQ(titles.join(u'|'), u("Summary|Diagnostics|Observations|Figures"));
        EXPECT_EQ(form.windowTitle(), u("Statistics: Data"));
        EXPECT_TRUE(summary(form).contains(u("Linear regression of y on x1, x2"))) << summary(form).toStdString();
        EXPECT_TRUE(summary(form).contains(u("Analysis of variance")));
        EXPECT_FALSE(summary(form).contains(u("Shapiro")));
        EXPECT_TRUE(form.Diagnostics().toPlainText().contains(u("Shapiro")));
        EXPECT_TRUE(form.Diagnostics().toPlainText().contains(u("Observations worth looking at")));
        EXPECT_EQ(form.Observations().View().model()->rowCount(), 20);
        EXPECT_EQ(form.FiguresPage().Figures().size(), 13U);
    });
}

TEST(StatisticsWindow, IsThereForQueriesToo)
{
    Fitted fitted = scatteredFit(20, 2);
    Fitted::run(fitted.query, fitted.query);
    showTo(fitted.query, [](TStatisticsForm &form) {
        EXPECT_EQ(form.windowTitle(), u("Statistics: SELECT * FROM Data"));
        EXPECT_TRUE(summary(form).contains(u("Linear regression")));
    });
}

TEST(StatisticsWindow, AClickOnAPointSelectsItsRow)
{
    Fitted fitted = scatteredFit(20, 2);
    showTo(fitted.table, [](TStatisticsForm &form) {
        form.SetPageIndex(3);
        TFigureView &view = form.FiguresPage().View();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&form));
        const nuvo::Figure &figure = view.Figure();
        const std::size_t i = 8;
        QTest::mouseClick(&view, Qt::LeftButton, {}, view.Painter().Place(figure.x[i], figure.y[i]).toPoint());
        ASSERT_EQ(view.Selected().size(), 1U);
        EXPECT_EQ(form.Observations().Selected(), view.Selected());
    });
}

TEST(StatisticsWindow, ASelectedRowIsMarkedInTheFigures)
{
    Fitted fitted = scatteredFit(20, 2);
    showTo(fitted.table, [](TStatisticsForm &form) {
        form.SetPageIndex(2);
        QTableView &table = form.Observations().View();
        table.sortByColumn(0, Qt::DescendingOrder);
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                          table.visualRect(table.model()->index(2, 1)).center());
        EXPECT_EQ(form.FiguresPage().Selected(), (std::set<qint64>{18}));
        QTest::keyClick(&table, Qt::Key_Down, Qt::ShiftModifier);
        EXPECT_EQ(form.FiguresPage().Selected(), (std::set<qint64>{17, 18}));
    });
}

TEST(StatisticsWindow, KeysTurnThePages)
{
    Fitted fitted = scatteredFit(20, 2);
    showTo(fitted.table, [](TStatisticsForm &form) {
        for (int page = 3; page >= 0; --page) {
            press(form, Qt::Key(Qt::Key_1 + page), Qt::AltModifier);
            EXPECT_EQ(form.PageIndex(), page);
        }
        for (int page = 1; page <= 4; ++page) {
            press(form, Qt::Key_Tab);
            EXPECT_EQ(form.PageIndex(), page % 4);
        }
        press(form, Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_EQ(form.PageIndex(), 3);
    });
}

TEST(StatisticsWindow, EscapeClosesIt)
{
    Fitted fitted = scatteredFit(20, 2);
    for (int page = 0; page < 4; ++page) {
        showTo(fitted.table, [page](TStatisticsForm &form) {
            form.SetPageIndex(page);
            press(form, Qt::Key_Escape, {});
            EXPECT_FALSE(form.isVisible()) << page;
        });
    }
}

TEST(StatisticsWindow, CopiesWhatThePageHas)
{
    Fitted fitted = scatteredFit(20, 2);
    showTo(fitted.table, [](TStatisticsForm &form) {
        const QClipboard &clipboard = *QGuiApplication::clipboard();
        press(form, Qt::Key_C);
        EXPECT_TRUE(clipboard.text().startsWith(u("Linear regression of y on x1, x2")))
            << clipboard.text().toStdString();
        EXPECT_TRUE(clipboard.mimeData()->hasHtml());
        QTextCursor word(form.Summary().document());
        word.select(QTextCursor::WordUnderCursor);
        form.Summary().setTextCursor(word);
        press(form, Qt::Key_C);
        EXPECT_EQ(clipboard.text(), u("Linear"));
        form.SetPageIndex(2);
        press(form, Qt::Key_C);
        EXPECT_TRUE(clipboard.text().startsWith(u("Record\ty\t")));
        form.SetPageIndex(3);
        press(form, Qt::Key_C);
        EXPECT_TRUE(clipboard.mimeData()->hasImage());
        form.SetPageIndex(1);
        click(form, "CopyStatistics");
        EXPECT_TRUE(clipboard.text().startsWith(u("Diagnostics")));
        // With the focus where nothing has the key.
        part(form, "CloseStatistics")->setFocus();
        form.SetPageIndex(2);
        part(form, "CloseStatistics")->setFocus();
        press(form, Qt::Key_C);
        EXPECT_TRUE(clipboard.text().startsWith(u("Record\ty\t")));
    });
}

TEST(StatisticsWindow, SavesTheDocument)
{
    Fitted fitted = scatteredFit(20, 2);
    const QTemporaryDir directory;
    const QString html = directory.filePath(u("page.html"));
    const QString pdf = directory.filePath(u("page.pdf"));
    showTo(
        fitted.table,
        [](TStatisticsForm &form) {
            press(form, Qt::Key_S);
            form.activateWindow();
            ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
            form.SetPageIndex(2);
            press(form, Qt::Key_S);
        },
        nameFile(html), nameFile(pdf));
    EXPECT_TRUE(contentOf(html).contains("Analysis of variance"));
    EXPECT_TRUE(contentOf(html).contains("Shapiro"));
    EXPECT_TRUE(contentOf(pdf).startsWith("%PDF"));
}

TEST(StatisticsWindow, AFileThatCannotBeWrittenBecomesAMessage)
{
    Fitted fitted = scatteredFit(20, 2);
    const QTemporaryDir directory;
    const QString nowhere = directory.filePath(u("no/page.pdf"));
    const QString inTheWay = directory.filePath(u("full.txt"));
    ASSERT_TRUE(QDir().mkpath(inTheWay));
    const QStringList messages = showTo(
        fitted.table,
        [&](TStatisticsForm &form) {
            press(form, Qt::Key_S);
            EXPECT_TRUE(form.isVisible());
            EXPECT_TRUE(errorOf([&] { form.SaveReport(inTheWay); }).contains(u("full.txt")));
            EXPECT_TRUE(errorOf([&] { form.SaveReport(u("page.doc")); }).contains(u("page.doc")));
        },
        nameFile(nowhere));
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages[0].contains(nowhere)) << messages[0].toStdString();
}

TEST(StatisticsWindow, SavesAndPrintsTheFiguresBelowTheText)
{
    Fitted fitted = scatteredFit(20, 2);
    TStatisticsForm form;
    form.Load(fitted.table);
    const QTemporaryDir directory;
    const auto saved = [&](const char *name) {
        form.SaveReport(directory.filePath(u(name)));
        return contentOf(directory.filePath(u(name)));
    };
    EXPECT_EQ(saved("page.html").count("<svg "), 13);
    EXPECT_FALSE(saved("page.txt").contains("svg"));
    QBuffer pages;
    ASSERT_TRUE(pages.open(QIODevice::WriteOnly));
    {
        QPdfWriter writer(&pages);
        form.PrintDocument(writer);
    }
    EXPECT_GT(pages.data().count("/Type /Page\n"), 4);
}

TEST(StatisticsWindow, PrintsTheDocumentAsText)
{
    Fitted fitted = scatteredFit(20, 2);
    TStatisticsForm form;
    form.Load(fitted.table);
    QBuffer pages;
    ASSERT_TRUE(pages.open(QIODevice::WriteOnly));
    {
        QPdfWriter writer(&pages);
        form.PrintDocument(writer);
    }
    EXPECT_TRUE(pages.data().startsWith("%PDF"));
    EXPECT_TRUE(pages.data().contains("/Font")); // letters, not a picture of them
    EXPECT_FALSE(pages.data().contains("/Subtype /Image"));
}

TEST(StatisticsWindow, WithoutAPrinterPrintsToAFile)
{
    if (QPrinter(QPrinter::HighResolution).outputFormat() == QPrinter::NativeFormat)
        GTEST_SKIP() << "there is a printer";
    Fitted fitted = scatteredFit(20, 2);
    const QTemporaryDir directory;
    const QString pdf = directory.filePath(u("printed.pdf"));
    showTo(
        fitted.table, [](TStatisticsForm &form) { press(form, Qt::Key_P); }, nameFile(pdf));
    EXPECT_TRUE(contentOf(pdf).startsWith("%PDF"));
}

TEST(StatisticsWindow, F1TellsTheKeys)
{
    Fitted fitted = scatteredFit(20, 2);
    const QStringList messages = showTo(fitted.table, [](TStatisticsForm &form) { press(form, Qt::Key_F1, {}); });
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages[0].contains(u("Ctrl+P")));
    EXPECT_TRUE(messages[0].contains(u("Ctrl+S saves the figure that is shown")));
}

TEST(StatisticsWindow, FollowsTheColoursOfTheApplication)
{
    const QPalette before = QApplication::palette();
    QPalette dark(QColor(0x30, 0x30, 0x30), QColor(0x2b, 0x2b, 0x2b));
    dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
    dark.setColor(QPalette::Text, Qt::white);
    Fitted fitted = scatteredFit(20, 2);
    showTo(fitted.table, [&dark](TStatisticsForm &form) {
        form.SetPageIndex(0);
        const auto lightness = [&form](bool most) {
            const QImage image = form.Summary().viewport()->grab().toImage();
            int found = most ? 0 : 255;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    const int one = image.pixelColor(x, y).lightness();
                    found = most ? std::max(found, one) : std::min(found, one);
                }
            }
            return found;
        };
        EXPECT_LT(lightness(false), 60); // dark letters on a light page
        QApplication::setPalette(dark);
        QApplication::processEvents();
        EXPECT_EQ(form.Summary().viewport()->grab().toImage().pixelColor(1, 1), QColor(0x1e, 0x1e, 0x1e));
        EXPECT_GT(lightness(true), 200); // light letters
    });
    QApplication::setPalette(before);
}

TEST(StatisticsWindow, ItsPagesNeverScrollSideways)
{
    Fitted fitted = scatteredFit(200, 10);
    showTo(fitted.table, [](TStatisticsForm &form) {
        TPageView *const pages[] = {&form.Summary(), &form.Diagnostics()};
        for (const int width : {1200, 760, 560, 1200}) {
            form.resize(width, 600);
            for (int page = 0; page < 2; ++page) {
                form.SetPageIndex(page);
                QApplication::processEvents();
                EXPECT_EQ(pages[page]->horizontalScrollBar()->maximum(), 0) << width;
            }
            const auto tables = form.Summary().toHtml().count(u("<table"));
            EXPECT_EQ(tables > 2, width == 560) << tables << " tables at " << width;
        }
        form.SetPageIndex(0);
        press(form, Qt::Key_C);
        EXPECT_EQ(QGuiApplication::clipboard()->text(), nuvo::pageText(form.Summary().Page(), 100));
    });
}

TEST(StatisticsWindow, HasTheSizeThatItIsGivenAndCanBeSmall)
{
    Fitted fitted = scatteredFit(20, 2);
    showTo(fitted.table, [](TStatisticsForm &form) {
        EXPECT_LE(form.minimumSizeHint().width(), 640);
        EXPECT_LE(form.minimumSizeHint().height(), 480);
        form.SetPageIndex(2);
        const int before = form.Observations().width();
        form.resize(form.width() + 200, form.height() + 100);
        EXPECT_EQ(form.Observations().width(), before + 200);
    });
}

TEST(StatisticsWindow, EverythingThatCanHaveTheFocusHasAName)
{
    Fitted fitted = scatteredFit(20, 2);
    showTo(fitted.table, [](TStatisticsForm &form) {
        for (const QWidget *widget : form.findChildren<QWidget *>()) {
            const bool known = widget->inherits("QTextBrowser") || widget->inherits("QTableView") ||
                               widget->inherits("QTabWidget") || widget->inherits("QComboBox");
            if (known) {
                EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->metaObject()->className();
            }
            const auto *button = qobject_cast<const QAbstractButton *>(widget);
            if (button != nullptr && !button->objectName().isEmpty() && !button->objectName().startsWith(u("qt_"))) {
                EXPECT_FALSE(button->text().isEmpty() && button->accessibleName().isEmpty())
                    << button->objectName().toStdString();
            }
        }
    });
}

TEST(StatisticsWindow, ShowsAnExactFit)
{
    Fitted fitted(12, controlNames(1), [](int i, int j) { return j == 0 ? 2.0 * i + 1 : i; });
    showTo(fitted.table, [](TStatisticsForm &form) {
        for (int page = 0; page < 4; ++page) {
            form.SetPageIndex(page);
            EXPECT_FALSE(form.grab().isNull());
        }
        EXPECT_EQ(form.Observations().View().model()->rowCount(), 12);
        EXPECT_FALSE(summary(form).contains(u("nan")));
    });
}

TEST(StatisticsWindow, ShowsWhatCouldNotBeFitted)
{
    Fitted fitted(3, controlNames(2), scattered); // no degrees of freedom
    showTo(fitted.table, [](TStatisticsForm &form) {
        for (int page = 0; page < 4; ++page) {
            form.SetPageIndex(page);
            EXPECT_FALSE(form.grab().isNull());
        }
        EXPECT_FALSE(summary(form).isEmpty());
        EXPECT_FALSE(summary(form).contains(u("nan")));
    });
    TMLRTable never;
    showTo(never, [](TStatisticsForm &form) {
        EXPECT_FALSE(summary(form).isEmpty());
        EXPECT_TRUE(form.Diagnostics().toPlainText().contains(u("There is no fit to look into.")));
        EXPECT_EQ(form.Observations().View().model()->rowCount(), 0);
        EXPECT_TRUE(form.FiguresPage().Figures().empty());
        for (int page = 0; page < 4; ++page) {
            form.SetPageIndex(page);
            press(form, Qt::Key_C);
        }
    });
}

TEST(StatisticsWindow, HoldsTwoThousandFiveHundredObservations)
{
    Fitted fitted = scatteredFit(2500, 10);
    showTo(fitted.table, [](TStatisticsForm &form) {
        EXPECT_EQ(form.Observations().View().model()->rowCount(), 2500);
        form.FiguresPage().SetSelected({});
        form.SetPageIndex(3);
        press(form, Qt::Key_Home, {});
        EXPECT_EQ(form.Observations().Selected().size(), 1U);
    });
}

TEST(StatisticsWindow, OutlivesItsRegression)
{
    auto fitted = std::make_unique<Fitted>(12, controlNames(2), scattered);
    const Person person([&](QDialog &dialog) {
        fitted.reset();
        auto &form = dynamic_cast<TStatisticsForm &>(dialog);
        form.SetPageIndex(2);
        EXPECT_EQ(form.Observations().View().model()->rowCount(), 12);
        form.Copy();
        dialog.close();
    });
    fitted->table.ShowStatistics();
}

TEST(StatisticsWindow, ThereIsOneAtATime)
{
    Fitted fitted = scatteredFit(12, 2);
    showTo(fitted.table, [&fitted](TStatisticsForm &) {
        fitted.table.ShowStatistics(); // nobody meets a second dialog
    });
}

TEST(StatisticsWindow, WithoutAnybodyInFrontItDoesNotWait)
{
    Fitted fitted = scatteredFit(12, 2);
    fitted.table.ShowStatistics();
}

TEST(ReportWindow, OpensTheStatisticsByLinkKeysAndMenu)
{
    Fitted fitted = scatteredFit(20, 2);
    int seen = 0;
    const auto look = [&seen](QDialog &dialog) {
        EXPECT_NE(qobject_cast<TStatisticsForm *>(&dialog), nullptr);
        ++seen;
        dialog.close();
    };
    showReport(
        fitted,
        [](TRegressionOutputForm &form) {
            click(form, "lnkStatistics");
            const auto activate = [&form] {
                form.activateWindow();
                ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
            };
            activate();
            QTest::keyClick(&form, Qt::Key_F2);
            activate();
            QTest::keyClick(&form, Qt::Key_T, Qt::ControlModifier);
            chooseReport(form, "Statistics1");
        },
        look, look, look, look);
    EXPECT_EQ(seen, 4);
}

TEST(ReportWindow, TheLinkStandsInFreeRoomAndIsNotPrinted)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(fitted, [](TRegressionOutputForm &form) {
        const auto *link = part<QPushButton>(form, "lnkStatistics");
        EXPECT_TRUE(form.rect().contains(link->geometry()));
        for (const char *other :
             {"TopPanel", "Panel1", "Panel2", "bbtnPrintForm", "bbtnPlots", "bbtnShowMatrix", "bbtnClose"})
            EXPECT_FALSE(part(form, other)->geometry().intersects(link->geometry())) << other;
        const QImage printed = form.PrintImage();
        EXPECT_TRUE(link->isVisible());
        const QPoint middle = link->geometry().center() * int(printed.devicePixelRatio());
        for (int y = -20; y <= 20; ++y) {
            for (int x = -40; x <= 40; ++x)
                ASSERT_EQ(printed.pixel(middle + QPoint(x, y)), qRgb(255, 255, 255));
        }
    });
}
