// SPDX-License-Identifier: MIT
#pragma once

#include "present/Figures.h"
#include "present/Page.h"

#include <QTabWidget>

#include <memory>

class QPagedPaintDevice;
class TDiagnosticsPage;
class TFiguresPage;
class TObservationsPage;
class TSummaryPage;

namespace nuvo {

class ChoicePage;
class LiveFit;
class PredictPage;
class RecordsPage;
struct ModelState;

/// What is to be seen of a state and its fit, a page each. An observation that is selected on one of them is selected
/// on all.
class Pages : public QTabWidget
{
    Q_OBJECT

public:
    explicit Pages(QWidget *parent = nullptr);

    /// Shows the fit, or why there is none.
    void ShowFit(LiveFit &fit);
    bool HasFit() const { return hasFit_; }
    // The report is summary and diagnostics with the figures below.
    void SaveReport(const QString &file) const;
    /// \return whether the device took it
    bool PrintReport(QPagedPaintDevice &device) const;
    /// Onto the clipboard: text, rows or figure, whatever page is shown.
    void Copy();
    /// The table of the page that is shown; without columns where it has none. Of a text it is the one that the text
    /// cursor is in, else the first. \throws EPlatformError for records too many to copy
    Page::Table CurrentTable() const;

    /// Where the guide is about the page that is shown, as Guide::ShowPlace() takes it.
    QString GuidePlace() const;

    RecordsPage &Records() const { return *records_; }
    TSummaryPage &Summary() const { return *summary_; }
    TObservationsPage &Observations() const { return *observations_; }
    TFiguresPage &FiguresPage() const { return *figuresPage_; }
    ChoicePage &Choosing() const { return *choice_; }
    PredictPage &Prediction() const { return *predict_; }

private:
    void Add(QWidget *page, const QString &title);
    /// What the summary says instead.
    Page NoFit(const LiveFit &fit) const;

    Figures figures_;
    bool hasFit_ = false;
    RecordsPage *records_;
    TSummaryPage *summary_;
    TDiagnosticsPage *diagnostics_;
    TObservationsPage *observations_;
    TFiguresPage *figuresPage_;
    ChoicePage *choice_;
    PredictPage *predict_;
};

} // namespace nuvo
