// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

class QTextDocument;

namespace nuvo {

/// A heading of a page of the guide; its anchor is what a link to it has behind '#'.
struct GuideHeading
{
    QString text;
    QString anchor;
    int level = 1; ///< 1 is the page's title
};

/// A page of the guide as the program has it in itself.
struct GuidePage
{
    QString name; ///< "figures.md"
    QString text; ///< Markdown
    std::vector<GuideHeading> headings;

    QString title() const { return headings.empty() ? name : headings.front().text; }
};

/// Where the pages are: below a folder of the program's own files, laid out as in the folder docs of the sources.
QString guideFolder();
/// The pages in the order in which the first one names them; what it does not name comes after them by name.
const std::vector<GuidePage> &guidePages();
/// As a link to a heading is written: lower case, letters, digits and '-' for blanks.
QString guideAnchor(const QString &heading);
/// The addresses that a page links to, pictures too, as they are written in it.
QStringList guideLinks(const QString &markdown);
/// Where the heading with that anchor stands in a document made of a page's Markdown; -1 when there is none.
int guidePosition(const QTextDocument &document, const QString &anchor);

} // namespace nuvo
