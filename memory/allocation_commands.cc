// SPDX-License-Identifier: MIT

// The commands that obtain and release blocks of memory. allocate, deallocate, malloc, shared and mmap hand
// their words on to the command for the kind of block.

#include <sys/ipc.h>
#include <sys/mman.h>
#include <sys/shm.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "base/address.h"
#include "base/output.h"
#include "memory/allocation.h"
#include "memory/block_list.h"
#include "memory/commands.h"

namespace {

bool Es(const char *palabra, const char *opcion) { return strcmp(palabra, opcion) == 0; }

/// A key is the low 32 bits of the number typed.
key_t LeerClave(const char *palabra) { return static_cast<key_t>(strtoul(palabra, nullptr, 10)); }

/// A key as it is shown: widened as the signed number that it is.
unsigned long ClaveVisible(key_t clave) { return static_cast<unsigned long>(static_cast<long>(clave)); }

/// Reads a size. Returns 0, with a line that says so, when there is nothing to assign.
size_t LeerTamano(const char *palabra) {
    const size_t tam = strtoul(palabra, nullptr, 10);
    if (tam == 0) EscribirTexto("No se asignan bloques de 0 bytes\n");
    return tam;
}

void InformarFalloClave(key_t clave) {
    Imprimir("Imposible asignar memoria compartida clave %lu: %s\n", ClaveVisible(clave), strerror(errno));
}

/// The protection bits that a word of up to three letters asks for; none for a longer word or no word.
int LeerProteccion(const char *permisos) {
    if (!permisos || strlen(permisos) >= 4) return PROT_NONE;
    int proteccion = PROT_NONE;
    if (strchr(permisos, 'r')) proteccion |= PROT_READ;
    if (strchr(permisos, 'w')) proteccion |= PROT_WRITE;
    if (strchr(permisos, 'x')) proteccion |= PROT_EXEC;
    return proteccion;
}

} // namespace

void Cmd_memmalloc(char *args[]) {
    if (!args[0])
        ImprimirListaMalloc(&L);
    else if (const size_t tam = LeerTamano(args[0]))
        doMalloc(tam);
}

void Cmd_memdemalloc(char *args[]) {
    if (!args[0])
        ImprimirListaMalloc(&L);
    else if (const size_t tam = LeerTamano(args[0]))
        doMallocDealloc(tam);
}

void Cmd_malloc(char *args[]) {
    if (args[0] && Es(args[0], "-free"))
        Cmd_memdemalloc(args + 1);
    else
        Cmd_memmalloc(args);
}

void Cmd_createshared(char *args[]) {
    if (!args[0] || !args[1]) {
        ImprimirListaShared(&L);
        return;
    }
    const key_t clave = LeerClave(args[0]);
    const size_t tam = LeerTamano(args[1]);
    if (tam == 0) return;
    const void *dir = ObtenerMemoriaShmget(clave, tam);
    if (!dir)
        InformarFalloClave(clave);
    else
        Imprimir("Asignados %zu bytes en %p\n", tam, dir);
}

void Cmd_memshared(char *args[]) {
    if (!args[0]) {
        ImprimirListaShared(&L);
        return;
    }
    const key_t clave = LeerClave(args[0]);
    const void *dir = ObtenerMemoriaShmget(clave, 0);
    if (!dir)
        InformarFalloClave(clave);
    else
        Imprimir("Memoria compartida de clave %lu  en %p\n", ClaveVisible(clave), dir);
}

void Cmd_memdeshared(char *args[]) {
    if (!args[0])
        ImprimirListaShared(&L);
    else
        doSharedDealloc(LeerClave(args[0]));
}

void Cmd_shared(char *args[]) {
    if (!args[0])
        ImprimirListaShared(&L);
    else if (Es(args[0], "-free"))
        Cmd_memdeshared(args + 1);
    else if (Es(args[0], "-create"))
        Cmd_createshared(args + 1);
    else if (Es(args[0], "-delkey"))
        Cmd_delkey(args + 1);
    else
        Cmd_memshared(args);
}

void Cmd_delkey(char *args[]) {
    const key_t clave = args[0] ? LeerClave(args[0]) : IPC_PRIVATE;
    if (clave == IPC_PRIVATE) {
        EscribirTexto("      delkey necesita clave_valida\n");
        return;
    }
    const int id = shmget(clave, 0, 0666);
    if (id == -1)
        InformarError("shmget: imposible obtener memoria compartida");
    else if (shmctl(id, IPC_RMID, nullptr) == -1) // it goes with its last attachment, perhaps one of ours
        InformarError("shmctl: imposible eliminar memoria compartida\n");
}

void Cmd_memmmap(char *args[]) {
    if (!args[0]) {
        ImprimirListaMmap(&L);
        return;
    }
    const void *dir = doMmapFichero(args[0], LeerProteccion(args[1]));
    if (!dir)
        InformarError("Imposible mapear fichero");
    else
        Imprimir("fichero %s mapeado en %p\n", args[0], dir);
}

void Cmd_memdemmap(char *args[]) { doMmapDealloc(args[0]); }

void Cmd_mmap(char *args[]) {
    if (args[0] && Es(args[0], "-free"))
        Cmd_memdemmap(args + 1);
    else
        Cmd_memmmap(args);
}

void Cmd_free(char *args[]) {
    void *dir = args[0] ? cadtop(args[0]) : nullptr;
    if (dir)
        doDeallocate(dir);
    else
        ImprimirListaMemCompleta(&L);
}

void Cmd_deallocate(char *args[]) {
    if (!args[0])
        ImprimirListaMemCompleta(&L);
    else if (Es(args[0], "-malloc"))
        Cmd_memdemalloc(args + 1);
    else if (Es(args[0], "-shared"))
        Cmd_memdeshared(args + 1);
    else if (Es(args[0], "-delkey"))
        Cmd_delkey(args + 1);
    else if (Es(args[0], "-mmap"))
        Cmd_memdemmap(args + 1);
    else
        Cmd_free(args);
}

void Cmd_allocate(char *args[]) {
    if (!args[0])
        ImprimirListaMemCompleta(&L);
    else if (Es(args[0], "-malloc"))
        Cmd_malloc(args + 1);
    else if (Es(args[0], "-shared"))
        Cmd_shared(args + 1);
    else if (Es(args[0], "-createshared"))
        Cmd_createshared(args + 1);
    else if (Es(args[0], "-mmap"))
        Cmd_mmap(args + 1);
    else
        Imprimir("uso: %s [-malloc|-shared|-createshared|-mmap] ....\n", args[-1]);
}
