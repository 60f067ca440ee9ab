// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstring>

/// Text that grows at its end and is cut where its room ends; a null closes it after every step.
/// Async-signal-safe, the digits too: library formatting is not, since the signal may have interrupted it
/// half-way. A recovery jump may cut it off: it owns nothing.
class TextoAcotado {
  public:
    /// A text in the `tam` bytes at `lugar`, which are the caller's (null when tam is 0). With `largo`, the
    /// text goes on behind one that stands there, of which this is what snprintf returned.
    TextoAcotado(char *lugar, size_t tam, size_t largo = 0) : lugar_(lugar), tam_(tam), largo_(largo) {
        if (tam > 0) lugar_[n()] = '\0';
    }

    // Inline: a prompt is formed for every line, and a text that the compiler sees whole stays in registers.
    void Poner(char c) {
        if (largo_ + 1 < tam_) {
            lugar_[largo_] = c;
            lugar_[largo_ + 1] = '\0';
        }
        largo_++;
    }
    void Poner(const char *texto, size_t n) {
        if (Cabe()) {
            const size_t sitio = tam_ - 1 - largo_;
            const size_t cabe = n < sitio ? n : sitio;
            memcpy(lugar_ + largo_, texto, cabe);
            lugar_[largo_ + cabe] = '\0';
        }
        largo_ += n;
    }
    void Poner(const char *texto) { Poner(texto, strlen(texto)); }

    /// In decimal, behind as many of `relleno` as `ancho` columns need. A minus sign stands next to the
    /// digits.
    void PonerNumero(long long valor, int ancho = 0, char relleno = ' ');

    void PonerDireccion(const void *direccion); ///< as "%p" does, null apart

    const char *texto() const { return lugar_; }
    size_t n() const { return Cabe() ? largo_ : tam_ - 1; } ///< characters that it has; tam is not 0
    size_t largo() const { return largo_; }                 ///< those that it would have with room for all
    bool Cabe() const { return largo_ < tam_; }

  private:
    char *lugar_;
    size_t tam_;
    size_t largo_;
};
