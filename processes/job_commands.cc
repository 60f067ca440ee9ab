// SPDX-License-Identifier: MIT

// The commands that look at the background processes. Only they ask the system for news: there is no SIGCHLD
// handler.

#include <sys/wait.h>

#include <cstdlib>
#include <cstring>

#include "base/output.h"
#include "base/synchronisation.h"
#include "processes/commands.h"
#include "processes/process_list.h"
#include "signals/signal_names.h"

namespace {

void ListarTrabajos() {
    ActualizarListaProcesos(&LP);
    ImprimirListaProcesos(&LP, kTodosEstados);
}

/// Waits for a recorded process and tells how it ended; its record goes.
void EsperarTrabajo(pid_t pid) {
    if (EstadoProcesoPid(&LP, pid) & (TERMINADO | SENALADO)) {
        Imprimir("Proceso %d pid ya esta finalizado\n", static_cast<int>(pid));
        return;
    }
    SincronizarES();
    int estado;
    // Not gone on with after a signal: that is the only way out of waiting for a stopped process.
    if (waitpid(pid, &estado, 0) != pid) return;
    if (WIFEXITED(estado))
        Imprimir("Proceso %d terminado normalmente. Valor devuelto %d\n", static_cast<int>(pid),
                 WEXITSTATUS(estado));
    else if (WIFSIGNALED(estado))
        Imprimir("Proceso %d terminado por la senal %s\n", static_cast<int>(pid),
                 NombreSenal(WTERMSIG(estado)));
    BorrarProcesoPid(&LP, pid);
}

} // namespace

void Cmd_listjobs(char *[]) { ListarTrabajos(); }

void Cmd_deljobs(char *args[]) {
    int mascara = 0;
    for (; *args; args++) {
        if (strcmp(*args, "-term") == 0)
            mascara = TERMINADO;
        else if (strcmp(*args, "-sig") == 0)
            mascara = SENALADO;
        else if (strcmp(*args, "-all") == 0)
            mascara = TERMINADO | SENALADO;
        else if (strcmp(*args, "-clear") == 0)
            VaciarListaProcesos(&LP);
        else
            break;
    }
    BorrarProcesosEstado(&LP, mascara);
    ListarTrabajos();
}

void Cmd_job(char *args[]) {
    const bool primerPlano = args[0] && strcmp(args[0], "-fg") == 0;
    if (primerPlano) args++;
    const pid_t pid = args[0] ? atoi(args[0]) : 0;
    if (BuscarProcesoPid(&LP, pid) == -1)
        ListarTrabajos();
    else if (primerPlano)
        EsperarTrabajo(pid);
    else
        MostrarProcesoPid(&LP, pid);
}
