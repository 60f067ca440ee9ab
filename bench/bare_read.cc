// SPDX-License-Identifier: MIT

#include <fcntl.h>

#include "bare_work.h"

// bare_read FILE SIZE: reads a file in one call.
int main(int argc, char *argv[]) {
    const size_t tam = LeerTamano(argc, argv, 2);
    char *bloque = Bloque(tam);
    AtenderLineas([=] {
        const int df = open(argv[1], O_RDONLY);
        if (read(df, bloque, tam) != static_cast<ssize_t>(tam)) _exit(1);
        close(df);
    });
}
