// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Doubledouble.h"
#include "engine/kernel/Instructionset.h"

#include <boost/multiprecision/cpp_int.hpp>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

inline constexpr double infinity = std::numeric_limits<double>::infinity();
inline constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// Rational arithmetic: what floating-point results are held against. Without expression templates, which take the
/// compiler longer than they save.
using Exact =
    boost::multiprecision::number<boost::multiprecision::cpp_rational_backend, boost::multiprecision::et_off>;

inline Exact exact(double value)
{
    return Exact(value);
}

inline Exact exact(nuvo::DoubleDouble value)
{
    return Exact(value.hi) + Exact(value.lo);
}

/// |got - wanted| / |wanted| to a few digits; 0 when they are equal.
inline double relativeError(const Exact &got, const Exact &wanted)
{
    const Exact error = abs(got - wanted);
    return error == 0 ? 0.0 : Exact(error / abs(wanted)).convert_to<double>();
}

/// The same number to the last bit, or NaN both.
inline bool same(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (std::isnan(a) && std::isnan(b));
}

inline bool same(nuvo::DoubleDouble a, nuvo::DoubleDouble b)
{
    return same(a.hi, b.hi) && same(a.lo, b.lo);
}

/// As on a processor without AVX2 while it lives.
class WithoutAvx2
{
public:
    WithoutAvx2() { nuvo::allowAvx2(false); }
    ~WithoutAvx2() { nuvo::allowAvx2(true); }
    WithoutAvx2(const WithoutAvx2 &) = delete;
    WithoutAvx2 &operator=(const WithoutAvx2 &) = delete;
};
