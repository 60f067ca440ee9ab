// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <cstddef>

/// The count that stands for the whole file.
constexpr size_t kTodoElFichero = ~size_t{0};

/// Reads up to `cont` bytes of `fich`, from its start, to `dir` in one read(). Returns how many there were,
/// or -1 with the `errno` of the call that failed (EFAULT: the process may not write at `dir`).
ssize_t LeerFichero(const char *fich, void *dir, size_t cont);

/// Creates `fich` (it must not exist) or, with `sobreescribir` not 0, empties it first; then writes `cont`
/// bytes from `dir` in one write(). Returns how many were written, or -1 with the `errno` of the call that
/// failed (EFAULT: the process may not read at `dir`).
ssize_t EscribirFichero(const char *fich, const void *dir, size_t cont, int sobreescribir);
