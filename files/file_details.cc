// SPDX-License-Identifier: MIT

#include "files/file_details.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/bounded_text.h"
#include "base/dates.h"
#include "base/large_storage.h"
#include "base/output.h"
#include "files/owner_names.h"

namespace {

constexpr size_t kTamLinea = 4096;
constexpr size_t kTamEnlace = 1024; // the target of a link

/// Forms the line that says why there are no details. A name as long as a line is cut, not the reason.
void FormarError(char *linea, const char *nombre, const char *motivo) {
    static constexpr char kInicio[] = " ****error al acceder a ";
    const size_t cabe = kTamLinea - sizeof kInicio - strlen(":") - strlen(motivo);
    snprintf(linea, kTamLinea, "%s%.*s:%s", kInicio, static_cast<int>(cabe), nombre, motivo);
}

/// snprintf of the line in the form that is asked for.
int FormarLinea(char *linea, const struct stat &st, const char *nombre, int corto, int acc) {
    const time_t cuando = acc ? st.st_atime : st.st_mtime;
    const auto tam = static_cast<unsigned long>(st.st_size);
    if (!corto)
        return snprintf(linea, kTamLinea, "%s %3lu (%8lu)%9s%9s %s%8lu %s", Fecha2(cuando),
                        static_cast<unsigned long>(st.st_nlink), static_cast<unsigned long>(st.st_ino),
                        UsuarioListado(st.st_uid), GrupoListado(st.st_gid), Permisos(st.st_mode), tam,
                        nombre);
    if (acc) return snprintf(linea, kTamLinea, " %7lu  %s %s", tam, Fecha2(cuando), nombre);
    return snprintf(linea, kTamLinea, " %7lu  %s", tam, nombre);
}

/// Appends " -> " and the target of the link `ruta`, or why it cannot be read.
void AnadeEnlace(TextoAcotado *linea, int dir, const char *ruta) {
    char destino[kTamEnlace];
    const ssize_t n = readlinkat(dir, ruta, destino, sizeof destino - 1);
    linea->Poner(" -> ");
    if (n >= 0) {
        linea->Poner(destino, static_cast<size_t>(n)); // a longer target is cut at 1023 characters
    } else {
        linea->Poner("**error al leer enlace: ");
        linea->Poner(strerror(errno));
    }
}

} // namespace

const char *DetallesFichero(int corto, int dir, const char *nombre, int link, int acc) {
    alignas(kAparte) static char linea[kTamLinea];
    struct stat st;
    if (fstatat(dir, nombre, &st, AT_SYMLINK_NOFOLLOW) == -1) {
        FormarError(linea, nombre, strerror(errno));
        return linea;
    }
    const int n = FormarLinea(linea, st, nombre, corto, acc);
    if (link && S_ISLNK(st.st_mode)) {
        TextoAcotado texto(linea, sizeof linea, static_cast<size_t>(n));
        AnadeEnlace(&texto, dir, nombre);
    }
    return linea;
}

char TipoFichero(mode_t modo) {
    switch (modo & S_IFMT) {
    case S_IFSOCK: return 's';
    case S_IFLNK: return 'l';
    case S_IFREG: return '-';
    case S_IFBLK: return 'b';
    case S_IFDIR: return 'd';
    case S_IFCHR: return 'c';
    case S_IFIFO: return 'p';
    default: return '?';
    }
}

const char *Permisos(mode_t modo) {
    static char permisos[12];
    strcpy(permisos, "---------- ");
    permisos[0] = TipoFichero(modo);
    for (int i = 0; i < 9; i++)
        if (modo & (S_IRUSR >> i)) permisos[1 + i] = "rwx"[i % 3];
    // Always small: the execute bits under them are not told apart.
    if (modo & S_ISUID) permisos[3] = 's';
    if (modo & S_ISGID) permisos[6] = 's';
    if (modo & S_ISVTX) permisos[9] = 't';
    return permisos;
}

time_t FechaFichero(const char *ruta) {
    struct stat st;
    return lstat(ruta, &st) == -1 ? -1 : st.st_mtime;
}

void IniciarDetalles() {
    VolcarSalida(); // one of the files may be where it goes
    OlvidarListados();
    LeerZonaHoraria();
}
