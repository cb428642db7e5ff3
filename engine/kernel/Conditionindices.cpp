// SPDX-License-Identifier: MIT
#include "engine/kernel/Inference.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

namespace nuvo {

namespace {

using Vector = std::array<DoubleDouble, MaxParameters>;

// A symmetric tridiagonal matrix: `beside[i]` stands between diagonal[i] and diagonal[i + 1].
struct Tridiagonal
{
    int order = 0;
    Vector diagonal{};
    Vector beside{};
};

// By Householder reflections, which keep the eigenvalues (Golub and Van Loan, Matrix Computations, 8.3.1).
Tridiagonal tridiagonal(Factors::Matrix a, int p)
{
    Tridiagonal result;
    result.order = p;
    for (int k = 0; k < p; ++k) {
        result.diagonal[k] = a[k][k];
        if (k + 1 == p)
            break;
        DoubleDouble square;
        for (int i = k + 1; i < p; ++i)
            square += a[i][k] * a[i][k];
        const DoubleDouble length = sqrt(square);
        result.beside[k] = length;
        if (k + 2 == p || length == 0) {
            result.beside[k] = k + 2 == p ? a[k + 1][k] : length;
            continue;
        }
        // v is what the reflection takes the column to the axis with; H = 1 - v v' / (v'v / 2).
        Vector v{};
        for (int i = k + 1; i < p; ++i)
            v[i] = a[i][k];
        v[k + 1] += v[k + 1] < 0 ? -length : length;
        const DoubleDouble half = length * abs(v[k + 1]);
        Vector w{};
        DoubleDouble vw;
        for (int i = k + 1; i < p; ++i) {
            for (int j = k + 1; j < p; ++j)
                w[i] += a[i][j] * v[j];
            w[i] /= half;
            vw += v[i] * w[i];
        }
        const DoubleDouble along = vw / (half + half);
        for (int i = k + 1; i < p; ++i)
            w[i] -= along * v[i];
        for (int i = k + 1; i < p; ++i)
            for (int j = k + 1; j < p; ++j)
                a[i][j] -= v[i] * w[j] + w[i] * v[j];
    }
    return result;
}

// One implicit QL step on the part from `first` to `last`: a shift near the eigenvalue at `first`, and rotations from
// the bottom up that drive what stands out of the band before them (Martin and Wilkinson, Numer. Math. 12, 1968).
void step(Tridiagonal &t, int first, int last)
{
    const DoubleDouble e = t.beside[first];
    const DoubleDouble ratio = (t.diagonal[first + 1] - t.diagonal[first]) / (e + e);
    const DoubleDouble root = sqrt(ratio * ratio + DoubleDouble(1));
    const DoubleDouble shift = t.diagonal[first] - e / (ratio + (ratio < 0 ? -root : root));
    DoubleDouble along = t.diagonal[last] - shift;
    DoubleDouble out = t.beside[last - 1];
    for (int i = last - 1; i >= first; --i) {
        const DoubleDouble length = sqrt(along * along + out * out);
        if (i + 1 < last)
            t.beside[i + 1] = length;
        if (length == 0)
            return;
        const DoubleDouble c = along / length;
        const DoubleDouble s = out / length;
        const DoubleDouble high = t.diagonal[i];
        const DoubleDouble low = t.diagonal[i + 1];
        const DoubleDouble between = t.beside[i];
        t.diagonal[i] = c * c * high + s * s * low - DoubleDouble(2) * c * s * between;
        t.diagonal[i + 1] = c * c * low + s * s * high + DoubleDouble(2) * c * s * between;
        along = c * s * (high - low) + (c * c - s * s) * between;
        t.beside[i] = along;
        if (i > first) {
            out = s * t.beside[i - 1];
            t.beside[i - 1] *= c;
        }
    }
}

// The eigenvalues, descending; NaNs when there is no such thing.
std::vector<double> eigenvalues(const Factors::Matrix &matrix, int p)
{
    constexpr int mostSteps = 60; // three are usual
    constexpr double negligible = 0x1p-104;
    Tridiagonal t = tridiagonal(matrix, p);
    for (int first = 0; first + 1 < p; ++first) {
        for (int steps = 0;; ++steps) {
            int last = first;
            while (last + 1 < p && std::fabs(t.beside[last].hi) > negligible * (std::fabs(t.diagonal[last].hi) +
                                                                                std::fabs(t.diagonal[last + 1].hi)))
                ++last;
            if (last == first)
                break;
            if (steps == mostSteps)
                return std::vector<double>(p, std::numeric_limits<double>::quiet_NaN());
            step(t, first, last);
        }
    }
    std::vector<double> values(p);
    std::transform(t.diagonal.begin(), t.diagonal.begin() + p, values.begin(),
                   [](DoubleDouble value) { return value.hi; });
    std::sort(values.begin(), values.end(), std::greater<>());
    return values;
}

} // namespace

std::vector<double> conditionIndices(const Factors &factors)
{
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    const int p = factors.rank();
    std::vector<double> result(factors.parameters(), none);
    Factors::Matrix unit{};
    Factors::Matrix inverse{};
    Vector length{};
    for (int i = 0; i < p; ++i)
        length[i] = sqrt(factors.products[factors.kept[i]][factors.kept[i]]);
    for (int i = 0; i < p; ++i) {
        for (int j = 0; j < p; ++j) {
            unit[i][j] = factors.products[factors.kept[i]][factors.kept[j]] / (length[i] * length[j]);
            for (int k = std::max(i, j); k < p; ++k)
                inverse[i][j] += factors.inverseRoot[k][i] * factors.inverseRoot[k][j];
            inverse[i][j] *= length[i] * length[j];
        }
    }
    const std::vector<double> squares = eigenvalues(unit, p);
    if (p == 0 || !(squares.front() > 0))
        return result;
    // The small ones have their digits in the inverse, where they are the large ones.
    constexpr double small = 1e-12;
    std::vector<double> reciprocals;
    if (!(squares.back() > small * squares.front()))
        reciprocals = eigenvalues(inverse, p);
    for (int k = 0; k < p; ++k) {
        const double smaller = squares[k] > small * squares.front() ? squares[k] : 1 / reciprocals[p - 1 - k];
        result[k] = k == 0 ? 1 : std::sqrt(squares.front() / smaller);
    }
    return result;
}

} // namespace nuvo
