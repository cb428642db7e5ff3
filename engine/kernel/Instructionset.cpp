// SPDX-License-Identifier: MIT
#include "engine/kernel/Instructionset.h"

#include <atomic>

namespace nuvo {

namespace {

bool processorHasAvx2()
{
#ifdef NUVO_HAS_AVX2
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
#else
    return false;
#endif
}

std::atomic<bool> avx2Allowed = true;

} // namespace

bool useAvx2()
{
    static const bool supported = processorHasAvx2();
    return supported && avx2Allowed.load(std::memory_order_relaxed);
}

void allowAvx2(bool allowed)
{
    avx2Allowed.store(allowed, std::memory_order_relaxed);
}

} // namespace nuvo
