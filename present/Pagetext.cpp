// SPDX-License-Identifier: MIT
#include "present/Pagelayout.h"
#include "present/Textreport.h"

#include <algorithm>

namespace nuvo {

QString padded(const QString &text, int width)
{
    return text + QString(std::max(0, width - displayWidth(text)), u' ');
}

QString rightAligned(const QString &text, int width)
{
    return QString(std::max(0, width - displayWidth(text)), u' ') + text;
}

AlignedTable aligned(const Page::Table &table, QChar point)
{
    // What stands before the decimal sign, or before the exponent of a figure without one.
    const auto whole = [point](const QString &cell) {
        qsizetype at = 0;
        while (at < cell.size() && cell[at] != point && cell[at] != u'e')
            ++at;
        return at;
    };
    AlignedTable result;
    result.rows = table.rows;
    for (qsizetype c = 0; c < table.columns.size(); ++c) {
        const Page::Column &column = table.columns[c];
        qsizetype before = 0;
        qsizetype after = 0;
        int width = displayWidth(column.heading);
        if (c > 0 && column.figures) {
            for (const QStringList &row : table.rows) {
                const QString cell = row.value(c);
                before = std::max(before, whole(cell));
                after = std::max(after, cell.size() - whole(cell));
            }
            width = std::max(width, int(before + after));
        } else {
            for (const QStringList &row : table.rows)
                width = std::max(width, displayWidth(row.value(c)));
        }
        for (QStringList &row : result.rows) {
            while (row.size() <= c)
                row.append(QString());
            QString &cell = row[c];
            if (c == 0)
                continue;
            if (!column.figures)
                cell = padded(cell, width);
            else if (!cell.isEmpty())
                cell = rightAligned(cell + QString(after - (cell.size() - whole(cell)), u' '), width);
            else
                cell = QString(width, u' ');
        }
        result.headings += c == 0           ? column.heading
                           : column.figures ? rightAligned(column.heading, width)
                                            : padded(column.heading, width);
        result.widths += width;
    }
    return result;
}

namespace {

constexpr int ColumnGap = 2;
constexpr int MostText = 100; ///< a longer line of words is hard to read

QString withoutBlanksAtEnd(QString line)
{
    while (line.endsWith(u' '))
        line.chop(1);
    return line + u'\n';
}

/// Pieces put side by side until the line is full; lines after the first are indented.
QString wrapped(const QStringList &pieces, const QString &gap, int columns, const QString &first = {},
                const QString &others = {})
{
    QString text;
    QString line = first;
    bool empty = true;
    for (const QString &piece : pieces) {
        if (!empty && displayWidth(line) + displayWidth(gap) + displayWidth(piece) > columns) {
            text += withoutBlanksAtEnd(line);
            line = others;
            empty = true;
        }
        line += (empty ? QString() : gap) + piece;
        empty = false;
    }
    return text + withoutBlanksAtEnd(line);
}

QString words(const QString &text, int columns, const QString &first = {}, const QString &others = {})
{
    return wrapped(text.split(u' '), QStringLiteral(" "), std::min(columns, MostText), first, others);
}

/// Columns `from` to before `to` of a table, behind the names of the rows.
QString columnsOf(const AlignedTable &table, qsizetype from, qsizetype to, int names)
{
    const auto line = [&](const QString &name, const QStringList &cells) {
        QString text =
            displayWidth(name) > names ? withoutBlanksAtEnd(name) + QString(names, u' ') : padded(name, names);
        for (qsizetype c = from; c < to; ++c)
            text += QString(ColumnGap, u' ') + cells[c];
        return withoutBlanksAtEnd(text);
    };
    QString text = line(table.headings.first(), table.headings);
    for (const QStringList &row : table.rows)
        text += line(row.first(), row);
    return text;
}

QString tableText(const Page::Table &source, int columns, QChar point)
{
    const AlignedTable table = aligned(source, point);
    // A few long names have lines of their own rather than all figures far to the right.
    const int most = std::max(20, columns / 3);
    int names = displayWidth(table.headings.first());
    for (const QStringList &row : table.rows) {
        if (displayWidth(row.first()) <= most)
            names = std::max(names, displayWidth(row.first()));
    }
    QString text;
    for (qsizetype from = 1; from < table.headings.size();) {
        int width = names;
        qsizetype to = from;
        while (to < table.headings.size() && (to == from || width + ColumnGap + table.widths[to] <= columns))
            width += ColumnGap + table.widths[to++];
        text += (text.isEmpty() ? QString() : QStringLiteral("\n")) + columnsOf(table, from, to, names);
        from = to;
    }
    return text;
}

} // namespace

QString pageText(const Page &page, int columns)
{
    QString text;
    Page::Kind before = Page::Kind::Title;
    for (const Page::Part &part : page.parts) {
        const bool follows = part.kind == Page::Kind::Item && before == Page::Kind::Item;
        if (!text.isEmpty() && !follows)
            text += u'\n';
        switch (part.kind) {
        case Page::Kind::Title:
        case Page::Kind::Paragraph:
            text += words(part.text, columns);
            break;
        case Page::Kind::Heading:
            text += words(part.text, columns);
            text += QString(std::min(displayWidth(part.text), columns), u'-') + u'\n';
            break;
        case Page::Kind::Line:
            text += wrapped(part.pieces, QStringLiteral("   "), columns);
            break;
        case Page::Kind::Item:
            text += words(part.text, columns, QStringLiteral("* "), QStringLiteral("  "));
            break;
        case Page::Kind::Table:
            text += tableText(part.table, columns, page.point);
            break;
        }
        before = part.kind;
    }
    // A heading's line belongs to what stands below it.
    return text;
}

} // namespace nuvo
