// SPDX-License-Identifier: MIT
#include "present/figures/Figurefile.h"

#include "present/figures/Smallfit.h"
#include "support/Print.h"
#include "support/Text.h"

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

using nuvo::Figure;
using nuvo::FigureFormat;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

/// All texts of an SVG file; a failure when it is not well-formed.
QString svgTexts(const QByteArray &svg)
{
    QXmlStreamReader xml(svg);
    QStringList texts;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::Characters && !xml.isWhitespace())
            texts += xml.text().toString();
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return texts.join(u'|');
}

} // namespace

TEST(FigureFiles, OfAWholeSetAreNamedByKindAndTerm)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u("new/figures"));
    const QStringList names = nuvo::saveFigures(nuvo::fitFigures(scatteredData(12)), path);
    EXPECT_EQ(names.size(), 13);
    EXPECT_EQ(names.first(), u("response-x1.png"));
    QStringList sorted = names;
    sorted.sort();
    EXPECT_EQ(QDir(path).entryList(QDir::Files, QDir::Name), sorted);
    for (const QString &name : names)
        EXPECT_EQ(QImageReader(QDir(path).filePath(name)).size(), QSize(800, 600));
}

TEST(FigureFiles, OfEveryFormatHaveTheSizeAskedFor)
{
    const QTemporaryDir folder;
    const std::vector<Figure> figures{nuvo::fitFigure(scatteredData(12), nuvo::FigureKind::ResidualByFitted)};
    for (const FigureFormat format : {FigureFormat::Png, FigureFormat::Svg, FigureFormat::Pdf})
        nuvo::saveFigures(figures, folder.path(), format, {640, 320});
    EXPECT_EQ(QImageReader(folder.filePath(u("residual-fitted.png"))).size(), QSize(640, 320));
    EXPECT_TRUE(contentOf(folder.filePath(u("residual-fitted.svg"))).contains("viewBox=\"0 0 640 320\""));
    EXPECT_TRUE(contentOf(folder.filePath(u("residual-fitted.pdf"))).contains("/MediaBox [0 0 480"));
}

TEST(FigureFiles, AsSvgAreWellFormedAndHaveTexts)
{
    const QStringList terms{u("a < b & \"c\""), u("d\x01\x0c"
                                                  "e\xef\xbf\xbe")};
    for (const Figure &figure : nuvo::fitFigures(scatteredData(12, terms))) {
        const QString texts = svgTexts(nuvo::figureSvg(figure, {{800, 600}}));
        EXPECT_TRUE(texts.contains(figure.yTitle)) << figure.title.toStdString() << ": " << texts.toStdString();
    }
}

TEST(FigureFiles, AsPdfHaveFontsAndNoPictures)
{
    const QTemporaryDir folder;
    for (const Figure &figure : nuvo::fitFigures(scatteredData(12))) {
        nuvo::saveFigure(figure, folder.filePath(u("figure.PDF")));
        const QByteArray pdf = contentOf(folder.filePath(u("figure.PDF")));
        EXPECT_TRUE(pdf.startsWith("%PDF-"));
        EXPECT_TRUE(pdf.contains("/FontFile")) << figure.title.toStdString();
        EXPECT_FALSE(pdf.contains("/Subtype /Image")) << figure.title.toStdString();
    }
}

TEST(FigureFiles, RefuseAnotherEnding)
{
    const Figure figure = nuvo::fitFigure(scatteredData(12), nuvo::FigureKind::ResidualByFitted);
    EXPECT_EQ(errorOf([&] { nuvo::saveFigure(figure, u("figure.gif")); }),
              u("Cannot save the figure as \"figure.gif\": the name ends in neither .png nor .svg nor .pdf."));
    FigureFormat format{};
    EXPECT_TRUE(nuvo::figureFormatFrom(u("SVG"), format));
    EXPECT_EQ(format, FigureFormat::Svg);
    EXPECT_FALSE(nuvo::figureFormatFrom(u("bmp"), format));
}

TEST(FigureFiles, ThatCannotBeWrittenAreNamedAndNotCut)
{
    const Figure figure = nuvo::fitFigure(scatteredData(12), nuvo::FigureKind::ResidualByFitted);
    EXPECT_TRUE(
        errorOf([&] { nuvo::saveFigure(figure, u("/nowhere/figure.png")); }).contains(u("/nowhere/figure.png")));
    EXPECT_TRUE(
        errorOf([&] { nuvo::saveFigures({figure}, u("/dev/null/figures")); }).contains(u("/dev/null/figures")));
    const QTemporaryDir folder;
    QDir(folder.path()).mkdir(u("residual-fitted.png"));
    EXPECT_TRUE(errorOf([&] { nuvo::saveFigures({figure}, folder.path()); }).contains(u("residual-fitted.png")));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 0);
}

TEST(FigureFiles, KeepTheirSidesWithinBounds)
{
    const QTemporaryDir folder;
    const Figure figure = nuvo::fitFigure(scatteredData(12), nuvo::FigureKind::ResidualByFitted);
    nuvo::saveFigure(figure, folder.filePath(u("tiny.png")), {{-3, 0}});
    EXPECT_EQ(QImageReader(folder.filePath(u("tiny.png"))).size(), QSize(50, 50));
}
