// SPDX-License-Identifier: MIT

// What the process does with its signals, shown and changed one system call at a time: sigaction for the
// dispositions, sigprocmask for the mask.

#include <csignal>
#include <cstring>

#include "base/output.h"
#include "base/synchronisation.h"
#include "signals/commands.h"
#include "signals/dispositions.h"
#include "signals/signal_names.h"

namespace {

/// Does `accion` to every signal named in `args`. A refusal of the system (KILL cannot be ignored, an unknown
/// name stands for no signal) changes nothing, and siginfo shows it.
void ParaCada(char *args[], void (*accion)(int senal)) {
    for (; *args; args++) accion(ValorSenal(*args));
}

/// Whether `palabra` is an option of sigprocmask; its operation is stored.
bool LeerOperacion(const char *palabra, int *operacion) {
    if (strcmp(palabra, "-block") == 0)
        *operacion = SIG_BLOCK;
    else if (strcmp(palabra, "-unblock") == 0)
        *operacion = SIG_UNBLOCK;
    else if (strcmp(palabra, "-setmask") == 0)
        *operacion = SIG_SETMASK;
    else
        return false;
    return true;
}

} // namespace

void Cmd_siginfo(char *args[]) {
    if (!args[0]) MostrarInfoTodasSenales();
    for (; *args; args++) MostrarInfoSenal(*args);
}

void Cmd_sigdefault(char *args[]) {
    if (!args[0]) MostrarSenalesDefecto();
    ParaCada(args, [](int senal) { InstalarManejadorSenal(senal, SIG_DFL, 0, nullptr); });
}

void Cmd_sigignore(char *args[]) {
    if (!args[0]) MostrarSenalesIgnoradas();
    ParaCada(args, [](int senal) { InstalarManejadorSenal(senal, SIG_IGN, 0, nullptr); });
}

void Cmd_sigmask(char *args[]) {
    if (!args[0]) MostrarSenalesEnmascaradas();
    ParaCada(args, [](int senal) { EnmascararSenal(senal); });
}

void Cmd_sigunmask(char *args[]) {
    SincronizarES(); // a signal that was waiting comes at once, and may end the shell
    if (!args[0]) MostrarSenalesEnmascaradas();
    ParaCada(args, [](int senal) { DesenmascararSenal(senal); });
}

void Cmd_sigprocmask(char *args[]) {
    if (!args[0]) {
        MostrarSenalesEnmascaradas();
        return;
    }
    int operacion = SIG_BLOCK;
    while (*args && LeerOperacion(*args, &operacion)) args++;
    sigset_t senales;
    sigemptyset(&senales);
    for (; *args; args++) {
        const int senal = ValorSenal(*args);
        if (senal == -1)
            Imprimir("Senal desconocida %s\n", *args);
        else
            sigaddset(&senales, senal);
    }
    SincronizarES(); // as in sigunmask
    if (sigprocmask(operacion, &senales, nullptr) == -1)
        InformarError("Error al establecer senales enmascaradas");
}
