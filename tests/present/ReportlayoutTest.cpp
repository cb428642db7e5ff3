// SPDX-License-Identifier: MIT
#include "present/Mlrplot.h"
#include "present/Reportwindow.h"
#include "support/Darkpalette.h"

#include <QApplication>
#include <QPushButton>
#include <QScopeGuard>

#include <cstdlib>

TEST(ReportWindow, HasItsControlsInTheirPlaces)
{
    Fitted fitted = scatteredFit(20, 3);
    showReport(fitted, [](TRegressionOutputForm &form) {
        EXPECT_EQ(form.windowTitle(), QStringLiteral("Multiple Regression Analysis Report"));
        EXPECT_EQ(form.size(), QSize(486, 451));
        EXPECT_EQ(form.minimumSize(), form.maximumSize());
        EXPECT_TRUE(form.font().bold());
        EXPECT_EQ(form.font().pixelSize(), 11);
        const struct
        {
            const char *name;
            QRect place;
        } places[] = {{"TopPanel", {0, 0, 486, 25}},
                      {"Header1", {0, 0, 486, 25}},
                      {"Panel1", {5, 30, 475, 370}},
                      {"labDepVarName", {4, 0, 210, 31}},
                      {"labIndepVarNames", {213, 0, 240, 125}},
                      {"labDataCount", {2, 29, 210, 15}},
                      {"labDOF", {2, 45, 210, 68}},
                      {"labMean", {2, 106, 98, 147}},
                      {"labStdDev", {104, 106, 98, 147}},
                      {"labCoeffs", {213, 130, 95, 129}},
                      {"labStdErrCoeff", {309, 130, 98, 137}},
                      {"labtValue", {397, 130, 70, 135}},
                      {"labSumSquare", {4, 251, 134, 14}},
                      {"labSSR", {16, 266, 196, 14}},
                      {"labSSE", {16, 280, 196, 14}},
                      {"labSST", {16, 295, 196, 14}},
                      {"labsSquared", {4, 315, 208, 14}},
                      {"labRsqr", {4, 335, 208, 14}},
                      {"labFStat", {4, 350, 208, 17}},
                      {"Matrix", {228, 266, 231, 97}},
                      {"bbtnPrintForm", {39, 402, 87, 28}},
                      {"bbtnPlots", {146, 402, 87, 28}},
                      {"bbtnShowMatrix", {252, 402, 87, 28}},
                      {"bbtnClose", {359, 402, 87, 28}},
                      {"Panel2", {0, 434, 486, 17}}};
        for (const auto &[name, place] : places)
            EXPECT_EQ(part(form, name)->geometry(), place) << name;
        EXPECT_EQ(part(form, "Label1")->pos(), QPoint(10, 312));
        EXPECT_EQ(part(form, "labSquared1")->pos(), QPoint(10, 328));
        EXPECT_EQ(part(form, "Label1")->font().pixelSize(), 8);
        EXPECT_EQ(text(form, "labSumSquare"), QStringLiteral("Sum of Squares"));
        EXPECT_EQ(part<QPushButton>(form, "bbtnPrintForm")->text(), QStringLiteral("&Print"));
        EXPECT_EQ(part<QPushButton>(form, "bbtnPlots")->text(), QStringLiteral("&Plots"));
        EXPECT_EQ(part<QPushButton>(form, "bbtnShowMatrix")->text(), QStringLiteral("&Matrix"));
        EXPECT_TRUE(part<QPlainTextEdit>(form, "Matrix")->isReadOnly());
        EXPECT_EQ(part(form, "Panel2")->palette().color(QPalette::WindowText), QColor(0x80, 0, 0));
    });
}

TEST(ReportWindow, FourControlsHave8PointLettersAndFive7)
{
    Fitted four = scatteredFit(30, 4);
    showReport(four, [](TRegressionOutputForm &form) {
        EXPECT_EQ(form.MatrixSize(), 7);
        for (const char *label : kLabels)
            EXPECT_EQ(fontPixels(form, label), 11) << label;
        EXPECT_EQ(fontPixels(form, "Matrix"), 11);
    });
    Fitted five = scatteredFit(30, 5);
    showReport(five, [](TRegressionOutputForm &form) {
        EXPECT_EQ(form.MatrixSize(), 8);
        for (const char *label : kLabels)
            EXPECT_EQ(fontPixels(form, label), 9) << label;
        EXPECT_EQ(fontPixels(form, "Matrix"), 9);
    });
}

TEST(ReportWindow, StandsInTheMiddleOfTheScreenAndSoDoesTheMatrix)
{
    QWidget behind; // in a corner, and in front of nothing
    behind.setGeometry(0, 0, 60, 40);
    behind.show();
    behind.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&behind));
    const auto inTheMiddle = [](const QWidget &window) {
        const QRect screen = window.screen()->availableGeometry();
        return (QRect(window.pos(), window.size()).center() - screen.center()).manhattanLength() <= 2;
    };
    Fitted fitted = scatteredFit(20, 2);
    showReport(
        fitted,
        [&](TRegressionOutputForm &form) {
            EXPECT_EQ(form.parentWidget(), &behind);
            EXPECT_TRUE(inTheMiddle(form));
            form.move(0, 0);
            chooseMatrix(form, "Zoom1");
        },
        [&](QDialog &matrix) {
            EXPECT_TRUE(inTheMiddle(matrix));
            matrix.close();
        });
}

TEST(ReportWindow, HasTheDesktopsColoursAndLettersThatStandOutFromThem)
{
    const QPalette before = QApplication::palette();
    const auto restore = qScopeGuard([&before] { QApplication::setPalette(before); });
    const auto readable = [](const QWidget &window) {
        EXPECT_EQ(window.palette().color(QPalette::Window), QApplication::palette().color(QPalette::Window));
        for (const QWidget *widget : window.findChildren<QWidget *>()) {
            if (qobject_cast<const QMenu *>(widget) != nullptr || widget->isWindow())
                continue;
            const QPalette &palette = widget->palette();
            EXPECT_GT(std::abs(palette.color(widget->foregroundRole()).lightness() -
                               palette.color(widget->backgroundRole()).lightness()),
                      100)
                << widget->objectName().toStdString();
        }
    };
    for (const QPalette &desktop : {before, darkPalette()}) {
        QApplication::setPalette(desktop);
        Fitted fitted = scatteredFit(20, 2);
        showReport(
            fitted,
            [&](TRegressionOutputForm &form) {
                readable(form);
                EXPECT_EQ(part(form, "Panel1")->palette().color(QPalette::Window), QColor(Qt::white)) << "paper";
                EXPECT_EQ(part(form, "labMean")->palette().color(QPalette::WindowText), QColor(Qt::black));
                chooseMatrix(form, "Zoom1");
                click(form, "bbtnPlots");
            },
            [&](QDialog &matrix) {
                readable(matrix);
                matrix.close();
            },
            [&](QDialog &plots) {
                readable(plots);
                plots.close();
            });
    }
}

TEST(ReportWindow, TheTwosStandBehindAndAboveTheirLetters)
{
    for (const int m : {3, 6}) { // letters of 8 and of 7 points
        Fitted fitted = scatteredFit(30, m);
        showReport(fitted, [](TRegressionOutputForm &form) {
            for (const auto &[two, letter] :
                 {std::pair("Label1", "labsSquared"), std::pair("labSquared1", "labRsqr")}) {
                const auto *label = part<QLabel>(form, letter);
                const auto *raised = part<QLabel>(form, two);
                const QMargins margins = raised->contentsMargins();
                const QPoint digit = raised->pos() + QPoint(margins.left(), margins.top());
                const int behind = label->x() + label->fontMetrics().horizontalAdvance(label->text().left(1));
                EXPECT_GE(digit.x(), behind) << two;
                EXPECT_LE(digit.x(), behind + 2) << two;
                EXPECT_EQ(label->y() - digit.y(), 3) << two << ": both as high above their letter";
                EXPECT_LE(digit.x() + raised->fontMetrics().horizontalAdvance(u'2'),
                          label->x() + label->fontMetrics().horizontalAdvance(label->text().section(u':', 0, 0)) + 1)
                    << two << " runs into the colon";
            }
        });
    }
}

TEST(ReportWindow, TheLargestFitIsShown)
{
    Fitted fitted = scatteredFit(2501, 10);
    showReport(
        fitted,
        [](TRegressionOutputForm &form) {
            EXPECT_EQ(text(form, "labDataCount"), QStringLiteral("Number of observations: 2500"));
            expectNothingIsCut(form);
            click(form, "bbtnPlots");
        },
        [](QDialog &dialog) {
            click(dialog, "ECDFPlotBtn");
            EXPECT_EQ(dynamic_cast<TMLRPlotForm &>(dialog).CurrentPlot().dots.size(), 2500U);
            EXPECT_TRUE(
                part(dialog, "PlotImage")
                    ->accessibleDescription()
                    .startsWith(QLatin1String("Empirical Cumulative Distribution Function Plot: 2500 dots, ")));
            dialog.close();
        });
}

TEST(ReportWindow, NothingIsCutWithLongNamesAndAnyNumberOfControls)
{
    for (const int m : {0, 4, 5, 10}) {
        QStringList names;
        for (int j = 1; j <= m; ++j)
            names += QStringLiteral("AVERAGE_TEMPERATURE_OF_STATION_%1").arg(j);
        for (const double factor : {1.0, 123456.0}) {
            Fitted fitted(
                30, names, [&](int i, int j) { return scattered(i, j) * factor; },
                QStringLiteral("TOTAL_CONSUMPTION_OF_ENERGY"));
            fitted.table.SetDescription(QStringLiteral("What the households of a district consume in a month, "
                                                       "against temperatures measured around it by some stations"));
            fitted.table.SetReportMessage(QStringLiteral("A message that is longer than the footer is wide, so "
                                                         "that it has to break into two lines at one of its blanks"));
            showReport(fitted, [](TRegressionOutputForm &form) { expectNothingIsCut(form); });
        }
    }
}

TEST(ReportWindow, AWindowWiderThanTheScreenScrolls)
{
    Fitted fitted(20, {QString(300, u'W')}, scattered);
    showReport(fitted, [](TRegressionOutputForm &form) {
        EXPECT_LE(form.width(), form.screen()->availableSize().width());
        EXPECT_GT(part(form, "Panel1Contents")->width(), form.width());
        const auto *label = part<QLabel>(form, "labIndepVarNames");
        EXPECT_GE(label->width(), room(*label).width());
    });
}

TEST(ReportWindow, FitsWithoutFiguresAreShown)
{
    Fitted exact = scatteredFit(3, 2); // n = m + 1
    showReport(exact, [](TRegressionOutputForm &form) { expectNothingIsCut(form); });
    Fitted one = scatteredFit(1, 1);
    showReport(one, [](TRegressionOutputForm &form) { expectNothingIsCut(form); });
    const Person person([](QDialog &dialog) {
        EXPECT_EQ(text(dialog, "labDataCount"), QStringLiteral("Number of observations: 0"));
        dialog.close();
    });
    TMLRTable never;
    never.Output();
}
