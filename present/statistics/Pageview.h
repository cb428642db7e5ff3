// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "present/Figures.h"
#include "present/Page.h"

#include <QTextBrowser>

#include <vector>

/// A page of statistics to read, in the colours of the palette. A table that is wider than the view is set closer,
/// and where that is not enough in groups of columns, each with the names of the rows. Ctrl+C copies what is marked,
/// or the whole page when nothing is; the context menu copies the table that it is opened on. Stands on any form.
class NUVO_EXPORT TPageView : public QTextBrowser
{
    Q_OBJECT

public:
    /// An empty page.
    explicit TPageView(QWidget *parent = nullptr);

    /// Shows a page from its beginning.
    void SetPage(const nuvo::Page &page);
    /// As it was set.
    const nuvo::Page &Page() const { return page_; }
    /// What is marked, or the whole page, onto the clipboard, as text and HTML.
    void Copy();
    /// The table that the text cursor is in, else the first one; no columns where the page has none.
    nuvo::Page::Table CurrentTable() const;

protected:
    bool event(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// Of each table, how many columns stand in each of its groups.
    using Groups = std::vector<std::vector<int>>;

    /// \param saved pixels of each column
    Groups GroupsFor(double width, double saved) const;
    /// As few groups as there can be, in the usual distance where that makes no difference.
    void LayOut(bool anew);
    /// The table of the page that a place in the document is in, else the first one.
    nuvo::Page::Table TableAt(int position) const;
    void Show(const Groups &groups, bool isClose);

    nuvo::Page page_;
    std::vector<std::vector<double>> widths_; ///< of the columns of each table
    Groups groups_;
};

/// The summary of a fit: what was fitted on what, coefficients, analysis of variance, warnings.
class NUVO_EXPORT TSummaryPage : public TPageView
{
    Q_OBJECT

public:
    /// An empty page.
    explicit TSummaryPage(QWidget *parent = nullptr);
    void SetFigures(const nuvo::Figures &figures);
};

/// The diagnostics of a fit: tests, what each term does, the observations worth looking at. Without a current fit it
/// says so.
class NUVO_EXPORT TDiagnosticsPage : public TPageView
{
    Q_OBJECT

public:
    /// An empty page.
    explicit TDiagnosticsPage(QWidget *parent = nullptr);
    void SetFigures(const nuvo::Figures &figures);
};

namespace nuvo {

/// The page that the two are parts of, with the decimal sign of the locale.
NUVO_EXPORT Page readersPage(const Figures &figures);

} // namespace nuvo
