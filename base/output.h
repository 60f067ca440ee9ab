// SPDX-License-Identifier: MIT

#pragma once

#include <cstdarg>
#include <cstddef>

// Standard output, buffered by the shell itself. Text is appended here and reaches descriptor 1 only at known
// points: before the shell waits for a line, before anything else writes to a descriptor, before a child is
// made or a program replaces the shell, before a message on standard error, before a fault can end the
// process. SincronizarES (base/synchronisation.h) is the call for all of these.
//
// The invariant: what has been appended and not yet written is, at any instant, the bytes between two bounds
// that one store changes together: text first, bounds last; a write moves the lower bound as soon as it
// returns. So the handler of a fault may write it out wherever the main flow was, and nothing comes out
// twice. A write that is forced by a full buffer ends at a line end whenever the text has one.

/// Appends formatted text (the formats of printf), cut at kMaxReserva - 1 characters: a text of any length
/// (an environment entry) goes through EscribirTexto. Keeps `errno`.
[[gnu::format(printf, 1, 2)]] void Imprimir(const char *formato, ...);

/// Appends `n` bytes as they are.
void EscribirBytes(const void *bytes, size_t n);

/// Appends the text `texto`.
void EscribirTexto(const char *texto);

/// Room for `n` bytes (at most kMaxReserva) of text that the caller forms by hand; nothing is printed until
/// ConfirmarSalida tells how many of them were used.
char *ReservarSalida(size_t n);
constexpr size_t kMaxReserva = 16384;

/// Appends the first `n` bytes of the room that ReservarSalida gave.
void ConfirmarSalida(size_t n);

/// Writes out everything that has been appended. Keeps `errno`. When descriptor 1 refuses the text (closed,
/// no space left) the text is dropped and the first refusal of a run of them is told on standard error.
void VolcarSalida();

/// VolcarSalida for the handler of a fault that jumps away: async-signal-safe, says nothing of a refusal.
void VolcarDesdeManejador();

/// perror() with the order kept: writes out standard output, then "texto: reason\n" to descriptor 2 in one
/// write, with the system's text for `errno`. Keeps `errno`.
void InformarError(const char *texto);

/// From now on signal `salta` may bring a recovery jump, which cuts off a write that waits: standard output
/// goes out in pieces that the system takes whole, each waited for beforehand, and the jump does not come
/// between a write and the note of what it wrote.
void EscribirPorPiezas(int salta);
