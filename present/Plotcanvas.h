// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Maxdata.h"
#include "platform/Export.h"

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QString>
#include <QStringList>

#include <array>
#include <vector>

class TRegression;

namespace nuvo {

/// The diagnostic plots of a fit as pure drawing: from a regression to dots, and from dots to pixels. No window, no
/// display; the same pixels on every machine.

/// A canvas is so many pixels, whatever the screen.
inline constexpr int PlotWidth = 327;
inline constexpr int PlotHeight = 185;

/// Which plot. Scatter plots are 10 j + 1 and residuals against a control variable 10 j + 2, j = 1..10.
enum PlotCode : int { NoPlot = 0, InputOrderPlot = 1, ResponsePlot = 2, FittedPlot = 3, EcdfPlot = 4 };
constexpr int scatterPlot(int j)
{
    return 10 * j + 1;
}
constexpr int residualPlot(int j)
{
    return 10 * j + 2;
}

/// What the plots show of a fit, copied: the regression may change or go afterwards.
struct PlotData
{
    /// The least and the greatest of some values.
    struct Range
    {
        double min = 0;
        double max = 0;
    };

    int n = 0;                      ///< observations
    int m = 0;                      ///< control variables
    bool current = false;           ///< whether the figures are a fit of these observations
    std::vector<double> y, e, yHat; ///< response, residual, fitted value per observation, from position 0
    std::vector<double> g;          ///< residuals over the standard error of the estimate, ascending
    std::array<std::vector<double>, MaxParameters> x; ///< column j at j
    std::array<Range, MaxParameters> xRange;
    Range yRange, eRange, yHatRange;
    QString response;     ///< the response's term
    QStringList controls; ///< the terms of columns 1..m, from position 0
};

/// Of a regression; `current` is false where it holds no fit of its observations.
NUVO_EXPORT PlotData plotData(TRegression &regression);

/// The figures at the ends of the axes and their decimals.
struct PlotAxes
{
    double xMin = 0, xMax = 0, yMin = 0, yMax = 0;
    int xDigits = 2, yDigits = 2;
};

/// An axis figure as it is shown.
NUVO_EXPORT QString axisText(double value, int digits, QChar point = u'.');

/// One plot, worked out.
struct Plot
{
    QString caption;
    PlotAxes axes;
    /// Upper left corners of the dots, one per observation that has a place; dots may lie outside the canvas.
    std::vector<QPoint> dots;
    /// Why nothing, or not everything, is drawn; empty when all is well.
    QString note;
};

/// The plot of that code. A value v of a range lo..hi stands trunc((v - lo) extent / (hi - lo)) pixels from the left
/// or the bottom, extent being 327 (1 - 1/n) and 185 * 0.95: the top 5 % stay empty. Where a range is zero or not
/// finite there are no dots and the note says why. An unknown code is an empty plot.
NUVO_EXPORT Plot makePlot(const PlotData &data, int code);

/// What the plot shows, in words, for those who cannot see it.
NUVO_EXPORT QString plotInWords(const Plot &plot, QChar point = u'.');

/// Every plot of so many control variables with the name of its file, in the order of the files.
struct NamedPlot
{
    QString name;
    int code;
};
/// \param controls 0 to 10
NUVO_EXPORT std::vector<NamedPlot> allPlots(int controls);

/// The picture that plots are drawn on, pixel by pixel.
class NUVO_EXPORT PlotCanvas
{
public:
    /// White, dots maroon.
    PlotCanvas();

    /// The picture, 327 x 185 pixels.
    const QImage &Image() const { return image_; }
    /// What it was filled with last.
    QColor CanvasColor() const { return canvasColor_; }
    /// Of dots that are drawn from now on.
    QColor DotColor() const { return dotColor_; }
    /// Dots that are there keep theirs, unless a fill reaches them.
    void SetDotColor(const QColor &color);
    /// Fills the whole picture.
    void SetCanvasColor(const QColor &color);

    /// An ellipse with a black line in the box from (x, y) to (x + size, y + size), both corners part of it, filled
    /// with the dots' colour; then a fill of everything around (x + size / 2, y + size / 2) up to pixels of the
    /// canvas's colour, line included. Where that point lies outside the picture there is no fill: a dot that leaves
    /// the picture keeps its line.
    void DrawDots(int x, int y, int size);
    /// Every dot of a plot, in order.
    void DrawDots(const Plot &plot);

private:
    /// Calls visit with every pixel that is joined to the start, sideways or up and down, by pixels not of the
    /// canvas's colour.
    template <class Visit>
    void Flood(QPoint start, Visit visit);
    bool TouchesTaint(const QRect &dot) const;

    QImage image_;
    QImage dot_; ///< the ellipse on transparent ground, made when needed
    QColor canvasColor_ = Qt::white;
    QColor dotColor_ = QColor(0x80, 0, 0);
    /// Per pixel, whether what it is joined to may have other colours than the dots'. A fill that meets none of these
    /// has nothing to do beyond its own dot: thousands of dots that touch would otherwise be filled again and again.
    std::vector<bool> tainted_;
};

} // namespace nuvo
