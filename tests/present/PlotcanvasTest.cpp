// SPDX-License-Identifier: MIT
#include "present/Plotcanvas.h"

#include "present/Fitted.h"

#include <QPainter>

#include <gtest/gtest.h>

#include <limits>

using namespace nuvo;

namespace {

/// Part of a canvas as text: a blank for the canvas's colour, '#' for the dots', 'l' for the black line.
std::vector<std::string> pixels(const PlotCanvas &canvas, QRect part)
{
    std::vector<std::string> rows;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        std::string row;
        for (int x = part.left(); x <= part.right(); ++x) {
            const QRgb pixel = canvas.Image().pixel(x, y);
            row += pixel == canvas.CanvasColor().rgb() ? '.'
                   : pixel == canvas.DotColor().rgb()  ? '#'
                   : pixel == qRgb(0, 0, 0)            ? 'l'
                                                       : '?';
        }
        rows.push_back(row);
    }
    return rows;
}

int drawnPixels(const PlotCanvas &canvas)
{
    int count = 0;
    for (int y = 0; y < PlotHeight; ++y) {
        for (int x = 0; x < PlotWidth; ++x)
            count += canvas.Image().pixel(x, y) != canvas.CanvasColor().rgb();
    }
    return count;
}

using Rows = std::vector<std::string>;
using Dots = std::vector<QPoint>;

/// Four observations of one control: y = 1, 2, 3, 5 at x = 2, 4, 6, 10; a made-up fit.
PlotData smallData()
{
    PlotData data;
    data.n = 4;
    data.m = 1;
    data.current = true;
    data.y = {1, 2, 3, 5};
    data.x[1] = {2, 4, 6, 10};
    data.xRange[1] = {2, 10};
    data.yRange = {1, 5};
    data.e = {-1, 0.5, 1, 0};
    data.eRange = {-1, 1};
    data.g = {-4, -1.5, 0, 2.25};
    data.yHat = {2, 1.5, 2, 6};
    data.yHatRange = {1.5, 6};
    data.response = QStringLiteral("Ln(Y)");
    data.controls = QStringList{QStringLiteral("X^2")};
    return data;
}

} // namespace

TEST(Canvas, Is327By185WhiteWithMaroonDots)
{
    const PlotCanvas canvas;
    EXPECT_EQ(canvas.Image().size(), QSize(327, 185));
    EXPECT_EQ(canvas.Image().devicePixelRatio(), 1);
    EXPECT_EQ(canvas.CanvasColor(), QColor(Qt::white));
    EXPECT_EQ(canvas.DotColor(), QColor(0x80, 0, 0));
    EXPECT_EQ(drawnPixels(canvas), 0);
}

TEST(Canvas, ADotIsAnEllipseFilledToItsEdge)
{
    PlotCanvas canvas;
    canvas.DrawDots(10, 20, 4);
    EXPECT_EQ(pixels(canvas, QRect(9, 19, 7, 7)),
              (Rows{".......", "..###..", ".#####.", ".#####.", ".#####.", "..###..", "......."}));
    EXPECT_EQ(drawnPixels(canvas), 21);
}

TEST(Canvas, ADotWhoseMiddleIsOutsideKeepsItsBlackLine)
{
    PlotCanvas canvas;
    canvas.DrawDots(10, PlotHeight - 2, 4);
    EXPECT_EQ(pixels(canvas, QRect(9, PlotHeight - 3, 7, 3)), (Rows{".......", "..lll..", ".l###l."}));
    canvas.DrawDots(30, PlotHeight - 3, 4);
    EXPECT_EQ(pixels(canvas, QRect(29, PlotHeight - 4, 7, 4)), (Rows{".......", "..###..", ".#####.", ".#####."}));
}

TEST(Canvas, TheFillRunsThroughEverythingThatTouches)
{
    PlotCanvas canvas;
    canvas.DrawDots(10, PlotHeight - 2, 4); // keeps its line
    canvas.DrawDots(14, PlotHeight - 4, 4); // touches it
    EXPECT_EQ(pixels(canvas, QRect(9, PlotHeight - 5, 11, 5)),
              (Rows{"...........", "......###..", ".....#####.", "..########.", ".#########."}));
}

TEST(Canvas, DotsThatOnlyMeetAtACornerAreFilledApart)
{
    PlotCanvas canvas;
    canvas.DrawDots(10, PlotHeight - 2, 4);
    canvas.DrawDots(15, PlotHeight - 5, 4);
    // Row by row: the line of the left dot stays black, the right dot is the dots' colour.
    EXPECT_EQ(pixels(canvas, QRect(9, PlotHeight - 3, 11, 3)), (Rows{"......#####", "..lll.#####", ".l###l.###."}));
}

TEST(Canvas, ADotOutsideDrawsNothing)
{
    PlotCanvas canvas;
    for (const QPoint dot : {QPoint(10, PlotHeight), QPoint(PlotWidth, 5), QPoint(-5, 5), QPoint(5, -30000)})
        canvas.DrawDots(dot.x(), dot.y(), 4);
    EXPECT_EQ(drawnPixels(canvas), 0);
}

TEST(Canvas, AFillOnAnotherGroundStopsAtThatGround)
{
    PlotCanvas canvas;
    canvas.SetCanvasColor(Qt::yellow);
    canvas.SetDotColor(Qt::black);
    canvas.DrawDots(10, 20, 4);
    EXPECT_EQ(drawnPixels(canvas), 21);
    canvas.SetCanvasColor(Qt::cyan);
    EXPECT_EQ(drawnPixels(canvas), 0);
}

TEST(Canvas, ManyDotsAreThePixelsOfTheWrittenSteps)
{
    // The steps word for word, as slow as they are.
    const QRgb white = qRgb(255, 255, 255);
    const QRgb maroon = qRgb(0x80, 0, 0);
    QImage plain(PlotWidth, PlotHeight, QImage::Format_RGB32);
    plain.fill(white);
    PlotCanvas canvas;
    unsigned state = 1;
    const auto random = [&state](unsigned below) {
        state = state * 1103515245U + 12345U;
        return int((state >> 8) % below);
    };
    for (int dot = 0; dot < 1500; ++dot) {
        // Dense at the bottom, where dots keep their lines.
        const int x = random(PlotWidth + 10) - 6;
        const int y = dot % 2 == 0 ? PlotHeight - random(12) : random(PlotHeight + 10) - 6;
        canvas.DrawDots(x, y, 4);
        {
            QPainter painter(&plain);
            painter.setPen(Qt::black);
            painter.setBrush(QColor(maroon));
            painter.drawEllipse(x, y, 4, 4);
        }
        std::vector<QPoint> open{QPoint(x + 2, y + 2)};
        std::vector<bool> seen(PlotWidth * PlotHeight);
        while (!open.empty()) {
            const QPoint at = open.back();
            open.pop_back();
            if (!plain.rect().contains(at) || seen[at.y() * PlotWidth + at.x()] || plain.pixel(at) == white)
                continue;
            seen[at.y() * PlotWidth + at.x()] = true;
            plain.setPixel(at, maroon);
            for (const QPoint step : {QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)})
                open.push_back(at + step);
        }
        if (dot % 100 == 99) {
            ASSERT_TRUE(canvas.Image() == plain) << dot;
        }
    }
}

TEST(Canvas, AnotherDotColorRunsThroughTheDotsThatItTouches)
{
    PlotCanvas canvas;
    canvas.DrawDots(10, 20, 4);
    canvas.SetDotColor(Qt::blue);
    canvas.DrawDots(14, 20, 4);
    EXPECT_EQ(pixels(canvas, QRect(9, 19, 11, 3)), (Rows{"...........", "..###.###..", ".#########."}));
}

TEST(Plots, AScatterPlotMapsTheRangesToThePicture)
{
    const Plot plot = makePlot(smallData(), scatterPlot(1));
    EXPECT_EQ(plot.caption, QStringLiteral("Scatter Plot of Ln(Y) vs. X^2"));
    // The extents are 327 * 3/4 = 245.25 and 185 * 0.95 = 175.75; 1 is the offset of minima from 1 on.
    EXPECT_EQ(plot.dots, (Dots{{1, 185}, {1 + 61, 185 - 43}, {1 + 122, 185 - 87}, {1 + 245, 185 - 175}}));
    EXPECT_EQ(plot.axes.xMin, 2);
    EXPECT_EQ(plot.axes.xMax, 10);
    EXPECT_EQ(plot.axes.yMin, 1);
    EXPECT_EQ(plot.axes.yMax, 5);
    EXPECT_TRUE(plot.note.isEmpty());
}

TEST(Plots, TheLeftOffsetIsTheWholePartOfAMinimumBelowOne)
{
    struct
    {
        double min;
        int left;
    } const cases[] = {{1, 1}, {7, 1}, {0.999, 0}, {0, 0}, {-0.5, 0}, {-1.5, -1}, {-20, -20}};
    for (const auto &[min, left] : cases) {
        PlotData data = smallData();
        data.x[1] = {min, min + 1, min + 2, min + 4};
        data.xRange[1] = {min, min + 4};
        EXPECT_EQ(makePlot(data, scatterPlot(1)).dots.front().x(), left) << min;
        EXPECT_EQ(makePlot(data, residualPlot(1)).dots.front().x(), left) << min;
    }
}

TEST(Plots, ResidualsStandInInputOrderByTheirNumber)
{
    const Plot plot = makePlot(smallData(), InputOrderPlot);
    EXPECT_EQ(plot.caption, QStringLiteral("Plot of Residual vs. Input Order"));
    EXPECT_EQ(plot.dots, (Dots{{61, 185}, {122, 185 - 131}, {183, 185 - 175}, {245, 185 - 87}}));
    EXPECT_EQ(axisText(plot.axes.xMin, plot.axes.xDigits), QStringLiteral("1"));
    EXPECT_EQ(axisText(plot.axes.xMax, plot.axes.xDigits), QStringLiteral("4"));
    EXPECT_EQ(axisText(plot.axes.yMin, plot.axes.yDigits), QStringLiteral("-1.00"));
}

TEST(Plots, ResidualsAgainstAControlTheResponseAndTheFittedValues)
{
    const Plot control = makePlot(smallData(), residualPlot(1));
    EXPECT_EQ(control.caption, QStringLiteral("Plot of Residual vs. Independent Variable (X^2)"));
    EXPECT_EQ(control.dots, (Dots{{1, 185}, {62, 54}, {123, 10}, {246, 98}}));
    const Plot response = makePlot(smallData(), ResponsePlot);
    EXPECT_EQ(response.caption, QStringLiteral("Plot of Residual vs. Dep Variable (Ln(Y))"));
    EXPECT_EQ(response.dots, (Dots{{1, 185}, {62, 54}, {123, 10}, {246, 98}}));
    const Plot fitted = makePlot(smallData(), FittedPlot);
    EXPECT_EQ(fitted.caption, QStringLiteral("Plot of Residual vs. Fitted Ln(Y)"));
    EXPECT_EQ(fitted.dots, (Dots{{1 + 27, 185}, {1, 54}, {1 + 27, 10}, {246, 98}}));
}

TEST(Plots, TheEcdfRunsFromMinusThreeToThreeStandardErrors)
{
    const Plot plot = makePlot(smallData(), EcdfPlot);
    EXPECT_EQ(plot.caption, QStringLiteral("Empirical Cumulative Distribution Function Plot"));
    // -4 lies below the picture; trunc((3 - 4) 175.75 / 6) = -29.
    EXPECT_EQ(plot.dots, (Dots{{1 + 30, 185 + 29}, {1 + 91, 185 - 43}, {1 + 153, 185 - 87}, {1 + 214, 185 - 153}}));
    EXPECT_EQ(axisText(plot.axes.xMin, plot.axes.xDigits), QStringLiteral("0"));
    EXPECT_EQ(axisText(plot.axes.yMax, plot.axes.yDigits), QStringLiteral("3.00"));
}

TEST(Plots, ARangeOfZeroDrawsNothingAndSaysWhy)
{
    PlotData data = smallData();
    data.xRange[1] = {4, 4};
    EXPECT_EQ(makePlot(data, scatterPlot(1)).note, QStringLiteral("Nothing is drawn: X^2 does not vary."));
    EXPECT_EQ(makePlot(data, residualPlot(1)).note, QStringLiteral("Nothing is drawn: X^2 does not vary."));
    EXPECT_TRUE(makePlot(data, residualPlot(1)).dots.empty());
    EXPECT_FALSE(makePlot(data, ResponsePlot).dots.empty());

    data = smallData();
    data.yRange = {3, 3};
    EXPECT_EQ(makePlot(data, scatterPlot(1)).note, QStringLiteral("Nothing is drawn: Ln(Y) does not vary."));
    EXPECT_EQ(makePlot(data, ResponsePlot).note, QStringLiteral("Nothing is drawn: Ln(Y) does not vary."));
    EXPECT_FALSE(makePlot(data, InputOrderPlot).dots.empty());

    data = smallData();
    data.yHatRange = {2, 2};
    EXPECT_EQ(makePlot(data, FittedPlot).note, QStringLiteral("Nothing is drawn: the fitted value does not vary."));

    data = smallData();
    data.eRange = {0, 0};
    for (const int code : {int(InputOrderPlot), residualPlot(1), int(ResponsePlot), int(FittedPlot)}) {
        EXPECT_EQ(makePlot(data, code).note, QStringLiteral("Nothing is drawn: the residual does not vary.")) << code;
        EXPECT_TRUE(makePlot(data, code).dots.empty()) << code;
    }
    EXPECT_EQ(makePlot(data, EcdfPlot).dots.size(), 4U);
}

TEST(Plots, WhatIsNotFiniteIsNotDrawnAndCounted)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    PlotData data = smallData();
    data.g = {-infinity, nan, 0, 1e300};
    const Plot ecdf = makePlot(data, EcdfPlot);
    EXPECT_EQ(ecdf.dots.size(), 2U);
    EXPECT_EQ(ecdf.note, QStringLiteral("2 of 4 points are not finite and are not drawn."));
    PlotCanvas canvas;
    canvas.DrawDots(ecdf);
    EXPECT_EQ(drawnPixels(canvas), 21);

    data.eRange = {-1, infinity};
    EXPECT_EQ(makePlot(data, InputOrderPlot).note,
              QStringLiteral("Nothing is drawn: the residual has no finite range."));
    data.eRange = {nan, nan};
    EXPECT_EQ(makePlot(data, InputOrderPlot).note,
              QStringLiteral("Nothing is drawn: the residual has no finite range."));
    data.eRange = {-1.5e308, 1.5e308};
    EXPECT_TRUE(makePlot(data, InputOrderPlot).dots.empty());
}

TEST(Plots, AMinimumFarBelowZeroPushesTheDotsOutAndTheNoteSaysSo)
{
    PlotData data = smallData();
    data.x[1] = {-1e12, 0, 0, 1e12};
    data.xRange[1] = {-1e12, 1e12};
    EXPECT_EQ(makePlot(data, scatterPlot(1)).note,
              QStringLiteral("Nothing is seen: all dots lie outside the picture."));
}

TEST(Plots, NoObservationsAndUnknownPlots)
{
    EXPECT_EQ(makePlot(PlotData(), EcdfPlot).note,
              QStringLiteral("Nothing is drawn: no observation has been loaded."));
    for (const int code : {0, 5, 10, 13, 21, 22, 111, -9}) {
        EXPECT_TRUE(makePlot(smallData(), code).caption.isEmpty()) << code;
        EXPECT_TRUE(makePlot(smallData(), code).dots.empty()) << code;
    }
}

TEST(Plots, TheDataOfAFitIsCopiedAndItsStandardisedResidualsSorted)
{
    Fitted fitted = scatteredFit(20, 3);
    const PlotData data = plotData(fitted.table);
    EXPECT_EQ(data.n, 20);
    EXPECT_EQ(data.m, 3);
    EXPECT_TRUE(data.current);
    EXPECT_EQ(data.controls, (QStringList{QStringLiteral("x1"), QStringLiteral("x2"), QStringLiteral("x3")}));
    EXPECT_TRUE(std::is_sorted(data.g.begin(), data.g.end()));
    std::vector<double> residuals = data.e;
    std::sort(residuals.begin(), residuals.end());
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(data.x[3][i], fitted.table.Getx(i + 1, 3));
        EXPECT_NEAR(data.g[i], residuals[i] / fitted.table.GetSyx(), 1e-12);
    }
    EXPECT_EQ(data.eRange.min, residuals.front());
    EXPECT_EQ(data.eRange.max, residuals.back());
    EXPECT_EQ(makePlot(data, scatterPlot(3)).dots.size(), 20U);
    EXPECT_TRUE(makePlot(data, scatterPlot(4)).caption.isEmpty());
}

TEST(Plots, TheLargestFitHasADotForEachObservation)
{
    Fitted fitted = scatteredFit(2500, 10);
    const PlotData data = plotData(fitted.table);
    for (const NamedPlot &named : allPlots(10)) {
        const Plot plot = makePlot(data, named.code);
        EXPECT_EQ(plot.dots.size(), 2500U) << named.name.toStdString();
        PlotCanvas canvas;
        canvas.DrawDots(plot);
        EXPECT_GT(drawnPixels(canvas), 1000) << named.name.toStdString();
    }
}

TEST(Plots, AFitThatIsNotOfTheseObservationsIsToldApart)
{
    Fitted fitted = scatteredFit(20, 1);
    ASSERT_TRUE(fitted.table.ReLoad());
    EXPECT_EQ(makePlot(plotData(fitted.table), InputOrderPlot).note,
              QStringLiteral("The figures are not yet a fit of the observations loaded."));
}

TEST(Plots, FilesAreNamedAfterWhatTheyShow)
{
    QStringList names;
    for (const NamedPlot &plot : allPlots(2))
        names += plot.name;
    EXPECT_EQ(names.join(u' '), QStringLiteral("scatter-x1 scatter-x2 residual-order residual-x1 residual-x2 "
                                               "residual-response residual-fitted ecdf"));
}

TEST(Plots, WordsSayWhatIsSeen)
{
    EXPECT_EQ(plotInWords(makePlot(smallData(), scatterPlot(1))),
              QStringLiteral("Scatter Plot of Ln(Y) vs. X^2: 4 dots, from 2.00 to 10.00 across and from 1.00 to 5.00 "
                             "upwards."));
    EXPECT_EQ(plotInWords(Plot()), QStringLiteral("No plot is drawn."));
}
