// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include "memfs/file_id.h"

// Copying, moving and deleting files between SFs and the disk. Disk files are never replaced (EEXIST). An
// operation that fails leaves SFs and disk as they were; their files keep their bytes, sizes and times.
//
// Names in an SF are searched for by their beginning (BuscarFicheroSF), both the source's and, to refuse it,
// the destination's.

// Each returns the bytes copied, or -1: ENOENT (no such file in the source SF), ENOSPC (no room, or the
// directory is full), EEXIST, ENAMETOOLONG (more than 255 characters for an SF), EIO (an SF that
// leaves its block there), or the reason of the disk.
ssize_t CopyDiskDisk(const char *origen, const char *destino);
ssize_t CopyDiskMem(const char *origen, const Idfich &destino);
ssize_t CopyMemDisk(const Idfich &origen, const char *destino);
ssize_t CopyMemMem(const Idfich &origen, const Idfich &destino); ///< both may be in one SF

/// Copies by the two of these that fits. Returns the bytes copied, or -1: ENXIO (an SF that is not valid), or
/// as above.
ssize_t CopiarFicheroSF(const Idfich &origen, const Idfich &destino);

/// Removes a disk file, or BorrarFicheroSF. Returns 0, or -1 with the reason of either.
int BorrarFichero(const Idfich &id);

/// Copies, then deletes the source. Returns 0, or -1 with nothing changed: as CopiarFicheroSF, EINVAL (the
/// source is a FIFO, a device or a socket), EBUSY (it has grown meanwhile), or why it cannot be deleted.
int MoverFicheroSF(const Idfich &origen, const Idfich &destino);
