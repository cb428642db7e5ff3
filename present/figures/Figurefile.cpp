// SPDX-License-Identifier: MIT
#include "present/figures/Figurefile.h"

#include "platform/Errors.h"
#include "platform/Savefile.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QtSvg/QSvgGenerator>

#include <algorithm>
#include <cmath>

namespace nuvo {

namespace {

constexpr int ScreenDotsPerInch = 96;
constexpr int PaperDotsPerInch = 1200;

FigureSheet held(FigureSheet sheet)
{
    sheet.size = {std::clamp(sheet.size.width(), MinFigureSide, MaxFigureSide),
                  std::clamp(sheet.size.height(), MinFigureSide, MaxFigureSide)};
    return sheet;
}

bool writeSvg(const Figure &figure, const FigureSheet &sheet, QIODevice &device)
{
    QBuffer drawing;
    drawing.open(QIODevice::WriteOnly);
    QSvgGenerator svg;
    svg.setOutputDevice(&drawing);
    svg.setSize(sheet.size);
    svg.setViewBox(QRect(QPoint(), sheet.size));
    svg.setResolution(ScreenDotsPerInch);
    QPainter painter;
    if (!painter.begin(&svg))
        return false;
    paintFigure(figure, sheet, painter);
    if (!painter.end())
        return false;
    // Title and description are put in here: Qt 6.4 writes "<" and "&" in them as they are.
    QByteArray content = drawing.data();
    const qsizetype head = content.indexOf('>', content.indexOf("<svg")) + 1;
    content.insert(head, QStringLiteral("\n<title>%1</title>\n<desc>%2</desc>")
                             .arg(figure.title.toHtmlEscaped(), figureInWords(figure, sheet.point).toHtmlEscaped())
                             .toUtf8());
    return device.write(content) == content.size();
}

bool writePdf(const Figure &figure, const FigureSheet &sheet, QIODevice &device)
{
    QPdfWriter pdf(&device);
    pdf.setTitle(figure.title);
    pdf.setCreator(QStringLiteral("Nuvo Statistics"));
    pdf.setResolution(PaperDotsPerInch);
    const QPageSize page(QSizeF(sheet.size) * 72 / ScreenDotsPerInch, QPageSize::Point, QString(),
                         QPageSize::ExactMatch);
    // A page that is wider than high is not turned.
    pdf.setPageLayout(QPageLayout(page, QPageLayout::Portrait, QMarginsF()));
    QPainter painter;
    if (!painter.begin(&pdf))
        return false;
    painter.scale(double(PaperDotsPerInch) / ScreenDotsPerInch, double(PaperDotsPerInch) / ScreenDotsPerInch);
    paintFigure(figure, sheet, painter);
    return painter.end();
}

QString endingOf(FigureFormat format)
{
    switch (format) {
    case FigureFormat::Png:
        return QStringLiteral("png");
    case FigureFormat::Svg:
        return QStringLiteral("svg");
    case FigureFormat::Pdf:
        return QStringLiteral("pdf");
    }
    return {};
}

} // namespace

bool figureFormatFrom(const QString &name, FigureFormat &format)
{
    for (const FigureFormat one : {FigureFormat::Png, FigureFormat::Svg, FigureFormat::Pdf}) {
        if (name.compare(endingOf(one), Qt::CaseInsensitive) == 0) {
            format = one;
            return true;
        }
    }
    return false;
}

void paintFigure(const Figure &figure, const FigureSheet &sheet, QPainter &painter)
{
    FigureStyle style = FigureStyle::ofSheet(sheet.size);
    style.point = sheet.point;
    if (sheet.dark)
        style.theme = FigureTheme::dark();
    const FigurePainter drawn(figure, sheet.size, style, sheet.section.value_or(wholeSection(figure)));
    drawn.Paint(painter);
    drawn.PaintSelected(painter, sheet.selected);
}

QImage figureImage(const Figure &figure, const FigureSheet &sheet, double ratio)
{
    QImage image((QSizeF(sheet.size) * ratio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    QPainter painter(&image);
    paintFigure(figure, sheet, painter);
    return image;
}

QByteArray figureSvg(const Figure &figure, const FigureSheet &sheet)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writeSvg(figure, held(sheet), buffer) ? buffer.data() : QByteArray();
}

void saveFigure(const Figure &figure, const QString &file, FigureFormat format, const FigureSheet &asked)
{
    const FigureSheet sheet = held(asked);
    saveFile(file, [&](QIODevice &device) {
        switch (format) {
        case FigureFormat::Png:
            return figureImage(figure, sheet).save(&device, "PNG");
        case FigureFormat::Svg:
            return writeSvg(figure, sheet, device);
        case FigureFormat::Pdf:
            return writePdf(figure, sheet, device);
        }
        return false;
    });
}

void saveFigure(const Figure &figure, const QString &file, const FigureSheet &sheet)
{
    FigureFormat format{};
    if (!figureFormatFrom(QFileInfo(file).suffix(), format))
        throw EPlatformError(
            QStringLiteral("Cannot save the figure as \"%1\": the name ends in neither .png nor .svg nor .pdf.")
                .arg(QDir::toNativeSeparators(file)));
    saveFigure(figure, file, format, sheet);
}

QStringList saveFigures(const std::vector<Figure> &figures, const QString &directory, FigureFormat format, QSize size)
{
    const QDir folder(directory);
    if (!QFileInfo(directory).isDir() && !folder.mkpath(QStringLiteral(".")))
        throw EPlatformError(
            QStringLiteral("Cannot make the directory \"%1\".").arg(QDir::toNativeSeparators(directory)));
    QStringList names;
    for (const Figure &figure : figures) {
        names += figureFileName(figure) + u'.' + endingOf(format);
        FigureSheet sheet;
        sheet.size = size;
        saveFigure(figure, folder.filePath(names.last()), format, sheet);
    }
    return names;
}

} // namespace nuvo
