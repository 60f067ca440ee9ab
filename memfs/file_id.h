// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <type_traits>

struct SF;

constexpr uint64_t kSFDisco = ~0ULL; ///< Idfich::sf of a file on disk
constexpr uint64_t kSFNoValido = 0;  ///< Idfich::sf of something that is not a valid SF

/// Names a file: in an SF, or on disk.
struct Idfich {
    uint64_t sf;        ///< address of a valid SF, kSFDisco or kSFNoValido
    const char *nombre; ///< name inside the SF, or path on disk
};
static_assert(std::is_trivially_destructible_v<Idfich>); // in frames that a recovery jump may cut off

/// The SF of an identifier that is not of a file on disk; null when it is not valid.
inline SF *DirSF(const Idfich &id) { return reinterpret_cast<SF *>(id.sf); }
