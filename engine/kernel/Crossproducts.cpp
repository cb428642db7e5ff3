// SPDX-License-Identifier: MIT
#include "engine/kernel/Crossproducts.h"

#include "engine/kernel/Instructionset.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>

#ifdef NUVO_HAS_AVX2
#include <immintrin.h>
#endif

// Each of the loops is here twice, as it is meant and for four numbers at a time with AVX2.

namespace nuvo {

namespace {

// Sums of products.
//
// Term i goes to lane i mod 4. In a lane, `taken` starts at base = 1.5 * 2^E and takes of each product what fits its
// unit u = 2^(E - 52): with t = fma(a, b, taken), z = t - taken is exact as long as `taken` stays within its binade,
// and fma(a, b, -z) is what was not taken, |.| <= u/2, but for one rounding. `left` adds these up; once in a block it
// passes on to `taken` what fits there, which is exact too.
//
// E comes from the largest values and n: base = 6 * 2^ilogb(bound), where no lane's sum can reach `bound`.
//
// Error. With i terms in its block |left| <= (i + 1) u / 2, so that 32 additions of a block round off at most
// 560 * 2^-54 u and the leftovers themselves 16 * 2^-54 u: 18 * 2^-54 u a term. As u <= 4 * 2^-52 N |a| |b| with N
// terms a lane and the largest |a| and |b|, that is 18 N * 2^-104 of n |a| |b| in all four lanes, 2^-90 at n = 2500.
// Adding the lanes up costs no more than four terms: their taken parts are multiples of u below 2^(E - 1), with an
// exact sum.

constexpr int Lanes = 4;
constexpr int BlockRows = 32 * Lanes;

struct alignas(32) LaneSums
{
    double taken[Lanes];
    double left[Lanes];
};

// The left factor: its term i is values[i * step]; step 0 makes a constant.
struct Factor
{
    const double *values;
    std::ptrdiff_t step;
    double largest;
};

// taken and left, one product later. Without the instruction a library would take 100 ns for each fma, so that the
// same two results are put together from the exact product (Dekker, Numer. Math. 18, 1971) wherever its parts stay in
// range.
void addProduct(double a, double b, double halfUnit, double &taken, double &left)
{
#ifndef FP_FAST_FMA
    const double product = a * b;
    if (std::fabs(a) < 0x1p990 && std::fabs(b) < 0x1p990 && std::fabs(product) > 0x1p-900) {
        constexpr double splitter = 0x1p27 + 1;
        const double aHigh = splitter * a - (splitter * a - a);
        const double bHigh = splitter * b - (splitter * b - b);
        const double aLow = a - aHigh;
        const double bLow = b - bHigh;
        const double error = ((aHigh * bHigh - product) + aHigh * bLow + aLow * bHigh) + aLow * bLow;
        double sum = taken + product;
        double rest = product - (sum - taken);
        if (std::fabs(rest) == halfUnit && error != 0 && (error > 0) == (rest > 0)) { // past the tie after all
            sum += 2 * rest;
            rest = -rest;
        }
        left += rest + error;
        taken = sum;
        return;
    }
#endif
    const double sum = std::fma(a, b, taken);
    left += std::fma(a, b, taken - sum);
    taken = sum;
}

void addProducts(Factor a, const double *b, int from, int n, double base, LaneSums &lanes)
{
    const double halfUnit = base / 3 * 0x1p-52;
    for (int i = from; i < n; ++i) {
        double &taken = lanes.taken[i % Lanes];
        double &left = lanes.left[i % Lanes];
        if (i % BlockRows < Lanes) {
            const double sum = taken + left;
            left -= sum - taken;
            taken = sum;
        }
        addProduct(a.values[i * a.step], b[i], halfUnit, taken, left);
    }
}

#ifdef NUVO_HAS_AVX2
// As many chains of additions side by side as there are registers for.
constexpr int PairsAtOnce = 6;

template <int Count>
NUVO_AVX2 void addProductsAvx2(Factor a, const DataColumn *b, int n, LaneSums *lanes)
{
    __m256d taken[Count];
    __m256d left[Count];
#pragma GCC unroll 8
    for (int k = 0; k < Count; ++k) {
        taken[k] = _mm256_load_pd(lanes[k].taken);
        left[k] = _mm256_load_pd(lanes[k].left);
    }
    for (int from = 0; from < n; from += BlockRows) {
#pragma GCC unroll 8
        for (int k = 0; k < Count; ++k) {
            const __m256d sum = _mm256_add_pd(taken[k], left[k]);
            left[k] = _mm256_sub_pd(left[k], _mm256_sub_pd(sum, taken[k]));
            taken[k] = sum;
        }
        const int to = std::min(from + BlockRows, n);
        for (int i = from; i < to; i += Lanes) {
            const __m256d x = _mm256_loadu_pd(a.values + i * a.step);
#pragma GCC unroll 8
            for (int k = 0; k < Count; ++k) {
                const __m256d y = _mm256_loadu_pd(b[k].values + i);
                const __m256d sum = _mm256_fmadd_pd(x, y, taken[k]);
                left[k] = _mm256_add_pd(left[k], _mm256_fmadd_pd(x, y, _mm256_sub_pd(taken[k], sum)));
                taken[k] = sum;
            }
        }
    }
#pragma GCC unroll 8
    for (int k = 0; k < Count; ++k) {
        _mm256_store_pd(lanes[k].taken, taken[k]);
        _mm256_store_pd(lanes[k].left, left[k]);
    }
}

void addProductsAvx2(Factor a, std::span<const DataColumn> b, int n, LaneSums *lanes)
{
    switch (b.size()) {
    case 1:
        return addProductsAvx2<1>(a, b.data(), n, lanes);
    case 2:
        return addProductsAvx2<2>(a, b.data(), n, lanes);
    case 3:
        return addProductsAvx2<3>(a, b.data(), n, lanes);
    case 4:
        return addProductsAvx2<4>(a, b.data(), n, lanes);
    case 5:
        return addProductsAvx2<5>(a, b.data(), n, lanes);
    default:
        return addProductsAvx2<PairsAtOnce>(a, b.data(), n, lanes);
    }
}
#else
constexpr int PairsAtOnce = 1;
#endif

// Where products leave the range in which `left` is kept: the textbook sum, over columns scaled by powers of two.
DoubleDouble dotOutOfRange(Factor a, DataColumn b, int n)
{
    const auto scaleOf = [](double largest) {
        return largest > 0 && std::isfinite(largest) ? std::ilogb(largest) : 0;
    };
    const int aScale = scaleOf(a.largest);
    const int bScale = scaleOf(b.largest);
    DoubleDouble sum;
    for (int i = 0; i < n; ++i)
        sum += DoubleDouble::product(std::scalbn(a.values[i * a.step], -aScale), std::scalbn(b.values[i], -bScale));
    const double high = std::scalbn(sum.hi, aScale + bScale);
    return {high, std::isfinite(high) ? std::scalbn(sum.lo, aScale + bScale) : 0.0};
}

void dots(Factor a, std::span<const DataColumn> b, int n, DoubleDouble *out)
{
    const int terms = (n + Lanes - 1) / Lanes; // of a lane, at most
    const int inLoop = useAvx2() ? n / Lanes * Lanes : 0;
    for (std::size_t done = 0; done < b.size();) {
        const std::size_t groups = (b.size() - done + PairsAtOnce - 1) / PairsAtOnce;
        const std::size_t count = (b.size() - done + groups - 1) / groups;
        const std::span<const DataColumn> group = b.subspan(done, count);
        LaneSums lanes[PairsAtOnce];
        double bound[PairsAtOnce];
        double base[PairsAtOnce];
        for (std::size_t k = 0; k < count; ++k) {
            // a little more than the exact bound, for the roundings of `taken`
            bound[k] = 1.0001 * terms * a.largest * group[k].largest;
            constexpr std::uint64_t exponentBits = 0x7FF0000000000000;
            base[k] = 6 * std::bit_cast<double>(std::bit_cast<std::uint64_t>(bound[k]) & exponentBits);
            std::fill_n(lanes[k].taken, Lanes, base[k]);
            std::fill_n(lanes[k].left, Lanes, 0.0);
        }
#ifdef NUVO_HAS_AVX2
        if (inLoop > 0)
            addProductsAvx2(a, group, inLoop, lanes);
#endif
        for (std::size_t k = 0; k < count; ++k) {
            addProducts(a, group[k].values, inLoop, n, base[k], lanes[k]);
            if (bound[k] >= 0x1p-900 && bound[k] <= 0x1p1000) {
                const double *t = lanes[k].taken;
                const double *l = lanes[k].left;
                const double taken = ((t[0] - base[k]) + (t[1] - base[k])) + ((t[2] - base[k]) + (t[3] - base[k]));
                const DoubleDouble sum = DoubleDouble::sum(taken, (l[0] + l[1]) + (l[2] + l[3]));
                out[done + k] = std::isnan(sum.hi) ? DoubleDouble(sum.hi) : sum;
            } else {
                out[done + k] = dotOutOfRange(a, group[k], n);
            }
        }
        done += count;
    }
}

// Sums of quotients.

// What is added up over x: x itself, or its squared distance from a centre.
enum class Term { Value, SquaredDeviation };

// sum + the terms of x[from] to x[n - 1], each divided by `divisor`, one after the other.
template <Term term>
double addQuotients(const double *x, double centre, int from, int n, double divisor, double sum)
{
    for (int i = from; i < n; ++i) {
        double value = x[i];
        if constexpr (term == Term::SquaredDeviation)
            value = (value - centre) * (value - centre);
        sum += value / divisor;
    }
    return sum;
}

constexpr int ColumnsAtOnce = 4;

#ifdef NUVO_HAS_AVX2
// The same for four columns at a time; n is a multiple of 4.
//
// A quotient v / d comes from the rounded reciprocal r of d: q = v r, corrected to q + (v - d q) r. It is the
// rounded quotient (Markstein, IBM J. Res. Dev. 34, 1990); for an integer d < 2^31 this is easy to see. q is within
// 1.5 ulp of v / d, so v - d q is a multiple of ulp(q) below 1.5 d ulps and exact, and the corrected value is rounded
// from v / d but for 2^-52 ulp. The nearest tie is further away: v / d is none itself, since d times an odd number of
// 54 bits has no 53 bits, and other ties are at least ulp / 4d from it.
// This needs a q that is no subnormal number. Zeros are fine (0 + -0 is 0), and infinities and NaNs show in the sum.
// \return the least absolute value of the terms other than zeros, an ulp below it.
template <Term term>
NUVO_AVX2 double addQuotientsAvx2(const double *const *x, const double *centre, int n, double divisor, double *sum)
{
    const __m256d d = _mm256_set1_pd(divisor);
    const __m256d reciprocal = _mm256_set1_pd(1 / divisor);
    const __m256d withoutSign = _mm256_castsi256_pd(_mm256_set1_epi64x(0x7FFFFFFFFFFFFFFF));
    const __m256i one = _mm256_set1_epi64x(1);
    __m256d least = _mm256_set1_pd(std::numeric_limits<double>::infinity());
    __m256d sums = _mm256_setzero_pd();
    for (int i = 0; i < n; i += 4) {
        __m256d q[4]; // of four columns, four observations each
#pragma GCC unroll 4
        for (int k = 0; k < 4; ++k) {
            __m256d value = _mm256_loadu_pd(x[k] + i);
            if constexpr (term == Term::SquaredDeviation) {
                value = _mm256_sub_pd(value, _mm256_broadcast_sd(centre + k));
                value = _mm256_mul_pd(value, value);
            }
            // One less in the last place makes a zero a NaN, which min passes over.
            const __m256i bits = _mm256_castpd_si256(_mm256_and_pd(value, withoutSign));
            least = _mm256_min_pd(_mm256_castsi256_pd(_mm256_sub_epi64(bits, one)), least);
            q[k] = _mm256_mul_pd(value, reciprocal);
            q[k] = _mm256_fmadd_pd(_mm256_fnmadd_pd(d, q[k], value), reciprocal, q[k]);
        }
        const __m256d even01 = _mm256_unpacklo_pd(q[0], q[1]);
        const __m256d odd01 = _mm256_unpackhi_pd(q[0], q[1]);
        const __m256d even23 = _mm256_unpacklo_pd(q[2], q[3]);
        const __m256d odd23 = _mm256_unpackhi_pd(q[2], q[3]);
        sums = _mm256_add_pd(sums, _mm256_permute2f128_pd(even01, even23, 0x20));
        sums = _mm256_add_pd(sums, _mm256_permute2f128_pd(odd01, odd23, 0x20));
        sums = _mm256_add_pd(sums, _mm256_permute2f128_pd(even01, even23, 0x31));
        sums = _mm256_add_pd(sums, _mm256_permute2f128_pd(odd01, odd23, 0x31));
    }
    _mm256_storeu_pd(sum, sums);
    double lanes[4];
    _mm256_storeu_pd(lanes, least);
    return std::min({lanes[0], lanes[1], lanes[2], lanes[3]});
}
#endif

template <Term term>
void sumsOfQuotients(std::span<const double *const> columns, const double *centre, int n, double divisor, double *out)
{
    for (std::size_t done = 0; done < columns.size(); done += ColumnsAtOnce) {
        const std::size_t count = std::min<std::size_t>(ColumnsAtOnce, columns.size() - done);
        const double *x[ColumnsAtOnce];
        double c[ColumnsAtOnce];
        double sum[ColumnsAtOnce] = {};
        for (std::size_t k = 0; k < ColumnsAtOnce; ++k) {
            const std::size_t column = done + std::min(k, count - 1);
            x[k] = columns[column];
            c[k] = centre ? centre[column] : 0;
        }
        int from = 0;
#ifdef NUVO_HAS_AVX2
        if (useAvx2() && addQuotientsAvx2<term>(x, c, n / 4 * 4, divisor, sum) > 1e-290)
            from = n / 4 * 4;
#endif
        for (std::size_t k = 0; k < count; ++k) {
            const bool usable = std::isfinite(sum[k]);
            out[done + k] =
                addQuotients<term>(x[k], c[k], usable ? from : 0, n, divisor, usable && from > 0 ? sum[k] : 0.0);
        }
    }
}

ColumnRange rangeFrom(ColumnRange range, const double *column, int from, int n)
{
    for (int i = from; i < n; ++i) {
        if (column[i] > range.max)
            range.max = column[i];
        else if (column[i] < range.min)
            range.min = column[i];
    }
    return range;
}

#ifdef NUVO_HAS_AVX2
NUVO_AVX2 ColumnRange rangeAvx2(const double *column, int n)
{
    // min and max return their second operand when the first is a NaN or equal.
    __m256d least[2];
    __m256d greatest[2];
    least[0] = least[1] = greatest[0] = greatest[1] = _mm256_set1_pd(column[0]);
    int i = 0;
    for (; i + 8 <= n; i += 8) {
#pragma GCC unroll 2
        for (std::ptrdiff_t k = 0; k < 2; ++k) {
            const __m256d x = _mm256_loadu_pd(column + i + 4 * k);
            least[k] = _mm256_min_pd(x, least[k]);
            greatest[k] = _mm256_max_pd(x, greatest[k]);
        }
    }
    double low[4];
    double high[4];
    _mm256_storeu_pd(low, _mm256_min_pd(least[0], least[1]));
    _mm256_storeu_pd(high, _mm256_max_pd(greatest[0], greatest[1]));
    const ColumnRange range{std::min({low[0], low[1], low[2], low[3]}),
                            std::max({high[0], high[1], high[2], high[3]})};
    return rangeFrom(range, column, i, n);
}
#endif

} // namespace

ColumnRange minMax(const double *column, int n)
{
#ifdef NUVO_HAS_AVX2
    if (useAvx2()) {
        ColumnRange range = rangeAvx2(column, n);
        // Of zeros with different signs the first one counts.
        if (range.min == 0)
            range.min = *std::find(column, column + n, 0.0);
        if (range.max == 0)
            range.max = *std::find(column, column + n, 0.0);
        return range;
    }
#endif
    return rangeFrom({column[0], column[0]}, column, 1, n);
}

void means(std::span<const double *const> columns, int n, double *mean)
{
    sumsOfQuotients<Term::Value>(columns, nullptr, n, n, mean);
}

void standardDeviations(std::span<const double *const> columns, const double *mean, int n, double *deviation)
{
    sumsOfQuotients<Term::SquaredDeviation>(columns, mean, n, n - 1, deviation);
    for (std::size_t k = 0; k < columns.size(); ++k)
        deviation[k] = std::sqrt(deviation[k]);
}

void dots(DataColumn a, std::span<const DataColumn> b, int n, DoubleDouble *out)
{
    dots(Factor{a.values, 1, a.largest}, b, n, out);
}

void sums(std::span<const DataColumn> b, int n, DoubleDouble *out)
{
    constexpr double ones[Lanes] = {1, 1, 1, 1};
    dots(Factor{ones, 0, 1}, b, n, out);
}

void crossProducts(std::span<const DataColumn> columns, int n, CrossProducts &products)
{
    products[0][0] = n;
    sums(columns, n, &products[0][1]);
    for (std::size_t j = 0; j < columns.size(); ++j)
        dots(columns[j], columns.subspan(j), n, &products[j + 1][j + 1]);
    for (std::size_t i = 1; i <= columns.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            products[i][j] = products[j][i];
}

} // namespace nuvo
