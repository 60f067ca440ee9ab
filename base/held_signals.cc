// SPDX-License-Identifier: MIT

#include "base/held_signals.h"

#include <atomic>
#include <cerrno>

namespace {

sigset_t deUnaVez_;  // those of the held signals whose handler the system takes away
sigset_t retenidas_; // changed by commands alone, and in one word of it at a time
sigset_t porSoltar_; // what a jump has left held; it only grows until that has been let go

// Read by handlers too.
volatile sig_atomic_t hayRetenidas_; // until one is named, a write costs no other system call
volatile sig_atomic_t hayDeUnaVez_;

std::atomic<const Retencion *> vigente_; // the last write that began; null: none is under way
static_assert(std::atomic<const Retencion *>::is_always_lock_free, "handlers change it");

/// Those of retenidas_ that have a handler at this moment.
sigset_t RetenidasConManejador() {
    sigset_t conManejador = retenidas_;
    struct sigaction accion;
    for (int sig = 1; hayDeUnaVez_ && sig < NSIG; sig++)
        if (sigismember(&deUnaVez_, sig) == 1 && sigaction(sig, nullptr, &accion) == 0 &&
            accion.sa_handler == SIG_DFL)
            sigdelset(&conManejador, sig);
    return conManejador;
}

} // namespace

void RetenerSenales(Retencion *retencion) {
    // The mask is asked for before it is changed: between the two nothing is held yet, and then the list says
    // already what to put back. A mask that could not be had is not touched.
    retencion->hecha = hayRetenidas_ && sigprocmask(SIG_BLOCK, nullptr, &retencion->previa) == 0;
    if (!retencion->hecha) return;
    const sigset_t retener = RetenidasConManejador();
    retencion->anterior = vigente_.load(std::memory_order_relaxed);
    vigente_.store(retencion, std::memory_order_release);
    sigprocmask(SIG_BLOCK, &retener, nullptr);
}

void DevolverSenales(const Retencion &retencion) {
    if (!retencion.hecha) return;
    const int motivo = errno;
    sigprocmask(SIG_SETMASK, &retencion.previa, nullptr); // the handlers that waited run here, and may write
    vigente_.store(retencion.anterior, std::memory_order_release);
    errno = motivo;
}

void RetenerAlVolcar(int sig, bool imprime, bool unaVez) {
    switch (sig) {
    case SIGSEGV:
    case SIGBUS:
    case SIGFPE:
    case SIGILL: return;
    default: break;
    }
    if (!imprime && !hayRetenidas_) return;
    (imprime && unaVez ? sigaddset : sigdelset)(&deUnaVez_, sig);
    (imprime ? sigaddset : sigdelset)(&retenidas_, sig);
    if (imprime && unaVez) hayDeUnaVez_ = 1;
    hayRetenidas_ = 1;
}

void ApuntarRetenidas() {
    const Retencion *cortada = vigente_.load(std::memory_order_acquire);
    if (!cortada) return;
    for (int sig = 1; sig < NSIG; sig++)
        if (sigismember(&retenidas_, sig) == 1 && sigismember(&cortada->previa, sig) == 0)
            sigaddset(&porSoltar_, sig);
    vigente_.store(nullptr, std::memory_order_release); // its frame goes
}

void SoltarRetenidas() {
    sigprocmask(SIG_UNBLOCK, &porSoltar_, nullptr);
    sigemptyset(&porSoltar_);
}
