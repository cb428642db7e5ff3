// SPDX-License-Identifier: MIT
#include "present/Plotfile.h"

#include "platform/Errors.h"
#include "platform/Savefile.h"

#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QXmlStreamWriter>

#include <algorithm>

namespace nuvo {

namespace {

constexpr double Margin = 8;
constexpr double LineHeight = 14;
constexpr double DotRadius = 2.5;

QFont pictureFont(bool bold = false)
{
    QFont font(QStringLiteral("Arial"));
    font.setPixelSize(11);
    font.setBold(bold);
    return font;
}

/// A line of text; its anchor on the base line is its left end (0), its middle (0.5) or its right end (1).
struct Text
{
    QPointF at;
    double anchor;
    QString text;
    bool bold = false;
};

/// Where everything stands, in the canvas's pixels.
struct Layout
{
    QSizeF size;
    QRectF canvas;
    std::vector<Text> texts;
};

Layout layOut(const PlotPicture &picture)
{
    const QFontMetricsF metrics(pictureFont());
    const PlotAxes &axes = picture.plot.axes;
    const auto figure = [&picture](double value, int digits) { return axisText(value, digits, picture.point); };
    const QString yMin = figure(axes.yMin, axes.yDigits);
    const QString yMax = figure(axes.yMax, axes.yDigits);
    const double gutter = std::max(metrics.horizontalAdvance(yMin), metrics.horizontalAdvance(yMax)) + 4;
    const double captionWidth = QFontMetricsF(pictureFont(true)).horizontalAdvance(picture.plot.caption);
    // A long caption widens the picture and the canvas stays in the middle.
    const double width = std::max(gutter + PlotWidth, captionWidth);
    const double left = Margin + (width - gutter - PlotWidth) / 2 + gutter;

    Layout layout;
    layout.canvas = QRectF(left, Margin + LineHeight + 4, PlotWidth, PlotHeight);
    const QRectF &canvas = layout.canvas;
    const double ascent = metrics.ascent();
    layout.size = {width + 2 * Margin, canvas.bottom() + LineHeight + Margin};
    layout.texts = {{{layout.size.width() / 2, Margin + ascent}, 0.5, picture.plot.caption, true},
                    {{canvas.left() - 4, canvas.top() + ascent}, 1, yMax},
                    {{canvas.left() - 4, canvas.bottom()}, 1, yMin},
                    {{canvas.left(), canvas.bottom() + 2 + ascent}, 0, figure(axes.xMin, axes.xDigits)},
                    {{canvas.right(), canvas.bottom() + 2 + ascent}, 1, figure(axes.xMax, axes.xDigits)}};
    return layout;
}

QPointF middleOf(QPoint dot)
{
    return QPointF(dot) + QPointF(DotRadius, DotRadius);
}

bool writeSvg(const PlotPicture &picture, QIODevice &device)
{
    const Layout layout = layOut(picture);
    const auto number = [](double value) { return QString::number(value, 'f', 2); };
    QXmlStreamWriter xml(&device);
    const auto rectangle = [&](const QRectF &rect, const QColor &fill, bool edged) {
        xml.writeEmptyElement(QStringLiteral("rect"));
        xml.writeAttribute(QStringLiteral("x"), number(rect.x()));
        xml.writeAttribute(QStringLiteral("y"), number(rect.y()));
        xml.writeAttribute(QStringLiteral("width"), number(rect.width()));
        xml.writeAttribute(QStringLiteral("height"), number(rect.height()));
        xml.writeAttribute(QStringLiteral("fill"), fill.name());
        if (edged)
            xml.writeAttribute(QStringLiteral("stroke"), QStringLiteral("#808080"));
    };
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("svg"));
    xml.writeDefaultNamespace(QStringLiteral("http://www.w3.org/2000/svg"));
    xml.writeAttribute(QStringLiteral("width"), number(layout.size.width()));
    xml.writeAttribute(QStringLiteral("height"), number(layout.size.height()));
    xml.writeAttribute(QStringLiteral("viewBox"),
                       QStringLiteral("0 0 ") + number(layout.size.width()) + u' ' + number(layout.size.height()));
    xml.writeTextElement(QStringLiteral("title"), picture.plot.caption);
    xml.writeTextElement(QStringLiteral("desc"), plotInWords(picture.plot, picture.point));
    rectangle(QRectF(QPointF(), layout.size), Qt::white, false);
    rectangle(layout.canvas, picture.ground, true);
    // A picture in the picture: what leaves the canvas is cut there.
    xml.writeStartElement(QStringLiteral("svg"));
    xml.writeAttribute(QStringLiteral("x"), number(layout.canvas.x()));
    xml.writeAttribute(QStringLiteral("y"), number(layout.canvas.y()));
    xml.writeAttribute(QStringLiteral("width"), number(PlotWidth));
    xml.writeAttribute(QStringLiteral("height"), number(PlotHeight));
    xml.writeAttribute(QStringLiteral("fill"), picture.dots.name());
    for (const QPoint dot : picture.plot.dots) {
        xml.writeEmptyElement(QStringLiteral("circle"));
        xml.writeAttribute(QStringLiteral("cx"), number(middleOf(dot).x()));
        xml.writeAttribute(QStringLiteral("cy"), number(middleOf(dot).y()));
        xml.writeAttribute(QStringLiteral("r"), number(DotRadius));
    }
    xml.writeEndElement();
    for (const Text &text : layout.texts) {
        xml.writeStartElement(QStringLiteral("text"));
        xml.writeAttribute(QStringLiteral("x"), number(text.at.x()));
        xml.writeAttribute(QStringLiteral("y"), number(text.at.y()));
        xml.writeAttribute(QStringLiteral("font-family"), QStringLiteral("Arial, Liberation Sans, sans-serif"));
        xml.writeAttribute(QStringLiteral("font-size"), QStringLiteral("11"));
        if (text.bold)
            xml.writeAttribute(QStringLiteral("font-weight"), QStringLiteral("bold"));
        xml.writeAttribute(QStringLiteral("text-anchor"), text.anchor == 0   ? QStringLiteral("start")
                                                          : text.anchor == 1 ? QStringLiteral("end")
                                                                             : QStringLiteral("middle"));
        xml.writeCharacters(text.text);
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return !xml.hasError();
}

void savePng(const QImage &image, const QString &file)
{
    saveFile(file, [&image](QIODevice &device) { return image.save(&device, "PNG"); });
}

} // namespace

QImage plotImage(const PlotPicture &picture, int width)
{
    const Layout layout = layOut(picture);
    const double scale = std::clamp(width, MinPictureWidth, MaxPictureWidth) / layout.size.width();
    QImage image((layout.size * scale).toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.setPen(QPen(QColor(0x80, 0x80, 0x80), 1));
    painter.setBrush(picture.ground);
    painter.drawRect(layout.canvas);
    painter.setPen(Qt::black);
    for (const Text &text : layout.texts) {
        const QFont font = pictureFont(text.bold);
        painter.setFont(font);
        const double advance = QFontMetricsF(font).horizontalAdvance(text.text);
        painter.drawText(text.at - QPointF(text.anchor * advance, 0), text.text);
    }
    painter.setClipRect(layout.canvas);
    painter.translate(layout.canvas.topLeft());
    painter.setPen(Qt::NoPen);
    painter.setBrush(picture.dots);
    for (const QPoint dot : picture.plot.dots)
        painter.drawEllipse(middleOf(dot), DotRadius, DotRadius);
    return image;
}

void savePlot(const PlotPicture &picture, const QString &file, int width)
{
    const QString ending = QFileInfo(file).suffix().toLower();
    if (ending == QLatin1String("png"))
        savePng(plotImage(picture, width), file);
    else if (ending == QLatin1String("svg"))
        saveFile(file, [&picture](QIODevice &device) { return writeSvg(picture, device); });
    else
        throw EPlatformError(
            QStringLiteral("Cannot save the plot as \"%1\": the name ends in neither .png nor .svg.").arg(file));
}

void savePlots(TRegression &regression, const QString &directory)
{
    const QDir folder(directory);
    if (!QFileInfo(directory).isDir() && !folder.mkpath(QStringLiteral(".")))
        throw EPlatformError(
            QStringLiteral("Cannot make the directory \"%1\".").arg(QDir::toNativeSeparators(directory)));
    const PlotData data = plotData(regression);
    QStringList written;
    for (const NamedPlot &named : allPlots(data.m)) {
        PlotCanvas canvas;
        canvas.DrawDots(makePlot(data, named.code));
        const QString file = named.name + QLatin1String(".png");
        try {
            savePng(canvas.Image(), folder.filePath(file));
        } catch (const EPlatformError &error) {
            if (written.isEmpty())
                throw;
            throw EPlatformError(
                QStringLiteral("%1 Written before it: %2.").arg(error.Message(), written.join(QStringLiteral(", "))));
        }
        written.append(file);
    }
}

} // namespace nuvo
