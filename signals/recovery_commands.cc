// SPDX-License-Identifier: MIT

// protectsegv and protectfpe install the handler that jumps back to the loop (recovery.h); usesignals says
// whether the shell outlives a read that a signal has interrupted.

#include <cerrno>
#include <cstring>

#include "base/output.h"
#include "signals/commands.h"
#include "signals/dispositions.h"
#include "signals/recovery.h"
#include "signals/signal_names.h"

namespace {

void Proteger(int senal) {
    Imprimir("Protegiendo de %s, el programa volvera al princiio de main\n", NombreSenal(senal));
    EscribirTexto("El manejador se instala con SA_RESTART, solo se ejecuta una vez\n");
    if (InstalarManejadorSenal(senal, VolverAMain, SA_ONSTACK | SA_RESTART, nullptr) == -1)
        Imprimir("Error al instalar manejador: %s\n", strerror(errno));
    EscribirPorPiezas(senal);
}

} // namespace

void Cmd_protectsegv(char *[]) { Proteger(SIGSEGV); }
void Cmd_protectfpe(char *[]) { Proteger(SIGFPE); }

void Cmd_usesignals(char *args[]) {
    if (!args[0]) {
        Imprimir("El shell esta %s para el uso de senales\n", HaySenales ? "preparado" : "no preparado");
        EscribirTexto("\tEsto condiciona si el shell termina cuando la lectura de techado da error\n");
    } else if (strcmp(args[0], "on") == 0) {
        HaySenales = 1;
    } else if (strcmp(args[0], "off") == 0) {
        HaySenales = 0;
    } else {
        Imprimir("parametro no valido: %s\n", args[0]);
    }
}
