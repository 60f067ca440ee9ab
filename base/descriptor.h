// SPDX-License-Identifier: MIT

#pragma once

#include <unistd.h>

#include <cerrno>

/// Owns a descriptor: closes it at the end of the scope, with `errno` kept. For functions that open and close
/// what they use; a descriptor that outlives the command is handed to the open-file table instead.
class Descriptor {
  public:
    explicit Descriptor(int df) : df_(df) {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() {
        if (df_ == -1) return;
        const int motivo = errno;
        close(df_);
        errno = motivo;
    }

    int df() const { return df_; }

    /// Closes it now. Returns what close() returned.
    int Cerrar() {
        const int df = df_;
        df_ = -1;
        return close(df);
    }

    /// Leaves it to somebody else, who owns it from here on.
    void Soltar() { df_ = -1; }

  private:
    int df_;
};
