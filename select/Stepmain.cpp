// SPDX-License-Identifier: MIT
#include "select/Stepmain.h"

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "select/Modeltools.h"
#include "select/Partialfrun.h"
#include "select/Textbook.h"

#include <cmath>

namespace {

class StepwiseRun : public nuvo::PartialFRun
{
public:
    StepwiseRun(nuvo::SelectionRun &run, const TStepWiseMLR &selector)
        // FOutDefault where a look-up for an entry fails: the default of the other threshold, on purpose.
        : PartialFRun(run, selector, {"add", selector.FPercent(), selector.FInDefault(), selector.FOutDefault()}),
          fOutDefault_(selector.FOutDefault())
    {
    }

protected:
    void enter(int i, const TIndepVar &variable) override
    {
        rows_[0][i - 1] = variable.Transformation();
        rows_[1][i - 1] = QStringLiteral("Undefined");
    }
    double statistic(double meanSquare) override { return statisticOfEntry(meanSquare); }
    double percentage(int i) const override { return double(i) / variables_ * 100; }
    void beginPass() override { nuvo::saveModel(atBegin_, regression()); }
    void endPass() override { nuvo::writeModel(atBegin_, regression()); }
    void take(int best) override
    {
        nuvo::writeControl(regression(), rows_[0], best);
        run_.reload();
    }
    QString stepText(int best) const override { return QStringLiteral("Added Variable ") + rows_[2][best - 1]; }
    void taken() override
    {
        if (regression().GetNumVars() <= 1)
            return;
        if (regression().DataSetForm() == TRegression::Form::Query)
            BackwardQuery(previous_);
        else
            BackwardTable(previous_);
    }
    int last() const override { return variables_; }
    /// The re-check works on all of them, and takes variables out by their term where row 1 counts positions: the two
    /// part, and row 1 alone does not say which model stands.
    int firstOwnDefinition() const override { return 1; }
    void writeResult() override
    {
        run_.elapsed = run_.timeSinceStart();
        writeAdded(QStringLiteral("Stepwise Regression Adds Variable(s):"));
    }

private:
    void BackwardTable(double &previous) { recheck(previous); }
    void BackwardQuery(double &previous) { recheck(previous); }
    void recheck(double &previous);

    const double fOutDefault_;
    TMLRModel atBegin_;
};

/// The re-check: one pass over the variables in the model, with a progress of its own. `previous` becomes the
/// residual mean square of what is left.
void StepwiseRun::recheck(double &previous)
{
    const nuvo::SelectionRun::Inner progress(run_);
    run_.step(QStringLiteral("Checking included variables..."));
    double critical = fOutDefault_;
    run_.reloadAndExecute();
    for (int j = regression().GetNumVars(); j >= 1; --j) {
        run_.beginCandidate();
        const double t2 = squaredT(j);
        lookUp(QStringLiteral("95 Percent"), critical, fOutDefault_);
        const bool removed = t2 < critical;
        qCDebug(nuvo::selectionLog).noquote()
            << QStringLiteral("check pass=%1 position=%2 t2=%3 critical=%4 removed=%5")
                   .arg(QString::number(pass_), QString::number(j), nuvo::traced(t2), nuvo::traced(critical),
                        QString::number(int(removed)));
        if (removed) {
            // The position in the model, though the row counts control variables.
            rows_[1][j - 1] = QStringLiteral("Undefined");
            nuvo::writeControlByIndex(regression(), j, QStringLiteral("Undefined"));
            run_.step(QStringLiteral("Removed ") + regression().GetcVar(j).OutputTerm() + QStringLiteral("."));
            if (run_.reloadAndExecute())
                previous = regression().GetMSE();
        }
        const int variables = regression().GetNumVars();
        run_.progress(double(variables - j) / variables * 100);
    }
}

/// Both forms of the search.
void select(TRegression &component, TStepWiseMLR &selector)
{
    const nuvo::SelectionRun::Options options{"stepwise", selector.ShowProgress(), selector.ShowReport()};
    if (selector.Rule() == TCorvane::Written) {
        nuvo::SelectionRun::perform(selector, component, options,
                                    [&selector](nuvo::SelectionRun &run) { StepwiseRun(run, selector).search(); });
        return;
    }
    const QString column = selector.FPercent().isEmpty() ? QStringLiteral("5 Percent") : selector.FPercent();
    const nuvo::ChoiceThreshold enter =
        nuvo::thresholdOf(selector, {"PIn", selector.PIn(), selector.FInDefault(), column});
    const double pOut = selector.POut() == 0 ? selector.PIn() : selector.POut();
    const nuvo::ChoiceThreshold remove =
        nuvo::thresholdOf(selector, {"POut", pOut, selector.FOutDefault(), QStringLiteral("95 Percent")});
    nuvo::SelectionRun::perform(selector, component, options, [&](nuvo::SelectionRun &run) {
        nuvo::searchAsTextbook(run, selector, nuvo::Choice::Method::Stepwise, enter, remove);
    });
}

} // namespace

TStepWiseMLR::TStepWiseMLR(QWidget *owner) : TPartialFSearch(owner) {}

TStepWiseMLR::~TStepWiseMLR() = default;

void TStepWiseMLR::SetFInDefault(double value)
{
    RefuseWhileRunning();
    fInDefault_ = std::fabs(value);
}

void TStepWiseMLR::SetFOutDefault(double value)
{
    RefuseWhileRunning();
    fOutDefault_ = std::fabs(value);
}

void TStepWiseMLR::SetFPercent(const QString &column)
{
    RefuseWhileRunning();
    fPercent_ = column;
}

void TStepWiseMLR::SetPIn(double value)
{
    RefuseWhileRunning();
    pIn_ = value;
}

void TStepWiseMLR::SetPOut(double value)
{
    RefuseWhileRunning();
    pOut_ = value;
}

bool TStepWiseMLR::SetControl(TTermTable table, int which, int row)
{
    NeedBound();
    if (TMLRQuery *query = Query())
        return SetQueryControl(*query, table, which, row);
    return SetTableControl(*Table(), table, which, row);
}

void TStepWiseMLR::SetControlByIndex(int index, const QString &transformation)
{
    NeedBound();
    if (TMLRQuery *query = Query())
        SetQueryControlByIndex(*query, index, transformation);
    else
        SetTableControlByIndex(*Table(), index, transformation);
}

void TStepWiseMLR::Run()
{
    NeedFree();
    if (TMLRQuery *query = Query())
        ForwardQuery(*query, *this);
    else
        ForwardTable(*Table(), *this);
}

void ForwardTable(TMLRTable &component, TStepWiseMLR &selector)
{
    select(component, selector);
}

void ForwardQuery(TMLRQuery &component, TStepWiseMLR &selector)
{
    select(component, selector);
}
