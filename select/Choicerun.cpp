// SPDX-License-Identifier: MIT
#include "select/Choicerun.h"

#include "engine/Sums.h"
#include "engine/kernel/Subsetsums.h"
#include "platform/Dataset.h"
#include "platform/Errors.h"

#include <cmath>
#include <memory>
#include <vector>

namespace nuvo {

namespace {

bool varies(double min, double max)
{
    return !(std::fabs(max - min) < ZeroTolerance);
}

/// The sums without the columns that a load counts as not varying: a column of zeros depends on the constant.
CrossProducts productsOf(const Sums &sums, const TRegression &regression)
{
    CrossProducts products = sums.products;
    for (int j = 1; j <= sums.m; ++j) {
        if (varies(regression.GetxMin(j), regression.GetxMax(j)))
            continue;
        for (std::size_t i = 0; i < std::size_t(sums.m) + 2; ++i)
            products[i][std::size_t(j)] = products[std::size_t(j)][i] = 0;
    }
    return products;
}

std::vector<int> numbersOf(ControlSet set, int count)
{
    std::vector<int> numbers;
    for (int j = 1; j <= count; ++j) {
        if (set & (ControlSet(1) << (j - 1)))
            numbers.push_back(j);
    }
    return numbers;
}

void write(TRegression &regression, const Choice::Transformations &transformations)
{
    for (int k = 1; k <= MaxControls; ++k)
        regression.ControlVar(k).SetTransformation(transformations[std::size_t(k - 1)]);
}

} // namespace

ChoiceRun::~ChoiceRun() = default;

void ChoiceRun::search()
{
    run_.beginCandidate();
    // Whoever is told of the load can change the definitions.
    takeDefinitions();
    const bool loaded = run_.reload();
    describe();
    run_.start(choice_.count());
    const bool chosen = compare();
    const QStringList told = steps();
    run_.passes = int(told.size());
    for (qsizetype i = 0; i < told.size(); ++i) {
        run_.beginCandidate();
        run_.step(told[i]);
        run_.progress(double(i + 1) / double(told.size()) * 100);
    }
    run_.beginCandidate();
    if (chosen)
        leave(choice_.selected);
    else if (loaded)
        run_.execute();
    run_.closeProgress();
    choice_.processingTime = run_.timeSinceStart();
    run_.choice = std::make_shared<const Choice>(std::move(choice_));
}

void ChoiceRun::takeDefinitions()
{
    TRegression &regression = run_.regression();
    choice_.dataset = regression.DataSourceName();
    choice_.description = regression.Description();
    choice_.response = regression.ResponseVarY().OutputTerm();
    for (int k = 1; k <= MaxControls; ++k) {
        choice_.transformations[std::size_t(k - 1)] = regression.ControlVar(k).Transformation();
        if (regression.ControlVar(k).Transformation() != u"Undefined")
            choice_.positions.push_back(k);
    }
}

void ChoiceRun::describe()
{
    const TRegression &regression = run_.regression();
    for (int j = 1; j <= regression.GetNumVars(); ++j)
        choice_.controls.append(regression.GetcVar(j).OutputTerm());
    choice_.observations = regression.RecordsUsed();
    choice_.recordsRead = regression.RecordsUsed() + regression.RecordsSkipped();
    if (choice_.skipped() > 0)
        choice_.leftOut = run_.leftOut();
}

bool ChoiceRun::compare()
{
    const TRegression &regression = run_.regression();
    if (choice_.observations == 0) {
        choice_.end = Choice::End::NoRecords;
        return false;
    }
    if (!varies(regression.GetyMin(), regression.GetyMax())) {
        choice_.end = Choice::End::ResponseFixed;
        return false;
    }
    const Sums shared = run_.sums();
    exponent_ = shared.exponents[std::size_t(shared.m) + 1];
    const SubsetSums sums(productsOf(shared, regression), shared.m);
    choice_.total = std::scalbn(sums.total().hi, 2 * exponent_);
    if (choose(sums))
        return true;
    choice_.end = Choice::End::NoBestModel;
    return false;
}

void ChoiceRun::leave(ControlSet model)
{
    write(run_.regression(), choice_.transformationsOf(model));
    if (run_.keepColumns(numbersOf(model, choice_.count())))
        run_.execute();
}

void applyChoice(TRegression &regression, Choice &choice, ControlSet model, int index)
{
    TRegression::Series series(regression);
    try {
        write(regression, choice.transformations);
        series.ReLoad();
        if (!series.Alive())
            return;
        QStringList terms;
        for (int j = 1; j <= regression.GetNumVars(); ++j)
            terms.append(regression.GetcVar(j).OutputTerm());
        if (terms != choice.controls || regression.ResponseVarY().OutputTerm() != choice.response)
            throw EDatabaseError(
                QStringLiteral(
                    "The variables of %1 are not those of the choice any more; let a model be chosen anew.")
                    .arg(regression.DataSet().Caption()));
        if (regression.RecordsUsed() != choice.observations)
            throw EDatabaseError(
                QStringLiteral("The variables of %1 have %2 observations in common, where the choice "
                               "had %3; let a model be chosen anew.")
                    .arg(regression.DataSet().Caption())
                    .arg(regression.RecordsUsed())
                    .arg(choice.observations));
        write(regression, choice.transformationsOf(model));
        if (series.KeepColumns(numbersOf(model, choice.count())))
            series.Execute();
    } catch (...) {
        series.Restore();
        throw;
    }
    choice.selected = model;
    choice.applied = index;
}

} // namespace nuvo
