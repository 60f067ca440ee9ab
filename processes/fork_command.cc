// SPDX-License-Identifier: MIT

// fork as a lesson: the child does not become a program, it goes on as a second shell on the same input, and
// the first one waits for its end.

#include <unistd.h>

#include <cerrno>

#include "base/output.h"
#include "processes/commands.h"
#include "processes/process_list.h"
#include "signals/child.h"

void Cmd_fork(char *[]) {
    const pid_t pid = BifurcarShell();
    if (pid == 0) {
        VaciarListaProcesos(&LP); // its parent's children are not its own
        Imprimir("ejecutando proceso %d\n", static_cast<int>(getpid()));
    } else if (pid != -1) {
        // Unlike the wait for a program this one goes on after a signal: two shells at one keyboard teach
        // nothing.
        while (EsperarHijo(pid) == -1 && errno == EINTR) {
        }
    }
}
