// SPDX-License-Identifier: MIT

// search: the directories in which the shell looks for programs, shown and changed.

#include <cerrno>
#include <cstring>

#include "base/output.h"
#include "processes/commands.h"
#include "processes/search_path.h"

void Cmd_search(char *args[]) {
    int resultado = 0;
    if (!args[0]) {
        PathPrint();
    } else if (strcmp(args[0], "-add") == 0) {
        resultado = PathAdd(args[1]);
    } else if (strcmp(args[0], "-del") == 0) {
        resultado = PathDel(args[1]);
    } else if (strcmp(args[0], "-clear") == 0) {
        PathClear();
    } else if (strcmp(args[0], "-path") == 0) {
        Imprimir("Importados %d directorios en la ruta de busqueda\n", PathAddPath());
    } else if (args[0][0] == '+') {
        resultado = PathAdd(args[0] + 1);
    } else if (args[0][0] == '-') {
        resultado = PathDel(args[0] + 1);
    } else {
        Imprimir("Argumento incorrecto %s\n", args[0]);
    }
    if (resultado == -1) Imprimir("Imposible realizar operacion %s: %s\n", args[0], strerror(errno));
}
