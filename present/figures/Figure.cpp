// SPDX-License-Identifier: MIT
#include "present/figures/Figure.h"

#include "platform/Messages.h"
#include "present/Words.h"

#include <algorithm>
#include <cmath>

namespace nuvo {

bool Figure::HasPoint(std::size_t i) const
{
    return std::isfinite(x[i]) && std::isfinite(y[i]);
}

QString figureFileName(const Figure &figure)
{
    const QString term = QStringLiteral("x%1").arg(figure.term);
    switch (figure.kind) {
    case FigureKind::ResponseByTerm:
        return QStringLiteral("response-") + term;
    case FigureKind::ResidualByFitted:
        return QStringLiteral("residual-fitted");
    case FigureKind::ResidualByOrder:
        return QStringLiteral("residual-order");
    case FigureKind::ResidualByTerm:
        return QStringLiteral("residual-") + term;
    case FigureKind::NormalQuantiles:
        return QStringLiteral("normal-quantiles");
    case FigureKind::ScaleLocation:
        return QStringLiteral("scale-location");
    case FigureKind::ResidualByLeverage:
        return QStringLiteral("residual-leverage");
    case FigureKind::AddedVariable:
        return QStringLiteral("added-") + term;
    case FigureKind::ObservedByFitted:
        return QStringLiteral("observed-fitted");
    case FigureKind::ResidualDistribution:
        return QStringLiteral("residual-distribution");
    case FigureKind::CriterionBySize:
        return QStringLiteral("criterion-size");
    }
    return {};
}

QString figureInWords(const Figure &figure, QChar point)
{
    if (!figure.note.isEmpty())
        return QStringLiteral("%1. %2").arg(figure.title, figure.note);
    const auto number = [point](double value) { return figureNumber(value, 5, point); };
    const auto axis = [&](const QString &title, const AxisRange &values) {
        return values.IsEmpty()
                   ? title
                   : FigureWords::tr("%1 from %2 to %3").arg(title, number(values.low), number(values.high));
    };
    QString words = FigureWords::tr("%1. Across: %2; up: %3.")
                        .arg(figure.title, axis(figure.xTitle, figure.xValues), axis(figure.yTitle, figure.yValues));
    std::size_t points = 0;
    for (std::size_t i = 0; i < figure.PointCount(); ++i)
        points += figure.HasPoint(i) ? 1 : 0;
    if (figure.bars.empty())
        words += u' ' + (points == 1 ? FigureWords::tr("1 point.") : FigureWords::tr("%1 points.").arg(points));
    else
        words += u' ' + FigureWords::tr("%1 bars.").arg(figure.bars.size());
    QStringList names;
    for (const FigureLine &line : figure.lines) {
        if (!line.name.isEmpty() && !names.contains(line.name))
            names += line.name;
    }
    for (const FigureBand &band : figure.bands)
        names += band.name;
    if (!names.isEmpty())
        words += u' ' + FigureWords::tr("Also: %1.").arg(names.join(QStringLiteral("; ")));
    return words;
}

QString pointInWords(const Figure &figure, std::size_t i, QChar point)
{
    const auto number = [point](double value) { return figureNumber(value, 7, point); };
    const QString what = i < std::size_t(figure.labels.size()) ? figure.labels[int(i)]
                         : i < figure.records.size()           ? FigureWords::tr("Record %1").arg(figure.records[i])
                                                               : FigureWords::tr("Point %1").arg(i + 1);
    QStringList lines{what};
    if (figure.kind != FigureKind::ResidualByOrder)
        lines += QStringLiteral("%1: %2").arg(figure.xTitle, number(figure.x[i]));
    lines += QStringLiteral("%1: %2").arg(figure.yTitle, number(figure.y[i]));
    return lines.join(u'\n');
}

QString barInWords(const Figure &figure, std::size_t i, QChar point)
{
    const FigureBar &bar = figure.bars[i];
    return FigureWords::tr("%1 from %2 to %3\n%4: %5")
        .arg(figure.xTitle, figureNumber(bar.from, 7, point), figureNumber(bar.to, 7, point), figure.yTitle,
             figureNumber(bar.height, 7, point));
}

} // namespace nuvo
