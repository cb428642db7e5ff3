// SPDX-License-Identifier: MIT
#include "present/Pagelayout.h"
#include "present/Textreport.h"

#include <algorithm>

namespace nuvo {

namespace {

/// A text in which nothing is markup.
QString plain(const QString &text)
{
    static constexpr QStringView marks = u"\\`*_[]<>|#~$";
    QString result;
    for (const QChar c : text) {
        if (marks.contains(c))
            result += u'\\';
        result += c;
    }
    return result;
}

QString tableMarkdown(const Page::Table &source, QChar point)
{
    if (source.columns.isEmpty())
        return {};
    Page::Table escaped = source;
    for (Page::Column &column : escaped.columns)
        column.heading = plain(column.heading);
    for (QStringList &row : escaped.rows) {
        for (QString &cell : row)
            cell = plain(cell);
    }
    const AlignedTable table = aligned(escaped, point);
    const auto line = [&](const QStringList &cells) {
        QString text = QStringLiteral("| ") + padded(cells.first(), table.widths.first());
        for (const QString &cell : cells.mid(1))
            text += QStringLiteral(" | ") + cell;
        return text + QStringLiteral(" |\n");
    };
    QString text = line(table.headings) + u'|';
    for (qsizetype c = 0; c < table.widths.size(); ++c) {
        const bool right = c > 0 && source.columns[c].figures;
        text +=
            QString(std::max(2, table.widths[c] + 1), u'-') + (right ? QStringLiteral(":|") : QStringLiteral("-|"));
    }
    text += u'\n';
    for (const QStringList &row : table.rows)
        text += line(row);
    return text;
}

} // namespace

QString pageMarkdown(const Page &page)
{
    QString text;
    Page::Kind before = Page::Kind::Title;
    for (const Page::Part &part : page.parts) {
        if (!text.isEmpty() && !(part.kind == Page::Kind::Item && before == Page::Kind::Item))
            text += u'\n';
        switch (part.kind) {
        case Page::Kind::Title:
            text += QStringLiteral("# ") + plain(part.text) + u'\n';
            break;
        case Page::Kind::Heading:
            text += QStringLiteral("## ") + plain(part.text) + u'\n';
            break;
        case Page::Kind::Paragraph:
            text += plain(part.text) + u'\n';
            break;
        case Page::Kind::Line: {
            QStringList pieces;
            for (const QString &piece : part.pieces)
                pieces += plain(piece);
            text += pieces.join(QStringLiteral("; ")).replace(QStringLiteral(":;"), QStringLiteral(":")) + u'\n';
            break;
        }
        case Page::Kind::Item:
            text += QStringLiteral("- ") + plain(part.text) + u'\n';
            break;
        case Page::Kind::Table:
            text += tableMarkdown(part.table, page.point);
            break;
        }
        before = part.kind;
    }
    return text;
}

} // namespace nuvo
