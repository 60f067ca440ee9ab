// SPDX-License-Identifier: MIT

// sigaltstack: the stack on which handlers installed with SA_ONSTACK run, shown and set. It is what lets a
// handler run when the fault is that the ordinary stack has no room left.

#include <signal.h>

#include <cstdint>
#include <cstdlib>

#include "base/address.h"
#include "base/output.h"
#include "signals/commands.h"

namespace {

/// A heap block that serves as a stack is never released (a handler may have kept an address in it), nor
/// lost: it carries the address of the one before. Behind that lies a margin: the system looks only at
/// whether its own frame fits, and what a handler needs beyond it must not reach the blocks around.
struct BloquePila {
    BloquePila *anterior;
    char margen[2048];
    char pila[];
};
BloquePila *ultima_;

void Showstack() {
    stack_t pila;
    if (sigaltstack(nullptr, &pila) == -1)
        InformarError("Imposible obtener pila");
    else
        Imprimir("pila %ld bytes en %p\n", static_cast<long>(pila.ss_size), pila.ss_sp);
}

void Setstack(char *args[]) {
    stack_t pila = {};
    pila.ss_size = static_cast<size_t>(atol(args[0]));
    BloquePila *bloque = nullptr;
    if (args[1]) {
        pila.ss_sp = cadtop(args[1]);
    } else {
        // A negative size is one that malloc cannot give.
        bloque = static_cast<BloquePila *>(
            malloc(pila.ss_size < SIZE_MAX / 2 ? sizeof *bloque + pila.ss_size : SIZE_MAX / 2));
        if (bloque) pila.ss_sp = bloque->pila;
    }
    // A null base is refused here: the system would take it for an address.
    if (!pila.ss_sp || sigaltstack(&pila, nullptr) == -1) {
        InformarError("Imposible establecer pila");
        free(bloque);
    } else if (bloque) {
        bloque->anterior = ultima_;
        ultima_ = bloque;
    }
}

} // namespace

void Cmd_sigaltstack(char *args[]) {
    if (args[0])
        Setstack(args);
    else
        Showstack();
}
