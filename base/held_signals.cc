#include "base/held_signals.h"

#include <atomic>
#include <cerrno>

namespace {

sigset_t retenidas_;     // changed by commands alone, and in one word of it at a time
sigset_t mascaraPrevia_; // of use while reteniendo_ is 1

// Read and stored by handlers too.
volatile sig_atomic_t hayRetenidas_; // until one is named, a write costs no other system call
volatile sig_atomic_t reteniendo_;

/// Those of retenidas_ that a handler would take now: a default action is not put off.
sigset_t RetenidasConManejador() {
    sigset_t conManejador = retenidas_;
    struct sigaction accion;
    for (int sig = 1; sig < NSIG; sig++)
        if (sigismember(&retenidas_, sig) == 1 && sigaction(sig, nullptr, &accion) == 0 &&
            (accion.sa_handler == SIG_DFL || accion.sa_handler == SIG_IGN))
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

void RetenerAlVolcar(int sig, bool imprime) {
    switch (sig) {
    case SIGSEGV:
    case SIGBUS:
    case SIGFPE:
    case SIGILL: return;
    default: break;
    }
    if (imprime) {
        if (!hayRetenidas_) sigemptyset(&retenidas_);
        sigaddset(&retenidas_, sig);
        hayRetenidas_ = 1;
    } else if (hayRetenidas_) {
        sigdelset(&retenidas_, sig);
    }
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
