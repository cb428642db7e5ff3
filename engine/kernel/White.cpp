// SPDX-License-Identifier: MIT
#include "engine/kernel/White.h"

#include "engine/kernel/Dependence.h"
#include "engine/kernel/Distributions.h"
#include "engine/kernel/Instructionset.h"
#include "engine/kernel/Resolution.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace nuvo {

namespace {

using Column = std::vector<double>;

// Constant, m columns, their products (11, 12, …, 22, …) and a response: where each stands, and the sums of their
// products, in doubles.
class Products
{
public:
    static constexpr int MaxCount = 1 + MaxControls + MaxControls * (MaxControls + 1) / 2 + 1;

    explicit Products(int m) : m_(m), count_(1 + m + m * (m + 1) / 2) {}

    /// Without the response, which is the last one.
    int count() const { return count_; }
    int product(int i, int j) const { return 1 + m_ + (i - 1) * (2 * m_ - i + 2) / 2 + (j - i); }

    double &sum(int i, int j) { return sums_[i][j]; }
    const double *row(int i) const { return sums_[i]; }
    double *row(int i) { return sums_[i]; }

    // The upper triangle. A sum of four factors is worked out once, from the two that come first and the two others.
    void add(const Observed &observed, double scale, const double *response)
    {
        for (int from = 0; from < observed.n; from += RowsAtOnce) {
            alignas(32) double rows[RowsAtOnce][MaxCount] = {};
            for (int r = 0; r < RowsAtOnce && from + r < observed.n; ++r) {
                double *row = rows[r];
                row[0] = 1;
                for (int i = 1; i <= m_; ++i)
                    row[i] = observed.q[i][from + r] * scale;
                for (int i = 1; i <= m_; ++i)
                    for (int j = i; j <= m_; ++j)
                        row[product(i, j)] = row[i] * row[j];
                row[count_] = response[from + r];
            }
            addRow(rows, 0, 0);
            for (int i = 1; i <= m_; ++i)
                addRow(rows, i, product(i, i));
            for (int i = 1; i <= m_; ++i)
                for (int j = i; j <= m_; ++j)
                    addRow(rows, product(i, j), product(j, j));
            double square = 0;
            for (const double *row : rows)
                square += row[count_] * row[count_];
            sums_[count_][count_] += square;
        }
        // The others, from those.
        for (int i = 1; i <= m_; ++i) {
            for (int j = 1; j <= m_; ++j)
                if (j >= i)
                    sums_[i][j] = sums_[0][product(i, j)];
            for (int k = 1; k < i; ++k)
                for (int l = k; l <= m_; ++l)
                    sums_[i][product(k, l)] = sums_[k][product(std::min(i, l), std::max(i, l))];
        }
        for (int i = 1; i <= m_; ++i)
            for (int j = i; j <= m_; ++j)
                for (int k = i; k < j; ++k) // k before j: sorted they are i k . .
                    for (int l = k; l <= m_; ++l)
                        sums_[product(i, j)][product(k, l)] =
                            sums_[product(i, k)][product(std::min(j, l), std::max(j, l))];
    }

private:
    static constexpr int RowsAtOnce = 8;

    void addRow(const double (&rows)[RowsAtOnce][MaxCount], int i, int from)
    {
        double *sums = sums_[i];
        for (int j = from; j <= count_; ++j) {
            double sum = rows[0][i] * rows[0][j];
            for (int r = 1; r < RowsAtOnce; ++r)
                sum += rows[r][i] * rows[r][j];
            sums[j] += sum;
        }
    }

    int m_;
    int count_;
    double sums_[MaxCount][MaxCount] = {};
};

struct Result
{
    bool resolved = false;
    Explained explained;
};

// The terms and their products as combinations of the constant, Q's columns and their products, lower triangular: x
// is mean + R' q.
std::vector<Column> combinations(const Factors &factors, double scale, const Products &place)
{
    const int m = factors.rank() - 1;
    std::vector<double> mean(m + 1);
    std::vector<Column> root(m + 1, Column(m + 1)); // column j of R, by j
    for (int j = 1; j <= m; ++j) {
        mean[j] = (factors.products[0][factors.kept[j]] / factors.products[0][0]).hi;
        for (int k = 1; k <= j; ++k) {
            DoubleDouble value;
            for (int i = 0; i <= k; ++i)
                value += factors.inverseRoot[k][i] * factors.products[factors.kept[i]][factors.kept[j]];
            root[j][k] = value.hi / scale;
        }
    }
    std::vector<Column> result(place.count(), Column(place.count()));
    result[0][0] = 1;
    for (int i = 1; i <= m; ++i) {
        result[i][0] = mean[i];
        for (int k = 1; k <= i; ++k)
            result[i][k] = root[i][k];
        for (int j = i; j <= m; ++j) {
            Column &row = result[place.product(i, j)];
            row[0] = mean[i] * mean[j];
            for (int k = 1; k <= j; ++k)
                row[k] = mean[i] * root[j][k] + (k <= i ? mean[j] * root[i][k] : 0);
            for (int k = 1; k <= i; ++k)
                for (int l = 1; l <= j; ++l)
                    row[place.product(std::min(k, l), std::max(k, l))] += root[i][k] * root[j][l];
        }
    }
    return result;
}

// Whether regressOn() would keep all these combinations of the columns behind `eliminated`, whose rows hold pivots
// and what is left of products with them.
bool allResolved(const std::vector<Column> &combination, const Products &eliminated)
{
    const int count = eliminated.count();
    std::vector<Column> factors(count, Column(count)); // of the combinations' own elimination
    std::vector<Column> own(count, Column(count));     // of the columns' elimination, the diagonal in it
    for (int k = 0; k < count; ++k) {
        const double *left = eliminated.row(k);
        for (int j = k; j < count; ++j)
            own[j][k] = left[j] / left[k];
    }
    Column length(count);
    Column nearest(count);
    for (int i = 0; i < count; ++i) {
        Column &row = factors[i];
        for (int j = 0; j <= i; ++j) {
            const double part = combination[i][j];
            if (part == 0)
                continue;
            for (int k = 0; k <= j; ++k)
                row[k] += part * own[j][k];
        }
        double square = 0;
        for (int k = 0; k <= i; ++k)
            square += row[k] * row[k] * eliminated.row(k)[k];
        length[i] = std::sqrt(square);
        for (int k = 0; k < i; ++k)
            row[k] /= combination[k][k];
        // The combination that is nearest to this one, from the last term up.
        double size = length[i];
        std::copy_n(row.begin(), i, nearest.begin());
        for (int k = i - 1; k >= 0; --k) {
            const double coefficient = nearest[k];
            size += std::fabs(coefficient) * length[k];
            for (int j = 0; j < k; ++j)
                nearest[j] -= factors[k][j] * coefficient;
        }
        const double left = combination[i][i] * combination[i][i] * eliminated.row(i)[i];
        if (!(left > ResolvedSquare * size * size))
            return false;
    }
    return true;
}

// By Q's columns and their products, which span what the terms and theirs do: so what rounding makes of products is
// small beside what is independent in them, however far from 0 the terms are, and doubles do. Not resolved where
// these products come near to depending on each other, or where a term or product has to be left out.
void byOrthogonalColumns(const Factors &factors, const Observed &observed, std::span<const double> response,
                         Result &out)
{
    constexpr double wellResolved = 1e-3;
    const double scale = std::sqrt(observed.n);
    Products sums(factors.rank() - 1);
    sums.add(observed, scale, response.data());
    const int count = sums.count();
    const double total = sums.row(count)[count];
    double explained = 0;
    double diagonal[Products::MaxCount];
    for (int k = 0; k < count; ++k)
        diagonal[k] = sums.row(k)[k];
    for (int k = 0; k < count; ++k) {
        const double *pivot = sums.row(k);
        if (!(pivot[k] > wellResolved * diagonal[k]))
            return;
        for (int i = k + 1; i < count; ++i) {
            const double factor = pivot[i] / pivot[k];
            double *row = sums.row(i);
            for (int j = i; j <= count; ++j)
                row[j] -= factor * pivot[j];
        }
        if (k > 0)
            explained += pivot[count] * pivot[count] / pivot[k];
    }
    out.resolved = allResolved(combinations(factors, scale, sums), sums);
    out.explained = {count - 1, explained / total};
}

#ifdef NUVO_HAS_AVX2
[[gnu::flatten]] NUVO_AVX2 void byOrthogonalColumnsAvx2(const Factors &factors, const Observed &observed,
                                                        std::span<const double> response, Result &out)
{
    byOrthogonalColumns(factors, observed, response, out);
}
#endif

// By the terms and their products themselves, with the low parts of these.
Explained byTerms(const Factors &factors, const ObservedColumns &observed, DataColumn response)
{
    const int n = observed.n;
    std::vector<Column> high;
    std::vector<Column> low;
    for (int k = 1; k < factors.rank(); ++k) {
        const int j = factors.kept[k];
        const double scale = std::ldexp(1.0, -factors.exponent[j]);
        high.emplace_back(n);
        low.emplace_back(n);
        for (int i = 0; i < n; ++i) {
            high.back()[i] = observed.x[j][i] * scale;
            low.back()[i] = observed.xLow[j] ? observed.xLow[j][i] * scale : 0;
        }
    }
    const std::size_t terms = high.size();
    for (std::size_t i = 0; i < terms; ++i) {
        for (std::size_t j = i; j < terms; ++j) {
            Column product(n);
            Column rest(n);
            for (int k = 0; k < n; ++k) {
                product[k] = high[i][k] * high[j][k];
                rest[k] = lowPartOfProduct(high[i][k], high[j][k]) + high[i][k] * low[j][k] + low[i][k] * high[j][k];
            }
            high.push_back(std::move(product));
            low.push_back(std::move(rest));
        }
    }
    std::vector<ExtendedColumn> columns;
    for (std::size_t k = 0; k < high.size(); ++k)
        columns.push_back({{high[k].data(), minMax(high[k].data(), n).largest()}, low[k].data()});
    return regressOn(columns, response, n);
}

} // namespace

TestResult whiteTest(const Factors &factors, const Observed &observed, const ObservedColumns &columns,
                     std::span<const double> squares)
{
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    if (factors.rank() < 2)
        return {none, none, none};
    const int n = observed.n;
    const double *values = squares.data();
    double mean = 0;
    means({&values, 1}, n, &mean);
    Column response(squares.begin(), squares.end());
    for (double &value : response)
        value -= mean;
    Result result;
#ifdef NUVO_HAS_AVX2
    if (useAvx2())
        byOrthogonalColumnsAvx2(factors, observed, response, result);
    else
#endif
        byOrthogonalColumns(factors, observed, response, result);
    if (!result.resolved)
        result.explained = byTerms(factors, columns, {response.data(), minMax(response.data(), n).largest()});
    const Explained &explained = result.explained;
    if (n <= explained.columns + 1)
        return {none, none, none};
    const double statistic = n * explained.rSquared;
    return {statistic, double(explained.columns), chiSquaredTail(statistic, explained.columns)};
}

} // namespace nuvo
