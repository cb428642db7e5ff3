// SPDX-License-Identifier: MIT
#include "present/figures/Figurepainter.h"

#include "present/figures/Figurefile.h"
#include "present/figures/Smallfit.h"
#include "support/Print.h"
#include "support/Text.h"

#include <QPalette>

#include <gtest/gtest.h>

using nuvo::contrast;
using nuvo::Figure;
using nuvo::FigureKind;
using nuvo::FigurePainter;
using nuvo::FigureStyle;
using nuvo::FigureTheme;

namespace {

FigurePainter laidOut(const Figure &figure, const QSizeF &size)
{
    return FigurePainter(figure, size, FigureStyle::ofSheet(size));
}

} // namespace

TEST(FigurePainting, KeepsTextsInThePictureAndApartAtEverySize)
{
    const QStringList terms{u("GNPDEFL"),
                            u("An extraordinarily long name of a term that no axis of a small picture holds")};
    for (const Figure &figure : nuvo::fitFigures(scatteredData(30, terms))) {
        for (const QSizeF size : {QSizeF(320, 200), QSizeF(800, 600), QSizeF(400, 900), QSizeF(2400, 1200)}) {
            const FigurePainter painter = laidOut(figure, size);
            const QRectF sheet(QPointF(), size);
            std::vector<QRectF> places = painter.TextPlaces();
            for (std::size_t i = 0; i < places.size(); ++i) {
                EXPECT_TRUE(sheet.contains(places[i])) << figure.title.toStdString() << " text " << i;
                for (std::size_t k = 0; k < i; ++k)
                    EXPECT_FALSE(places[k].adjusted(1, 1, -1, -1).intersects(places[i].adjusted(1, 1, -1, -1)))
                        << figure.title.toStdString() << " at " << size.width() << ": texts " << k << " and " << i;
                EXPECT_FALSE(painter.Frame().adjusted(1, 1, -1, -1).intersects(places[i]));
            }
            EXPECT_GT(painter.Frame().height(), size.height() * 0.4);
            EXPECT_GT(painter.Frame().width(), size.width() * 0.5);
            EXPECT_GE(painter.XAxis().ticks.size(), 2U);
            EXPECT_GE(painter.YAxis().ticks.size(), 2U);
        }
    }
}

TEST(FigurePainting, ShortensLongTitles)
{
    const Figure figure =
        nuvo::fitFigure(scatteredData(9, {QString(300, u'x'), u("b")}), FigureKind::ResponseByTerm, 1);
    const FigurePainter painter = laidOut(figure, {320, 200});
    EXPECT_TRUE(painter.Title().endsWith(u'…'));
    EXPECT_LT(painter.Title().size(), 60);
}

TEST(FigurePainting, HasAKeyWhereThereIsMoreThanOneThing)
{
    const nuvo::FigureData data = scatteredData(30);
    const auto key = [&](FigureKind kind) {
        const Figure figure = nuvo::fitFigure(data, kind, 1);
        return laidOut(figure, {800, 600}).KeyNames().join(u'|');
    };
    EXPECT_EQ(key(FigureKind::ResponseByTerm), u("Observed|Fit, other terms at their means|95 % confidence band"));
    EXPECT_EQ(key(FigureKind::ResidualByLeverage), u("Observations|Cook's distance"));
    EXPECT_EQ(key(FigureKind::ResidualDistribution), u("Residuals|Normal curve"));
    EXPECT_EQ(key(FigureKind::ResidualByFitted), QString());
}

TEST(FigurePainting, FindsThePointUnderAPlaceAndTheNearerOfTwo)
{
    const Figure figure = nuvo::fitFigure(scatteredData(30), FigureKind::ResidualByFitted);
    const FigurePainter painter = laidOut(figure, {800, 600});
    for (std::size_t i = 0; i < figure.PointCount(); ++i) {
        const QPointF place = painter.Place(figure.x[i], figure.y[i]);
        EXPECT_EQ(painter.PointAt(place + QPointF(0.1, 0.1), 5), int(i));
    }
    EXPECT_EQ(painter.PointAt(QPointF(2, 2), 9), -1);
}

TEST(FigurePainting, FindsTheBarUnderAPlace)
{
    const Figure figure = nuvo::fitFigure(scatteredData(200), FigureKind::ResidualDistribution);
    const FigurePainter painter = laidOut(figure, {800, 600});
    for (std::size_t i = 0; i < figure.bars.size(); ++i) {
        const nuvo::FigureBar &bar = figure.bars[i];
        if (bar.height > 3) {
            EXPECT_EQ(painter.BarAt(painter.Place((bar.from + bar.to) / 2, bar.height / 2)), int(i));
        }
    }
    EXPECT_EQ(painter.BarAt(painter.Frame().topLeft()), -1);
}

TEST(FigurePainting, ShowsASection)
{
    const Figure figure = nuvo::fitFigure(scatteredData(30), FigureKind::ResidualByFitted);
    const nuvo::FigureSection part{{figure.x[3] - 0.01, figure.x[3] + 0.01},
                                   {figure.y[3] - 0.01, figure.y[3] + 0.01}};
    const FigurePainter painter(figure, {800, 600}, FigureStyle::ofSheet({800, 600}), part);
    EXPECT_TRUE(painter.IsSeen(3));
    const QPointF away = painter.Place(figure.x[3], figure.y[3]) - painter.Frame().center();
    EXPECT_LT(away.manhattanLength(), 1e-6);
    EXPECT_FALSE(painter.IsSeen(4));
}

TEST(FigurePainting, CutsLinesAndBandsAtTheFrame)
{
    // The contours of this one leave the frame, and so does the band of a section. Nothing of either may show
    // outside.
    nuvo::FigureData data = scatteredData(12);
    data.terms.resize(2);
    for (const FigureKind kind : {FigureKind::ResponseByTerm, FigureKind::ResidualByLeverage}) {
        const Figure figure = nuvo::fitFigure(data, kind, 1);
        Figure bare = figure;
        bare.lines.clear();
        bare.bands.clear();
        bare.pointName.clear();
        nuvo::FigureSection section = nuvo::wholeSection(figure);
        section.y = {section.y.low * 0.9 + section.y.high * 0.1, section.y.low * 0.3 + section.y.high * 0.7};
        section.x = {section.x.low * 0.8 + section.x.high * 0.2, section.x.low * 0.2 + section.x.high * 0.8};
        const QSize size(500, 400);
        const FigureStyle style = FigureStyle::ofSheet(size);
        QImage with(size, QImage::Format_RGB32);
        QImage without(size, QImage::Format_RGB32);
        Figure keyless = figure;
        for (nuvo::FigureLine &line : keyless.lines)
            line.name.clear();
        keyless.bands.empty() ? void() : keyless.bands[0].name.clear();
        keyless.pointName.clear();
        QPainter first(&with);
        const FigurePainter drawn(keyless, size, style, section);
        drawn.Paint(first);
        first.end();
        QPainter second(&without);
        FigurePainter(bare, size, style, section).Paint(second);
        second.end();
        const QRect inside = drawn.Frame().toAlignedRect().adjusted(-2, -2, 2, 2);
        int within = 0;
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                if (with.pixel(x, y) == without.pixel(x, y))
                    continue;
                EXPECT_TRUE(inside.contains(x, y)) << x << ' ' << y;
                ++within;
            }
        }
        EXPECT_GT(within, 20);
    }
}

TEST(FigurePainting, MarksSelectedPointsAndNothingElse)
{
    const Figure figure = nuvo::fitFigure(scatteredData(30), FigureKind::ResidualByFitted);
    const QSize size(800, 600);
    const QImage plain = nuvo::figureImage(figure, {size});
    const QImage marked = nuvo::figureImage(figure, {size, u'.', false, {}, {7}});
    const FigurePainter painter = laidOut(figure, size);
    const QPoint place = painter.Place(figure.x[6], figure.y[6]).toPoint();
    EXPECT_NE(plain.pixel(place), marked.pixel(place));
    EXPECT_EQ(marked.pixelColor(place), FigureTheme::light().selected);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            if (plain.pixel(x, y) != marked.pixel(x, y)) {
                EXPECT_LT((QPoint(x, y) - place).manhattanLength(), 60);
            }
        }
    }
    EXPECT_EQ(plain, nuvo::figureImage(figure, {size, u'.', false, {}, {999}}));
}

TEST(FigurePainting, IsSharpAtTwiceTheRatio)
{
    const Figure figure = nuvo::fitFigure(scatteredData(30), FigureKind::ResidualByFitted);
    const QImage image = nuvo::figureImage(figure, {{400, 300}}, 2);
    EXPECT_EQ(image.size(), QSize(800, 600));
    EXPECT_EQ(image.devicePixelRatio(), 2);
    const QImage enlarged = nuvo::figureImage(figure, {{400, 300}}).scaled(800, 600);
    EXPECT_NE(image.convertToFormat(QImage::Format_RGB32), enlarged);
}

TEST(FigureThemes, HaveColoursThatCanBeTold)
{
    for (const FigureTheme &theme : {FigureTheme::light(), FigureTheme::dark()}) {
        EXPECT_GE(contrast(theme.text, theme.ground), 7);
        for (const QColor &colour : {theme.point, theme.fit, theme.contour, theme.frame})
            EXPECT_GE(contrast(colour, theme.ground), 3) << colour.name().toStdString();
        // The selected point has a rim in the text's colour; its inside differs from other points in lightness.
        EXPECT_GE(contrast(theme.selected, theme.point), 1.5);
    }
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 1e-9);
}

TEST(FigureThemes, FollowThePalette)
{
    QPalette palette;
    palette.setColor(QPalette::Base, QColor(0x20, 0x22, 0x24));
    palette.setColor(QPalette::Text, Qt::white);
    EXPECT_EQ(FigureTheme::of(palette).ground, QColor(0x20, 0x22, 0x24));
    EXPECT_EQ(FigureTheme::of(palette).point, FigureTheme::dark().point);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    EXPECT_EQ(FigureTheme::of(palette).text, QColor(Qt::black));
    EXPECT_EQ(FigureTheme::of(palette).point, FigureTheme::light().point);
}
