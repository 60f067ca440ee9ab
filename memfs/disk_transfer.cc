// SPDX-License-Identifier: MIT

#include "memfs/disk_transfer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/descriptor.h"
#include "base/failure.h"

// The bytes lie in a block, but it is the kernel that copies them: no access of these functions can fault,
// and no recovery jump cuts off the guards that close their descriptors.

namespace {

// One system call moves a whole file, except a file of gigabytes: systems limit a transfer at 2 GiB.
constexpr size_t kMaxTransferencia = 1UL << 30;

size_t Tramo(size_t quedan) { return quedan < kMaxTransferencia ? quedan : kMaxTransferencia; }

ssize_t LeerTodo(int df, char *dir, size_t tam) {
    size_t leidos = 0;
    ssize_t n;
    do {
        n = read(df, dir + leidos, Tramo(tam - leidos));
        if (n == -1) return -1;
        leidos += static_cast<size_t>(n);
    } while (n > 0 && leidos < tam);
    return static_cast<ssize_t>(leidos);
}

/// A write that falls short is a failure on purpose: a file on disk takes less than it is given only when it
/// cannot grow any more, and a part of a file is no copy. Writing on to learn the system's reason could bring
/// the signal of a limit on file sizes, and end the shell.
ssize_t EscribirCompleto(int df, const char *dir, size_t cont) {
    size_t escritos = 0;
    do {
        const size_t tramo = Tramo(cont - escritos);
        const ssize_t n = write(df, dir + escritos, tramo);
        if (n == -1) return -1;
        if (static_cast<size_t>(n) < tramo) return Fallo(ENOSPC);
        escritos += tramo;
    } while (escritos < cont);
    return static_cast<ssize_t>(escritos);
}

} // namespace

off_t auxTamanoFichero(const char *ruta) {
    struct stat st;
    return stat(ruta, &st) == -1 ? -1 : st.st_size;
}

ssize_t LeerFicheroDisco(const char *ruta, void *dir, size_t tam) {
    // O_NONBLOCK: a pipe without a writer, whose size is 0, is not waited for.
    const Descriptor d{open(ruta, O_RDONLY | O_NONBLOCK)};
    return d.df() == -1 ? -1 : LeerTodo(d.df(), static_cast<char *>(dir), tam);
}

ssize_t EscribirFicheroDisco(const char *ruta, const void *dir, size_t cont, int sobreescribir) {
    Descriptor d{open(ruta, O_CREAT | O_WRONLY | (sobreescribir ? O_TRUNC : O_EXCL), 0777)};
    if (d.df() == -1) return -1;
    ssize_t escritos = EscribirCompleto(d.df(), static_cast<const char *>(dir), cont);
    int motivo = errno;
    if (d.Cerrar() == -1 && escritos != -1) { // a remote disk may refuse the bytes only now
        motivo = errno;
        escritos = -1;
    }
    // A part of the file would be in the way of the next try.
    if (escritos == -1 && !sobreescribir) unlink(ruta);
    errno = motivo;
    return escritos;
}
