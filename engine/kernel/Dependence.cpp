// SPDX-License-Identifier: MIT
#include "engine/kernel/Dependence.h"

#include "engine/kernel/Blocksum.h"
#include "engine/kernel/Crossproducts.h"
#include "engine/kernel/Instructionset.h"
#include "engine/kernel/Resolution.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace nuvo {

namespace {

// The upper triangle of the cross products of constant, columns and response, in this order. High and low parts lie
// apart so that loops along a row are vectorised.
class Triangle
{
public:
    Triangle(std::span<const ExtendedColumn> columns, DataColumn response, int n)
        : order_(static_cast<int>(columns.size()) + 2), hi_(std::size_t(order_) * order_), lo_(hi_.size())
    {
        std::vector<DataColumn> rounded(columns.begin(), columns.end());
        rounded.push_back(response);
        std::vector<DoubleDouble> row(order_);
        row[0] = n;
        sums(rounded, n, &row[1]);
        addLow({nullptr, 1}, columns, 0, n, row);
        setRow(0, row);
        for (int j = 1; j < order_; ++j) {
            dots(rounded[j - 1], std::span(rounded).subspan(j - 1), n, &row[j]);
            addLow(rounded[j - 1], columns, j - 1, n, row);
            if (j + 1 < order_ && columns[j - 1].low)
                addProducts(lowOf(columns[j - 1], n), std::span(rounded).subspan(j - 1), n, &row[j]);
            setRow(j, row);
        }
    }

    int order() const { return order_; }
    DoubleDouble get(int i, int j) const { return {hi_[at(i, j)], lo_[at(i, j)]}; }

    // Takes column k out of those after it, and keeps the factors, doubles, below the diagonal.
    void eliminate(int k)
    {
        const DoubleDouble pivot = get(k, k);
        const double *kHi = &hi_[at(k, 0)];
        const double *kLo = &lo_[at(k, 0)];
        for (int i = k + 1; i < order_; ++i) {
            const DoubleDouble factor = get(k, i) / pivot;
            double *hi = &hi_[at(i, 0)];
            double *lo = &lo_[at(i, 0)];
            hi[k] = factor.hi;
            for (int j = i; j < order_; ++j) {
                const DoubleDouble value = DoubleDouble(hi[j], lo[j]) - factor * DoubleDouble(kHi[j], kLo[j]);
                hi[j] = value.hi;
                lo[j] = value.lo;
            }
        }
    }

    double factor(int i, int k) const { return hi_[at(i, k)]; }
    /// The same with all its digits. \pre Column k was eliminated.
    DoubleDouble exactFactor(int i, int k) const { return get(k, i) / get(k, k); }

private:
    static DataColumn lowOf(const ExtendedColumn &column, int n)
    {
        return {column.low, minMax(column.low, n).largest()};
    }

    static void addProducts(DataColumn a, std::span<const DataColumn> b, int n, DoubleDouble *out)
    {
        std::vector<DoubleDouble> further(b.size());
        dots(a, b, n, further.data());
        for (std::size_t k = 0; k < b.size(); ++k)
            out[k] += further[k];
    }

    // What the low parts of columns from `from` on add to their products with a, the constant where that has no
    // values.
    static void addLow(DataColumn a, std::span<const ExtendedColumn> columns, std::size_t from, int n,
                       std::vector<DoubleDouble> &row)
    {
        for (std::size_t k = from; k < columns.size(); ++k) {
            if (!columns[k].low)
                continue;
            const DataColumn low = lowOf(columns[k], n);
            DoubleDouble further;
            if (a.values)
                dots(a, {&low, 1}, n, &further);
            else
                sums({&low, 1}, n, &further);
            row[k + 1] += further;
        }
    }

    std::size_t at(int i, int j) const { return std::size_t(i) * order_ + j; }

    void setRow(int i, const std::vector<DoubleDouble> &row)
    {
        for (int j = i; j < order_; ++j) {
            hi_[at(i, j)] = row[j].hi;
            lo_[at(i, j)] = row[j].lo;
        }
    }

    int order_;
    std::vector<double> hi_;
    std::vector<double> lo_;
};

// The lengths of the terms of the combination of columns `before` that is nearest to column k, together with its own,
// from the factors of the elimination.
double sizeOf(int k, const std::vector<int> &before, const std::vector<double> &length, const Triangle &rest)
{
    std::vector<double> combination(before.size());
    double size = length[k];
    for (std::size_t i = before.size(); i-- > 0;) { // from the last one up
        combination[i] = rest.factor(k, before[i]);
        for (std::size_t j = i + 1; j < before.size(); ++j)
            combination[i] -= rest.factor(before[j], before[i]) * combination[j];
        size += std::fabs(combination[i]) * length[before[i]];
    }
    return size;
}

struct Regression
{
    Explained explained;
    std::vector<int> kept; // columns that are not left out, the constant first
    double least = 1;      // the smallest square of what is left of one of them, of its own
};

Regression regress(Triangle &rest)
{
    const int response = rest.order() - 1;
    std::vector<double> length(rest.order());
    for (int k = 0; k <= response; ++k)
        length[k] = std::sqrt(rest.get(k, k).hi);
    Regression result;
    DoubleDouble total;
    for (int k = 0; k < response; ++k) {
        const double size = sizeOf(k, result.kept, length, rest);
        const double square = rest.get(k, k).hi;
        if (square > ResolvedSquare * size * size) {
            result.kept.push_back(k);
            result.least = std::fmin(result.least, square / (length[k] * length[k]));
            rest.eliminate(k);
        }
        if (k == 0)
            total = rest.get(response, response);
    }
    result.explained.columns = static_cast<int>(result.kept.size()) - 1;
    const double mean = ResolvedSquare * length[response] * length[response];
    result.explained.rSquared = total.hi > mean ? ((total - rest.get(response, response)) / total).hi
                                                : std::numeric_limits<double>::quiet_NaN();
    return result;
}

#ifdef NUVO_HAS_AVX2
[[gnu::flatten]] NUVO_AVX2 Regression regressAvx2(Triangle &rest)
{
    return regress(rest);
}
#endif

Regression eliminated(Triangle &products)
{
#ifdef NUVO_HAS_AVX2
    if (useAvx2())
        return regressAvx2(products);
#endif
    return regress(products);
}

// The columns that the elimination leaves, with a length of 1, by their place among the kept ones.
struct OrthogonalColumns
{
    std::vector<std::vector<double>> high;
    std::vector<std::vector<double>> low;
};

// Each from the columns themselves: row i of the inverse of the elimination's factors over the root of its pivot.
OrthogonalColumns orthogonal(const Triangle &rest, const std::vector<int> &kept,
                             std::span<const ExtendedColumn> columns, int n)
{
    const std::size_t p = kept.size();
    std::vector<std::vector<DoubleDouble>> inverse(p, std::vector<DoubleDouble>(p));
    for (std::size_t k = 0; k < p; ++k) {
        for (std::size_t i = 0; i < k; ++i) {
            const DoubleDouble factor = rest.exactFactor(kept[k], kept[i]);
            for (std::size_t j = 0; j <= i; ++j)
                inverse[k][j] -= factor * inverse[i][j];
        }
        inverse[k][k] = 1;
    }
    OrthogonalColumns out{std::vector(p, std::vector<double>(n)), std::vector(p, std::vector<double>(n))};
    alignas(32) double block[BlockSize];
    const auto padded = [&](const double *values, int from, int count) {
        std::copy_n(values + from, count, block);
        std::fill(block + count, block + BlockSize, 0.0);
        return block;
    };
    for (std::size_t k = 1; k < p; ++k) {
        const DoubleDouble scale = DoubleDouble(1) / sqrt(rest.get(kept[k], kept[k]));
        for (int from = 0; from < n; from += BlockSize) {
            const int count = std::min(BlockSize, n - from);
            BlockSum sum;
            sum.clear();
            std::fill_n(block, BlockSize, 1.0);
            sum.add(inverse[k][0] * scale, block);
            for (std::size_t i = 1; i <= k; ++i) {
                const DoubleDouble factor = inverse[k][i] * scale;
                const ExtendedColumn &column = columns[std::size_t(kept[i]) - 1];
                sum.add(factor, padded(column.values, from, count));
                if (column.low)
                    sum.addLow(factor.hi, padded(column.low, from, count));
            }
            sum.normalise();
            std::copy_n(sum.hi, count, out.high[k].data() + from);
            std::copy_n(sum.lo, count, out.low[k].data() + from);
        }
    }
    return out;
}

#ifdef NUVO_HAS_AVX2
[[gnu::flatten]] NUVO_AVX2 OrthogonalColumns orthogonalAvx2(const Triangle &rest, const std::vector<int> &kept,
                                                            std::span<const ExtendedColumn> columns, int n)
{
    return orthogonal(rest, kept, columns, n);
}
#endif

// R squared once more, by columns that are all but orthogonal: what is left of the error of the first is its square.
double correctedRSquared(const Triangle &rest, const std::vector<int> &kept, std::span<const ExtendedColumn> columns,
                         DataColumn response, int n)
{
#ifdef NUVO_HAS_AVX2
    const OrthogonalColumns made =
        useAvx2() ? orthogonalAvx2(rest, kept, columns, n) : orthogonal(rest, kept, columns, n);
#else
    const OrthogonalColumns made = orthogonal(rest, kept, columns, n);
#endif
    std::vector<ExtendedColumn> q;
    for (std::size_t k = 1; k < kept.size(); ++k)
        q.push_back({{made.high[k].data(), minMax(made.high[k].data(), n).largest()}, made.low[k].data()});
    Triangle products(q, response, n);
    return eliminated(products).explained.rSquared;
}

} // namespace

Explained regressOn(std::span<const ExtendedColumn> columns, DataColumn response, int n)
{
    constexpr double wellResolved = 0x1p-50; // the cross products leave 14 digits
    Triangle products(columns, response, n);
    Regression result = eliminated(products);
    if (result.least < wellResolved && !std::isnan(result.explained.rSquared) && result.kept.front() == 0)
        result.explained.rSquared = correctedRSquared(products, result.kept, columns, response, n);
    return result.explained;
}

} // namespace nuvo
