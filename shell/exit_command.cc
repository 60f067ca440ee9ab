#include <unistd.h>

#include <cstdlib>

#include "processes/process_list.h"
#include "shell/commands.h"
#include "shell/element_list.h"
#include "shell/input.h"

void Cmd_exit(char *[]) {
    HistoricClear();
    PathClear();
    EntornoClear();
    VaciarListaProcesos(&LP);
    SincronizarES();
    exit(0);
}
