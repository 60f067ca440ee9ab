#include "base/output.h"

#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

constexpr size_t kTamSalida = 65536;

char texto_[kTamSalida];

/// The part of texto_ that is waiting to be written.
struct alignas(8) Tramo {
    uint32_t inicio, fin;
};
std::atomic<Tramo> tramo_;
static_assert(std::atomic<Tramo>::is_always_lock_free, "a handler must find both bounds or neither");

sigset_t retenidas_;               // the signals held off while writing
volatile bool hayRetenidas_;       // until one is named, a write costs no other system call
sigset_t mascaraPrevia_;           // the mask before a write that is under way
volatile sig_atomic_t reteniendo_; // a write is under way with signals held off
bool rechazada_;                   // descriptor 1 refused the last write

void Publicar(Tramo t) { tramo_.store(t, std::memory_order_release); }

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

/// EscribirTodo to descriptor 1 with the printing signals held off.
int EscribirReteniendo(const void *bytes, size_t n) {
    if (!hayRetenidas_ || reteniendo_) return EscribirTodo(STDOUT_FILENO, bytes, n);
    const sigset_t retener = RetenidasConManejador();
    // The mask is asked for into a variable of this call: a handler that runs before the flag is set writes
    // too. From the flag on none does, and a recovery jump finds what to put back.
    sigset_t previa;
    sigprocmask(SIG_BLOCK, nullptr, &previa);
    reteniendo_ = 1;
    mascaraPrevia_ = previa;
    sigprocmask(SIG_BLOCK, &retener, nullptr);
    const int resultado = EscribirTodo(STDOUT_FILENO, bytes, n);
    const int motivo = errno;
    sigprocmask(SIG_SETMASK, &previa, nullptr);
    reteniendo_ = 0;
    errno = motivo;
    return resultado;
}

/// Writes texto_ from inicio up to `hasta`, and lets go of it whatever happens. Returns 0, or -1 with the
/// `errno` of the refusal. Async-signal-safe.
int Escribir(uint32_t hasta) {
    const Tramo t = tramo_.load(std::memory_order_relaxed);
    const int resultado = EscribirReteniendo(texto_ + t.inicio, hasta - t.inicio);
    Publicar(hasta == t.fin ? Tramo{0, 0} : Tramo{hasta, t.fin});
    return resultado;
}

/// Tells of a refusal: the text is lost. Once, or a closed descriptor would double every line from there on.
/// Keeps `errno`.
void Avisar(int resultado) {
    if (resultado == 0) {
        rechazada_ = false;
    } else if (!rechazada_) {
        rechazada_ = true;
        InformarError("Imposible escribir en la salida estandar");
    }
}

/// Makes room for `n` bytes (at most kMaxReserva) at the end: writes the complete lines, keeps the line that
/// is still being formed. A line that fills half of the buffer is written in parts.
void HacerSitio(size_t n) {
    static_assert(kTamSalida / 2 >= kMaxReserva, "there is room behind half a buffer");
    const Tramo t = tramo_.load(std::memory_order_relaxed);
    if (kTamSalida - t.fin >= n) return;
    const void *fin = memrchr(texto_ + t.inicio, '\n', t.fin - t.inicio);
    uint32_t corte = fin ? static_cast<uint32_t>(static_cast<const char *>(fin) + 1 - texto_) : t.fin;
    if (t.fin - corte > corte) corte = t.fin;
    const int motivo = errno;
    const int resultado = Escribir(corte);
    const int rechazo = errno;
    if (const uint32_t resto = t.fin - corte; resto > 0) {
        memcpy(texto_, texto_ + corte, resto);
        Publicar({0, resto});
    }
    errno = rechazo;
    Avisar(resultado);
    errno = motivo;
}

} // namespace

int EscribirTodo(int df, const void *bytes, size_t n) {
    const char *p = static_cast<const char *>(bytes);
    while (n > 0) {
        const ssize_t escritos = write(df, p, n);
        if (escritos >= 0) {
            p += escritos;
            n -= static_cast<size_t>(escritos);
        } else if (errno == EAGAIN) {
            struct pollfd espera = {df, POLLOUT, 0};
            poll(&espera, 1, -1);
        } else if (errno != EINTR) {
            return -1;
        }
    }
    return 0;
}

char *ReservarSalida(size_t n) {
    HacerSitio(n);
    return texto_ + tramo_.load(std::memory_order_relaxed).fin;
}

void ConfirmarSalida(size_t n) {
    const Tramo t = tramo_.load(std::memory_order_relaxed);
    Publicar({t.inicio, t.fin + static_cast<uint32_t>(n)});
}

void EscribirBytes(const void *bytes, size_t n) {
    const char *p = static_cast<const char *>(bytes);
    while (n > 0) {
        const size_t parte = n < kMaxReserva ? n : kMaxReserva;
        memcpy(ReservarSalida(parte), p, parte);
        ConfirmarSalida(parte);
        p += parte;
        n -= parte;
    }
}

void EscribirTexto(const char *texto) { EscribirBytes(texto, strlen(texto)); }

void Imprimir(const char *formato, ...) {
    const int motivo = errno;
    va_list args;
    va_start(args, formato);
    char *sitio = ReservarSalida(kMaxReserva);
    const int n = vsnprintf(sitio, kMaxReserva, formato, args);
    va_end(args);
    if (n > 0)
        ConfirmarSalida(static_cast<size_t>(n) < kMaxReserva ? static_cast<size_t>(n) : kMaxReserva - 1);
    errno = motivo;
}

void VolcarSalida() {
    const Tramo t = tramo_.load(std::memory_order_relaxed);
    if (t.inicio == t.fin) return;
    const int motivo = errno;
    Avisar(Escribir(t.fin));
    errno = motivo;
}

int EscribirDesdeManejador(const void *bytes, size_t n) { return EscribirReteniendo(bytes, n); }

void VolcarDesdeManejador() { Escribir(tramo_.load(std::memory_order_relaxed).fin); }

void InformarError(const char *texto) {
    const int motivo = errno;
    VolcarSalida();
    char linea[5000];
    int n = snprintf(linea, sizeof linea, "%s: %s\n", texto, strerror(motivo));
    if (n >= static_cast<int>(sizeof linea)) n = sizeof linea - 1;
    EscribirTodo(STDERR_FILENO, linea, static_cast<size_t>(n));
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
        hayRetenidas_ = true;
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
