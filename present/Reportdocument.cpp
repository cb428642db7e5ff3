#include "present/Reportdocument.h"

#include "engine/Regression.h"
#include "platform/Dataset.h"
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
#include <cmath>
#include <utility>

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
QList<QStringList> partsOf(const ReportDocument &report)
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

QStringList headOf(const ReportDocument &report)
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

/// Terms with values that no sum can take: a quotient by zero or by a null, say.
QStringList infiniteTerms(const TRegression &regression)
{
    QStringList list;
    if (!regression.ResultsCurrent())
        return list;
    const int n = regression.GetNumObs();
    const auto addUnlessFinite = [&](const QString &term, const auto &value) {
        for (int i = 1; i <= n; ++i) {
            if (!std::isfinite(value(i))) {
                list.append(term);
                return;
            }
        }
    };
    addUnlessFinite(regression.ResponseVarY().OutputTerm(), [&](int i) { return regression.Gety(i); });
    for (int j = 1; j <= regression.GetNumVars(); ++j)
        addUnlessFinite(regression.GetcVar(j).OutputTerm(), [&](int i) { return regression.Getx(i, j); });
    return list;
}

QList<int> listedColumns(const TRegression &regression)
{
    QList<int> columns;
    for (int j = 1; j <= regression.GetNumVars(); ++j) {
        if (regression.GetcVar(j).Transformation() != u"Inactive")
            columns.append(j);
    }
    return columns;
}

bool writePdf(const ReportDocument &report, QIODevice &device)
{
    QPdfWriter writer(&device);
    writer.setTitle(Title.toString());
    writer.setCreator(QStringLiteral("Nuvo Statistics"));
    writer.setPageSize(QPageSize(QPageSize::A4));
    QTextDocument page;
    page.setHtml(reportHtml(report));
    page.print(&writer);
    return true;
}

bool writeText(const QString &text, QIODevice &device)
{
    const QByteArray bytes = text.toUtf8();
    return device.write(bytes) == bytes.size();
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

ReportDocument reportDocument(TRegression &regression, const QDateTime &time)
{
    const ReportBlocks blocks = reportBlocks(regression);
    return {regression.DataSourceName(),
            regression.Description(),
            time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")),
            regression.ReportMessage(),
            blocks,
            windowTexts(blocks),
            listedColumns(regression),
            regression.ResultsCurrent() && regression.DataSet().Active() ? leftOut(regression) : QString()};
}

QStringList dependentTerms(const TRegression &regression)
{
    QStringList list;
    if (regression.ResultsCurrent()) {
        for (const int j : regression.DependentColumns())
            list.append(regression.GetcVar(j).OutputTerm());
    }
    return list;
}

QString leftOut(TRegression &regression)
{
    QString text = QStringLiteral("Records: %1 in the dataset, %2 read, %3 used, %4 skipped.")
                       .arg(regression.DataSet().RecordCount())
                       .arg(regression.RecordsRead())
                       .arg(regression.RecordsUsed())
                       .arg(regression.RecordsSkipped());
    if (const QStringList infinite = infiniteTerms(regression); !infinite.isEmpty())
        text +=
            QStringLiteral("\nInfinite or no number in some of the records used, so that no figure can be had: %1.")
                .arg(infinite.join(QStringLiteral(", ")));
    if (const QStringList dependent = dependentTerms(regression); !dependent.isEmpty())
        text += QStringLiteral(
                    "\nLinear combinations of the columns before them: %1.\nStandard errors and t values of all "
                    "columns mean nothing then, nor do the coefficients\nof those combined: leave some out.")
                    .arg(dependent.join(QStringLiteral(", ")));
    return text;
}

QString reportHtml(const ReportDocument &report)
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

void saveReportDocument(const ReportDocument &report, const QString &file)
{
    const QString ending = QFileInfo(file).suffix().toLower();
    if (ending == QLatin1String("pdf"))
        saveFile(file, [&report](QIODevice &device) { return writePdf(report, device); });
    else if (ending == QLatin1String("html") || ending == QLatin1String("htm"))
        saveFile(file, [&report](QIODevice &device) { return writeText(reportHtml(report), device); });
    else if (ending == QLatin1String("txt"))
        saveFile(file, [&report](QIODevice &device) { return writeText(reportPlainText(report), device); });
    else
        throw EPlatformError(
            QStringLiteral("Cannot save the report as \"%1\": the name ends in none of .pdf, .html, .txt, .png.")
                .arg(file));
}

} // namespace nuvo
