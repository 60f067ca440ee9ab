// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <cstddef>

// Whole files between the disk and memory. The kernel copies, so an address that cannot be accessed is EFAULT
// and no fault. Each keeps across close() the `errno` of what failed.

/// Size in bytes of the file `ruta`, or -1 with the `errno` of stat().
off_t auxTamanoFichero(const char *ruta);

/// Reads the file to `dir`, at most the `tam` bytes for which there is room: its size as auxTamanoFichero
/// gave it, whatever the file has grown to. Returns the bytes read, or -1 with the `errno` of open or read.
ssize_t LeerFicheroDisco(const char *ruta, void *dir, size_t tam);

/// Writes the `cont` bytes at `dir` to a new file, or over an existing one when `sobreescribir` is not 0.
/// Returns `cont`, or -1: EEXIST, ENOSPC (the disk took only a part; a file made by this call is removed), or
/// the `errno` of open, write or close.
ssize_t EscribirFicheroDisco(const char *ruta, const void *dir, size_t cont, int sobreescribir);
