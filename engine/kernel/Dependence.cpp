#include "engine/kernel/Dependence.h"

#include "engine/kernel/Crossproducts.h"
#include "engine/kernel/Instructionset.h"
#include "engine/kernel/Resolution.h"

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
template <class Factor>
double sizeOf(int k, const std::vector<int> &before, const std::vector<double> &length, Factor factor)
{
    std::vector<double> combination(before.size());
    double size = length[k];
    for (std::size_t i = before.size(); i-- > 0;) { // from the last one up
        combination[i] = factor(k, before[i]);
        for (std::size_t j = i + 1; j < before.size(); ++j)
            combination[i] -= factor(before[j], before[i]) * combination[j];
        size += std::fabs(combination[i]) * length[before[i]];
    }
    return size;
}

struct Elimination
{
    std::vector<int> before; ///< columns that are not left out
    Explained explained;
};

Elimination regress(Triangle &rest)
{
    const int response = rest.order() - 1;
    std::vector<double> length(rest.order());
    for (int k = 0; k <= response; ++k)
        length[k] = std::sqrt(rest.get(k, k).hi);
    Elimination result;
    DoubleDouble total;
    for (int k = 0; k < response; ++k) {
        const double size = sizeOf(k, result.before, length, [&](int i, int j) { return rest.factor(i, j); });
        if (rest.get(k, k).hi > ResolvedSquare * size * size) {
            result.before.push_back(k);
            rest.eliminate(k);
        }
        if (k == 0)
            total = rest.get(response, response);
    }
    result.explained.columns = static_cast<int>(result.before.size()) - 1;
    const double mean = ResolvedSquare * length[response] * length[response];
    result.explained.rSquared = total.hi > mean ? ((total - rest.get(response, response)) / total).hi
                                                : std::numeric_limits<double>::quiet_NaN();
    return result;
}

#ifdef NUVO_HAS_AVX2
[[gnu::flatten]] NUVO_AVX2 Elimination regressAvx2(Triangle &rest)
{
    return regress(rest);
}
#endif

Elimination eliminated(Triangle &products)
{
#ifdef NUVO_HAS_AVX2
    if (useAvx2())
        return regressAvx2(products);
#endif
    return regress(products);
}

using Rows = std::vector<std::vector<double>>;

// X and its products as combinations of the constant, C and its products, in this order: lower triangular.
Rows combinations(std::span<const double> means, const Rows &root)
{
    const std::size_t m = means.size();
    const auto product = [m](std::size_t i, std::size_t j) { return 1 + m + (i * (2 * m - i + 1)) / 2 + (j - i); };
    const std::size_t count = 1 + m + m * (m + 1) / 2;
    Rows result(count, std::vector<double>(count));
    result[0][0] = 1;
    for (std::size_t j = 0; j < m; ++j) {
        result[1 + j][0] = means[j];
        for (std::size_t k = 0; k <= j; ++k)
            result[1 + j][1 + k] = root[k][j];
    }
    for (std::size_t i = 0; i < m; ++i) {
        for (std::size_t j = i; j < m; ++j) {
            std::vector<double> &row = result[product(i, j)];
            row[0] = means[i] * means[j];
            for (std::size_t k = 0; k <= j; ++k)
                row[1 + k] = means[i] * root[k][j] + (k <= i ? means[j] * root[k][i] : 0);
            for (std::size_t k = 0; k <= i; ++k)
                for (std::size_t l = 0; l <= j; ++l)
                    row[k <= l ? product(k, l) : product(l, k)] += root[k][i] * root[l][j];
        }
    }
    return result;
}

// Whether every one of these combinations of columns, of which all were kept, is one that regressOn() would keep.
bool allResolved(const Rows &combination, const Triangle &eliminated)
{
    // The factors of the combinations' own elimination are those of the columns, combined.
    const std::size_t count = combination.size();
    Rows factors(count, std::vector<double>(count));
    std::vector<double> length(count);
    std::vector<int> before;
    for (std::size_t i = 0; i < count; ++i) {
        double square = 0;
        for (std::size_t k = 0; k <= i; ++k)
            for (std::size_t j = 0; j <= k; ++j)
                factors[i][j] += combination[i][k] * (j == k ? 1 : eliminated.factor(int(k), int(j)));
        for (std::size_t j = 0; j <= i; ++j) {
            square += factors[i][j] * factors[i][j] * eliminated.get(int(j), int(j)).hi;
            if (j < i)
                factors[i][j] /= combination[j][j];
        }
        length[i] = std::sqrt(square);
        const double size = sizeOf(int(i), before, length, [&](int k, int j) { return factors[k][j]; });
        const double left = combination[i][i] * combination[i][i] * eliminated.get(int(i), int(i)).hi;
        if (!(left > ResolvedSquare * size * size))
            return false;
        before.push_back(int(i));
    }
    return true;
}

} // namespace

Explained regressOn(std::span<const ExtendedColumn> columns, DataColumn response, int n)
{
    Triangle products(columns, response, n);
    return eliminated(products).explained;
}

std::optional<Explained> regressOnProducts(std::span<const DataColumn> columns, std::span<const double> means,
                                           const std::vector<std::vector<double>> &root, DataColumn response, int n)
{
    std::vector<ExtendedColumn> all;
    for (const DataColumn &column : columns)
        all.push_back({column, nullptr});
    std::vector<std::vector<double>> products;
    products.reserve(columns.size() * (columns.size() + 1) / 2);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        for (std::size_t j = i; j < columns.size(); ++j) {
            std::vector<double> &product = products.emplace_back(n);
            for (int k = 0; k < n; ++k)
                product[k] = columns[i].values[k] * columns[j].values[k];
            all.push_back({{product.data(), minMax(product.data(), n).largest()}, nullptr});
        }
    }
    Triangle triangle(all, response, n);
    const Elimination result = eliminated(triangle);
    if (result.before.size() < all.size() + 1 || !allResolved(combinations(means, root), triangle))
        return std::nullopt;
    return result.explained;
}

} // namespace nuvo
