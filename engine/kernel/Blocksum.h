// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Doubledouble.h"

#include <algorithm>
#include <cmath>

namespace nuvo {

/// Observations are taken in blocks of this size, so that the loops below have a fixed length and are vectorised.
inline constexpr int BlockSize = 64;

/// A block of numbers in double-double while terms are added to them.
struct alignas(32) BlockSum
{
    double hi[BlockSize];
    double lo[BlockSize];

    void clear(double value = 0)
    {
        std::fill_n(hi, BlockSize, value);
        std::fill_n(lo, BlockSize, 0.0);
    }

    /// + factor * x, each; the sum as if in double-double (Ogita, Rump and Oishi, SIAM J. Sci. Comput. 26, 2005).
    void add(DoubleDouble factor, const double *x)
    {
        for (int i = 0; i < BlockSize; ++i) {
            const double product = factor.hi * x[i];
            const double error = std::fma(factor.lo, x[i], std::fma(factor.hi, x[i], -product));
            const DoubleDouble sum = DoubleDouble::sum(hi[i], product);
            hi[i] = sum.hi;
            lo[i] += sum.lo + error;
        }
    }

    /// + factor * x, where that counts in the low part alone.
    void addLow(double factor, const double *x)
    {
        for (int i = 0; i < BlockSize; ++i)
            lo[i] += factor * x[i];
    }

    void normalise()
    {
        for (int i = 0; i < BlockSize; ++i) {
            const double sum = hi[i] + lo[i];
            lo[i] -= sum - hi[i];
            hi[i] = sum;
        }
    }

    /// - x^2, each.
    void subtractSquare(const BlockSum &x)
    {
        for (int i = 0; i < BlockSize; ++i) {
            const double square = x.hi[i] * x.hi[i];
            const double error = std::fma(x.hi[i], x.hi[i], -square) + 2 * x.hi[i] * x.lo[i];
            const DoubleDouble sum = DoubleDouble::sum(hi[i], -square);
            hi[i] = sum.hi;
            lo[i] += sum.lo - error;
        }
    }
};

} // namespace nuvo
