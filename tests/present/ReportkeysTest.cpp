// SPDX-License-Identifier: MIT
#include "present/Mlrplot.h"
#include "present/Reportwindow.h"

#include <QApplication>
#include <QClipboard>
#include <QPushButton>
#include <QTemporaryDir>

// Keys and hints of the report window beside the underlined letters of its captions.

TEST(ReportWindow, PrintAndPlotsHaveAKeyEachBesideTheLetterThatTheyShare)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(
        fitted,
        [](TRegressionOutputForm &form) {
            EXPECT_EQ(part<QPushButton>(form, "bbtnPrintForm")->shortcut(), QKeySequence(Qt::ALT | Qt::Key_P));
            EXPECT_EQ(part<QPushButton>(form, "bbtnPlots")->shortcut(), QKeySequence(Qt::ALT | Qt::Key_P));
            QTest::keyClick(&form, Qt::Key_P, Qt::ControlModifier);
            QMenu *menu = part<QMenu>(form, "PrintPopup");
            EXPECT_TRUE(menu->isVisible());
            QTest::keyClick(menu, Qt::Key_Escape);
            QTest::keyClick(&form, Qt::Key_F3);
        },
        [&fitted](QDialog &plots) {
            EXPECT_EQ(fitted.table.FPlotForm, &plots);
            plots.close();
        });
}

TEST(ReportWindow, ItsButtonsHaveHintsThatTellTheirKeys)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(fitted, [](TRegressionOutputForm &form) {
        for (const auto &[button, key] :
             {std::pair("bbtnPrintForm", "Ctrl+P"), std::pair("bbtnPrintForm", "Ctrl+S"),
              std::pair("bbtnPlots", "F3"), std::pair("bbtnShowMatrix", "Alt+M"), std::pair("bbtnClose", "Escape"),
              std::pair("lnkStatistics", "F2"), std::pair("Panel1", "Ctrl+S")})
            EXPECT_TRUE(part(form, button)->toolTip().contains(QLatin1String(key))) << button;
    });
}

TEST(ReportWindow, CtrlSSavesTheReportAndCtrlCCopiesIt)
{
    Fitted fitted = scatteredFit(20, 2);
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("report.txt"));
    showReport(
        fitted,
        [](TRegressionOutputForm &form) {
            QApplication::clipboard()->clear();
            part(form, "bbtnClose")->setFocus();
            QTest::keyClick(&form, Qt::Key_C, Qt::ControlModifier);
            EXPECT_TRUE(QApplication::clipboard()->text().contains(QLatin1String("Number of observations")));
            QTest::keyClick(&form, Qt::Key_S, Qt::ControlModifier);
        },
        nameFile(file));
    EXPECT_TRUE(contentOf(file).contains("Number of observations"));
}

TEST(ReportWindow, TheFocusOfItsButtonsStandsOutFromThem)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(fitted, [](TRegressionOutputForm &form) {
        for (const char *name : {"bbtnPrintForm", "bbtnPlots", "bbtnShowMatrix", "bbtnClose"}) {
            const QPalette &palette = part(form, name)->palette();
            EXPECT_GT(std::abs(palette.color(QPalette::Highlight).lightness() -
                               palette.color(QPalette::Button).lightness()),
                      100)
                << name;
        }
    });
}
