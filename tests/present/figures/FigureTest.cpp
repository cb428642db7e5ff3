// SPDX-License-Identifier: MIT
#include "present/figures/Figure.h"

#include "present/figures/Figurepainter.h"
#include "present/figures/Smallfit.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <set>

using nuvo::Figure;
using nuvo::FigureData;
using nuvo::FigureKind;

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

/// y on x with a few values that no calculator is needed for: ȳ = 3, b = 0.8, a = 0.6.
FigureData fiveData()
{
    return smallFit(u("y"), {1, 3, 2, 5, 4}, {u("x")}, {{1, 2, 3, 4, 5}}, {2, 3, 5, 7, 11});
}

double heightAt(const nuvo::FigureLine &line, double x)
{
    const double part = (x - line.x.front()) / (line.x.back() - line.x.front());
    return line.y.front() + part * (line.y.back() - line.y.front());
}

} // namespace

TEST(Figures, ComeInTheOrderOfTheirKindsAndOncePerTerm)
{
    QStringList names;
    for (const Figure &figure : nuvo::fitFigures(scatteredData(20)))
        names += nuvo::figureFileName(figure);
    EXPECT_EQ(names.join(u' '),
              u("response-x1 response-x2 residual-fitted residual-order residual-x1 residual-x2 normal-quantiles "
                "scale-location residual-leverage added-x1 added-x2 observed-fitted residual-distribution"));
}

TEST(Figures, WithoutTheirFiguresAreLeftOut)
{
    FigureData data = scatteredData(20);
    data.leverage.clear();
    data.partial.clear();
    std::set<FigureKind> kinds;
    for (const Figure &figure : nuvo::fitFigures(data))
        kinds.insert(figure.kind);
    EXPECT_EQ(kinds.count(FigureKind::ResidualByLeverage), 0U);
    EXPECT_EQ(kinds.count(FigureKind::AddedVariable), 0U);
    EXPECT_EQ(kinds.count(FigureKind::ResidualByFitted), 1U);
    EXPECT_TRUE(nuvo::fitFigures({}).empty());
}

TEST(Figures, CarryTheOrdinalsOfTheRecords)
{
    for (const Figure &figure : nuvo::fitFigures(fiveData())) {
        if (figure.kind != FigureKind::ResidualDistribution) {
            EXPECT_EQ(figure.records, (std::vector<qint64>{2, 3, 5, 7, 11}));
        }
    }
    const Figure byOrder = nuvo::fitFigure(fiveData(), FigureKind::ResidualByOrder);
    EXPECT_EQ(byOrder.x, (Column{2, 3, 5, 7, 11}));
    EXPECT_EQ(nuvo::pointInWords(byOrder, 4).section(u'\n', 0, 0), u("Record 11"));
}

TEST(Figures, ResponseAndTermHaveTheFittedLineAndItsBand)
{
    const FigureData data = fiveData();
    const Figure figure = nuvo::fitFigure(data, FigureKind::ResponseByTerm, 1);
    ASSERT_EQ(figure.lines.size(), 1U);
    EXPECT_NEAR(heightAt(figure.lines[0], 3), 3, 1e-12);
    EXPECT_NEAR(heightAt(figure.lines[0], 4), 3.8, 1e-12);
    ASSERT_EQ(figure.bands.size(), 1U);
    EXPECT_EQ(figure.bands[0].name, u("95 % confidence band"));
    // s² = 3.6 / 3, t(0.975, 3) = 3.182446, at the ends of the band sqrt(s² (1/5 + (x - 3)²/10)).
    const nuvo::FigureBand &band = figure.bands[0];
    for (const std::size_t i : {std::size_t(0), band.x.size() - 1}) {
        const double half = 3.182446305284263 * std::sqrt(1.2 * (0.2 + (band.x[i] - 3) * (band.x[i] - 3) / 10));
        EXPECT_NEAR(band.high[i] - band.low[i], 2 * half, 1e-9);
    }
}

TEST(Figures, WithoutDegreesOfFreedomHaveNoBand)
{
    FigureData data = fiveData();
    data.quantile = NaN;
    EXPECT_TRUE(nuvo::fitFigure(data, FigureKind::ResponseByTerm, 1).bands.empty());
    EXPECT_EQ(nuvo::fitFigure(data, FigureKind::ResponseByTerm, 1).lines.size(), 1U);
    data.coefficients[1] = NaN;
    EXPECT_TRUE(nuvo::fitFigure(data, FigureKind::ResponseByTerm, 1).lines.empty());
}

TEST(Figures, AddedVariablesHaveTheCoefficientAsSlope)
{
    const FigureData data = scatteredData(40);
    for (const int term : {1, 2}) {
        const Figure figure = nuvo::fitFigure(data, FigureKind::AddedVariable, term);
        // The slope of least squares through the points is the coefficient of the fit.
        double products = 0;
        double squares = 0;
        for (std::size_t i = 0; i < figure.x.size(); ++i) {
            products += figure.x[i] * figure.y[i];
            squares += figure.x[i] * figure.x[i];
        }
        EXPECT_NEAR(products / squares, data.coefficients[std::size_t(term)], 1e-10);
        EXPECT_NEAR(heightAt(figure.lines.at(0), 1), data.coefficients[std::size_t(term)], 1e-10);
    }
}

TEST(Figures, NormalQuantilesAreThoseOfThePositions)
{
    const Figure figure = nuvo::fitFigure(fiveData(), FigureKind::NormalQuantiles);
    // (i - 3/8) / (n + 1/4): the middle one of five is 0, the ends are the quantile of 0.625 / 5.25.
    Column sorted = figure.x;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_NEAR(sorted[2], 0, 1e-15);
    EXPECT_NEAR(sorted[0], -1.1797611, 1e-7);
    EXPECT_NEAR(sorted[4], 1.1797611, 1e-7);
    for (std::size_t i = 0; i < 5; ++i) {
        for (std::size_t k = 0; k < 5; ++k)
            EXPECT_EQ(figure.x[i] < figure.x[k], figure.y[i] < figure.y[k] || (figure.y[i] == figure.y[k] && i < k));
    }
}

TEST(Figures, ContoursGoThroughWhatHasTheirCooksDistance)
{
    const FigureData data = scatteredData(12);
    const Figure figure = nuvo::fitFigure(data, FigureKind::ResidualByLeverage);
    int contours = 0;
    for (const nuvo::FigureLine &line : figure.lines) {
        if (line.role != nuvo::FigureRole::Contour)
            continue;
        ++contours;
        for (std::size_t i = 0; i < line.x.size(); ++i) {
            const double cook = line.y[i] * line.y[i] * line.x[i] / ((1 - line.x[i]) * 3);
            EXPECT_NEAR(nuvo::figureNumber(cook, 2).toDouble(), line.label.toDouble(), 1e-9);
        }
    }
    EXPECT_GT(contours, 0);
}

TEST(Figures, HistogramsCountEveryResidualOnce)
{
    for (const int n : {5, 40, 2500}) {
        const FigureData data = scatteredData(n);
        const Figure figure = nuvo::fitFigure(data, FigureKind::ResidualDistribution);
        double counted = 0;
        std::multiset<qint64> records;
        for (const nuvo::FigureBar &bar : figure.bars) {
            counted += bar.height;
            EXPECT_EQ(bar.height, double(bar.records.size()));
            for (const qint64 record : bar.records) {
                const double value = data.residuals[std::size_t(record - 1)];
                EXPECT_GE(value, bar.from - 1e-9);
                EXPECT_LE(value, bar.to + 1e-9);
            }
            records.insert(bar.records.begin(), bar.records.end());
        }
        EXPECT_EQ(counted, n);
        EXPECT_EQ(std::set<qint64>(records.begin(), records.end()).size(), std::size_t(n));
        EXPECT_GE(figure.bars.size(), 2U);
        EXPECT_LE(figure.bars.size(), 70U);
    }
}

TEST(Figures, LeaveOutWhatDoesNotExist)
{
    FigureData data = scatteredData(10);
    data.standardized[3] = NaN;
    data.leverage[3] = 1;
    data.cook[3] = NaN;
    for (const Figure &figure : nuvo::fitFigures(data)) {
        const nuvo::FigurePainter painter(figure, QSizeF(400, 300), nuvo::FigureStyle::ofSheet({400, 300}));
        for (std::size_t i = 0; i < figure.PointCount(); ++i)
            EXPECT_EQ(painter.IsSeen(i), figure.HasPoint(i)) << figure.title.toStdString();
    }
    data.standardized.assign(10, NaN);
    EXPECT_NE(nuvo::fitFigure(data, FigureKind::NormalQuantiles).note, QString());
    EXPECT_NE(nuvo::fitFigure(data, FigureKind::ResidualByLeverage).note, QString());
}

TEST(Figures, OfConstantResidualsAndOfExtremesAreMade)
{
    for (const double scale : {0.0, 1e-320, 1e-150, 1.0, 1e150, 1e307}) {
        FigureData data = scatteredData(8);
        for (auto *values : {&data.y, &data.fitted, &data.residuals, &data.x[0], &data.partial[0]}) {
            for (double &value : *values)
                value *= scale;
        }
        data.s *= scale;
        for (const Figure &figure : nuvo::fitFigures(data)) {
            const nuvo::FigurePainter painter(figure, QSizeF(400, 300), nuvo::FigureStyle::ofSheet({400, 300}));
            for (std::size_t i = 0; i < figure.PointCount(); ++i) {
                if (figure.HasPoint(i)) {
                    EXPECT_TRUE(painter.Frame().contains(painter.Place(figure.x[i], figure.y[i])))
                        << figure.title.toStdString() << " at " << scale;
                }
            }
        }
    }
}

TEST(Figures, HaveNamesWithoutControlCharacters)
{
    FigureData data = scatteredData(6, {u("a\nb\x1b"), u("x & <y>")});
    data.response = u("y\t\x01");
    for (const Figure &figure : nuvo::fitFigures(data)) {
        for (const QString &text : {figure.title, figure.xTitle, figure.yTitle}) {
            for (const QChar letter : text)
                EXPECT_GE(letter.unicode(), u' ') << text.toStdString();
        }
    }
}

TEST(Figures, OfASelectionJoinTheBestOfEachSize)
{
    const std::vector<nuvo::SizedModel> models{{1, 9, u("b")}, {1, 7, u("a")}, {2, 3, u("a, b")}, {3, NaN, u("all")}};
    const Figure figure = nuvo::criterionFigure(models, u("Cp"), true);
    EXPECT_EQ(nuvo::figureFileName(figure), u("criterion-size"));
    ASSERT_EQ(figure.lines.size(), 1U);
    EXPECT_EQ(figure.lines[0].x, (Column{1, 2}));
    EXPECT_EQ(figure.lines[0].y, (Column{7, 3}));
    EXPECT_EQ(nuvo::criterionFigure(models, u("adj-r2"), false).lines[0].y, (Column{9, 3}));
    EXPECT_EQ(nuvo::pointInWords(figure, 2), u("a, b\nNumber of terms: 2\nCp: 3"));
    EXPECT_NE(nuvo::criterionFigure({}, u("Cp"), true).note, QString());
}

TEST(Figures, AreToldInWords)
{
    const Figure figure = nuvo::fitFigure(fiveData(), FigureKind::ResponseByTerm, 1);
    EXPECT_EQ(nuvo::figureInWords(figure), u("y by x. Across: x from 1 to 5; up: y from 1 to 5. 5 points. Also: Fit; "
                                             "95 % confidence band."));
    EXPECT_EQ(nuvo::pointInWords(figure, 1, u','), u("Record 3\nx: 2\ny: 3"));
}
