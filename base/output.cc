// SPDX-License-Identifier: MIT

#include "base/output.h"

#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "base/bounded_text.h"
#include "base/held_signals.h"
#include "base/large_storage.h"
#include "base/write_all.h"

namespace {

constexpr size_t kTamSalida = 65536;

alignas(kAparte) char texto_[kTamSalida];

/// The part of texto_ that is waiting to be written.
struct alignas(8) Tramo {
    uint32_t inicio, fin;
};
std::atomic<Tramo> tramo_;
static_assert(std::atomic<Tramo>::is_always_lock_free, "a handler must find both bounds or neither");

bool rechazada_;                  // descriptor 1 refused the last write
sigset_t saltan_;                 // the signals that may bring a recovery jump, of use once porPiezas_ is 1
volatile sig_atomic_t porPiezas_; // read by the handler of a fault too

void Publicar(Tramo t) { tramo_.store(t, std::memory_order_release); }

/// Waits until descriptor 1 takes a piece or refuses it. Returns its size, of at most n bytes.
size_t EsperarPieza(size_t n) {
    struct pollfd espera = {STDOUT_FILENO, POLLOUT, 0};
    while (poll(&espera, 1, -1) == -1 && errno == EINTR) {
    }
    return n < PIPE_BUF ? n : PIPE_BUF;
}

/// Writes a piece of t, up to `hasta`, and publishes how far it came: a recovery jump comes before both or
/// after both. The waiting is done before, where the jump may come: a terminal is the one that can still make
/// a piece wait. Returns what EscribirAlgo returned; after a refusal the text up to `hasta` is dropped.
ssize_t EscribirPieza(Tramo *t, uint32_t hasta) {
    const size_t n = porPiezas_ ? EsperarPieza(hasta - t->inicio) : hasta - t->inicio;
    sigset_t previa;
    const bool sinSaltos = porPiezas_ && sigprocmask(SIG_BLOCK, &saltan_, &previa) == 0;
    const ssize_t escritos = EscribirAlgo(STDOUT_FILENO, texto_ + t->inicio, n);
    t->inicio = escritos == -1 ? hasta : t->inicio + static_cast<uint32_t>(escritos);
    Publicar(t->inicio == t->fin ? Tramo{0, 0} : *t);
    if (sinSaltos) sigprocmask(SIG_SETMASK, &previa, nullptr);
    return escritos;
}

/// Writes texto_ from inicio up to `hasta`, and lets go of it whatever happens. Returns 0, or -1 with the
/// `errno` of the refusal. Async-signal-safe.
int Escribir(uint32_t hasta) {
    Retencion retencion;
    RetenerSenales(&retencion);
    int resultado = 0;
    Tramo t = tramo_.load(std::memory_order_relaxed);
    while (t.inicio < hasta && resultado == 0)
        if (EscribirPieza(&t, hasta) == -1) resultado = -1;
    DevolverSenales(retencion);
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
    if (const uint32_t resto = t.fin - corte; resto > 0) {
        memcpy(texto_, texto_ + corte, resto);
        Publicar({0, resto});
    }
    Avisar(resultado);
    errno = motivo;
}

} // namespace

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
    va_list args;
    va_start(args, formato);
    char *sitio = ReservarSalida(kMaxReserva);
    const int n = vsnprintf(sitio, kMaxReserva, formato, args);
    va_end(args);
    if (n > 0)
        ConfirmarSalida(static_cast<size_t>(n) < kMaxReserva ? static_cast<size_t>(n) : kMaxReserva - 1);
}

void VolcarSalida() {
    const Tramo t = tramo_.load(std::memory_order_relaxed);
    if (t.inicio == t.fin) return;
    const int motivo = errno;
    Avisar(Escribir(t.fin));
    errno = motivo;
}

void VolcarDesdeManejador() { Escribir(tramo_.load(std::memory_order_relaxed).fin); }

void InformarError(const char *texto) {
    const int motivo = errno;
    VolcarSalida();
    char linea[512];
    TextoAcotado mensaje(linea, sizeof linea);
    mensaje.Poner(texto);
    mensaje.Poner(": ");
    mensaje.Poner(strerror(motivo));
    mensaje.Poner('\n');
    EscribirTodo(STDERR_FILENO, linea, mensaje.n());
    errno = motivo;
}

void EscribirPorPiezas(int salta) {
    sigaddset(&saltan_, salta);
    porPiezas_ = 1;
}
