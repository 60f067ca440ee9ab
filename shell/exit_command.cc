#include <unistd.h>

#include <cstdlib>

#include "memory/allocation.h"
#include "shell/commands.h"
#include "shell/element_list.h"
#include "shell/input.h"

void Cmd_exit(char *[]) {
    HistoricClear();
    PathClear();
    EntornoClear();
    EliminarListaBloquesMemoria();
    SincronizarES();
    exit(0);
}
