// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

namespace nuvo {

inline constexpr int MaxLuOrder = 12;

/// Replaces the p by p matrix a by its LU factors (Crout's method with implicit partial pivoting; L has a unit
/// diagonal), for any number type. Rows are indexed from 0, a[i][j]; indx[j] is the row, counted from 1, that
/// changed places with row j + 1; d becomes +1 or -1, the parity of these exchanges.
///
/// Among equal candidates the last one is the pivot. Where nothing compares (NaN) the pivot row is j. A pivot that is
/// exactly zero becomes 1e-20. A zero row scales its candidates by 1 / 0 and the work goes on.
/// \return the number of rows whose largest absolute value is exactly 0.
/// \pre p <= MaxLuOrder.
///
/// The products are subtracted from the whole remainder of the matrix as soon as a pivot is known, instead of from
/// one element at a time when its turn comes: each element sees the same subtractions in the same order, hence the
/// same result to the last bit, but neighbouring ones do not wait for each other.
template <class Number, class Row>
int ludecomp(Row *a, int p, int *indx, double &d)
{
    using std::abs;
    int zeroRows = 0;
    Number scale[MaxLuOrder];
    d = 1;
    for (int i = 0; i < p; ++i) {
        Number big = 0;
        for (int j = 0; j < p; ++j) {
            const Number size = abs(a[i][j]);
            if (size > big)
                big = size;
        }
        if (big == 0)
            ++zeroRows;
        scale[i] = Number(1) / big;
    }
    for (int j = 0; j < p; ++j) {
        int pivot = j;
        Number big = 0;
        for (int i = j; i < p; ++i) {
            const Number candidate = scale[i] * abs(a[i][j]);
            if (candidate >= big) {
                big = candidate;
                pivot = i;
            }
        }
        if (pivot != j) {
            for (int k = 0; k < p; ++k) {
                const Number other = a[pivot][k];
                a[pivot][k] = a[j][k];
                a[j][k] = other;
            }
            d = -d;
            scale[pivot] = scale[j];
        }
        indx[j] = pivot + 1;
        if (a[j][j] == 0)
            a[j][j] = 1e-20;
        for (int i = j + 1; i < p; ++i) {
            const Number factor = a[i][j] / a[j][j];
            a[i][j] = factor;
            for (int k = j + 1; k < p; ++k)
                a[i][k] -= factor * a[j][k];
        }
    }
    return zeroRows;
}

inline bool isZero(double value)
{
    return value == 0;
}
inline void subtractProduct(double &from, double factor, double value)
{
    from -= factor * value;
}

/// Solves A z = b in place from the factors of ludecomp, by forward and back substitution; b[0] to b[p - 1] is the
/// right side, or a row each of several right sides: anything with isZero(), subtractProduct() and operator/.
template <class Row, class Side>
void lubacksub(const Row *a, int p, const int *indx, Side *b)
{
    int first = p; // the first row with something in it: the leading zeros stay zeros
    for (int i = 0; i < p; ++i) {
        Side &from = b[indx[i] - 1];
        Side sum = from;
        from = b[i];
        if (first < i) {
            for (int k = first; k < i; ++k)
                subtractProduct(sum, a[i][k], b[k]);
        } else if (!isZero(sum)) {
            first = i;
        }
        b[i] = sum;
    }
    for (int i = p - 1; i >= 0; --i) {
        Side sum = b[i];
        for (int k = i + 1; k < p; ++k)
            subtractProduct(sum, a[i][k], b[k]);
        b[i] = sum / a[i][i];
    }
}

} // namespace nuvo
