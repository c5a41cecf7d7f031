// SPDX-License-Identifier: MIT
// The one place that decides whether loops are written out in the instructions of x86-64, up to
// SSSE3. Each has the plain loop beside it, which all other machines run, and which a build with
// KELVANE_PORTABLE runs on this one.
#pragma once

#if defined(__x86_64__) && !defined(KELVANE_PORTABLE)
#define KELVANE_X86_64
#include <tmmintrin.h>
#endif
