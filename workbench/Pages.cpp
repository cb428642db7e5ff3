// SPDX-License-Identifier: MIT
#include "workbench/Pages.h"

#include "engine/Regression.h"
#include "platform/Errors.h"
#include "present/controls/Tablecopy.h"
#include "present/figures/Figurespage.h"
#include "present/figures/Fitdata.h"
#include "present/statistics/Observationspage.h"
#include "present/statistics/Pageview.h"
#include "workbench/Choicepage.h"
#include "workbench/Livefit.h"
#include "workbench/Predictpage.h"
#include "workbench/Recordspage.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QTabBar>
#include <QTableView>

namespace nuvo {

Pages::Pages(QWidget *parent)
    : QTabWidget(parent), records_(new RecordsPage(this)), summary_(new TSummaryPage(this)),
      diagnostics_(new TDiagnosticsPage(this)), observations_(new TObservationsPage(this)),
      figuresPage_(new TFiguresPage(this)), choice_(new ChoicePage(this)), predict_(new PredictPage(this))
{
    setObjectName(QStringLiteral("Pages"));
    setAccessibleName(tr("Pages"));
    tabBar()->setAccessibleName(tr("Pages"));
    setDocumentMode(true);
    // All of them are seen in a narrow window too, cut if need be; their hints have the whole names.
    setElideMode(Qt::ElideRight);
    setUsesScrollButtons(false);
    Add(records_, tr("Records"));
    Add(summary_, tr("Summary"));
    Add(diagnostics_, tr("Diagnostics"));
    Add(observations_, tr("Observations"));
    Add(figuresPage_, tr("Figures"));
    Add(choice_, tr("Choice"));
    Add(predict_, tr("Predict"));
    for (QWidget *const page : std::initializer_list<QWidget *>{diagnostics_, observations_, figuresPage_, predict_})
        setTabEnabled(indexOf(page), false);
    addCopyMenu(records_->View());
    QHeaderView *const header = records_->View().horizontalHeader();
    addSortMenu(records_->View(), [header](int column) { Q_EMIT header->sectionClicked(column); });
    // Whoever selects tells the two others.
    connect(records_, &RecordsPage::SelectionChanged, this, [this] {
        observations_->SetSelected(records_->Selected());
        figuresPage_->SetSelected(records_->Selected());
    });
    connect(observations_, &TObservationsPage::SelectionChanged, this, [this] {
        records_->SetSelected(observations_->Selected());
        figuresPage_->SetSelected(observations_->Selected());
    });
    connect(figuresPage_, &TFiguresPage::SelectionChanged, this, [this] {
        records_->SetSelected(figuresPage_->Selected());
        observations_->SetSelected(figuresPage_->Selected());
    });
}

void Pages::Add(QWidget *page, const QString &title)
{
    const int index = addTab(page, title);
    setTabToolTip(index, tr("%1 (Alt+%2)").arg(title).arg(index + 1));
}

void Pages::ShowFit(LiveFit &fit)
{
    TRegression *const regression = fit.HasFit() ? fit.Regression() : nullptr;
    hasFit_ = regression != nullptr;
    const bool first = regression != nullptr && !isTabEnabled(indexOf(diagnostics_));
    if (regression != nullptr) {
        Asked asked;
        asked.influence = true;
        figures_ = figures(*regression, asked);
        figuresPage_->SetFigures(fitFigures(figureData(*regression, asked.level)));
    } else {
        figures_ = {};
        figuresPage_->SetFigures({});
    }
    if (figures_.current)
        summary_->SetFigures(figures_);
    else
        summary_->SetPage(NoFit(fit));
    diagnostics_->SetFigures(figures_);
    observations_->SetFigures(figures_);
    choice_->SetState(fit.Here(), fit.Every());
    predict_->SetFit(regression, fit.State().model);
    for (QWidget *const page :
         std::initializer_list<QWidget *>{diagnostics_, observations_, figuresPage_, predict_}) {
        if (regression == nullptr && page == currentWidget())
            setCurrentWidget(fit.Why().isEmpty() ? static_cast<QWidget *>(records_) : summary_);
        setTabEnabled(indexOf(page), regression != nullptr);
    }
    // Whoever has been looking at records wants to see the first fit.
    if (first && currentWidget() == records_)
        setCurrentWidget(summary_);
}

Page Pages::NoFit(const LiveFit &fit) const
{
    Page page;
    page.add(Page::Kind::Heading, tr("No fit yet"));
    if (!fit.Why().isEmpty())
        page.add(Page::Kind::Paragraph, fit.Why());
    else if (fit.State().hasData())
        page.add(Page::Kind::Paragraph,
                 tr("Drag the field whose values you want to explain to Y, and those that may "
                    "explain them to X1, X2, … The summary of the fit is shown here at once."));
    else
        page.add(Page::Kind::Paragraph, tr("Choose a table on the left."));
    return page;
}

QString Pages::GuidePlace() const
{
    const std::pair<const QWidget *, const char *> places[] = {
        {records_, "first-page.md"},
        {summary_, "figures.md"},
        {diagnostics_, "figures.md#a-failed-test-the-form-does-not-suit-the-data"},
        {observations_, "figures.md#a-leverage-one-record-decides"},
        {figuresPage_, "figures.md#a-failed-test-the-form-does-not-suit-the-data"},
        {choice_, "selection.md"},
        {predict_, "first-page.md#a-prediction"},
    };
    for (const auto &[page, place] : places) {
        if (page == currentWidget())
            return QLatin1String(place);
    }
    return QStringLiteral("README.md");
}

void Pages::SaveReport(const QString &file) const
{
    savePage(readersPage(figures_), file, figuresPage_->Figures());
}

bool Pages::PrintReport(QPagedPaintDevice &device) const
{
    return printPage(readersPage(figures_), figuresPage_->Figures(), device);
}

void Pages::Copy()
{
    QWidget *const page = currentWidget();
    if (page == figuresPage_)
        figuresPage_->View().Copy();
    else if (auto *const text = qobject_cast<TPageView *>(page))
        text->Copy();
    else
        copyTable(CurrentTable());
}

Page::Table Pages::CurrentTable() const
{
    QWidget *const page = currentWidget();
    if (page == records_) {
        std::optional<Page::Table> table = records_->Table();
        if (!table)
            throw EPlatformError(tr("The reading was stopped; nothing was copied."));
        return *std::move(table);
    }
    if (page == observations_)
        return tableOf(observations_->View());
    if (page == choice_)
        return choice_->CurrentTable();
    if (page == predict_)
        return predict_->Table();
    if (auto *const text = qobject_cast<TPageView *>(page))
        return text->CurrentTable();
    return {};
}

} // namespace nuvo
