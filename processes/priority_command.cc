// SPDX-License-Identifier: MIT

// priority: the nice value of a process, where -1 is an answer too and only errno tells it from a failure.

#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "base/output.h"
#include "processes/commands.h"

void Cmd_priority(char *args[]) {
    const int pid = args[0] ? atoi(args[0]) : getpid();
    if (args[0] && args[1]) {
        if (setpriority(PRIO_PROCESS, static_cast<id_t>(pid), atoi(args[1])) == -1)
            Imprimir("imposible cambiar la prioridad del proceso  %d:%s\n", pid, strerror(errno));
        return;
    }
    errno = 0; // -1 is a priority, too
    const int prioridad = getpriority(PRIO_PROCESS, static_cast<id_t>(pid));
    if (prioridad == -1 && errno != 0)
        Imprimir("Imposible obtener prioridad de proceso %d: %s\n", pid, strerror(errno));
    else
        Imprimir("Prioridad del proceso %d es %d\n", pid, prioridad);
}
