// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Export.h"

/// Marks a function for processors with AVX2 and fused multiply-add; what is inlined into it is compiled for them
/// too.
#if defined(__x86_64__) && defined(__GNUC__)
#define NUVO_HAS_AVX2 1
#define NUVO_AVX2 [[gnu::target("avx2,fma")]]
#endif

namespace nuvo {

/// Whether the functions marked NUVO_AVX2 may be called. All results are the same without them, to the last bit.
NUVO_KERNEL_EXPORT bool useAvx2();

/// For tests and benchmarks, which link the kernel's objects themselves: the library does not export it. False holds
/// useAvx2() to false, true lets the processor decide again.
void allowAvx2(bool allowed);

} // namespace nuvo
