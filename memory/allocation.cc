#include "memory/allocation.h"

#include <fcntl.h>
#include <sys/ipc.h>
#include <sys/mman.h>
#include <sys/shm.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

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
    // Not in the list it stays mapped, and what keeps it from being released by name is told.
    if (InsertarNodoMmap(&L, dir, tam, df, fich) == -1)
        Imprimir("Imposible insertar en lista: %s\n", strerror(errno));
    AddOpenFile(df, nombre, modo, 0);
    return dir;
}

/// Closes the descriptor of a mapping and frees its entry of the open-file table.
void CerrarMapeo(int df) {
    SincronizarES(); // it may be one that the shell reads or prints through
    close(df);
    RemoveOpenFile(df);
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
    if (clave == IPC_PRIVATE) {
        errno = EINVAL;
        return nullptr;
    }
    const int id = shmget(clave, tam, tam ? 0777 | IPC_CREAT | IPC_EXCL : 0777);
    if (id == -1) return nullptr;
    void *dir = shmat(id, nullptr, 0);
    if (dir == reinterpret_cast<void *>(-1)) {
        const int motivo = errno;
        if (tam) shmctl(id, IPC_RMID, nullptr);
        errno = motivo;
        return nullptr;
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
    if (S_ISFIFO(st.st_mode)) { // opening one would wait for a writer, only to be refused by mmap
        errno = ENODEV;
        return nullptr;
    }
    const int df = open(fich, modo);
    if (df == -1) return nullptr;
    void *dir = MapearDescriptor(df, static_cast<size_t>(st.st_size), proteccion, fich, modo);
    if (!dir) { // nobody would know of the descriptor
        const int motivo = errno;
        close(df);
        errno = motivo;
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
    free(dir);
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
    switch (TipoNodoDireccion(&L, dir)) {
    case TIPO_MALLOC: free(dir); break;
    case TIPO_SHARED: shmdt(dir); break;
    case TIPO_MMAP:
        munmap(dir, TamanoNodoDireccion(&L, dir));
        // The entry of the open-file table goes too, as it does when a mapping is released by name.
        CerrarMapeo(DescriptorNodoDireccion(&L, dir));
        break;
    default: Imprimir("Direccion %p no asignada con malloc, shared o mmap\n", dir); return -1;
    }
    return EliminarNodoDireccion(&L, dir); // NOLINT(clang-analyzer-unix.Malloc): looked up, not followed
}

void EliminarListaBloquesMemoria() {
    void *dir = PrimerElemento(&L);
    void *siguiente = nullptr;
    // As many steps as blocks: in a list that the user has written over, the next may be the same one again.
    for (int quedan = L.num; quedan > 0 && dir; quedan--, dir = siguiente) {
        siguiente = SiguienteElemento(&L, dir);
        doDeallocate(dir);
    }
}
