// SPDX-License-Identifier: MIT
#include "select/Bkmain.h"

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "platform/Formats.h"
#include "select/Modeltools.h"
#include "select/Partialfrun.h"
#include "select/Textbook.h"

#include <cmath>

namespace {

class BackwardRun : public nuvo::PartialFRun
{
public:
    BackwardRun(nuvo::SelectionRun &run, const TBackElimMLR &selector)
        : PartialFRun(run, selector,
                      {"remove", QStringLiteral("95 Percent"), selector.FDefault(), selector.FDefault()})
    {
    }

protected:
    void enter(int i, const TIndepVar &variable) override
    {
        rows_[0][i - 1] = QStringLiteral("Undefined");
        rows_[1][i - 1] = variable.Transformation();
    }
    /// The squared t-ratio of the candidate in the model that is fitted at this moment: that of the candidate before
    /// it. The step prints the one that was worked out last, whichever variable it belongs to. Deliberate.
    QString examine(int i) override
    {
        if (rows_[1][i - 1] == u"Undefined")
            return {};
        const int position = nuvo::indexOf(regression(), rows_[2][i - 1]);
        t2_ = position != 0 ? squaredT(position) : 0;
        return QStringLiteral(" t2=") + nuvo::traced(t2_);
    }
    /// How far the mean square rises above that of the model before. In the first pass that is 0, so the statistic is
    /// the candidate's degrees of freedom. Deliberate.
    double statistic(double meanSquare) override { return partialF(meanSquare, previous_); }
    void take(int best) override { removed_.append(rows_[2][best - 1]); }
    QString stepText(int best) const override
    {
        return QStringLiteral("Removing ") + rows_[2][best - 1] + QStringLiteral(":  Partial F = ") +
               FloatToStrFixed(t2_, 8, 4) + u'.';
    }
    int last() const override { return 0; }
    void writeResult() override
    {
        if (regression().GetNumVars() < variables_) {
            run_.write(QStringLiteral("Backward Elimination Removes Variable(s):\n\r\n\r"));
            for (const QString &term : removed_)
                run_.write(QStringLiteral("   ") + term + QStringLiteral("\n\r"));
            return;
        }
        // The one difference between the two forms.
        if (regression().DataSetForm() == TRegression::Form::Query)
            run_.write(QStringLiteral("\n\r"));
        run_.write(QStringLiteral("Full Model."));
    }

private:
    double t2_ = 0;
    QStringList removed_;
};

/// Both forms of the search.
void select(TRegression &component, TBackElimMLR &selector)
{
    const nuvo::SelectionRun::Options options{"backward", selector.ShowProgress(), selector.ShowReport()};
    if (selector.Rule() == TCorvane::Written) {
        nuvo::SelectionRun::perform(selector, component, options,
                                    [&selector](nuvo::SelectionRun &run) { BackwardRun(run, selector).search(); });
        return;
    }
    const nuvo::ChoiceThreshold threshold =
        nuvo::thresholdOf(selector, {"P", selector.P(), selector.FDefault(), QStringLiteral("95 Percent")});
    nuvo::SelectionRun::perform(selector, component, options, [&](nuvo::SelectionRun &run) {
        nuvo::searchAsTextbook(run, selector, nuvo::Choice::Method::Backward, {}, threshold);
    });
}

} // namespace

TBackElimMLR::TBackElimMLR(QWidget *owner) : TPartialFSearch(owner) {}

TBackElimMLR::~TBackElimMLR() = default;

void TBackElimMLR::SetFDefault(double value)
{
    RefuseWhileRunning();
    fDefault_ = std::fabs(value);
}

void TBackElimMLR::SetP(double value)
{
    RefuseWhileRunning();
    p_ = value;
}

void TBackElimMLR::Run()
{
    NeedFree();
    if (TMLRQuery *query = Query())
        BackElimMLRQuery(*query, *this);
    else
        BackElimMLRTable(*Table(), *this);
}

void BackElimMLRTable(TMLRTable &component, TBackElimMLR &selector)
{
    select(component, selector);
}

void BackElimMLRQuery(TMLRQuery &component, TBackElimMLR &selector)
{
    select(component, selector);
}
