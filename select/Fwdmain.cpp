// SPDX-License-Identifier: MIT
#include "select/Fwdmain.h"

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "platform/Formats.h"
#include "select/Partialfrun.h"
#include "select/Textbook.h"

#include <cmath>

namespace {

class ForwardRun : public nuvo::PartialFRun
{
public:
    ForwardRun(nuvo::SelectionRun &run, const TFwdSelectMLR &selector)
        : PartialFRun(run, selector, {"add", QStringLiteral("95 Percent"), selector.FDefault(), selector.FDefault()})
    {
    }

protected:
    void enter(int i, const TIndepVar &variable) override
    {
        rows_[0][i - 1] = variable.Transformation();
        rows_[1][i - 1] = QStringLiteral("Undefined");
    }
    double statistic(double meanSquare) override { return statisticOfEntry(meanSquare); }
    QString stepText(int best) const override
    {
        return QStringLiteral("Adding ") + rows_[2][best - 1] + QStringLiteral(" Partial F = ") +
               FloatToStrFixed(statistic_, 8, 4) + u'.';
    }
    int last() const override { return variables_; }
    void writeResult() override { writeAdded(QStringLiteral("Forward Selection Adds Variable(s):")); }
};

/// Both forms of the search.
void select(TRegression &component, TFwdSelectMLR &selector)
{
    const nuvo::SelectionRun::Options options{"forward", selector.ShowProgress(), selector.ShowReport()};
    if (selector.Rule() == TCorvane::Written) {
        nuvo::SelectionRun::perform(selector, component, options,
                                    [&selector](nuvo::SelectionRun &run) { ForwardRun(run, selector).search(); });
        return;
    }
    const nuvo::ChoiceThreshold threshold =
        nuvo::thresholdOf(selector, {"P", selector.P(), selector.FDefault(), QStringLiteral("95 Percent")});
    nuvo::SelectionRun::perform(selector, component, options, [&](nuvo::SelectionRun &run) {
        nuvo::searchAsTextbook(run, selector, nuvo::Choice::Method::Forward, threshold, {});
    });
}

} // namespace

TFwdSelectMLR::TFwdSelectMLR(QWidget *owner) : TPartialFSearch(owner) {}

TFwdSelectMLR::~TFwdSelectMLR() = default;

void TFwdSelectMLR::SetFDefault(double value)
{
    RefuseWhileRunning();
    fDefault_ = std::fabs(value);
}

void TFwdSelectMLR::SetP(double value)
{
    RefuseWhileRunning();
    p_ = value;
}

void TFwdSelectMLR::Run()
{
    NeedFree();
    if (TMLRQuery *query = Query())
        FwdSelectMLRQuery(*query, *this);
    else
        FwdSelectMLRTable(*Table(), *this);
}

void FwdSelectMLRTable(TMLRTable &component, TFwdSelectMLR &selector)
{
    select(component, selector);
}

void FwdSelectMLRQuery(TMLRQuery &component, TFwdSelectMLR &selector)
{
    select(component, selector);
}
