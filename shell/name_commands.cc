// SPDX-License-Identifier: MIT

// abbrev and checkalias: by which names a command can be called.

#include <cstring>

#include "base/output.h"
#include "shell/command_names.h"
#include "shell/command_table.h"
#include "shell/commands.h"

void Cmd_abbrev(char *args[]) {
    if (args[0] && strcmp(args[0], "on") == 0)
        HabilitarAbreviaturas();
    else if (args[0] && strcmp(args[0], "off") == 0)
        DeshabilitarAbreviaturas();
    else
        Imprimir("Uso de abreviaturas de comandos esta %s\n",
                 EstadoAbreviaturas() ? "habilitado" : "deshabilitado");
}

void Cmd_checkalias(char *args[]) {
    if (!args[0]) {
        for (const CommandEntry *fila = CommandTable.data(); fila->nombre; fila++) {
            Imprimir("\n***%s: ", fila->nombre);
            PrintAlias(fila->nombre);
        }
    } else if (strcmp(args[0], "-q") == 0) {
        for (const CommandEntry *fila = CommandTable.data(); fila->nombre; fila++)
            if (GetAliasesLength(fila->nombre) == 0) Imprimir("%s ", fila->nombre);
    }
    EscribirTexto("\n");
}
