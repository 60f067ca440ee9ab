// SPDX-License-Identifier: MIT

#include "base/held_signals.h"

#include <atomic>
#include <cerrno>

namespace {

sigset_t deUnaVez_;      // those of the held signals whose handler the system takes away
sigset_t retenidas_;     // changed by commands alone, and in one word of it at a time
sigset_t mascaraPrevia_; // of use while reteniendo_ is 1

// Read and stored by handlers too.
volatile sig_atomic_t hayRetenidas_; // until one is named, a write costs no other system call
volatile sig_atomic_t hayDeUnaVez_;
volatile sig_atomic_t reteniendo_;

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

Retencion RetenerSenales() {
    Retencion retencion;
    retencion.cambiada = false;
    if (!hayRetenidas_ || reteniendo_) return retencion;
    const sigset_t retener = RetenidasConManejador();
    // Asked for into a variable of this call: a handler that runs before the flag is set writes too. From the
    // flag on none does, and a recovery jump finds what to put back. A mask that could not be had is not
    // touched.
    if (sigprocmask(SIG_BLOCK, nullptr, &retencion.previa) == -1) return retencion;
    reteniendo_ = 1;
    std::atomic_signal_fence(std::memory_order_seq_cst);
    mascaraPrevia_ = retencion.previa;
    retencion.cambiada = sigprocmask(SIG_BLOCK, &retener, nullptr) == 0;
    if (!retencion.cambiada) reteniendo_ = 0;
    return retencion;
}

void DevolverSenales(const Retencion &retencion) {
    if (!retencion.cambiada) return;
    const int motivo = errno;
    sigprocmask(SIG_SETMASK, &retencion.previa, nullptr);
    reteniendo_ = 0;
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
    if (!hayRetenidas_) {
        sigemptyset(&retenidas_);
        sigemptyset(&deUnaVez_);
    }
    (imprime && unaVez ? sigaddset : sigdelset)(&deUnaVez_, sig);
    (imprime ? sigaddset : sigdelset)(&retenidas_, sig);
    if (imprime && unaVez) hayDeUnaVez_ = 1;
    hayRetenidas_ = 1;
}

void SoltarRetenidas() {
    if (!reteniendo_) return;
    reteniendo_ = 0;
    sigset_t soltar;
    sigemptyset(&soltar);
    for (int sig = 1; sig < NSIG; sig++)
        if (sigismember(&retenidas_, sig) == 1 && sigismember(&mascaraPrevia_, sig) == 0)
            sigaddset(&soltar, sig);
    sigprocmask(SIG_UNBLOCK, &soltar, nullptr);
}
