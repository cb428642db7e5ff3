// SPDX-License-Identifier: MIT
#include "present/figures/Figure.h"

#include "engine/kernel/Distributions.h"
#include "platform/Messages.h"
#include "present/Words.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace nuvo {

namespace {

/// Points of a curve: enough that its pieces are not seen as such.
constexpr int CurvePoints = 120;
constexpr double Pi = 3.14159265358979323846;

AxisRange rangeOf(const std::vector<double> &values)
{
    AxisRange range;
    for (const double value : values)
        range.Add(value);
    return range;
}

double meanOf(const std::vector<double> &values)
{
    return std::accumulate(values.begin(), values.end(), 0.0) / double(values.size());
}

/// So many values from low to high, both included.
std::vector<double> spread(double low, double high, int count)
{
    std::vector<double> values;
    for (int i = 0; i < count; ++i) {
        const double part = double(i) / (count - 1);
        values.push_back(low * (1 - part) + high * part);
    }
    return values;
}

/// A name of the user's own as it can stand in a picture and in a file: XML has no control characters, no halves of
/// surrogate pairs, and neither of these two.
QString shown(const QString &name)
{
    QString text = withoutControls(QString::fromUtf8(name.toUtf8()));
    for (QChar &letter : text) {
        if (letter.unicode() >= 0xfffe)
            letter = u' ';
    }
    return text;
}

/// Takes over points; the frame has to hold those of which both values exist.
void setPoints(Figure &figure, const FigureData &data, std::vector<double> x, std::vector<double> y)
{
    figure.x = std::move(x);
    figure.y = std::move(y);
    figure.records = data.records;
    if (figure.records.empty()) {
        figure.records.resize(figure.x.size());
        std::iota(figure.records.begin(), figure.records.end(), 1);
    }
    for (std::size_t i = 0; i < figure.x.size(); ++i) {
        if (figure.HasPoint(i)) {
            figure.xValues.Add(figure.x[i]);
            figure.yValues.Add(figure.y[i]);
        }
    }
    if (figure.xValues.IsEmpty())
        figure.note = FigureWords::tr("None of its values exist for this fit.");
}

/// A level line across whatever part of the figure is seen.
void addLevel(Figure &figure, double y)
{
    if (!figure.note.isEmpty())
        return;
    const AxisRange across = roomyRange(figure.xValues);
    figure.lines.push_back({FigureRole::Zero, {across.low, across.high}, {y, y}, {}, {}});
    figure.yValues.Add(y);
}

QString percent(double level)
{
    return figureNumber(level * 100, 6) + QStringLiteral(" %");
}

/// The line y0 + b (x - x0) over the frame, with its band of quantile sqrt(fixed² + (x - x0)² se²) around it.
void addFit(Figure &figure, const FigureData &data, const QString &name, double x0, double y0, int term, double fixed)
{
    const double b = data.coefficients[std::size_t(term)];
    if (!figure.note.isEmpty() || !std::isfinite(b))
        return;
    const AxisRange across = roomyRange(figure.xValues);
    const auto line = [&](double x) { return y0 + b * (x - x0); };
    figure.lines.push_back(
        {FigureRole::Fit, {across.low, across.high}, {line(across.low), line(across.high)}, name, {}});
    for (const double end : {figure.xValues.low, figure.xValues.high})
        figure.yValues.Add(line(end));

    const double se = std::size_t(term) < data.standardErrors.size() ? data.standardErrors[std::size_t(term)] : NAN;
    if (!(data.quantile > 0) || !std::isfinite(data.quantile) || !std::isfinite(se) || !std::isfinite(fixed))
        return;
    FigureBand band;
    band.name = FigureWords::tr("%1 confidence band", "of a level in percent").arg(percent(data.level));
    for (const double x : spread(across.low, across.high, CurvePoints)) {
        const double half = data.quantile * std::hypot(fixed, (x - x0) * se);
        if (!std::isfinite(half) || !std::isfinite(line(x)))
            return;
        band.x.push_back(x);
        band.low.push_back(line(x) - half);
        band.high.push_back(line(x) + half);
    }
    figure.bands.push_back(std::move(band));
}

void responseByTerm(Figure &figure, const FigureData &data, const QString &term)
{
    const std::vector<double> &column = data.x[std::size_t(figure.term - 1)];
    figure.title = FigureWords::tr("%1 by %2").arg(shown(data.response), term);
    figure.xTitle = term;
    figure.yTitle = shown(data.response);
    setPoints(figure, data, column, data.y);
    figure.pointName = FigureWords::tr("Observed");
    if (std::size_t(figure.term) < data.coefficients.size())
        addFit(figure, data,
               data.terms.size() > 1 ? FigureWords::tr("Fit, other terms at their means") : FigureWords::tr("Fit"),
               meanOf(column), meanOf(data.y), figure.term, data.s / std::sqrt(double(column.size())));
}

void addedVariable(Figure &figure, const FigureData &data, const QString &term)
{
    const std::vector<double> &column = data.partial[std::size_t(figure.term - 1)];
    const double b = data.coefficients[std::size_t(figure.term)];
    std::vector<double> y(column.size());
    for (std::size_t i = 0; i < y.size(); ++i)
        y[i] = data.residuals[i] + b * column[i];
    figure.title = FigureWords::tr("Added variable: %1").arg(term);
    figure.xTitle = FigureWords::tr("%1, without what the others explain").arg(term);
    figure.yTitle = FigureWords::tr("%1, likewise").arg(shown(data.response));
    setPoints(figure, data, column, std::move(y));
    figure.pointName = FigureWords::tr("Observations");
    addFit(figure, data, FigureWords::tr("Slope: the coefficient"), 0, 0, figure.term, 0);
}

void normalQuantiles(Figure &figure, const FigureData &data)
{
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < data.standardized.size(); ++i) {
        if (std::isfinite(data.standardized[i]))
            order.push_back(i);
    }
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return data.standardized[a] < data.standardized[b]; });
    const auto n = double(order.size());
    const double a = n <= 10 ? 0.375 : 0.5;
    std::vector<double> quantiles(data.standardized.size(), std::numeric_limits<double>::quiet_NaN());
    for (std::size_t k = 0; k < order.size(); ++k)
        quantiles[order[k]] = normalQuantile((double(k + 1) - a) / (n + 1 - 2 * a));
    figure.title = FigureWords::tr("Normal quantiles");
    figure.xTitle = FigureWords::tr("Normal quantile");
    figure.yTitle = FigureWords::tr("Standardized residual");
    setPoints(figure, data, std::move(quantiles), data.standardized);
    if (order.size() < 2)
        return;
    // As most programs have it: quartiles by linear interpolation between order statistics.
    const auto quartile = [&](double p) {
        const double at = p * (n - 1);
        const auto k = std::min(std::size_t(at), order.size() - 2);
        const double part = at - double(k);
        return data.standardized[order[k]] * (1 - part) + data.standardized[order[k + 1]] * part;
    };
    const double upper = normalQuantile(0.75);
    const double low = quartile(0.25);
    const double high = quartile(0.75);
    const AxisRange across = roomyRange(figure.xValues);
    const auto line = [&](double x) { return (low + high) / 2 + x * (high - low) / (2 * upper); };
    figure.pointName = FigureWords::tr("Observations");
    figure.lines.push_back({FigureRole::Fit,
                            {across.low, across.high},
                            {line(across.low), line(across.high)},
                            FigureWords::tr("Line through the quartiles"),
                            {}});
}

void scaleLocation(Figure &figure, const FigureData &data)
{
    std::vector<double> roots(data.standardized.size());
    std::transform(data.standardized.begin(), data.standardized.end(), roots.begin(),
                   [](double value) { return std::sqrt(std::abs(value)); });
    figure.title = FigureWords::tr("Scale and location");
    figure.xTitle = FigureWords::tr("Fitted value");
    figure.yTitle = FigureWords::tr("√|standardized residual|");
    setPoints(figure, data, data.fitted, std::move(roots));
    if (figure.note.isEmpty())
        figure.yValues.Add(0);
}

void residualByLeverage(Figure &figure, const FigureData &data)
{
    figure.title = FigureWords::tr("Residuals and leverage");
    figure.xTitle = FigureWords::tr("Leverage");
    figure.yTitle = FigureWords::tr("Standardized residual");
    setPoints(figure, data, data.leverage, data.standardized);
    figure.xFromZero = true;
    if (figure.note.isEmpty())
        figure.xValues.Add(0);
    addLevel(figure, 0);
    if (!figure.note.isEmpty())
        return;
    double largest = 0;
    for (const double cook : data.cook) {
        if (std::isfinite(cook))
            largest = std::max(largest, cook);
    }
    std::vector<double> levels{0.5, 1};
    if (largest < 0.5)
        levels = {4.0 / double(figure.PointCount()), 0.5, 1};
    const double p = double(data.terms.size()) + 1;
    const double end = std::min(roomyRange({0, figure.xValues.high}).high, 1.0);
    if (!(end > 0))
        return;
    const AxisRange up = roomyRange(figure.yValues);
    for (const double level : levels) {
        const auto height = [&](double h) { return std::sqrt(level * p * (1 - h) / h); };
        // One that lies outside the frame would only be named in the key.
        if (std::min(height(end), 1e300) > std::max(up.high, -up.low))
            continue;
        for (const double sign : {1.0, -1.0}) {
            FigureLine line;
            line.role = FigureRole::Contour;
            line.name = FigureWords::tr("Cook's distance");
            line.label = figureNumber(level, 2);
            for (const double part : spread(0, 1, CurvePoints)) {
                // Closer together where the curve is steep.
                const double h = end * (0.001 + 0.999 * part * part);
                line.x.push_back(h);
                line.y.push_back(sign * height(h));
            }
            figure.lines.push_back(std::move(line));
        }
    }
    figure.pointName = FigureWords::tr("Observations");
}

void observedByFitted(Figure &figure, const FigureData &data)
{
    figure.title = FigureWords::tr("%1 by fitted value").arg(shown(data.response));
    figure.xTitle = FigureWords::tr("Fitted value");
    figure.yTitle = shown(data.response);
    setPoints(figure, data, data.fitted, data.y);
    if (!figure.note.isEmpty())
        return;
    figure.pointName = FigureWords::tr("Observed");
    const AxisRange across = roomyRange(figure.xValues);
    figure.lines.push_back({FigureRole::Fit,
                            {across.low, across.high},
                            {across.low, across.high},
                            FigureWords::tr("Observed = fitted"),
                            {}});
}

/// Bins from low to high at round numbers: the distance and the number of the first one.
double binWidth(std::vector<double> values, const AxisRange &range)
{
    std::sort(values.begin(), values.end());
    const auto n = double(values.size());
    const double between = values[std::size_t(0.75 * (n - 1))] - values[std::size_t(0.25 * (n - 1))];
    const double span = range.high - range.low;
    double width = 2 * between / std::cbrt(n);
    // Not more bins than can be drawn apart, nor fewer than show a shape.
    width = std::clamp(width, span / 60, span / std::max(3.0, std::log2(n) + 1) * 1.5);
    const Axis round = makeAxis(range, std::max(1, int(std::ceil(span / width))));
    return round.ticks.size() > 1 ? round.ticks[1].value - round.ticks[0].value : width;
}

void residualDistribution(Figure &figure, const FigureData &data)
{
    figure.title = FigureWords::tr("Distribution of the residuals");
    figure.xTitle = FigureWords::tr("Residual");
    figure.yTitle = FigureWords::tr("Observations");
    figure.yFromZero = true;
    std::vector<double> values;
    std::vector<qint64> records;
    for (std::size_t i = 0; i < data.residuals.size(); ++i) {
        if (!std::isfinite(data.residuals[i]))
            continue;
        values.push_back(data.residuals[i]);
        records.push_back(data.records.empty() ? qint64(i + 1) : data.records[i]);
    }
    const AxisRange range = rangeOf(values);
    if (range.IsEmpty()) {
        figure.note = FigureWords::tr("None of its values exist for this fit.");
        return;
    }
    const bool varies = range.low < range.high && range.high - range.low > 1e-300;
    const double width = varies ? binWidth(values, range) : roomyRange(range).high - roomyRange(range).low;
    const double first = varies ? std::floor(range.low / width) : range.low / width - 0.5;
    const int bins = varies ? int(std::floor(range.high / width) - first) + 1 : 1;
    for (int k = 0; k < bins; ++k)
        figure.bars.push_back({(first + k) * width, (first + k + 1) * width, 0, {}});
    for (std::size_t i = 0; i < values.size(); ++i) {
        FigureBar &bar =
            figure.bars[std::size_t(std::clamp(int(std::floor(values[i] / width) - first), 0, bins - 1))];
        bar.height += 1;
        bar.records.push_back(records[i]);
    }
    for (const FigureBar &bar : figure.bars) {
        figure.xValues.Add(bar.from);
        figure.xValues.Add(bar.to);
        figure.yValues.Add(bar.height);
    }
    figure.yValues.Add(0);
    figure.barName = FigureWords::tr("Residuals");
    if (!(data.s > 0) || !std::isfinite(data.s) || !varies)
        return;
    FigureLine curve;
    curve.name = FigureWords::tr("Normal curve");
    const AxisRange across = roomyRange(figure.xValues);
    for (const double x : spread(across.low, across.high, CurvePoints)) {
        const double z = x / data.s;
        curve.x.push_back(x);
        curve.y.push_back(double(values.size()) * width / (data.s * std::sqrt(2 * Pi)) * std::exp(-z * z / 2));
        figure.yValues.Add(curve.y.back());
    }
    figure.lines.push_back(std::move(curve));
}

bool perTerm(FigureKind kind)
{
    return kind == FigureKind::ResponseByTerm || kind == FigureKind::ResidualByTerm ||
           kind == FigureKind::AddedVariable;
}

/// Whether the data have what a figure of that kind is made from.
bool canMake(const FigureData &data, FigureKind kind)
{
    switch (kind) {
    case FigureKind::ResponseByTerm:
        return !data.y.empty();
    case FigureKind::ResidualByOrder:
    case FigureKind::ResidualByTerm:
    case FigureKind::ResidualDistribution:
        return !data.residuals.empty();
    case FigureKind::ResidualByFitted:
        return !data.residuals.empty() && !data.fitted.empty();
    case FigureKind::NormalQuantiles:
        return !data.standardized.empty();
    case FigureKind::ScaleLocation:
        return !data.standardized.empty() && !data.fitted.empty();
    case FigureKind::ResidualByLeverage:
        return !data.standardized.empty() && !data.leverage.empty();
    case FigureKind::AddedVariable:
        return !data.residuals.empty() && !data.partial.empty() && !data.coefficients.empty();
    case FigureKind::ObservedByFitted:
        return !data.y.empty() && !data.fitted.empty();
    case FigureKind::CriterionBySize:
        break;
    }
    return false;
}

} // namespace

Figure fitFigure(const FigureData &data, FigureKind kind, int term)
{
    Figure figure;
    figure.kind = kind;
    figure.term = perTerm(kind) ? term : 0;
    const QString name = figure.term > 0 ? shown(data.terms.value(term - 1)) : QString();
    const QString residual = FigureWords::tr("Residual");
    switch (kind) {
    case FigureKind::ResponseByTerm:
        responseByTerm(figure, data, name);
        break;
    case FigureKind::ResidualByFitted:
        figure.title = FigureWords::tr("Residuals by fitted value");
        figure.xTitle = FigureWords::tr("Fitted value");
        figure.yTitle = residual;
        setPoints(figure, data, data.fitted, data.residuals);
        addLevel(figure, 0);
        break;
    case FigureKind::ResidualByOrder: {
        std::vector<double> ordinals(data.records.begin(), data.records.end());
        if (ordinals.empty()) {
            ordinals.resize(data.residuals.size());
            std::iota(ordinals.begin(), ordinals.end(), 1);
        }
        figure.title = FigureWords::tr("Residuals by record");
        figure.xTitle = FigureWords::tr("Record");
        figure.yTitle = residual;
        figure.xWhole = true;
        setPoints(figure, data, std::move(ordinals), data.residuals);
        addLevel(figure, 0);
        break;
    }
    case FigureKind::ResidualByTerm:
        figure.title = FigureWords::tr("Residuals by %1").arg(name);
        figure.xTitle = name;
        figure.yTitle = residual;
        setPoints(figure, data, data.x[std::size_t(term - 1)], data.residuals);
        addLevel(figure, 0);
        break;
    case FigureKind::NormalQuantiles:
        normalQuantiles(figure, data);
        break;
    case FigureKind::ScaleLocation:
        scaleLocation(figure, data);
        break;
    case FigureKind::ResidualByLeverage:
        residualByLeverage(figure, data);
        break;
    case FigureKind::AddedVariable:
        addedVariable(figure, data, name);
        break;
    case FigureKind::ObservedByFitted:
        observedByFitted(figure, data);
        break;
    case FigureKind::ResidualDistribution:
        residualDistribution(figure, data);
        break;
    case FigureKind::CriterionBySize:
        break;
    }
    return figure;
}

std::vector<Figure> fitFigures(const FigureData &data)
{
    std::vector<Figure> figures;
    for (int k = 0; k < int(FigureKind::CriterionBySize); ++k) {
        const auto kind = FigureKind(k);
        if (!canMake(data, kind))
            continue;
        const int last = perTerm(kind) ? int(data.terms.size()) : 1;
        for (int term = 1; term <= last; ++term)
            figures.push_back(fitFigure(data, kind, term));
    }
    return figures;
}

Figure criterionFigure(const std::vector<SizedModel> &models, const QString &criterion, bool smallestIsBest)
{
    Figure figure;
    figure.kind = FigureKind::CriterionBySize;
    figure.title = FigureWords::tr("%1 by number of terms").arg(shown(criterion));
    figure.xTitle = FigureWords::tr("Number of terms");
    figure.yTitle = shown(criterion);
    figure.xWhole = true;
    FigureLine best;
    best.name = FigureWords::tr("Best of each size");
    for (const SizedModel &model : models) {
        figure.x.push_back(model.size);
        figure.y.push_back(model.value);
        figure.labels += shown(model.terms);
        if (!std::isfinite(model.value))
            continue;
        figure.xValues.Add(model.size);
        figure.yValues.Add(model.value);
        const auto at = std::lower_bound(best.x.begin(), best.x.end(), double(model.size));
        const auto k = at - best.x.begin();
        if (at == best.x.end() || *at != model.size) {
            best.x.insert(at, model.size);
            best.y.insert(best.y.begin() + k, model.value);
        } else if (smallestIsBest == (model.value < best.y[std::size_t(k)])) {
            best.y[std::size_t(k)] = model.value;
        }
    }
    if (best.x.size() > 1) {
        figure.pointName = FigureWords::tr("Models");
        figure.lines.push_back(std::move(best));
    }
    if (figure.xValues.IsEmpty())
        figure.note = FigureWords::tr("There are no models to show.");
    return figure;
}

} // namespace nuvo
