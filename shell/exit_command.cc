#include <unistd.h>

#include <cstdlib>

#include "files/open_file_table.h"
#include "memory/allocation.h"
#include "shell/commands.h"
#include "shell/element_list.h"
#include "shell/input.h"

void Cmd_exit(char *[]) {
    HistoricClear();
    PathClear();
    EntornoClear();
    ClearOpenFilesList();
    EliminarListaBloquesMemoria();
    SincronizarES();
    exit(0);
}
