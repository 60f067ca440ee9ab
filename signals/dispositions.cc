// SPDX-License-Identifier: MIT

#include "signals/dispositions.h"

#include <cstdio>

#include "base/bounded_text.h"
#include "base/held_signals.h"
#include "base/large_storage.h"
#include "base/output.h"
#include "signals/handler_settings.h"
#include "signals/signal_names.h"

namespace {

constexpr size_t kTamInfo = 1024;
constexpr int kMaxMiembro = 32; // the last signal that is looked for in a set

/// The signals that have been given a handler, so that a child need not ask for all of them.
sigset_t conManejador_;
bool hayManejadores_;

void Recordar(int senal, bool manejador) {
    if (manejador) hayManejadores_ = true;
    (manejador ? sigaddset : sigdelset)(&conManejador_, senal);
}

/// sigprocmask() with a set of the one signal.
int CambiarMascara(int operacion, int senal) {
    sigset_t solo;
    sigemptyset(&solo);
    if (sigaddset(&solo, senal) == -1) return -1;
    return sigprocmask(operacion, &solo, nullptr);
}

/// Whether the handler of the signal is this one.
bool TieneManejador(int senal, void (*manejador)(int)) {
    struct sigaction accion;
    return sigaction(senal, nullptr, &accion) == 0 && accion.sa_handler == manejador;
}

void MostrarSenales(const char *titulo, bool (*cumple)(int)) {
    EscribirTexto(titulo);
    for (int senal = 1; senal <= kMaxSenal; senal++)
        if (cumple(senal)) Imprimir("%s ", NombreSenal(senal));
    EscribirTexto("\n");
}

} // namespace

int InstalarManejadorSenal(int senal, void (*manejador)(int), int flags, const sigset_t *mascara) {
    struct sigaction accion = {};
    accion.sa_handler = manejador;
    accion.sa_flags = flags;
    sigemptyset(&accion.sa_mask);
    if (mascara) accion.sa_mask = *mascara;
    if (sigaction(senal, &accion, nullptr) == -1) return -1;
    const bool tieneManejador = manejador != SIG_DFL && manejador != SIG_IGN;
    Recordar(senal, tieneManejador);
    if (!tieneManejador) RetenerAlVolcar(senal, false);
    return 0;
}

bool HayManejadores() { return hayManejadores_; }

void SoltarManejadores() {
    for (int senal = 1; senal <= kMaxSenal; senal++)
        if (sigismember(&conManejador_, senal) == 1) InstalarManejadorSenal(senal, SIG_DFL, 0, nullptr);
}

int EnmascararSenal(int senal) { return CambiarMascara(SIG_BLOCK, senal); }
int DesenmascararSenal(int senal) { return CambiarMascara(SIG_UNBLOCK, senal); }

bool EstaEnmascaradaSenal(int senal) {
    sigset_t actual;
    return sigprocmask(SIG_BLOCK, nullptr, &actual) == 0 && sigismember(&actual, senal) == 1;
}

bool EstaIgnoradaSenal(int senal) { return TieneManejador(senal, SIG_IGN); }
bool EstaDefectoSenal(int senal) { return TieneManejador(senal, SIG_DFL); }

const char *InfoMascara(const sigset_t *mascara) {
    alignas(kAparte) static char info[kTamInfo]; // kMaxMiembro names of at most 10 characters and a blank fit
    TextoAcotado texto(info, sizeof info);
    for (int senal = 1; senal <= kMaxMiembro; senal++) {
        if (sigismember(mascara, senal) != 1) continue;
        texto.Poner(NombreSenal(senal));
        texto.Poner(' ');
    }
    return texto.n() > 0 ? info : nullptr;
}

const char *InfoHandlerSenal(int senal) {
    static constexpr struct {
        int flag;
        const char *nombre;
    } kFlags[] = {{SA_RESTART, "RESTART "},
                  {SA_ONSTACK, "ONSTACK "},
                  {static_cast<int>(SA_RESETHAND), "RESETHAND "},
                  {SA_NODEFER, "NODEFER "}};
    alignas(kAparte) static char info[kTamInfo];
    TextoAcotado texto(info, sizeof info);
    struct sigaction accion = {};
    sigaction(senal, nullptr, &accion);
    for (const auto &flag : kFlags)
        if (accion.sa_flags & flag.flag) texto.Poner(flag.nombre);
    if (const char *mascara = InfoMascara(&accion.sa_mask)) {
        texto.Poner("\n\tmascara asociada ");
        texto.Poner(mascara);
    }
    return info;
}

const char *InfoManejador(int senal) {
    alignas(kAparte) static char info[kTamInfo];
    struct sigaction accion = {};
    sigaction(senal, nullptr, &accion);
    snprintf(info, sizeof info, "%p %s %s -sleep:%d %s", reinterpret_cast<void *>(accion.sa_handler),
             v[senal] ? "-show" : "", r[senal] ? "-resend" : "", delay[senal], InfoHandlerSenal(senal));
    return info;
}

const char *InfoSenal(int senal) {
    alignas(kAparte) static char info[kTamInfo];
    const char *disposicion = EstaIgnoradaSenal(senal)  ? "SIG_IGN"
                              : EstaDefectoSenal(senal) ? "SIG_DFL"
                                                        : InfoManejador(senal);
    snprintf(info, sizeof info, "%9s: %s%s", NombreSenal(senal),
             EstaEnmascaradaSenal(senal) ? "Enmascarada    " : "No Enmascarada ", disposicion);
    return info;
}

void MostrarInfoSenal(const char *nombre) {
    const int senal = ValorSenal(nombre);
    if (senal == -1)
        Imprimir("  senal desconocida:%s\n", nombre);
    else
        Imprimir("  %s\n", InfoSenal(senal));
}

void MostrarInfoTodasSenales() {
    for (int senal = 1; senal <= kMaxSenal; senal++) Imprimir("%s\n", InfoSenal(senal));
}

void MostrarSenalesIgnoradas() { MostrarSenales("  SENALES SIGNORADAS: ", EstaIgnoradaSenal); }
void MostrarSenalesDefecto() { MostrarSenales("  SENALES ACCION POR DEFECTO: ", EstaDefectoSenal); }
void MostrarSenalesEnmascaradas() { MostrarSenales("  SENALES ENMASCARADAS: ", EstaEnmascaradaSenal); }
