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

/// Writes the line to descriptor 1 in one piece: other signals, the faults apart, wait until it is out.
/// Async-signal-safe.
void EscribirAviso(const TextoManejador &aviso);
