// SPDX-License-Identifier: MIT

// exit: releases all that the shell holds and ends it. End of input ends it too, and releases nothing.

#include <unistd.h>

#include <cstdlib>

#include "base/synchronisation.h"
#include "environment/variables.h"
#include "files/open_file_table.h"
#include "memory/allocation.h"
#include "processes/process_list.h"
#include "processes/search_path.h"
#include "shell/commands.h"
#include "shell/historic.h"

void Cmd_exit(char *[]) {
    SincronizarES(); // before anything is released: what was printed comes out whatever happens then
    HistoricClear();
    PathClear();
    EntornoClear();
    ClearOpenFilesList();
    EliminarListaBloquesMemoria();
    VaciarListaProcesos(&LP);
    SincronizarES(); // and what releasing printed
    exit(0);
}
