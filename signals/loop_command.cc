// SPDX-License-Identifier: MIT

// loop: an endless loop in user mode, in the system or in both, which a handler ends by clearing a flag.
// Watch that the round under way is finished first, and that the second Ctrl-C finds the default action
// (SA_RESETHAND).

#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstring>

#include "base/held_signals.h"
#include "base/output.h"
#include "base/synchronisation.h"
#include "base/write_all.h"
#include "signals/commands.h"
#include "signals/dispositions.h"
#include "signals/handler_text.h"

namespace {

/// The loop flag: 1 while an endless loop may go on. Shared between the loop and its handler; stored into
/// when `set` is 1, returned always.
int TestSetBucle(int set, int valor) {
    static volatile std::sig_atomic_t bucle = 1;
    if (set == 1) bucle = valor;
    return bucle;
}

/// Work in user mode, without a system call. The value soon becomes infinite; the rounds go on.
void BucleUser() {
    double x = 71.72;
    for (int i = 0; i < 300'000'000; i++) x = std::sqrt(x * x * x);
    volatile double resultado = x; // somebody looks at it, so that the rounds are not dropped
    static_cast<void>(resultado);
}

/// Work in the system.
void BucleSys() {
    for (int i = 0; i < 3'000'000; i++) getpid();
}

void BucleMixto() {
    BucleUser();
    BucleSys();
}

void ManejadorBucle(int) {
    const int motivo = errno;
    TextoManejador aviso;
    aviso.Poner("  Manejando SIGINT\n");
    EscribirAviso(aviso);
    TestSetBucle(1, 0);
    errno = motivo;
}

void BucleInfinito(void (*unidad)(), int pausa) {
    static constexpr char kInicio[] = "Iniciando bucle infinito...";
    TestSetBucle(1, 1);
    EscribirTodo(STDOUT_FILENO, kInicio, strlen(kInicio));
    while (TestSetBucle(0, 0)) {
        unidad();
        if (pausa) sleep(1);
    }
    EscribirTexto("terminado\n");
}

} // namespace

void Cmd_bucle(char *args[]) {
    SincronizarES(); // from here on the handler may run at any moment, one that was blocked at once
    RetenerAlVolcar(SIGINT, true, true);
    InstalarManejadorSenal(SIGINT, ManejadorBucle, static_cast<int>(SA_RESETHAND), nullptr);
    DesenmascararSenal(SIGINT);
    void (*unidad)() = BucleUser;
    int pausa = 0;
    for (; *args; args++) {
        if (strcmp(*args, "-user") == 0)
            unidad = BucleUser;
        else if (strcmp(*args, "-sys") == 0)
            unidad = BucleSys;
        else if (strcmp(*args, "-mix") == 0)
            unidad = BucleMixto;
        else if (strcmp(*args, "-dly") == 0)
            pausa = 1;
    }
    BucleInfinito(unidad, pausa);
}
