#include <cerrno>
#include <cstring>

#include "processes/commands.h"
#include "processes/search_path.h"
#include "shell/command_names.h"
#include "shell/element_list.h"
#include "shell/output.h"

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
