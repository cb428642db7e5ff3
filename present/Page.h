// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "present/Figures.h"
#include "present/figures/Figure.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class QPagedPaintDevice;
class QTextDocument;

namespace nuvo {

/// What a page of statistics has beyond the usual.
struct PageStyle
{
    int digits = 7;         ///< significant digits, 1 to 17; see significant()
    bool influence = false; ///< the observations worth looking at, where the figures have their influence
    bool matrices = false;  ///< covariances and correlations of the coefficients
    QChar point = u'.';     ///< the decimal sign
};

/// A page laid out in parts, before it is text, HTML, Markdown or a document. Texts have no control characters.
struct NUVO_EXPORT Page
{
    /// A heading, and how what stands below it is aligned.
    struct Column
    {
        QString heading;
        bool figures = true; ///< aligned by the decimal sign; else words, from the left
    };
    /// The first column holds the names of the rows.
    struct Table
    {
        QList<Column> columns;
        QList<QStringList> rows;
    };
    /// What a part is; a line has pieces of which none is broken.
    enum class Kind { Title, Heading, Paragraph, Line, Item, Table };
    /// A piece of the page; which members count goes by its kind.
    struct Part
    {
        Kind kind = Kind::Paragraph;
        QString text;
        QStringList pieces; ///< of a line; none is broken
        Table table;
    };

    QList<Part> parts;
    QChar point = u'.';

    /// Adds a part with a text.
    void add(Kind kind, const QString &text);
    /// Adds a line.
    void addLine(const QStringList &pieces);
    /// Adds a table.
    void addTable(Table table);
};

/// What a statistician hands on: what was fitted on what and which records were left out, the coefficients with
/// their errors, p-values, intervals and variance inflation, the analysis of variance, the measures of the fit, what
/// is worth a warning in words, and below that whatever else the figures hold. Where an optional part of the figures
/// is missing, so are its columns and lines. Without a current fit the page says so.
NUVO_EXPORT Page statisticsPage(const Figures &figures, const PageStyle &style = {});

/// For a terminal or a file of that many columns, lines ended by LF. A table that is wider is set in groups of
/// columns, each with the names of the rows; a long name has a line of its own; nothing is cut.
NUVO_EXPORT QString pageText(const Page &page, int columns = 80);
/// Markdown with tables (as GitHub has them), aligned in its source as well.
NUVO_EXPORT QString pageMarkdown(const Page &page);
/// A whole page of HTML, light or dark as the reader's system is, with figures below it as drawings within the page
/// (SVG): it needs no other file. Without figures QTextDocument can show it as well.
NUVO_EXPORT QString pageHtml(const Page &page, const std::vector<Figure> &figures = {});
/// The page as a document to show.
NUVO_EXPORT std::unique_ptr<QTextDocument> pageDocument(const Page &page);
/// Prints the page on sheets of the device, with figures on sheets of their own below it, as many on each as have
/// room. Figures that have nothing to draw are left out, here as in the HTML. Returns whether the device took it.
NUVO_EXPORT bool printPage(const Page &page, const std::vector<Figure> &figures, QPagedPaintDevice &device);

/// Whether a page can be written to a file of that name: .pdf, .html, .htm, .txt or .md, upper or lower case.
NUVO_EXPORT bool isPageFile(const QString &file);
/// Whether a file of that name shows figures: .pdf, .html and .htm do, text and Markdown do not.
NUVO_EXPORT bool isFigurePageFile(const QString &file);
/// Writes the page by the ending of the file's name, with the figures below it where the file shows some.
/// \throws EPlatformError for another ending and for a file that cannot be written; no partial file is left.
NUVO_EXPORT void savePage(const Page &page, const QString &file, const std::vector<Figure> &figures = {});

} // namespace nuvo
