// SPDX-License-Identifier: MIT
#include "present/Plotcanvas.h"

#include "engine/Matrix.h"
#include "engine/Regression.h"
#include "platform/Formats.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace nuvo {

namespace {

constexpr int DotSize = 4;
/// Far outside every canvas, and still an int.
constexpr double FarAway = 30000;

/// From values to pixels; collects what stands in the way.
class Plotter
{
public:
    Plotter(const PlotData &data, Plot &plot)
        : data_(data), plot_(plot), width_(PlotWidth * (1.0 - 1.0 / data.n)), height_(PlotHeight * 0.95)
    {
    }

    double Width() const { return width_; }
    double Height() const { return height_; }

    /// Whether values can be told apart on that axis.
    bool Spreads(const PlotData::Range &range, const QString &what)
    {
        const double spread = range.max - range.min;
        if (std::isfinite(spread) && spread > 0)
            return true;
        if (spread == 0)
            plot_.note = QStringLiteral("Nothing is drawn: %1 does not vary.").arg(what);
        else
            plot_.note = QStringLiteral("Nothing is drawn: %1 has no finite range.").arg(what);
        return false;
    }

    static double Offset(double value, const PlotData::Range &range, double extent)
    {
        return std::trunc((value - range.min) * extent / (range.max - range.min));
    }

    void Dot(double px, double offset)
    {
        const double py = PlotHeight - offset;
        if (!std::isfinite(px) || !std::isfinite(py)) {
            ++lost_;
            return;
        }
        const QPoint dot(int(std::clamp(px, -FarAway, FarAway)), int(std::clamp(py, -FarAway, FarAway)));
        visible_ = visible_ ||
                   (dot.x() > -DotSize - 1 && dot.x() < PlotWidth && dot.y() > -DotSize - 1 && dot.y() < PlotHeight);
        plot_.dots.push_back(dot);
    }

    void Finish()
    {
        if (lost_ > 0)
            plot_.note = QStringLiteral("%1 of %2 points are not finite and are not drawn.").arg(lost_).arg(data_.n);
        else if (!visible_)
            plot_.note = QStringLiteral("Nothing is seen: all dots lie outside the picture.");
    }

private:
    const PlotData &data_;
    Plot &plot_;
    double width_;
    double height_;
    int lost_ = 0;
    bool visible_ = false;
};

const QString &controlOf(const PlotData &data, int j)
{
    return data.controls[j - 1];
}

} // namespace

PlotData plotData(TRegression &regression)
{
    PlotData data;
    data.n = regression.SampleSize();
    data.m = regression.GetNumVars();
    data.current = regression.ResultsCurrent();
    data.response = regression.ResponseVarY().OutputTerm();
    for (int j = 1; j <= data.m; ++j) {
        data.controls += regression.GetcVar(j).OutputTerm();
        data.xRange[j] = {regression.GetxMin(j), regression.GetxMax(j)};
    }
    data.yRange = {regression.GetyMin(), regression.GetyMax()};
    if (data.n == 0)
        return data;
    const double s = regression.GetSyx();
    for (int i = 1; i <= data.n; ++i) {
        data.y.push_back(regression.Gety(i));
        data.e.push_back(regression.Gete(i));
        data.g.push_back(data.e.back() / s);
        data.yHat.push_back(regression.GetyHat(i));
        for (int j = 1; j <= data.m; ++j)
            data.x[j].push_back(regression.Getx(i, j));
    }
    Matrix::sortmvector(data.g.data(), data.n);
    const auto rangeOf = [&data](const std::vector<double> &values) {
        return PlotData::Range{Matrix::minmvector(values.data(), data.n), Matrix::maxmvector(values.data(), data.n)};
    };
    data.eRange = rangeOf(data.e);
    data.yHatRange = rangeOf(data.yHat);
    return data;
}

QString axisText(double value, int digits, QChar point)
{
    return FloatToStrFixed(value, 7, digits, point);
}

Plot makePlot(const PlotData &data, int code)
{
    Plot plot;
    const int j = code / 10;
    const bool scatter = code % 10 == 1 && j > 0;
    const bool control = j > 0 && j <= data.m && (scatter || code % 10 == 2);
    if (!control && (code < InputOrderPlot || code > EcdfPlot))
        return plot;

    const PlotData::Range &e = data.eRange;
    const QString residual = QStringLiteral("the residual");
    const std::vector<double> *across = nullptr;
    PlotData::Range acrossRange;
    QString acrossName;
    double left = 1;
    if (control) {
        across = &data.x[j];
        acrossRange = data.xRange[j];
        acrossName = controlOf(data, j);
        // A minimum below 1 moves the dots to the left by its whole part: meant so.
        left = std::trunc(std::min(acrossRange.min, 1.0));
        plot.caption = scatter
                           ? QStringLiteral("Scatter Plot of ") + data.response + QStringLiteral(" vs. ") + acrossName
                           : QStringLiteral("Plot of Residual vs. Independent Variable (") + acrossName + u')';
    } else if (code == InputOrderPlot) {
        plot.caption = QStringLiteral("Plot of Residual vs. Input Order");
    } else if (code == ResponsePlot) {
        across = &data.y;
        acrossRange = data.yRange;
        acrossName = data.response;
        plot.caption = QStringLiteral("Plot of Residual vs. Dep Variable (") + data.response + u')';
    } else if (code == FittedPlot) {
        across = &data.yHat;
        acrossRange = data.yHatRange;
        acrossName = QStringLiteral("the fitted value");
        plot.caption = QStringLiteral("Plot of Residual vs. Fitted ") + data.response;
    } else {
        plot.caption = QStringLiteral("Empirical Cumulative Distribution Function Plot");
    }

    if (code == EcdfPlot)
        plot.axes = {0, 1, -3, 3, 0, 2};
    else if (code == InputOrderPlot)
        plot.axes = {1, double(data.n), e.min, e.max, 0, 2};
    else if (scatter)
        plot.axes = {acrossRange.min, acrossRange.max, data.yRange.min, data.yRange.max, 2, 2};
    else
        plot.axes = {acrossRange.min, acrossRange.max, e.min, e.max, 2, 2};

    if (data.n == 0) {
        plot.note = QStringLiteral("Nothing is drawn: no observation has been loaded.");
        return plot;
    }
    Plotter plotter(data, plot);
    const std::vector<double> &up = scatter ? data.y : code == EcdfPlot ? data.g : data.e;
    const PlotData::Range &upRange = scatter ? data.yRange : e;
    if (code != EcdfPlot && !plotter.Spreads(upRange, scatter ? data.response : residual))
        return plot;
    if (across != nullptr && !plotter.Spreads(acrossRange, acrossName))
        return plot;
    for (int i = 0; i < data.n; ++i) {
        if (across != nullptr)
            plotter.Dot(left + Plotter::Offset((*across)[i], acrossRange, plotter.Width()),
                        Plotter::Offset(up[i], upRange, plotter.Height()));
        else if (code == InputOrderPlot)
            plotter.Dot(std::trunc(double(i + 1) / data.n * plotter.Width()),
                        Plotter::Offset(up[i], upRange, plotter.Height()));
        else
            plotter.Dot(std::trunc((i + 0.5) * plotter.Width() / data.n) + 1,
                        std::trunc((3.0 + up[i]) * plotter.Height() / 6.0));
    }
    plotter.Finish();
    if (plot.note.isEmpty() && !data.current)
        plot.note = QStringLiteral("The figures are not yet a fit of the observations loaded.");
    return plot;
}

QString plotInWords(const Plot &plot, QChar point)
{
    if (plot.caption.isEmpty())
        return QStringLiteral("No plot is drawn.");
    const PlotAxes &axes = plot.axes;
    QString words = QStringLiteral("%1: %2 dots, from %3 to %4 across and from %5 to %6 upwards.")
                        .arg(plot.caption)
                        .arg(plot.dots.size())
                        .arg(axisText(axes.xMin, axes.xDigits, point), axisText(axes.xMax, axes.xDigits, point),
                             axisText(axes.yMin, axes.yDigits, point), axisText(axes.yMax, axes.yDigits, point));
    if (!plot.note.isEmpty())
        words += u' ' + plot.note;
    return words;
}

std::vector<NamedPlot> allPlots(int controls)
{
    std::vector<NamedPlot> plots;
    for (int j = 1; j <= controls; ++j)
        plots.push_back({QStringLiteral("scatter-x%1").arg(j), scatterPlot(j)});
    plots.push_back({QStringLiteral("residual-order"), InputOrderPlot});
    for (int j = 1; j <= controls; ++j)
        plots.push_back({QStringLiteral("residual-x%1").arg(j), residualPlot(j)});
    plots.push_back({QStringLiteral("residual-response"), ResponsePlot});
    plots.push_back({QStringLiteral("residual-fitted"), FittedPlot});
    plots.push_back({QStringLiteral("ecdf"), EcdfPlot});
    return plots;
}

PlotCanvas::PlotCanvas() : image_(PlotWidth, PlotHeight, QImage::Format_RGB32), tainted_(PlotWidth * PlotHeight)
{
    image_.fill(canvasColor_);
}

void PlotCanvas::SetDotColor(const QColor &color)
{
    dotColor_ = color;
    dot_ = QImage();
    tainted_.assign(tainted_.size(), true);
}

void PlotCanvas::SetCanvasColor(const QColor &color)
{
    canvasColor_ = color;
    image_.fill(color);
    tainted_.assign(tainted_.size(), false);
}

void PlotCanvas::DrawDots(int x, int y, int size)
{
    if (dot_.width() != size + 1) {
        dot_ = QImage(size + 1, size + 1, QImage::Format_ARGB32_Premultiplied);
        dot_.fill(Qt::transparent);
        QPainter painter(&dot_);
        painter.setPen(Qt::black);
        painter.setBrush(dotColor_);
        painter.drawEllipse(0, 0, size, size);
    }
    const QRect seen = QRect(x, y, size + 1, size + 1) & image_.rect();
    for (int row = seen.top(); row <= seen.bottom(); ++row) {
        const QRgb *from = reinterpret_cast<const QRgb *>(dot_.constScanLine(row - y));
        QRgb *to = reinterpret_cast<QRgb *>(image_.scanLine(row));
        for (int column = seen.left(); column <= seen.right(); ++column) {
            if (qAlpha(from[column - x]) != 0)
                to[column] = from[column - x];
        }
    }
    if (seen.isEmpty())
        return;

    QRgb *const pixels = reinterpret_cast<QRgb *>(image_.bits());
    const QPoint middle(x + size / 2, y + size / 2);
    if (!image_.rect().contains(middle) || dotColor_.rgb() == canvasColor_.rgb()) {
        // No fill: the line stays, and whatever it touches is no longer of one colour.
        for (int row = seen.top(); row <= seen.bottom(); ++row) {
            for (int column = seen.left(); column <= seen.right(); ++column) {
                if (qAlpha(dot_.pixel(column - x, row - y)) != 0)
                    Flood({column, row}, [this](int at) { tainted_[at] = true; });
            }
        }
        return;
    }
    const QRgb fill = dotColor_.rgb();
    if (TouchesTaint(seen)) {
        Flood(middle, [&](int at) {
            pixels[at] = fill;
            tainted_[at] = false;
        });
        return;
    }
    for (int row = seen.top(); row <= seen.bottom(); ++row) {
        for (int column = seen.left(); column <= seen.right(); ++column) {
            if (qAlpha(dot_.pixel(column - x, row - y)) != 0)
                pixels[row * PlotWidth + column] = fill;
        }
    }
}

bool PlotCanvas::TouchesTaint(const QRect &dot) const
{
    const QRect around = dot.adjusted(-1, -1, 1, 1) & image_.rect();
    const QRgb ground = canvasColor_.rgb();
    for (int row = around.top(); row <= around.bottom(); ++row) {
        for (int column = around.left(); column <= around.right(); ++column) {
            if (tainted_[row * PlotWidth + column] && image_.pixel(column, row) != ground)
                return true;
        }
    }
    return false;
}

void PlotCanvas::DrawDots(const Plot &plot)
{
    for (const QPoint dot : plot.dots)
        DrawDots(dot.x(), dot.y(), DotSize);
}

template <class Visit>
void PlotCanvas::Flood(QPoint start, Visit visit)
{
    const QRgb ground = canvasColor_.rgb();
    const QRgb *const pixels = reinterpret_cast<const QRgb *>(image_.constBits());
    std::vector<bool> seen(PlotWidth * PlotHeight);
    std::vector<int> open;
    const auto reach = [&](int at) {
        if (!seen[at] && pixels[at] != ground) {
            seen[at] = true;
            open.push_back(at);
        }
    };
    reach(start.y() * PlotWidth + start.x());
    while (!open.empty()) {
        const int at = open.back();
        open.pop_back();
        visit(at);
        const int column = at % PlotWidth;
        if (column > 0)
            reach(at - 1);
        if (column < PlotWidth - 1)
            reach(at + 1);
        if (at >= PlotWidth)
            reach(at - PlotWidth);
        if (at < PlotWidth * (PlotHeight - 1))
            reach(at + PlotWidth);
    }
}

} // namespace nuvo
