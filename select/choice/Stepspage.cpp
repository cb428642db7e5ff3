// SPDX-License-Identifier: MIT
#include "select/choice/Stepspage.h"

#include "platform/Csvline.h"
#include "platform/Messages.h"
#include "platform/Savefile.h"
#include "select/Choice.h"
#include "select/Choicepage.h"
#include "select/choice/Choicetable.h"

#include <QHBoxLayout>
#include <QIODevice>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

#include <cmath>
#include <limits>

namespace {

using Action = nuvo::SearchStep::Action;

QString exact(double value)
{
    return std::isnan(value) ? QString() : QString::number(value, 'g', QLocale::FloatingPointShortest);
}

QString actionOf(const nuvo::SearchStep &step)
{
    switch (step.action) {
    case Action::Add:
        return TStepsPage::tr("add");
    case Action::Remove:
        return TStepsPage::tr("remove");
    case Action::End:
        break;
    }
    return TStepsPage::tr("end");
}

/// What became of a candidate, or could.
QString fateOf(const nuvo::SearchStep &step, std::size_t at)
{
    const nuvo::StepCandidate &candidate = step.candidates[at];
    const bool entering = step.action == Action::Add || (step.action == Action::End && int(at) < step.entering);
    if (candidate.dependent)
        return TStepsPage::tr("depends on the model");
    if (step.action == Action::End)
        return entering ? TStepsPage::tr("could enter") : TStepsPage::tr("could leave");
    if (candidate.control == step.control)
        return entering ? TStepsPage::tr("enters") : TStepsPage::tr("leaves");
    return entering ? TStepsPage::tr("stays out") : TStepsPage::tr("stays in");
}

std::vector<nuvo::ChoiceRow> stepsOf(const nuvo::Choice &choice)
{
    std::vector<nuvo::ChoiceRow> rows;
    for (const nuvo::SearchStep &step : choice.search.path) {
        nuvo::ChoiceRow &row = rows.emplace_back();
        row.number = int(rows.size());
        const bool ends = step.action == Action::End;
        const double none = std::numeric_limits<double>::quiet_NaN();
        row.marked = choice.applied > 0 ? row.number == choice.applied : ends;
        row.cells = {nuvo::countCell(row.number),
                     ends ? nuvo::wordsCell(TStepsPage::tr("End"))
                          : nuvo::termsCell({choice.term(step.control)}, actionOf(step) + u' '),
                     nuvo::figureCell(ends ? none : step.f),
                     nuvo::probabilityCell(ends ? none : step.pValue),
                     nuvo::figureCell(step.threshold),
                     nuvo::figureCell(step.sse),
                     step.model == 0 ? nuvo::wordsCell(TStepsPage::tr("the constant alone"))
                                     : nuvo::termsCell(choice.terms(step.model)),
                     nuvo::wordsCell(row.marked ? TStepsPage::tr("in use") : QString())};
    }
    return rows;
}

} // namespace

TStepsPage::TStepsPage(QWidget *parent)
    : QWidget(parent), choice_(std::make_unique<const nuvo::Choice>()), steps_(new nuvo::ChoiceTable(this)),
      title_(new QLabel(this)), candidates_(new nuvo::ChoiceTable(this)),
      use_(new QPushButton(tr("Use th&is model"), this))
{
    steps_->setObjectName(QStringLiteral("StepsView"));
    steps_->setAccessibleName(tr("Steps"));
    steps_->setAccessibleDescription(tr("The steps of the search, the end last"));
    candidates_->setObjectName(QStringLiteral("CandidatesView"));
    candidates_->setAccessibleName(tr("Candidates"));
    candidates_->setAccessibleDescription(tr("Every candidate of the selected step with its F and p"));
    title_->setObjectName(QStringLiteral("StepTitle"));
    title_->setTextFormat(Qt::PlainText);
    title_->setWordWrap(true);
    title_->setBuddy(candidates_);
    use_->setObjectName(QStringLiteral("UseStep"));
    use_->setAutoDefault(false);
    use_->setToolTip(tr("Put the model after the selected step on the component, loaded and fitted (Enter)"));
    use_->setAccessibleDescription(use_->toolTip());

    auto *lower = new QWidget(this);
    auto *lowerRows = new QVBoxLayout(lower);
    lowerRows->setContentsMargins({});
    lowerRows->addWidget(title_);
    lowerRows->addWidget(candidates_, 1);
    auto *halves = new QSplitter(Qt::Vertical, this);
    halves->setObjectName(QStringLiteral("StepsSplitter"));
    halves->setChildrenCollapsible(false);
    halves->addWidget(steps_);
    halves->addWidget(lower);
    auto *below = new QHBoxLayout;
    below->addStretch(1);
    below->addWidget(use_);
    auto *all = new QVBoxLayout(this);
    all->addWidget(halves, 1);
    all->addLayout(below);

    connect(steps_, &nuvo::ChoiceTable::CurrentPicked, this, [this] {
        ShowStep();
        Q_EMIT SelectionChanged();
    });
    const auto use = [this] {
        if (use_->isEnabled())
            Q_EMIT UseModel(Selected());
    };
    connect(steps_, &nuvo::ChoiceTable::Activated, this, use);
    connect(use_, &QPushButton::clicked, this, use);
    SetChoice({});
}

TStepsPage::~TStepsPage() = default;

void TStepsPage::SetChoice(const nuvo::Choice &choice)
{
    choice_ = std::make_unique<const nuvo::Choice>(choice);
    steps_->SetRows({{tr("Step"), tr("Number of the step")},
                     {tr("What"), tr("What is done"), true},
                     {QStringLiteral("F"), tr("Partial F of the variable")},
                     {QStringLiteral("p"), tr("Its upper tail")},
                     {tr("Threshold"), tr("The F that it was held against")},
                     {tr("SSE"), tr("Sum of squared residuals after the step")},
                     {tr("Model"), tr("Terms in the model after the step"), true},
                     {tr("Note"), tr("Whether the component has this model"), true}},
                    stepsOf(choice));
    SetSelected(choice.search.path.empty() ? 0 : 1);
}

void TStepsPage::SetSelected(int step)
{
    steps_->SetCurrent(step);
    ShowStep();
}

void TStepsPage::ShowStep()
{
    const int number = Selected();
    std::vector<nuvo::ChoiceRow> rows;
    title_->setText(tr("Select a step to see its candidates."));
    bool other = false;
    if (number > 0) {
        const nuvo::SearchStep &step = choice_->search.path[std::size_t(number) - 1];
        other = step.model != choice_->selected;
        title_->setText(nuvo::withoutControls(nuvo::stepText(*choice_, step, nuvo::windowPoint())) + u'.');
        for (std::size_t at = 0; at < step.candidates.size(); ++at) {
            const nuvo::StepCandidate &candidate = step.candidates[at];
            nuvo::ChoiceRow &row = rows.emplace_back();
            row.number = int(rows.size());
            row.marked = step.action != Action::End && candidate.control == step.control;
            row.quiet = candidate.dependent;
            row.cells = {nuvo::countCell(candidate.control), nuvo::termsCell({choice_->term(candidate.control)}),
                         nuvo::figureCell(candidate.f), nuvo::probabilityCell(candidate.pValue),
                         nuvo::wordsCell(fateOf(step, at))};
        }
    }
    candidates_->SetRows({{tr("No."), tr("Number of the variable")},
                          {tr("Variable"), tr("Variable"), true},
                          {QStringLiteral("F"), tr("Partial F")},
                          {QStringLiteral("p"), tr("Its upper tail")},
                          {tr("What"), tr("What becomes of it"), true}},
                         std::move(rows));
    use_->setEnabled(other);
}

QTableView &TStepsPage::Steps()
{
    return *steps_;
}

QTableView &TStepsPage::Candidates()
{
    return *candidates_;
}

int TStepsPage::Selected() const
{
    return steps_->Current();
}

const nuvo::ChoiceTable &TStepsPage::Reading() const
{
    return candidates_->hasFocus() ? *candidates_ : *steps_;
}

QString TStepsPage::SelectionText() const
{
    return Reading().SelectionText();
}

void TStepsPage::Copy() const
{
    Reading().Copy();
}

void TStepsPage::SaveCsv(const QString &file) const
{
    QString text = nuvo::csvLine({tr("Step"), tr("Action"), tr("Variable"), QStringLiteral("F"), QStringLiteral("p"),
                                  tr("What"), tr("Threshold"), tr("SSE"), tr("Model")}) +
                   u'\n';
    int number = 0;
    for (const nuvo::SearchStep &step : choice_->search.path) {
        ++number;
        const QStringList after{exact(step.threshold), exact(step.sse),
                                choice_->terms(step.model).join(QStringLiteral(", "))};
        for (std::size_t at = 0; at < step.candidates.size(); ++at) {
            const nuvo::StepCandidate &candidate = step.candidates[at];
            text +=
                nuvo::csvLine(QStringList{QString::number(number), actionOf(step), choice_->term(candidate.control),
                                          exact(candidate.f), exact(candidate.pValue), fateOf(step, at)} +
                              after) +
                u'\n';
        }
        if (step.candidates.empty())
            text +=
                nuvo::csvLine(QStringList{QString::number(number), actionOf(step), {}, {}, {}, {}} + after) + u'\n';
    }
    nuvo::saveFile(file, [&text](QIODevice &device) { return nuvo::writeText(text, device); });
}
