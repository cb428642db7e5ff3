// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "present/Page.h"

#include <QString>

#include <functional>

class QAbstractItemView;
class QWidget;

namespace nuvo {

/// What a view shows, for another program: its columns in the order of its model, the selected rows as they are
/// sorted, or all rows where none is selected. Numbers have as many digits as tell them from any other and the
/// decimal sign of the locale where the model gives them (NumberRole); one that does not exist is empty. Everything
/// else is as it is shown.
NUVO_EXPORT Page::Table tableOf(const QAbstractItemView &view);

/// Cells parted by tabs, lines ended by LF, the headings first: what spreadsheets take.
NUVO_EXPORT QString tableText(const Page::Table &table);
/// One `<table>`, without a page around it; figures stand on the right.
NUVO_EXPORT QString tableHtml(const Page::Table &table);
/// Markdown with tables (as GitHub has them), aligned in its source as well.
NUVO_EXPORT QString tableMarkdown(const Page::Table &table);

/// Onto the clipboard, as text and HTML at once. A table without a column leaves there what is there; so below.
NUVO_EXPORT void copyTable(const Page::Table &table);
/// Onto the clipboard as Markdown.
NUVO_EXPORT void copyTableAsMarkdown(const Page::Table &table);

/// The texts of the two, for menus.
NUVO_EXPORT QString copyTableText();
NUVO_EXPORT QString copyMarkdownText();

/// Gives a view that has no context menu one with the two, and where a click on a heading sorts, with that for keys.
NUVO_EXPORT void addCopyMenu(QAbstractItemView &view);
/// Adds a menu of the view's headings to its actions; the chosen column is handed on.
NUVO_EXPORT void addSortMenu(QAbstractItemView &view, std::function<void(int)> sort);

} // namespace nuvo
