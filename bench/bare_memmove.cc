// SPDX-License-Identifier: MIT

#include <cstring>

#include "bare_work.h"

// bare_memmove FILES SIZE ENTRY: moves the bytes that deleting FILES files of SIZE bytes, each with a
// directory entry of ENTRY bytes, the first one always, has to move. One file a line.
int main(int argc, char *argv[]) {
    size_t quedan = LeerTamano(argc, argv, 1);
    const size_t tam = LeerTamano(argc, argv, 2);
    const size_t entrada = LeerTamano(argc, argv, 3);
    char *datos = Bloque(quedan * tam);
    char *entradas = Bloque(quedan * entrada);
    AtenderLineas([&] {
        if (quedan == 0) return;
        quedan--;
        memmove(datos, datos + tam, quedan * tam);
        memmove(entradas, entradas + entrada, quedan * entrada);
        asm volatile("" : : "r"(datos), "r"(entradas) : "memory");
    });
}
