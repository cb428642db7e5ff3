// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <compare>

namespace nuvo {

/// A real number of about 106 significant bits (32 digits), kept as the unevaluated sum of two doubles with
/// |lo| <= ulp(hi) / 2. It is the intermediate precision of a fit: sums of products and what is solved from them
/// are carried in it and rounded to doubles when done.
///
/// The range is that of a double; below about 1e-290 the low part is lost to underflow. Where the plain double
/// result of an operation is an infinity or a NaN, so is hi, and lo is 0.
///
/// Relative errors, u = 2^-53: sum and difference 3 u^2, product 5 u^2, quotient 10 u^2, square root 4 u^2.
/// Sources: sum() is TwoSum (Knuth, The Art of Computer Programming 2, 4.2.2), joined() is Fast2Sum (Dekker, Numer.
/// Math. 18, 1971), product() is TwoProd with a fused multiply-add; sum and product of two of them after
/// Hida, Li and Bailey (ARITH-15, 2001), the quotient and the bounds after Joldes, Muller and Popescu (ACM TOMS 44,
/// 2017), the square root by one Newton step (Dekker 1971).
///
/// std::fma is right on every processor. It becomes one instruction in functions that are compiled for a processor
/// which has it, and these operations are branch-free so that loops over them can be vectorised there.
struct DoubleDouble
{
    double hi = 0;
    double lo = 0;

    constexpr DoubleDouble() = default;
    constexpr DoubleDouble(double value) : hi(value) {}
    constexpr DoubleDouble(double high, double low) : hi(high), lo(low) {}

    constexpr explicit operator double() const { return hi; }

    /// a + b exactly, barring overflow.
    static DoubleDouble sum(double a, double b)
    {
        const double s = a + b;
        const double bPart = s - a;
        return {s, (a - (s - bPart)) + (b - bPart)};
    }

    /// a * b exactly, barring overflow and an error term below the smallest double.
    static DoubleDouble product(double a, double b)
    {
        const double p = a * b;
        return {p, std::fma(a, b, -p)};
    }

    // NOLINTNEXTLINE(modernize-use-nullptr): taken for the literal 0 that the comparisons are rewritten with
    friend auto operator<=>(const DoubleDouble &, const DoubleDouble &) = default;

    friend DoubleDouble operator-(DoubleDouble a) { return {-a.hi, -a.lo}; }

    friend DoubleDouble operator+(DoubleDouble a, DoubleDouble b)
    {
        const DoubleDouble high = sum(a.hi, b.hi);
        const DoubleDouble low = sum(a.lo, b.lo);
        const double error = high.lo + low.hi;
        const double carried = high.hi + error;
        const double left = error - (carried - high.hi);
        return joined(carried, left + low.lo, high.hi);
    }

    friend DoubleDouble operator-(DoubleDouble a, DoubleDouble b) { return a + -b; }

    friend DoubleDouble operator*(DoubleDouble a, DoubleDouble b)
    {
        const DoubleDouble p = product(a.hi, b.hi);
        return joined(p.hi, std::fma(a.hi, b.lo, std::fma(a.lo, b.hi, p.lo)), p.hi);
    }

    friend DoubleDouble operator/(DoubleDouble a, DoubleDouble b)
    {
        const double quotient = a.hi / b.hi;
        const DoubleDouble back = b * quotient;
        const double rest = (a.hi - back.hi) + (a.lo - back.lo);
        return joined(quotient, rest / b.hi, quotient);
    }

    DoubleDouble &operator+=(DoubleDouble b) { return *this = *this + b; }
    DoubleDouble &operator-=(DoubleDouble b) { return *this = *this - b; }
    DoubleDouble &operator*=(DoubleDouble b) { return *this = *this * b; }
    DoubleDouble &operator/=(DoubleDouble b) { return *this = *this / b; }

    friend DoubleDouble abs(DoubleDouble a) { return std::signbit(a.hi) ? -a : a; }

    /// NaN for a negative number.
    friend DoubleDouble sqrt(DoubleDouble a)
    {
        const double root = std::sqrt(a.hi);
        const DoubleDouble square = product(root, root);
        const double rest = (a.hi - square.hi) + (a.lo - square.lo);
        return joined(root, rest / (2 * root), root);
    }

private:
    /// high + low normalised, |high| >= |low|; or `plain`, where that is not a finite number.
    static DoubleDouble joined(double high, double low, double plain)
    {
        const double s = high + low;
        const double rest = low - (s - high);
        const bool finite = s - s == 0;
        return {finite ? s : plain, finite ? rest : 0.0};
    }
};

} // namespace nuvo
