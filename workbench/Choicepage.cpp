// SPDX-License-Identifier: MIT
#include "workbench/Choicepage.h"

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "platform/Errors.h"
#include "platform/Messages.h"
#include "present/controls/Tablecopy.h"
#include "select/Choice.h"
#include "select/Choicepage.h"
#include "select/choice/Modelspage.h"
#include "select/choice/Stepspage.h"
#include "workbench/Elsewhere.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTableView>
#include <QVBoxLayout>

namespace nuvo {

namespace {

QDoubleSpinBox *probabilityBox(QWidget *parent, const char *name, double value)
{
    auto *const box = new QDoubleSpinBox(parent);
    box->setObjectName(QLatin1String(name));
    box->setRange(0.0001, 0.9999);
    box->setDecimals(4);
    box->setSingleStep(0.01);
    box->setValue(value);
    return box;
}

} // namespace

struct ChoicePage::Work
{
    std::optional<ScanSource> every;
    std::unique_ptr<TDataSet> dataset;
    std::unique_ptr<TCorvane> selector; ///< goes before what it is bound to

    TRegression &Regression() const { return dynamic_cast<TRegression &>(*dataset); }
};

ChoicePage::ChoicePage(QWidget *parent)
    : QWidget(parent), method_(new QComboBox(this)), criterion_(new QComboBox(this)), perSize_(new QSpinBox(this)),
      enter_(probabilityBox(this, "PIn", 0.05)), remove_(probabilityBox(this, "POut", 0.1)),
      criterionLabel_(new QLabel(tr("&best by"), this)), perSizeLabel_(new QLabel(tr("of each si&ze"), this)),
      enterLabel_(new QLabel(tr("e&nters below p ="), this)), removeLabel_(new QLabel(tr("&leaves above p ="), this)),
      choose_(new QPushButton(tr("&Choose"), this)), said_(new QLabel(this)), pages_(new QStackedWidget(this)),
      models_(new TModelsPage(this)), steps_(new TStepsPage(this))
{
    setObjectName(QStringLiteral("ChoicePage"));
    method_->setObjectName(QStringLiteral("Method"));
    method_->setAccessibleName(tr("Method"));
    method_->addItems({tr("All subsets"), tr("Stepwise"), tr("Forward selection"), tr("Backward elimination")});
    criterion_->setObjectName(QStringLiteral("Criterion"));
    criterion_->addItem(tr("Cp"), TOptimizeMLR::Cp);
    criterion_->addItem(tr("AIC"), TOptimizeMLR::AIC);
    criterion_->addItem(tr("BIC"), TOptimizeMLR::BIC);
    criterion_->addItem(tr("adjusted R²"), TOptimizeMLR::AdjustedRSquared);
    criterion_->addItem(tr("PRESS"), TOptimizeMLR::PRESS);
    perSize_->setObjectName(QStringLiteral("PerSize"));
    perSize_->setRange(1, 20);
    perSize_->setValue(3);
    criterionLabel_->setBuddy(criterion_);
    perSizeLabel_->setBuddy(perSize_);
    enterLabel_->setBuddy(enter_);
    removeLabel_->setBuddy(remove_);
    choose_->setObjectName(QStringLiteral("Choose"));
    choose_->setToolTip(tr("Choose among the control variables; the model stays until you take one of the results"));
    said_->setObjectName(QStringLiteral("ChoiceSaid"));
    said_->setTextFormat(Qt::PlainText);
    said_->setWordWrap(true);
    pages_->addWidget(new QWidget(pages_));
    pages_->addWidget(models_);
    pages_->addWidget(steps_);

    auto *const line = new QGridLayout;
    line->addWidget(method_, 0, 0, 1, 4);
    line->addWidget(choose_, 1, 5);
    line->addWidget(criterionLabel_, 1, 0);
    line->addWidget(criterion_, 1, 1);
    line->addWidget(enterLabel_, 1, 0);
    line->addWidget(enter_, 1, 1);
    line->addWidget(perSizeLabel_, 1, 2);
    line->addWidget(perSize_, 1, 3);
    line->addWidget(removeLabel_, 1, 2);
    line->addWidget(remove_, 1, 3);
    line->setColumnStretch(4, 1);
    auto *const all = new QVBoxLayout(this);
    all->addLayout(line);
    all->addWidget(said_);
    all->addWidget(pages_, 1);
    connect(method_, &QComboBox::currentIndexChanged, this, &ChoicePage::ShowControls);
    connect(choose_, &QPushButton::clicked, this, &ChoicePage::Choose);
    connect(models_, &TModelsPage::UseModel, this, &ChoicePage::Take);
    connect(steps_, &TStepsPage::UseModel, this, &ChoicePage::Take);
    ShowControls();
    SetState({});
}

ChoicePage::~ChoicePage() = default;

void ChoicePage::ShowControls()
{
    const int method = method_->currentIndex();
    for (QWidget *const widget :
         std::initializer_list<QWidget *>{criterionLabel_, criterion_, perSizeLabel_, perSize_})
        widget->setVisible(method == ChoiceSettings::Optimal);
    for (QWidget *const widget : std::initializer_list<QWidget *>{enterLabel_, enter_})
        widget->setVisible(method == ChoiceSettings::Stepwise || method == ChoiceSettings::Forward);
    for (QWidget *const widget : std::initializer_list<QWidget *>{removeLabel_, remove_})
        widget->setVisible(method == ChoiceSettings::Stepwise || method == ChoiceSettings::Backward);
}

void ChoicePage::SetState(const ModelState &state, const std::optional<ScanSource> &every)
{
    const bool sameData = state.database == state_.database && state.table == state_.table &&
                          state.sql == state_.sql && state.filter == state_.filter &&
                          state.records == state_.records && state.model.strings(0) == state_.model.strings(0);
    const bool sameModel = state.model == state_.model;
    state_ = state;
    every_ = every;
    choose_->setEnabled(state.isFittable());
    if (sameData && work_ && sameModel)
        return;
    if (!sameData)
        work_.reset();
    ShowChoice();
}

ChoiceSettings ChoicePage::Settings() const
{
    ChoiceSettings settings;
    settings.method = ChoiceSettings::Method(method_->currentIndex());
    settings.criterion = TOptimizeMLR::TOptimizationType(criterion_->currentData().toInt());
    settings.perSize = perSize_->value();
    settings.enter = enter_->value();
    settings.remove = remove_->value();
    return settings;
}

std::optional<ChoiceSettings> ChoicePage::Chosen() const
{
    return work_ ? std::optional(Settings()) : std::nullopt;
}

void ChoicePage::SetSettings(const ChoiceSettings &settings)
{
    method_->setCurrentIndex(settings.method);
    if (const int found = criterion_->findData(settings.criterion); found >= 0)
        criterion_->setCurrentIndex(found);
    perSize_->setValue(settings.perSize);
    enter_->setValue(settings.enter);
    remove_->setValue(settings.remove);
    ShowControls();
}

void ChoicePage::Choose()
{
    QStringList said;
    const TMessageHandler before = SetMessageHandler([&said](const QString &text, TMsgDlgType type, unsigned, int) {
        if (type != TMsgDlgType::mtInformation) // what came of it is shown anyway
            said.append(DisplayLines(text).simplified());
        return int(mrOk);
    });
    auto work = std::make_unique<Work>();
    work->every = every_;
    try {
        work->selector = selectorFor(Settings());
        if (state_.isQuery()) {
            auto query = std::make_unique<Elsewhere<TMLRQuery>>(work->every);
            work->selector->SetQuery(query.get());
            work->dataset = std::move(query);
        } else {
            auto table = std::make_unique<Elsewhere<TMLRTable>>(work->every);
            work->selector->SetTable(table.get());
            work->dataset = std::move(table);
        }
        apply(state_, work->Regression());
        work->dataset->Open();
        work->selector->Run();
    } catch (const EPlatformError &error) {
        said.append(error.Message());
    }
    SetMessageHandler(before);
    work_ = std::move(work);
    ShowChoice();
    if (!said.isEmpty())
        said_->setText(said.join(u'\n'));
}

void ChoicePage::ShowChoice()
{
    const std::shared_ptr<const Choice> choice = work_ ? work_->selector->Choice() : nullptr;
    if (!choice) {
        pages_->setCurrentIndex(0);
        said_->setText(state_.isFittable()
                           ? tr("Choose finds out which of the control variables of the model are worth keeping. The "
                                "model stays as it is until you take one of the results.")
                           : tr("There is no model yet to choose from: drag a field to Y and the candidates to X1, "
                                "X2, …"));
        return;
    }
    const Choice shown = Marked(*choice);
    models_->SetChoice(shown);
    steps_->SetChoice(shown);
    pages_->setCurrentIndex(choice->method == Choice::Method::Optimal ? 1 : 2);
    QStringList lines{choiceResult(*choice, QLocale().decimalPoint().front())};
    for (const QString &warning : choiceWarnings(*choice))
        lines.append(QStringLiteral("• ") + warning);
    said_->setText(lines.join(u'\n'));
}

Choice ChoicePage::Marked(Choice choice) const
{
    // The component that was chosen with has the chosen model at once; the person's has it when it is taken.
    const QStringList terms = state_.terms();
    choice.selected = 0;
    for (int j = 1; j <= choice.count(); ++j) {
        if (terms.contains(choice.term(j)))
            choice.selected |= ControlSet(1) << (j - 1);
    }
    if (!choice.isOptimal()) {
        choice.applied = choice.modelCount() + 1; // none
        for (int step = choice.modelCount(); step > 0 && choice.applied > choice.modelCount(); --step) {
            if (choice.model(step) == choice.selected)
                choice.applied = step;
        }
    }
    return choice;
}

Page::Table ChoicePage::CurrentTable() const
{
    if (pages_->currentWidget() == models_)
        return tableOf(models_->View());
    if (pages_->currentWidget() == steps_)
        return tableOf(steps_->Candidates().hasFocus() ? steps_->Candidates() : steps_->Steps());
    return {};
}

void ChoicePage::Take(int model)
{
    try {
        work_->selector->SelectModel(model);
        Q_EMIT ModelTaken(RegressionModel::of(work_->Regression()));
        ShowChoice();
    } catch (const EPlatformError &error) {
        said_->setText(error.Message());
    }
}

} // namespace nuvo
