// SPDX-License-Identifier: MIT
#include "engine/Regressionprivate.h"

#include "platform/Messages.h"

#include <algorithm>
#include <cmath>
#include <limits>

// The figures of a regression: what its accessors show, and the steps by which a client can have them worked out.

namespace {

template <class Fit>
bool isSettled(const Fit &fit)
{
    return std::none_of(fit.due.begin(), fit.due.end(), [](bool due) { return due; });
}

/// What a sum of squares is that is kept times 2^(-2 exponent).
double squared(double value, int exponent)
{
    return exponent == 0 ? value : std::scalbn(value, 2 * exponent);
}

void copyCorner(const nuvo::Fit::Matrix &from, int m, nuvo::Fit::Matrix &to)
{
    for (std::size_t i = 0; i <= std::size_t(m); ++i)
        std::copy_n(from[i].begin(), m + 1, to[i].begin());
}

} // namespace

void TRegression::Private::putOff()
{
    for (Unsettled &one : unsettled) {
        one.due[MeansAndDeviations] = one.due[MeansAndDeviations] && one.fit->m() > m;
        one.due[Matrices] = one.due[Matrices] && one.fit->m() > m;
        one.due[FittedAndResiduals] = one.due[FittedAndResiduals] && one.fit->observations().n() > observed.n();
    }
    std::erase_if(unsettled, isSettled<Unsettled>);
    constexpr std::size_t kMost = 2 * MaxParameters;
    if (unsettled.size() == kMost) {
        for (const Part part : {MeansAndDeviations, FittedAndResiduals, Matrices})
            settle(part);
    }
    due.fill(true);
    unsettled.push_back({due, lastFit});
    q.e_ = q.yHat_ = nullptr;
}

void TRegression::Private::settle(Part part)
{
    due[part] = false;
    for (Unsettled &one : unsettled) {
        if (!std::exchange(one.due[part], false))
            continue;
        const nuvo::Fit &fit = *one.fit;
        switch (part) {
        case MeansAndDeviations: {
            const nuvo::Spread &spread = fit.spread();
            std::copy_n(spread.xBar.begin() + 1, fit.m(), shown->spread.xBar.begin() + 1);
            std::copy_n(spread.xStdErr.begin() + 1, fit.m(), shown->spread.xStdErr.begin() + 1);
            shown->spread.yBar = spread.yBar;
            shown->spread.yStdErr = spread.yStdErr;
            break;
        }
        case FittedAndResiduals:
            std::copy(fit.fitted().begin(), fit.fitted().end(), shown->yHat);
            std::copy(fit.residuals().begin(), fit.residuals().end(), shown->e);
            break;
        case Matrices:
            copyCorner(fit.covariances(), fit.m(), shown->covariance);
            copyCorner(fit.correlations(), fit.m(), shown->correlation);
            break;
        case PartCount:
            break;
        }
    }
    std::erase_if(unsettled, isSettled<Unsettled>);
    if (part == FittedAndResiduals) {
        q.e_ = shown->e;
        q.yHat_ = shown->yHat;
    }
}

/// Means of all records are known as they are; the first ones' are worked out as the step has it.
void TRegression::Private::findMeans(nuvo::Spread &found) const
{
    if (totals)
        found = totals->spread;
    else
        nuvo::findMeans(observed, found);
}

void TRegression::Private::findDeviations(nuvo::Spread &found) const
{
    if (totals)
        found = totals->spread;
    else
        nuvo::findDeviations(observed, found);
}

// Plain accessors.

int TRegression::GetNumObs() const
{
    return int(std::min<qint64>(d->count(), std::numeric_limits<int>::max()));
}

int TRegression::SampleSize() const
{
    return d->observed.n();
}

int TRegression::GetNumVars() const
{
    return d->m;
}

short TRegression::GetDOF() const
{
    return short(std::min<qint64>(d->degreesOfFreedom, std::numeric_limits<short>::max()));
}

qint64 TRegression::DegreesOfFreedom() const
{
    return d->degreesOfFreedom;
}

const TIndepVar &TRegression::GetcVar(int j) const
{
    return d->columns[std::size_t(j - 1)];
}

double TRegression::Getx(int i, int j) const
{
    return d->observed.x(j).values[i - 1];
}

double TRegression::Gety(int i) const
{
    return d->observed.y().values[i - 1];
}

qint64 TRegression::GetRecord(int i) const
{
    return d->observed.record(i);
}

const double *TRegression::Residuals() const
{
    return d->shownAfter(Private::FittedAndResiduals).e;
}

const double *TRegression::Fitted() const
{
    return d->shownAfter(Private::FittedAndResiduals).yHat;
}

double TRegression::Getb(int j) const
{
    return d->lastFit ? d->lastFit->b(j) : 0;
}

double TRegression::GetCovar(int i, int j) const
{
    return d->shownAfter(Private::Matrices).covariance[std::size_t(i)][std::size_t(j)];
}

double TRegression::GetCorr(int i, int j) const
{
    return d->shownAfter(Private::Matrices).correlation[std::size_t(i)][std::size_t(j)];
}

double TRegression::GetStdErr(int j) const
{
    // The variance can be out of range where its root is not.
    if (d->lastFit && !d->lastFit->plain() && j <= d->lastFit->m())
        return d->lastFit->stdErr(j);
    return std::sqrt(GetCovar(j, j));
}

double TRegression::GetTValue(int j) const
{
    return Getb(j) / GetStdErr(j);
}

double TRegression::GetxBar(int j) const
{
    return d->shownAfter(Private::MeansAndDeviations).spread.xBar[std::size_t(j)];
}

double TRegression::GetxStdErr(int j) const
{
    return d->shownAfter(Private::MeansAndDeviations).spread.xStdErr[std::size_t(j)];
}

double TRegression::GetxMax(int j) const
{
    return d->xRange[std::size_t(j)].max;
}

double TRegression::GetxMin(int j) const
{
    return d->xRange[std::size_t(j)].min;
}

double TRegression::GetyBar() const
{
    return d->shownAfter(Private::MeansAndDeviations).spread.yBar;
}

double TRegression::GetyStdErr() const
{
    return d->shownAfter(Private::MeansAndDeviations).spread.yStdErr;
}

double TRegression::GetyMax() const
{
    return d->yRange.max;
}

double TRegression::GetyMin() const
{
    return d->yRange.min;
}

double TRegression::GetMSE() const
{
    return squared(d->mse, d->mseExponent);
}

std::vector<int> TRegression::DependentColumns() const
{
    return d->lastFit ? d->lastFit->dependentColumns() : std::vector<int>();
}

double TRegression::GetDigits(int j) const
{
    return d->lastFit ? d->lastFit->digits(j) : 16;
}

double TRegression::GetDigits() const
{
    return d->lastFit ? d->lastFit->digits() : 16;
}

// The steps, on the observations of the last load and the last coefficients.

void TRegression::ComputeMaxAndMinY()
{
    d->yRange = d->observed.y().range;
}

void TRegression::ComputeMaxAndMinX()
{
    for (int j = 1; j <= d->m; ++j)
        d->xRange[std::size_t(j)] = d->observed.x(j).range;
}

void TRegression::ComputexBar()
{
    if (!d->loaded) {
        const std::weak_ptr<bool> alive = d->alive;
        LoadValues();
        if (alive.expired())
            return;
    }
    nuvo::Spread found;
    d->findMeans(found);
    std::copy_n(found.xBar.begin() + 1, d->observed.m(),
                d->settled(Private::MeansAndDeviations).spread.xBar.begin() + 1);
}

void TRegression::ComputexStdErr()
{
    nuvo::Spread &spread = d->settled(Private::MeansAndDeviations).spread;
    nuvo::Spread found = spread;
    d->findDeviations(found);
    std::copy_n(found.xStdErr.begin() + 1, d->observed.m(), spread.xStdErr.begin() + 1);
}

void TRegression::ComputeyBar()
{
    nuvo::Spread found;
    d->findMeans(found);
    d->settled(Private::MeansAndDeviations).spread.yBar = found.yBar;
}

void TRegression::ComputeyStdErr()
{
    nuvo::Spread &spread = d->settled(Private::MeansAndDeviations).spread;
    nuvo::Spread found = spread;
    d->findDeviations(found);
    spread.yStdErr = found.yStdErr;
}

void TRegression::ComputebVector()
{
    if (d->totals)
        d->lastFit = std::make_shared<const nuvo::Fit>(d->observed.ofColumns(d->m), d->totals->ofColumns(d->m));
    else if (d->m == d->observed.m())
        d->lastFit = std::make_shared<const nuvo::Fit>(d->observed);
    else
        d->lastFit = std::make_shared<const nuvo::Fit>(d->observed.ofColumns(d->m));
    for (int rows = d->lastFit->zeroRows(); rows > 0; --rows)
        MessageDlg(QStringLiteral("Your matrix is singular"), TMsgDlgType::mtError);
}

void TRegression::ComputeyHat()
{
    Private::Shown &shown = d->settled(Private::FittedAndResiduals);
    findFitted(d->observed, d->lastFit ? d->lastFit->b() : nuvo::Fit::Vector(), shown.yHat);
}

void TRegression::ComputeResiduals()
{
    ComputeyHat();
    const double *const y = d->observed.y().values;
    for (int i = 0; i < d->observed.n(); ++i)
        d->shown->e[i] = y[i] - d->shown->yHat[i];
}

void TRegression::ComputeSSE()
{
    d->sse = d->lastFit ? d->lastFit->scaledSse() : 0;
    d->mse = d->sse / double(d->degreesLeft());
    d->mseExponent = d->exponent();
}

void TRegression::ComputeSSR()
{
    d->ssr = d->lastFit ? d->lastFit->scaledSsr() : 0;
}

void TRegression::ComputeCovarMatrix()
{
    nuvo::Fit::Matrix &covariance = d->settled(Private::Matrices).covariance;
    if (d->lastFit)
        findCovariances(*d->lastFit, d->mse, d->m, covariance);
    else
        copyCorner({}, d->m, covariance);
}

void TRegression::ComputeCorrMatrix()
{
    Private::Shown &shown = d->settled(Private::Matrices);
    nuvo::findCorrelations(shown.covariance, d->m, shown.correlation);
}

void TRegression::ComputeSST()
{
    ComputeSSE();
    ComputeSSR();
    d->sst = d->sse + d->ssr;
}

void TRegression::ComputeRSquared()
{
    ComputeSST();
    if (d->sst > 0)
        d->rSquared = d->ssr / d->sst;
}

void TRegression::ComputeSyx()
{
    d->syx = std::scalbn(std::sqrt(d->mse), d->mseExponent);
}

void TRegression::ComputeF()
{
    ComputeSSR();
    ComputeSSE();
    d->f = (d->ssr / d->m) / (d->sse / double(d->degreesLeft()));
}

double TRegression::GetSSR()
{
    ComputeSSR();
    return squared(d->ssr, d->exponent());
}

double TRegression::GetSSE()
{
    ComputeSSE();
    return squared(d->sse, d->exponent());
}

double TRegression::GetSST()
{
    ComputeSST();
    return squared(d->sst, d->exponent());
}

double TRegression::GetSyx()
{
    ComputeSyx();
    return d->syx;
}

double TRegression::GetRSquared()
{
    ComputeRSquared();
    return d->rSquared;
}

double TRegression::GetF()
{
    ComputeF();
    return d->f;
}
