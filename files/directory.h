// SPDX-License-Identifier: MIT

#pragma once

#include <dirent.h>

#include <cerrno>
#include <utility>

// Directories: opened, walked, told apart from other files, and the one where the shell stands.

/// Owns an open directory while it is walked: closes it at the end of the scope, with `errno` kept.
class Directorio {
  public:
    /// `dir` may be null (what opendir or fdopendir returned): none.
    explicit Directorio(DIR *dir = nullptr) : dir_(dir) {}
    Directorio(Directorio &&otro) noexcept : dir_(std::exchange(otro.dir_, nullptr)) {}
    Directorio &operator=(Directorio &&otro) noexcept {
        std::swap(dir_, otro.dir_);
        return *this;
    }
    ~Directorio() {
        if (!dir_) return;
        const int motivo = errno;
        closedir(dir_);
        errno = motivo;
    }

    bool Abierto() const { return dir_ != nullptr; }

    /// Its descriptor, which remains the directory's own.
    int df() const { return dirfd(dir_); }

    /// The next entry in the system's order, "." and ".." included. Null at the end, with `errno` 0, and when
    /// reading fails, with the reason.
    const dirent *Siguiente() {
        errno = 0;
        return readdir(dir_);
    }

    /// Closes it now. Returns what closedir() returned.
    int Cerrar() { return closedir(std::exchange(dir_, nullptr)); }

  private:
    DIR *dir_;
};

/// Opens a directory, not a link to one, by its name in the directory open as `df`. Not open in the end:
/// with the `errno` of openat, ENOTDIR (ELOOP on some systems) for a link.
Directorio AbrirDirectorioEn(int df, const char *nombre);

/// Whether `nombre` is "." or "..".
inline bool EsPuntoOPuntoPunto(const char *nombre) {
    return nombre[0] == '.' && (nombre[1] == '\0' || (nombre[1] == '.' && nombre[2] == '\0'));
}

/// 1 when `ruta` itself is a directory (a link to one is not), else 0, also when its status cannot be had.
int EsDirectorio(const char *ruta);

/// Whether an entry of the directory open as `df` is itself a directory (a link to one is not). The type that
/// the entry carries is believed; only without one is the status asked for.
bool EntradaEsDirectorio(int df, const dirent *entrada);

/// Prints the current directory; nothing when it cannot be had.
void PrintDirActual();
