// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <type_traits>

#include "memory/block_list.h"

// The bytes of an SF, the small file system that fills a block of memory. Integers are in the machine's own
// byte order; there are offsets and no pointers, so an SF is whole at whatever address its block is attached.
//
//                   0  +-----------------------------------------------------------+
//                      | magic 4 | capacity 4 | files 4    | total size 4          |  header
//                  16  | free 4  | unused 4   | format time 8                      |
//                  32  +-----------------------------------------------------------+
//                      | name 256 ...         | size 4 | data offset 4 | time 8    |  entry 0
//                 304  +-----------------------------------------------------------+
//                      | ...                                                       |  entry i: 32 + 272 i
//  32 + 272 capacity   +-----------------------------------------------------------+
//                      | file 0 | file 1 | ...     the last one | free bytes       |  data area
//          total size  +-----------------------------------------------------------+
//
// The files lie packed, in the order of their entries. Entries from the number of files on are not in use.

constexpr uint32_t kMaxNombreSF = 255; ///< characters of a file's name

struct SF {
    uint32_t magico;      ///< kMagicoSF
    uint32_t capacidad;   ///< entries of the directory
    uint32_t numFicheros; ///< entries in use
    uint32_t tamTotal;    ///< bytes of the whole SF, header included
    uint32_t libres;      ///< bytes of the data area not yet used
    uint32_t sinUso;      ///< never written
    time_t fecha;         ///< when it was formatted
};

struct EntradaSF {
    char nombre[kMaxNombreSF + 1];
    uint32_t tam;            ///< bytes
    uint32_t desplazamiento; ///< of the first byte, from the start of the data area
    time_t fecha;            ///< when the file was put into the SF
};

// Both stand in frames that a recovery jump may cut off.
static_assert(std::is_trivially_destructible_v<SF> && std::is_trivially_destructible_v<EntradaSF>);
static_assert(sizeof(time_t) == 8);
static_assert(sizeof(SF) == 4 + 4 + 4 + 4 + 4 + 4 + 8 && sizeof(EntradaSF) == 256 + 4 + 4 + 8);
static_assert(offsetof(SF, magico) == 0 && offsetof(SF, capacidad) == 4 && offsetof(SF, numFicheros) == 8);
static_assert(offsetof(SF, tamTotal) == 12 && offsetof(SF, libres) == 16 && offsetof(SF, fecha) == 24);
static_assert(offsetof(EntradaSF, nombre) == 0 && offsetof(EntradaSF, tam) == 256);
static_assert(offsetof(EntradaSF, desplazamiento) == 260 && offsetof(EntradaSF, fecha) == 264);

/// Bytes of header and directory. Exact for every capacity: 64 bits do not wrap.
constexpr uint64_t TamanoSF(uint32_t capacidad) {
    return sizeof(SF) + sizeof(EntradaSF) * static_cast<uint64_t>(capacidad);
}

/// The directory, which follows the header.
inline EntradaSF *Entradas(SF *sf) { return reinterpret_cast<EntradaSF *>(sf + 1); }
inline const EntradaSF *Entradas(const SF *sf) { return reinterpret_cast<const EntradaSF *>(sf + 1); }
