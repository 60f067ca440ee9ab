// SPDX-License-Identifier: MIT

#include "shell/dispatch.h"

#include "base/output.h"
#include "processes/commands.h"
#include "shell/command_names.h"
#include "shell/command_table.h"
#include "shell/help.h"

void ProcesarEntrada(char *palabras[]) {
    if (!palabras[0]) return;
    if (PideAyuda(palabras)) return;
    const char *nombre = RealCommand(palabras[0]);
    if (!nombre) {
        Imprimir("Abreviatura de comando no unica: %s\n", palabras[0]);
        return;
    }
    if (const CommandEntry *comando = BuscarComando(nombre))
        comando->manejador(palabras + 1);
    else
        Cmd_pplano(palabras); // no built-in command: the whole line is a program and its arguments
}
