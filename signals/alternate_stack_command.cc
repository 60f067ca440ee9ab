#include <signal.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "memory/address.h"
#include "shell/output.h"
#include "signals/commands.h"

namespace {

/// The heap blocks that have served as stacks are never released (a handler may have kept an address in
/// them), nor lost: each carries, behind the stack, the address of the one before.
void *ultimaPila_;

/// A heap block for a stack of `tam` bytes, or null (ENOMEM).
void *NuevaPila(size_t tam) {
    constexpr size_t alineacion = sizeof(void *);
    const size_t enlace = (tam + alineacion - 1) / alineacion * alineacion;
    // A size that wraps is one that malloc cannot give.
    void *pila = malloc(enlace < tam || enlace > SIZE_MAX / 2 ? SIZE_MAX / 2 : enlace + sizeof ultimaPila_);
    if (!pila) return nullptr;
    memcpy(static_cast<char *>(pila) + enlace, &ultimaPila_, sizeof ultimaPila_);
    ultimaPila_ = pila;
    return pila;
}

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
    pila.ss_sp = args[1] ? cadtop(args[1]) : NuevaPila(pila.ss_size);
    // A null base is refused here: the system would take it for an address.
    if (!pila.ss_sp || sigaltstack(&pila, nullptr) == -1) InformarError("Imposible establecer pila");
}

} // namespace

void Cmd_sigaltstack(char *args[]) {
    if (args[0])
        Setstack(args);
    else
        Showstack();
}
