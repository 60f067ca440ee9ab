#pragma once

#include <cstddef>

/// A line formed inside a signal handler: no library formatting, which the signal may have interrupted
/// half-way.
struct TextoManejador {
    char texto[160];
    size_t n = 0;

    void Poner(const char *s);         ///< what does not fit is cut
    void PonerNumero(int valor);       ///< in decimal
    void PonerDireccion(const void *); ///< as "%p" does
};

/// Writes the line to descriptor 1 in one piece. Async-signal-safe. Returns 0, or -1 with the `errno` of
/// write().
int EscribirAviso(const TextoManejador &aviso);
