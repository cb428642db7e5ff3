// SPDX-License-Identifier: MIT
#pragma once

/// Marks what the shared library shows of the kernel, whose objects are built once for the library and for programs
/// that need nothing else.
#if defined(__GNUC__)
#define NUVO_KERNEL_EXPORT [[gnu::visibility("default")]]
#else
#define NUVO_KERNEL_EXPORT
#endif
