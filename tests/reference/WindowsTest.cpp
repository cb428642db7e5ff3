// SPDX-License-Identifier: MIT
#include "design/model/Modelcheck.h"
#include "design/model/Modeldialog.h"
#include "design/model/Modeleditor.h"
#include "design/model/Modelfields.h"
#include "design/sql/Sqldialog.h"
#include "design/sql/Sqleditor.h"
#include "platform/Messages.h"
#include "present/Connectiondlg.h"
#include "present/Loadgage.h"
#include "present/Matrxdlg.h"
#include "present/Mlroutpt.h"
#include "present/Mlrplot.h"
#include "present/Optgauge.h"
#include "present/controls/Figuretable.h"
#include "present/controls/Gauge.h"
#include "present/controls/Headerbar.h"
#include "present/controls/Imagebox.h"
#include "present/figures/Figurespage.h"
#include "present/figures/Fitdata.h"
#include "present/statistics/Observationspage.h"
#include "present/statistics/Pageview.h"
#include "present/statistics/Statisticsform.h"
#include "reference/Fitted.h"
#include "select/Choice.h"
#include "select/Cvmain.h"
#include "select/Stepmain.h"
#include "select/choice/Choiceform.h"
#include "select/choice/Modelspage.h"
#include "select/choice/Stepspage.h"

#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

#include <gtest/gtest.h>

TEST(WindowExamples, PagesOnAFormOfOnesOwn)
{
    FittedLongley longley;
    //! [TSummaryPage]
    nuvo::Asked asked;
    asked.influence = true;
    const nuvo::Figures figures = nuvo::figures(longley, asked);
    QWidget form;
    auto *layout = new QVBoxLayout(&form);
    auto *summary = new TSummaryPage;
    auto *tests = new TDiagnosticsPage;
    auto *observations = new TObservationsPage;
    auto *plots = new TFiguresPage;
    for (QWidget *page : std::initializer_list<QWidget *>{summary, tests, observations, plots})
        layout->addWidget(page);
    summary->SetFigures(figures);
    tests->SetFigures(figures);
    observations->SetFigures(figures);
    plots->SetFigures(nuvo::fitFigures(nuvo::figureData(longley)));
    // A row that is selected is a marked point.
    QObject::connect(observations, &TObservationsPage::SelectionChanged,
                     [=] { plots->SetSelected(observations->Selected()); });
    //! [TSummaryPage]
    observations->View().selectRow(4);
    EXPECT_EQ(plots->Selected(), std::set<qint64>{5});
    EXPECT_TRUE(summary->toPlainText().contains("TOTEMP"));
    //! [TPageView]
    TPageView page;
    page.SetPage(nuvo::statisticsPage(figures));
    //! [TPageView]
    EXPECT_TRUE(page.toPlainText().contains("Analysis of variance"));
    //! [TFigureView]
    TFigureView view;
    view.SetFigure(nuvo::fitFigure(nuvo::figureData(longley), nuvo::FigureKind::ResidualByFitted));
    view.SetSelected({5});
    view.Zoom(2, view.rect().center());
    //! [TFigureView]
    EXPECT_EQ(view.Painter().Title().isEmpty(), false);
}

TEST(WindowExamples, WindowsOfAFit)
{
    FittedLongley longley;
    //! [TStatisticsForm]
    TStatisticsForm statistics; // longley.ShowStatistics() shows one and waits until it is closed
    statistics.Load(longley);
    statistics.SetPageIndex(3); // the figures
    statistics.show();
    //! [TStatisticsForm]
    EXPECT_EQ(statistics.PageIndex(), 3);
    //! [TRegressionOutputForm]
    TRegressionOutputForm report; // longley.Output() shows one and waits until it is closed
    const nuvo::Figures figures = nuvo::figures(longley);
    report.SetFigures(figures);
    report.Fill(&longley, "Employment", nuvo::reportBlocks(figures));
    const QImage picture = report.Picture();
    //! [TRegressionOutputForm]
    EXPECT_FALSE(picture.isNull());
    //! [TMLRPlotForm]
    TMLRPlotForm plots; // longley.ShowPlots() shows one and waits until it is closed
    plots.Load(longley);
    plots.ECDFPlotBtnClick();
    //! [TMLRPlotForm]
    EXPECT_FALSE(plots.grab().isNull());
    //! [TAnalysisMatrix]
    TAnalysisMatrix matrix; // what the report's button "Zoom" opens
    //! [TAnalysisMatrix]
    EXPECT_FALSE(matrix.isVisible());
}

TEST(WindowExamples, TheWindowOfAChoice)
{
    FittedLongley longley;
    SetMessageHandler([](const QString &, TMsgDlgType, unsigned, int) { return int(mrOk); });
    TOptimizeMLR search;
    search.SetTable(&longley);
    search.SetRule(TCorvane::Textbook);
    search.Run();
    //! [TChoiceForm]
    TChoiceForm window; // search.ShowChoice() shows one and waits until it is closed
    window.Load(search);
    window.show();
    //! [TChoiceForm]
    EXPECT_EQ(window.PageIndex(), 0);
    //! [TModelsPage]
    TModelsPage models; // the list of models on a form of one's own
    models.SetChoice(*search.Choice());
    models.SetSelected(1);
    QObject::connect(&models, &TModelsPage::UseModel, [&](int model) { search.SelectModel(model); });
    //! [TModelsPage]
    EXPECT_EQ(models.Selected(), 1);
    TStepWiseMLR stepwise;
    stepwise.SetTable(&longley);
    stepwise.SetRule(TCorvane::Textbook);
    stepwise.Run();
    SetMessageHandler({});
    //! [TStepsPage]
    TStepsPage steps; // the steps of a search, with the candidates of the selected one
    steps.SetChoice(*stepwise.Choice());
    steps.SetSelected(1);
    //! [TStepsPage]
    EXPECT_EQ(steps.Selected(), 1);
}

TEST(WindowExamples, TheModelInAnEditor)
{
    FittedLongley longley;
    //! [TModelEditor]
    TModelEditor editor; // fields on the left, Y and X1 to X10 on the right
    editor.SetFields(nuvo::modelFields(longley));
    editor.SetModel(nuvo::RegressionModel::of(longley));
    editor.AddFields({"ARMED"}); // as a double click does
    const QString third = editor.Model().term(3);
    const std::vector<nuvo::ModelProblem> &problems = editor.Problems(); // what stands below the terms
    //! [TModelEditor]
    EXPECT_EQ(third, "ARMED");
    EXPECT_TRUE(problems.empty());
    //! [RegressionModel]
    nuvo::RegressionModel model = nuvo::RegressionModel::of(longley); // a value: the component does not change
    model.setTransformation(0, "Log");                                // place 0 is the response
    model.exchange(1, 2);
    const QString response = model.term(0);
    const QString first = model.term(1);
    //! [RegressionModel]
    EXPECT_EQ(response, "Ln(TOTEMP)");
    EXPECT_EQ(first, "UNEMP");
    //! [TModelDialog]
    TModelDialog dialog; // OpenForm() shows it and waits for OK
    dialog.Editor().SetModel(model);
    //! [TModelDialog]
    EXPECT_EQ(dialog.Editor().Model(), model);
}

TEST(WindowExamples, AStatementIsTried)
{
    FittedLongley longley;
    //! [TSqlEditor]
    TSqlEditor editor; // tables on the left, the text and its first rows on the right
    editor.SetDatabase(longley.DatabaseName());
    editor.SetText("SELECT YEAR, TOTEMP FROM Longley");
    editor.Try(); // returns at once; the signal Tried() tells the end
    //! [TSqlEditor]
    QSignalSpy tried(&editor, &TSqlEditor::Tried);
    EXPECT_TRUE(tried.wait(10000));
    EXPECT_TRUE(editor.CheckStatement());
    //! [TSqlDialog]
    TSqlDialog dialog; // OpenForm() shows it and waits for OK
    dialog.Editor().SetText("SELECT 1");
    //! [TSqlDialog]
    EXPECT_EQ(dialog.Editor().Text(), "SELECT 1");
}

TEST(WindowExamples, ADatabaseIsPutTogether)
{
    //! [ConnectionDialog]
    nuvo::ConnectionDialog dialog; // askDatabaseName() shows one and waits
    dialog.SetDatabaseName("postgresql://ann@db.example:5433/shop");
    const QString name = dialog.DatabaseName(); // no password is ever in it
    //! [ConnectionDialog]
    EXPECT_EQ(name, "postgresql://ann@db.example:5433/shop");
}

TEST(WindowExamples, ProgressDialogs)
{
    //! [TGaugeDlg]
    TGaugeDlg dialog; // a selection's; TMLRGaugeDlg is that of a load
    dialog.Show();
    dialog.SetGaugeText("Fitting 3 of 7");
    dialog.SetGaugeProgress(43);
    const bool stopped = dialog.Stopped(); // whether Escape was pressed
    dialog.Close();
    //! [TGaugeDlg]
    EXPECT_FALSE(stopped);
}

TEST(WindowExamples, Controls)
{
    //! [TGauge]
    TGauge gauge;
    gauge.SetMaxValue(200);
    gauge.SetProgress(50);
    const int percent = gauge.PercentDone();
    //! [TGauge]
    EXPECT_EQ(percent, 25);
    //! [THeader]
    THeader header;
    header.SetSections({"Term", "Estimate"});
    //! [THeader]
    EXPECT_EQ(header.Sections().size(), 2);
    QImage picture(32, 32, QImage::Format_RGB32);
    //! [TImage]
    TImage box;
    box.SetImage(picture);
    //! [TImage]
    //! [NumberOrder]
    QStandardItemModel numbers(2, 1);
    numbers.setData(numbers.index(0, 0), 10.5, nuvo::NumberRole);
    numbers.setData(numbers.index(1, 0), 9.5, nuvo::NumberRole);
    nuvo::NumberOrder sorted; // by the numbers, not by the texts that are shown
    sorted.setSourceModel(&numbers);
    sorted.sort(0);
    //! [NumberOrder]
    EXPECT_EQ(sorted.index(0, 0).data(nuvo::NumberRole).toDouble(), 9.5);
}
