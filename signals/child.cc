#include "signals/child.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "base/input.h"
#include "base/output.h"

pid_t Bifurcar() {
    SincronizarES();
    return fork();
}

int EsperarHijo(pid_t pid, int *estado) {
    int resultado;
    do resultado = waitpid(pid, estado, 0);
    while (resultado == -1 && errno == EINTR);
    return resultado;
}

void TerminarHijo() {
    VolcarSalida();
    _exit(255);
}
