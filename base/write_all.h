// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <cstddef>

// write(2) as the shell needs it: nothing here keeps a buffer. Async-signal-safe.

/// Writes at least one of the `n` bytes (n > 0) to descriptor `df`: goes on after a signal, and waits where
/// the descriptor is non-blocking. Returns how many were written, or -1 with the `errno` of write().
ssize_t EscribirAlgo(int df, const void *bytes, size_t n);

/// Writes all of the `n` bytes. Returns 0, or -1 with the `errno` of write(); some may be written by then.
int EscribirTodo(int df, const void *bytes, size_t n);
