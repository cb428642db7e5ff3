#include "present/statistics/Statisticsform.h"

#include "engine/Regression.h"
#include "platform/Messages.h"
#include "platform/Modal.h"
#include "present/Filedialog.h"
#include "present/Forms.h"
#include "present/Page.h"
#include "present/figures/Figurespage.h"
#include "present/figures/Fitdata.h"
#include "present/statistics/Observationspage.h"
#include "present/statistics/Pageview.h"

#include <QHBoxLayout>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QScopeGuard>
#include <QScreen>
#include <QShortcut>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>

#include <functional>

namespace {

constexpr QSize UsualSize(900, 660);

} // namespace

TStatisticsForm::TStatisticsForm(QWidget *parent)
    : QDialog(parent), pages_(new QTabWidget(this)), summary_(new TSummaryPage(this)),
      diagnostics_(new TDiagnosticsPage(this)), observations_(new TObservationsPage(this)),
      figuresPage_(new TFiguresPage(this))
{
    setObjectName(QStringLiteral("StatisticsForm"));
    setWindowTitle(QStringLiteral("Statistics"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setSizeGripEnabled(true);

    pages_->setObjectName(QStringLiteral("StatisticsPages"));
    pages_->setAccessibleName(QStringLiteral("Pages"));
    pages_->setDocumentMode(true);
    int number = 0;
    const auto addPage = [this, &number](QWidget *page, const char *name, const QString &title) {
        page->setObjectName(QLatin1String(name));
        pages_->setTabToolTip(pages_->addTab(page, title), QStringLiteral("%1 (Alt+%2)").arg(title).arg(++number));
    };
    addPage(summary_, "SummaryPage", QStringLiteral("Summary"));
    addPage(diagnostics_, "DiagnosticsPage", QStringLiteral("Diagnostics"));
    addPage(observations_, "ObservationsPage", QStringLiteral("Observations"));
    addPage(figuresPage_, "FiguresPage", QStringLiteral("Figures"));

    auto *buttons = new QHBoxLayout;
    const auto addButton = [this, buttons](const char *name, const QString &text, const QString &hint,
                                           const std::function<void()> &handler) {
        auto *button = new QPushButton(text, this);
        button->setObjectName(QLatin1String(name));
        button->setToolTip(hint);
        button->setAccessibleName(QString(text).remove(u'&').remove(u'…'));
        button->setAccessibleDescription(hint);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [handler] { nuvo::guarded(handler); });
        buttons->addWidget(button);
    };
    addButton("PrintStatistics", QStringLiteral("&Print…"),
              QStringLiteral("Print summary, diagnostics and figures (Ctrl+P)"), [this] { PrintClick(); });
    addButton(
        "SaveStatistics", QStringLiteral("&Save…"),
        QStringLiteral("Save summary and diagnostics as PDF or HTML with the figures, as text or Markdown (Ctrl+S)"),
        [this] { SaveClick(); });
    addButton("CopyStatistics", QStringLiteral("&Copy"), QStringLiteral("Copy what this page has (Ctrl+C)"),
              [this] { Copy(); });
    buttons->addStretch(1);
    addButton("StatisticsHelp", QStringLiteral("&Help"), QStringLiteral("Keys of this window (F1)"),
              [this] { HelpClick(); });
    addButton("CloseStatistics", QStringLiteral("Close"), QStringLiteral("Close this window (Escape)"),
              [this] { reject(); });

    auto *all = new QVBoxLayout(this);
    all->addWidget(pages_, 1);
    all->addLayout(buttons);
    SetUpKeys();
    resize(UsualSize.boundedTo(screen()->availableSize() * 0.95));
    summary_->setFocus();

    connect(observations_, &TObservationsPage::SelectionChanged, this,
            [this] { figuresPage_->SetSelected(observations_->Selected()); });
    connect(figuresPage_, &TFiguresPage::SelectionChanged, this,
            [this] { observations_->SetSelected(figuresPage_->Selected()); });
}

TStatisticsForm::~TStatisticsForm() = default;

void TStatisticsForm::SetUpKeys()
{
    const auto on = [this](const QKeySequence &keys, const std::function<void()> &handler) {
        auto *shortcut = new QShortcut(keys, this);
        connect(shortcut, &QShortcut::activated, this, [handler] { nuvo::guarded(handler); });
    };
    on(QKeySequence::Print, [this] { PrintClick(); });
    on(QKeySequence::Save, [this] { SaveClick(); });
    on(QKeySequence(Qt::Key_F1), [this] { HelpClick(); });
    on(QKeySequence(Qt::CTRL | Qt::Key_Tab), [this] { Step(1); });
    on(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab), [this] { Step(-1); });
    on(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab), [this] { Step(-1); });
    for (int page = 0; page < pages_->count(); ++page)
        on(QKeySequence(Qt::ALT | Qt::Key(Qt::Key_1 + page)), [this, page] { SetPageIndex(page); });
    // Where the focus is in a text, the table or a figure, that has the key.
    on(QKeySequence::Copy, [this] { Copy(); });
}

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

int TStatisticsForm::PageIndex() const
{
    return pages_->currentIndex();
}

void TStatisticsForm::SetPageIndex(int index)
{
    if (index < 0 || index >= pages_->count())
        return;
    pages_->setCurrentIndex(index);
    QWidget *const reading[] = {summary_, diagnostics_, &observations_->View(), &figuresPage_->View()};
    reading[index]->setFocus();
}

void TStatisticsForm::Step(int way)
{
    SetPageIndex((PageIndex() + way + pages_->count()) % pages_->count());
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
    QWidget *page = pages_->currentWidget();
    if (page == observations_)
        observations_->Copy();
    else if (page == figuresPage_)
        figuresPage_->View().Copy();
    else
        static_cast<TPageView *>(page)->Copy();
}

void TStatisticsForm::PrintClick()
{
    if (printer_ == nullptr) {
        printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
        printer_->setDocName(windowTitle());
        printer_->setPageOrientation(QPageLayout::Landscape); // the table of coefficients is wide
    }
    if (printer_->outputFormat() == QPrinter::NativeFormat) {
        const QPointer<TStatisticsForm> here = this;
        const QPointer<QPrintDialog> dialog = new QPrintDialog(printer_.get(), this);
        const auto gone = qScopeGuard([&dialog] { delete dialog; });
        if (ShowModal(*dialog) == QDialog::Accepted && !here.isNull())
            PrintDocument(*printer_);
        return;
    }
    // No printer.
    const QString file =
        nuvo::askFileName(this, QStringLiteral("Print to a file"), {QStringLiteral("PDF document (*.pdf)")});
    if (!file.isEmpty())
        SaveReport(file);
}

void TStatisticsForm::SaveClick()
{
    const QString file =
        nuvo::askFileName(this, QStringLiteral("Save statistics"),
                          {QStringLiteral("PDF document (*.pdf)"), QStringLiteral("HTML page (*.html)"),
                           QStringLiteral("Plain text (*.txt)"), QStringLiteral("Markdown (*.md)")});
    if (!file.isEmpty())
        SaveReport(file);
}

void TStatisticsForm::HelpClick()
{
    MessageDlg(
        QStringLiteral("Pages: Alt+1 to Alt+4, or Ctrl+Tab.\n"
                       "Ctrl+P prints summary, diagnostics and figures, Ctrl+S saves them: PDF and HTML have "
                       "the figures below the text.\n"
                       "Ctrl+C copies what is selected, or the whole page.\n\n"
                       "Observations: a click on a heading sorts. Marked cells are the reasons why an "
                       "observation is worth looking at; a selected row is marked in the figures.\n"
                       "Figures: Page Up and Page Down for the others; a click on a point selects its row. "
                       "The wheel zooms, a double click shows all again. Ctrl+S saves the figure that is shown.\n\n"
                       "Escape closes the window."),
        TMsgDlgType::mtInformation);
}

namespace nuvo {

void showStatistics(TRegression &regression)
{
    static QPointer<TStatisticsForm> open;
    if (!open.isNull()) {
        open->raise();
        open->activateWindow();
        return;
    }
    // A window in front can take this one along when it goes; the component can go as well.
    const QPointer<TStatisticsForm> form = new TStatisticsForm(windowInFront());
    const auto gone = qScopeGuard([&form] { delete form; });
    open = form;
    form->Load(regression);
    centreOnScreen(*form);
    ShowModal(*form);
}

} // namespace nuvo
