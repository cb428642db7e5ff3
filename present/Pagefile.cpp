// SPDX-License-Identifier: MIT
#include "platform/Errors.h"
#include "platform/Savefile.h"
#include "present/Pagelayout.h"
#include "present/figures/Figurefile.h"

#include <QAbstractTextDocumentLayout>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>

#include <algorithm>
#include <cmath>

namespace nuvo {

namespace {

constexpr int FileColumns = 132; ///< of a .txt: the usual table in one piece

// Lengths on paper, in pixels at 96 an inch as figures count them.
constexpr double PixelsPerInch = 96;
constexpr double FigureWidth = 440; ///< the least
constexpr double FigureHeight = 290;
constexpr double FigureGap = 20;
constexpr double FooterHeight = 28;

/// Sheets of a device, each with its number at its foot.
class Sheets
{
public:
    Sheets(QPagedPaintDevice &device, QPainter &painter)
        : device_(device), painter_(painter), scale_(device.logicalDpiX() / PixelsPerInch)
    {
    }

    double scale() const { return scale_; }
    /// What a sheet has above its foot.
    QSizeF size() const { return {device_.width() / scale_, device_.height() / scale_ - FooterHeight}; }

    void next()
    {
        if (number_++ > 0)
            device_.newPage();
        QFont font;
        font.setPointSizeF(8);
        painter_.save();
        painter_.setFont(QFont(font, &device_));
        painter_.setPen(Qt::black);
        painter_.drawText(QRectF(0, 0, device_.width(), device_.height()), Qt::AlignRight | Qt::AlignBottom,
                          QString::number(number_));
        painter_.restore();
    }

private:
    QPagedPaintDevice &device_;
    QPainter &painter_;
    double scale_;
    int number_ = 0;
};

/// Puts tables that would be cut by the end of a sheet on the next one, with the heading above them.
void keepTablesWhole(QTextDocument &document)
{
    const double height = document.pageSize().height();
    for (QTextFrame *frame : document.rootFrame()->childFrames()) {
        QTextCursor above(&document);
        above.setPosition(std::max(0, frame->firstPosition() - 1));
        if (above.blockFormat().headingLevel() == 0)
            continue;
        const double top = document.documentLayout()->blockBoundingRect(above.block()).top();
        const double bottom = document.documentLayout()->frameBoundingRect(frame).bottom();
        const double start = std::floor(top / height) * height; // of the sheet that the heading stands on
        if (bottom > start + height && bottom - top <= height && top > start + 1) {
            QTextBlockFormat format;
            format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
            above.mergeBlockFormat(format);
        }
    }
}

void printText(const Page &page, QPainter &painter, Sheets &sheets)
{
    const std::unique_ptr<QTextDocument> document = pageDocument(page);
    document->documentLayout()->setPaintDevice(painter.device());
    document->setDocumentMargin(0);
    const QSizeF size = sheets.size() * sheets.scale();
    document->setPageSize(size);
    keepTablesWhole(*document);
    for (int i = 0; i < document->pageCount(); ++i) {
        sheets.next();
        const QRectF shown(QPointF(0, i * size.height()), size);
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = shown;
        context.palette.setColor(QPalette::Text, Qt::black);
        painter.save();
        painter.translate(-shown.topLeft());
        painter.setClipRect(shown);
        document->documentLayout()->draw(&painter, context);
        painter.restore();
    }
}

/// Side by side and below each other, as many on a sheet as have room.
void printFigures(const std::vector<Figure> &figures, QChar point, QPainter &painter, Sheets &sheets)
{
    const QSizeF size = sheets.size();
    const auto fit = [](double length, double least) {
        return std::max(1, int((length + FigureGap) / (least + FigureGap)));
    };
    const int columns = fit(size.width(), FigureWidth);
    const int rows = fit(size.height(), FigureHeight);
    FigureSheet sheet;
    sheet.size = QSize(int((size.width() + FigureGap) / columns - FigureGap),
                       int((size.height() + FigureGap) / rows - FigureGap));
    sheet.point = point;
    int place = 0;
    for (const Figure &figure : figures) {
        if (!figure.note.isEmpty())
            continue;
        if (place == 0)
            sheets.next();
        painter.save();
        painter.scale(sheets.scale(), sheets.scale());
        painter.translate((place % columns) * (sheet.size.width() + FigureGap),
                          int(place / columns) * (sheet.size.height() + FigureGap));
        paintFigure(figure, sheet, painter);
        painter.restore();
        place = (place + 1) % (columns * rows);
    }
}

bool writePdf(const Page &page, const std::vector<Figure> &figures, QIODevice &device)
{
    QPdfWriter writer(&device);
    writer.setTitle(pageTitle(page));
    writer.setCreator(QStringLiteral("Nuvo Statistics"));
    // The table of coefficients is wide.
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape, QMarginsF(15, 15, 15, 12),
                                     QPageLayout::Millimeter));
    return printPage(page, figures, writer);
}

bool endsIn(const QString &file, const QStringList &endings)
{
    return endings.contains(QFileInfo(file).suffix(), Qt::CaseInsensitive);
}

} // namespace

bool printPage(const Page &page, const std::vector<Figure> &figures, QPagedPaintDevice &device)
{
    QPainter painter;
    if (!painter.begin(&device))
        return false;
    Sheets sheets(device, painter);
    printText(page, painter, sheets);
    printFigures(figures, page.point, painter, sheets);
    return painter.end();
}

bool isPageFile(const QString &file)
{
    return isFigurePageFile(file) || endsIn(file, {QStringLiteral("txt"), QStringLiteral("md")});
}

bool isFigurePageFile(const QString &file)
{
    return endsIn(file, {QStringLiteral("pdf"), QStringLiteral("html"), QStringLiteral("htm")});
}

void savePage(const Page &page, const QString &file, const std::vector<Figure> &figures)
{
    const QString ending = QFileInfo(file).suffix().toLower();
    if (!isPageFile(file))
        throw EPlatformError(
            QStringLiteral("Cannot save the page as \"%1\": the name ends in none of .pdf, .html, .txt, .md.")
                .arg(file));
    saveFile(file, [&](QIODevice &device) {
        if (ending == QLatin1String("pdf"))
            return writePdf(page, figures, device);
        if (ending == QLatin1String("txt"))
            return writeText(pageText(page, FileColumns), device);
        return writeText(ending == QLatin1String("md") ? pageMarkdown(page) : pageHtml(page, figures), device);
    });
}

} // namespace nuvo
