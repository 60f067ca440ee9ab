#include <unistd.h>

#include "base/output.h"
#include "processes/commands.h"
#include "processes/process_list.h"
#include "signals/child.h"

void Cmd_fork(char *[]) {
    const pid_t pid = Bifurcar();
    if (pid == 0) {
        VaciarListaProcesos(&LP); // its parent's children are not its own
        Imprimir("ejecutando proceso %d\n", static_cast<int>(getpid()));
    } else if (pid != -1) {
        EsperarHijo(pid, nullptr);
    }
}
