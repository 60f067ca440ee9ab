#include <unistd.h>

#include <cstring>

#include "base/descriptor.h"
#include "base/output.h"
#include "memfs/commands.h"
#include "memfs/file_system.h"
#include "memory/block_list.h"

namespace {

/// Copies the header at the start of a mapping through a pipe. The kernel answers EFAULT for what cannot be
/// read (no permission, or past the end of a file since cut short), where a read of it here would be a fault.
bool LeerCabeceraMapeada(const void *dir, SF *cabecera) {
    int tuberia[2];
    if (pipe(tuberia) == -1) {
        InformarError("Imposible examinar un mapeo");
        return false;
    }
    const Descriptor lectura{tuberia[0]}, escritura{tuberia[1]};
    const ssize_t n = write(escritura.df(), dir, sizeof *cabecera);
    return n == sizeof *cabecera && read(lectura.df(), cabecera, sizeof *cabecera) == n;
}

/// Heap blocks and segments can be read as long as they are recorded.
bool LeerCabecera(const void *dir, SF *cabecera) {
    if (TipoNodoDireccion(&L, dir) == TIPO_MMAP) return LeerCabeceraMapeada(dir, cabecera);
    memcpy(cabecera, dir, sizeof *cabecera);
    return true;
}

} // namespace

void MemFSBuscar(char *[]) {
    for (void *dir = PrimerElemento(&L); dir; dir = SiguienteElemento(&L, dir)) {
        const unsigned long long tam = TamanoNodoDireccion(&L, dir);
        SF cabecera;
        // A block shorter than a header holds none, and would be read past its end.
        if (tam >= sizeof cabecera && LeerCabecera(dir, &cabecera) && EsValidoSFEnBloque(&cabecera, tam))
            Imprimir("Sistema de ficheros valido en %p\n", dir);
    }
}
