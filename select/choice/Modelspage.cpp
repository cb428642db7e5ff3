// SPDX-License-Identifier: MIT
#include "select/choice/Modelspage.h"

#include "platform/Savefile.h"
#include "select/Choice.h"
#include "select/Choicepage.h"
#include "select/choice/Choicetable.h"

#include <QHBoxLayout>
#include <QIODevice>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <optional>
#include <vector>

namespace {

using Criterion = nuvo::SubsetCriterion;

/// The figures of a model, that of the criterion first.
struct FigureColumn
{
    const char *title;
    const char *hint;
    double nuvo::SubsetFigures::*figure;
    std::optional<Criterion> criterion{};
};

std::vector<FigureColumn> figureColumns(Criterion criterion)
{
    using Figures = nuvo::SubsetFigures;
    std::vector<FigureColumn> columns{
        {QT_TRANSLATE_NOOP("TModelsPage", "SSE"), QT_TRANSLATE_NOOP("TModelsPage", "Sum of squared residuals"),
         &Figures::sse},
        {"R²", QT_TRANSLATE_NOOP("TModelsPage", "Coefficient of determination"), &Figures::rSquared},
        {QT_TRANSLATE_NOOP("TModelsPage", "Adjusted R²"),
         QT_TRANSLATE_NOOP("TModelsPage", "Adjusted coefficient of determination; the largest is the best"),
         &Figures::adjustedRSquared, Criterion::AdjustedRSquared},
        {"s²", QT_TRANSLATE_NOOP("TModelsPage", "Residual mean square"), &Figures::sSquared},
        {"F", QT_TRANSLATE_NOOP("TModelsPage", "Overall F statistic; the largest is the best"), &Figures::f,
         Criterion::F},
        {"Cp", QT_TRANSLATE_NOOP("TModelsPage", "Mallows' Cp; the smallest is the best"), &Figures::cp,
         Criterion::Cp},
        {"AIC", QT_TRANSLATE_NOOP("TModelsPage", "Akaike's information criterion; the smallest is the best"),
         &Figures::aic, Criterion::Aic},
        {"BIC", QT_TRANSLATE_NOOP("TModelsPage", "Schwarz's information criterion; the smallest is the best"),
         &Figures::bic, Criterion::Bic},
        {"PRESS",
         QT_TRANSLATE_NOOP("TModelsPage",
                           "Squared residuals of each observation from the fit without it; the smallest is the best"),
         &Figures::press, Criterion::Press},
    };
    std::stable_partition(columns.begin(), columns.end(),
                          [&](const FigureColumn &column) { return column.criterion == criterion; });
    return columns;
}

QString noteOf(const nuvo::Choice &choice, const nuvo::SubsetFigures &model)
{
    QStringList notes;
    if (choice.subsets.best && choice.subsets.best->controls == model.controls)
        notes += TModelsPage::tr("best by %1", "a criterion").arg(nuvo::criterionName(choice.criterion));
    if (choice.selected == model.controls && choice.end == nuvo::Choice::End::Chosen)
        notes += TModelsPage::tr("in use");
    if (model.dependent)
        notes += TModelsPage::tr("dependent");
    return notes.join(QStringLiteral(", "));
}

} // namespace

TModelsPage::TModelsPage(QWidget *parent)
    : QWidget(parent), table_(new nuvo::ChoiceTable(this)), use_(new QPushButton(tr("Use th&is model"), this))
{
    table_->setObjectName(QStringLiteral("ModelsView"));
    table_->setAccessibleName(tr("Models"));
    table_->setAccessibleDescription(
        tr("The best models of each size with their figures; a click on a heading sorts"));
    use_->setObjectName(QStringLiteral("UseModel"));
    use_->setAutoDefault(false);
    use_->setToolTip(tr("Put the selected model on the component, loaded and fitted (Enter)"));
    use_->setAccessibleDescription(use_->toolTip());

    auto *below = new QHBoxLayout;
    below->addStretch(1);
    below->addWidget(use_);
    auto *all = new QVBoxLayout(this);
    all->addWidget(table_, 1);
    all->addLayout(below);

    connect(table_, &nuvo::ChoiceTable::CurrentPicked, this, [this] {
        ShowState();
        Q_EMIT SelectionChanged();
    });
    const auto use = [this] {
        if (use_->isEnabled())
            Q_EMIT UseModel(Selected());
    };
    connect(table_, &nuvo::ChoiceTable::Activated, this, use);
    connect(use_, &QPushButton::clicked, this, use);
    SetChoice({});
}

void TModelsPage::SetChoice(const nuvo::Choice &choice)
{
    const std::vector<FigureColumn> figures = figureColumns(choice.criterion);
    std::vector<nuvo::ChoiceColumn> columns{{tr("No."), tr("Number in the list")},
                                            {tr("Size"), tr("Number of terms")},
                                            {tr("Terms"), tr("Terms"), true},
                                            {tr("Note"), tr("What is to be said of the model"), true}};
    for (const FigureColumn &figure : figures)
        columns.push_back({tr(figure.title), figure.criterion == choice.criterion
                                                 ? tr("%1 (the criterion of the choice)").arg(tr(figure.hint))
                                                 : tr(figure.hint)});
    std::vector<nuvo::ChoiceRow> rows;
    left_ = 0;
    for (const nuvo::SubsetFigures &model : choice.subsets.bySize) {
        nuvo::ChoiceRow &row = rows.emplace_back();
        row.number = int(rows.size());
        row.quiet = model.dependent;
        row.marked = choice.end == nuvo::Choice::End::Chosen && choice.selected == model.controls;
        if (row.marked)
            left_ = row.number;
        row.cells = {nuvo::countCell(row.number), nuvo::countCell(model.size),
                     nuvo::termsCell(choice.terms(model.controls)), nuvo::wordsCell(noteOf(choice, model))};
        for (const FigureColumn &figure : figures)
            row.cells.push_back(nuvo::figureCell(model.*figure.figure));
    }
    table_->SetRows(std::move(columns), std::move(rows));
    SetSelected(left_);
}

QTableView &TModelsPage::View()
{
    return *table_;
}

int TModelsPage::Selected() const
{
    return table_->Current();
}

void TModelsPage::SetSelected(int model)
{
    table_->SetCurrent(model);
    ShowState();
}

void TModelsPage::ShowState()
{
    use_->setEnabled(Selected() != 0 && Selected() != left_);
}

QString TModelsPage::SelectionText() const
{
    return table_->SelectionText();
}

void TModelsPage::Copy() const
{
    table_->Copy();
}

void TModelsPage::SaveCsv(const QString &file) const
{
    nuvo::saveFile(file, [text = table_->Csv()](QIODevice &device) { return nuvo::writeText(text, device); });
}
