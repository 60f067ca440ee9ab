// SPDX-License-Identifier: MIT

#include "signals/child.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/output.h"
#include "base/synchronisation.h"
#include "signals/dispositions.h"

pid_t Bifurcar() {
    SincronizarES();
    if (!HayManejadores()) return fork();
    // From the fork to the last default action the child may not be interrupted: until then the handlers are
    // there. A mask that could not be had is not put back.
    sigset_t todas, previa;
    sigfillset(&todas);
    const bool bloqueadas = sigprocmask(SIG_SETMASK, &todas, &previa) == 0;
    const pid_t pid = fork();
    if (pid == 0) SoltarManejadores();
    if (bloqueadas) sigprocmask(SIG_SETMASK, &previa, nullptr);
    return pid;
}

pid_t BifurcarShell() {
    SincronizarES();
    return fork();
}

pid_t EsperarHijo(pid_t pid) { return waitpid(pid, nullptr, 0); }

void TerminarHijo() {
    VolcarSalida();
    _exit(255);
}
