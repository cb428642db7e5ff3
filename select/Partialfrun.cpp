// SPDX-License-Identifier: MIT
#include "select/Partialfrun.h"

#include "platform/Errors.h"
#include "select/Modeltools.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <initializer_list>
#include <utility>

namespace nuvo {

namespace {

/// The result of a written expression, or 0 where its arithmetic fails. Nothing raises here: a division by zero, an
/// invalid operation or an overflow shows in the result, which is not a number, or infinite although no operand was.
double orZero(double result, std::initializer_list<double> operands)
{
    if (std::isfinite(result))
        return result;
    const bool carried = std::any_of(operands.begin(), operands.end(), [](double x) { return std::isinf(x); });
    return carried && !std::isnan(result) ? result : 0;
}

} // namespace

PartialFRun::PartialFRun(SelectionRun &run, const TPartialFSearch &selector, Rules rules)
    : run_(run), rules_(std::move(rules)), table_(selector.FDistTable()), hasTable_(!table_.isNull()),
      endsRepeating_(selector.endsRepeating_)
{
}

PartialFRun::~PartialFRun() = default;

void PartialFRun::search()
{
    variables_ = regression().GetNumVars();
    run_.start(variables_);
    for (int i = 1; i <= variables_; ++i) {
        const TIndepVar &variable = regression().GetcVar(i);
        rows_[2][i - 1] = variable.OutputTerm();
        enter(i, variable);
    }
    writeControls(regression(), rows_[1], variables_);
    run_.reload();

    do {
        if (cameBack()) {
            run_.ended = TRunEnd::Repeats;
            break;
        }
        pass();
        decide();
        // Not below the critical value: with the two equal, nothing is taken and the search goes on all the same.
    } while (!(statistic_ < critical_) && regression().GetNumVars() != last());

    writeControls(regression(), rows_[1], variables_);
    run_.reload();
    run_.reloadAndExecute();
    run_.closeProgress();
    run_.passes = pass_;
    run_.elapsed = run_.processedTime();
    writeResult();
}

/// All that a pass depends on: the model, its mean square, the definitions that stand as the pass before left them,
/// and the record at which a search for a key that is not there leaves the table.
PartialFRun::State PartialFRun::state() const
{
    TTermRow definitions;
    for (int k = firstOwnDefinition(); k <= MaxControls; ++k)
        definitions[k - 1] = run_.regression().ControlVar(k).Transformation();
    const qint64 record = table_ && table_->Active() ? table_->RecNo() : -1;
    return {rows_[1], definitions, std::bit_cast<quint64>(previous_), record};
}

/// Whether the search would go round for ever: from here on it would do what it did before.
bool PartialFRun::cameBack()
{
    return endsRepeating_ && !states_.insert(state()).second;
}

void PartialFRun::pass()
{
    run_.passes = ++pass_;
    minimum_ = 1.0e50;
    statistic_ = 0;
    critical_ = rules_.critical;
    best_ = 0;
    beginPass();
    for (int i = 1; i <= variables_; ++i) {
        run_.beginCandidate();
        candidate(i);
        run_.progress(percentage(i));
    }
    endPass();
}

void PartialFRun::candidate(int i)
{
    const QString examined = examine(i);
    for (int k = 1; k <= variables_; ++k)
        regression().ControlVar(k).SetTransformation(rows_[intmin(std::abs(i - k), 1)][k - 1]);
    const bool loaded = run_.reloadAndExecute();
    double meanSquare = 0;
    bool best = false;
    if (loaded) {
        lookUp(rules_.column, critical_, rules_.lookUpFailed);
        meanSquare = regression().GetMSE();
        best = meanSquare < minimum_;
        if (best) {
            statistic_ = statistic(meanSquare);
            minimum_ = meanSquare;
            best_ = i;
        }
        run_.writeHead();
    }
    if (selectionLog().isDebugEnabled())
        traceCandidate(i, examined, meanSquare, loaded, best);
}

void PartialFRun::decide()
{
    const bool takes = statistic_ > critical_ && best_ != 0;
    qCDebug(selectionLog).noquote()
        << QStringLiteral("decision pass=%1 %2 f=%3 critical=%4")
               .arg(QString::number(pass_),
                    takes ? QStringLiteral("%1=%2").arg(QLatin1String(rules_.takes)).arg(best_)
                          : QStringLiteral("none"),
                    traced(statistic_), traced(critical_));
    if (!takes)
        return;
    take(best_);
    rows_[1][best_ - 1] = rows_[0][best_ - 1];
    run_.step(stepText(best_));
    previous_ = minimum_;
    taken();
}

void PartialFRun::traceCandidate(int i, const QString &examined, double meanSquare, bool loaded, bool best)
{
    QString line = QStringLiteral("candidate pass=%1 number=%2%3 loaded=%4 controls=%5")
                       .arg(pass_)
                       .arg(i)
                       .arg(examined)
                       .arg(int(loaded))
                       .arg(regression().GetNumVars());
    if (loaded)
        line += QStringLiteral(" dof=%1 ms=%2 critical=%3 best=%4")
                    .arg(QString::number(regression().DegreesOfFreedom()), traced(meanSquare), traced(critical_),
                         QString::number(int(best)));
    if (best)
        line += QStringLiteral(" f=") + traced(statistic_);
    qCDebug(selectionLog).noquote() << line;
}

QString PartialFRun::examine(int)
{
    return {};
}

/// Rounded to the nearest whole number, ties to even.
double PartialFRun::percentage(int i) const
{
    return std::nearbyint(double(i) / variables_ * 100);
}

void PartialFRun::lookUp(const QString &column, double &critical, double failed)
{
    if (!hasTable_)
        return;
    if (table_.isNull())
        throw EDatabaseError(QStringLiteral("The table of F values went away while a model was being chosen."));
    try {
        // Whether the key is there is not asked: the value of whatever record is current counts.
        table_->FindKey({1, regression().DegreesOfFreedom()});
        run_.check();
        critical = table_->FieldByName(column).AsFloat();
    } catch (const EPlatformError &) {
        critical = failed;
    }
    run_.check();
}

double PartialFRun::partialF(double before, double after)
{
    if (regression().DegreesOfFreedom() == 0)
        return 0;
    const double unit = regression().GetMSE() / double(regression().DegreesOfFreedom());
    return orZero((before - after) / unit, {before, after});
}

double PartialFRun::statisticOfEntry(double meanSquare)
{
    if (regression().GetNumVars() == 1)
        return regression().GetF(); // infinite for an exact fit, as everywhere
    return partialF(previous_, meanSquare);
}

double PartialFRun::squaredT(int j)
{
    const double b = regression().Getb(j);
    const double variance = regression().GetCovar(j, j);
    const double t = b / std::sqrt(variance);
    return orZero(t * t, {b, variance});
}

void PartialFRun::writeAdded(const QString &title)
{
    const int added = regression().GetNumVars();
    if (added != 0) {
        run_.write(title + QStringLiteral("\n\r\n\r"));
        for (int j = 1; j <= added; ++j)
            run_.write(QStringLiteral("   ") + regression().GetcVar(j).OutputTerm() + QStringLiteral("\n\r"));
    }
    if (added == variables_)
        run_.write(QStringLiteral("Full Model."));
}

} // namespace nuvo
