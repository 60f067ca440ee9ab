// SPDX-License-Identifier: MIT

#include "memory/allocation.h"

#include <fcntl.h>
#include <sys/ipc.h>
#include <sys/mman.h>
#include <sys/shm.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/address.h"
#include "base/failure.h"
#include "base/output.h"
#include "base/synchronisation.h"
#include "files/open_file_table.h"
#include "memory/block_list.h"

namespace {

/// Takes the node of a released block out of the list.
void QuitarDeLista(const void *dir) {
    if (EliminarNodoDireccion(&L, dir) == -1) Imprimir("Imposible quitar de lista: %s\n", strerror(errno));
}

void *MapearDescriptor(int df, size_t tam, int proteccion, const char *fich, int modo) {
    void *dir = mmap(nullptr, tam, proteccion, MAP_PRIVATE, df, 0);
    if (dir == MAP_FAILED) return nullptr;
    char nombre[1024];
    snprintf(nombre, sizeof nombre, "Mapeo de %s", fich);
    // Not in the list (it is full) it stays mapped, as a segment stays attached: nothing is said of it.
    InsertarNodoMmap(&L, dir, tam, df, fich);
    AddOpenFile(df, nombre, modo, 0);
    return dir;
}

/// Closes the descriptor of a mapping and frees its entry of the open-file table. The recorded number is
/// closed whoever has it by now: after `close` or `dup2` on it, that may be a file of the user's.
void CerrarMapeo(int df) {
    SincronizarES(); // it may be one that the shell reads or prints through
    close(df);
    RemoveOpenFile(df);
}

/// free() of a block of `tam` bytes. The next block may be at the same address, and an SF that was laid out
/// in this one is not to be found there again. Any other block keeps its bytes: what free() leaves of them is
/// for the user to see.
void LiberarHeap(void *dir, size_t tam) {
    auto *magico = static_cast<uint32_t *>(Opaca(dir));
    if (tam >= sizeof *magico && *magico == kMagicoSF) *magico = 0;
    free(Opaca(dir));
}

/// Gives a block back to where its kind comes from. Returns whether it is of any kind: the user may have
/// written over its node.
bool Devolver(const NodoBloque &bloque) {
    switch (bloque.tipo) {
    case TIPO_MALLOC: LiberarHeap(bloque.direccion, bloque.tamano); return true;
    case TIPO_SHARED: shmdt(bloque.direccion); return true;
    case TIPO_MMAP:
        munmap(bloque.direccion, bloque.tamano);
        // The entry of the open-file table goes too, as it does when a mapping is released by name.
        CerrarMapeo(bloque.clave);
        return true;
    default: return false;
    }
}

} // namespace

void doMalloc(size_t tam) {
    void *dir = malloc(tam);
    if (!dir) {
        Imprimir("Imposible obtener memoria con malloc: %s\n", strerror(errno));
        return;
    }
    Imprimir("Asignados %zu bytes en %p\n", tam, dir);
    SincronizarTrasDanos(); // the node's own memory comes from the same heap
    // A block that does not fit in the list remains the user's: its address has been shown.
    if (InsertarNodoMalloc(&L, dir, tam) == -1)
        Imprimir("Imposible insertar en lista: %s\n", strerror(errno));
}

void *ObtenerMemoriaShmget(key_t clave, size_t tam) {
    if (clave == IPC_PRIVATE) return FalloNulo(EINVAL);
    const int id = shmget(clave, tam, tam ? 0777 | IPC_CREAT | IPC_EXCL : 0777);
    if (id == -1) return nullptr;
    void *dir = shmat(id, nullptr, 0);
    if (dir == reinterpret_cast<void *>(-1)) {
        const int motivo = errno;
        if (tam) shmctl(id, IPC_RMID, nullptr);
        return FalloNulo(motivo);
    }
    struct shmid_ds segmento = {};
    shmctl(id, IPC_STAT, &segmento);
    InsertarNodoShared(&L, dir, segmento.shm_segsz, clave);
    return dir;
}

void *doMmapFichero(const char *fich, int proteccion) {
    const int modo = proteccion & PROT_WRITE ? O_RDWR : O_RDONLY;
    SincronizarES(); // the file may be the one that the shell prints to: its size is that of all the text
    struct stat st;
    if (stat(fich, &st) == -1) return nullptr;
    if (S_ISFIFO(st.st_mode))
        return FalloNulo(ENODEV); // opening one would wait for a writer, for mmap to refuse
    const int df = open(fich, modo);
    if (df == -1) return nullptr;
    void *dir = MapearDescriptor(df, static_cast<size_t>(st.st_size), proteccion, fich, modo);
    if (!dir) { // nobody would know of the descriptor
        const int motivo = errno;
        close(df);
        return FalloNulo(motivo);
    }
    return dir;
}

void doMallocDealloc(size_t tam) {
    void *dir = DireccionNodoMalloc(&L, tam);
    if (!dir) {
        EscribirTexto("No hay bloque de ese tamano asignado con malloc\n");
        return;
    }
    QuitarDeLista(dir);
    LiberarHeap(dir, tam);
}

void doSharedDealloc(key_t clave) {
    void *dir = DireccionNodoShared(&L, clave);
    if (!dir) {
        EscribirTexto("No hay bloque de esa clave mapeado en el proceso\n");
        return;
    }
    shmdt(dir);
    QuitarDeLista(dir);
}

void doMmapDealloc(const char *fichero) {
    if (!fichero) {
        ImprimirListaMmap(&L);
        return;
    }
    void *dir = DireccionNodoMmap(&L, fichero);
    if (!dir) {
        Imprimir("Fichero %s no mapeado\n", fichero);
        return;
    }
    if (munmap(dir, TamanoNodoDireccion(&L, dir)) == -1) {
        Imprimir("Imposible desmapear %s en %p: %s\n", fichero, dir, strerror(errno));
        return;
    }
    CerrarMapeo(DescriptorNodoMmap(&L, fichero));
    QuitarDeLista(dir);
}

int doDeallocate(void *dir) {
    const int pos = BuscarNodoDireccion(&L, dir);
    if (pos != -1 && Devolver(*L.nodos[pos])) return EliminarNodoDireccion(&L, dir);
    Imprimir("Direccion %p no asignada con malloc, shared o mmap\n", dir);
    return -1;
}

void EliminarListaBloquesMemoria() {
    // By slot: to look up and take out each one would take the square of their number.
    for (int i = 0; i < L.num; i++) Devolver(*L.nodos[i]);
    VaciarLista(&L);
}
