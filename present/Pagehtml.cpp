// SPDX-License-Identifier: MIT
#include "present/Pagelayout.h"
#include "present/Words.h"
#include "present/figures/Figurefile.h"

#include <QTextDocument>

namespace nuvo {

namespace {

constexpr QSize FigureSize(600, 400);

QString escaped(const QString &text)
{
    return text.toHtmlEscaped();
}

/// Blanks that align figures are kept, those in front apart: the cell is set from the right.
QString figureCell(const QString &aligned)
{
    qsizetype first = 0;
    while (first < aligned.size() && aligned[first] == u' ')
        ++first;
    return escaped(aligned.mid(first)).replace(u' ', QStringLiteral("&nbsp;"));
}

QString tableHtml(const Page::Table &source, QChar point)
{
    const AlignedTable table = aligned(source, point);
    QString html = QStringLiteral("<table cellspacing=\"0\" cellpadding=\"3\">\n<thead><tr>");
    const auto figures = [&source](qsizetype c) { return c > 0 && source.columns[c].figures; };
    for (qsizetype c = 0; c < source.columns.size(); ++c)
        html += QStringLiteral("<th scope=\"col\" align=\"%1\">")
                    .arg(figures(c) ? QStringLiteral("right") : QStringLiteral("left")) +
                escaped(source.columns[c].heading) + QStringLiteral("</th>");
    html += QStringLiteral("</tr></thead>\n");
    for (const QStringList &row : table.rows) {
        html +=
            QStringLiteral("<tr><th scope=\"row\" align=\"left\">") + escaped(row.first()) + QStringLiteral("</th>");
        for (qsizetype c = 1; c < row.size(); ++c)
            html += figures(c) ? QStringLiteral("<td class=\"figure\" align=\"right\">") + figureCell(row[c]) +
                                     QStringLiteral("</td>")
                               : QStringLiteral("<td>") + escaped(row[c].trimmed()) + QStringLiteral("</td>");
        html += QStringLiteral("</tr>\n");
    }
    return html + QStringLiteral("</table>\n");
}

QString bodyHtml(const Page &page)
{
    QString html;
    bool inList = false;
    for (const Page::Part &part : page.parts) {
        if (inList != (part.kind == Page::Kind::Item)) {
            html += inList ? QStringLiteral("</ul>\n") : QStringLiteral("<ul>\n");
            inList = !inList;
        }
        switch (part.kind) {
        case Page::Kind::Title:
            html += QStringLiteral("<h1>") + escaped(part.text) + QStringLiteral("</h1>\n");
            break;
        case Page::Kind::Heading:
            html += QStringLiteral("<h2>") + escaped(part.text) + QStringLiteral("</h2>\n");
            break;
        case Page::Kind::Paragraph:
            html += QStringLiteral("<p>") + escaped(part.text) + QStringLiteral("</p>\n");
            break;
        case Page::Kind::Line: {
            QStringList pieces;
            for (const QString &piece : part.pieces)
                pieces += escaped(piece).replace(u' ', QStringLiteral("&nbsp;"));
            html += QStringLiteral("<p>") + pieces.join(QStringLiteral("&nbsp;&nbsp; ")) + QStringLiteral("</p>\n");
            break;
        }
        case Page::Kind::Item:
            html += QStringLiteral("<li>") + escaped(part.text) + QStringLiteral("</li>\n");
            break;
        case Page::Kind::Table:
            html += tableHtml(part.table, page.point);
            break;
        }
    }
    return html + (inList ? QStringLiteral("</ul>\n") : QString());
}

/// A figure as part of a page: without what only a file has, and as wide as its place.
QString drawing(const Figure &figure, QChar point)
{
    FigureSheet sheet;
    sheet.size = FigureSize;
    sheet.point = point;
    const QString svg = QString::fromUtf8(figureSvg(figure, sheet));
    const qsizetype tag = svg.indexOf(QStringLiteral("<svg"));
    const qsizetype end = svg.indexOf(u'>', tag);
    if (tag < 0 || end < 0)
        return {};
    return QStringLiteral("<svg role=\"img\" viewBox=\"0 0 %1 %2\" xmlns=\"http://www.w3.org/2000/svg\">")
               .arg(FigureSize.width())
               .arg(FigureSize.height()) +
           svg.mid(end + 1).trimmed();
}

QString figuresHtml(const std::vector<Figure> &figures, QChar point)
{
    QString html;
    for (const Figure &figure : figures) {
        if (!figure.note.isEmpty())
            continue;
        html += (html.isEmpty() ? QStringLiteral("<h2>") + PageWords::tr("Figures") +
                                      QStringLiteral("</h2>\n<div class=\"figures\">\n")
                                : QString()) +
                QStringLiteral("<figure>") + drawing(figure, point) + QStringLiteral("</figure>\n");
    }
    return html.isEmpty() ? html : html + QStringLiteral("</div>\n");
}

QString wholeHtml(const Page &page, const std::vector<Figure> &figures, int gap)
{
    return QStringLiteral("<!DOCTYPE html>\n<html lang=\"") + PageWords::tr("en", "code of the page's language") +
           QStringLiteral("\"><head><meta charset=\"utf-8\"/>\n<title>") + escaped(pageTitle(page)) +
           QStringLiteral("</title>\n<style>\n"
                          ":root { color-scheme: light dark; }\n"
                          "body { font-family: Arial, \"Liberation Sans\", sans-serif; font-size: 9pt; }\n"
                          "h1 { font-size: 14pt; }\n"
                          "h2 { font-size: 11pt; }\n"
                          "th { font-weight: normal; }\n"
                          "th, td { white-space: nowrap; padding: 2px 0 2px ") +
           QString::number(gap) +
           QStringLiteral(
               "px; }\n"
               ".figure { font-family: \"Liberation Mono\", \"Courier New\", monospace; font-size: 8pt; }\n") +
           (figures.empty() ? QString()
                            : QStringLiteral(".figures { display: grid; gap: 16px; "
                                             "grid-template-columns: repeat(auto-fit, minmax(400px, 1fr)); }\n"
                                             "figure { margin: 0; max-width: 800px; break-inside: avoid; }\n"
                                             "figure svg { display: block; width: 100%; height: auto; }\n")) +
           QStringLiteral("</style></head>\n<body>") + bodyHtml(page) + figuresHtml(figures, page.point) +
           QStringLiteral("</body></html>\n");
}

} // namespace

QString pageTitle(const Page &page)
{
    return page.parts.isEmpty() ? QString() : page.parts.first().text;
}

QString pageHtml(const Page &page, const std::vector<Figure> &figures)
{
    return wholeHtml(page, figures, usualGap);
}

std::unique_ptr<QTextDocument> pageDocument(const Page &page, int gap)
{
    auto document = std::make_unique<QTextDocument>();
    document->setHtml(wholeHtml(page, {}, gap));
    return document;
}

std::unique_ptr<QTextDocument> pageDocument(const Page &page)
{
    return pageDocument(page, usualGap);
}

} // namespace nuvo
