// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <cstddef>

// Obtaining and releasing blocks of memory, each recorded in the list L while the user holds it.

/// Obtains `tam` bytes from the heap; prints what came of it.
void doMalloc(size_t tam);

/// Attaches the shared segment of `clave`, which is created (it must not exist) when `tam` is not 0. Returns
/// the address, or null: EINVAL (key 0) or the `errno` of shmget() or shmat(); no new segment is left then.
void *ObtenerMemoriaShmget(key_t clave, size_t tam);

/// Maps the whole of `fich` privately with the protection bits `proteccion`; the descriptor stays open, and
/// in the open-file table, while the mapping lives. Returns the address, or null with the reason in `errno`.
void *doMmapFichero(const char *fich, int proteccion);

// Each releases the earliest block that fits and prints only on failure.
void doMallocDealloc(size_t tam);
void doSharedDealloc(key_t clave);       ///< the segment stays in the system
void doMmapDealloc(const char *fichero); ///< null: prints the list of mappings instead

/// Releases the block that starts at `dir`, whatever its kind. Returns 0; or -1, with a line, when no block
/// does.
int doDeallocate(void *dir);

/// Releases every recorded block. Shared segments stay in the system.
void EliminarListaBloquesMemoria();
