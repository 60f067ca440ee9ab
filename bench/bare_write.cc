// SPDX-License-Identifier: MIT

#include <fcntl.h>

#include "bare_work.h"

// bare_write FILE SIZE: writes a file anew in one call.
int main(int argc, char *argv[]) {
    const size_t tam = LeerTamano(argc, argv, 2);
    const char *bloque = Bloque(tam);
    AtenderLineas([=] {
        const int df = open(argv[1], O_CREAT | O_WRONLY | O_TRUNC, 0777);
        if (write(df, bloque, tam) != static_cast<ssize_t>(tam)) _exit(1);
        close(df);
    });
}
