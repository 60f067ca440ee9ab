// SPDX-License-Identifier: MIT

// memfs-find: the recorded blocks that hold an SF, whoever put it there.

#include <unistd.h>

#include "base/descriptor.h"
#include "base/output.h"
#include "memfs/commands.h"
#include "memfs/file_system.h"
#include "memory/block_list.h"

namespace {

/// Copies the start of a mapping through a pipe. The kernel answers EFAULT for what cannot be
/// read (no permission, or past the end of a file since cut short), where a read of it here would be a fault.
bool LeerCabeceraMapeada(const void *dir, SF *cabecera) {
    int tuberia[2];
    if (pipe(tuberia) == -1) {
        InformarError("Imposible examinar un mapeo");
        return false;
    }
    const Descriptor lectura{tuberia[0]}, escritura{tuberia[1]};
    const ssize_t n = write(escritura.df(), dir, kBytesValidez);
    return n == kBytesValidez && read(lectura.df(), cabecera, kBytesValidez) == n;
}

/// Whether the block holds a valid SF. Heap blocks and segments can be read as long as they are recorded.
bool TieneSF(const NodoBloque &bloque) {
    if (bloque.tamano < kBytesValidez) return false;
    if (bloque.tipo != TIPO_MMAP) return EsValidoSF(bloque.direccion);
    SF cabecera;
    return LeerCabeceraMapeada(bloque.direccion, &cabecera) && EsValidoSF(&cabecera);
}

} // namespace

void MemFSBuscar(char *[]) {
    // By slot: to look up the block after each address would take the square of their number.
    for (int i = 0; i < L.num; i++)
        if (TieneSF(*L.nodos[i])) Imprimir("Sistema de ficheros valido en %p\n", L.nodos[i]->direccion);
}
