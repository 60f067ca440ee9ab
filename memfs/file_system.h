#pragma once

#include <cstdint>

#include "memfs/file_id.h"
#include "memfs/layout.h"

// One SF: its validity, its addresses, formatting, listing, searching and deleting. An SF may have been
// written by another program, or spoiled: what its entries say is compared with its data area before a byte
// of it is touched (EIO). That the SF itself lies within its block is for whoever knows the block to find
// out, with EsValidoSFEnBloque.

/// 1 when the header at `dir` (may be null) is that of an SF, else 0. Examines its first 20 bytes, in 32-bit
/// arithmetic; the size of the block is not its business.
int EsValidoSF(const void *dir);

/// 1 when the block of `tam` bytes at `dir` holds a valid SF that lies within it, else 0.
int EsValidoSFEnBloque(const void *dir, uint64_t tam);

/// 1 when a block of `tam` bytes has no room for the fixed part and one byte of data, else 0.
int EspacioInsuficiente(uint32_t capacidad, uint64_t tam);

/// Bytes of the data area, or -1: EIO (header and directory alone exceed the total size).
int64_t TamanoAreaDatos(const SF *sf);

/// Whether the bytes of file i lie within the data area.
bool FicheroEnArea(const SF *sf, uint32_t i);

unsigned char *DirPrincipioDatos(SF *sf);                    ///< start of the data area
unsigned char *DirPrincipioDatosFichero(SF *sf, uint32_t i); ///< first byte of file i
unsigned char *DirFinalDatos(SF *sf);                        ///< just past the last stored file

/// The data offset that entry i must have: the end of the file before it.
uint32_t NuevoDesplazamiento(const SF *sf, uint32_t i);

/// Lays out an empty SF over the `tam` bytes at `dir`. Returns 0, or -1 with nothing written: EFBIG (`tam`
/// does not fit in 32 bits), ENOSPC (EspacioInsuficiente).
int FormatearSF(void *dir, uint32_t capacidad, uint64_t tam);

/// Prints header and files. Reads nothing of the data area.
void ListarSF(SF *sf);

/// Index of the first file whose name begins with `nombre`, or -1.
int BuscarFicheroSF(const SF *sf, const char *nombre);

/// Deletes a file and moves the later ones down over it. Returns 0, or -1 with the SF unchanged: ENXIO (not a
/// valid SF), ENOENT (no such file), EIO (it, or a later file, leaves the data area).
int BorrarFicheroSF(const Idfich &id);
