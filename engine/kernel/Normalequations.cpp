// SPDX-License-Identifier: MIT
#include "engine/kernel/Normalequations.h"

#include "engine/kernel/Instructionset.h"
#include "engine/kernel/Ludecomp.h"
#include "engine/kernel/Resolution.h"

#include <algorithm>
#include <cmath>

namespace nuvo {

namespace {

using DoubleDoubles = std::array<DoubleDouble, MaxParameters + 1>;

// A row of all right sides of the normal equations, for lubacksub: the columns of the unit matrix, then X'y. High and
// low parts lie apart so that the loops are vectorised.
struct alignas(32) RightSides
{
    static constexpr int Count = MaxParameters + 1;
    static constexpr int Response = MaxParameters;

    double hi[Count] = {};
    double lo[Count] = {};

    DoubleDouble get(int k) const { return {hi[k], lo[k]}; }

    void set(int k, DoubleDouble value)
    {
        hi[k] = value.hi;
        lo[k] = value.lo;
    }

    friend bool isZero(const RightSides &side)
    {
        return std::all_of(side.hi, side.hi + Count, [](double value) { return value == 0; });
    }

    friend void subtractProduct(RightSides &from, DoubleDouble factor, const RightSides &side)
    {
        for (int k = 0; k < Count; ++k)
            from.set(k, from.get(k) - factor * side.get(k));
    }

    friend RightSides operator/(const RightSides &side, DoubleDouble divisor)
    {
        RightSides quotient;
        for (int k = 0; k < Count; ++k)
            quotient.set(k, side.get(k) / divisor);
        return quotient;
    }
};

// The same with X'y alone. The unit matrix beside it is what keeps isZero() false from the first row on; here it has
// to be said, so that the same subtractions take place.
struct ResponseSide
{
    DoubleDouble value;

    friend bool isZero(const ResponseSide &) { return false; }
    friend void subtractProduct(ResponseSide &from, DoubleDouble factor, const ResponseSide &side)
    {
        from.value -= factor * side.value;
    }
    friend ResponseSide operator/(const ResponseSide &side, DoubleDouble divisor) { return {side.value / divisor}; }
};

// The length of a column.
double norm(const CrossProducts &products, int column)
{
    return std::sqrt(products[column][column].hi);
}

// b, SSE and SSR from the coefficients before they are rounded, responseOf(i).
template <class ResponseOf>
void summarize(const CrossProducts &products, int m, ResponseOf responseOf, Coefficients &out)
{
    const int p = m + 1;
    DoubleDouble explained; // b'X'y
    for (int i = 0; i < p; ++i) {
        const DoubleDouble b = responseOf(i);
        explained += b * products[i][p];
        out.b[i] = b.hi;
    }
    const DoubleDouble total = products[0][p];
    // Without controls the mean explains all there is to explain; the difference would be rounding.
    out.ssr = m == 0 ? 0 : (explained - total * total / products[0][0]).hi;
    out.sse = (products[p][p] - explained).hi;
    if (out.sse < 0) {
        double size = norm(products, p);
        for (int i = 0; i < p; ++i)
            size += std::fabs(out.b[i]) * norm(products, i);
        if (out.sse >= -ResolvedSquare * size * size)
            out.sse = 0;
    }
}

void solve(const CrossProducts &products, int m, Coefficients &out)
{
    const int p = m + 1;
    DoubleDoubles factors[MaxParameters];
    ResponseSide sides[MaxParameters];
    for (int i = 0; i < p; ++i) {
        std::copy_n(products[i].begin(), p, factors[i].begin());
        sides[i].value = products[i][p];
    }
    int indx[MaxParameters];
    double d = 0;
    out.zeroRows = ludecomp<DoubleDouble>(factors, p, indx, d);
    lubacksub(factors, p, indx, sides);
    summarize(
        products, m, [&](int i) { return sides[i].value; }, out);
}

void solve(const CrossProducts &products, int m, NormalEquations &out)
{
    const int p = m + 1;
    DoubleDoubles factors[MaxParameters];
    RightSides sides[MaxParameters];
    for (int i = 0; i < p; ++i) {
        factors[i] = products[i];
        sides[i].hi[i] = 1;
        sides[i].set(RightSides::Response, products[i][p]);
    }
    int indx[MaxParameters];
    double d = 0;
    out.zeroRows = ludecomp<DoubleDouble>(factors, p, indx, d);
    lubacksub(factors, p, indx, sides);
    for (int i = 0; i < p; ++i) {
        for (int j = 0; j < p; ++j) {
            out.factors[i][j] = factors[i][j].hi;
            out.inverse[i][j] = sides[i].hi[j];
        }
    }
    summarize(
        products, m, [&](int i) { return sides[i].get(RightSides::Response); }, out);
}

void findDependent(const CrossProducts &products, int m, std::vector<int> &out)
{
    CrossProducts rest = products; // what the columns before leave, on and below the diagonal
    double factors[MaxParameters][MaxParameters];
    int before[MaxParameters]; // the columns before that are not left out
    int count = 0;
    for (int k = 0; k <= m; ++k) {
        // The coefficients of the combination, from the last one up, and the lengths of its terms together.
        double combination[MaxParameters];
        double size = norm(products, k);
        for (int i = count - 1; i >= 0; --i) {
            combination[i] = factors[k][before[i]];
            for (int j = i + 1; j < count; ++j)
                combination[i] -= factors[before[j]][before[i]] * combination[j];
            size += std::fabs(combination[i]) * norm(products, before[i]);
        }
        const double square = rest[k][k].hi;
        const double resolved = ResolvedSquare * size * size;
        if (square <= resolved && k > 0)
            out.push_back(k);
        if (!(square > resolved)) // or not comparable
            continue;
        before[count++] = k;
        for (int i = k + 1; i <= m; ++i) {
            const DoubleDouble factor = rest[i][k] / rest[k][k];
            factors[i][k] = factor.hi;
            for (int j = k + 1; j <= i; ++j)
                rest[i][j] -= factor * rest[j][k];
        }
    }
}

#ifdef NUVO_HAS_AVX2
// Everything is inlined into these, and so compiled for the instructions.
template <class Result>
[[gnu::flatten]] NUVO_AVX2 void solveAvx2(const CrossProducts &products, int m, Result &out)
{
    solve(products, m, out);
}

[[gnu::flatten]] NUVO_AVX2 void findDependentAvx2(const CrossProducts &products, int m, std::vector<int> &out)
{
    findDependent(products, m, out);
}
#endif

template <class Result>
Result solved(const CrossProducts &products, int m)
{
    Result result;
#ifdef NUVO_HAS_AVX2
    if (useAvx2()) {
        solveAvx2(products, m, result);
        return result;
    }
#endif
    solve(products, m, result);
    return result;
}

} // namespace

NormalEquations solveNormalEquations(const CrossProducts &products, int m)
{
    return solved<NormalEquations>(products, m);
}

Coefficients solveCoefficients(const CrossProducts &products, int m)
{
    return solved<Coefficients>(products, m);
}

std::vector<int> dependentColumns(const CrossProducts &products, int m)
{
    std::vector<int> result;
#ifdef NUVO_HAS_AVX2
    if (useAvx2()) {
        findDependentAvx2(products, m, result);
        return result;
    }
#endif
    findDependent(products, m, result);
    return result;
}

} // namespace nuvo
