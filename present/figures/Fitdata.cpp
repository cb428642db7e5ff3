// SPDX-License-Identifier: MIT
#include "present/figures/Fitdata.h"

#include "engine/Fitfigures.h"
#include "engine/Regression.h"
#include "engine/kernel/Distributions.h"

#include <cmath>
#include <limits>

namespace nuvo {

namespace {

/// The residuals of column j on the other columns: column j of X (X'X)^-1 = Q R^-T over element j, j of (X'X)^-1.
std::vector<double> residualsOnOthers(const Factors &factors, const Observed &observed, int column)
{
    std::vector<double> residuals(std::size_t(observed.n), std::numeric_limits<double>::quiet_NaN());
    const int place = factors.place[std::size_t(column)];
    if (place < 0)
        return residuals;
    const double diagonal = factors.inverseDiagonal(place).hi;
    for (std::size_t i = 0; i < residuals.size(); ++i) {
        double sum = 0;
        for (int k = place; k < factors.rank(); ++k)
            sum += observed.q[std::size_t(k)][i] * factors.inverseRoot[std::size_t(k)][std::size_t(place)].hi;
        residuals[i] = factors.unscaled(sum / diagonal, column);
    }
    return residuals;
}

} // namespace

FigureData figureData(TRegression &regression, double level)
{
    FigureData data;
    const std::shared_ptr<const Fit> fit = regression.CurrentFit();
    if (!fit || fit->observations().n() == 0)
        return data;
    const Observations &observations = fit->observations();
    const std::shared_ptr<const FitFigures> kept = regression.Figures();
    const FitFigures &figures = *kept;
    const ObservedColumns columns = columnsOf(observations);
    const Observed observed = observe(figures.factors(), columns);
    const Influence &influence = figures.influence();

    data.response = regression.ResponseVarY().OutputTerm();
    data.y.assign(columns.y, columns.y + columns.n);
    data.fitted = fit->fitted();
    data.residuals = fit->residuals();
    for (int j = 1; j <= columns.m; ++j) {
        const double *values = columns.x[std::size_t(j)];
        data.terms += regression.GetcVar(j).OutputTerm();
        data.x.emplace_back(values, values + columns.n);
        data.partial.push_back(residualsOnOthers(figures.factors(), observed, j));
    }
    for (int i = 1; i <= columns.n; ++i)
        data.records.push_back(observations.record(i));
    data.leverage = influence.leverage;
    data.standardized = influence.standardizedResiduals;
    data.studentized = influence.studentizedResiduals;
    data.cook = influence.cook;
    data.coefficients = figures.inference().coefficients;
    data.standardErrors = figures.inference().standardErrors;
    data.s = fit->degreesOfFreedom() > 0 ? fit->syx() : std::numeric_limits<double>::quiet_NaN();
    data.level = level;
    data.quantile = studentQuantile(level, double(fit->degreesOfFreedom()));
    return data;
}

} // namespace nuvo
