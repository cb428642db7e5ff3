// SPDX-License-Identifier: MIT
#include "present/Mlroutpt.h"

#include "present/Mlrplot.h"
#include "present/Report.h"
#include "present/Reportwindow.h"

#include <QApplication>
#include <QClipboard>
#include <QPushButton>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTimer>

TEST(ReportWindow, JoinsCaptionsAndBlocks)
{
    Fitted fitted = scatteredFit(20, 3);
    fitted.table.SetDescription(QStringLiteral("A problem"));
    const nuvo::ReportBlocks blocks = nuvo::reportBlocks(fitted.table);
    const nuvo::WindowTexts window = nuvo::windowTexts(blocks);
    showReport(fitted, [&](TRegressionOutputForm &form) {
        const struct
        {
            const char *label;
            const char *caption;
            QString block;
        } texts[] = {{"labDepVarName", "Dependent Variable: ", blocks.DepVar},
                     {"labIndepVarNames", "Independent Variables: ", blocks.IndepVars},
                     {"labDataCount", "Number of observations: ", blocks.DataCount},
                     {"labDOF", "Degrees of Freedom: ", blocks.DOF},
                     {"labCoeffs", "Coefficients: ", blocks.Coeffs},
                     {"labFStat", "F Statistic", blocks.FStat},
                     {"labtValue", "t* Values", blocks.TValues},
                     {"labSSR", "Regression SSR : ", blocks.SSR},
                     {"labSSE", "Residual      SSE : ", blocks.SSE},
                     {"labSST", "Total            SST : ", window.SST},
                     {"labRsqr", "R  : ", window.RSquared},
                     {"labsSquared", "s   : ", blocks.SSquared},
                     {"labMean", "Mean: ", blocks.Means},
                     {"labStdDev", "Std. Dev. (Data): ", blocks.StdDevs},
                     {"labStdErrCoeff", "Std. Err. (Coeff): ", blocks.StdErrs}};
        for (const auto &[label, caption, block] : texts)
            EXPECT_EQ(text(form, label), DisplayLines(QLatin1String(caption) + block)) << label;
        EXPECT_EQ(memo(form), blocks.CovarianceLines.join(u'\n'));
        const QStringList sections = part<THeader>(form, "Header1")->Sections();
        ASSERT_EQ(sections.size(), 3);
        EXPECT_EQ(sections[0], QStringLiteral("Data: Data"));
        EXPECT_EQ(sections[1], QStringLiteral("A problem"));
        EXPECT_FALSE(sections[2].isEmpty());
        EXPECT_EQ(text(form, "TopPanel"), sections.join(QStringLiteral("  ")));
        EXPECT_EQ(form.VisibleMatrix(), QStringLiteral("Covariance"));
        EXPECT_EQ(form.MatrixSize(), 6);
    });
}

TEST(ReportWindow, WorksOutSstAndRSquaredFromTheRoundedTexts)
{
    TRegressionOutputForm form;
    nuvo::ReportBlocks blocks;
    blocks.SSE = QStringLiteral("0.004");
    blocks.SSR = QStringLiteral("0.001");
    form.Fill(nullptr, QString(), blocks);
    EXPECT_EQ(text(form, "labSST"), QStringLiteral("Total            SST : 0.005"));
    EXPECT_EQ(text(form, "labRsqr"), QStringLiteral("R  : 0.200"));
    EXPECT_EQ(part<THeader>(form, "Header1")->Sections()[0], QStringLiteral("Data: "));
}

TEST(ReportWindow, AQueryIsHeadedByTheFirstLineOfItsStatement)
{
    Fitted fitted = scatteredFit(20, 2);
    Fitted::run(fitted.query, fitted.query);
    const Person person([](QDialog &dialog) {
        EXPECT_EQ(part<THeader>(dialog, "Header1")->Sections()[0], QStringLiteral("Data: SELECT * FROM Data"));
        dialog.close();
    });
    fitted.query.Output();
}

TEST(ReportWindow, AnEmptyMessageKeepsTheFooterAndAnotherReplacesItInTheZoomToo)
{
    Fitted fitted = scatteredFit(20, 2);
    QString designFooter;
    showReport(fitted, [&](TRegressionOutputForm &form) { designFooter = text(form, "Panel2"); });
    EXPECT_FALSE(designFooter.isEmpty());

    const QString message(100, u'm');
    fitted.table.SetReportMessage(message);
    showReport(
        fitted,
        [&](TRegressionOutputForm &form) {
            EXPECT_EQ(text(form, "Panel2"), message);
            chooseMatrix(form, "Zoom1");
        },
        [](QDialog &zoom) {
            EXPECT_EQ(text(zoom, "Panel2"), QString(78, u'm') + QLatin1String("..."));
            click(zoom, "BitBtn1");
        });
    fitted.table.SetReportMessage(QStringLiteral("short"));
    showReport(
        fitted, [&](TRegressionOutputForm &form) { chooseMatrix(form, "Zoom1"); },
        [](QDialog &zoom) {
            EXPECT_EQ(text(zoom, "Panel2"), QStringLiteral("short..."));
            click(zoom, "BitBtn1");
        });
}

TEST(ReportWindow, CovarianceAfterCorrelationLeavesTheCorrelationLinesAndZoomsTheCovariance)
{
    Fitted fitted = scatteredFit(20, 2);
    const nuvo::ReportBlocks blocks = nuvo::reportBlocks(fitted.table);
    const QString correlation = blocks.CorrelationLines.join(u'\n');
    showReport(
        fitted,
        [&](TRegressionOutputForm &form) {
            EXPECT_EQ(memo(form), blocks.CovarianceLines.join(u'\n'));
            chooseMatrix(form, "Correlation1");
            EXPECT_EQ(memo(form), correlation);
            EXPECT_EQ(form.VisibleMatrix(), QStringLiteral("Correlation"));
            chooseMatrix(form, "Zoom1");
            chooseMatrix(form, "Covariance1");
            EXPECT_EQ(memo(form), correlation);
            EXPECT_EQ(form.VisibleMatrix(), QStringLiteral("Covariance"));
            chooseMatrix(form, "Zoom1");
        },
        [&](QDialog &zoom) {
            EXPECT_EQ(part<THeader>(zoom, "Header1")->Sections()[0], QStringLiteral("Correlation Matrix"));
            EXPECT_EQ(memo(zoom, "Memo1").section(u'\n', 1), correlation.section(u'\n', 1));
            zoom.accept();
        },
        [&](QDialog &zoom) {
            EXPECT_EQ(part<THeader>(zoom, "Header1")->Sections()[0], QStringLiteral("Covariance Matrix"));
            EXPECT_EQ(memo(zoom, "Memo1").section(u'\n', 1), blocks.CovarianceLines.join(u'\n').section(u'\n', 1));
            zoom.accept();
        });
}

TEST(ReportWindow, MenusOpenAboveTheMiddleOfTheirButtonAndOnTheRightMouseButton)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(fitted, [](TRegressionOutputForm &form) {
        form.move(30, 20);
        for (const auto &[button, menuName] :
             {std::pair("bbtnShowMatrix", "MatrixPopup"), std::pair("bbtnPrintForm", "PrintPopup")}) {
            click(form, button);
            QMenu *menu = part<QMenu>(form, menuName);
            EXPECT_EQ(menu->pos(), form.mapToGlobal(part(form, button)->pos() + QPoint(43, -28))) << menuName;
            QTest::keyClick(menu, Qt::Key_Escape);
        }
        for (const auto &[control, menuName] :
             {std::pair("bbtnPlots", "PrintPopup"), std::pair("bbtnPrintForm", "PrintPopup"),
              std::pair("Matrix", "MatrixPopup"), std::pair("labMean", "ReportPopup")}) {
            QWidget *widget = part(form, control);
            if (auto *area = qobject_cast<QAbstractScrollArea *>(widget))
                widget = area->viewport();
            rightClick(widget, QPoint(5, 5));
            QMenu *menu = part<QMenu>(form, menuName);
            EXPECT_TRUE(menu->isVisible()) << control;
            QTest::keyClick(menu, Qt::Key_Escape);
        }
    });
}

TEST(ReportWindow, MenusHaveTheirItemsAndLetters)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(fitted, [](TRegressionOutputForm &form) {
        const auto items = [&form](const char *menu) {
            QStringList texts;
            for (const QAction *action : part<QMenu>(form, menu)->actions())
                texts += action->isSeparator() ? QStringLiteral("-") : action->text();
            return texts.join(u'|');
        };
        EXPECT_EQ(items("MatrixPopup"), QStringLiteral("Co&variance|Cor&relation|-|&Zoom..."));
        EXPECT_EQ(items("PrintPopup"), QStringLiteral("S&caling|&Setup...|-|&Print"));
        EXPECT_EQ(items("Size1"), QStringLiteral("&None|&Proportional|To &Fit"));
        click(form, "bbtnShowMatrix");
        QTest::keyClick(part<QMenu>(form, "MatrixPopup"), Qt::Key_R);
        EXPECT_EQ(form.VisibleMatrix(), QStringLiteral("Correlation"));
    });
}

TEST(ReportWindow, PlotsOpenFromItsButton)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(
        fitted, [](TRegressionOutputForm &form) { click(form, "bbtnPlots"); },
        [&fitted](QDialog &plots) {
            EXPECT_EQ(fitted.table.FPlotForm, &plots);
            QTest::keyClick(&plots, Qt::Key_Escape);
        });
}

TEST(ReportWindow, UsedAloneItOpensThePlotsOfItsRegression)
{
    Fitted fitted = scatteredFit(20, 2);
    Fitted::run(fitted.query, fitted.query);
    const auto openFor = [](TRegression &regression) {
        TRegressionOutputForm form;
        form.Fill(&regression, QString(), nuvo::reportBlocks(regression));
        form.show();
        click(form, "bbtnPlots");
    };
    const Person person(
        [&](QDialog &plots) {
            EXPECT_EQ(fitted.table.FPlotForm, &plots);
            plots.close();
        },
        [&](QDialog &plots) {
            EXPECT_EQ(fitted.query.FPlotForm, &plots);
            plots.close();
        });
    openFor(fitted.table);
    openFor(fitted.query);
}

TEST(ReportWindow, UsedAloneWithoutARegressionItSavesAndCopiesItsTexts)
{
    TRegressionOutputForm form;
    nuvo::ReportBlocks blocks;
    blocks.Coeffs = QStringLiteral("\n\r     B0: 1.0000\n\r");
    blocks.SSE = QStringLiteral("0.004");
    blocks.SSR = QStringLiteral("0.001");
    form.Fill(nullptr, QStringLiteral("A problem"), blocks);
    form.show();
    click(form, "bbtnPlots"); // nothing to show
    const QTemporaryDir directory;
    const QString file = directory.filePath(QStringLiteral("r.txt"));
    form.SaveReport(file);
    const QString saved = QString::fromUtf8(contentOf(file));
    for (const char *line : {"A problem\n", "Coefficients: \n     B0: 1.0000\n", "SSE : 0.004\n", "R² : 0.200\n"})
        EXPECT_TRUE(saved.contains(QString::fromUtf8(line))) << line << saved.toStdString();
    chooseReport(form, "CopyReport1");
    EXPECT_EQ(QApplication::clipboard()->text(), saved);
}

TEST(ReportWindow, EscapeReturnAndTheButtonCloseIt)
{
    Fitted fitted = scatteredFit(20, 2);
    const Person person([](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
                        [](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Return); },
                        [](QDialog &dialog) { click(dialog, "bbtnClose"); });
    for (int i = 0; i < 3; ++i)
        fitted.table.Output();
}

TEST(ReportWindow, TabGoesThroughTheButtonsToTheMatrix)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(fitted, [](TRegressionOutputForm &form) {
        form.activateWindow();
        part(form, "bbtnPrintForm")->setFocus();
        for (const char *next : {"bbtnPlots", "bbtnShowMatrix", "bbtnClose", "Matrix", "bbtnPrintForm"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            EXPECT_EQ(QApplication::focusWidget()->objectName(), QLatin1String(next));
        }
        for (const char *name : {"bbtnPrintForm", "bbtnPlots", "bbtnShowMatrix", "bbtnClose", "Matrix", "Header1"})
            EXPECT_FALSE(part(form, name)->accessibleName().isEmpty()) << name;
    });
}

TEST(ReportWindow, EveryControlHasANameForScreenReaders)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(fitted, [](TRegressionOutputForm &form) {
        for (const char *name : {"bbtnPrintForm", "bbtnPlots", "bbtnShowMatrix", "bbtnClose"}) {
            EXPECT_FALSE(part(form, name)->accessibleName().isEmpty()) << name;
            EXPECT_FALSE(part(form, name)->accessibleName().contains(u'&')) << name;
            EXPECT_FALSE(part(form, name)->accessibleDescription().isEmpty()) << name;
        }
        EXPECT_EQ(part(form, "Matrix")->accessibleName(), QStringLiteral("Covariance or correlation matrix"));
        EXPECT_TRUE(part(form, "Header1")->accessibleName().startsWith(QLatin1String("Data: Data; ")));
        for (const char *two : {"Label1", "labSquared1"})
            EXPECT_EQ(part(form, two)->accessibleName(), QStringLiteral("squared"));
    });
}

TEST(ReportWindow, LineEndsOfTheMessageCountInTheZoomsFooter)
{
    Fitted fitted = scatteredFit(20, 2);
    fitted.table.SetReportMessage(QString(75, u'm') + QLatin1String("\n\rxyz"));
    showReport(
        fitted,
        [&](TRegressionOutputForm &form) {
            EXPECT_EQ(text(form, "Panel2"), QString(75, u'm') + QLatin1String("\nxyz"));
            chooseMatrix(form, "Zoom1");
        },
        [](QDialog &zoom) {
            EXPECT_EQ(text(zoom, "Panel2"), QString(75, u'm') + QLatin1String("\nx..."));
            click(zoom, "BitBtn1");
        });
}

TEST(ReportWindow, TheFitMayGoWhileItIsOpen)
{
    auto fitted = std::make_unique<Fitted>(12, controlNames(2), scattered);
    const Person person([&](QDialog &dialog) {
        fitted.reset();
        click(dialog, "bbtnPlots"); // no plots to open any more
        chooseMatrix(dialog, "Correlation1");
        dialog.close();
    });
    fitted->table.Output();
}

TEST(ReportWindow, ClosingTwoHundredTimesLeavesNothing)
{
    Fitted fitted = scatteredFit(12, 2);
    for (int i = 0; i < 200; ++i)
        showReport(fitted, [](TRegressionOutputForm &form) { EXPECT_TRUE(form.isVisible()); });
    for (const QWidget *widget : QApplication::topLevelWidgets())
        EXPECT_EQ(qobject_cast<const TRegressionOutputForm *>(widget), nullptr);
}

TEST(ReportWindow, OpeningTwoHundredTimesWithItsPlotsAndMatrixLeavesNothing)
{
    Fitted fitted = scatteredFit(12, 2);
    const qsizetype before = QApplication::topLevelWidgets().size();
    for (int i = 0; i < 200; ++i) {
        showReport(
            fitted,
            [](TRegressionOutputForm &form) {
                click(form, "bbtnPlots");
                chooseMatrix(form, "Zoom1");
            },
            [](QDialog &plots) {
                click(plots, "ResidualvsInputBtn");
                plots.close();
            },
            [](QDialog &matrix) { matrix.close(); });
        ASSERT_TRUE(fitted.table.FPlotForm.isNull());
    }
    EXPECT_EQ(QApplication::topLevelWidgets().size(), before);
}

TEST(ReportWindow, TheApplicationMayQuitWhileReportAndPlotsAreOpen)
{
    Fitted fitted = scatteredFit(12, 2);
    bool bothWereOpen = false;
    // Real event loops, one in the other.
    SetModalRunner([&](QDialog &dialog) {
        if (qobject_cast<TRegressionOutputForm *>(&dialog) != nullptr)
            QTimer::singleShot(0, &dialog, [&dialog] { click(dialog, "bbtnPlots"); });
        else
            QTimer::singleShot(0, qApp, [&] {
                bothWereOpen =
                    fitted.table.FPlotForm->isVisible() && fitted.table.FPlotForm->parentWidget()->isVisible();
                QApplication::quit();
            });
        return dialog.exec();
    });
    const auto usual = qScopeGuard([] { SetModalRunner({}); });
    bool back = false;
    QTimer::singleShot(0, qApp, [&] {
        fitted.table.Output();
        back = true;
    });
    QApplication::exec();
    EXPECT_TRUE(bothWereOpen);
    EXPECT_TRUE(back);
    EXPECT_TRUE(fitted.table.FPlotForm.isNull());
    for (const QWidget *widget : QApplication::topLevelWidgets())
        EXPECT_FALSE(widget->isVisible()) << widget->objectName().toStdString();
}

TEST(ReportWindow, ThereIsOneAtATimeAndWithoutAnybodyItDoesNotWait)
{
    Fitted fitted = scatteredFit(12, 2);
    showReport(fitted, [&fitted](TRegressionOutputForm &) { fitted.table.Output(); });
    fitted.table.Output();
}
