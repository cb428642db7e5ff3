// SPDX-License-Identifier: MIT
#include "select/Subsetrun.h"

#include "engine/Observations.h"
#include "select/Choicepage.h"

#include "present/Significant.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace nuvo {

namespace {

Choice toldOf(SubsetCriterion criterion, int perSize)
{
    Choice told;
    told.method = Choice::Method::Optimal;
    told.criterion = criterion;
    told.perSize = perSize;
    return told;
}

/// The columns in order, the response last, as the sums have them: out of the ordinary ones times 2^-exponent.
class Columns
{
public:
    explicit Columns(const Observations &observations)
    {
        for (int j = 1; j <= observations.m(); ++j)
            add(observations.x(j), observations.n());
        add(observations.y(), observations.n());
    }
    std::span<const double *const> pointers() const { return pointers_; }

private:
    void add(const ObservedColumn &column, int n)
    {
        const int exponent = scaleOf(column);
        if (exponent == 0) {
            pointers_.push_back(column.values);
            return;
        }
        std::vector<double> &multiples = multiples_.emplace_back(column.values, column.values + n);
        for (double &value : multiples)
            value = std::scalbn(value, -exponent);
        pointers_.push_back(multiples.data());
    }

    std::vector<const double *> pointers_;
    std::vector<std::vector<double>> multiples_;
};

/// The figures of a response that was kept times 2^-exponent.
void rescale(SubsetFigures &figures, int exponent, double observations)
{
    figures.sse = std::scalbn(figures.sse, 2 * exponent);
    figures.sSquared = std::scalbn(figures.sSquared, 2 * exponent);
    figures.press = std::scalbn(figures.press, 2 * exponent);
    const double shift = observations * 2 * exponent * std::numbers::ln2;
    figures.aic += shift;
    figures.bic += shift;
}

} // namespace

SubsetRun::SubsetRun(SelectionRun &run, SubsetCriterion criterion, int perSize)
    : ChoiceRun(run, toldOf(criterion, perSize))
{
}

bool SubsetRun::choose(const SubsetSums &sums)
{
    SubsetChoice &subsets = choice_.subsets;
    const Columns columns(run_.observed());
    // PRESS needs every observation behind the sums.
    const bool all = run_.observed().n() == choice_.observations;
    subsets = chooseSubsets(sums, choice_.perSize, choice_.criterion,
                            all ? columns.pointers() : std::span<const double *const>());
    if (exponent_ != 0) {
        for (SubsetFigures &model : subsets.bySize)
            rescale(model, exponent_, double(choice_.observations));
        if (subsets.best)
            rescale(*subsets.best, exponent_, double(choice_.observations));
    }
    if (!subsets.best)
        return false;
    choice_.selected = subsets.best->controls;
    return true;
}

QStringList SubsetRun::steps() const
{
    QStringList texts;
    int size = 0;
    for (const SubsetFigures &model : choice_.subsets.bySize) {
        if (std::exchange(size, model.size) == model.size)
            continue;
        texts += QStringLiteral("%1 of %2: %3, %4 = %5.")
                     .arg(QString::number(model.size), QString::number(choice_.count()),
                          choice_.terms(model.controls).join(QStringLiteral(", ")), criterionName(choice_.criterion),
                          significant(criterionOf(model, choice_.criterion), 6));
    }
    return texts;
}

std::vector<TMLRModel> listedModels(const Choice &choice)
{
    std::vector<TMLRModel> models;
    for (const SubsetFigures &figures : choice.subsets.bySize) {
        TMLRModel &model = models.emplace_back();
        model.Transformations = choice.transformationsOf(figures.controls);
        model.F = figures.f;
        model.RSquared = figures.rSquared;
        model.SSquared = figures.sSquared;
    }
    return models;
}

} // namespace nuvo
