// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Observations.h"
#include "engine/Sums.h"
#include "engine/kernel/Export.h"
#include "engine/kernel/Factors.h"
#include "engine/kernel/Normalequations.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace nuvo {

/// A least-squares fit of the response on the constant and m control variables: a value that does not change. The
/// coefficients and the sums of squares are there at once; means, deviations, residuals and matrices are worked out
/// when they are first asked for. Coefficients are indexed from 0, the constant, to m; observations from 1.
///
/// Figures that are quotients (R2, F, t, correlations) and roots are right also where the squares that they stand on
/// leave the range of doubles, in which case these are infinite or 0 themselves. Where columns have low parts
/// (engine/kernel/Lowparts.h) all but means and deviations is of the values with these. Nothing raises: without
/// degrees of freedom the divisions by zero take their course. Not to be used from several threads at once.
class NUVO_KERNEL_EXPORT Fit
{
public:
    using Vector = std::array<double, MaxParameters>;
    using Matrix = NormalEquations::Matrix;

    /// Of these observations; n <= m + 1 and columns that depend on others are no error.
    explicit Fit(const Observations &observations);
    /// From sums over more records than the observations, which are a sample of them.
    Fit(Observations sample, const Sums &sums);
    /// The same with the spread of these records; the ranges of the sample's columns are to be theirs.
    Fit(Observations sample, const RecordTotals &totals);
    ~Fit();
    Fit(const Fit &) = delete;
    Fit &operator=(const Fit &) = delete;

    /// What the residuals are of.
    const Observations &observations() const { return observations_; }
    /// The cross products that the coefficients are from.
    const Sums &sums() const;

    /// Observations behind the sums.
    std::int64_t n() const { return n_; }
    /// Control variables.
    int m() const { return m_; }
    /// n - (m + 1), also where that is not positive.
    std::int64_t degreesOfFreedom() const { return n_ - (m_ + 1); }

    /// The coefficients, the constant at 0.
    const Vector &b() const { return b_; }
    /// Coefficient j, 0 to m.
    double b(int j) const { return b_[std::size_t(j)]; }
    /// Rows of X'X that are all 0.
    int zeroRows() const { return coefficients_.zeroRows; }

    /// y'y - b'X'y
    double sse() const { return squares(coefficients_.sse); }
    /// b'X'y - (sum of y)^2 / n
    double ssr() const { return squares(coefficients_.ssr); }
    /// SSE + SSR
    double sst() const { return squares(coefficients_.sse + coefficients_.ssr); }
    /// SSE / (n - (m + 1))
    double mse() const { return squares(scaledMse()); }
    /// The square root of MSE.
    double syx() const;
    /// SSR / SST; empty where SST is not above 0.
    std::optional<double> rSquared() const;
    /// (SSR / m) / MSE
    double f() const;

    /// SSE, SSR and MSE are these times 2^(2 responseExponent()), which can be out of range.
    double scaledSse() const { return coefficients_.sse; }
    double scaledSsr() const { return coefficients_.ssr; }
    double scaledMse() const { return coefficients_.sse / double(degreesOfFreedom()); }
    int responseExponent() const { return exponents_[responseNumber()]; }
    /// Whether no column is kept as a multiple, Sums::plain().
    bool plain() const { return plain_; }

    /// (X'X)^-1; of sums that are scaled it is that of these: element (i, j) times 2^(e(i) + e(j)).
    const Matrix &scaledInverse() const;
    /// MSE (X'X)^-1
    const Matrix &covariances() const;
    /// Correlations of the coefficients, as findCorrelations() has them.
    const Matrix &correlations() const;
    /// The square root of the coefficient's variance.
    double stdErr(int j) const;
    /// b(j) / stdErr(j)
    double tValue(int j) const { return b(j) / stdErr(j); }

    /// Of the observations, or of the records that totals are of.
    const Spread &spread() const;
    /// Fitted values and residuals y - fitted, of observation i at i - 1.
    const std::vector<double> &fitted() const;
    /// Of observation i at i - 1.
    const std::vector<double> &residuals() const;

    /// The orthogonal form that coefficients, sums of squares and matrices are from where columns have low parts and
    /// none depends on others: powers of a column come near to that, and with its step of correction this form keeps
    /// the digits that low parts add. Null for all other fits.
    const Factors *factors() const { return factors_.get(); }

    /// As nuvo::dependentColumns().
    const std::vector<int> &dependentColumns() const;

    /// How many decimal digits of a coefficient the data determine, 0 to 16: an estimate, from how far the
    /// coefficient moves when every value moves as far as rounding it to a double has moved it, by first-order
    /// perturbation. With A = (X'X)^-1 and d(k) the rounding of column k, d(y) of the response, its variance is
    ///     A(j, j) (d(y)^2 + sum of b(k)^2 d(k)^2) + SSE sum of A(j, k)^2 d(k)^2,
    /// relative to the larger of |b(j)| and the response's deviation over the column's. Columns of whole numbers that
    /// doubles hold exactly count as not rounded.
    double digits(int j) const;
    /// The least of them, the constant included; 0 where columns depend on others.
    double digits() const;

private:
    struct Matrices;
    struct Residuals;

    std::size_t responseNumber() const { return std::size_t(m_) + 1; }
    void solve(const Sums &sums);
    void correct(const Sums &sums);
    Vector findDigits() const;
    double squares(double value) const;
    const Matrices &matrices() const;
    const Residuals &settledResiduals() const;

    Observations observations_;
    std::int64_t n_ = 0;
    int m_ = 0;
    bool plain_ = true;
    std::array<int, MaxParameters + 1> exponents_{}; ///< of the sums
    Coefficients coefficients_;                      ///< of the sums, scaled as these are
    std::unique_ptr<const Factors> factors_;
    Vector b_;
    // A choice among models makes thousands of fits and asks most of them for no more: they stay small.
    mutable std::unique_ptr<const Sums> sums_; ///< null where the observations keep the cross products
    mutable std::unique_ptr<Matrices> matrices_;
    mutable std::unique_ptr<Spread> spread_;
    mutable std::unique_ptr<Residuals> residuals_;
    mutable std::optional<std::vector<int>> dependent_;
    mutable std::unique_ptr<const Vector> digits_;
};

/// MSE (X'X)^-1 for another mean square error, scaled like the fit's, as far as column m.
NUVO_KERNEL_EXPORT void findCovariances(const Fit &fit, double scaledMse, int m, Fit::Matrix &covariances);
/// corr(i, j) = covar(i, j) / (covar(i, i) covar(j, j))^1/2, as far as column m; roots are taken before the product
/// where that leaves the range of doubles.
NUVO_KERNEL_EXPORT void findCorrelations(const Fit::Matrix &covariances, int m, Fit::Matrix &correlations);

} // namespace nuvo
