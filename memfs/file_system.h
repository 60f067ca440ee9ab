// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <type_traits>

#include "memfs/file_id.h"
#include "memfs/layout.h"

// One SF: its validity, its addresses, formatting, listing, searching and deleting. The start of its header
// alone makes an SF valid, and it may have been written by another program, or spoiled: what header and
// entries say is compared, in 64 bits, with the recorded block that the SF is in before a byte beyond the
// header is touched (EIO). Of an SF that is in no recorded block nothing can be reached.

/// Bytes that EsValidoSF examines; a shorter block holds no SF.
constexpr uint64_t kBytesValidez = offsetof(SF, sinUso);

/// 1 when the header at `dir` (may be null) is that of an SF, else 0. In 32-bit arithmetic; the size of the
/// block is not its business.
int EsValidoSF(const void *dir);

/// 1 when a block of `tam` bytes has no room for the fixed part and one byte of data, else 0.
int EspacioInsuficiente(uint32_t capacidad, uint64_t tam);

/// What of an SF lies within its recorded block, whatever the header says.
struct AlcanceSF {
    uint64_t entradas; ///< of the directory, in use or not
    uint64_t datos;    ///< bytes of the data area; no more than the 32 bits of an offset reach
};
static_assert(std::is_trivially_destructible_v<AlcanceSF>); // in frames that a recovery jump may cut off
AlcanceSF Alcance(const SF *sf);

unsigned char *DirPrincipioDatos(SF *sf);                    ///< start of the data area
unsigned char *DirPrincipioDatosFichero(SF *sf, uint32_t i); ///< first byte of file i
unsigned char *DirFinalDatos(SF *sf);                        ///< just past the last stored file

/// The data offset that entry i must have: the end of the file before it. What a spoiled SF gives may be more
/// than an entry can hold.
uint64_t NuevoDesplazamiento(const SF *sf, uint32_t i);

/// Lays out an empty SF over the `tam` bytes at `dir`. Returns 0, or -1 with nothing written: EFBIG (`tam`
/// does not fit in 32 bits), ENOSPC (EspacioInsuficiente).
int FormatearSF(void *dir, uint32_t capacidad, uint64_t tam);

/// Prints the header and the files whose entries lie within the block. Reads nothing of the data area.
void ListarSF(SF *sf);

/// Index of the first file whose name begins with `nombre`, or -1: ENOENT, EIO (the block ends before the
/// entries do).
int BuscarFicheroSF(const SF *sf, const char *nombre);

/// Deletes a file and moves the later ones down over it. Returns 0, or -1 with the SF unchanged: ENXIO (not a
/// valid SF), ENOENT (no such file), EIO (what has to be moved leaves the block; or the size of the deleted
/// file is more than can get free, which would make the SF invalid and its other files unreachable).
int BorrarFicheroSF(const Idfich &id);
