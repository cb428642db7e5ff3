// SPDX-License-Identifier: MIT
// Where the parts of a figure stand. What they look like is in Figurepainter.cpp.
#include "present/figures/Figurepainter.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace nuvo {

namespace {

constexpr double Margin = 8;
constexpr double Gap = 5; ///< between texts and what they belong to
/// The key never takes more of the height than that, nor tick texts more of the width.
constexpr double MostKey = 0.18;
constexpr double MostGutter = 0.4;
constexpr double Far = 1e9;

double widthOf(const QFont &font, const QString &text)
{
    return QFontMetricsF(font).horizontalAdvance(text);
}

double heightOf(const QFont &font)
{
    return std::ceil(QFontMetricsF(font).height());
}

} // namespace

FigureSection wholeSection(const Figure &figure)
{
    FigureSection section{roomyRange(figure.xValues), roomyRange(figure.yValues)};
    if (figure.xFromZero && figure.xValues.high > 0)
        section.x.low = 0;
    if (figure.yFromZero && figure.yValues.high > 0)
        section.y.low = 0;
    return section;
}

FigurePainter::FigurePainter(const Figure &figure, const QSizeF &size, const FigureStyle &style)
    : FigurePainter(figure, size, style, wholeSection(figure))
{
}

FigurePainter::FigurePainter(const Figure &figure, const QSizeF &size, const FigureStyle &style,
                             const FigureSection &section)
    : figure_(figure), size_(size), style_(style), section_(section),
      text_(style.font.pixelSize() > 0 ? style.font.pixelSize() : QFontMetricsF(style.font).height() * 0.8)
{
    // Thousands of points are smaller, so that they can be told apart.
    const double many = double(figure.PointCount());
    pointSize_ = text_ * (many <= 60 ? 0.27 : many <= 400 ? 0.22 : 0.16);
    LayOut();
}

QFont FigurePainter::FontOf(double scale, bool bold) const
{
    QFont font = style_.font;
    font.setPixelSize(std::max(7, int(std::lround(text_ * scale))));
    font.setBold(bold);
    return font;
}

void FigurePainter::LayOut()
{
    const double width = size_.width() - 2 * Margin;
    const QFont titleFont = FontOf(1.1, true);
    title_.text = QFontMetricsF(titleFont).elidedText(figure_.title, Qt::ElideRight, width);
    title_.place = QRectF(Margin, Margin, std::max(width, 0.0), heightOf(titleFont));
    double top = title_.place.bottom() + Gap;
    top = LayOutKey(top, size_.height() * MostKey);
    LayOutAxes(top);
}

double FigurePainter::LayOutKey(double top, double mostHeight)
{
    const auto add = [this](KeyEntry::Sign sign, FigureRole role, const QString &name) {
        const auto same = [&](const KeyEntry &entry) { return entry.name == name; };
        if (!name.isEmpty() && std::none_of(key_.begin(), key_.end(), same))
            key_.push_back({sign, role, name});
    };
    if (figure_.note.isEmpty()) {
        add(KeyEntry::Point, FigureRole::Fit, figure_.pointName);
        if (!figure_.bars.empty())
            add(KeyEntry::Bar, FigureRole::Fit, figure_.barName);
        for (const FigureLine &line : figure_.lines)
            add(KeyEntry::Line, line.role, line.name);
        for (const FigureBand &band : figure_.bands)
            add(KeyEntry::Band, FigureRole::Fit, band.name);
    }
    if (key_.size() < 2) {
        key_.clear();
        return top;
    }
    const QFont font = FontOf(0.92);
    const double height = heightOf(font);
    const double sign = SignWidth() + SignGap();
    const double right = size_.width() - Margin;
    double x = Margin;
    double y = top;
    for (KeyEntry &entry : key_) {
        double width = sign + widthOf(font, entry.name) + 1;
        if (x > Margin && x + width > right) {
            x = Margin;
            y += height + 1;
        }
        if (x + width > right) {
            entry.name = QFontMetricsF(font).elidedText(entry.name, Qt::ElideRight, right - x - sign - 1);
            width = right - x;
        }
        entry.place = QRectF(x, y, width, height);
        x += width + 1.2 * text_;
    }
    if (y + height - top > std::max(mostHeight, height + 1)) {
        key_.clear();
        return top;
    }
    return y + height + Gap;
}

void FigurePainter::LayOutAxes(double top)
{
    const QFont axisFont = FontOf(1);
    const QFont tickFont = FontOf(0.92);
    const QFontMetricsF ticks(tickFont);
    const double axisHeight = heightOf(axisFont);
    const double tickHeight = heightOf(tickFont);
    const double bottom = size_.height() - Margin - axisHeight - Gap / 2 - tickHeight - Gap - TickLength;
    const double height = std::max(bottom - top, 1.0);

    // A single tick tells no scale.
    int rows = std::clamp(int(height / (tickHeight * 2.1)), 2, 12);
    do
        y_ = makeAxis(section_.y, rows, false, style_.point);
    while (y_.ticks.size() < 2 && ++rows * tickHeight < height);
    double gutter = 0;
    for (const AxisTick &tick : y_.ticks)
        gutter = std::max(gutter, ticks.horizontalAdvance(tick.text));
    gutter = std::min(gutter, size_.width() * MostGutter);
    const double left = Margin + axisHeight + Gap + gutter + Gap + TickLength;
    const double right = std::max(size_.width() - Margin - text_ / 2, left + 1);
    frame_ = QRectF(QPointF(std::round(left) + 0.5, std::round(top) + 0.5),
                    QPointF(std::round(right) - 0.5, std::round(top + height) - 0.5));

    // Fewer ticks until their texts stand apart.
    for (int most = std::clamp(int(frame_.width() / (text_ * 3)), 2, 12); most >= 1; --most) {
        x_ = makeAxis(section_.x, most, figure_.xWhole, style_.point);
        bool apart = true;
        for (std::size_t i = 1; i < x_.ticks.size(); ++i) {
            const double middle = (x_.Place(x_.ticks[i].value) - x_.Place(x_.ticks[i - 1].value)) * frame_.width();
            apart = apart && middle > (ticks.horizontalAdvance(x_.ticks[i].text) +
                                       ticks.horizontalAdvance(x_.ticks[i - 1].text)) /
                                              2 +
                                          text_ * 0.8;
        }
        if (apart)
            break;
    }
    for (const AxisTick &tick : x_.ticks) {
        const double width = ticks.horizontalAdvance(tick.text);
        const double at =
            std::clamp(Place(tick.value, 0).x() - width / 2, 1.0, std::max(1.0, size_.width() - width - 1));
        xTexts_.push_back({QRectF(at, frame_.bottom() + TickLength + Gap / 2, width, tickHeight), tick.text});
    }
    for (const AxisTick &tick : y_.ticks) {
        const QString text = ticks.elidedText(tick.text, Qt::ElideRight, gutter + 1);
        const double width = ticks.horizontalAdvance(text);
        const double middle = frame_.bottom() - y_.Place(tick.value) * frame_.height();
        yTexts_.push_back(
            {QRectF(frame_.left() - TickLength - Gap - width, middle - tickHeight / 2, width, tickHeight), text});
    }
    // The part that tells what was taken off the ticks is never shortened.
    const auto axisTitle = [&](const QString &title, const QString &less, double room) {
        return QFontMetricsF(axisFont).elidedText(title, Qt::ElideRight, room - widthOf(axisFont, less)) + less;
    };
    xTitle_.text = axisTitle(figure_.xTitle, x_.less, frame_.width());
    xTitle_.place = QRectF(frame_.left(), size_.height() - Margin - axisHeight, frame_.width(), axisHeight);
    yTitle_.text = axisTitle(figure_.yTitle, y_.less, frame_.height());
    yTitle_.place = QRectF(Margin, frame_.top(), axisHeight, frame_.height());
    yTitle_.upwards = true;
}

QStringList FigurePainter::KeyNames() const
{
    QStringList names;
    for (const KeyEntry &entry : key_)
        names += entry.name;
    return names;
}

std::vector<QRectF> FigurePainter::TextPlaces() const
{
    std::vector<QRectF> places{title_.place, xTitle_.place, yTitle_.place};
    for (const KeyEntry &entry : key_)
        places.push_back(entry.place);
    for (const Text &text : xTexts_)
        places.push_back(text.place);
    for (const Text &text : yTexts_)
        places.push_back(text.place);
    return places;
}

QPointF FigurePainter::Place(double x, double y) const
{
    return {std::clamp(frame_.left() + x_.Place(x) * frame_.width(), -Far, Far),
            std::clamp(frame_.bottom() - y_.Place(y) * frame_.height(), -Far, Far)};
}

QPointF FigurePainter::Value(const QPointF &place) const
{
    return {x_.Value((place.x() - frame_.left()) / frame_.width()),
            y_.Value((frame_.bottom() - place.y()) / frame_.height())};
}

bool FigurePainter::IsSeen(std::size_t i) const
{
    return figure_.HasPoint(i) && x_.range.Contains(figure_.x[i]) && y_.range.Contains(figure_.y[i]);
}

int FigurePainter::PointAt(const QPointF &where, double within) const
{
    int nearest = -1;
    double least = within * within;
    for (std::size_t i = 0; i < figure_.PointCount(); ++i) {
        if (!IsSeen(i))
            continue;
        const QPointF away = Place(figure_.x[i], figure_.y[i]) - where;
        if (const double distance = QPointF::dotProduct(away, away); distance <= least) {
            least = distance;
            nearest = int(i);
        }
    }
    return nearest;
}

QRectF FigurePainter::BarPlace(const FigureBar &bar, double height) const
{
    return QRectF(Place(bar.from, height), Place(bar.to, 0)).normalized() & frame_;
}

int FigurePainter::BarAt(const QPointF &where) const
{
    for (std::size_t i = 0; i < figure_.bars.size(); ++i) {
        if (BarPlace(figure_.bars[i], figure_.bars[i].height).contains(where))
            return int(i);
    }
    return -1;
}

} // namespace nuvo
