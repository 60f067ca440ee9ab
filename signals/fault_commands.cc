// SPDX-License-Identifier: MIT

// Faults on purpose: a store through a null pointer, a division by zero. Watch which signal ends the shell,
// and what protectsegv and protectfpe (recovery_commands.cc) make of it.

#include <cmath>

#include "base/synchronisation.h"
#include "signals/commands.h"

// Faults on purpose. The operands are volatile: a compiler that saw the null pointer or the zero would drop
// the access or the division as something that cannot happen.
// NOLINTBEGIN(clang-analyzer-*,bugprone-integer-division): what they find is the lesson.

__attribute__((no_sanitize("undefined"))) void Cmd_segmentation(char *[]) {
    SincronizarES(); // the fault may be the end of the shell
    volatile int *volatile nulo = nullptr;
    *nulo = 0;
}

__attribute__((no_sanitize("undefined"))) void Cmd_fpe(char *[]) {
    SincronizarES();
    volatile int dividendo = 23, divisor = 0;
    // The integer division traps on some processors; the floating ones have an answer for everything.
    volatile float cociente = static_cast<float>(dividendo / divisor);
    cociente = INFINITY;
    cociente = std::sqrt(cociente);
}

// NOLINTEND(clang-analyzer-*,bugprone-integer-division)
