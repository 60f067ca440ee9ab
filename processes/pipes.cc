// SPDX-License-Identifier: MIT

#include "processes/pipes.h"

#include <unistd.h>

#include <cstring>

#include "base/output.h"
#include "base/synchronisation.h"
#include "processes/commands.h"
#include "processes/execution.h"
#include "processes/execution_line.h"
#include "processes/process_list.h"
#include "signals/child.h"

namespace {

/// Starts the program of a line with the end extremos[df] of the pipe as its descriptor `df` (0 reads, 1
/// writes). Returns its pid, or -1.
pid_t LanzarExtremo(char *linea[], const int (&extremos)[2], int df) {
    const pid_t pid = Bifurcar();
    if (pid != 0) return pid;
    // With a standard descriptor closed in the shell the pipe itself may stand in its place. Without the pipe
    // the program does not run: it would read the shell's own input, or print among its output.
    if (dup2(extremos[df], df) == -1) TerminarHijo();
    for (const int extremo : extremos)
        if (extremo != df) close(extremo);
    exec(linea, nullptr, nullptr);
    TerminarHijo();
}

/// Splits a line at its "%" words. Returns the second program's words, those after the last of them, or null
/// when there is none.
char **PartirPipe(char *linea[]) {
    char **segundo = nullptr;
    for (; *linea; linea++)
        if (strcmp(*linea, "%") == 0) {
            *linea = nullptr;
            segundo = linea + 1;
        }
    return segundo;
}

void PipeDeLinea(char *linea[], int segundoPlano) {
    if (char **segundo = PartirPipe(linea))
        HacerPipe(linea, segundo, segundoPlano);
    else
        EscribirTexto("pipe prog1 args .. % prog2 args ..\n");
}

} // namespace

int HacerPipe(char *primero[], char *segundo[], int segundoPlano) {
    // With descriptor 1 closed the pipe may take its place: nothing may be waiting to go there.
    SincronizarES();
    int extremos[2];
    if (pipe(extremos) == -1) return -1;
    const pid_t escritor = LanzarExtremo(primero, extremos, STDOUT_FILENO);
    const pid_t lector = escritor == -1 ? -1 : LanzarExtremo(segundo, extremos, STDIN_FILENO);
    if (lector == -1) InformarError("Imposible crear proceso");
    close(extremos[0]);
    close(extremos[1]);
    if (escritor != -1 && segundoPlano) MeterProceso(&LP, escritor, getuid(), primero);
    if (lector != -1 && segundoPlano) MeterProceso(&LP, lector, getuid(), segundo);
    if (escritor != -1 && !segundoPlano) EsperarHijo(escritor);
    if (lector != -1 && !segundoPlano) EsperarHijo(lector);
    return lector == -1 ? -1 : 0;
}

void Cmd_pipe(char *args[]) {
    const int segundoPlano = ComprobarSegundoPlano(args);
    PipeDeLinea(args, segundoPlano);
}

void Cmd_backpipe(char *args[]) { PipeDeLinea(args, 1); }
