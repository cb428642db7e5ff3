// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Crossproducts.h"

#include <cstdint>
#include <vector>

namespace nuvo {

/// A set of control variables: bit j - 1 stands for control j.
using ControlSet = std::uint32_t;

/// The residual sums of squares of all 2^m sets of m control variables, each with the constant, from one set of cross
/// products: a set is one step of elimination away from the set without its last control, so that all of them cost
/// little more than the m + 1 eliminations of the largest.
///
/// SSE is carried in double-double. Its error is about 2^-100 times the condition number of X'X with columns of
/// length 1, relative to y'y. It is a function of the set alone, to the last bit, whichever way a search came to the
/// set. An SSE within rounding of 0, as dependentColumns() has it for the combination of y and the columns, is 0: an
/// exact fit.
class NUVO_KERNEL_EXPORT SubsetSums
{
public:
    /// From the cross products of the constant, m controls and, as number m + 1, the response. \pre 0 <= m <= 10 and
    /// n = products[0][0] >= 1; a set with infinities or NaNs in it counts as dependent.
    SubsetSums(const CrossProducts &products, int m);

    int controls() const { return m_; }
    ControlSet all() const { return (ControlSet(1) << m_) - 1; }
    /// The number of observations.
    double count() const { return products_[0][0].hi; }

    /// The sum of squares around the mean; SSE of the empty set.
    DoubleDouble total() const { return nodes_[0].sse; }
    /// Of a dependent set, that of its independent controls.
    DoubleDouble sse(ControlSet set) const { return nodes_[set].sse; }

    /// Whether dependentColumns() names one of the set's columns, its controls in ascending order. A set of n
    /// controls or more always is.
    bool dependent(ControlSet set) const { return nodes_[set].rank < sizeOf(set); }
    /// The number of independent controls in the set.
    int rank(ControlSet set) const { return nodes_[set].rank; }
    /// n - 1 - rank(set); not below 0.
    double degreesOfFreedom(ControlSet set) const { return count() - 1 - rank(set); }

    static int sizeOf(ControlSet set) { return __builtin_popcount(set); }
    /// The number of its last control; 0 of the empty set.
    static int lastOf(ControlSet set) { return 32 - (set == 0 ? 32 : __builtin_clz(set)); }

    /// The step of elimination from a set without its last control k to the set: what of column k is left by the
    /// others has the squared length `pivot`, and factor[j - k - 1] of it is in column j, k < j <= m + 1, the
    /// response last. Without a meaning for a dependent set.
    struct Step
    {
        DoubleDouble pivot;
        /// The length of column k around its mean by the length of what is left, the largest of the set.
        double growth;
        const DoubleDouble *factor;
    };
    Step step(ControlSet set) const { return {nodes_[set].pivot, nodes_[set].growth, &factors_[firstFactor(set)]}; }
    const CrossProducts &products() const { return products_; }

private:
    struct Node
    {
        DoubleDouble sse;
        DoubleDouble pivot;
        double growth = 1;
        int rank = 0;
    };

    std::size_t firstFactor(ControlSet set) const;

    friend struct SubsetTree;

    CrossProducts products_;
    int m_;
    std::vector<Node> nodes_;
    std::vector<DoubleDouble> factors_; ///< of the sets in ascending order
};

} // namespace nuvo
