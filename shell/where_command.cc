// SPDX-License-Identifier: MIT

// where: whether a word is a command of the shell or a program, and which one. It stands on this floor
// because it knows both the command table and the search path.

#include "base/output.h"
#include "processes/search_path.h"
#include "shell/command_names.h"
#include "shell/commands.h"

void Cmd_where(char *args[]) {
    if (!args[0]) return;
    const char *nombre = RealCommand(args[0]);
    if (!nombre)
        Imprimir("Abreviatura de comando no unica: %s\n", args[0]);
    else if (IsInternalCommand(nombre))
        Imprimir("%s: comando interno %s\n", args[0], nombre);
    else
        Imprimir("%s\n", Ejecutable(args[0]));
}
