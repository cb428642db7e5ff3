// SPDX-License-Identifier: MIT
#include "present/Page.h"
#include "present/Pagewarnings.h"
#include "present/Plotfile.h"
#include "present/Reportdocument.h"
#include "present/figures/Figurefile.h"
#include "present/figures/Fitdata.h"
#include "reference/Fitted.h"

#include <QDir>
#include <QPainter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(PageExamples, FiguresAsAValueAndThePageOfThem)
{
    FittedLongley longley;
    //! [Figures]
    nuvo::Asked asked;
    asked.level = 0.99;
    asked.influence = true;
    const nuvo::Figures figures = nuvo::figures(longley, asked); // stays as it is when the component changes
    const double estimate = figures.coefficients[1].estimate;    // 0 is the constant
    //! [Figures]
    EXPECT_EQ(estimate, longley.Getb(1));
    //! [Page]
    nuvo::PageStyle style;
    style.digits = 4;
    const nuvo::Page page = nuvo::statisticsPage(figures, style);
    const QString text = nuvo::pageText(page);
    const QString html = nuvo::pageHtml(page, nuvo::fitFigures(nuvo::figureData(longley)));
    //! [Page]
    EXPECT_TRUE(text.contains("99 % intervals")) << qPrintable(text);
    EXPECT_TRUE(html.contains("<svg"));
    QStringList records;
    //! [StandOut]
    for (const nuvo::StandOut &one : nuvo::standOuts(figures))
        records.append(QString("%1: %2").arg(nuvo::recordOf(figures, one.observation)).arg(one.inWords()));
    //! [StandOut]
    EXPECT_FALSE(records.isEmpty());
}

TEST(PageExamples, FiguresOneByOneAndAPageInAFile)
{
    const QTemporaryDir folder;
    FittedLongley longley;
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    const double p = longley.GetPValue(2);
    const double vif = longley.GetVIF(2);
    const nuvo::Prediction at = longley.PredictAt({{"GNP", 400000}, {"UNEMP", 3000}});
    const std::array<double, 2> newOnes = at.prediction; // 95 % of them are between these
    nuvo::savePage(nuvo::statisticsPage(nuvo::figures(longley, nuvo::Asked())), "longley.html",
                   nuvo::fitFigures(nuvo::figureData(longley)));
    QDir::setCurrent(before);
    // R: lm(TOTEMP ~ GNP + UNEMP), summary(), 1 / (1 - R2 of UNEMP on GNP), predict(..., interval = "prediction")
    EXPECT_NEAR(p, 0.0104896, 1e-6);
    EXPECT_NEAR(vif, 1.575129, 1e-6);
    EXPECT_NEAR(newOnes[0], 64714.0068, 1e-3);
    EXPECT_NEAR(newOnes[1], 67061.143, 1e-3);
    EXPECT_TRUE(QFile::exists(folder.filePath("longley.html")));
}

TEST(PageExamples, AFigureWithAxesInAFile)
{
    FittedLongley longley;
    const QTemporaryDir folder;
    //! [Figure]
    const nuvo::FigureData data = nuvo::figureData(longley, 0.95);
    const nuvo::Figure figure = nuvo::fitFigure(data, nuvo::FigureKind::ResponseByTerm, 1);
    nuvo::FigureSheet sheet;
    sheet.size = QSize(640, 480);
    sheet.selected = {5};                                       // a record that is marked
    const QImage picture = nuvo::figureImage(figure, sheet, 2); // twice as many pixels
    //! [Figure]
    EXPECT_EQ(picture.size(), QSize(1280, 960));
    EXPECT_EQ(figure.records.size(), 16U);
}

TEST(PageExamples, AFigureOnAPainterOfOnesOwn)
{
    FittedLongley longley;
    const nuvo::Figure figure = nuvo::fitFigure(nuvo::figureData(longley), nuvo::FigureKind::ResidualByFitted);
    //! [FigurePainter]
    QImage sheet(400, 300, QImage::Format_RGB32);
    QPainter painter(&sheet);
    nuvo::FigureStyle style = nuvo::FigureStyle::ofSheet(sheet.size());
    style.theme = nuvo::FigureTheme::dark();
    const nuvo::FigurePainter drawn(figure, sheet.size(), style);
    drawn.Paint(painter);
    const QPointF place = drawn.Place(figure.x[0], figure.y[0]); // of the first observation
    //! [FigurePainter]
    EXPECT_EQ(drawn.PointAt(place, 3), 0);
    //! [Axis]
    nuvo::AxisRange range;
    range.Add(0.3);
    range.Add(9.7);
    const nuvo::Axis axis = nuvo::makeAxis(nuvo::roomyRange(range), 6);
    const double middle = axis.Value(0.5);
    //! [Axis]
    EXPECT_TRUE(axis.range.Contains(middle));
    EXPECT_FALSE(axis.ticks.empty());
}

TEST(PageExamples, TheReportAsTexts)
{
    FittedLongley longley;
    //! [ReportBlocks]
    const nuvo::ReportTexts texts = nuvo::reportTexts(nuvo::figures(longley));
    const nuvo::ReportBlocks &blocks = texts.blocks; // one text for each part of the report window
    const nuvo::ReportCaptions captions = nuvo::reportCaptions(blocks, texts.window);
    //! [ReportBlocks]
    EXPECT_TRUE(blocks.DepVar.contains("TOTEMP"));
    EXPECT_FALSE(captions.Coeffs.isEmpty());
    EXPECT_FALSE(texts.window.RSquared.isEmpty());
}

TEST(PageExamples, APlotOfThePlotWindow)
{
    FittedLongley longley;
    //! [Plot]
    const nuvo::PlotData data = nuvo::plotData(longley);
    nuvo::PlotPicture picture;
    picture.plot = nuvo::makePlot(data, nuvo::scatterPlot(1)); // the response by column 1
    const QImage image = nuvo::plotImage(picture, 654);
    //! [Plot]
    EXPECT_EQ(image.width(), 654);
    EXPECT_FALSE(picture.plot.dots.empty());
}
