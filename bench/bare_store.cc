// SPDX-License-Identifier: MIT

// bare_store ENTRIES SIZE DIRECTORY: keeps files in a block behind a table of names, as a file system in
// memory does. The table has ENTRIES rows from the start; each line of standard input names a file of the
// directory, whose name is looked for among them all, and whose SIZE bytes are then read behind the last.

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "bare_work.h"

namespace {

/// A row of the table, of the size and the shape of the program's own.
struct Fila {
    char nombre[256];
    unsigned tam, desp;
    long long fecha;
};
static_assert(sizeof(Fila) == 272);

} // namespace

int main(int argc, char *argv[]) {
    const size_t filas = LeerTamano(argc, argv, 1), tam = LeerTamano(argc, argv, 2);
    if (argc < 4) return 2;
    constexpr size_t kMaxNuevos = 4096;
    auto *tabla = reinterpret_cast<Fila *>(Bloque((filas + kMaxNuevos) * sizeof(Fila)));
    char *datos = Bloque(kMaxNuevos * tam);
    for (size_t i = 0; i < filas; i++) snprintf(tabla[i].nombre, sizeof tabla[i].nombre, "g%05zu", i);
    size_t n = filas;
    char nombre[256], ruta[4096];
    while (fgets(nombre, sizeof nombre, stdin)) {
        nombre[strcspn(nombre, "\n")] = '\0';
        for (size_t i = 0; i < n; i++)
            if (strcmp(tabla[i].nombre, nombre) == 0) _exit(1);
        snprintf(ruta, sizeof ruta, "%s/%s", argv[3], nombre);
        const int df = open(ruta, O_RDONLY);
        if (df == -1 || read(df, datos + (n - filas) * tam, tam) != static_cast<ssize_t>(tam)) _exit(1);
        close(df);
        strcpy(tabla[n].nombre, nombre);
        n++;
    }
    if (write(STDERR_FILENO, "#", 1) != 1) return 1;
}
