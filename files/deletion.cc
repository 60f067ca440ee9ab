// SPDX-License-Identifier: MIT

#include "files/deletion.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "base/descriptor.h"
#include "base/failure.h"
#include "base/words.h"
#include "files/directory.h"

namespace {

constexpr rlim_t kMaxProfundidad = 10000;
constexpr rlim_t kPilaPorNivel = 1024; // more than a level of the recursion takes

/// How deep the recursion may go on the stack that the shell has.
int ProfundidadPosible() {
    struct rlimit pila = {RLIM_INFINITY, RLIM_INFINITY};
    getrlimit(RLIMIT_STACK, &pila);
    return static_cast<int>(std::min(pila.rlim_cur / kPilaPorNivel, kMaxProfundidad));
}

#ifdef O_SEARCH
constexpr int kSoloBuscar = O_SEARCH; // to look names up, a directory need not be readable
#else
constexpr int kSoloBuscar = O_PATH;
#endif

/// A directory that is being emptied.
struct Nivel {
    Nivel *padre;   // the directory above it in the tree; null at the top
    Directorio dir; // closed while descriptors are too short for it to stay open
    int profundidad = padre ? padre->profundidad + 1 : 1;
    dev_t dispositivo = 0; // which directory it is; known once it has been closed
    ino_t inodo = 0;
};

/// Closes the directories above `nivel`, to be opened again on the way up.
void CerrarAntepasados(const Nivel *nivel) {
    for (Nivel *n = nivel->padre; n && n->dir.Abierto(); n = n->padre) {
        struct stat st;
        if (fstat(n->dir.df(), &st) == -1) break;
        n->dispositivo = st.st_dev;
        n->inodo = st.st_ino;
        n->dir.Cerrar();
    }
}

/// Opens again the directory above `hijo`, at its start. Somebody may have moved `hijo` elsewhere: the
/// directory above it must be the one that was closed.
int ReabrirPadre(const Nivel *hijo) {
    Nivel *padre = hijo->padre;
    padre->dir = AbrirDirectorioEn(hijo->dir.df(), "..");
    struct stat st;
    if (!padre->dir.Abierto() || fstat(padre->dir.df(), &st) == -1) return -1;
    return st.st_dev == padre->dispositivo && st.st_ino == padre->inodo ? 0 : Fallo(ESTALE);
}

int Vaciar(Nivel *nivel);

/// Deletes the subdirectory `nombre` of `nivel`.
int BorrarSubdirectorio(Nivel *nivel, const char *nombre) {
    if (nivel->profundidad >= ProfundidadPosible()) return Fallo(ENAMETOOLONG);
    Directorio dir = AbrirDirectorioEn(nivel->dir.df(), nombre);
    if (!dir.Abierto() && (errno == EMFILE || errno == ENFILE)) {
        CerrarAntepasados(nivel);
        dir = AbrirDirectorioEn(nivel->dir.df(), nombre);
    }
    if (!dir.Abierto()) return -1;
    Nivel hijo = {nivel, std::move(dir)};
    if (Vaciar(&hijo) == -1) return -1;
    // Closed meanwhile, with the entry that holds `nombre`: read from its start, it gives the entry again.
    if (!nivel->dir.Abierto()) return ReabrirPadre(&hijo);
    hijo.dir.Cerrar();
    return unlinkat(nivel->dir.df(), nombre, AT_REMOVEDIR);
}

/// Deletes everything in the directory `nivel`, which is open then unless that failed.
int Vaciar(Nivel *nivel) {
    while (const dirent *entrada = nivel->dir.Siguiente()) {
        const char *nombre = entrada->d_name;
        if (EsPuntoOPuntoPunto(nombre)) continue;
        const int resultado = EntradaEsDirectorio(nivel->dir.df(), entrada)
                                  ? BorrarSubdirectorio(nivel, nombre)
                                  : unlinkat(nivel->dir.df(), nombre, 0);
        if (resultado == -1) return -1;
    }
    return errno == 0 ? 0 : -1;
}

/// Deletes the directory `nombre` of the directory open as `df`.
int BorrarDirectorioEn(int df, const char *nombre) {
    // rmdir refuses these names, but only once all else in the directory would be gone. It is asked first, on
    // purpose: the user keeps a tree that could not be deleted in the end.
    if (EsPuntoOPuntoPunto(nombre)) return unlinkat(df, nombre, AT_REMOVEDIR);
    Nivel nivel = {nullptr, AbrirDirectorioEn(df, nombre)};
    if (!nivel.dir.Abierto() || Vaciar(&nivel) == -1) return -1;
    nivel.dir.Cerrar();
    return unlinkat(df, nombre, AT_REMOVEDIR);
}

} // namespace

int BorrarDirectorio(const char *dir) {
    char ruta[kMaxLinea];
    size_t n = strlen(dir);
    while (n > 1 && dir[n - 1] == '/') n--; // with a slash behind it, a link would be followed
    if (n >= sizeof ruta) return Fallo(ENAMETOOLONG);
    memcpy(ruta, dir, n);
    ruta[n] = '\0';

    char *barra = strrchr(ruta, '/');
    if (!barra || n == 1) return BorrarDirectorioEn(AT_FDCWD, ruta);
    // What holds the directory is looked up once, so that what is removed in the end is what was emptied.
    *barra = '\0';
    const Descriptor padre(open(barra == ruta ? "/" : ruta, kSoloBuscar | O_DIRECTORY | O_CLOEXEC));
    return padre.df() == -1 ? -1 : BorrarDirectorioEn(padre.df(), barra + 1);
}
