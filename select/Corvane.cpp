// SPDX-License-Identifier: MIT
#include "select/Corvane.h"

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "engine/Progress.h"
#include "platform/Errors.h"
#include "present/Optgauge.h"
#include "select/Choicepage.h"
#include "select/Choicerun.h"
#include "select/choice/Choiceform.h"

using namespace std::chrono_literals;

namespace {

QString caption(const TComponent &component)
{
    return component.Name().isEmpty() ? QString::fromLatin1(component.metaObject()->className()) : component.Name();
}

/// Whether a load needs no record from the database: its cursor is where the load before has left it.
bool recordsAreRead(TRegression &regression)
{
    const TDataSet &dataset = regression.DataSet();
    return regression.UseOfRecords() == nuvo::RecordUse::First && regression.Loaded() && dataset.Active() &&
           (dataset.Eof() || dataset.RecNo() > regression.RecordsRead());
}

} // namespace

TCorvane::TCorvane(QWidget *owner) : TComponent(owner) {}

TCorvane::~TCorvane() = default;

void TCorvane::SetDataset(const QString &name)
{
    RefuseWhileRunning();
    dataset_ = name;
    LookUp();
}

void TCorvane::SetTable(TMLRTable *table)
{
    RefuseWhileRunning();
    Bind(table, nullptr);
}

void TCorvane::SetQuery(TMLRQuery *query)
{
    RefuseWhileRunning();
    Bind(nullptr, query);
}

void TCorvane::Bind(TMLRTable *table, TMLRQuery *query) const
{
    table_ = table;
    query_ = query;
    everBound_ = true;
}

void TCorvane::LookUp() const
{
    TDataSet *const found = FindComponent<TDataSet>(
        dataset_, [](const TDataSet &dataset) { return dynamic_cast<const TRegression *>(&dataset) != nullptr; });
    if (found != nullptr)
        Bind(qobject_cast<TMLRTable *>(found), qobject_cast<TMLRQuery *>(found));
}

TMLRTable *TCorvane::Table() const
{
    if (!everBound_)
        LookUp();
    return table_;
}

TMLRQuery *TCorvane::Query() const
{
    if (!everBound_)
        LookUp();
    return query_;
}

TRegression *TCorvane::Regression() const
{
    if (TMLRQuery *query = Query())
        return query;
    return Table();
}

void TCorvane::SetRule(TSelectionRule rule)
{
    RefuseWhileRunning();
    rule_ = rule;
}

void TCorvane::NeedBound() const
{
    if (Regression() != nullptr)
        return;
    const QString name = caption(*this);
    if (dataset_.isEmpty())
        throw EDatabaseError(QStringLiteral("%1 has no regression component: its Dataset is empty.").arg(name));
    if (everBound_)
        throw EDatabaseError(
            QStringLiteral("The regression component of %1 is gone; its Dataset is \"%2\".").arg(name, dataset_));
    throw EDatabaseError(
        QStringLiteral("%1 finds no regression component called \"%2\", its Dataset.").arg(name, dataset_));
}

void TCorvane::NeedFree() const
{
    RefuseWhileRunning();
    NeedBound();
    Regression()->RefuseWhileBusy();
}

void TCorvane::RefuseWhileRunning() const
{
    if (running_)
        throw EDatabaseError(
            QStringLiteral("%1 is choosing a model; it cannot be run or changed before that has ended.")
                .arg(caption(*this)));
}

const QString &TCorvane::Report() const
{
    if (choice_ && report_.isEmpty())
        report_ = nuvo::choiceReport(*choice_);
    return report_;
}

QString TCorvane::Summary() const
{
    return choice_ ? nuvo::choiceSummary(*choice_) : report_;
}

void TCorvane::ShowChoice()
{
    nuvo::showChoice(*this);
}

void TCorvane::SelectModel(int index)
{
    NeedFree();
    if (!choice_)
        throw EDatabaseError(
            QStringLiteral("%1 has no models to select from: no run by the rule Textbook has come out.")
                .arg(caption(*this)));
    const std::optional<nuvo::ControlSet> model = choice_->model(index);
    if (!model)
        throw EStringListError(QStringLiteral("There is no model %1 in the choice: it has %2.")
                                   .arg(QString::number(index), choice_->modelCount() == 0
                                                                    ? QStringLiteral("none")
                                                                    : QString::number(choice_->modelCount())));
    const QPointer<TCorvane> alive = this;
    nuvo::Choice choice = *choice_;
    nuvo::applyChoice(*Regression(), choice, *model, index);
    if (!alive)
        return;
    report_.clear();
    choice_ = std::make_shared<const nuvo::Choice>(std::move(choice));
}

void TCorvane::SaveModel(TMLRModel &model)
{
    NeedBound();
    if (TMLRQuery *query = Query())
        SaveQueryModel(model, *query);
    else
        SaveTableModel(model, *Table());
}

void TCorvane::PutModel(const TMLRModel &model)
{
    NeedBound();
    if (TMLRQuery *query = Query())
        SetQueryModel(model, *query);
    else
        SetTableModel(model, *Table());
}

std::unique_ptr<nuvo::Progress> TCorvane::MakeProgress()
{
    auto dialog = std::make_unique<TGaugeDlg>();
    if (SharesSample() && recordsAreRead(*Regression()))
        dialog->SetPatience(200ms);
    return dialog;
}
