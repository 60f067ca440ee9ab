// SPDX-License-Identifier: MIT

// The commands that point the standard streams of the shell itself at files and back. Each synchronises
// first: what was printed belongs where the stream has led so far, and the next line comes from where it
// leads then.

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/output.h"
#include "base/synchronisation.h"
#include "files/commands.h"
#include "files/redirection.h"

namespace {

/// What redin, redout and rederr do with their words.
void Do_redirection(char *const palabras[], int flujo) {
    if (!palabras[0])
        ShowRedir();
    else if (strcmp(palabras[0], "-reset") == 0)
        UndoRedir(flujo);
    else if (DoRedir(flujo, palabras[0]) == -1)
        Imprimir("Imposible hacer redireccion %s\n", strerror(errno));
}

void Redireccionar(char *const palabras[], int flujo) {
    SincronizarES();
    if (HayRedireccion())
        Do_redirection(palabras, flujo);
    else
        EscribirTexto("Hay que inicializar redireccion\n");
}

} // namespace

void Cmd_redin(char *args[]) { Redireccionar(args, STDIN_FILENO); }
void Cmd_redout(char *args[]) { Redireccionar(args, STDOUT_FILENO); }
void Cmd_rederr(char *args[]) { Redireccionar(args, STDERR_FILENO); }

void Cmd_initredir(char *[]) {
    SincronizarES();
    if (HayRedireccion())
        EscribirTexto("redireccion ya inicializada\n");
    else
        InitRedir();
}

void Cmd_clearredir(char *[]) {
    if (HayRedireccion())
        ClearRedir();
    else
        EscribirTexto("redireccion no inicializada\n");
}
