// SPDX-License-Identifier: MIT

#include "shell/systemd_warning.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/output.h"
#include "base/write_all.h"

namespace {

void PrintAtOnce(const char *texto) { EscribirTodo(STDOUT_FILENO, texto, strlen(texto)); }

/// n dots, one a second.
void Punto(int n) {
    while (n-- > 0) {
        PrintAtOnce(".");
        sleep(1);
    }
    PrintAtOnce("\n");
}

} // namespace

int CheckForSystemd() {
    struct stat st;
    return lstat("/run/systemd/system", &st) == 0 || errno != ENOENT;
}

void AvisoPorSystemd() {
    PrintAtOnce("Ufff!....Tu disribución de linux usa systemd: deberias usar otra cosa\n");
    sleep(1);
    PrintAtOnce("Muchas cosas en tu sistema no van a funcionar como deberian");
    Punto(3);
    PrintAtOnce("systemd es una desgracia para el mundo informatico en general");
    Punto(2);
    PrintAtOnce("..y para  el software libre en particular");
    Punto(1);
    PrintAtOnce("Espera 10 segundos que me mentalice de coexistir con systemd");
    Punto(10);
    Punto(1);
}
