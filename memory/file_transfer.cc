// SPDX-License-Identifier: MIT

#include "memory/file_transfer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/descriptor.h"

// The system copies to and from the address: a bad one comes back as EFAULT, it is no fault of the process.

ssize_t LeerFichero(const char *fich, void *dir, size_t cont) {
    struct stat st;
    if (stat(fich, &st) == -1) return -1;
    const Descriptor d(open(fich, O_RDONLY));
    if (d.df() == -1) return -1;
    return read(d.df(), dir, cont == kTodoElFichero ? static_cast<size_t>(st.st_size) : cont);
}

ssize_t EscribirFichero(const char *fich, const void *dir, size_t cont, int sobreescribir) {
    const Descriptor d(open(fich, O_CREAT | O_WRONLY | (sobreescribir ? O_TRUNC : O_EXCL), 0777));
    if (d.df() == -1) return -1;
    return write(d.df(), dir, cont);
}
