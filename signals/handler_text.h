// SPDX-License-Identifier: MIT

#pragma once

#include "base/bounded_text.h"

/// A line formed inside a signal handler.
class TextoManejador : public TextoAcotado {
  public:
    TextoManejador() : TextoAcotado(linea_, sizeof linea_) {}
    TextoManejador(const TextoManejador &) = delete; // its text lies in itself
    TextoManejador &operator=(const TextoManejador &) = delete;

  private:
    char linea_[160];
};

/// Writes the line to descriptor 1 in one piece. Async-signal-safe. Returns 0, or -1 with the `errno` of
/// write().
int EscribirAviso(const TextoManejador &aviso);
