// SPDX-License-Identifier: MIT

#pragma once

#include <unistd.h>

#include <cstdlib>

// The frame of the bare_* programs: each does with one or two system or library calls what a command of the
// shell does, so that what the shell adds to them can be measured. Both are driven in the same way: a line
// on standard input asks for the work, a '#' on descriptor 2 says that it is done.

/// Does `trabajo` once for each line of standard input, to its end.
template<class Trabajo> void AtenderLineas(Trabajo trabajo) {
    char c;
    while (read(STDIN_FILENO, &c, 1) == 1) {
        if (c != '\n') continue;
        trabajo();
        if (write(STDERR_FILENO, "#", 1) != 1) _exit(1);
    }
}

/// `tam` bytes, each page touched.
inline char *Bloque(size_t tam) {
    char *bloque = static_cast<char *>(malloc(tam));
    if (!bloque) _exit(1);
    for (size_t i = 0; i < tam; i += 4096) static_cast<volatile char *>(bloque)[i] = 1;
    return bloque;
}

/// The size in bytes that the n-th argument gives.
inline size_t LeerTamano(int argc, char *argv[], int n) {
    if (n >= argc) _exit(2);
    return strtoull(argv[n], nullptr, 10);
}
