// SPDX-License-Identifier: MIT
#include "engine/kernel/Leastsquares.h"

#include <cmath>
#include <utility>

namespace {

using Real = LeastSquares::Real;
using Columns = std::vector<std::vector<double>>;
template <typename Number>
using Matrix = std::vector<std::vector<Number>>; // by rows

/// The constant, the controls and the response.
template <typename Number>
Matrix<Number> tableau(const Columns &columns)
{
    Matrix<Number> rows(columns.back().size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i].push_back(1);
        for (const std::vector<double> &column : columns)
            rows[i].push_back(Number(column[i]));
    }
    return rows;
}

/// Makes R and Q'y of X and y: reflects column after column onto its diagonal.
void reflect(Matrix<Real> &a, std::size_t size)
{
    for (std::size_t k = 0; k < size; ++k) {
        Real squares = 0;
        for (std::size_t i = k; i < a.size(); ++i)
            squares += a[i][k] * a[i][k];
        const Real diagonal = a[k][k] > 0 ? -std::sqrt(squares) : std::sqrt(squares);
        std::vector<Real> v;
        for (std::size_t i = k; i < a.size(); ++i)
            v.push_back(a[i][k]);
        v[0] -= diagonal;
        const Real half = squares - diagonal * a[k][k]; // of v'v
        for (std::size_t j = k; j <= size; ++j) {
            Real product = 0;
            for (std::size_t i = k; i < a.size(); ++i)
                product += v[i - k] * a[i][j];
            for (std::size_t i = k; i < a.size(); ++i)
                a[i][j] -= product / half * v[i - k];
        }
    }
}

/// What solves R x = right.
std::vector<Real> solveUpper(const Matrix<Real> &r, std::vector<Real> right)
{
    for (std::size_t i = right.size(); i-- > 0;) {
        for (std::size_t j = i + 1; j < right.size(); ++j)
            right[i] -= r[i][j] * right[j];
        right[i] /= r[i][i];
    }
    return right;
}

Real aboutMean(const std::vector<Real> &values, Real mean)
{
    Real squares = 0;
    for (const Real value : values)
        squares += (value - mean) * (value - mean);
    return squares;
}

} // namespace

LeastSquares leastSquares(const Columns &columns)
{
    const Matrix<Real> data = tableau<Real>(columns);
    const std::size_t size = columns.size();
    LeastSquares result;
    result.n = int(data.size());
    result.m = int(size) - 1;

    Matrix<Real> r = data;
    reflect(r, size);
    std::vector<Real> right;
    Matrix<Real> rInverse; // by columns
    for (std::size_t k = 0; k < size; ++k) {
        right.push_back(r[k][size]);
        std::vector<Real> unit(size);
        unit[k] = 1;
        rInverse.push_back(solveUpper(r, unit));
    }
    result.b = solveUpper(r, right);
    result.inverse.assign(size, std::vector<Real>(size));
    for (std::size_t i = 0; i < size; ++i)
        for (std::size_t j = 0; j < size; ++j)
            for (std::size_t k = 0; k < size; ++k)
                result.inverse[i][j] += rInverse[k][i] * rInverse[k][j];

    Real mean = 0;
    for (const auto &row : data)
        mean += row[size] / Real(data.size());
    std::vector<Real> response, fitted;
    for (const auto &row : data) {
        response.push_back(row[size]);
        fitted.push_back(0);
        for (std::size_t k = 0; k < size; ++k)
            fitted.back() += row[k] * result.b[k];
        result.sse += (response.back() - fitted.back()) * (response.back() - fitted.back());
    }
    result.ssr = aboutMean(fitted, mean);
    result.sst = aboutMean(response, mean);
    return result;
}

std::vector<double> plainNormalEquations(const Columns &columns)
{
    const std::size_t size = columns.size();
    Matrix<double> a(size, std::vector<double>(size + 1)); // X'X and X'y
    for (const auto &row : tableau<double>(columns))
        for (std::size_t i = 0; i < size; ++i)
            for (std::size_t j = 0; j <= size; ++j)
                a[i][j] += row[i] * row[j];
    for (std::size_t k = 0; k < size; ++k) {
        for (std::size_t i = k + 1; i < size; ++i)
            if (std::abs(a[i][k]) > std::abs(a[k][k]))
                std::swap(a[i], a[k]);
        for (std::size_t i = k + 1; i < size; ++i) {
            const double factor = a[i][k] / a[k][k];
            for (std::size_t j = k; j <= size; ++j)
                a[i][j] -= factor * a[k][j];
        }
    }
    std::vector<double> b(size);
    for (std::size_t i = size; i-- > 0;) {
        b[i] = a[i][size];
        for (std::size_t j = i + 1; j < size; ++j)
            b[i] -= a[i][j] * b[j];
        b[i] /= a[i][i];
    }
    return b;
}

long double norm(const std::vector<long double> &values)
{
    return std::sqrt(aboutMean(values, 0));
}

long double norm(const std::vector<std::vector<long double>> &rows)
{
    long double squares = 0;
    for (const std::vector<long double> &row : rows)
        squares += norm(row) * norm(row);
    return std::sqrt(squares);
}
