#include "files/file_details.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/output.h"

namespace {

constexpr size_t kTamLinea = 4096;
constexpr size_t kTamEnlace = 1024; // the target of a link

/// Names by id. A tree of 100,000 files has a handful of owners; the databases are read once for each, in the
/// row that its number gives or the first free one behind it.
struct NombresVistos {
    static constexpr unsigned kMax = 4096;
    // Rows looked at; beyond them the first one is given to the new id.
    static constexpr unsigned kIntentos = 16;
    struct Fila {
        unsigned id;
        unsigned orden; // the command that filled it
        char nombre[56];
    } filas[kMax];

    Fila *Buscar(unsigned id, unsigned orden) {
        for (unsigned i = 0; i < kIntentos; i++) {
            Fila *fila = &filas[(id + i) % kMax];
            if (fila->orden != orden || fila->id == id) return fila;
        }
        filas[id % kMax].orden = 0;
        return &filas[id % kMax];
    }
};
NombresVistos usuarios_, grupos_;
unsigned orden_ = 1; // a name is good for one command

const char *NombreVisto(NombresVistos *vistos, unsigned id, const char *(*buscar)(unsigned)) {
    NombresVistos::Fila *fila = vistos->Buscar(id, orden_);
    if (fila->orden == orden_) return fila->nombre;
    errno = 0;
    const char *nombre = buscar(id);
    // A database that could not be read (no descriptor left) may be readable at the next file.
    const bool fallida =
        errno == EMFILE || errno == ENFILE || errno == ENOMEM || errno == EIO || errno == EINTR;
    if (fallida || strlen(nombre) >= sizeof fila->nombre) return nombre;
    strcpy(fila->nombre, nombre);
    fila->id = id;
    fila->orden = orden_;
    return fila->nombre;
}

/// A line being formed by hand: tens of thousands of them go out in one listing. What does not fit is cut.
struct Linea {
    char texto[kTamLinea];
    size_t n;

    void Poner(const char *s, size_t largo) {
        if (largo > sizeof texto - 1 - n) largo = sizeof texto - 1 - n;
        memcpy(texto + n, s, largo);
        n += largo;
    }
    void Poner(const char *s) { Poner(s, strlen(s)); }

    /// Right-aligned in `ancho` columns, or as long as it is.
    void PonerDerecha(const char *s, size_t largo, size_t ancho) {
        static constexpr char blancos[] = "                    ";
        if (largo < ancho) Poner(blancos, ancho - largo);
        Poner(s, largo);
    }
    void PonerDerecha(const char *s, size_t ancho) { PonerDerecha(s, strlen(s), ancho); }
    void PonerDerecha(unsigned long valor, size_t ancho) {
        char cifras[24];
        char *p = cifras + sizeof cifras;
        do {
            *--p = static_cast<char>('0' + valor % 10);
            valor /= 10;
        } while (valor > 0);
        PonerDerecha(p, static_cast<size_t>(cifras + sizeof cifras - p), ancho);
    }
    const char *Terminar() {
        texto[n] = '\0';
        return texto;
    }
};

/// Appends " -> " and the target of the link `ruta`, or why it cannot be read.
void AnadeEnlace(Linea *linea, int df, const char *ruta) {
    char destino[kTamEnlace];
    const ssize_t n = readlinkat(df, ruta, destino, sizeof destino - 1);
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
    static Linea linea;
    Linea *l = &linea;
    l->n = 0;
    struct stat st;
    if (fstatat(dir, nombre, &st, AT_SYMLINK_NOFOLLOW) == -1) {
        const char *motivo = strerror(errno);
        l->Poner(" ****error al acceder a ");
        const size_t cabe =
            sizeof l->texto - l->n - strlen(motivo) - 2; // a name as long as a line is cut, not the reason
        l->Poner(nombre, strnlen(nombre, cabe));
        l->Poner(":");
        l->Poner(motivo);
        return l->Terminar();
    }
    const time_t cuando = acc ? st.st_atime : st.st_mtime;
    if (!corto) {
        l->Poner(Fecha2(cuando));
        l->Poner(" ", 1);
        l->PonerDerecha(st.st_nlink, 3);
        l->Poner(" (", 2);
        l->PonerDerecha(st.st_ino, 8);
        l->Poner(")", 1);
        l->PonerDerecha(NombreVisto(&usuarios_, st.st_uid, NombreUsuario), 9);
        l->PonerDerecha(NombreVisto(&grupos_, st.st_gid, NombreGrupo), 9);
        l->Poner(" ", 1);
        l->Poner(Permisos(st.st_mode));
        l->PonerDerecha(static_cast<unsigned long>(st.st_size), 8);
        l->Poner(" ", 1);
    } else {
        l->Poner(" ", 1);
        l->PonerDerecha(static_cast<unsigned long>(st.st_size), 7);
        l->Poner("  ", 2);
        if (acc) {
            l->Poner(Fecha2(cuando));
            l->Poner(" ", 1);
        }
    }
    l->Poner(nombre);
    if (link && S_ISLNK(st.st_mode)) AnadeEnlace(l, dir, nombre);
    return l->Terminar();
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
    if (modo & S_ISUID) permisos[3] = 's';
    if (modo & S_ISGID) permisos[6] = 's';
    if (modo & S_ISVTX) permisos[9] = 't';
    return permisos;
}

const char *NombreUsuario(uid_t uid) {
    const struct passwd *usuario = getpwuid(uid);
    return usuario ? usuario->pw_name : " ??????";
}

const char *NombreGrupo(gid_t gid) {
    const struct group *grupo = getgrgid(gid);
    return grupo ? grupo->gr_name : "??????";
}

const char *Fecha2(time_t t) {
    static char fecha[64];
    struct tm tm;
    if (!localtime_r(&t, &tm)) {
        snprintf(fecha, sizeof fecha, "%lld", static_cast<long long>(t)); // a year beyond what int holds
        return fecha;
    }
    snprintf(fecha, sizeof fecha, "%4ld/%02d/%02d-%02d:%02d", tm.tm_year + 1900L, tm.tm_mon + 1, tm.tm_mday,
             tm.tm_hour, tm.tm_min);
    return fecha;
}

const char *ConvertirDia(time_t t) {
    static char dia[64];
    struct tm tm = {};
    tzset();
    localtime_r(&t, &tm);
    snprintf(dia, sizeof dia, "%02d/%02d/%04ld", tm.tm_mday, tm.tm_mon + 1, tm.tm_year + 1900L);
    return dia;
}

const char *ConvertirHora(time_t t) {
    static char hora[64];
    struct tm tm = {};
    tzset();
    localtime_r(&t, &tm);
    snprintf(hora, sizeof hora, "%02d:%02d:%02d", tm.tm_hour, tm.tm_min, tm.tm_sec);
    return hora;
}

time_t FechaFichero(const char *ruta) {
    struct stat st;
    return lstat(ruta, &st) == -1 ? -1 : st.st_mtime;
}

int EsDirectorio(const char *ruta) {
    struct stat st;
    return lstat(ruta, &st) == 0 && S_ISDIR(st.st_mode);
}

void IniciarDetalles() {
    VolcarSalida(); // one of the files may be where it goes
    orden_++;
    tzset();
}

void PrintDirActual() {
    char dir[1024] = {};
    if (getcwd(dir, sizeof dir)) Imprimir("%s\n", dir);
}
