// SPDX-License-Identifier: MIT
#pragma once

#include "present/figures/Figure.h"

#include <boost/math/distributions/students_t.hpp>

#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

using Column = std::vector<double>;

/// Least squares by an orthogonal basis, to draw: y on columns with all the figures that the figures show.
inline nuvo::FigureData smallFit(const QString &response, const Column &y, const QStringList &terms,
                                 const std::vector<Column> &x, const std::vector<qint64> &records = {})
{
    const auto dot = [](const Column &a, const Column &b) {
        return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
    };
    const std::size_t n = y.size();
    const std::size_t m = x.size();
    std::vector<Column> columns{Column(n, 1.0)};
    columns.insert(columns.end(), x.begin(), x.end());
    const auto basisOf = [&](const std::vector<Column> &from) {
        std::vector<Column> basis;
        for (Column column : from) {
            for (int twice = 0; twice < 2; ++twice) {
                for (const Column &q : basis) {
                    const double part = dot(q, column);
                    for (std::size_t i = 0; i < n; ++i)
                        column[i] -= part * q[i];
                }
            }
            const double length = std::sqrt(dot(column, column));
            for (double &value : column)
                value /= length;
            basis.push_back(column);
        }
        return basis;
    };
    const auto residualsOn = [&](const std::vector<Column> &basis, Column column) {
        for (int twice = 0; twice < 2; ++twice) {
            for (const Column &q : basis) {
                const double part = dot(q, column);
                for (std::size_t i = 0; i < n; ++i)
                    column[i] -= part * q[i];
            }
        }
        return column;
    };
    nuvo::FigureData data;
    data.response = response;
    data.terms = terms;
    data.records = records;
    data.y = y;
    data.x = x;
    const std::vector<Column> basis = basisOf(columns);
    data.residuals = residualsOn(basis, y);
    const double degrees = double(n) - double(m) - 1;
    data.s = std::sqrt(dot(data.residuals, data.residuals) / degrees);
    data.quantile = boost::math::quantile(boost::math::students_t(degrees), 0.975);
    data.coefficients.assign(m + 1, 0);
    data.standardErrors.assign(m + 1, std::numeric_limits<double>::quiet_NaN());
    double constant = std::accumulate(y.begin(), y.end(), 0.0) / double(n);
    for (std::size_t j = 1; j <= m; ++j) {
        std::vector<Column> others = columns;
        others.erase(others.begin() + std::ptrdiff_t(j));
        data.partial.push_back(residualsOn(basisOf(others), columns[j]));
        const Column &own = data.partial.back();
        data.coefficients[j] = dot(own, y) / dot(own, own);
        data.standardErrors[j] = data.s / std::sqrt(dot(own, own));
        constant -= data.coefficients[j] * std::accumulate(x[j - 1].begin(), x[j - 1].end(), 0.0) / double(n);
    }
    data.coefficients[0] = constant;
    for (std::size_t i = 0; i < n; ++i) {
        double h = 0;
        for (const Column &q : basis)
            h += q[i] * q[i];
        const double e = data.residuals[i];
        data.fitted.push_back(y[i] - e);
        data.leverage.push_back(h);
        const double r = e / (data.s * std::sqrt(1 - h));
        data.standardized.push_back(r);
        data.studentized.push_back(r * std::sqrt((degrees - 1) / (degrees - r * r)));
        data.cook.push_back(r * r * h / ((1 - h) * double(m + 1)));
    }
    return data;
}

/// n observations on two terms with scatter, the same in every run.
inline nuvo::FigureData scatteredData(int n, const QStringList &terms = {QStringLiteral("x1"), QStringLiteral("x2")})
{
    unsigned state = 12345;
    const auto uniform = [&state] {
        state = state * 1664525U + 1013904223U;
        return double(state >> 8U) / double(1U << 24U);
    };
    const auto normal = [&] {
        double sum = -6;
        for (int k = 0; k < 12; ++k)
            sum += uniform();
        return sum;
    };
    Column y;
    std::vector<Column> x(std::size_t(terms.size()));
    for (int i = 0; i < n; ++i) {
        double value = 10 + 2 * normal();
        for (std::size_t j = 0; j < x.size(); ++j) {
            x[j].push_back(j % 2 == 0 ? uniform() * 50 : normal() * 10);
            value += (j % 2 == 0 ? 0.3 : -0.2) * x[j].back();
        }
        y.push_back(value);
    }
    return smallFit(QStringLiteral("y"), y, terms, x);
}
