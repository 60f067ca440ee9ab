#pragma once

#include <cerrno>

/// Sets `errno` to `motivo` and returns -1: the way every operation of the shell reports a refusal of its
/// own.
inline int Fallo(int motivo) {
    errno = motivo;
    return -1;
}
