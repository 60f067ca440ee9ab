// SPDX-License-Identifier: MIT

#include <cstring>

#include "bare_work.h"

// bare_memcpy SIZE: copies one block to another.
int main(int argc, char *argv[]) {
    const size_t tam = LeerTamano(argc, argv, 1);
    const char *origen = Bloque(tam);
    char *destino = Bloque(tam);
    AtenderLineas([=] {
        memcpy(destino, origen, tam);
        asm volatile("" : : "r"(destino) : "memory");
    });
}
