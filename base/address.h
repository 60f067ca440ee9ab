// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// The address that a typed word denotes, read as "%p" does: hexadecimal, with or without 0x. Null, with
/// `errno` EFAULT, when nothing converts or it converts to 0. Whether the process may touch the address is
/// not asked.
void *cadtop(const char *texto);

/// The address itself, of which the compiler then knows nothing: whatever the user typed, null included, the
/// access is made where the code says, and neither dropped nor moved.
template<class T> T *Opaca(T *dir) {
    asm volatile("" : "+r"(dir) : : "memory");
    return dir;
}

/// Memory is granted and refused by pages. No system has smaller ones; where they are larger, what goes by
/// pages goes in smaller steps than it need.
constexpr uintptr_t kTamPagina = 4096;
