// SPDX-License-Identifier: MIT
#pragma once

#include "present/Page.h"

namespace nuvo {

/// A table's cells with blanks around them, so that figures below each other are aligned by their decimal sign and
/// all cells of a column, its heading included, are equally wide.
struct AlignedTable
{
    QStringList headings;
    QList<QStringList> rows;
    QList<int> widths;
};
/// The first column is left as it is: its names may be long.
AlignedTable aligned(const Page::Table &table, QChar point);

/// The page's title; empty without one.
QString pageTitle(const Page &page);

/// Pixels in front of a table's columns.
constexpr int usualGap = 14;
/// The page as a document to show, with so many of them.
std::unique_ptr<QTextDocument> pageDocument(const Page &page, int gap);

QString padded(const QString &text, int width);
QString rightAligned(const QString &text, int width);

} // namespace nuvo
