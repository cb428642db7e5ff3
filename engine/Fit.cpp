// SPDX-License-Identifier: MIT
#include "engine/Fit.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace nuvo {

struct Fit::Matrices
{
    Matrix scaledInverse{};
    Matrix scaledCovariances{};
    Matrix covariances{};
    Matrix correlations{};
};

struct Fit::Residuals
{
    std::vector<double> fitted;
    std::vector<double> residuals;
};

namespace {

/// The covariances of the coefficients of the scaled columns.
void findScaledCovariances(const Fit::Matrix &inverse, double mse, int m, Fit::Matrix &covariances)
{
    for (std::size_t i = 0; i <= std::size_t(m); ++i) {
        for (std::size_t j = 0; j <= std::size_t(m); ++j)
            covariances[i][j] = inverse[i][j] * mse;
    }
}

void unscale(const Sums &sums, int m, Fit::Matrix &covariances)
{
    if (sums.plain())
        return;
    const int response = sums.exponents[std::size_t(sums.m) + 1];
    for (std::size_t i = 0; i <= std::size_t(m); ++i) {
        for (std::size_t j = 0; j <= std::size_t(m); ++j)
            covariances[i][j] = std::scalbn(covariances[i][j], 2 * response - sums.exponents[i] - sums.exponents[j]);
    }
}

/// What a length of column j is multiplied by, a power of two, to have it of the column as the sums have it.
int unitOf(const Factors &factors, const Sums &sums, std::size_t j)
{
    return factors.exponent[j] - sums.exponents[j];
}

/// (X'X)^-1, of columns as the sums have them.
void findInverse(const Factors &factors, const Sums &sums, Fit::Matrix &inverse)
{
    const std::size_t p = std::size_t(sums.m) + 1;
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t j = 0; j <= i; ++j) {
            DoubleDouble element;
            for (std::size_t k = i; k < p; ++k)
                element += factors.inverseRoot[k][i] * factors.inverseRoot[k][j];
            inverse[i][j] = inverse[j][i] =
                std::scalbn(element.hi, -(unitOf(factors, sums, i) + unitOf(factors, sums, j)));
        }
    }
}

/// Whether every value is a whole number that doubles hold exactly, as if it had been counted.
bool isWhole(const ObservedColumn &column, int n)
{
    return column.range.largest() <= 0x1p53 &&
           std::all_of(column.values, column.values + n, [](double value) { return value == std::nearbyint(value); });
}

} // namespace

Fit::Fit(const Observations &observations) : observations_(observations)
{
    const Sums sums = sumsOf(observations_);
    solve(sums);
    if (!plain_ || observations_.keptProducts() == nullptr)
        sums_ = std::make_unique<const Sums>(sums);
}

Fit::Fit(Observations sample, const Sums &sums)
    : observations_(std::move(sample)), sums_(std::make_unique<const Sums>(sums))
{
    solve(*sums_);
}

Fit::Fit(Observations sample, const RecordTotals &totals) : Fit(std::move(sample), totals.sums)
{
    spread_ = std::make_unique<Spread>(totals.spread);
}

Fit::~Fit() = default;

const Sums &Fit::sums() const
{
    if (!sums_)
        sums_ = std::make_unique<const Sums>(sumsOf(observations_));
    return *sums_;
}

void Fit::solve(const Sums &sums)
{
    n_ = sums.n;
    m_ = sums.m;
    plain_ = sums.plain();
    exponents_ = sums.exponents;
    coefficients_ = solveCoefficients(sums.products, m_);
    if (observations_.hasLowParts() && n_ == observations_.n())
        correct(sums);
    b_ = coefficients_.b;
    if (plain_)
        return;
    for (std::size_t j = 0; j <= std::size_t(m_); ++j)
        b_[j] = std::scalbn(b_[j], responseExponent() - exponents_[j]);
}

void Fit::correct(const Sums &sums)
{
    auto factors =
        std::make_unique<const Factors>(factorize(sums.products, columnsOf(observations_), sums.exponents));
    if (factors->rank() != m_ + 1 || !(factors->sse.hi >= 0))
        return;
    for (std::size_t j = 0; j <= std::size_t(m_); ++j)
        coefficients_.b[j] = std::scalbn(factors->coefficients[j].hi,
                                         unitOf(*factors, sums, responseNumber()) - unitOf(*factors, sums, j));
    // Of an exact fit the factors say no more than that it is one.
    if (!factors->exact) {
        DoubleDouble explained;
        for (std::size_t k = 1; k <= std::size_t(m_); ++k)
            explained += factors->projected[k] * factors->projected[k];
        const int unit = 2 * unitOf(*factors, sums, responseNumber());
        coefficients_.ssr = std::scalbn(explained.hi, unit);
        coefficients_.sse = std::scalbn(factors->sse.hi, unit);
    }
    factors_ = std::move(factors);
}

double Fit::squares(double value) const
{
    return responseExponent() == 0 ? value : std::scalbn(value, 2 * responseExponent());
}

double Fit::syx() const
{
    return std::scalbn(std::sqrt(scaledMse()), responseExponent());
}

std::optional<double> Fit::rSquared() const
{
    const double total = coefficients_.sse + coefficients_.ssr;
    if (total > 0)
        return coefficients_.ssr / total;
    return {};
}

double Fit::f() const
{
    return (coefficients_.ssr / m_) / scaledMse();
}

const Fit::Matrices &Fit::matrices() const
{
    if (!matrices_) {
        matrices_ = std::make_unique<Matrices>();
        const int m = m_;
        if (factors_)
            findInverse(*factors_, sums(), matrices_->scaledInverse);
        else
            matrices_->scaledInverse = solveNormalEquations(sums().products, m).inverse;
        findScaledCovariances(matrices_->scaledInverse, scaledMse(), m, matrices_->scaledCovariances);
        findCorrelations(matrices_->scaledCovariances, m, matrices_->correlations);
        matrices_->covariances = matrices_->scaledCovariances;
        unscale(sums(), m, matrices_->covariances);
    }
    return *matrices_;
}

const Fit::Matrix &Fit::scaledInverse() const
{
    return matrices().scaledInverse;
}

const Fit::Matrix &Fit::covariances() const
{
    return matrices().covariances;
}

const Fit::Matrix &Fit::correlations() const
{
    return matrices().correlations;
}

double Fit::stdErr(int j) const
{
    const std::size_t at = std::size_t(j);
    const double root = std::sqrt(matrices().scaledCovariances[at][at]);
    return std::scalbn(root, responseExponent() - exponents_[at]);
}

const Spread &Fit::spread() const
{
    if (!spread_) {
        spread_ = std::make_unique<Spread>();
        findMeans(observations_, *spread_);
        findDeviations(observations_, *spread_);
    }
    return *spread_;
}

const Fit::Residuals &Fit::settledResiduals() const
{
    if (!residuals_) {
        residuals_ = std::make_unique<Residuals>();
        const std::size_t n = std::size_t(observations_.n());
        residuals_->fitted.resize(n);
        residuals_->residuals.resize(n);
        if (factors_ && !factors_->exact) {
            const Observed observed = observe(*factors_, columnsOf(observations_));
            const int unit = factors_->exponent[responseNumber()];
            for (std::size_t i = 0; i < n; ++i) {
                residuals_->residuals[i] = std::scalbn(observed.residual[i], unit);
                residuals_->fitted[i] = observations_.y().values[i] - residuals_->residuals[i];
            }
            return *residuals_;
        }
        findFitted(observations_, b_, residuals_->fitted.data());
        for (std::size_t i = 0; i < n; ++i)
            residuals_->residuals[i] = observations_.y().values[i] - residuals_->fitted[i];
    }
    return *residuals_;
}

const std::vector<double> &Fit::fitted() const
{
    return settledResiduals().fitted;
}

const std::vector<double> &Fit::residuals() const
{
    return settledResiduals().residuals;
}

const std::vector<int> &Fit::dependentColumns() const
{
    if (!dependent_)
        dependent_ = nuvo::dependentColumns(sums().products, m_);
    return *dependent_;
}

Fit::Vector Fit::findDigits() const
{
    constexpr double most = 16;
    const std::size_t m = std::size_t(m_);
    // All of it on the scaled columns, where every square is in range.
    const auto size = [&](const ObservedColumn &column, std::size_t number) {
        return std::scalbn(column.range.largest(), -exponents_[number]);
    };
    // The root mean square of what rounding does to values as large as these.
    const auto rounding = [&](const ObservedColumn &column, std::size_t number) {
        return isWhole(column, observations_.n()) ? 0 : size(column, number) * 0x1p-54;
    };
    const Matrix &inverse = scaledInverse();
    const Vector &b = coefficients_.b;
    Vector moved{};
    const double response = rounding(observations_.y(), m + 1);
    double moves = response * response; // of the response and, by the coefficients, of the columns
    for (std::size_t k = 1; k <= m; ++k) {
        moved[k] = rounding(observations_.x(int(k)), k);
        moves += b[k] * b[k] * moved[k] * moved[k];
    }
    const double deviation = std::scalbn(spread().yStdErr, -exponents_[m + 1]);
    Vector result{};
    for (std::size_t j = 0; j <= m; ++j) {
        double variance = inverse[j][j] * moves;
        for (std::size_t k = 1; k <= m; ++k)
            variance += coefficients_.sse * inverse[j][k] * inverse[j][k] * moved[k] * moved[k];
        const double across = j == 0 ? 1 : std::scalbn(spread().xStdErr[j], -exponents_[j]);
        const double relative = std::sqrt(variance) / std::fmax(std::fabs(b[j]), deviation / across);
        result[j] = relative == 0 ? most : std::isfinite(relative) ? std::clamp(-std::log10(relative), 0.0, most) : 0;
    }
    return result;
}

double Fit::digits(int j) const
{
    if (!digits_)
        digits_ = std::make_unique<const Vector>(findDigits());
    return (*digits_)[std::size_t(j)];
}

double Fit::digits() const
{
    if (!dependentColumns().empty())
        return 0;
    double least = digits(0);
    for (int j = 1; j <= m_; ++j)
        least = std::min(least, digits(j));
    return least;
}

void findCovariances(const Fit &fit, double scaledMse, int m, Fit::Matrix &covariances)
{
    findScaledCovariances(fit.scaledInverse(), scaledMse, m, covariances);
    unscale(fit.sums(), m, covariances);
}

void findCorrelations(const Fit::Matrix &covariances, int m, Fit::Matrix &correlations)
{
    for (std::size_t i = 0; i <= std::size_t(m); ++i) {
        for (std::size_t j = 0; j <= std::size_t(m); ++j) {
            const double product = covariances[i][i] * covariances[j][j];
            correlations[i][j] = std::isnormal(product) ? covariances[i][j] / std::sqrt(product)
                                                        : covariances[i][j] / std::sqrt(covariances[i][i]) /
                                                              std::sqrt(covariances[j][j]);
        }
    }
}

} // namespace nuvo
