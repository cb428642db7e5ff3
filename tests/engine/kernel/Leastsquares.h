// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

/// Least squares by another road than the library's: Householder's QR of the design matrix in 80 bits.
struct LeastSquares
{
    using Real = long double;

    std::vector<Real> b;                    ///< the constant first
    std::vector<std::vector<Real>> inverse; ///< of X'X, in that order
    Real sse = 0;
    Real ssr = 0; ///< of the values of the fit about the response's mean
    Real sst = 0; ///< of the response about its mean
    int n = 0;
    int m = 0;

    Real mse() const { return sse / (n - m - 1); }
};

/// Of the last of the columns on a constant and the others.
LeastSquares leastSquares(const std::vector<std::vector<double>> &columns);

/// The coefficients as normal equations in plain doubles give them, the constant first.
std::vector<double> plainNormalEquations(const std::vector<std::vector<double>> &columns);

/// Root of the sum of squares.
long double norm(const std::vector<long double> &values);
long double norm(const std::vector<std::vector<long double>> &rows);
