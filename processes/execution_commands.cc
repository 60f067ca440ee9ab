// SPDX-License-Identifier: MIT

// The commands that run a program: in place of the shell (execute...), in a child that is waited for (fg...)
// or in one that is recorded (back...).

#include <cstdlib>

#include "base/output.h"
#include "base/synchronisation.h"
#include "processes/commands.h"
#include "processes/execution.h"

namespace {

/// exec() in the shell itself; what comes back is a failure.
void EjecutarAqui(char *linea[], const char *usuario, const int *prioridad) {
    SincronizarES();
    if (exec(linea, usuario, prioridad) == -1) InformarError("Imposible ejecutar");
}

enum { kPrimerPlano = 0, kSegundoPlano = 1 };

/// Proceso() with the priority that the first word gives.
void ProcesoConPrioridad(char *args[], int segundoPlano) {
    if (!args[0]) return;
    const int prioridad = atoi(args[0]);
    Proceso(args + 1, segundoPlano, nullptr, &prioridad);
}

/// Proceso() as the user that the first word names.
void ProcesoComoUsuario(char *args[], int segundoPlano) {
    if (args[0]) Proceso(args + 1, segundoPlano, args[0], nullptr);
}

} // namespace

void Cmd_exec(char *args[]) { EjecutarAqui(args, nullptr, nullptr); }

void Cmd_execpri(char *args[]) {
    if (!args[0]) return;
    const int prioridad = atoi(args[0]);
    EjecutarAqui(args + 1, nullptr, &prioridad);
}

void Cmd_execute_as(char *args[]) {
    if (args[0]) EjecutarAqui(args + 1, args[0], nullptr);
}

void Cmd_pplano(char *args[]) { Proceso(args, kPrimerPlano, nullptr, nullptr); }
void Cmd_splano(char *args[]) { Proceso(args, kSegundoPlano, nullptr, nullptr); }
void Cmd_pplanopri(char *args[]) { ProcesoConPrioridad(args, kPrimerPlano); }
void Cmd_splanopri(char *args[]) { ProcesoConPrioridad(args, kSegundoPlano); }
void Cmd_pplanoas(char *args[]) { ProcesoComoUsuario(args, kPrimerPlano); }
void Cmd_splanoas(char *args[]) { ProcesoComoUsuario(args, kSegundoPlano); }
