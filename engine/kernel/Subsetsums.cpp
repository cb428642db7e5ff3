// SPDX-License-Identifier: MIT
#include "engine/kernel/Subsetsums.h"

#include "engine/kernel/Instructionset.h"
#include "engine/kernel/Resolution.h"

#include <algorithm>
#include <cmath>

namespace nuvo {

// A set's node follows from that of the set without its last control, the one level up: the tree is walked depth
// first, and a level holds what the columns eliminated so far leave of the products of those after them.
struct SubsetTree
{
    struct Level
    {
        int column;                                              // eliminated last
        DoubleDouble factor[MaxParameters + 1];                  // of it in the columns after
        DoubleDouble rest[MaxParameters + 1][MaxParameters + 1]; // [i][j], j <= i
    };

    explicit SubsetTree(SubsetSums &out) : sums(out), m(out.m_), response(out.m_ + 1)
    {
        for (int i = 0; i <= response; ++i)
            length[i] = std::sqrt(sums.products_[i][i].hi);
    }

    // The length of column k and those of the terms of the columns eliminated in `depth` levels, which together are
    // nearest to it.
    double sizeOfCombination(int depth, int k) const
    {
        double combination[MaxParameters];
        double size = length[k];
        for (int i = depth - 1; i >= 0; --i) {
            combination[i] = levels[i].factor[k].hi;
            for (int j = i + 1; j < depth; ++j)
                combination[i] -= levels[i].factor[levels[j].column].hi * combination[j];
            size += std::fabs(combination[i]) * length[levels[i].column];
        }
        return size;
    }

    bool resolved(double square, int depth, int k) const
    {
        const double size = sizeOfCombination(depth, k);
        return square > ResolvedSquare * size * size;
    }

    template <class Rest>
    void eliminate(int depth, int k, const Rest &rest)
    {
        Level &level = levels[depth];
        level.column = k;
        const DoubleDouble pivot = rest[k][k];
        for (int i = k + 1; i <= response; ++i) {
            const DoubleDouble factor = rest[i][k] / pivot;
            level.factor[i] = factor;
            for (int j = k + 1; j <= i; ++j)
                level.rest[i][j] = rest[i][j] - factor * rest[j][k];
        }
    }

    // What the columns of `depth` levels leave of the response.
    void setSse(SubsetSums::Node &node, int depth) const
    {
        const DoubleDouble sse = levels[depth - 1].rest[response][response];
        const bool freedom = sums.count() - 1 - node.rank > 0;
        node.sse = freedom && resolved(sse.hi, depth, response) ? sse : 0;
    }

    // The set with control k besides. \return the number of levels then.
    int add(ControlSet set, int depth, int k)
    {
        const ControlSet next = set | ControlSet(1) << (k - 1);
        SubsetSums::Node &node = sums.nodes_[next];
        const DoubleDouble left = levels[depth - 1].rest[k][k];
        node = sums.nodes_[set];
        if (!resolved(left.hi, depth, k)) // or not comparable
            return depth;
        eliminate(depth, k, levels[depth - 1].rest);
        ++node.rank;
        node.pivot = left;
        node.growth = std::max(node.growth, std::sqrt(around[k] / left.hi));
        std::copy(levels[depth].factor + k + 1, levels[depth].factor + response + 1,
                  sums.factors_.begin() + static_cast<std::ptrdiff_t>(sums.firstFactor(next)));
        setSse(node, depth + 1);
        return depth + 1;
    }

    void walk()
    {
        eliminate(0, 0, sums.products_);
        setSse(sums.nodes_[0], 1);
        for (int k = 1; k <= m; ++k)
            around[k] = levels[0].rest[k][k].hi;
        int members[MaxControls + 1];
        int depth[MaxControls + 1] = {1}; // with the first of the members
        ControlSet set = 0;
        int size = 0;
        for (int k = 1; k <= m || size > 0;) {
            if (k <= m) {
                depth[size + 1] = add(set, depth[size], k);
                members[++size] = k;
                set |= ControlSet(1) << (k - 1);
                ++k;
            } else {
                k = members[size--];
                set &= ~(ControlSet(1) << (k - 1));
                ++k;
            }
        }
    }

    SubsetSums &sums;
    int m;
    int response;
    double length[MaxParameters + 1];
    double around[MaxParameters + 1];
    Level levels[MaxParameters];
};

namespace {

#ifdef NUVO_HAS_AVX2
// Everything is inlined into this, and so compiled for the instructions.
[[gnu::flatten]] NUVO_AVX2 void walkAvx2(SubsetTree &tree)
{
    tree.walk();
}
#endif

} // namespace

SubsetSums::SubsetSums(const CrossProducts &products, int m) : products_(products), m_(m), nodes_(std::size_t(1) << m)
{
    factors_.resize(firstFactor(all()) + 1);
    SubsetTree tree(*this);
#ifdef NUVO_HAS_AVX2
    if (useAvx2()) {
        walkAvx2(tree);
        return;
    }
#endif
    tree.walk();
}

// The 2^(k - 1) sets whose last control is k have m + 1 - k factors each.
std::size_t SubsetSums::firstFactor(ControlSet set) const
{
    const int last = lastOf(set);
    std::size_t first = 0;
    for (int k = 1; k < last; ++k)
        first += (std::size_t(1) << (k - 1)) * std::size_t(m_ + 1 - k);
    return last == 0 ? 0 : first + (set - (std::size_t(1) << (last - 1))) * std::size_t(m_ + 1 - last);
}

} // namespace nuvo
