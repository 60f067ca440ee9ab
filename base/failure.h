// SPDX-License-Identifier: MIT

#pragma once

#include <cerrno>
#include <cstddef>

/// Sets `errno` to `motivo` and returns -1: the way every operation of the shell reports a refusal of its
/// own.
inline int Fallo(int motivo) {
    errno = motivo;
    return -1;
}

/// The same for operations that return a pointer: null.
inline std::nullptr_t FalloNulo(int motivo) {
    errno = motivo;
    return nullptr;
}
