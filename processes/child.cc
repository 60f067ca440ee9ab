#include "processes/child.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "shell/input.h"
#include "shell/output.h"

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
