#include "engine/kernel/White.h"

#include "engine/kernel/Dependence.h"
#include "engine/kernel/Distributions.h"

#include <cmath>
#include <limits>
#include <optional>
#include <vector>

namespace nuvo {

namespace {

using Column = std::vector<double>;

// By the columns of Q, from which the terms are x = mean + (R)' q.
std::optional<Explained> byOrthogonalColumns(const Factors &factors, const Observed &observed, DataColumn response)
{
    const int p = factors.rank();
    std::vector<DataColumn> columns;
    std::vector<double> means;
    std::vector<Column> root(p - 1, Column(p - 1));
    for (int k = 1; k < p; ++k) {
        columns.push_back({observed.q[k].data(), minMax(observed.q[k].data(), observed.n).largest()});
        means.push_back((factors.products[0][factors.kept[k]] / factors.products[0][0]).hi);
        // The inverse of the inverse, by columns.
        for (int i = 1; i <= k; ++i) {
            DoubleDouble value;
            for (int j = 0; j <= factors.kept[i]; ++j)
                if (factors.place[j] >= 0)
                    value += factors.inverseRoot[i][factors.place[j]] * factors.products[j][factors.kept[k]];
            root[i - 1][k - 1] = value.hi;
        }
    }
    return regressOnProducts(columns, means, root, response, observed.n);
}

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
    const DataColumn response{squares.data(), minMax(squares.data(), observed.n).largest()};
    const std::optional<Explained> orthogonal = byOrthogonalColumns(factors, observed, response);
    const Explained explained = orthogonal ? *orthogonal : byTerms(factors, columns, response);
    if (observed.n <= explained.columns + 1)
        return {none, none, none};
    const double statistic = observed.n * explained.rSquared;
    return {statistic, double(explained.columns), chiSquaredTail(statistic, explained.columns)};
}

} // namespace nuvo
