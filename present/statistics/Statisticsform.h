// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "present/Figures.h"
#include "present/figures/Figure.h"
#include "present/statistics/Pagedform.h"

class TDiagnosticsPage;
class TFiguresPage;
class TObservationsPage;
class TRegression;
class TSummaryPage;

/// The window of all that a fit tells: summary, diagnostics, observations and figures, a page each. A selected point
/// of a figure is a selected row of the table and the other way round. It works on a copy of the regression's
/// figures, which may change or go while the window is open. The figure shown saves itself with Ctrl+S.
class NUVO_EXPORT TStatisticsForm : public nuvo::PagedForm
{
    Q_OBJECT

public:
    /// Empty until Load() or SetFigures().
    explicit TStatisticsForm(QWidget *parent = nullptr);
    ~TStatisticsForm() override;

    /// Takes down the figures, without showing anything.
    void Load(TRegression &regression);
    /// The same of figures that were taken; they have the influence where it is to be seen.
    void SetFigures(const nuvo::Figures &figures, const nuvo::FigureData &figureData);

    // The pages: summary, diagnostics, observations, figures.

    TSummaryPage &Summary() { return *summary_; }
    TDiagnosticsPage &Diagnostics() { return *diagnostics_; }
    TObservationsPage &Observations() { return *observations_; }
    TFiguresPage &FiguresPage() { return *figuresPage_; }

    /// Prints the document, summary and diagnostics with the figures below them, on sheets of its device.
    void PrintDocument(QPagedPaintDevice &device) const override;
    /// Writes the document: .pdf, .html, .txt or .md, the latter two without figures. \throws EPlatformError as
    /// nuvo::savePage().
    void SaveReport(const QString &file) const;
    /// Onto the clipboard: text, rows or figure, whatever page is shown.
    void Copy() override;

protected:
    QWidget *ReadingPart(QWidget *page) const override;
    void SaveFile(const QString &file) const override { SaveReport(file); }

private:
    nuvo::Figures figures_;
    TSummaryPage *summary_;
    TDiagnosticsPage *diagnostics_;
    TObservationsPage *observations_;
    TFiguresPage *figuresPage_;
};

namespace nuvo {

/// Shows what a fit tells in a new window and frees it when it is closed. There is one such window at a time: while
/// one is open it comes to the front instead.
NUVO_EXPORT void showStatistics(TRegression &regression);

} // namespace nuvo
