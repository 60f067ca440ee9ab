// SPDX-License-Identifier: MIT

// recurse: the stack, frame by frame.

#include <cstdlib>

#include "base/large_storage.h"
#include "base/output.h"
#include "base/synchronisation.h"
#include "memory/commands.h"

namespace {

constexpr int kTamArray = 4096;

alignas(kAparte) char estatico_[kTamArray];

/// Shows where the parameter and the array of each frame lie; n is bounded by the stack alone. The stores and
/// the load after the call are volatile, so that the array is in use until the deeper frames are gone: the
/// compiler can neither drop it nor turn the recursion into a loop.
[[gnu::noinline]] void Recursiva(int n) {
    volatile char automatico[kTamArray];
    automatico[0] = 0;
    automatico[kTamArray - 1] = 0;
    Imprimir("parametro:%3d(%p) array %p, arr estatico %p\n", n, static_cast<void *>(&n),
             const_cast<char *>(automatico), estatico_);
    VolcarSalida(); // the next frame may be the one that overflows the stack
    if (n > 0) Recursiva(n - 1);
    static_cast<void>(automatico[0]);
}

} // namespace

void Cmd_recurse(char *args[]) {
    if (!args[0]) return;
    SincronizarES();
    Recursiva(atoi(args[0]));
}
