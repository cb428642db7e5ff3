#include "platform/Errors.h"
#include "platform/Savefile.h"
#include "present/Pagelayout.h"

#include <QFileInfo>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#include <QTextDocument>

#include <functional>

namespace nuvo {

namespace {

constexpr int FileColumns = 132; ///< of a .txt: the usual table in one piece

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
    QString html = QStringLiteral("<table cellspacing=\"0\" cellpadding=\"3\">\n<tr>");
    const auto figures = [&source](qsizetype c) { return c > 0 && source.columns[c].figures; };
    for (qsizetype c = 0; c < source.columns.size(); ++c)
        html += QStringLiteral("<th scope=\"col\" align=\"%1\">")
                    .arg(figures(c) ? QStringLiteral("right") : QStringLiteral("left")) +
                escaped(source.columns[c].heading) + QStringLiteral("</th>");
    html += QStringLiteral("</tr>\n");
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

QString titleOf(const Page &page)
{
    return page.parts.isEmpty() ? QString() : page.parts.first().text;
}

bool writeText(const QString &text, QIODevice &device)
{
    const QByteArray bytes = text.toUtf8();
    return device.write(bytes) == bytes.size();
}

bool writePdf(const Page &page, QIODevice &device)
{
    QPdfWriter writer(&device);
    writer.setTitle(titleOf(page));
    writer.setCreator(QStringLiteral("Nuvo Statistics"));
    // The table of coefficients is wide.
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape, QMarginsF(12, 12, 12, 12),
                                     QPageLayout::Millimeter));
    const std::unique_ptr<QTextDocument> document = pageDocument(page);
    document->print(&writer);
    return true;
}

} // namespace

QString pageHtml(const Page &page)
{
    return QStringLiteral("<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"/>\n<title>") +
           escaped(titleOf(page)) +
           QStringLiteral(
               "</title>\n<style>\n"
               ":root { color-scheme: light dark; }\n"
               "body { font-family: Arial, \"Liberation Sans\", sans-serif; font-size: 9pt; }\n"
               "h1 { font-size: 14pt; }\n"
               "h2 { font-size: 11pt; }\n"
               "th { font-weight: normal; }\n"
               "th, td { white-space: nowrap; padding: 2px 0 2px 14px; }\n"
               ".figure { font-family: \"Liberation Mono\", \"Courier New\", monospace; font-size: 8pt; }\n"
               "</style></head>\n<body>") +
           bodyHtml(page) + QStringLiteral("</body></html>\n");
}

std::unique_ptr<QTextDocument> pageDocument(const Page &page)
{
    auto document = std::make_unique<QTextDocument>();
    document->setHtml(pageHtml(page));
    return document;
}

bool isPageFile(const QString &file)
{
    static const QStringList endings{QStringLiteral("pdf"), QStringLiteral("html"), QStringLiteral("htm"),
                                     QStringLiteral("txt"), QStringLiteral("md")};
    return endings.contains(QFileInfo(file).suffix(), Qt::CaseInsensitive);
}

void savePage(const Page &page, const QString &file)
{
    const QString ending = QFileInfo(file).suffix().toLower();
    if (!isPageFile(file))
        throw EPlatformError(
            QStringLiteral("Cannot save the page as \"%1\": the name ends in none of .pdf, .html, .txt, .md.")
                .arg(file));
    saveFile(file, [&](QIODevice &device) {
        if (ending == QLatin1String("pdf"))
            return writePdf(page, device);
        if (ending == QLatin1String("txt"))
            return writeText(pageText(page, FileColumns), device);
        return writeText(ending == QLatin1String("md") ? pageMarkdown(page) : pageHtml(page), device);
    });
}

} // namespace nuvo
