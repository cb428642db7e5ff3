// SPDX-License-Identifier: MIT
#include "engine/kernel/Factors.h"

#include "engine/kernel/Blocksum.h"
#include "engine/kernel/Instructionset.h"
#include "engine/kernel/Lowparts.h"
#include "engine/kernel/Normalequations.h"
#include "engine/kernel/Resolution.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace nuvo {

namespace {

// A block of the observations, padded with zeros, by column number; the constant is 1 throughout.
struct alignas(32) Block
{
    double x[MaxParameters + 1][BlockSize];
    double low[MaxParameters + 1][BlockSize];

    void take(const ObservedColumns &observed, int from)
    {
        std::fill_n(x[0], BlockSize, 1.0);
        for (int j = 1; j <= observed.m; ++j)
            take(observed.x[j], observed.xLow[j], j, from, observed.n);
        take(observed.y, observed.yLow, observed.m + 1, from, observed.n);
    }

private:
    void take(const double *column, const double *lowParts, int j, int from, int n)
    {
        const int count = std::min(BlockSize, n - from);
        const auto copy = [&](const double *source, double *to) {
            std::copy_n(source + from, count, to);
            std::fill(to + count, to + BlockSize, 0.0);
        };
        copy(column, x[j]);
        if (lowParts)
            copy(lowParts, low[j]);
    }
};

// Factors for columns as they are, in place of scaled ones.
DoubleDouble unscaledFactor(DoubleDouble factor, int exponent)
{
    return {std::ldexp(factor.hi, -exponent), std::ldexp(factor.lo, -exponent)};
}

struct QFactors
{
    int rank = 0;
    int column[MaxParameters];
    DoubleDouble factor[MaxParameters][MaxParameters];
    DoubleDouble coefficient[MaxParameters];
    double responseScale = 0;

    explicit QFactors(const Factors &factors) : rank(factors.rank())
    {
        const int response = factors.m + 1;
        responseScale = std::ldexp(1.0, -factors.exponent[response]);
        for (int k = 0; k < rank; ++k) {
            column[k] = factors.kept[k];
            coefficient[k] = unscaledFactor(factors.coefficients[k], factors.exponent[column[k]]);
            for (int i = 0; i <= k; ++i)
                factor[k][i] = unscaledFactor(factors.inverseRoot[k][i], factors.exponent[factors.kept[i]]);
        }
    }

    // Column k of Q.
    void q(const Block &block, const ObservedColumns &observed, int k, BlockSum &out) const
    {
        out.clear();
        for (int i = 0; i <= k; ++i) {
            const int j = column[i];
            out.add(factor[k][i], block.x[j]);
            if (j > 0 && observed.xLow[j])
                out.addLow(factor[k][i].hi, block.low[j]);
        }
        out.normalise();
    }

    void residual(const Block &block, const ObservedColumns &observed, BlockSum &out) const
    {
        const int response = observed.m + 1;
        out.clear();
        out.add(responseScale, block.x[response]);
        if (observed.yLow)
            out.addLow(responseScale, block.low[response]);
        for (int i = 0; i < rank; ++i) {
            const int j = column[i];
            out.add(-coefficient[i], block.x[j]);
            if (j > 0 && observed.xLow[j])
                out.addLow(-coefficient[i].hi, block.low[j]);
        }
        out.normalise();
    }
};

void observeBlocks(const QFactors &factors, const ObservedColumns &observed, Observed &out)
{
    Block block;
    BlockSum q;
    BlockSum rest;
    BlockSum residual;
    for (int from = 0; from < observed.n; from += BlockSize) {
        const int count = std::min(BlockSize, observed.n - from);
        block.take(observed, from);
        rest.clear(1);
        for (int k = 0; k < factors.rank; ++k) {
            factors.q(block, observed, k, q);
            rest.subtractSquare(q);
            std::copy_n(q.hi, count, out.q[k].data() + from);
        }
        rest.normalise();
        std::copy_n(rest.hi, count, out.rest.data() + from);
        std::copy_n(rest.lo, count, out.restLow.data() + from);
        factors.residual(block, observed, residual);
        std::copy_n(residual.hi, count, out.residual.data() + from);
        std::copy_n(residual.lo, count, out.residualLow.data() + from);
        const double *y = block.x[observed.m + 1];
        for (int i = 0; i < count; ++i)
            out.fitted[from + i] = y[i] * factors.responseScale - residual.hi[i];
    }
}

// The columns of Q with their low parts, for the step of correction.
void orthogonalBlocks(const QFactors &factors, const ObservedColumns &observed,
                      std::vector<std::vector<double>> &high, std::vector<std::vector<double>> &low)
{
    Block block;
    BlockSum q;
    for (int from = 0; from < observed.n; from += BlockSize) {
        const int count = std::min(BlockSize, observed.n - from);
        block.take(observed, from);
        for (int k = 0; k < factors.rank; ++k) {
            factors.q(block, observed, k, q);
            std::copy_n(q.hi, count, high[k].data() + from);
            std::copy_n(q.lo, count, low[k].data() + from);
        }
    }
}

#ifdef NUVO_HAS_AVX2
[[gnu::flatten]] NUVO_AVX2 void observeBlocksAvx2(const QFactors &factors, const ObservedColumns &observed,
                                                  Observed &out)
{
    observeBlocks(factors, observed, out);
}
#endif

// R of a positive definite matrix of the order p (Cholesky), then its inverse, transposed: row k makes column k
// orthonormal to those before. `least` is the smallest square of a diagonal element of R.
void invertedRoot(const Factors::Matrix &products, int p, Factors::Matrix &inverse, double &least)
{
    Factors::Matrix root; // lower triangle, R transposed
    least = std::numeric_limits<double>::infinity();
    for (int k = 0; k < p; ++k) {
        for (int j = 0; j <= k; ++j) {
            DoubleDouble value = products[k][j];
            for (int i = 0; i < j; ++i)
                value -= root[k][i] * root[j][i];
            if (j == k)
                least = std::fmin(least, value.hi);
            root[k][j] = j == k ? sqrt(value) : value / root[j][j];
        }
    }
    for (int k = 0; k < p; ++k) {
        for (int j = 0; j < k; ++j) {
            DoubleDouble value;
            for (int i = j; i < k; ++i)
                value -= root[k][i] * inverse[i][j];
            inverse[k][j] = value / root[k][k];
        }
        inverse[k][k] = DoubleDouble(1) / root[k][k];
    }
}

// What follows from `inverseRoot` and `projected`.
void finish(Factors &factors)
{
    const int p = factors.rank();
    const int response = factors.m + 1;
    const CrossProducts &products = factors.products;
    factors.sse = products[response][response];
    for (int k = 0; k < p; ++k)
        factors.sse -= factors.projected[k] * factors.projected[k];
    // The square of the rounding that a linear combination of columns in doubles carries.
    double size = std::sqrt(products[response][response].hi);
    for (int i = 0; i < p; ++i) {
        DoubleDouble b;
        for (int k = i; k < p; ++k)
            b += factors.inverseRoot[k][i] * factors.projected[k];
        factors.coefficients[i] = b;
        size += std::fabs(b.hi) * std::sqrt(products[factors.kept[i]][factors.kept[i]].hi);
    }
    // What rounding leaves of a coefficient that is 0.
    constexpr double nothing = 0x1p-96;
    for (int i = 0; i < p; ++i) {
        if (std::fabs(factors.coefficients[i].hi) * std::sqrt(products[factors.kept[i]][factors.kept[i]].hi) <=
            nothing * size)
            factors.coefficients[i] = 0;
    }
    factors.sst = factors.centredSquares(response);
    factors.exact = factors.sse.hi <= ResolvedSquare * size * size;
    if (factors.exact)
        factors.sse = 0;
}

void scale(const CrossProducts &products, int m, Factors &factors)
{
    for (int j = 0; j <= m + 1; ++j) {
        const double square = products[j][j].hi;
        factors.exponent[j] = square > 0 && std::isfinite(square) ? std::ilogb(square) / 2 : 0;
    }
    for (int i = 0; i <= m + 1; ++i)
        for (int j = 0; j <= m + 1; ++j)
            factors.products[i][j] = unscaledFactor(products[i][j], factors.exponent[i] + factors.exponent[j]);
}

// The smallest square of what is left of a kept column, of 1.
double factorizeScaled(const CrossProducts &products, int m, Factors &factors)
{
    factors.n = static_cast<std::int64_t>(products[0][0].hi);
    factors.m = m;
    scale(products, m, factors);
    factors.place.fill(-1);
    const std::vector<int> dependent = dependentColumns(factors.products, m);
    for (int j = 0; j <= m; ++j) {
        if (std::find(dependent.begin(), dependent.end(), j) != dependent.end())
            continue;
        factors.place[j] = factors.rank();
        factors.kept.push_back(j);
    }
    const int p = factors.rank();
    Factors::Matrix kept;
    for (int i = 0; i < p; ++i)
        for (int j = 0; j < p; ++j)
            kept[i][j] = factors.products[factors.kept[i]][factors.kept[j]];
    double least = 0;
    invertedRoot(kept, p, factors.inverseRoot, least);
    for (int k = 0; k < p; ++k)
        for (int i = 0; i <= k; ++i)
            factors.projected[k] += factors.inverseRoot[k][i] * factors.products[factors.kept[i]][m + 1];
    finish(factors);
    factors.resolution = 0x1p-93 / least;
    return least;
}

void scaleAlready(const std::array<int, MaxParameters + 1> &exponents, Factors &factors)
{
    for (std::size_t j = 0; j < exponents.size(); ++j)
        factors.exponent[j] += exponents[j];
}

void correct(const ObservedColumns &observed, Factors &factors)
{
    const int p = factors.rank();
    const int n = observed.n;
    std::vector<std::vector<double>> high(p, std::vector<double>(n));
    std::vector<std::vector<double>> low(p, std::vector<double>(n));
    orthogonalBlocks(QFactors(factors), observed, high, low);
    std::vector<ExtendedColumn> q(p);
    for (int k = 0; k < p; ++k)
        q[k] = {{high[k].data(), minMax(high[k].data(), n).largest()}, low[k].data()};
    const ExtendedColumn y = {{observed.y, minMax(observed.y, n).largest()}, observed.yLow};
    Factors::Matrix nearUnit;
    std::array<DoubleDouble, MaxParameters> projected;
    for (int k = 0; k < p; ++k) {
        for (int i = 0; i <= k; ++i)
            nearUnit[k][i] = nearUnit[i][k] = dot(q[k], q[i], n);
        projected[k] = unscaledFactor(dot(q[k], y, n), factors.exponent[factors.m + 1]);
    }
    Factors::Matrix step{};
    double least = 0;
    invertedRoot(nearUnit, p, step, least);
    const Factors::Matrix before = factors.inverseRoot;
    for (int k = 0; k < p; ++k) {
        factors.projected[k] = 0;
        for (int i = 0; i <= k; ++i) {
            factors.projected[k] += step[k][i] * projected[i];
            factors.inverseRoot[k][i] = 0;
            for (int l = i; l <= k; ++l)
                factors.inverseRoot[k][i] += step[k][l] * before[l][i];
        }
    }
    finish(factors);
}

} // namespace

double Factors::variance() const
{
    return degreesOfFreedom() > 0 ? sse.hi / degreesOfFreedom() : std::numeric_limits<double>::quiet_NaN();
}

double Factors::coefficient(int j) const
{
    if (place[j] < 0)
        return std::numeric_limits<double>::quiet_NaN();
    return std::ldexp(coefficients[place[j]].hi, exponent[m + 1] - exponent[j]);
}

DoubleDouble Factors::inverseDiagonal(int k) const
{
    DoubleDouble result;
    for (int i = k; i < rank(); ++i)
        result += inverseRoot[i][k] * inverseRoot[i][k];
    return result;
}

DoubleDouble Factors::centredSquares(int j) const
{
    const DoubleDouble squares = products[j][j] - products[0][j] * products[0][j] / products[0][0];
    return squares.hi < 0 ? DoubleDouble() : squares;
}

Factors factorize(const CrossProducts &products, int m, const std::array<int, MaxParameters + 1> &exponents)
{
    Factors factors;
    factorizeScaled(products, m, factors);
    scaleAlready(exponents, factors);
    return factors;
}

Factors factorize(const CrossProducts &products, const ObservedColumns &observed,
                  const std::array<int, MaxParameters + 1> &exponents)
{
    // Q is then good to 70 bits, and a leverage of 1 is told from one next to it.
    constexpr double wellResolved = 0x1p-24;
    Factors factors;
    const double least = factorizeScaled(products, observed.m, factors);
    scaleAlready(exponents, factors);
    if (least < wellResolved) {
        correct(observed, factors);
        factors.resolution = 0x1p-93 / std::sqrt(least);
    }
    return factors;
}

Observed observe(const Factors &factors, const ObservedColumns &observed)
{
    const int n = observed.n;
    Observed out;
    out.n = n;
    out.q.assign(factors.rank(), std::vector<double>(n));
    for (std::vector<double> *figures :
         {&out.leverage, &out.rest, &out.restLow, &out.residual, &out.residualLow, &out.fitted})
        figures->resize(n);
    const QFactors qFactors(factors);
#ifdef NUVO_HAS_AVX2
    if (useAvx2())
        observeBlocksAvx2(qFactors, observed, out);
    else
#endif
        observeBlocks(qFactors, observed, out);
    const double nothing = 4 * factors.resolution; // what rounding can leave of 1 - 1
    for (int i = 0; i < n; ++i) {
        if (out.rest[i] < nothing)
            out.rest[i] = out.restLow[i] = 0;
        out.leverage[i] = 1 - out.rest[i];
    }
    if (factors.exact) {
        std::fill(out.residual.begin(), out.residual.end(), 0.0);
        std::fill(out.residualLow.begin(), out.residualLow.end(), 0.0);
    }
    return out;
}

} // namespace nuvo
