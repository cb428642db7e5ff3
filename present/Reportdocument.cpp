// SPDX-License-Identifier: MIT
#include "present/Reportdocument.h"

#include "platform/Errors.h"
#include "platform/Messages.h"
#include "platform/Savefile.h"
#include "present/Textreport.h"

#include <QFileInfo>
#include <QPageSize>
#include <QPdfWriter>
#include <QStringBuilder>
#include <QTextDocument>

#include <algorithm>
#include <functional>

namespace nuvo {

namespace {

constexpr QStringView Title = u"Multiple Regression Analysis Report";
constexpr QStringView SumsTitle = u"Sum of Squares";
constexpr double MatrixPoints = 8;
constexpr double PageColumnPoints = 480; ///< what a matrix line may take on the paper
constexpr double MonoAdvance = 0.602;    ///< of a fixed-pitch letter, in parts of its size

/// The lines of a block, without the empty ones at its end.
QStringList linesOf(const QString &text)
{
    QStringList lines = text.split(kLineEnd.toString());
    while (lines.size() > 1 && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

/// The report's parts from top to bottom; texts of one part stand side by side.
QList<QStringList> partsOf(const ReportTexts &report)
{
    const ReportCaptions texts = reportCaptions(report.blocks, report.window);
    return {
        {texts.DataCount},
        {texts.DepVar},
        {texts.IndepVars},
        {texts.Mean, texts.StdDev},
        {texts.Coeffs, texts.StdErrCoeff, texts.tValue},
        {texts.DOF},
        {SumsTitle % kLineEnd % u"   " % texts.SSR % kLineEnd % u"   " % texts.SSE % kLineEnd % u"   " % texts.SST},
        // On the window the twos are labels of their own.
        {u"s\u00b2 : " % report.blocks.SSquared, u"R\u00b2 : " % report.window.RSquared, texts.FStat}};
}

QStringList headOf(const ReportTexts &report)
{
    QStringList head{QStringLiteral("Data: ") + report.source};
    if (!report.description.isEmpty())
        head += report.description;
    return head << report.dateTime;
}

QStringList matrixLines(const ReportBlocks &blocks)
{
    return blocks.CovarianceLines + QStringList{QString()} + blocks.CorrelationLines;
}

QString htmlLines(const QStringList &lines)
{
    QString html;
    for (const QString &line : lines)
        html += line.toHtmlEscaped() + QStringLiteral("<br/>");
    html.chop(5);
    return html;
}

/// A block as HTML, the caption above its lines in bold. Line ends in the source would count in the cells.
QString htmlBlock(const QString &text)
{
    QStringList lines = linesOf(text);
    if (lines.size() == 1)
        return htmlLines(lines);
    const QString caption = QStringLiteral("<b>") + lines.takeFirst().toHtmlEscaped() + QStringLiteral("</b><br/>");
    return caption + htmlLines(lines);
}

bool writePdf(const QString &html, QIODevice &device)
{
    QPdfWriter writer(&device);
    writer.setTitle(Title.toString());
    writer.setCreator(QStringLiteral("Nuvo Statistics"));
    writer.setPageSize(QPageSize(QPageSize::A4));
    QTextDocument page;
    page.setHtml(html);
    page.print(&writer);
    return true;
}

void saveDocument(const ReportTexts &report, const QString &file, const std::function<QString()> &plainText)
{
    const QString ending = QFileInfo(file).suffix().toLower();
    if (ending == QLatin1String("pdf"))
        saveFile(file, [&](QIODevice &device) { return writePdf(reportHtml(report), device); });
    else if (ending == QLatin1String("html") || ending == QLatin1String("htm"))
        saveFile(file, [&](QIODevice &device) { return writeText(reportHtml(report), device); });
    else if (ending == QLatin1String("txt"))
        saveFile(file, [&](QIODevice &device) { return writeText(plainText(), device); });
    else
        throw EPlatformError(
            QStringLiteral("Cannot save the report as \"%1\": the name ends in none of .pdf, .html, .txt, .png.")
                .arg(file));
}

} // namespace

ReportCaptions reportCaptions(const ReportBlocks &blocks, const WindowTexts &window)
{
    ReportCaptions texts;
    texts.DepVar = u"Dependent Variable: " % blocks.DepVar;
    texts.IndepVars = u"Independent Variables: " % blocks.IndepVars;
    texts.DataCount = u"Number of observations: " % blocks.DataCount;
    texts.DOF = u"Degrees of Freedom: " % blocks.DOF;
    texts.Coeffs = u"Coefficients: " % blocks.Coeffs;
    texts.FStat = u"F Statistic" % blocks.FStat;
    texts.tValue = u"t* Values" % blocks.TValues;
    texts.SSR = u"Regression SSR : " % blocks.SSR;
    texts.SSE = u"Residual      SSE : " % blocks.SSE;
    texts.SST = u"Total            SST : " % window.SST;
    texts.RSquared = u"R  : " % window.RSquared;
    texts.SSquared = u"s   : " % blocks.SSquared;
    texts.Mean = u"Mean: " % blocks.Means;
    texts.StdDev = u"Std. Dev. (Data): " % blocks.StdDevs;
    texts.StdErrCoeff = u"Std. Err. (Coeff): " % blocks.StdErrs;
    return texts;
}

ReportTexts reportTexts(const Figures &figures)
{
    const ReportBlocks blocks = reportBlocks(figures);
    return {figures.source,
            figures.description,
            figures.time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")),
            figures.message,
            blocks,
            windowTexts(blocks),
            figures.current && figures.records.total ? leftOut(figures) : QString()};
}

QString reportHtml(const ReportTexts &report)
{
    QString head;
    for (const QString &line : headOf(report))
        head += (head.isEmpty() ? QString() : QStringLiteral("<br/>")) + htmlLines(DisplayLines(line).split(u'\n'));
    QString body;
    for (const QStringList &part : partsOf(report)) {
        body += QStringLiteral("<table><tr>\n");
        for (const QString &text : part)
            body += QStringLiteral("<td>") + htmlBlock(text) + QStringLiteral("</td>\n");
        body += QStringLiteral("</tr></table>\n");
    }
    const QStringList lines = matrixLines(report.blocks);
    qsizetype longest = 1;
    for (const QString &line : lines)
        longest = std::max(longest, line.size());
    const double points = std::min(MatrixPoints, PageColumnPoints / (MonoAdvance * double(longest)));
    body += QStringLiteral("<pre style=\"font-size: %1pt\">").arg(points, 0, 'f', 1) +
            lines.join(u'\n').toHtmlEscaped() + QStringLiteral("</pre>\n");
    if (!report.leftOut.isEmpty())
        body += QStringLiteral("<p>") + htmlLines(report.leftOut.split(u'\n')) + QStringLiteral("</p>\n");
    if (!report.message.isEmpty())
        body += QStringLiteral("<p class=\"message\">") + htmlLines(DisplayLines(report.message).split(u'\n')) +
                QStringLiteral("</p>\n");
    return QStringLiteral("<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"/>\n<title>") +
           Title.toString() +
           QStringLiteral("</title>\n<style>\n"
                          "body { font-family: Arial, \"Liberation Sans\", sans-serif; font-size: 9pt; }\n"
                          "h1 { font-size: 14pt; }\n"
                          "td { white-space: pre-wrap; vertical-align: top; padding: 4px 24px 4px 0; }\n"
                          "pre { font-family: \"Liberation Mono\", \"Courier New\", monospace; }\n"
                          ".message { color: maroon; }\n"
                          "</style></head>\n<body><h1>") +
           Title.toString() + QStringLiteral("</h1>\n<p>") + head + QStringLiteral("</p>\n") + body +
           QStringLiteral("</body></html>\n");
}

bool isReportFile(const QString &file)
{
    static const QStringList endings{QStringLiteral("pdf"), QStringLiteral("html"), QStringLiteral("htm"),
                                     QStringLiteral("txt"), QStringLiteral("png")};
    return endings.contains(QFileInfo(file).suffix(), Qt::CaseInsensitive);
}

QString reportBlockText(const ReportTexts &report)
{
    QString text = Title % u'\n' % headOf(report).join(u'\n') % u'\n';
    for (const QStringList &part : partsOf(report)) {
        text += u'\n';
        for (const QString &block : part)
            text += linesOf(block).join(u'\n') + u'\n';
    }
    text += u'\n' + matrixLines(report.blocks).join(u'\n') + u'\n';
    for (const QString &below : {report.leftOut, report.message}) {
        if (!below.isEmpty())
            text += u'\n' + below + u'\n';
    }
    return DisplayLines(text);
}

void saveReportDocument(const Figures &figures, const QString &file)
{
    saveDocument(reportTexts(figures), file, [&figures] { return reportPlainText(figures); });
}

void saveReportDocument(const ReportTexts &report, const QString &file)
{
    saveDocument(report, file, [&report] { return reportBlockText(report); });
}

} // namespace nuvo
