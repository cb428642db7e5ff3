// SPDX-License-Identifier: MIT
#include "select/choice/Choiceform.h"

#include "platform/Messages.h"
#include "present/Forms.h"
#include "present/Page.h"
#include "present/figures/Figureview.h"
#include "present/statistics/Pageview.h"
#include "select/Choicepage.h"
#include "select/Corvane.h"
#include "select/choice/Choicetable.h"
#include "select/choice/Modelspage.h"
#include "select/choice/Stepspage.h"

#include <QLabel>
#include <QShowEvent>
#include <QTabWidget>
#include <QTableView>
#include <QTextDocument>
#include <QVBoxLayout>

#include <set>

namespace {

/// Sentences that take as many lines as the width asks for. However long a name is, the window can be narrow; and
/// however narrow it could be, it need not be high for that.
class Sentences : public QLabel
{
public:
    Sentences(QWidget *parent, const char *name) : QLabel(parent)
    {
        setObjectName(QLatin1String(name));
        setTextFormat(Qt::PlainText);
        setWordWrap(true);
        setTextInteractionFlags(Qt::TextSelectableByMouse);
    }

    QSize minimumSizeHint() const override { return {1, fontMetrics().height()}; }
};

/// What was chosen by what, and what came of it: a line each.
QStringList headOf(const nuvo::Choice &choice)
{
    const QString by =
        choice.isOptimal() ? QStringLiteral(" by ") + nuvo::criterionName(choice.criterion) : QString();
    const QString variables =
        choice.count() == 1 ? QStringLiteral("1 variable") : QStringLiteral("%1 variables").arg(choice.count());
    const QStringList terms = choice.terms(choice.selected);
    return {QStringLiteral("%1%2: %3 on %4, %5 observations.")
                .arg(nuvo::methodName(choice.method), by, nuvo::withoutControls(choice.response), variables,
                     QString::number(choice.observations)),
            choice.end != nuvo::Choice::End::Chosen ? QStringLiteral("No model was chosen; the report says why.")
            : terms.isEmpty()                       ? QStringLiteral("In use: the constant alone.")
                              : QStringLiteral("In use: %1.").arg(nuvo::withoutControls(terms.join(u", ")))};
}

} // namespace

TChoiceForm::TChoiceForm(QWidget *parent)
    : PagedForm(parent, "Choice"), choice_(std::make_unique<const nuvo::Choice>()),
      head_(new Sentences(this, "ChoiceHead")), models_(new TModelsPage(this)), steps_(new TStepsPage(this)),
      figure_(new TFigureView(this)), report_(new TPageView(this)), warnings_(new Sentences(this, "ChoiceWarnings"))
{
    models_->setObjectName(QStringLiteral("ModelsPage"));
    steps_->setObjectName(QStringLiteral("StepsPage"));
    figure_->setObjectName(QStringLiteral("CriterionFigure"));
    report_->setObjectName(QStringLiteral("ChoiceReport"));
    report_->setAccessibleName(QStringLiteral("Report"));
    report_->setAccessibleDescription(QStringLiteral("The choice in words and tables"));
    warnings_->setAccessibleName(QStringLiteral("Warnings"));

    Column().insertWidget(0, head_);
    Column().addWidget(warnings_);
    SetUp({QStringLiteral("Print the report (Ctrl+P)"),
           QStringLiteral("Save the table as CSV, or the report as PDF, HTML, text or Markdown (Ctrl+S)"),
           QStringLiteral("Save choice"),
           {QStringLiteral("Comma separated values (*.csv)"), QStringLiteral("PDF document (*.pdf)"),
            QStringLiteral("HTML page (*.html)"), QStringLiteral("Plain text (*.txt)"),
            QStringLiteral("Markdown (*.md)")},
           QStringLiteral("Pages: Alt+1 to Alt+3, or Ctrl+Tab.\n"
                          "Enter puts the selected model, or the model after the selected step, on the "
                          "component, loaded and fitted.\n"
                          "Ctrl+P prints the report. Ctrl+S saves the table as CSV, or the report.\n"
                          "Ctrl+C copies the selected row, or all; or the figure; or the report.\n\n"
                          "A click on a heading sorts. The marked row is the model in use; models in italics are "
                          "dependent and cannot be the best. A selected model is marked in the figure.\n\n"
                          "Escape closes the window.")},
          {960, 600}, 3);
    nuvo::Choice none;
    none.end = nuvo::Choice::End::NoRecords;
    SetChoice(none);
    SetPageIndex(0);

    connect(&Pages(), &QTabWidget::currentChanged, this, &TChoiceForm::ShowWarnings);
    connect(models_, &TModelsPage::UseModel, this, &TChoiceForm::UseModel);
    connect(steps_, &TStepsPage::UseModel, this, &TChoiceForm::UseModel);
    connect(models_, &TModelsPage::SelectionChanged, this, [this] {
        figure_->SetSelected(models_->Selected() == 0 ? std::set<qint64>() : std::set<qint64>{models_->Selected()});
    });
    connect(figure_, &TFigureView::SelectionChanged, this, [this] {
        const std::set<qint64> &selected = figure_->Selected();
        models_->SetSelected(selected.empty() ? 0 : int(*selected.rbegin()));
        if (selected.size() > 1)
            figure_->SetSelected({*selected.rbegin()});
    });
}

TChoiceForm::~TChoiceForm() = default;

void TChoiceForm::Load(TCorvane &selector)
{
    selector_ = &selector;
    SetChoice(*selector.Choice());
}

void TChoiceForm::SetChoice(const nuvo::Choice &choice)
{
    const bool optimal = choice.isOptimal();
    const bool otherKind = Pages().count() == 0 || optimal != choice_->isOptimal();
    choice_ = std::make_unique<const nuvo::Choice>(choice);
    if (otherKind) {
        Pages().clear();
        if (optimal) {
            AddPage(models_, QStringLiteral("Models"));
            AddPage(figure_, QStringLiteral("Figure"));
        } else {
            AddPage(steps_, QStringLiteral("Steps"));
        }
        // Those that are no pages.
        if (optimal) {
            steps_->hide();
        } else {
            models_->hide();
            figure_->hide();
        }
        AddPage(report_, QStringLiteral("Report"));
    }
    const QString source = nuvo::withoutControls(choice.dataset);
    setWindowTitle(source.isEmpty() ? QStringLiteral("Choice of a model")
                                    : QStringLiteral("Choice of a model: ") + source);
    head_->setText(headOf(choice).join(u'\n'));
    models_->SetChoice(choice);
    steps_->SetChoice(choice);
    figure_->SetFigure(nuvo::choiceFigure(choice));
    figure_->SetSelected(models_->Selected() == 0 ? std::set<qint64>() : std::set<qint64>{models_->Selected()});
    report_->SetPage(nuvo::choicePage(choice, 6, nuvo::windowPoint()));
    const QStringList warnings = nuvo::choiceWarnings(choice);
    warnings_->setText(warnings.join(u'\n'));
    ShowWarnings();
    if (choice.end != nuvo::Choice::End::Chosen)
        SetPageIndex(Pages().indexOf(report_));
}

/// The report has them itself.
void TChoiceForm::ShowWarnings()
{
    warnings_->setVisible(!warnings_->text().isEmpty() && Pages().currentWidget() != report_);
}

void TChoiceForm::UseModel(int number)
{
    nuvo::guarded([&] {
        const QPointer<TChoiceForm> here = this;
        if (selector_.isNull()) {
            MessageDlg(QStringLiteral("There is no component any more to put the model on."),
                       TMsgDlgType::mtInformation);
            return;
        }
        selector_->SelectModel(number);
        if (here && selector_ && selector_->Choice())
            SetChoice(*selector_->Choice());
    });
}

QWidget *TChoiceForm::ReadingPart(QWidget *page) const
{
    if (page == models_)
        return &models_->View();
    return page == steps_ ? &steps_->Steps() : page;
}

void TChoiceForm::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    if (!event->spontaneous())
        SetPageIndex(PageIndex());
}

nuvo::Page TChoiceForm::Document() const
{
    nuvo::Page page = nuvo::choicePage(*choice_);
    page.parts.prepend({nuvo::Page::Kind::Title, windowTitle(), {}, {}});
    return page;
}

void TChoiceForm::PrintDocument(QPagedPaintDevice &device) const
{
    nuvo::pageDocument(Document())->print(&device);
}

void TChoiceForm::Save(const QString &file) const
{
    if (!file.endsWith(QStringLiteral(".csv"), Qt::CaseInsensitive))
        nuvo::savePage(Document(), file);
    else if (choice_->isOptimal())
        models_->SaveCsv(file);
    else
        steps_->SaveCsv(file);
}

void TChoiceForm::Copy()
{
    QWidget *const page = Pages().currentWidget();
    if (page == models_)
        models_->Copy();
    else if (page == steps_)
        steps_->Copy();
    else if (page == figure_)
        figure_->Copy();
    else
        report_->Copy();
}

namespace nuvo {

Figure choiceFigure(const Choice &choice)
{
    std::vector<SizedModel> models;
    for (const SubsetFigures &model : choice.subsets.bySize)
        models.push_back({model.size, criterionOf(model, choice.criterion),
                          choice.terms(model.controls).join(QStringLiteral(", "))});
    const bool largest =
        choice.criterion == SubsetCriterion::AdjustedRSquared || choice.criterion == SubsetCriterion::F;
    Figure figure = criterionFigure(models, criterionName(choice.criterion), !largest);
    for (std::size_t i = 0; i < models.size(); ++i)
        figure.records.push_back(qint64(i) + 1);
    return figure;
}

void showChoice(TCorvane &selector)
{
    if (!selector.Choice()) {
        MessageDlg(QStringLiteral("There is no choice to show: no run by the rule Textbook has come out."),
                   TMsgDlgType::mtInformation);
        return;
    }
    static QPointer<QDialog> open;
    showOne(open, [&selector](QWidget *parent) {
        auto form = std::make_unique<TChoiceForm>(parent);
        form->Load(selector);
        return form.release();
    });
}

} // namespace nuvo
