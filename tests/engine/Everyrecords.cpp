// SPDX-License-Identifier: MIT
#include "engine/Everyrecords.h"

#include <algorithm>
#include <cmath>

BigFit::BigFit(const std::vector<std::vector<double>> &x, const std::vector<double> &y,
               const std::vector<qint64> &weights)
{
    const std::size_t p = x.size() + 1;
    Big n = 0;
    const auto cell = [&](std::size_t j, std::size_t i) {
        return j == 0 ? Big(1) : j < p ? Big(x[j - 1][i]) : Big(y[i]);
    };
    // Columns of [X y]'[X y | 1], eliminated in place.
    std::vector<std::vector<Big>> a(p, std::vector<Big>(2 * p + 1));
    Big squares = 0;
    Big sum = 0;
    for (std::size_t i = 0; i < y.size(); ++i) {
        const Big weight = weights.empty() ? 1 : weights[i];
        n += weight;
        std::vector<Big> row;
        for (std::size_t j = 0; j <= p; ++j)
            row.push_back(cell(j, i));
        for (std::size_t j = 0; j < p; ++j)
            for (std::size_t k = j; k <= p; ++k)
                a[j][k] += weight * row[j] * row[k];
        squares += weight * row[p] * row[p];
        sum += weight * row[p];
    }
    std::vector<Big> moments;
    for (std::size_t j = 0; j < p; ++j) {
        moments.push_back(a[j][p]);
        for (std::size_t k = 0; k < j; ++k)
            a[j][k] = a[k][j];
        a[j][p + 1 + j] = 1;
    }
    for (std::size_t j = 0; j < p; ++j) {
        const Big pivot = a[j][j];
        for (Big &one : a[j])
            one /= pivot;
        for (std::size_t k = 0; k < p; ++k) {
            const Big factor = a[k][j];
            for (std::size_t c = 0; k != j && c < a[k].size(); ++c)
                a[k][c] -= factor * a[j][c];
        }
    }
    sse = squares;
    for (std::size_t j = 0; j < p; ++j) {
        b.push_back(a[j][p]);
        sse -= a[j][p] * moments[j];
    }
    mean = sum / n;
    sst = squares - mean * sum;
    deviation = sqrt(sst / (n - 1));
    for (std::size_t j = 0; j < p; ++j)
        errors.push_back(sqrt(sse / (n - p) * a[j][p + 1 + j]));
}

double digitsOf(double got, const Big &wanted)
{
    const Big error = abs(Big(got) - wanted);
    if (error == 0)
        return 16;
    return std::min(16.0, -std::log10(Big(error / abs(wanted)).convert_to<double>()));
}

void expectDigits(TRegression &regression, const BigFit &wanted, double digits)
{
    for (int j = 0; j <= regression.GetNumVars(); ++j) {
        EXPECT_GE(digitsOf(regression.Getb(j), wanted.b[std::size_t(j)]), digits) << "b" << j;
        EXPECT_GE(digitsOf(regression.GetStdErr(j), wanted.errors[std::size_t(j)]), digits) << "standard error " << j;
    }
    EXPECT_GE(digitsOf(regression.GetSSE(), wanted.sse), digits);
    EXPECT_GE(digitsOf(regression.GetSST(), wanted.sst), digits);
    EXPECT_GE(digitsOf(regression.GetyBar(), wanted.mean), digits);
    EXPECT_GE(digitsOf(regression.GetyStdErr(), wanted.deviation), digits);
}
