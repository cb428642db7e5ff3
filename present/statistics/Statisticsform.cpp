// SPDX-License-Identifier: MIT
#include "present/statistics/Statisticsform.h"

#include "engine/Regression.h"
#include "platform/Messages.h"
#include "present/Page.h"
#include "present/figures/Figurespage.h"
#include "present/figures/Fitdata.h"
#include "present/statistics/Observationspage.h"
#include "present/statistics/Pageview.h"

#include <QTabWidget>
#include <QTableView>

TStatisticsForm::TStatisticsForm(QWidget *parent)
    : PagedForm(parent, "Statistics"), summary_(new TSummaryPage(this)), diagnostics_(new TDiagnosticsPage(this)),
      observations_(new TObservationsPage(this)), figuresPage_(new TFiguresPage(this))
{
    setWindowTitle(QStringLiteral("Statistics"));
    const auto add = [this](QWidget *page, const char *name, const QString &title) {
        page->setObjectName(QLatin1String(name));
        AddPage(page, title);
    };
    add(summary_, "SummaryPage", QStringLiteral("Summary"));
    add(diagnostics_, "DiagnosticsPage", QStringLiteral("Diagnostics"));
    add(observations_, "ObservationsPage", QStringLiteral("Observations"));
    add(figuresPage_, "FiguresPage", QStringLiteral("Figures"));
    SetUp(
        {QStringLiteral("Print summary, diagnostics and figures (Ctrl+P)"),
         QStringLiteral("Save summary and diagnostics as PDF or HTML with the figures, as text or Markdown "
                        "(Ctrl+S)"),
         QStringLiteral("Save statistics"),
         {QStringLiteral("PDF document (*.pdf)"), QStringLiteral("HTML page (*.html)"),
          QStringLiteral("Plain text (*.txt)"), QStringLiteral("Markdown (*.md)")},
         QStringLiteral("Pages: Alt+1 to Alt+4, or Ctrl+Tab.\n"
                        "Ctrl+P prints summary, diagnostics and figures, Ctrl+S saves them: PDF and HTML have "
                        "the figures below the text.\n"
                        "Ctrl+C copies what is selected, or the whole page.\n\n"
                        "Observations: a click on a heading sorts. Marked cells are the reasons why an "
                        "observation is worth looking at; a selected row is marked in the figures.\n"
                        "Figures: Page Up and Page Down for the others; a click on a point selects its row. "
                        "The wheel zooms, a double click shows all again. Ctrl+S saves the figure that is shown.\n\n"
                        "Escape closes the window.")},
        {900, 660}, 4);
    summary_->setFocus();

    connect(observations_, &TObservationsPage::SelectionChanged, this,
            [this] { figuresPage_->SetSelected(observations_->Selected()); });
    connect(figuresPage_, &TFiguresPage::SelectionChanged, this,
            [this] { observations_->SetSelected(figuresPage_->Selected()); });
}

TStatisticsForm::~TStatisticsForm() = default;

void TStatisticsForm::Load(TRegression &regression)
{
    nuvo::Asked asked;
    asked.influence = true;
    SetFigures(nuvo::figures(regression, asked), nuvo::figureData(regression, asked.level));
}

void TStatisticsForm::SetFigures(const nuvo::Figures &figures, const nuvo::FigureData &figureData)
{
    figures_ = figures;
    const QString source = nuvo::withoutControls(figures.source);
    setWindowTitle(source.isEmpty() ? QStringLiteral("Statistics") : QStringLiteral("Statistics: ") + source);
    summary_->SetFigures(figures);
    diagnostics_->SetFigures(figures);
    observations_->SetFigures(figures);
    figuresPage_->SetFigures(nuvo::fitFigures(figureData));
    figuresPage_->SetSelected({});
}

void TStatisticsForm::PrintDocument(QPagedPaintDevice &device) const
{
    nuvo::printPage(nuvo::readersPage(figures_), figuresPage_->Figures(), device);
}

void TStatisticsForm::SaveReport(const QString &file) const
{
    nuvo::savePage(nuvo::readersPage(figures_), file, figuresPage_->Figures());
}

void TStatisticsForm::Copy()
{
    QWidget *page = Pages().currentWidget();
    if (page == observations_)
        observations_->Copy();
    else if (page == figuresPage_)
        figuresPage_->View().Copy();
    else
        static_cast<TPageView *>(page)->Copy();
}

QWidget *TStatisticsForm::ReadingPart(QWidget *page) const
{
    if (page == observations_)
        return &observations_->View();
    return page == figuresPage_ ? &figuresPage_->View() : page;
}

namespace nuvo {

void showStatistics(TRegression &regression)
{
    static QPointer<QDialog> open;
    showOne(open, [&regression](QWidget *parent) {
        auto form = std::make_unique<TStatisticsForm>(parent);
        form->Load(regression);
        return form.release();
    });
}

} // namespace nuvo
