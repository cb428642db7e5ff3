// SPDX-License-Identifier: MIT
#include "engine/kernel/Subsetpress.h"

#include "engine/kernel/Instructionset.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

// The rows are worked through in blocks that stay in the first-level cache, the whole tree for each block.

namespace nuvo {

namespace {

constexpr int Rows = 32;
constexpr double none = std::numeric_limits<double>::quiet_NaN();

struct alignas(32) Doubles
{
    double value[Rows];

    // The next value less the mean.
    void centre(int i, double x, DoubleDouble mean) { value[i] = (x - mean.hi) - mean.lo; }
    void fill(double x) { std::fill_n(value, Rows, x); }

    // from - factor * of
    void setDifference(const Doubles &from, DoubleDouble factor, const Doubles &of)
    {
        for (int i = 0; i < Rows; ++i)
            value[i] = from.value[i] - factor.hi * of.value[i];
    }

    // before - x^2 / pivot
    void setWithout(const Doubles &before, const Doubles &x, DoubleDouble pivot)
    {
        const double inverse = 1 / pivot.hi;
        for (int i = 0; i < Rows; ++i)
            value[i] = before.value[i] - x.value[i] * (x.value[i] * inverse);
    }
    double high(int i) const { return value[i]; }
};

struct alignas(32) DoubleDoubleRows
{
    double hi[Rows];
    double lo[Rows];

    DoubleDouble get(int i) const { return {hi[i], lo[i]}; }
    void set(int i, DoubleDouble x)
    {
        hi[i] = x.hi;
        lo[i] = x.lo;
    }
    void centre(int i, double x, DoubleDouble mean) { set(i, DoubleDouble(x) - mean); }
    void fill(double x)
    {
        for (int i = 0; i < Rows; ++i)
            set(i, x);
    }
    void setDifference(const DoubleDoubleRows &from, DoubleDouble factor, const DoubleDoubleRows &of)
    {
        for (int i = 0; i < Rows; ++i)
            set(i, from.get(i) - factor * of.get(i));
    }
    void setWithout(const DoubleDoubleRows &before, const DoubleDoubleRows &x, DoubleDouble pivot)
    {
        const DoubleDouble inverse = DoubleDouble(1) / pivot;
        for (int i = 0; i < Rows; ++i)
            set(i, before.get(i) - x.get(i) * (x.get(i) * inverse));
    }
    double high(int i) const { return hi[i]; }
};

// A set in the tree: one that is asked for, or on the way to one.
struct Visit
{
    ControlSet set;
    int depth;  // the number of its controls
    int column; // its last one
    bool wanted;
    bool inner; // sets after it follow from it
    DoubleDouble pivot;
    const DoubleDouble *factor; // of its column in the columns after, the response last
};

struct Result
{
    double press = 0;
    double least = std::numeric_limits<double>::infinity(); // 1 - h
};

template <class Numbers>
struct Blocks
{
    Numbers left[MaxParameters][MaxParameters + 1]; // of column j after the first `depth` controls of a set
    Numbers without[MaxParameters];                 // 1 - h

    // What the tree needs is all in the columns from 1 to `response`, around their means.
    void add(std::span<const Visit> visits, int response, std::span<Result> results)
    {
        auto result = results.begin();
        for (const Visit &visit : visits) {
            const Numbers *before = left[visit.depth - 1];
            Numbers *after = left[visit.depth];
            const Numbers &own = before[visit.column];
            for (int j = visit.inner ? visit.column + 1 : response; j <= response; ++j)
                after[j].setDifference(before[j], visit.factor[j - visit.column - 1], own);
            without[visit.depth].setWithout(without[visit.depth - 1], own, visit.pivot);
            if (visit.wanted)
                add(after[response], without[visit.depth], *result++);
        }
    }

    // Four rows share a division, which costs more than all else: 1 / u0 is (1 / (u0 u1 u2 u3)) u1 u2 u3. The order
    // of the sums is the same however many numbers an instruction takes.
    static void add(const Numbers &e, const Numbers &u, Result &result)
    {
        constexpr int quarter = Rows / 4;
        double squares[quarter];
        double least[quarter];
        // Unrolled completely it would not be vectorised.
#pragma GCC unroll 1
        for (int i = 0; i < quarter; ++i) {
            const double u0 = u.high(i);
            const double u1 = u.high(i + quarter);
            const double u2 = u.high(i + 2 * quarter);
            const double u3 = u.high(i + 3 * quarter);
            const double inverse = 1 / ((u0 * u1) * (u2 * u3));
            const double first = inverse * (u2 * u3);
            const double second = inverse * (u0 * u1);
            const double e0 = e.high(i) * (first * u1);
            const double e1 = e.high(i + quarter) * (first * u0);
            const double e2 = e.high(i + 2 * quarter) * (second * u3);
            const double e3 = e.high(i + 3 * quarter) * (second * u2);
            squares[i] = (e0 * e0 + e1 * e1) + (e2 * e2 + e3 * e3);
            const double less01 = u0 < u1 ? u0 : u1;
            const double less23 = u2 < u3 ? u2 : u3;
            least[i] = less01 < less23 ? less01 : less23;
        }
        for (int half = quarter / 2; half >= 4; half /= 2) {
            for (int i = 0; i < half; ++i) {
                squares[i] += squares[i + half];
                least[i] = least[i] < least[i + half] ? least[i] : least[i + half];
            }
        }
        result.press += (squares[0] + squares[1]) + (squares[2] + squares[3]);
        result.least = std::min({result.least, least[0], least[1], least[2], least[3]});
    }

    void run(std::span<const Visit> visits, const SubsetSums &sums, std::span<const double *const> columns, int n,
             std::span<Result> results)
    {
        const int response = static_cast<int>(columns.size());
        const CrossProducts &products = sums.products();
        for (int from = 0; from < n; from += Rows) {
            const int count = std::min(Rows, n - from);
            for (int j = 1; j <= response; ++j) {
                const DoubleDouble mean = products[0][j] / products[0][0];
                if (count < Rows)
                    left[0][j].fill(0); // rows that add nothing
                for (int i = 0; i < count; ++i)
                    left[0][j].centre(i, columns[std::size_t(j) - 1][from + i], mean);
            }
            without[0].fill(1);
            for (int i = 0; i < Rows; ++i)
                without[0].centre(i, 1, DoubleDouble(1) / products[0][0]);
            add(visits, response, results);
        }
    }
};

#ifdef NUVO_HAS_AVX2
template <class Numbers>
[[gnu::flatten]] NUVO_AVX2 void runAvx2(Blocks<Numbers> &blocks, std::span<const Visit> visits,
                                        const SubsetSums &sums, std::span<const double *const> columns, int n,
                                        std::span<Result> results)
{
    blocks.run(visits, sums, columns, n, results);
}
#endif

template <class Numbers>
void run(std::span<const Visit> visits, const SubsetSums &sums, std::span<const double *const> columns, int n,
         std::span<Result> results)
{
    const auto blocks = std::make_unique_for_overwrite<Blocks<Numbers>>();
#ifdef NUVO_HAS_AVX2
    if (useAvx2()) {
        runAvx2(*blocks, visits, sums, columns, n, results);
        return;
    }
#endif
    blocks->run(visits, sums, columns, n, results);
}

// The sets of the tree that the wanted ones need, each after the one it follows from.
std::vector<Visit> visitsOf(const SubsetSums &sums, const std::vector<bool> &wanted)
{
    std::vector<bool> inner(wanted.size());
    for (ControlSet set = static_cast<ControlSet>(wanted.size()); set-- > 1;) {
        if (wanted[set] || inner[set])
            inner[set & ~(ControlSet(1) << (SubsetSums::lastOf(set) - 1))] = true;
    }
    std::vector<Visit> visits;
    // Depth first: down to the next control if the set has use for it, else to its neighbour, else up.
    const auto visit = [&](auto &self, ControlSet set, int from) -> void {
        for (int k = from; k <= sums.controls(); ++k) {
            const ControlSet next = set | ControlSet(1) << (k - 1);
            if (!wanted[next] && !inner[next])
                continue;
            const SubsetSums::Step step = sums.step(next);
            visits.push_back({next, SubsetSums::sizeOf(next), k, wanted[next], inner[next], step.pivot, step.factor});
            if (inner[next])
                self(self, next, k + 1);
        }
    };
    visit(visit, 0, 1);
    return visits;
}

// Gives take() what comes out for each of the wanted sets.
template <class Numbers, class Take>
void work(const SubsetSums &sums, const std::vector<bool> &wanted, std::span<const double *const> columns, int n,
          Take take)
{
    const std::vector<Visit> visits = visitsOf(sums, wanted);
    if (visits.empty())
        return;
    std::vector<Result> results(visits.size());
    run<Numbers>(visits, sums, columns, n, results);
    auto result = results.begin();
    for (const Visit &visit : visits) {
        if (visit.wanted)
            take(visit.set, *result++);
    }
}

} // namespace

std::vector<double> pressOf(const SubsetSums &sums, std::span<const ControlSet> sets,
                            std::span<const double *const> columns, int n)
{
    std::vector<double> press(std::size_t(sums.all()) + 1, none);
    std::vector<bool> wanted(press.size());
    for (const ControlSet set : sets)
        wanted[set] = set != 0 && !sums.dependent(set) && sums.degreesOfFreedom(set) > 0;

    // In doubles first. An element of what is left of a column has an error of some units of the column's own length,
    // and that goes into the residual and, by its square, into the leverage.
    const auto goodInDoubles = [&](ControlSet set, double least) {
        const double residual = std::sqrt(sums.total().hi / sums.sse(set).hi);
        return 16 * 0x1p-53 * sums.step(set).growth * (residual + 1 / least) <= 1e-11 && least > 0;
    };
    work<Doubles>(sums, wanted, columns, n, [&](ControlSet set, const Result &result) {
        if (!goodInDoubles(set, result.least))
            return;
        press[set] = result.press;
        wanted[set] = false;
    });
    work<DoubleDoubleRows>(sums, wanted, columns, n, [&](ControlSet set, const Result &result) {
        const double growth = sums.step(set).growth;
        const bool predictable = result.least > 1e-26 + 1e-28 * growth * growth;
        press[set] = !predictable ? none : sums.sse(set) == 0 ? 0 : result.press;
    });
    std::vector<double> out(sets.size());
    std::transform(sets.begin(), sets.end(), out.begin(), [&](ControlSet set) { return press[set]; });
    return out;
}

} // namespace nuvo
