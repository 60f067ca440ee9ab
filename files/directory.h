#pragma once

#include <dirent.h>

#include <cerrno>

/// Owns an open directory while it is walked: closes it at the end of the scope, with `errno` kept.
class Directorio {
  public:
    /// `dir` may be null (what opendir or fdopendir returned).
    explicit Directorio(DIR *dir) : dir_(dir) {}
    Directorio(const Directorio &) = delete;
    Directorio &operator=(const Directorio &) = delete;
    ~Directorio() {
        if (!dir_) return;
        const int motivo = errno;
        closedir(dir_);
        errno = motivo;
    }

    bool Abierto() const { return dir_ != nullptr; }

    /// Its descriptor, which remains the directory's own.
    int df() const { return dirfd(dir_); }

    /// The next entry in the system's order, "." and ".." included; null at the end.
    const dirent *Siguiente() { return readdir(dir_); }

    /// Closes it now. Returns what closedir() returned.
    int Cerrar() {
        DIR *dir = dir_;
        dir_ = nullptr;
        return closedir(dir);
    }

  private:
    DIR *dir_;
};

/// Opens a directory, not a link to one, by its name in the directory open as `df`. Returns null with the
/// `errno` of openat: ENOTDIR (ELOOP on some systems) for a link.
DIR *AbrirDirectorioEn(int df, const char *nombre);

/// Whether `nombre` is "." or "..".
inline bool EsPuntoOPuntoPunto(const char *nombre) {
    return nombre[0] == '.' && (nombre[1] == '\0' || (nombre[1] == '.' && nombre[2] == '\0'));
}

/// Whether an entry of the directory open as `df` is itself a directory (a link to one is not). The type that
/// the entry carries is believed; only without one is the status asked for.
bool EntradaEsDirectorio(int df, const dirent *entrada);
