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

Explained regress(Triangle &rest)
{
    const int response = rest.order() - 1;
    std::vector<double> length(rest.order());
    for (int k = 0; k <= response; ++k)
        length[k] = std::sqrt(rest.get(k, k).hi);
    std::vector<int> before; // columns that are not left out
    Explained result;
    DoubleDouble total;
    for (int k = 0; k < response; ++k) {
        const double size = sizeOf(k, before, length, rest);
        if (rest.get(k, k).hi > ResolvedSquare * size * size) {
            before.push_back(k);
            rest.eliminate(k);
        }
        if (k == 0)
            total = rest.get(response, response);
    }
    result.columns = static_cast<int>(before.size()) - 1;
    const double mean = ResolvedSquare * length[response] * length[response];
    result.rSquared = total.hi > mean ? ((total - rest.get(response, response)) / total).hi
                                      : std::numeric_limits<double>::quiet_NaN();
    return result;
}

#ifdef NUVO_HAS_AVX2
[[gnu::flatten]] NUVO_AVX2 Explained regressAvx2(Triangle &rest)
{
    return regress(rest);
}
#endif

Explained eliminated(Triangle &products)
{
#ifdef NUVO_HAS_AVX2
    if (useAvx2())
        return regressAvx2(products);
#endif
    return regress(products);
}

} // namespace

Explained regressOn(std::span<const ExtendedColumn> columns, DataColumn response, int n)
{
    Triangle products(columns, response, n);
    return eliminated(products);
}

} // namespace nuvo
