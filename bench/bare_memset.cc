// SPDX-License-Identifier: MIT

#include <cstring>

#include "bare_work.h"

// bare_memset SIZE: fills a block.
int main(int argc, char *argv[]) {
    const size_t tam = LeerTamano(argc, argv, 1);
    char *bloque = Bloque(tam);
    AtenderLineas([=] {
        memset(bloque, 'B', tam);
        asm volatile("" : : "r"(bloque) : "memory");
    });
}
