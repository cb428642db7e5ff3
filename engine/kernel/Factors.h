// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Crossproducts.h"
#include "engine/kernel/Maxdata.h"

#include <array>
#include <cstdint>
#include <vector>

namespace nuvo {

/// The observations of a fit by columns, n values each. Column j of 1 to m stands at j; 0 is the constant and not
/// used.
struct ObservedColumns
{
    int n = 0;
    int m = 0;
    std::array<const double *, MaxParameters> x{};
    std::array<const double *, MaxParameters> xLow{}; ///< the low parts (engine/kernel/Lowparts.h), or null
    const double *y = nullptr;
    const double *yLow = nullptr; ///< likewise
};

/// A least-squares fit in orthogonal form, X = Q R with Q'Q = 1: what standard errors, sums of squares and everything
/// of single observations are worked out from. R comes from the cross products by Cholesky's method in double-double.
///
/// Indices k count the `kept` columns, those that do not depend on the ones before; column numbers j are as in the
/// cross products, 0 the constant, m + 1 the response. Each column is scaled by a power of two to a length of about
/// 1, so that no figure leaves the range of doubles on the way; what depends on the scale is told in scaled columns.
struct NUVO_KERNEL_EXPORT Factors
{
    using Matrix = std::array<std::array<DoubleDouble, MaxParameters>, MaxParameters>;

    std::int64_t n = 0;
    int m = 0;
    std::vector<int> kept;                         ///< column numbers, the constant first
    std::array<int, MaxParameters> place{};        ///< of column j among `kept`, or -1
    std::array<int, MaxParameters + 1> exponent{}; ///< column j is kept as column * 2^-exponent[j]
    CrossProducts products{};                      ///< of the scaled columns, by column number
    Matrix inverseRoot{};                          ///< R^-1, transposed: row k gives column k of Q from the columns
    std::array<DoubleDouble, MaxParameters> projected{};    ///< Q'y
    std::array<DoubleDouble, MaxParameters> coefficients{}; ///< of the scaled columns
    DoubleDouble sse;
    DoubleDouble sst;      ///< about the mean
    bool exact = false;    ///< the response is, to working precision, a linear combination of the columns
    double resolution = 0; ///< what rounding can have changed in Q

    /// Parameters of the model, m + 1: dependent columns count.
    int parameters() const { return m + 1; }
    int rank() const { return static_cast<int>(kept.size()); }
    /// n - m - 1, and 0 where that is negative.
    double degreesOfFreedom() const { return n > parameters() ? static_cast<double>(n - parameters()) : 0; }
    /// Whether the residual variance exists: there are degrees of freedom, and no figure is a NaN.
    bool hasVariance() const { return degreesOfFreedom() > 0 && sse.hi >= 0; }
    /// SSE / (n - m - 1), scaled; 0 of an exact fit, a NaN without degrees of freedom.
    double variance() const;

    /// A length of column j, told in scaled columns, in its own units; infinite or 0 where it leaves the range.
    double unscaled(double length, int column) const { return std::ldexp(length, exponent[column]); }
    /// Coefficient j; a NaN of a dependent column.
    double coefficient(int j) const;
    /// Element k, k of (X'X)^-1 over the kept columns, scaled.
    DoubleDouble inverseDiagonal(int k) const;
    /// The sum of squares of column j (the response: m + 1) about its mean, scaled.
    DoubleDouble centredSquares(int j) const;
};

/// From the cross products of the constant, m columns and, as number m + 1, the response: all that does not ask for
/// observations holds for any number of them. The figures are good to about 2^-95 times the condition number of X'X
/// with columns of length 1. Where columns are scaled already, `exponents` say by which powers of two: column j as
/// column * 2^-exponents[j].
NUVO_KERNEL_EXPORT Factors factorize(const CrossProducts &products, int m,
                                     const std::array<int, MaxParameters + 1> &exponents = {});

/// The same, and where the columns come near to depending on each other with one step of correction: Q is worked out
/// from the observations, and its cross products, which are all but the unit matrix, are factorized once more
/// (Yamamoto et al., ETNA 44, 2015, who call it CholeskyQR2). What is then left of R's error is its square.
NUVO_KERNEL_EXPORT Factors factorize(const CrossProducts &products, const ObservedColumns &observed,
                                     const std::array<int, MaxParameters + 1> &exponents = {});

/// A fit by observations. Values of the response's units are scaled as the response is.
struct Observed
{
    int n = 0;
    std::vector<std::vector<double>> q; ///< the columns of Q, by k
    std::vector<double> leverage;       ///< diagonal of X (X'X)^-1 X'; 1 where it is so but for rounding
    std::vector<double> rest;           ///< 1 - leverage, with all its digits where that is small
    std::vector<double> residual;       ///< all 0 of an exact fit
    std::vector<double> restLow;        ///< what rounding cut off `rest`, and below `residual`
    std::vector<double> residualLow;
    std::vector<double> fitted;
};

NUVO_KERNEL_EXPORT Observed observe(const Factors &factors, const ObservedColumns &observed);

} // namespace nuvo
