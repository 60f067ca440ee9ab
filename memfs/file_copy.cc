// SPDX-License-Identifier: MIT

#include "memfs/file_copy.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "base/failure.h"
#include "memfs/disk_transfer.h"
#include "memfs/file_system.h"

namespace {

/// Index of the file that `origen` names, its bytes known to lie within the block, or -1: ENOENT, EIO.
int BuscarOrigen(const Idfich &origen) {
    const SF *sf = DirSF(origen);
    const int i = BuscarFicheroSF(sf, origen.nombre);
    if (i == -1) return -1;
    const EntradaSF &entrada = Entradas(sf)[static_cast<uint32_t>(i)];
    return uint64_t{entrada.desplazamiento} + entrada.tam <= Alcance(sf).datos ? i : Fallo(EIO);
}

/// Whether a file of `tam` bytes can be added after the last one: 0, or -1: ENAMETOOLONG, ENOSPC, EEXIST, EIO
/// (its entry or its bytes would leave the block).
int ComprobarHueco(const SF *sf, const char *nombre, uint64_t tam) {
    if (strlen(nombre) > kMaxNombreSF) return Fallo(ENAMETOOLONG);
    const uint32_t num = sf->numFicheros;
    if (tam >= sf->libres || num >= sf->capacidad) return Fallo(ENOSPC);
    if (BuscarFicheroSF(sf, nombre) != -1) return Fallo(EEXIST);
    const AlcanceSF alcance = Alcance(sf);
    if (num >= alcance.entradas || NuevoDesplazamiento(sf, num) + tam > alcance.datos) return Fallo(EIO);
    return 0;
}

/// Whether a disk file is known to be neither a regular file nor a link to one: the copy would be empty, and
/// what is no file deleted. A directory passes, and what cannot be looked at: it is refused when it is read.
bool EsEspecial(const char *ruta) {
    struct stat st;
    return stat(ruta, &st) == 0 && !S_ISREG(st.st_mode) && !S_ISDIR(st.st_mode);
}

/// Enters the `tam` bytes that stand at DirFinalDatos as a file; ComprobarHueco has found that they fit.
void AniadirEntrada(SF *sf, const char *nombre, size_t tam) {
    const uint32_t num = sf->numFicheros;
    EntradaSF &entrada = Entradas(sf)[num];
    strcpy(entrada.nombre, nombre);
    entrada.tam = static_cast<uint32_t>(tam);
    entrada.fecha = time(nullptr);
    entrada.desplazamiento = static_cast<uint32_t>(NuevoDesplazamiento(sf, num));
    sf->numFicheros = num + 1;
    sf->libres -= entrada.tam;
}

} // namespace

ssize_t CopyDiskDisk(const char *origen, const char *destino) {
    const off_t tam = auxTamanoFichero(origen);
    if (tam == -1) return -1;
    const size_t cabida = static_cast<size_t>(tam);
    void *bufer = malloc(cabida + 1); // malloc(0) may answer null without having failed
    if (!bufer) return -1;
    ssize_t n = LeerFicheroDisco(origen, bufer, cabida);
    if (n != -1) n = EscribirFicheroDisco(destino, bufer, static_cast<size_t>(n), 0);
    const int motivo = errno;
    free(bufer);
    errno = motivo;
    return n;
}

ssize_t CopyDiskMem(const char *origen, const Idfich &destino) {
    SF *sf = DirSF(destino);
    const off_t tam = auxTamanoFichero(origen);
    if (tam == -1) return -1;
    if (ComprobarHueco(sf, destino.nombre, static_cast<uint64_t>(tam)) == -1) return -1;
    const ssize_t leidos = LeerFicheroDisco(origen, DirFinalDatos(sf), static_cast<size_t>(tam));
    if (leidos == -1) return -1;
    AniadirEntrada(sf, destino.nombre, static_cast<size_t>(leidos));
    return leidos;
}

ssize_t CopyMemDisk(const Idfich &origen, const char *destino) {
    const int encontrado = BuscarOrigen(origen);
    if (encontrado == -1) return -1;
    const uint32_t i = static_cast<uint32_t>(encontrado);
    SF *sf = DirSF(origen);
    return EscribirFicheroDisco(destino, DirPrincipioDatosFichero(sf, i), Entradas(sf)[i].tam, 0);
}

ssize_t CopyMemMem(const Idfich &origen, const Idfich &destino) {
    const int encontrado = BuscarOrigen(origen);
    if (encontrado == -1) return -1;
    const uint32_t i = static_cast<uint32_t>(encontrado);
    SF *de = DirSF(origen);
    SF *a = DirSF(destino);
    const uint32_t tam = Entradas(de)[i].tam;
    if (ComprobarHueco(a, destino.nombre, tam) == -1) return -1;
    // memmove: within one spoiled SF the two ranges may overlap.
    memmove(DirFinalDatos(a), DirPrincipioDatosFichero(de, i), tam);
    AniadirEntrada(a, destino.nombre, tam);
    return tam;
}

ssize_t CopiarFicheroSF(const Idfich &origen, const Idfich &destino) {
    if (origen.sf == kSFNoValido || destino.sf == kSFNoValido) return Fallo(ENXIO);
    if (origen.sf == kSFDisco)
        return destino.sf == kSFDisco ? CopyDiskDisk(origen.nombre, destino.nombre)
                                      : CopyDiskMem(origen.nombre, destino);
    return destino.sf == kSFDisco ? CopyMemDisk(origen, destino.nombre) : CopyMemMem(origen, destino);
}

int BorrarFichero(const Idfich &id) { return id.sf == kSFDisco ? unlink(id.nombre) : BorrarFicheroSF(id); }

int MoverFicheroSF(const Idfich &origen, const Idfich &destino) {
    // An SF that is not valid goes first, as when copying.
    if (origen.sf == kSFDisco && destino.sf != kSFNoValido && EsEspecial(origen.nombre)) return Fallo(EINVAL);
    const ssize_t copiados = CopiarFicheroSF(origen, destino);
    if (copiados == -1) return -1;
    int motivo = EBUSY; // what the source has grown by since would be lost with it
    if (origen.sf != kSFDisco || auxTamanoFichero(origen.nombre) <= copiados) {
        if (BorrarFichero(origen) == 0) return 0;
        motivo = errno;
    }
    // The copy would be in the way of the next try. It is the only file whose name begins with that name.
    BorrarFichero(destino);
    return Fallo(motivo);
}
