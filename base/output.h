#pragma once

#include <cstdarg>
#include <cstddef>

// Standard output, buffered by the shell itself. Text is appended here and reaches descriptor 1 only at known
// points: before the shell waits for a line, before anything else writes to a descriptor, before a child is
// made or a program replaces the shell, before a message on standard error, before a fault can end the
// process. SincronizarES (shell/input.h) is the call for all of these.
//
// The buffer is whole at any instant (text first, bounds last, in one store), so that the handler of a fault
// may write it out. A write that is forced by a full buffer ends at a line end whenever the text has one.

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

/// Writes `n` bytes straight to descriptor `df`, all of them unless the descriptor refuses. Interrupted and
/// short writes are continued. Async-signal-safe. Returns 0, or -1 with the `errno` of write().
int EscribirTodo(int df, const void *bytes, size_t n);

/// Writes `n` bytes of a handler's to descriptor 1 in one piece: the other printing signals wait until they
/// are out. Async-signal-safe. Returns as EscribirTodo.
int EscribirDesdeManejador(const void *bytes, size_t n);

/// From now on signal `sig` is held off while standard output is being written, when its handler prints
/// (`imprime`), so that it cannot cut a line in two; no more when it does not. The faults are never held off,
/// nor is a signal that has no handler at that moment.
void RetenerAlVolcar(int sig, bool imprime);

/// To be called where a recovery jump lands: lets the signals go that a write cut off by the jump was
/// holding.
void SoltarRetenidas();
